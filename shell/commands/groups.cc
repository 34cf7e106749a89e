// The group command: the groups of action profiles, and the fallback member.
#include <algorithm>

#include "commands.h"
#include "driver.h"
#include "profiles.h"
#include "settings.h"
#include "show_profile.h"
#include "values.h"
#include "verbs.h"

namespace shell {

namespace {

using reflection::ProfileFunctions;

constexpr u32 usual_size = 256;
constexpr std::string_view member_states[] = {"active", "inactive"};

constexpr Setting size_setting[] = {{"size", 32, usual_size}};

void create(Session &session, Words &words, const ProfileFunctions &profile)
{
    ProfileNames &names = session.names(profile);
    const std::string_view name = take_new_name(words, names.groups);
    const auto size = static_cast<u32>(take_settings(words, "group create", size_setting).front());
    pd_grp_hdl group = 0;
    expect_success(profile.create_group(driver_session, device, size, &group));
    names.groups.give(group, name);
    names.group_sizes[group] = size;
    if (session.verbose())
        print_created(session, profile, {Kind::group, group});
}

void remove(Session &session, Words &words, const ProfileFunctions &profile)
{
    ProfileNames &names = session.names(profile);
    const pd_grp_hdl group = take_object(words, profile, names.groups);
    words.expect_end();
    expect_success(profile.del_group(driver_session, device.device_id, group));
    names.groups.drop(group);
    names.group_sizes.erase(group);
}

struct NamedMember {
    std::string_view word;
    pd_mbr_hdl handle;
};

// Takes the rest of the command: one member or more, each named once.
std::vector<NamedMember> take_members(Words &words, const ProfileFunctions &profile, const Names &names)
{
    std::vector<NamedMember> members;
    std::vector<pd_mbr_hdl> handles;
    do {
        const std::string_view word = words.peek();
        members.push_back({word, take_object(words, profile, names)});
        handles.push_back(members.back().handle);
    } while (!words.empty());
    std::ranges::sort(handles);
    if (const auto twice = std::ranges::adjacent_find(handles); twice != handles.end()) {
        const auto first = std::ranges::find(members, *twice, &NamedMember::handle);
        const auto second = std::ranges::find(first + 1, members.end(), *twice, &NamedMember::handle);
        throw BadLine{second->word, "member " + names.label(*twice) + " is named twice"};
    }
    return members;
}

// All of them join, or none.
void add(Session &session, Words &words, const ProfileFunctions &profile)
{
    const ProfileNames &names = session.names(profile);
    const pd_grp_hdl group = take_object(words, profile, names.groups);
    const std::vector<NamedMember> members = take_members(words, profile, names.members);
    for (std::size_t i = 0; i < members.size(); ++i) {
        const pd_status status =
            profile.add_member_to_group(driver_session, device.device_id, group, members[i].handle);
        if (status == 0)
            continue;
        for (std::size_t joined = i; joined-- > 0;)
            profile.del_member_from_group(driver_session, device.device_id, group, members[joined].handle);
        expect_success(status, members[i].word);
    }
}

void take_out(Session &session, Words &words, const ProfileFunctions &profile)
{
    const ProfileNames &names = session.names(profile);
    const pd_grp_hdl group = take_object(words, profile, names.groups);
    const std::vector<NamedMember> members = take_members(words, profile, names.members);
    u32 state = 0;
    for (const auto &[word, member] : members) // before any of them leaves
        expect_success(
            profile.group_member_state_get(driver_session, device.device_id, group, member, &state), word);
    for (const auto &[word, member] : members)
        expect_success(profile.del_member_from_group(driver_session, device.device_id, group, member), word);
}

void set_state(Session &session, Words &words, const ProfileFunctions &profile)
{
    const ProfileNames &names = session.names(profile);
    const pd_grp_hdl group = take_object(words, profile, names.groups);
    const pd_mbr_hdl member = take_object(words, profile, names.members);
    const bool active = choose(words.take(), {"state"}, member_states) == 0;
    words.expect_end();
    expect_success(
        profile.group_member_state_set(driver_session, device.device_id, group, member,
                                       active ? P4_PD_GRP_MBR_STATE_ACTIVE : P4_PD_GRP_MBR_STATE_INACTIVE));
}

void set_fallback(Session &session, Words &words, const ProfileFunctions &profile)
{
    if (words.peek() == "none") {
        words.take();
        words.expect_end();
        return expect_success(profile.reset_fallback_member(driver_session, device));
    }
    const pd_mbr_hdl member = take_object(words, profile, session.names(profile).members);
    words.expect_end();
    expect_success(profile.set_fallback_member(driver_session, device, member));
}

void show(Session &session, Words &words, const ProfileFunctions &profile)
{
    if (words.empty()) {
        show_groups(session, profile);
        return show_fallback(session, profile);
    }
    const pd_grp_hdl group = take_object(words, profile, session.names(profile).groups);
    words.expect_end();
    show_groups(session, profile, group);
}

constexpr Verb<ProfileVerb> verbs[] = {{"create", create},   {"delete", remove},   {"add", add},
                                       {"remove", take_out}, {"state", set_state}, {"fallback", set_fallback},
                                       {"show", show}};

} // namespace

void run_group(Session &session, Words &words)
{
    ProfileVerb *const run = take_verb<ProfileVerb>(words, verbs);
    run(session, words, take_profile(words));
}

} // namespace shell
