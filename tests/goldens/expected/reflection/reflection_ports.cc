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
};

extern const TableFunctions always_table;
constexpr TableFunctions always_table{
    .row = &pd::tables::always,
    .actions = always_functions,
    .table_delete = nullptr,
    .table_delete_by_match_spec = nullptr,
    .match_spec_to_entry_hdl = nullptr,
};

} // namespace reflection
