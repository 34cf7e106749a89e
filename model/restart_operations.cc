// The driver operation that replays what a restarted process has lost, and the control function that loses
// it.
#include <algorithm>

#include "pipe_mgr_restart.h"
#include "profile_operation.h"

using namespace model;

namespace {

struct Replayed {
    u32 action_table;
    u32 action;
    pd_grp_hdl group;
    pd_mbr_hdl member;
};

u32 action_of(const Profile &profile, pd_mbr_hdl member)
{
    return profile.members().find(member)->software.action;
}

Replayed replay(const Profile &profile, const Membership &membership)
{
    return {profile.program().action_table, action_of(profile, membership.member), membership.group,
            membership.member};
}

void add_members(const Profile &profile, std::vector<Replayed> &walk)
{
    const auto &members = profile.members();
    for (u32 member = members.next(0); member != 0; member = members.next(member))
        walk.push_back({profile.program().action_table, action_of(profile, member), 0, member});
}

void add_groups(const Profile &profile, std::vector<Replayed> &walk)
{
    const GroupTable &groups = profile.groups();
    for (u32 group = groups.next(0); group != 0; group = groups.next(group))
        walk.push_back({profile.program().action_table, 0, group, 0});
}

void add_memberships(const Profile &profile, std::vector<Replayed> &walk)
{
    const auto &memberships = profile.groups().memberships().all();
    for (u32 at = memberships.next(0); at != 0; at = memberships.next(at))
        walk.push_back(replay(profile, *memberships.find(at)));
}

// A group takes the action of the member that comes last. Where that one has come after its own last member
// left, a member that has the group's action comes again.
void settle_group_actions(const Profile &profile, std::vector<Replayed> &walk)
{
    const GroupTable &groups = profile.groups();
    for (u32 group = groups.next(0); group != 0; group = groups.next(group)) {
        const Group &found = *groups.find(group);
        const auto members = groups.members(found);
        const auto has_action = [&](const Membership &membership) {
            return action_of(profile, membership.member) == found.action;
        };
        if (members.empty() || has_action(members.back()))
            continue;
        const auto settles = std::ranges::find_if(members, has_action);
        if (settles != members.end())
            walk.push_back(replay(profile, *settles));
    }
}

std::vector<Replayed> walk_over(Device &device)
{
    std::vector<Replayed> walk;
    for (const auto add : {add_members, add_groups, add_memberships, settle_group_actions})
        for (const ProgramProfile &profile : program.profiles)
            add(device.profile(profile), walk);
    return walk;
}

} // namespace

namespace model {

pd_status pipe_mgr_hitless_ha_restore_virtual_dev_state(pd_word first, pd_word second, pd_word, pd_word,
                                                        pd_word, pipe_restore_state_cb restore)
{
    const auto sess = static_cast<pd_sess_hdl>(first);
    const auto device_id = static_cast<u32>(second);
    std::vector<Replayed> walk;
    const pd_status status = with_device(device_id, [&](Device &device) {
        walk = walk_over(device);
        return ok;
    });
    constexpr u32 no_resources = 0;
    for (const auto &[action_table, action, group, member] : walk)
        restore(sess, device_id, action_table, action, group, member, no_resources);
    return status;
}

} // namespace model

extern "C" {

pd_status ts_model_forget_selection(u32 device_id)
{
    return with_device(device_id, [](Device &device) {
        device.selections.clear();
        return ok;
    });
}

} // extern "C"
