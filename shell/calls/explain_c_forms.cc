#include "explain_c_forms.h"

#include <algorithm>

#include "reflection.h"

namespace shell {

namespace {

bool points(const tap::Arguments &call)
{
    const reflection::TableFunctions *const table = reflection::find_table(call.word("table"));
    if (!table || !table->indirect)
        return false;
    return call.action.action_kind == PIPE_ACTION_MEMBER || call.action.action_kind == PIPE_ACTION_GROUP;
}

bool enables(const tap::Arguments &call)
{
    return call.number("enable") != 0;
}

bool has_value(const tap::Arguments &call)
{
    return call.has_value;
}

constexpr CForm forms[] = {
    {"pipe_mgr_mat_ent_add", points,
     "{TABLE}_add_entry{SUFFIX}({sess}, {TARGET}, {KEY}, {POINTED}, {NEW ENTRY})"},
    {"pipe_mgr_mat_ent_add", nullptr,
     "{TABLE}_table_add_with_{ACTION}({sess}, {TARGET}, {KEY}{PARAMETERS}{TTL}{ENTRY METER}, {NEW ENTRY})"},
    {"pipe_mgr_mat_ent_set_action", points,
     "{TABLE}_modify_entry{SUFFIX}({sess}, {device_id}, {ENTRY}, {POINTED})"},
    {"pipe_mgr_mat_ent_set_action", nullptr,
     "{TABLE}_table_modify_with_{ACTION}({sess}, {device_id}, {ENTRY}{PARAMETERS}{ENTRY METER})"},
    {"pipe_mgr_mat_ent_set_action_by_match_spec", points,
     "{TABLE}_modify_entry{SUFFIX}_by_match_spec({sess}, {TARGET}, {KEY}, {POINTED})"},
    {"pipe_mgr_mat_ent_set_action_by_match_spec", nullptr,
     "{TABLE}_table_modify_with_{ACTION}_by_match_spec({sess}, {TARGET}, {KEY}{PARAMETERS}{ENTRY METER})"},
    {"pipe_mgr_mat_ent_del", nullptr, "{TABLE}_table_delete({sess}, {device_id}, {ENTRY})"},
    {"pipe_mgr_mat_ent_del_by_match_spec", nullptr,
     "{TABLE}_table_delete_by_match_spec({sess}, {TARGET}, {KEY})"},
    {"pipe_mgr_mat_default_entry_set", points,
     "{TABLE}_set_default_entry{SUFFIX}({sess}, {TARGET}, {POINTED}, {NEW ENTRY})"},
    {"pipe_mgr_mat_default_entry_set", nullptr,
     "{TABLE}_set_default_action_{ACTION}({sess}, {TARGET}{PARAMETERS}{ENTRY METER}, {NEW ENTRY})"},
    {"pipe_mgr_mat_tbl_default_entry_reset", nullptr, "{TABLE}_table_reset_default_entry({sess}, {TARGET})"},
    {"pipe_mgr_tbl_set_property", nullptr,
     "{TABLE}_set_property({sess}, {device_id}, {property}, {value}, {second_value})"},
    {"pipe_mgr_adt_ent_add", nullptr,
     "{PROFILE}_add_member_with_{ACTION}({sess}, {TARGET}{PARAMETERS}, {NEW MEMBER})"},
    {"pipe_mgr_adt_ent_set", nullptr,
     "{PROFILE}_modify_member_with_{ACTION}({sess}, {device_id}, {MEMBER}{PARAMETERS})"},
    {"pipe_mgr_adt_ent_del", nullptr, "{PROFILE}_del_member({sess}, {device_id}, {MEMBER})"},
    {"pipe_mgr_sel_grp_add", nullptr,
     "{PROFILE}_create_group({sess}, {TARGET}, {max_group_size}, {NEW GROUP})"},
    {"pipe_mgr_sel_grp_del", nullptr, "{PROFILE}_del_group({sess}, {device_id}, {GROUP})"},
    {"pipe_mgr_sel_grp_mbr_add", nullptr,
     "{PROFILE}_add_member_to_group({sess}, {device_id}, {GROUP}, {MEMBER})"},
    {"pipe_mgr_sel_grp_mbr_del", nullptr,
     "{PROFILE}_del_member_from_group({sess}, {device_id}, {GROUP}, {MEMBER})"},
    {"pipe_mgr_sel_grp_mbr_enable", nullptr,
     "{PROFILE}_group_member_state_set({sess}, {device_id}, {GROUP}, {MEMBER}, P4_PD_GRP_MBR_STATE_ACTIVE)"},
    {"pipe_mgr_sel_grp_mbr_disable", nullptr,
     "{PROFILE}_group_member_state_set({sess}, {device_id}, {GROUP}, {MEMBER}, "
     "P4_PD_GRP_MBR_STATE_INACTIVE)"},
    {"pipe_mgr_sel_fallback_mbr_set", nullptr,
     "{PROFILE}_set_dynamic_action_selection_fallback_member({sess}, {TARGET}, {MEMBER})"},
    {"pipe_mgr_sel_fallback_mbr_reset", nullptr,
     "{PROFILE}_reset_dynamic_action_selection_fallback_member({sess}, {TARGET})"},
    {"pipe_mgr_mat_ent_set_resource", nullptr,
     "meter_set_{ENTRY METER NAME}({sess}, {DEVICE}, {ENTRY}, {RESOURCE METER})"},
    {"pipe_mgr_stat_ent_set", nullptr, "counter_write_{COUNTER}({sess}, {TARGET}, {index}, {COUNTS})"},
    {"pipe_mgr_mat_ent_direct_stat_set", nullptr,
     "counter_write_{ENTRY COUNTER}({sess}, {DEVICE}, {ENTRY}, {COUNTS})"},
    {"pipe_mgr_stat_database_sync", nullptr, "counter_hw_sync_{COUNTER}({sess}, {TARGET}, synced, 0)"},
    {"pipe_mgr_direct_stat_database_sync", nullptr,
     "counter_hw_sync_{ENTRY COUNTER}({sess}, {TARGET}, synced, 0)"},
    {"pipe_mgr_meter_ent_set", nullptr, "meter_set_{METER}({sess}, {TARGET}, {index}, {SPEC})"},
    {"pipe_mgr_meter_set_bytecount_adjust", nullptr,
     "meter_bytecount_adjust_set_{METER}({sess}, {TARGET}, {adjust})"},
    {"pipe_stful_ent_set", nullptr, "register_write_{REGISTER}({sess}, {TARGET}, {index}, {VALUE})"},
    {"pipe_stful_table_reset", has_value, "register_write_all_{REGISTER}({sess}, {TARGET}, {VALUE})"},
    {"pipe_stful_table_reset", nullptr, "register_reset_all_{REGISTER}({sess}, {TARGET})"},
    {"pipe_stful_table_reset_range", nullptr,
     "register_range_reset_{REGISTER}({sess}, {TARGET}, {start}, {count})"},
    {"pipe_stful_database_sync", nullptr, "register_hw_sync_{REGISTER}({sess}, {TARGET}, synced, 0)"},
    {"pipe_mgr_idle_tmo_set_enable", enables, "{TABLE}_idle_tmo_enable({sess}, {device_id}, {IDLE})"},
    {"pipe_mgr_idle_tmo_set_enable", nullptr, "{TABLE}_idle_tmo_disable({sess}, {device_id})"},
    {"pipe_mgr_mat_ent_set_idle_ttl", nullptr, "{TABLE}_set_ttl({sess}, {device_id}, {ENTRY}, {ttl})"},
    {"pipe_mgr_mat_ent_reset_idle_ttl", nullptr, "{TABLE}_reset_ttl({sess}, {device_id}, {ENTRY})"},
    {"pipe_mgr_idle_time_update_hit_state", nullptr,
     "{TABLE}_update_hit_state({sess}, {device_id}, {FIRST}, {second})"},
    {"pipe_mgr_flow_lrn_set_timeout", nullptr, "set_learning_timeout({sess}, {device_id}, {timeout})"},
    {"pipe_mgr_pvs_entry_add", nullptr,
     "pvs_{SET}_entry_add({sess}, {device_id}, {scope_a}, {scope_b}, {scope_c}, {key}, {key_mask}, {NEW "
     "ENTRY})"},
    {"pipe_mgr_pvs_entry_modify", nullptr,
     "pvs_{SET}_entry_modify({sess}, {device_id}, {ENTRY}, {key}, {key_mask})"},
    {"pipe_mgr_pvs_entry_delete", nullptr, "pvs_{SET}_entry_delete({sess}, {device_id}, {ENTRY})"},
    {"pipe_mgr_pvs_set_property", nullptr,
     "pvs_{SET}_set_property({sess}, {device_id}, {property}, {PROPERTY VALUE}, {PROPERTY ARGUMENT})"},
    {"pipe_mgr_hash_calc_input_set", nullptr, "hash_calc_{HASH}_input_set({sess}, {device_id}, 0)"},
    {"pipe_mgr_hash_calc_algorithm_set", nullptr, "hash_calc_{HASH}_algorithm_set({sess}, {device_id}, 0)"},
    {"pipe_mgr_hash_calc_seed_set", nullptr,
     "hash_calc_{HASH}_seed_set({sess}, {device_id}, {first}, {second})"},
    {"pipe_mgr_hash_calc_input_field_attribute_set", nullptr,
     "hash_calc_{HASH}_input_field_attribute_set({sess}, {device_id}, 0, {ATTRIBUTES})"},
};

} // namespace

const CForm *find_c_form(std::string_view operation, const tap::Arguments &call)
{
    const auto form = std::ranges::find_if(forms, [&](const CForm &one) {
        return one.operation == operation && (!one.applies || one.applies(call));
    });
    return form == std::end(forms) ? nullptr : form;
}

} // namespace shell
