#include "groups.h"

#include <algorithm>

#include "sys_array.h"

namespace pd {

namespace {

// Takes the group out of the driver, then out of the member-selection store, whose status counts here.
pd_status del_group_with(const Profile &profile, pd_sess_hdl sess, u32 device_id, pd_grp_hdl group, u32 count,
                         pd_mbr_hdl *members)
{
    const pd_status status = pipe_mgr_sel_grp_del(sess, device_id, profile.selector, group, 0);
    if (status != PD_STATUS_SUCCESS)
        return status;
    return p4_pd_ms_del_grp(sess, *profile.state, device_id, group, count, members);
}

} // namespace

// The store has to be told who was in the group, and the driver can no longer say so afterwards.
pd_status del_group(const Profile &profile, pd_sess_hdl sess, u32 device_id, pd_grp_hdl group)
{
    u32 count = 0, written = 0;
    pd_status status = pipe_mgr_get_sel_grp_mbr_count(sess, device_id, profile.selector, group, &count);
    if (status != PD_STATUS_SUCCESS)
        return status;
    if (count == 0)
        return del_group_with(profile, sess, device_id, group, 0, nullptr);
    const SysArray<pd_mbr_hdl> members(count);
    const SysArray<u8> states(count); // the driver wants to tell them
    if (!members || !states)
        return PD_STATUS_NO_MEMORY;
    status = pipe_mgr_sel_grp_mbrs_get(sess, device_id, profile.selector, group, count, members.get(),
                                       states.get(), &written, 0);
    if (status != PD_STATUS_SUCCESS)
        return status;
    return del_group_with(profile, sess, device_id, group, std::min(written, count), members.get());
}

// Here the store is asked first, for the driver wants the member's action. The group takes that action over:
// it has the action of the member that came last, and nothing sees to it that all are the same.
pd_status add_member_to_group(const Profile &profile, pd_sess_hdl sess, u32 device_id, pd_grp_hdl group,
                              pd_mbr_hdl member)
{
    u32 action = 0;
    pd_status status = p4_pd_ms_get_mbr_act(*profile.state, device_id, member, &action);
    if (status != PD_STATUS_SUCCESS)
        return status;
    status = pipe_mgr_sel_grp_mbr_add(sess, device_id, profile.selector, group, action, member, 0);
    if (status != PD_STATUS_SUCCESS)
        return status;
    p4_pd_ms_add_mbr_to_grp(sess, *profile.state, device_id, member, group);
    p4_pd_ms_set_grp_act(*profile.state, device_id, group, action);
    return PD_STATUS_SUCCESS;
}

pd_status group_member_state_set(const Profile &profile, pd_sess_hdl sess, u32 device_id, pd_grp_hdl group,
                                 pd_mbr_hdl member, u32 mbr_state, Place place)
{
    if (mbr_state == P4_PD_GRP_MBR_STATE_ACTIVE)
        return pipe_mgr_sel_grp_mbr_enable(sess, device_id, profile.selector, group, member, 0);
    if (mbr_state != P4_PD_GRP_MBR_STATE_INACTIVE)
        fail("mbr_state == P4_PD_GRP_MBR_STATE_INACTIVE", place);
    return pipe_mgr_sel_grp_mbr_disable(sess, device_id, profile.selector, group, member, 0);
}

pd_status group_member_state_get(const Profile &profile, pd_sess_hdl sess, u32 device_id, pd_grp_hdl group,
                                 pd_mbr_hdl member, u32 *mbr_state)
{
    u32 state = 0;
    const pd_status status =
        pipe_mgr_sel_grp_mbr_state_get(sess, device_id, profile.selector, group, member, &state);
    if (status != PD_STATUS_SUCCESS)
        return status;
    // Deliberate: another state is no failure, and the caller's word stays as it is.
    if (state == PIPE_MEMBER_ACTIVE)
        *mbr_state = P4_PD_GRP_MBR_STATE_ACTIVE;
    else if (state == PIPE_MEMBER_INACTIVE)
        *mbr_state = P4_PD_GRP_MBR_STATE_INACTIVE;
    return PD_STATUS_SUCCESS;
}

} // namespace pd
