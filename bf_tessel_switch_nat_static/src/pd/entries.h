// The families that write entries of tables whose entries carry their action: add, modify, delete, by handle
// or by key, and the search of an entry by its key. Each is one sequence: records on the stack, one driver
// call, its status returned unchanged.
#pragma once

#include "action_record.h"
#include "entry_arguments.h"
#include "failure.h"
#include "match_record.h"
#include "shared_sequences.h"

namespace pd {

// The resource that hangs on an entry of the table: a direct counter or meter, or an indexed one, which is
// taken off when the action does not use it.
template <const Table &table, const Action &action>
constexpr ActionConstants entry_constants()
{
    ActionConstants constants;
    if (table.direct_counter != 0)
        constants.resource = table.direct_counter;
    else if (table.direct_meter != 0)
        constants.resource = table.direct_meter;
    else
        constants.resource = table.indexed_resource;
    const bool is_indexed = table.direct_counter == 0 && table.direct_meter == 0;
    const bool is_used =
        !is_indexed || index_parameter(action, table.indexed_resource) < action.parameters.size();
    constants.tag = is_used ? PIPE_RES_ATTACH : PIPE_RES_DETACH;
    return constants;
}

template <const Table &table, const Action &action>
using EntryRecord = ActionRecord<action, entry_constants<table, action>()>;

// Fills in what the resource of an entry does not share with others. A direct meter without a spec gets
// `without_meter`; `index_mask` are the bits of the action's parameter that make the index.
template <const Table &table, const Action &action>
[[gnu::always_inline]] inline void
fill_resource([[maybe_unused]] pipe_res_spec &resource, [[maybe_unused]] const EntryArguments &with,
              [[maybe_unused]] u32 index_mask, [[maybe_unused]] u32 without_meter = PIPE_RES_KEEP)
{
    constexpr std::size_t parameter = index_parameter(action, table.indexed_resource);
    if constexpr (table.direct_counter != 0) {
        return;
    } else if constexpr (table.direct_meter != 0) {
        if (with.meter)
            fill_bytes_meter(resource.res_data.meter, *with.meter);
        else
            resource.res_tag = without_meter;
    } else if constexpr (table.indexed_resource != 0 && parameter < action.parameters.size()) {
        resource.res_index = load_member<32>(with.action, action.parameters[parameter].offset) & index_mask;
    }
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
    EntryRecord<table, *binding.action> act(with.action);
    fill_resource<table, *binding.action>(act.resource(), with, index_mask_in_add);
    return pipe_mgr_mat_ent_add(sess, target, table.handle, match.spec(), binding.handle, act.spec(),
                                with.ttl, 0, entry);
}

template <const Table &table, const Binding &binding>
[[gnu::always_inline]] inline pd_status modify(pd_sess_hdl sess, u32 device_id, pd_entry_hdl entry,
                                               const EntryArguments &with)
{
    EntryRecord<table, *binding.action> act(with.action);
    fill_resource<table, *binding.action>(act.resource(), with, index_mask_in_modify);
    return pipe_mgr_mat_ent_set_action(sess, device_id, table.handle, entry, binding.handle, act.spec(), 0);
}

// ---- By key, and the default entry ----------------------------------------------------------------------

template <const Table &table>
inline constexpr SharedTable shared_table{table.handle, build_match<table>};

// What an entry does, for tables without a direct meter.
template <const Table &table, const Action &action>
[[gnu::noinline]] pipe_action_spec *build_action(ActionRoom &room, const void *parameters)
{
    using Record = EntryRecord<table, action>;
    static_assert(sizeof(Record) <= sizeof room);
    auto *act = new (&room) Record(parameters);
    fill_resource<table, action>(act->resource(), {.action = parameters}, index_mask_in_modify);
    return act->spec();
}

template <const Table &table, const Binding &binding>
inline constexpr SharedEntry shared_entry{&shared_table<table>, binding.handle,
                                          build_action<table, *binding.action>};

// Calls `sequence` with what the exported function is given.
template <bool has_priority, bool has_parameters, typename Sequence>
[[gnu::always_inline]] inline pd_status hand_on(const EntryArguments &with, Sequence sequence)
{
    if constexpr (has_priority && has_parameters)
        return sequence(with.priority, with.action);
    else if constexpr (has_priority)
        return sequence(with.priority);
    else if constexpr (has_parameters)
        return sequence(with.action);
    else
        return sequence();
}

template <const Table &table>
inline constexpr bool has_priority_given = key_kind(table) == Match::ternary;

template <const Table &table, const Binding &binding>
[[gnu::always_inline]] inline pd_status modify_by_match_spec(pd_sess_hdl sess, pd_dev_target target,
                                                             const EntryArguments &with)
{
    if constexpr (table.direct_meter != 0) {
        MatchRecord<table> match(with.key, with.priority);
        EntryRecord<table, *binding.action> act(with.action);
        fill_resource<table, *binding.action>(act.resource(), with, index_mask_in_modify);
        return pipe_mgr_mat_ent_set_action_by_match_spec(sess, target, table.handle, match.spec(),
                                                         binding.handle, act.spec(), 0);
    } else {
        return hand_on<has_priority_given<table>, !binding.action->parameters.empty()>(
            with, [&](auto... given) {
                return modify_by_key<decltype(given)...> TS_BESIDE((shared_entry<table, binding>), sess,
                                                                   target, with.key, given...);
            });
    }
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
    return hand_on<has_priority_given<table>, false>(with, [&](auto... given) {
        return delete_by_key<decltype(given)...> TS_BESIDE(shared_table<table>, sess, target, with.key,
                                                           given...);
    });
}

template <const Table &table>
[[gnu::always_inline]] inline pd_status match_spec_to_entry_hdl(pd_sess_hdl sess, pd_dev_target target,
                                                                const EntryArguments &with,
                                                                pd_entry_hdl *entry)
{
    return hand_on<has_priority_given<table>, false>(with, [&](auto... given) {
        return find_by_key<decltype(given)..., pd_entry_hdl *> TS_BESIDE(shared_table<table>, sess, target,
                                                                         with.key, given..., entry);
    });
}

} // namespace pd
