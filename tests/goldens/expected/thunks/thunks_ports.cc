// Sample tables. Generated from the catalogue: edit its rows, not this file.
#include "pd_ports.h"

#include "defaults.h"
#include "entries.h"
#include "read_back.h"
#include "rows_ports.h"
#include "tables.h"

using namespace pd;

pd_status p4_pd_sample_stationCheck_table_add_with_NoAction(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_stationCheck_match_spec_t *match_spec,
    u32 priority, u32 ttl, const pd_meter_spec *stationMeter_spec, pd_entry_hdl *entry_hdl)
{
    return add<tables::stationCheck, actions::NoAction>(
        sess, dev_tgt, { .key = match_spec, .priority = priority, .ttl = ttl, .meter = stationMeter_spec },
        entry_hdl);
}

pd_status p4_pd_sample_stationCheck_table_modify_with_NoAction(
    pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl, const pd_meter_spec *stationMeter_spec)
{
    return modify<tables::stationCheck, actions::NoAction>(
        sess, dev_id, entry_hdl, { .meter = stationMeter_spec });
}

pd_status p4_pd_sample_stationCheck_table_modify_with_NoAction_by_match_spec(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_stationCheck_match_spec_t *match_spec,
    u32 priority, const pd_meter_spec *stationMeter_spec)
{
    return modify_by_match_spec<tables::stationCheck, actions::NoAction>(
        sess, dev_tgt, { .key = match_spec, .priority = priority, .meter = stationMeter_spec });
}

pd_status p4_pd_sample_stationCheck_table_add_with_setDomain(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_stationCheck_match_spec_t *match_spec,
    u32 priority, const p4_pd_sample_setDomain_action_spec_t *action_spec, u32 ttl,
    const pd_meter_spec *stationMeter_spec, pd_entry_hdl *entry_hdl)
{
    return add<tables::stationCheck, actions::setDomain>(
        sess, dev_tgt,
        { .key = match_spec, .priority = priority, .action = action_spec, .ttl = ttl,
         .meter = stationMeter_spec }, entry_hdl);
}

pd_status p4_pd_sample_stationCheck_table_modify_with_setDomain(
    pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl,
    const p4_pd_sample_setDomain_action_spec_t *action_spec, const pd_meter_spec *stationMeter_spec)
{
    return modify<tables::stationCheck, actions::setDomain>(
        sess, dev_id, entry_hdl, { .action = action_spec, .meter = stationMeter_spec });
}

pd_status p4_pd_sample_stationCheck_table_modify_with_setDomain_by_match_spec(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_stationCheck_match_spec_t *match_spec,
    u32 priority, const p4_pd_sample_setDomain_action_spec_t *action_spec,
    const pd_meter_spec *stationMeter_spec)
{
    return modify_by_match_spec<tables::stationCheck, actions::setDomain>(
        sess, dev_tgt,
        { .key = match_spec, .priority = priority, .action = action_spec, .meter = stationMeter_spec });
}

pd_status p4_pd_sample_stationCheck_table_delete(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl)
{
    return table_delete<tables::stationCheck>(sess, dev_id, entry_hdl);
}

pd_status p4_pd_sample_stationCheck_table_delete_by_match_spec(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_stationCheck_match_spec_t *match_spec,
    u32 priority)
{
    return table_delete_by_match_spec<tables::stationCheck>(
        sess, dev_tgt, { .key = match_spec, .priority = priority });
}

pd_status p4_pd_sample_stationCheck_match_spec_to_entry_hdl(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_stationCheck_match_spec_t *match_spec,
    u32 priority, pd_entry_hdl *entry_hdl)
{
    return match_spec_to_entry_hdl<tables::stationCheck>(
        sess, dev_tgt, { .key = match_spec, .priority = priority }, entry_hdl);
}

void unbuild_key_stationCheck(const struct pipe_match_spec *match,
                              p4_pd_sample_stationCheck_match_spec_t *match_spec)
{
    unbuild_key<tables::stationCheck>(match, match_spec);
}

void unbuild_mask_stationCheck(const struct pipe_match_spec *match,
                               p4_pd_sample_stationCheck_match_spec_t *match_spec)
{
    unbuild_mask<tables::stationCheck>(match, match_spec);
}

u32 p4_pd_sample_stationCheck_port_width() { return 9; }
u32 p4_pd_sample_stationCheck_smacOui_width() { return 24; }
pd_status p4_pd_sample_stationCheck_set_default_action_NoAction(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const pd_meter_spec *stationMeter_spec, pd_entry_hdl *entry_hdl)
{
    return set_default_action<tables::stationCheck, actions::NoAction>(
        sess, dev_tgt, { .meter = stationMeter_spec }, entry_hdl);
}

pd_status p4_pd_sample_stationCheck_table_get_default_entry(
    pd_sess_hdl sess, pd_dev_target dev_tgt, u8 read_from_hw, pd_default_action_out *action)
{
    return get_default_entry(reader<tables::stationCheck>, sess, dev_tgt, read_from_hw, action);
}

pd_status p4_pd_sample_stationCheck_get_entry(
    pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl, u8 read_from_hw,
    p4_pd_sample_stationCheck_match_spec_t *match_spec, u32 *priority, char *action_name, void *action_spec,
    u32 *action_number, u8 *is_default)
{
    return get_entry(reader<tables::stationCheck>, sess, dev_id, entry_hdl, read_from_hw,
                     { .key = match_spec, .priority = priority, .is_default = is_default },
                     {action_name, action_spec, action_number});
}

pd_status p4_pd_sample_stationCheck_get_entry_from_plcmt_data(
    void *plcmt_data, p4_pd_sample_stationCheck_match_spec_t *match_spec, u32 *priority,
    pd_plcmt_action_out *action, u8 *is_default)
{
    return get_entry_from_plcmt_data(reader<tables::stationCheck>, plcmt_data,
                                     { .key = match_spec, .priority = priority, .is_default = is_default },
                                     action);
}

pd_status p4_pd_sample_stationCheck_table_get_default_entry_handle(
    pd_sess_hdl sess, pd_dev_target dev_tgt, pd_entry_hdl *entry_hdl)
{
    return get_default_entry_handle(tables::stationCheck, sess, dev_tgt, entry_hdl);
}

pd_status p4_pd_sample_stationCheck_table_reset_default_entry(pd_sess_hdl sess, pd_dev_target dev_tgt)
{
    return reset_default_entry(tables::stationCheck, sess, dev_tgt);
}

pd_status p4_pd_sample_stationCheck_get_plcmt_data(pd_word first, pd_word second)
{
    return get_plcmt_data(tables::stationCheck, first, second);
}

pd_status p4_pd_sample_stationCheck_get_entry_count(pd_sess_hdl sess, pd_dev_target dev_tgt, u32 *count)
{
    return get_entry_count(tables::stationCheck, sess, dev_tgt, count);
}

pd_status p4_pd_sample_stationCheck_get_first_entry_handle(
    pd_sess_hdl sess, pd_dev_target dev_tgt, pd_entry_hdl *first)
{
    return get_first_entry_handle(tables::stationCheck, sess, dev_tgt, first);
}

pd_status p4_pd_sample_stationCheck_get_next_entry_handles(
    pd_sess_hdl sess, pd_dev_target dev_tgt, pd_entry_hdl entry_hdl, u32 count, pd_entry_hdl *next)
{
    return get_next_entry_handles(tables::stationCheck, sess, dev_tgt, entry_hdl, count, next);
}

pd_status p4_pd_sample_stationCheck_set_property(
    pd_sess_hdl sess, u32 dev_id, u32 property, u32 value, u32 second_value)
{
    return set_property(tables::stationCheck, sess, dev_id, property, value, second_value);
}

pd_status p4_pd_sample_stationCheck_get_property(
    pd_sess_hdl sess, u32 dev_id, u32 property, u32 *value, u32 *second_value)
{
    return get_property(tables::stationCheck, sess, dev_id, property, value, second_value);
}

pd_status p4_pd_sample_stationCheck_register_mat_update_cb(
    pd_sess_hdl sess, u32 dev_id, pd_mat_update_cb callback, pd_word cookie)
{
    return register_mat_update_cb(tables::stationCheck, sess, dev_id, callback, cookie);
}

pd_status p4_pd_sample_stationCheck_get_mat_table_handle(u32 *handle)
{
    return get_mat_table_handle(tables::stationCheck, handle);
}

u32 p4_pd_sample_stationCheck_supports_entry_priority() { return has_priority(tables::stationCheck); }

pd_status p4_pd_sample_route_table_add_with_meterRoute(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_route_match_spec_t *match_spec,
    const p4_pd_sample_meterRoute_action_spec_t *action_spec, pd_entry_hdl *entry_hdl)
{
    return add<tables::route, actions::meterRoute>(
        sess, dev_tgt, { .key = match_spec, .action = action_spec }, entry_hdl);
}

pd_status p4_pd_sample_route_table_modify_with_meterRoute(
    pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl,
    const p4_pd_sample_meterRoute_action_spec_t *action_spec)
{
    return modify<tables::route, actions::meterRoute>(sess, dev_id, entry_hdl, { .action = action_spec });
}

pd_status p4_pd_sample_route_table_modify_with_meterRoute_by_match_spec(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_route_match_spec_t *match_spec,
    const p4_pd_sample_meterRoute_action_spec_t *action_spec)
{
    return modify_by_match_spec<tables::route, actions::meterRoute>(
        sess, dev_tgt, { .key = match_spec, .action = action_spec });
}

pd_status p4_pd_sample_route_table_delete(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl)
{
    return table_delete<tables::route>(sess, dev_id, entry_hdl);
}

pd_status p4_pd_sample_route_table_delete_by_match_spec(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_route_match_spec_t *match_spec)
{
    return table_delete_by_match_spec<tables::route>(sess, dev_tgt, { .key = match_spec });
}

pd_status p4_pd_sample_route_match_spec_to_entry_hdl(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_route_match_spec_t *match_spec,
    pd_entry_hdl *entry_hdl)
{
    return match_spec_to_entry_hdl<tables::route>(sess, dev_tgt, { .key = match_spec }, entry_hdl);
}

void unbuild_key_route(const struct pipe_match_spec *match, p4_pd_sample_route_match_spec_t *match_spec)
{
    unbuild_key<tables::route>(match, match_spec);
}

void unbuild_mask_route(const struct pipe_match_spec *match, p4_pd_sample_route_match_spec_t *match_spec)
{
    unbuild_mask<tables::route>(match, match_spec);
}

u32 p4_pd_sample_route_partition_width() { return 16; }
u32 p4_pd_sample_route_dip_width() { return 128; }
pd_status p4_pd_sample_route_table_get_default_entry(
    pd_sess_hdl sess, pd_dev_target dev_tgt, u8 read_from_hw, pd_default_action_out *action)
{
    return get_default_entry(reader<tables::route>, sess, dev_tgt, read_from_hw, action);
}

pd_status p4_pd_sample_route_get_entry(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl, u8 read_from_hw,
                                       p4_pd_sample_route_match_spec_t *match_spec, char *action_name,
                                       void *action_spec, u32 *action_number, u8 *is_default)
{
    return get_entry(reader<tables::route>, sess, dev_id, entry_hdl, read_from_hw,
                     { .key = match_spec, .is_default = is_default },
                     {action_name, action_spec, action_number});
}

pd_status p4_pd_sample_route_get_entry_from_plcmt_data(
    void *plcmt_data, p4_pd_sample_route_match_spec_t *match_spec, pd_plcmt_action_out *action,
    u8 *is_default)
{
    return get_entry_from_plcmt_data(reader<tables::route>, plcmt_data,
                                     { .key = match_spec, .is_default = is_default }, action);
}

pd_status p4_pd_sample_route_table_get_default_entry_handle(
    pd_sess_hdl sess, pd_dev_target dev_tgt, pd_entry_hdl *entry_hdl)
{
    return get_default_entry_handle(tables::route, sess, dev_tgt, entry_hdl);
}

pd_status p4_pd_sample_route_table_reset_default_entry(pd_sess_hdl sess, pd_dev_target dev_tgt)
{
    return reset_default_entry(tables::route, sess, dev_tgt);
}

pd_status p4_pd_sample_route_get_plcmt_data(pd_word first, pd_word second)
{
    return get_plcmt_data(tables::route, first, second);
}

pd_status p4_pd_sample_route_get_entry_count(pd_sess_hdl sess, pd_dev_target dev_tgt, u32 *count)
{
    return get_entry_count(tables::route, sess, dev_tgt, count);
}

pd_status p4_pd_sample_route_get_first_entry_handle(
    pd_sess_hdl sess, pd_dev_target dev_tgt, pd_entry_hdl *first)
{
    return get_first_entry_handle(tables::route, sess, dev_tgt, first);
}

pd_status p4_pd_sample_route_get_next_entry_handles(
    pd_sess_hdl sess, pd_dev_target dev_tgt, pd_entry_hdl entry_hdl, u32 count, pd_entry_hdl *next)
{
    return get_next_entry_handles(tables::route, sess, dev_tgt, entry_hdl, count, next);
}

pd_status p4_pd_sample_route_set_property(
    pd_sess_hdl sess, u32 dev_id, u32 property, u32 value, u32 second_value)
{
    return set_property(tables::route, sess, dev_id, property, value, second_value);
}

pd_status p4_pd_sample_route_get_property(
    pd_sess_hdl sess, u32 dev_id, u32 property, u32 *value, u32 *second_value)
{
    return get_property(tables::route, sess, dev_id, property, value, second_value);
}

pd_status p4_pd_sample_route_register_mat_update_cb(
    pd_sess_hdl sess, u32 dev_id, pd_mat_update_cb callback, pd_word cookie)
{
    return register_mat_update_cb(tables::route, sess, dev_id, callback, cookie);
}

pd_status p4_pd_sample_route_get_mat_table_handle(u32 *handle)
{
    return get_mat_table_handle(tables::route, handle);
}

u32 p4_pd_sample_route_supports_entry_priority() { return has_priority(tables::route); }

pd_status p4_pd_sample_spread_table_delete(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl)
{
    return table_delete<tables::spread>(sess, dev_id, entry_hdl);
}

pd_status p4_pd_sample_spread_table_delete_by_match_spec(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_spread_match_spec_t *match_spec)
{
    return table_delete_by_match_spec<tables::spread>(sess, dev_tgt, { .key = match_spec });
}

pd_status p4_pd_sample_spread_match_spec_to_entry_hdl(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_spread_match_spec_t *match_spec,
    pd_entry_hdl *entry_hdl)
{
    return match_spec_to_entry_hdl<tables::spread>(sess, dev_tgt, { .key = match_spec }, entry_hdl);
}

void unbuild_key_spread(const struct pipe_match_spec *match, p4_pd_sample_spread_match_spec_t *match_spec)
{
    unbuild_key<tables::spread>(match, match_spec);
}

u32 p4_pd_sample_spread_flow_width() { return 20; }
pd_status p4_pd_sample_spread_table_get_default_entry_handle(
    pd_sess_hdl sess, pd_dev_target dev_tgt, pd_entry_hdl *entry_hdl)
{
    return get_default_entry_handle(tables::spread, sess, dev_tgt, entry_hdl);
}

pd_status p4_pd_sample_spread_table_reset_default_entry(pd_sess_hdl sess, pd_dev_target dev_tgt)
{
    return reset_default_entry(tables::spread, sess, dev_tgt);
}

pd_status p4_pd_sample_spread_get_plcmt_data(pd_word first, pd_word second)
{
    return get_plcmt_data(tables::spread, first, second);
}

pd_status p4_pd_sample_spread_get_entry_count(pd_sess_hdl sess, pd_dev_target dev_tgt, u32 *count)
{
    return get_entry_count(tables::spread, sess, dev_tgt, count);
}

pd_status p4_pd_sample_spread_get_first_entry_handle(
    pd_sess_hdl sess, pd_dev_target dev_tgt, pd_entry_hdl *first)
{
    return get_first_entry_handle(tables::spread, sess, dev_tgt, first);
}

pd_status p4_pd_sample_spread_get_next_entry_handles(
    pd_sess_hdl sess, pd_dev_target dev_tgt, pd_entry_hdl entry_hdl, u32 count, pd_entry_hdl *next)
{
    return get_next_entry_handles(tables::spread, sess, dev_tgt, entry_hdl, count, next);
}

pd_status p4_pd_sample_spread_set_property(
    pd_sess_hdl sess, u32 dev_id, u32 property, u32 value, u32 second_value)
{
    return set_property(tables::spread, sess, dev_id, property, value, second_value);
}

pd_status p4_pd_sample_spread_get_property(
    pd_sess_hdl sess, u32 dev_id, u32 property, u32 *value, u32 *second_value)
{
    return get_property(tables::spread, sess, dev_id, property, value, second_value);
}

pd_status p4_pd_sample_spread_register_mat_update_cb(
    pd_sess_hdl sess, u32 dev_id, pd_mat_update_cb callback, pd_word cookie)
{
    return register_mat_update_cb(tables::spread, sess, dev_id, callback, cookie);
}

pd_status p4_pd_sample_spread_get_mat_table_handle(u32 *handle)
{
    return get_mat_table_handle(tables::spread, handle);
}

u32 p4_pd_sample_spread_supports_entry_priority() { return has_priority(tables::spread); }

pd_status p4_pd_sample_always_set_default_action_NoAction(
    pd_sess_hdl sess, pd_dev_target dev_tgt, pd_entry_hdl *entry_hdl)
{
    return set_default_action<tables::always, actions::NoAction>(sess, dev_tgt, {  }, entry_hdl);
}

pd_status p4_pd_sample_always_table_get_default_entry(
    pd_sess_hdl sess, pd_dev_target dev_tgt, u8 read_from_hw, pd_default_action_out *action)
{
    return get_default_entry(reader<tables::always>, sess, dev_tgt, read_from_hw, action);
}

pd_status p4_pd_sample_always_get_entry(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl, u8 read_from_hw,
                                        char *action_name, void *action_spec, u32 *action_number)
{
    return get_entry(reader<tables::always>, sess, dev_id, entry_hdl, read_from_hw, {  },
                     {action_name, action_spec, action_number});
}

pd_status p4_pd_sample_always_get_entry_from_plcmt_data(
    void *plcmt_data, pd_plcmt_action_out *action, u8 *is_default)
{
    return get_entry_from_plcmt_data(reader<tables::always>, plcmt_data, { .is_default = is_default },
                                     action);
}

pd_status p4_pd_sample_always_table_get_default_entry_handle(
    pd_sess_hdl sess, pd_dev_target dev_tgt, pd_entry_hdl *entry_hdl)
{
    return get_default_entry_handle(tables::always, sess, dev_tgt, entry_hdl);
}

pd_status p4_pd_sample_always_table_reset_default_entry(pd_sess_hdl sess, pd_dev_target dev_tgt)
{
    return reset_default_entry(tables::always, sess, dev_tgt);
}

pd_status p4_pd_sample_always_get_plcmt_data(pd_word first, pd_word second)
{
    return get_plcmt_data(tables::always, first, second);
}

pd_status p4_pd_sample_always_get_entry_count(pd_sess_hdl sess, pd_dev_target dev_tgt, u32 *count)
{
    return get_entry_count(tables::always, sess, dev_tgt, count);
}

pd_status p4_pd_sample_always_get_first_entry_handle(
    pd_sess_hdl sess, pd_dev_target dev_tgt, pd_entry_hdl *first)
{
    return get_first_entry_handle(tables::always, sess, dev_tgt, first);
}

pd_status p4_pd_sample_always_get_next_entry_handles(
    pd_sess_hdl sess, pd_dev_target dev_tgt, pd_entry_hdl entry_hdl, u32 count, pd_entry_hdl *next)
{
    return get_next_entry_handles(tables::always, sess, dev_tgt, entry_hdl, count, next);
}

pd_status p4_pd_sample_always_set_property(
    pd_sess_hdl sess, u32 dev_id, u32 property, u32 value, u32 second_value)
{
    return set_property(tables::always, sess, dev_id, property, value, second_value);
}

pd_status p4_pd_sample_always_get_property(
    pd_sess_hdl sess, u32 dev_id, u32 property, u32 *value, u32 *second_value)
{
    return get_property(tables::always, sess, dev_id, property, value, second_value);
}

pd_status p4_pd_sample_always_register_mat_update_cb(
    pd_sess_hdl sess, u32 dev_id, pd_mat_update_cb callback, pd_word cookie)
{
    return register_mat_update_cb(tables::always, sess, dev_id, callback, cookie);
}

pd_status p4_pd_sample_always_get_mat_table_handle(u32 *handle)
{
    return get_mat_table_handle(tables::always, handle);
}

u32 p4_pd_sample_always_supports_entry_priority() { return has_priority(tables::always); }

