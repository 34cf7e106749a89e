// The families of an action profile's members. A member lives in two stores, the driver's action data table
// and the member-selection store that knows its action. The driver goes first, so that the second store never
// has a member that the chip lacks; what the second answers to a change is ignored, deliberately, and nothing
// is rolled back.
#pragma once

#include "action_reader.h"
#include "action_record.h"
#include "entry_arguments.h"
#include "failure.h"
#include "internal.h"
#include "pd_ms.h"
#include "rows_profiles.h"

namespace TS_INTERNAL pd {

template <const Action &action>
using MemberRecord = ActionRecord<action, ActionConstants{.kind = PIPE_ACTION_NONE}>;

template <const Profile &profile, const Binding &binding>
inline pd_status add_member(pd_sess_hdl sess, pd_dev_target target, const EntryArguments &with,
                            pd_mbr_hdl *member)
{
    MemberRecord<*binding.action> act(with.action);
    const pd_status status =
        pipe_mgr_adt_ent_add(sess, target, profile.action_table, binding.handle, 0, act.spec(), member, 0);
    if (status != PD_STATUS_SUCCESS)
        return status;
    p4_pd_ms_new_mbr(sess, *profile.state, target.device_id, *member);
    p4_pd_ms_set_mbr_act(*profile.state, target.device_id, *member, binding.handle);
    return PD_STATUS_SUCCESS;
}

// A member keeps its action: only the parameters can change.
template <const Profile &profile, const Binding &binding>
inline pd_status modify_member(pd_sess_hdl sess, u32 device_id, pd_mbr_hdl member, const EntryArguments &with)
{
    u32 current = 0;
    const pd_status status = p4_pd_ms_get_mbr_act(*profile.state, device_id, member, &current);
    if (status != PD_STATUS_SUCCESS)
        return status;
    if (current != binding.handle)
        return PD_STATUS_MISMATCH;
    MemberRecord<*binding.action> act(with.action);
    return pipe_mgr_adt_ent_set(sess, device_id, profile.action_table, member, binding.handle, act.spec(), 0);
}

inline pd_status del_member(const Profile &profile, pd_sess_hdl sess, u32 device_id, pd_mbr_hdl member)
{
    const pd_status status = pipe_mgr_adt_ent_del(sess, device_id, profile.action_table, member, 0);
    if (status == PD_STATUS_SUCCESS)
        p4_pd_ms_del_mbr(sess, *profile.state, device_id, member);
    return status;
}

inline pd_status get_first_member(const Profile &profile, pd_sess_hdl sess, pd_dev_target target,
                                  pd_mbr_hdl *first)
{
    return pipe_mgr_get_first_entry_handle(sess, profile.action_table, target, first);
}

inline pd_status get_next_members(const Profile &profile, pd_sess_hdl sess, pd_dev_target target,
                                  pd_mbr_hdl after, u32 count, pd_mbr_hdl *next)
{
    return pipe_mgr_get_next_entry_handles(sess, profile.action_table, target, after, count, next);
}

inline pd_status get_act_prof_entry_count(const Profile &profile, pd_sess_hdl sess, pd_dev_target target,
                                          u32 *count)
{
    return pipe_mgr_get_entry_count(sess, target, profile.action_table, 0, count);
}

inline pd_status register_adt_update_cb(const Profile &profile, pd_sess_hdl sess, u32 device_id,
                                        pd_adt_update_cb callback, pd_word cookie)
{
    return pipe_register_adt_update_cb(sess, device_id, profile.action_table, callback, cookie);
}

inline pd_status get_adt_table_handle(const Profile &profile, u32 *handle)
{
    if (handle)
        *handle = profile.action_table;
    return PD_STATUS_SUCCESS;
}

inline pd_status get_member_plcmt_data(const Profile &profile, pd_word first, pd_word second)
{
    return pipe_mgr_plcmt_adt_data_get(first, second, profile.action_table);
}

// ---- Reading ----

struct MemberReader {
    u32 action_table;
    const pd_word *state;
    std::span<const ActionReader> actions;
};

template <const Profile &profile>
constexpr MemberReader make_member_reader()
{
    return {profile.action_table, profile.state, action_readers<profile>};
}

template <typename Member>
ActionOut member_out(Member *member)
{
    return {nullptr, &member->parameters, &member->action_number};
}

pd_status get_member(const MemberReader &profile, u32 device_id, pd_mbr_hdl member, u8 from_hw,
                     const ActionOut &action, Place place = {__builtin_FUNCTION(), __builtin_LINE()});

pd_status get_member_from_plcmt_data(const MemberReader &profile, void *plcmt_data, const ActionOut &action,
                                     Place place = {__builtin_FUNCTION(), __builtin_LINE()});

// Asks the member-selection store for the member's resources as well, and makes nothing of the answer.
pd_status get_full_member_info_from_plcmt_data(const MemberReader &profile, u32 device_id, pd_mbr_hdl member,
                                               void *plcmt_data, const ActionOut &action,
                                               Place place = {__builtin_FUNCTION(), __builtin_LINE()});

} // namespace pd
