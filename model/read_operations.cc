// The driver operations that read match entries, those that count and walk over entries, members and groups,
// and the control functions that make the hardware's copy of an entry differ.
#include "answer.h"
#include "pipe_mgr_match.h"
#include "profile_operation.h"
#include "table_operation.h"

using namespace model;

namespace model {

// ---- Driver operations ----------------------------------------------------------------------------------

pd_status pipe_mgr_get_entry(pd_sess_hdl, u32 table, pd_dev_target target, pd_entry_hdl entry,
                             pipe_match_spec *match, pipe_action_spec *spec, u32 *action, u8 from_hw, u32,
                             u32)
{
    const auto get = [&](Table &found) {
        const auto contents = read_copy(found, entry, from_hw);
        if (!contents)
            return unknown_object;
        if (!has_room(*match, *contents) || !has_room(*spec, *contents))
            return bad_argument;
        answer_match(found.program(), *contents, *match);
        answer_action(found.program(), *contents, *spec, *action);
        return ok;
    };
    return with_table(target.device_id, table, get);
}

pd_status pipe_mgr_get_entry_count(pd_sess_hdl, pd_dev_target target, u32 table, u32, u32 *count)
{
    const auto tell = [&](const auto &found) {
        *count = found.count();
        return ok;
    };
    return with_any_table(target.device_id, table, tell);
}

pd_status pipe_mgr_get_first_entry_handle(pd_sess_hdl, u32 table, pd_dev_target target, u32 *first)
{
    const auto tell = [&](const auto &found) {
        *first = found.next(0);
        return ok;
    };
    return with_any_table(target.device_id, table, tell);
}

pd_status pipe_mgr_get_next_entry_handles(pd_sess_hdl, u32 table, pd_dev_target target, u32 after, u32 count,
                                          u32 *next)
{
    const auto tell = [&](const auto &found) {
        u32 handle = found.next(after);
        for (u32 at = 0; at < count; ++at) {
            next[at] = handle;
            handle = handle != 0 ? found.next(handle) : 0;
        }
        return ok;
    };
    return with_any_table(target.device_id, table, tell);
}

} // namespace model

extern "C" {

// ---- Control --------------------------------------------------------------------------------------------

pd_status ts_model_set_hardware_action(u32 device_id, u32 table, pd_entry_hdl entry, u32 action,
                                       const u8 *data, u32 bytes)
{
    return with_table(device_id, table, [&](Table &found) {
        const auto contents = found.hardware(entry);
        if (!contents)
            return unknown_object;
        const ProgramAction *known = find_action(found.program().actions, action);
        const bool has_data = contents->action_kind == PIPE_ACTION_DATA;
        if (known == nullptr || bytes != (has_data ? known->bytes : 0) || (data == nullptr && bytes != 0))
            return bad_argument;
        EntryCopy copy{*contents};
        copy.set_action(action, {data, bytes});
        found.set_hardware(entry, std::move(copy));
        return ok;
    });
}

pd_status ts_model_set_hardware_reference(u32 device_id, u32 table, pd_entry_hdl entry, u8 kind, u32 handle)
{
    return with_table(device_id, table, [&](Table &found) {
        const auto contents = found.hardware(entry);
        const Profile *profile = found.profile();
        if (!contents)
            return unknown_object;
        if (profile == nullptr || (kind != PIPE_ACTION_MEMBER && kind != PIPE_ACTION_GROUP))
            return bad_argument;
        const Member *member = kind == PIPE_ACTION_MEMBER ? profile->members().find(handle) : nullptr;
        const u32 action = member != nullptr ? member->software.action : contents->action;
        if (const pd_status status = profile->check({kind, handle}, action))
            return status;
        EntryCopy copy{*contents};
        copy.set_reference(action, kind, handle);
        found.set_hardware(entry, std::move(copy));
        return ok;
    });
}

pd_status ts_model_set_hardware_key(u32 device_id, u32 table, pd_entry_hdl entry, const u8 *value,
                                    const u8 *mask, u32 bytes)
{
    return with_table(device_id, table, [&](Table &found) {
        const auto contents = found.hardware(entry);
        if (!contents)
            return unknown_object;
        if (entry == TS_MODEL_DEFAULT_ENTRY || value == nullptr || mask == nullptr ||
            bytes != found.program().key_bytes)
            return bad_argument;
        EntryCopy copy{*contents};
        copy.set_key({value, bytes}, {mask, bytes});
        found.set_hardware(entry, std::move(copy));
        return ok;
    });
}

pd_status ts_model_remove_hardware_entry(u32 device_id, u32 table, pd_entry_hdl entry)
{
    return with_table(device_id, table, [&](Table &found) {
        if (!found.hardware(entry))
            return unknown_object;
        found.set_hardware(entry, std::nullopt);
        return ok;
    });
}

} // extern "C"
