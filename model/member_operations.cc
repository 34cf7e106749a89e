// The driver operations on the members of action profiles, and the control function that makes the hardware's
// copy of a member differ.
#include <algorithm>

#include "checks.h"
#include "pipe_mgr_adt.h"
#include "placement.h"
#include "profile_operation.h"

using namespace model;

namespace {

// The buffer has been checked.
void answer(const MemberData &member, pipe_action_data &data, u32 &action)
{
    action = member.action;
    data.num_valid_bits = find_member_action(member.action)->bits;
    data.num_bytes = static_cast<u16>(member.data.size());
    std::ranges::copy(member.data, data.data);
}

bool has_buffer(const MemberData &member, const pipe_action_data &data)
{
    return member.data.empty() || data.data != nullptr;
}

std::span<const u8> image_of(const pipe_action_spec &spec)
{
    return {spec.action_data.data, spec.action_data.num_bytes};
}

} // namespace

namespace model {

// ---- Driver operations ----------------------------------------------------------------------------------

pd_status pipe_mgr_adt_ent_add(pd_sess_hdl, pd_dev_target target, u32 table, u32 action, u32,
                               pipe_action_spec *spec, pd_mbr_hdl *member, u32)
{
    const auto add = [&](Profile &profile, ProfileNews &news) {
        if (const pd_status status = check_member(profile.program(), action, *spec))
            return status;
        *member = profile.add_member(action, image_of(*spec), news);
        return ok;
    };
    return change_profile(target.device_id, find_profile_by_members(table), add);
}

pd_status pipe_mgr_adt_ent_set(pd_sess_hdl, u32 device_id, u32 table, pd_mbr_hdl member, u32 action,
                               pipe_action_spec *spec, u32)
{
    const auto set = [&](Profile &profile, ProfileNews &news) {
        if (const pd_status status = check_member(profile.program(), action, *spec))
            return status;
        return profile.set_member(member, action, image_of(*spec), news);
    };
    return change_profile(device_id, find_profile_by_members(table), set);
}

pd_status pipe_mgr_adt_ent_del(pd_sess_hdl, u32 device_id, u32 table, pd_mbr_hdl member, u32)
{
    return change_profile(
        device_id, find_profile_by_members(table),
        [&](Profile &profile, ProfileNews &news) { return profile.remove_member(member, news); });
}

pd_status pipe_mgr_get_action_data_entry(u32 table, pd_dev_target target, pd_mbr_hdl member,
                                         pipe_action_data *data, u32 *action, u8 from_hw)
{
    const auto get = [&](const Profile &profile) {
        const Member *const found = profile.members().find(member);
        if (found == nullptr)
            return unknown_object;
        const MemberData &copy = found->copy(from_hw != 0);
        if (!has_buffer(copy, *data) || data->num_bytes < copy.data.size())
            return bad_argument;
        answer(copy, *data, *action);
        return ok;
    };
    return with_profile(target.device_id, find_profile_by_members(table), get);
}

pd_status pipe_register_adt_update_cb(pd_sess_hdl sess, u32 device_id, u32 table, pipe_adt_update_cb callback,
                                      pd_word cookie)
{
    const auto set = [&](Profile &profile) {
        profile.member_listeners.set({sess, callback, cookie});
        return ok;
    };
    return with_profile(device_id, find_profile_by_members(table), set);
}

pd_status pipe_mgr_plcmt_adt_data_get(pd_word first, pd_word second, u32 table)
{
    ts_model_plcmt_request *const request = request_of(first, second);
    const auto get = [&](const Profile &profile) {
        const Member *const found = profile.members().find(request->entry);
        if (found == nullptr)
            return unknown_object;
        request->data = new Placement{MemberPlacement{table, request->entry, found->software}};
        return ok;
    };
    return answer_request(
        request, [&] { return with_profile(request->device_id, find_profile_by_members(table), get); });
}

pd_status pipe_mgr_plcmt_adt_data_get_entry(void *plcmt_data, pipe_action_data *data, u32 *action)
{
    const auto *const placement = placement_of<MemberPlacement>(plcmt_data);
    if (placement == nullptr || !has_buffer(placement->contents, *data))
        return bad_argument;
    answer(placement->contents, *data, *action);
    return ok;
}

} // namespace model

extern "C" {

// ---- Control --------------------------------------------------------------------------------------------

pd_status ts_model_set_hardware_member(u32 device_id, u32 action_table, pd_mbr_hdl member, u32 action,
                                       const u8 *data, u32 bytes)
{
    return with_profile(device_id, find_profile_by_members(action_table), [&](Profile &profile) {
        const ProgramAction *known = find_action(profile.program().actions, action);
        if (known == nullptr || bytes != known->bytes || (data == nullptr && bytes != 0))
            return bad_argument;
        return profile.set_hardware(member, {action, {data, data + bytes}});
    });
}

} // extern "C"
