// The driver operations that write match entries, and the control functions that look at them.
#include <algorithm>

#include "device.h"
#include "operation.h"
#include "pipe_mgr_match.h"
#include "trace_records.h"

using namespace model;

namespace {

pd_status check_match(const ProgramTable &table, const pipe_match_spec *match)
{
    if (table.key == Key::none || match == nullptr || match->match_value == nullptr ||
        match->match_mask == nullptr)
        return bad_argument;
    if (match->num_bytes != table.key_bytes || match->num_valid_bits != table.key_bits)
        return bad_argument;
    const bool whole_key = std::all_of(match->match_mask, match->match_mask + table.key_bytes,
                                       [](u8 byte) { return byte == 0xff; });
    return table.key == Key::exact && !whole_key ? bad_argument : ok;
}

// A direct table's entry carries its data; an indirect one's points at a member or, with a selector, a group.
bool kind_fits(const ProgramTable &table, const ProgramAction &action, const pipe_action_spec &spec)
{
    switch (spec.action_kind) {
    case PIPE_ACTION_DATA:
        return table.action_table == 0 && spec.action_data.data != nullptr &&
               spec.action_data.num_bytes == action.bytes;
    case PIPE_ACTION_MEMBER:
        return table.action_table != 0;
    case PIPE_ACTION_GROUP:
        return table.selector != 0;
    default:
        return false;
    }
}

// A table has at most one resource, so an entry names none or that one.
bool resources_fit(const ProgramTable &table, const pipe_action_spec &spec)
{
    if (spec.resource_count == 0)
        return true;
    const pipe_res_spec &resource = spec.resources[0];
    return spec.resource_count == 1 && table.resource != 0 && resource.res_handle == table.resource &&
           resource.res_tag <= PIPE_RES_DETACH;
}

pd_status check_action(const ProgramTable &table, u32 handle, const pipe_action_spec *spec)
{
    const ProgramAction *action = find_action(table.actions, handle);
    const bool fits = spec != nullptr && action != nullptr && action->entry &&
                      kind_fits(table, *action, *spec) && resources_fit(table, *spec);
    return fits ? ok : bad_argument;
}

// Runs `use` on the table and the handle of the entry with this key.
template <typename Use>
pd_status with_entry(u32 device_id, u32 table, const pipe_match_spec *match, Use use)
{
    return with_table(device_id, table, [&](MatchTable &entries) {
        if (const pd_status status = check_match(entries.program(), match))
            return status;
        const pd_entry_hdl entry = entries.find(*match);
        return entry != 0 ? use(entries, entry) : unknown_object;
    });
}

const char *action_name(u32 table_handle, u32 handle)
{
    const ProgramTable *table = find_table(table_handle);
    const ProgramAction *action = table != nullptr ? find_action(table->actions, handle) : nullptr;
    return action != nullptr ? action->name : nullptr;
}

} // namespace

// ---- Driver operations ----------------------------------------------------------------------------------

extern "C" {

pd_status pipe_mgr_mat_ent_add(pd_sess_hdl sess, pd_dev_target target, u32 table, pipe_match_spec *match,
                               u32 action, pipe_action_spec *spec, u32 ttl, u32 flags, pd_entry_hdl *entry)
{
    const auto add = [&](MatchTable &entries) {
        if (const pd_status status = check_match(entries.program(), match))
            return status;
        if (const pd_status status = check_action(entries.program(), action, spec))
            return status;
        if (entry == nullptr)
            return bad_argument;
        return entries.add(*match, action, *spec, ttl, capacity_of(entries.program()), *entry);
    };
    return run(
        "pipe_mgr_mat_ent_add", [&] { return with_table(target.device_id, table, add); },
        [&](Line &line) {
            line.number("sess", sess).target(target).table(table).words("match", match_text(match));
            line.action(action, action_name(table, action)).words("spec", action_text(spec));
            line.number("ttl", ttl).number("flags", flags);
        },
        [&](Line &line) { line.number("entry", *entry); });
}

pd_status pipe_mgr_mat_ent_set_action(pd_sess_hdl sess, u32 device_id, u32 table, pd_entry_hdl entry,
                                      u32 action, pipe_action_spec *spec, u32 flags)
{
    const auto set = [&](MatchTable &entries) {
        if (const pd_status status = check_action(entries.program(), action, spec))
            return status;
        return entries.set_action(entry, action, *spec);
    };
    return run(
        "pipe_mgr_mat_ent_set_action", [&] { return with_table(device_id, table, set); },
        [&](Line &line) {
            line.number("sess", sess).number("dev", device_id).table(table).number("entry", entry);
            line.action(action, action_name(table, action)).words("spec", action_text(spec));
            line.number("flags", flags);
        });
}

pd_status pipe_mgr_mat_ent_set_action_by_match_spec(pd_sess_hdl sess, pd_dev_target target, u32 table,
                                                    pipe_match_spec *match, u32 action,
                                                    pipe_action_spec *spec, u32 flags)
{
    const auto set = [&](MatchTable &entries, pd_entry_hdl entry) {
        if (const pd_status status = check_action(entries.program(), action, spec))
            return status;
        return entries.set_action(entry, action, *spec);
    };
    return run(
        "pipe_mgr_mat_ent_set_action_by_match_spec",
        [&] { return with_entry(target.device_id, table, match, set); },
        [&](Line &line) {
            line.number("sess", sess).target(target).table(table).words("match", match_text(match));
            line.action(action, action_name(table, action)).words("spec", action_text(spec));
            line.number("flags", flags);
        });
}

pd_status pipe_mgr_mat_ent_del(pd_sess_hdl sess, u32 device_id, u32 table, pd_entry_hdl entry, u32 flags)
{
    return run(
        "pipe_mgr_mat_ent_del",
        [&] {
            return with_table(device_id, table, [&](MatchTable &entries) { return entries.remove(entry); });
        },
        [&](Line &line) {
            line.number("sess", sess).number("dev", device_id).table(table).number("entry", entry);
            line.number("flags", flags);
        });
}

pd_status pipe_mgr_mat_ent_del_by_match_spec(pd_sess_hdl sess, pd_dev_target target, u32 table,
                                             pipe_match_spec *match, u32 flags)
{
    const auto remove = [](MatchTable &entries, pd_entry_hdl entry) { return entries.remove(entry); };
    return run(
        "pipe_mgr_mat_ent_del_by_match_spec",
        [&] { return with_entry(target.device_id, table, match, remove); },
        [&](Line &line) {
            line.number("sess", sess).target(target).table(table).words("match", match_text(match));
            line.number("flags", flags);
        });
}

pd_status pipe_mgr_match_spec_to_ent_hdl(pd_sess_hdl sess, pd_dev_target target, u32 table,
                                         pipe_match_spec *match, pd_entry_hdl *entry, u32 flags)
{
    const auto tell = [&](MatchTable &, pd_entry_hdl found) {
        if (entry == nullptr)
            return bad_argument;
        *entry = found;
        return ok;
    };
    return run(
        "pipe_mgr_match_spec_to_ent_hdl", [&] { return with_entry(target.device_id, table, match, tell); },
        [&](Line &line) {
            line.number("sess", sess).target(target).table(table).words("match", match_text(match));
            line.number("flags", flags);
        },
        [&](Line &line) { line.number("entry", *entry); });
}

// ---- Control --------------------------------------------------------------------------------------------

pd_status ts_model_set_capacity(u32 table, u32 entries)
{
    const ProgramTable *found = find_table(table);
    if (found == nullptr)
        return unknown_object;
    set_capacity(*found, entries);
    return ok;
}

u32 ts_model_entry_count(u32 device_id, u32 table)
{
    u32 count = 0;
    with_table(device_id, table, [&](MatchTable &entries) {
        count = entries.count();
        return ok;
    });
    return count;
}

pd_status ts_model_lookup(u32 device_id, u32 table, const u8 *key, u32 bytes, u32 partition_index,
                          ts_model_hit *hit)
{
    return with_table(device_id, table, [&](MatchTable &entries) {
        if (key == nullptr || hit == nullptr || bytes != entries.program().key_bytes)
            return bad_argument;
        *hit = entries.look_up(key, partition_index);
        return ok;
    });
}

pd_status ts_model_get_entry(u32 device_id, u32 table, pd_entry_hdl entry, ts_model_entry *out)
{
    return with_table(device_id, table, [&](MatchTable &entries) {
        return out != nullptr ? entries.get(entry, *out) : bad_argument;
    });
}

pd_entry_hdl ts_model_next_entry(u32 device_id, u32 table, pd_entry_hdl after)
{
    pd_entry_hdl next = 0;
    with_table(device_id, table, [&](MatchTable &entries) {
        next = entries.next(after);
        return ok;
    });
    return next;
}

} // extern "C"
