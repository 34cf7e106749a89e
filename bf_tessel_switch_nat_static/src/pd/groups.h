// The families of a profile's selector groups. As with members, the driver goes first and the
// member-selection store follows; what the store answers to a change is ignored, deliberately, but for the
// deletion of a group.
#pragma once

#include "failure.h"
#include "internal.h"
#include "pd_ms.h"
#include "pipe_mgr.h"
#include "rows_profiles.h"

namespace TS_INTERNAL pd {

// ---- Groups ----

// A marker that the driver wants to see with each new group.
inline constexpr u32 new_group_marker = 0xdeadbeef;

inline pd_status create_group(const Profile &profile, pd_sess_hdl sess, pd_dev_target target,
                              u32 max_group_size, pd_grp_hdl *group)
{
    const pd_status status =
        pipe_mgr_sel_grp_add(sess, target, profile.selector, 0, max_group_size, new_group_marker, group, 0);
    if (status == PD_STATUS_SUCCESS)
        p4_pd_ms_new_grp(sess, *profile.state, target.device_id, *group);
    return status;
}

pd_status del_group(const Profile &profile, pd_sess_hdl sess, u32 device_id, pd_grp_hdl group);

// ---- Membership ----

pd_status add_member_to_group(const Profile &profile, pd_sess_hdl sess, u32 device_id, pd_grp_hdl group,
                              pd_mbr_hdl member);

// The group keeps its recorded action, even when its last member leaves.
inline pd_status del_member_from_group(const Profile &profile, pd_sess_hdl sess, u32 device_id,
                                       pd_grp_hdl group, pd_mbr_hdl member)
{
    const pd_status status = pipe_mgr_sel_grp_mbr_del(sess, device_id, profile.selector, group, member, 0);
    if (status == PD_STATUS_SUCCESS)
        p4_pd_ms_del_mbr_from_grp(sess, *profile.state, device_id, member, group);
    return status;
}

pd_status group_member_state_set(const Profile &profile, pd_sess_hdl sess, u32 device_id, pd_grp_hdl group,
                                 pd_mbr_hdl member, u32 mbr_state,
                                 Place place = {__builtin_FUNCTION(), __builtin_LINE()});

pd_status group_member_state_get(const Profile &profile, pd_sess_hdl sess, u32 device_id, pd_grp_hdl group,
                                 pd_mbr_hdl member, u32 *mbr_state);

inline pd_status group_member_get_from_hash(const Profile &profile, pd_sess_hdl sess, u32 device_id,
                                            pd_grp_hdl group, pd_word first, pd_word second, pd_word third)
{
    return pipe_mgr_sel_grp_mbr_get_from_hash(sess, device_id, profile.selector, group, first, second, third);
}

inline pd_status set_fallback_member(const Profile &profile, pd_sess_hdl sess, pd_dev_target target,
                                     pd_mbr_hdl member)
{
    return pipe_mgr_sel_fallback_mbr_set(sess, target, profile.selector, member, 0);
}

inline pd_status reset_fallback_member(const Profile &profile, pd_sess_hdl sess, pd_dev_target target)
{
    return pipe_mgr_sel_fallback_mbr_reset(sess, target, profile.selector, 0);
}

// ---- Walks and counts ----

inline pd_status get_selector_group_count(const Profile &profile, pd_sess_hdl sess, pd_dev_target target,
                                          u32 *count)
{
    return pipe_mgr_get_entry_count(sess, target, profile.selector, 0, count);
}

inline pd_status get_selector_group_member_count(const Profile &profile, pd_sess_hdl sess, u32 device_id,
                                                 pd_grp_hdl group, u32 *count)
{
    return pipe_mgr_get_sel_grp_mbr_count(sess, device_id, profile.selector, group, count);
}

inline pd_status get_first_group(const Profile &profile, pd_sess_hdl sess, pd_dev_target target,
                                 pd_grp_hdl *first)
{
    return pipe_mgr_get_first_entry_handle(sess, profile.selector, target, first);
}

inline pd_status get_next_groups(const Profile &profile, pd_sess_hdl sess, pd_dev_target target,
                                 pd_grp_hdl after, u32 count, pd_grp_hdl *next)
{
    return pipe_mgr_get_next_entry_handles(sess, profile.selector, target, after, count, next);
}

inline pd_status get_first_group_member(const Profile &profile, pd_sess_hdl sess, u32 device_id,
                                        pd_grp_hdl group, pd_mbr_hdl *first)
{
    return pipe_mgr_get_first_group_member(sess, profile.selector, device_id, group, first);
}

inline pd_status get_next_group_members(const Profile &profile, pd_sess_hdl sess, u32 device_id,
                                        pd_grp_hdl group, pd_mbr_hdl after, u32 count, pd_mbr_hdl *next)
{
    return pipe_mgr_get_next_group_members(sess, profile.selector, device_id, group, after, count, next);
}

inline pd_status get_word_llp_active_member_count(const Profile &profile, pd_sess_hdl sess,
                                                  pd_dev_target target, pd_word word, pd_word count)
{
    return pipe_mgr_get_word_llp_active_member_count(sess, target, profile.selector, word, count);
}

inline pd_status get_word_llp_active_members(const Profile &profile, pd_sess_hdl sess, pd_dev_target target,
                                             pd_word word, pd_word count, pd_word members)
{
    return pipe_mgr_get_word_llp_active_members(sess, target, profile.selector, word, count, members);
}

// ---- Callbacks, handle, placement ----

inline pd_status register_callback(const Profile &profile, pd_sess_hdl sess, u32 device_id,
                                   pd_sel_update_cb callback, pd_word cookie)
{
    return pipe_mgr_sel_tbl_register_cb(sess, device_id, profile.selector, callback, cookie);
}

// Registers without a session.
inline pd_status sel_track_updates(const Profile &profile, u32 device_id, pd_sel_update_cb callback,
                                   pd_word cookie)
{
    return register_callback(profile, 0, device_id, callback, cookie);
}

inline pd_status register_sel_update_cb(const Profile &profile, pd_sess_hdl sess, u32 device_id,
                                        pd_sel_update_cb callback, pd_word cookie)
{
    return pipe_register_sel_update_cb(sess, device_id, profile.selector, callback, cookie);
}

inline pd_status get_sel_table_handle(const Profile &profile, u32 *handle)
{
    if (handle)
        *handle = profile.selector;
    return PD_STATUS_SUCCESS;
}

inline pd_status sel_get_plcmt_data(const Profile &profile, pd_word first, pd_word second)
{
    return pipe_mgr_plcmt_sel_data_get(first, second, profile.selector);
}

} // namespace pd
