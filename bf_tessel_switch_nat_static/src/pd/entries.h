// The families that write entries of tables whose entries carry their action: add, modify, delete, by handle
// or by key, and the search of an entry by its key. Each is one sequence: records on the stack, one driver
// call, its status returned unchanged.
#pragma once

#include "action_record.h"
#include "entry_arguments.h"
#include "failure.h"
#include "match_record.h"

namespace pd {

// Hangs a direct meter on the entry. Without a spec the meter is left as it is.
template <const Table &table, const Action &action>
[[gnu::always_inline]] inline void add_direct_meter(ActionRecord<action> &record, const pd_meter_spec *meter)
{
    pipe_res_spec &resource =
        record.add_resource(table.direct_meter, meter ? PIPE_RES_ATTACH : PIPE_RES_KEEP);
    if (meter)
        fill_bytes_meter(resource.res_data.meter, *meter);
}

// Hangs an indexed resource on the entry, or takes it off when the action does not use it. `index_mask` are
// the bits of the action's parameter that make the index.
template <const Table &table, const Action &action>
[[gnu::always_inline]] inline void add_indexed_resource(ActionRecord<action> &record, const void *parameters,
                                                        u32 index_mask)
{
    constexpr std::size_t parameter = index_parameter(action, table.indexed_resource);
    if constexpr (parameter < action.parameters.size())
        record.add_resource(table.indexed_resource, PIPE_RES_ATTACH).res_index =
            load_member<32>(parameters, action.parameters[parameter].offset) & index_mask;
    else
        record.add_resource(table.indexed_resource, PIPE_RES_DETACH);
}

template <const Table &table, const Action &action>
[[gnu::always_inline]] inline void add_resources(ActionRecord<action> &record, const EntryArguments &with,
                                                 u32 index_mask)
{
    if constexpr (table.direct_counter != 0)
        record.add_resource(table.direct_counter, PIPE_RES_ATTACH);
    else if constexpr (table.direct_meter != 0)
        add_direct_meter<table>(record, with.meter);
    else if constexpr (table.indexed_resource != 0)
        add_indexed_resource<table>(record, with.action, index_mask);
}

// Deliberate: add keeps the low half of an index, both forms of modify keep all of it.
inline constexpr u32 index_mask_in_add = 0xffff;
inline constexpr u32 index_mask_in_modify = 0xffffffff;

template <const Table &table, const Binding &binding>
[[gnu::always_inline]] inline pd_status add(pd_sess_hdl sess, pd_dev_target target,
                                            const EntryArguments &with, pd_entry_hdl *entry,
                                            Place place = {__builtin_FUNCTION(), __builtin_LINE()})
{
    MatchRecord<table> match(with.key, with.priority);
    if (table.direct_meter != 0 && !with.meter)
        fail(table.missing_meter, place);
    ActionRecord<*binding.action> act(with.action);
    add_resources<table>(act, with, index_mask_in_add);
    return pipe_mgr_mat_ent_add(sess, target, table.handle, match.spec(), binding.handle, act.spec(),
                                with.ttl, 0, entry);
}

template <const Table &table, const Binding &binding>
[[gnu::always_inline]] inline pd_status modify(pd_sess_hdl sess, u32 device_id, pd_entry_hdl entry,
                                               const EntryArguments &with)
{
    ActionRecord<*binding.action> act(with.action);
    add_resources<table>(act, with, index_mask_in_modify);
    return pipe_mgr_mat_ent_set_action(sess, device_id, table.handle, entry, binding.handle, act.spec(), 0);
}

template <const Table &table, const Binding &binding>
[[gnu::always_inline]] inline pd_status modify_by_match_spec(pd_sess_hdl sess, pd_dev_target target,
                                                             const EntryArguments &with)
{
    MatchRecord<table> match(with.key, with.priority);
    ActionRecord<*binding.action> act(with.action);
    add_resources<table>(act, with, index_mask_in_modify);
    return pipe_mgr_mat_ent_set_action_by_match_spec(sess, target, table.handle, match.spec(), binding.handle,
                                                     act.spec(), 0);
}

template <const Table &table>
[[gnu::always_inline]] inline pd_status table_delete(pd_sess_hdl sess, u32 device_id, pd_entry_hdl entry)
{
    return pipe_mgr_mat_ent_del(sess, device_id, table.handle, entry, 0);
}

template <const Table &table>
[[gnu::always_inline]] inline pd_status table_delete_by_match_spec(pd_sess_hdl sess, pd_dev_target target,
                                                                   const EntryArguments &with)
{
    MatchRecord<table> match(with.key, with.priority);
    return pipe_mgr_mat_ent_del_by_match_spec(sess, target, table.handle, match.spec(), 0);
}

template <const Table &table>
[[gnu::always_inline]] inline pd_status match_spec_to_entry_hdl(pd_sess_hdl sess, pd_dev_target target,
                                                                const EntryArguments &with,
                                                                pd_entry_hdl *entry)
{
    MatchRecord<table> match(with.key, with.priority);
    return pipe_mgr_match_spec_to_ent_hdl(sess, target, table.handle, match.spec(), entry, 0);
}

} // namespace pd
