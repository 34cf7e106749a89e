#include "members.h"

namespace pd {

namespace {

// The driver answers into this.
struct MemberAnswer {
    u8 bytes[data_buffer_bytes] = {};
    pipe_action_data data{0, 0, bytes};
    u32 action = 0; // none: an answer that fails to come is not read as some action

    MemberAnswer() = default;
    MemberAnswer(const MemberAnswer &) = delete;
};

// Tells what the member does. The action's row comes back, null for one that the profile lacks.
const ActionReader *read_action(const MemberReader &profile, const MemberAnswer &answer, const ActionOut &out,
                                Place place)
{
    const ActionReader *found = find_action(profile.actions, answer.action);
    if (!found) {
        PD_ASSERT_OR_STATUS("((void *)0)", "NULL", place);
        return nullptr;
    }
    *out.action_number = found->number;
    if (found->unbuild)
        found->unbuild(&answer.data, nullptr, 0, out.action);
    return found;
}

// Status and answer are of no interest: callers get no resources by this road.
void ask_for_resources(const MemberReader &profile, u32 device_id, pd_mbr_hdl member)
{
    pd_word resources = 0, count = 0;
    p4_pd_ms_mbr_get_res(*profile.state, device_id, member, &resources, &count);
}

} // namespace

pd_status get_member(const MemberReader &profile, u32 device_id, pd_mbr_hdl member, u8 from_hw,
                     const ActionOut &action, Place place)
{
    MemberAnswer answer;
    answer.data.num_bytes = data_buffer_bytes;
    const pd_status status = pipe_mgr_get_action_data_entry(profile.action_table, {device_id, PIPE_ALL_PIPES},
                                                            member, &answer.data, &answer.action, from_hw);
    if (status != PD_STATUS_SUCCESS)
        return status;
    const ActionReader *found = read_action(profile, answer, action, place);
    if (!found)
        return PD_STATUS_UNREADABLE;
    if (found->unbuild)
        ask_for_resources(profile, device_id, member);
    return PD_STATUS_SUCCESS;
}

// Deliberate: the action is looked at even when the driver could not decode the record.
pd_status get_member_from_plcmt_data(const MemberReader &profile, void *plcmt_data, const ActionOut &action,
                                     Place place)
{
    MemberAnswer answer;
    const pd_status status = pipe_mgr_plcmt_adt_data_get_entry(plcmt_data, &answer.data, &answer.action);
    return read_action(profile, answer, action, place) ? status : pd_status{PD_STATUS_UNREADABLE};
}

pd_status get_full_member_info_from_plcmt_data(const MemberReader &profile, u32 device_id, pd_mbr_hdl member,
                                               void *plcmt_data, const ActionOut &action, Place place)
{
    MemberAnswer answer;
    const pd_status status = pipe_mgr_plcmt_adt_data_get_entry(plcmt_data, &answer.data, &answer.action);
    const ActionReader *found = read_action(profile, answer, action, place);
    if (!found)
        return PD_STATUS_UNREADABLE;
    if (found->unbuild && *profile.state != 0)
        ask_for_resources(profile, static_cast<u8>(device_id), member); // deliberate: eight bits only
    return status;
}

} // namespace pd
