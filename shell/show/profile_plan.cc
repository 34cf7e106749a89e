#include "profile_plan.h"

#include <algorithm>

#include "driver.h"
#include "profiles.h"
#include "save_profile.h"
#include "words.h"

namespace shell {

namespace {

using reflection::ProfileFunctions;

constexpr u32 first_made = 0xc0000000; // handles of what is still to be made

} // namespace

ProfilePlan::ProfilePlan(const ProfileFunctions &profile, ProfileNames &names)
    : profile_(profile), names_(names), before_(names), all_(named_throughout(profile, names)),
      next_made_(first_made)
{
    names_ = all_;
}

ProfilePlan::~ProfilePlan()
{
    if (!is_carried_out_)
        names_ = before_;
}

u32 ProfilePlan::keep(Kind kind, std::string_view name)
{
    const u32 handle = names_.of(kind).find(name);
    if (handle != 0 && (handle >= first_made || !kept(kind).insert(handle).second))
        throw BadLine{name, std::string{kind_name(kind)} + ' ' + quoted(name) + " is told twice"};
    return handle;
}

void ProfilePlan::make(Kind kind, std::string_view name)
{
    Names &names = names_.of(kind);
    if (const u32 former = names.find(name)) {
        kept(kind).erase(former);
        names.drop(former);
    }
    names.give(next_made_++, name);
}

void ProfilePlan::drop_member(pd_mbr_hdl member)
{
    kept_members_.erase(member);
    names_.members.drop(member);
}

bool ProfilePlan::join(pd_grp_hdl group, pd_mbr_hdl member)
{
    joined_.insert({group, member});
    return members_of(group).contains(member);
}

void ProfilePlan::leave(pd_grp_hdl group, pd_mbr_hdl member)
{
    joined_.erase({group, member});
}

bool ProfilePlan::tell_state(pd_grp_hdl group, pd_mbr_hdl member, bool active)
{
    stated_.insert({group, member});
    const auto &members = members_of(group);
    const auto found = members.find(member);
    return found != members.end() && found->second == active;
}

bool ProfilePlan::tell_fallback(pd_mbr_hdl member)
{
    fallback_told_ = true;
    return has_model() && fallback_of(profile_) == member;
}

void ProfilePlan::end_planning(bool is_carried_out)
{
    walk_members(profile_, [&](pd_mbr_hdl member) {
        if (!kept_members_.contains(member))
            unwanted_members_.push_back(member);
    });
    walk_groups(profile_, [&](pd_grp_hdl group) {
        if (!kept_groups_.contains(group))
            unwanted_groups_.push_back(group);
    });
    is_carried_out_ = is_carried_out;
    if (!is_carried_out)
        return;
    names_ = all_;
    for (const pd_mbr_hdl member : unwanted_members_)
        names_.members.drop(member);
    for (const pd_grp_hdl group : unwanted_groups_)
        names_.groups.drop(group);
}

void ProfilePlan::make_room(const Make &make)
{
    for (const pd_grp_hdl group : kept_groups_)
        for (const auto &[member, active] : members_of(group))
            if (!joined_.contains({group, member}))
                make('-', command("group add", group, member), [&, member = member] {
                    expect_success(
                        profile_.del_member_from_group(driver_session, device.device_id, group, member));
                });
}

void ProfilePlan::clear_up(const Make &make)
{
    for (const auto &[group, member] : joined_) {
        const auto &members = members_of(group);
        const auto found = members.find(member);
        if (found == members.end() || found->second || stated_.contains({group, member}))
            continue;
        make('~', command("group state", group, member) + " active", [&, group = group, member = member] {
            expect_success(profile_.group_member_state_set(driver_session, device.device_id, group, member,
                                                           P4_PD_GRP_MBR_STATE_ACTIVE));
        });
    }
    if (!fallback_told_ && fallback_of(profile_) != 0)
        make('~', std::string{"group fallback "} + profile_.row->name + " none",
             [&] { expect_success(profile_.reset_fallback_member(driver_session, device)); });
    for (const pd_grp_hdl group : unwanted_groups_)
        make('-', std::string{"group create "} + profile_.row->name + ' ' + all_.groups.label(group),
             [&, group] {
                 for (const auto &[member, active] : members_of(group))
                     expect_success(
                         profile_.del_member_from_group(driver_session, device.device_id, group, member));
                 expect_success(profile_.del_group(driver_session, device.device_id, group));
                 names_.group_sizes.erase(group);
             });
    for (const pd_mbr_hdl member : unwanted_members_)
        make('-', std::string{"member add "} + profile_.row->name + ' ' + all_.members.label(member),
             [&, member] { expect_success(profile_.del_member(driver_session, device.device_id, member)); });
}

std::set<u32> &ProfilePlan::kept(Kind kind)
{
    return kind == Kind::member ? kept_members_ : kept_groups_;
}

// As they were when they were first asked for.
const std::map<pd_mbr_hdl, bool> &ProfilePlan::members_of(pd_grp_hdl group)
{
    const auto [found, is_new] = there_.try_emplace(group);
    if (is_new && group < first_made)
        walk_group(profile_, group, [&, &members = found->second](pd_mbr_hdl member) {
            members[member] = is_active(profile_, group, member);
        });
    return found->second;
}

std::string ProfilePlan::command(const char *verb, pd_grp_hdl group, pd_mbr_hdl member) const
{
    return std::string{verb} + ' ' + profile_.row->name + ' ' + all_.groups.label(group) + ' ' +
           all_.members.label(member);
}

} // namespace shell
