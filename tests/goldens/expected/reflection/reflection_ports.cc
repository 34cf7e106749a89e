// Sample tables. Generated from the catalogue: edit its rows, not this file.
#include "pd_ports.h"

#include "reflection_tables.h"
#include "rows_ports.h"

namespace reflection {

namespace {

const p4_pd_sample_stationCheck_match_spec_t *stationCheck_key(const EntryArguments &arguments)
{
    return static_cast<const p4_pd_sample_stationCheck_match_spec_t *>(arguments.key);
}

constexpr ActionFunctions stationCheck_functions[] = {
    {
        .row = &pd::tables::stationCheck_actions[0],
        .add = [](pd_sess_hdl sess, pd_dev_target dev_tgt, [[maybe_unused]] const EntryArguments &with,
                  pd_entry_hdl *entry_hdl) {
            return p4_pd_sample_stationCheck_table_add_with_NoAction(
                sess, dev_tgt, stationCheck_key(with), with.priority, with.ttl, with.meter, entry_hdl);
        },
        .modify = [](pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl,
                     [[maybe_unused]] const EntryArguments &with) {
            return p4_pd_sample_stationCheck_table_modify_with_NoAction(sess, dev_id, entry_hdl, with.meter);
        },
        .modify_by_match_spec = [](pd_sess_hdl sess, pd_dev_target dev_tgt, const EntryArguments &with) {
            return p4_pd_sample_stationCheck_table_modify_with_NoAction_by_match_spec(
                sess, dev_tgt, stationCheck_key(with), with.priority, with.meter);
        },
        .set_default_action = [](pd_sess_hdl sess, pd_dev_target dev_tgt,
                                 [[maybe_unused]] const EntryArguments &with, pd_entry_hdl *entry_hdl) {
            return p4_pd_sample_stationCheck_set_default_action_NoAction(
                sess, dev_tgt, with.meter, entry_hdl);
        },
    },
    {
        .row = &pd::tables::stationCheck_actions[1],
        .add = [](pd_sess_hdl sess, pd_dev_target dev_tgt, [[maybe_unused]] const EntryArguments &with,
                  pd_entry_hdl *entry_hdl) {
            return p4_pd_sample_stationCheck_table_add_with_setDomain(
                sess, dev_tgt, stationCheck_key(with), with.priority,
                static_cast<const p4_pd_sample_setDomain_action_spec_t *>(with.action), with.ttl, with.meter,
                entry_hdl);
        },
        .modify = [](pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl,
                     [[maybe_unused]] const EntryArguments &with) {
            return p4_pd_sample_stationCheck_table_modify_with_setDomain(
                sess, dev_id, entry_hdl,
                static_cast<const p4_pd_sample_setDomain_action_spec_t *>(with.action), with.meter);
        },
        .modify_by_match_spec = [](pd_sess_hdl sess, pd_dev_target dev_tgt, const EntryArguments &with) {
            return p4_pd_sample_stationCheck_table_modify_with_setDomain_by_match_spec(
                sess, dev_tgt, stationCheck_key(with), with.priority,
                static_cast<const p4_pd_sample_setDomain_action_spec_t *>(with.action), with.meter);
        },
        .set_default_action = nullptr,
    },
};

const p4_pd_sample_route_match_spec_t *route_key(const EntryArguments &arguments)
{
    return static_cast<const p4_pd_sample_route_match_spec_t *>(arguments.key);
}

constexpr ActionFunctions route_functions[] = {
    {
        .row = &pd::tables::route_actions[0],
        .add = [](pd_sess_hdl sess, pd_dev_target dev_tgt, [[maybe_unused]] const EntryArguments &with,
                  pd_entry_hdl *entry_hdl) {
            return p4_pd_sample_route_table_add_with_meterRoute(
                sess, dev_tgt, route_key(with),
                static_cast<const p4_pd_sample_meterRoute_action_spec_t *>(with.action), entry_hdl);
        },
        .modify = [](pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl,
                     [[maybe_unused]] const EntryArguments &with) {
            return p4_pd_sample_route_table_modify_with_meterRoute(
                sess, dev_id, entry_hdl,
                static_cast<const p4_pd_sample_meterRoute_action_spec_t *>(with.action));
        },
        .modify_by_match_spec = [](pd_sess_hdl sess, pd_dev_target dev_tgt, const EntryArguments &with) {
            return p4_pd_sample_route_table_modify_with_meterRoute_by_match_spec(
                sess, dev_tgt, route_key(with),
                static_cast<const p4_pd_sample_meterRoute_action_spec_t *>(with.action));
        },
        .set_default_action = nullptr,
    },
};

const p4_pd_sample_spread_match_spec_t *spread_key(const EntryArguments &arguments)
{
    return static_cast<const p4_pd_sample_spread_match_spec_t *>(arguments.key);
}

constexpr ActionFunctions always_functions[] = {
    {
        .row = &pd::tables::always_actions[0],
        .add = nullptr,
        .modify = nullptr,
        .modify_by_match_spec = nullptr,
        .set_default_action = [](pd_sess_hdl sess, pd_dev_target dev_tgt,
                                 [[maybe_unused]] const EntryArguments &with, pd_entry_hdl *entry_hdl) {
            return p4_pd_sample_always_set_default_action_NoAction(sess, dev_tgt, entry_hdl);
        },
    },
};

} // namespace

extern const TableFunctions stationCheck_table;
constexpr TableFunctions stationCheck_table{
    .row = &pd::tables::stationCheck,
    .actions = stationCheck_functions,
    .table_delete = p4_pd_sample_stationCheck_table_delete,
    .table_delete_by_match_spec = [](pd_sess_hdl sess, pd_dev_target dev_tgt, const EntryArguments &with) {
        return p4_pd_sample_stationCheck_table_delete_by_match_spec(
            sess, dev_tgt, stationCheck_key(with), with.priority);
    },
    .match_spec_to_entry_hdl = [](pd_sess_hdl sess, pd_dev_target dev_tgt, const EntryArguments &with,
                                  pd_entry_hdl *entry_hdl) {
        return p4_pd_sample_stationCheck_match_spec_to_entry_hdl(
            sess, dev_tgt, stationCheck_key(with), with.priority, entry_hdl);
    },
    .unbuild_key = [](const pipe_match_spec *match, void *key) {
        unbuild_key_stationCheck(match, static_cast<p4_pd_sample_stationCheck_match_spec_t *>(key));
    },
    .unbuild_mask = [](const pipe_match_spec *match, void *key) {
        unbuild_mask_stationCheck(match, static_cast<p4_pd_sample_stationCheck_match_spec_t *>(key));
    },
    .get_default_entry = p4_pd_sample_stationCheck_table_get_default_entry,
    .get_entry = [](pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl, u8 read_from_hw,
                    const EntryResults &to) {
        return p4_pd_sample_stationCheck_get_entry(
            sess, dev_id, entry_hdl, read_from_hw,
            static_cast<p4_pd_sample_stationCheck_match_spec_t *>(to.key), to.priority, to.action_name,
            to.action, to.action_number, to.is_default);
    },
    .get_entry_from_plcmt_data = [](void *plcmt_data, const EntryResults &to, pd_plcmt_action_out *action) {
        return p4_pd_sample_stationCheck_get_entry_from_plcmt_data(
            plcmt_data, static_cast<p4_pd_sample_stationCheck_match_spec_t *>(to.key), to.priority, action,
            to.is_default);
    },
    .get_default_entry_handle = p4_pd_sample_stationCheck_table_get_default_entry_handle,
    .reset_default_entry = p4_pd_sample_stationCheck_table_reset_default_entry,
    .get_plcmt_data = p4_pd_sample_stationCheck_get_plcmt_data,
    .get_entry_count = p4_pd_sample_stationCheck_get_entry_count,
    .get_first_entry_handle = p4_pd_sample_stationCheck_get_first_entry_handle,
    .get_next_entry_handles = p4_pd_sample_stationCheck_get_next_entry_handles,
    .set_property = p4_pd_sample_stationCheck_set_property,
    .get_property = p4_pd_sample_stationCheck_get_property,
    .register_mat_update_cb = p4_pd_sample_stationCheck_register_mat_update_cb,
    .get_mat_table_handle = p4_pd_sample_stationCheck_get_mat_table_handle,
    .supports_entry_priority = p4_pd_sample_stationCheck_supports_entry_priority,
};

extern const TableFunctions route_table;
constexpr TableFunctions route_table{
    .row = &pd::tables::route,
    .actions = route_functions,
    .table_delete = p4_pd_sample_route_table_delete,
    .table_delete_by_match_spec = [](pd_sess_hdl sess, pd_dev_target dev_tgt, const EntryArguments &with) {
        return p4_pd_sample_route_table_delete_by_match_spec(sess, dev_tgt, route_key(with));
    },
    .match_spec_to_entry_hdl = [](pd_sess_hdl sess, pd_dev_target dev_tgt, const EntryArguments &with,
                                  pd_entry_hdl *entry_hdl) {
        return p4_pd_sample_route_match_spec_to_entry_hdl(sess, dev_tgt, route_key(with), entry_hdl);
    },
    .unbuild_key = [](const pipe_match_spec *match, void *key) {
        unbuild_key_route(match, static_cast<p4_pd_sample_route_match_spec_t *>(key));
    },
    .unbuild_mask = [](const pipe_match_spec *match, void *key) {
        unbuild_mask_route(match, static_cast<p4_pd_sample_route_match_spec_t *>(key));
    },
    .get_default_entry = p4_pd_sample_route_table_get_default_entry,
    .get_entry = [](pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl, u8 read_from_hw,
                    const EntryResults &to) {
        return p4_pd_sample_route_get_entry(
            sess, dev_id, entry_hdl, read_from_hw, static_cast<p4_pd_sample_route_match_spec_t *>(to.key),
            to.action_name, to.action, to.action_number, to.is_default);
    },
    .get_entry_from_plcmt_data = [](void *plcmt_data, const EntryResults &to, pd_plcmt_action_out *action) {
        return p4_pd_sample_route_get_entry_from_plcmt_data(
            plcmt_data, static_cast<p4_pd_sample_route_match_spec_t *>(to.key), action, to.is_default);
    },
    .get_default_entry_handle = p4_pd_sample_route_table_get_default_entry_handle,
    .reset_default_entry = p4_pd_sample_route_table_reset_default_entry,
    .get_plcmt_data = p4_pd_sample_route_get_plcmt_data,
    .get_entry_count = p4_pd_sample_route_get_entry_count,
    .get_first_entry_handle = p4_pd_sample_route_get_first_entry_handle,
    .get_next_entry_handles = p4_pd_sample_route_get_next_entry_handles,
    .set_property = p4_pd_sample_route_set_property,
    .get_property = p4_pd_sample_route_get_property,
    .register_mat_update_cb = p4_pd_sample_route_register_mat_update_cb,
    .get_mat_table_handle = p4_pd_sample_route_get_mat_table_handle,
    .supports_entry_priority = p4_pd_sample_route_supports_entry_priority,
};

extern const TableFunctions spread_table;
constexpr TableFunctions spread_table{
    .row = &pd::tables::spread,
    .actions = {},
    .table_delete = p4_pd_sample_spread_table_delete,
    .table_delete_by_match_spec = [](pd_sess_hdl sess, pd_dev_target dev_tgt, const EntryArguments &with) {
        return p4_pd_sample_spread_table_delete_by_match_spec(sess, dev_tgt, spread_key(with));
    },
    .match_spec_to_entry_hdl = [](pd_sess_hdl sess, pd_dev_target dev_tgt, const EntryArguments &with,
                                  pd_entry_hdl *entry_hdl) {
        return p4_pd_sample_spread_match_spec_to_entry_hdl(sess, dev_tgt, spread_key(with), entry_hdl);
    },
    .unbuild_key = [](const pipe_match_spec *match, void *key) {
        unbuild_key_spread(match, static_cast<p4_pd_sample_spread_match_spec_t *>(key));
    },
    .unbuild_mask = nullptr,
    .get_default_entry = nullptr,
    .get_entry = nullptr,
    .get_entry_from_plcmt_data = nullptr,
    .get_default_entry_handle = p4_pd_sample_spread_table_get_default_entry_handle,
    .reset_default_entry = p4_pd_sample_spread_table_reset_default_entry,
    .get_plcmt_data = p4_pd_sample_spread_get_plcmt_data,
    .get_entry_count = p4_pd_sample_spread_get_entry_count,
    .get_first_entry_handle = p4_pd_sample_spread_get_first_entry_handle,
    .get_next_entry_handles = p4_pd_sample_spread_get_next_entry_handles,
    .set_property = p4_pd_sample_spread_set_property,
    .get_property = p4_pd_sample_spread_get_property,
    .register_mat_update_cb = p4_pd_sample_spread_register_mat_update_cb,
    .get_mat_table_handle = p4_pd_sample_spread_get_mat_table_handle,
    .supports_entry_priority = p4_pd_sample_spread_supports_entry_priority,
};

extern const TableFunctions always_table;
constexpr TableFunctions always_table{
    .row = &pd::tables::always,
    .actions = always_functions,
    .table_delete = nullptr,
    .table_delete_by_match_spec = nullptr,
    .match_spec_to_entry_hdl = nullptr,
    .unbuild_key = nullptr,
    .unbuild_mask = nullptr,
    .get_default_entry = p4_pd_sample_always_table_get_default_entry,
    .get_entry = [](pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl, u8 read_from_hw,
                    const EntryResults &to) {
        return p4_pd_sample_always_get_entry(
            sess, dev_id, entry_hdl, read_from_hw, to.action_name, to.action, to.action_number);
    },
    .get_entry_from_plcmt_data = [](void *plcmt_data, const EntryResults &to, pd_plcmt_action_out *action) {
        return p4_pd_sample_always_get_entry_from_plcmt_data(plcmt_data, action, to.is_default);
    },
    .get_default_entry_handle = p4_pd_sample_always_table_get_default_entry_handle,
    .reset_default_entry = p4_pd_sample_always_table_reset_default_entry,
    .get_plcmt_data = p4_pd_sample_always_get_plcmt_data,
    .get_entry_count = p4_pd_sample_always_get_entry_count,
    .get_first_entry_handle = p4_pd_sample_always_get_first_entry_handle,
    .get_next_entry_handles = p4_pd_sample_always_get_next_entry_handles,
    .set_property = p4_pd_sample_always_set_property,
    .get_property = p4_pd_sample_always_get_property,
    .register_mat_update_cb = p4_pd_sample_always_register_mat_update_cb,
    .get_mat_table_handle = p4_pd_sample_always_get_mat_table_handle,
    .supports_entry_priority = p4_pd_sample_always_supports_entry_priority,
};

} // namespace reflection
