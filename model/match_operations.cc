// The driver operations that write match entries, and the control functions that look at them.
#include "pipe_mgr_match.h"
#include "table_operation.h"

using namespace model;

namespace {

// `copy`: which of the table's two.
pd_status look_up(ts_model_hit (Table::*copy)(const u8 *, u32), u32 device_id, u32 table,
                  std::span<const u8> key, u32 partition_index, ts_model_hit *hit)
{
    return with_table(device_id, table, [&](Table &found) {
        if (key.data() == nullptr || hit == nullptr || key.size() != found.program().key_bytes)
            return bad_argument;
        *hit = (found.*copy)(key.data(), partition_index);
        return ok;
    });
}

} // namespace

// ---- Driver operations ----------------------------------------------------------------------------------

namespace model {

pd_status pipe_mgr_mat_ent_add(pd_sess_hdl, pd_dev_target target, u32 table, pipe_match_spec *match,
                               u32 action, pipe_action_spec *spec, u32 ttl, u32, pd_entry_hdl *entry)
{
    const auto add = [&](Table &found, News &news) {
        if (const pd_status status = check_match(found.program(), *match))
            return status;
        constexpr pd_entry_hdl not_yet = 0;
        if (const pd_status status = check_action(found.program(), not_yet, action, *spec))
            return status;
        return found.add(*match, action, *spec, ttl, capacity_of(found.program()), *entry, news);
    };
    return change_table(target.device_id, table, add);
}

pd_status pipe_mgr_mat_ent_set_action(pd_sess_hdl, u32 device_id, u32 table, pd_entry_hdl entry, u32 action,
                                      pipe_action_spec *spec, u32)
{
    return change_table(device_id, table, [&](Table &found, News &news) {
        return set_action(found, entry, action, *spec, news);
    });
}

pd_status pipe_mgr_mat_ent_set_action_by_match_spec(pd_sess_hdl, pd_dev_target target, u32 table,
                                                    pipe_match_spec *match, u32 action,
                                                    pipe_action_spec *spec, u32)
{
    const auto set = [&](Table &found, News &news) {
        return with_entry(found, *match,
                          [&](pd_entry_hdl entry) { return set_action(found, entry, action, *spec, news); });
    };
    return change_table(target.device_id, table, set);
}

pd_status pipe_mgr_mat_ent_del(pd_sess_hdl, u32 device_id, u32 table, pd_entry_hdl entry, u32)
{
    return change_table(device_id, table,
                        [&](Table &found, News &news) { return found.remove(entry, news); });
}

pd_status pipe_mgr_mat_ent_del_by_match_spec(pd_sess_hdl, pd_dev_target target, u32 table,
                                             pipe_match_spec *match, u32)
{
    const auto remove = [&](Table &found, News &news) {
        return with_entry(found, *match, [&](pd_entry_hdl entry) { return found.remove(entry, news); });
    };
    return change_table(target.device_id, table, remove);
}

pd_status pipe_mgr_match_spec_to_ent_hdl(pd_sess_hdl, pd_dev_target target, u32 table, pipe_match_spec *match,
                                         pd_entry_hdl *entry, u32)
{
    const auto tell = [&](pd_entry_hdl found) {
        *entry = found;
        return ok;
    };
    return with_table(target.device_id, table, [&](Table &found) { return with_entry(found, *match, tell); });
}

} // namespace model

extern "C" {

// ---- Control --------------------------------------------------------------------------------------------

pd_status ts_model_set_capacity(u32 table, u32 entries)
{
    const ProgramTable *found = find_table(table);
    if (found == nullptr)
        return unknown_object;
    set_capacity(*found, entries);
    return ok;
}

u32 ts_model_capacity(u32 table)
{
    const ProgramTable *found = find_table(table);
    return found == nullptr ? 0 : capacity_of(*found);
}

u32 ts_model_entry_count(u32 device_id, u32 table)
{
    u32 count = 0;
    with_table(device_id, table, [&](Table &found) {
        count = found.count();
        return ok;
    });
    return count;
}

pd_status ts_model_lookup(u32 device_id, u32 table, const u8 *key, u32 bytes, u32 partition_index,
                          ts_model_hit *hit)
{
    return look_up(&Table::look_up, device_id, table, {key, bytes}, partition_index, hit);
}

pd_status ts_model_hardware_lookup(u32 device_id, u32 table, const u8 *key, u32 bytes, u32 partition_index,
                                   ts_model_hit *hit)
{
    return look_up(&Table::look_up_hardware, device_id, table, {key, bytes}, partition_index, hit);
}

pd_status ts_model_get_entry(u32 device_id, u32 table, pd_entry_hdl entry, ts_model_entry *out)
{
    return with_table(device_id, table, [&](Table &found) {
        const auto contents = found.software(entry);
        if (out == nullptr || !contents)
            return out == nullptr ? bad_argument : unknown_object;
        *out = public_form(*contents);
        return ok;
    });
}

pd_entry_hdl ts_model_next_entry(u32 device_id, u32 table, pd_entry_hdl after)
{
    pd_entry_hdl next = 0;
    with_table(device_id, table, [&](Table &found) {
        next = found.next(after);
        return ok;
    });
    return next;
}

} // extern "C"
