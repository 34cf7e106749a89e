// The group command: the groups of action profiles, and the fallback member.
#include <algorithm>

#include "commands.h"
#include "driver.h"
#include "model.h"
#include "profiles.h"
#include "replacement.h"
#include "settings.h"
#include "show_profile.h"
#include "values.h"
#include "verb_arguments.h"

namespace shell {

namespace {

using reflection::ProfileFunctions;

constexpr u32 usual_size = 256;
constexpr std::string_view member_states[] = {"active", "inactive"};

constexpr Setting size_setting[] = {{"size", 32, usual_size}};

std::string command(const char *verb, const ProfileFunctions &profile, const std::string &rest)
{
    return std::string{verb} + ' ' + profile.row->name + ' ' + rest;
}

void create(Session &session, const ProfileFunctions &profile, std::string_view name,
            const std::vector<u64> &settings)
{
    ProfileNames &names = session.names(profile);
    const auto size = static_cast<u32>(settings.front());
    pd_grp_hdl group = 0;
    expect_success(profile.create_group(driver_session, device, size, &group));
    names.groups.give(group, name);
    names.group_sizes[group] = size;
    session.keep_change([&] { return command("group delete", profile, std::to_string(group)); });
    if (session.verbose())
        print_created(session, profile, {Kind::group, group});
}

void remove(Session &session, const ProfileFunctions &profile, pd_grp_hdl group)
{
    ProfileNames &names = session.names(profile);
    expect_success(profile.del_group(driver_session, device.device_id, group));
    names.groups.drop(group);
    names.group_sizes.erase(group);
}

struct NamedMember {
    std::string_view word;
    pd_mbr_hdl handle;
};

struct WrittenMember {
    using Value = NamedMember;
    static void describe(Usage &usage) { arg::Member::describe(usage); }
    static Value read(Reading &reading)
    {
        const std::string_view word = reading.words.peek();
        return {word, arg::Member::read(reading)};
    }
};

// One member or more, each named once.
struct Members : arg::Several<WrittenMember> {
    static Value read(Reading &reading);
};

std::vector<NamedMember> Members::read(Reading &reading)
{
    const Names &names = reading.session.names(*reading.profile).members;
    std::vector<NamedMember> members = Several::read(reading);
    std::vector<pd_mbr_hdl> handles;
    for (const NamedMember &member : members)
        handles.push_back(member.handle);
    std::ranges::sort(handles);
    if (const auto twice = std::ranges::adjacent_find(handles); twice != handles.end()) {
        const auto first = std::ranges::find(members, *twice, &NamedMember::handle);
        const auto second = std::ranges::find(first + 1, members.end(), *twice, &NamedMember::handle);
        throw BadLine{second->word, "member " + names.label(*twice) + " is named twice"};
    }
    return members;
}

// All of them join, or none.
void add(Session &session, const ProfileFunctions &profile, pd_grp_hdl group,
         const std::vector<NamedMember> &members)
{
    for (std::size_t i = 0; i < members.size(); ++i) {
        const pd_status status =
            profile.add_member_to_group(driver_session, device.device_id, group, members[i].handle);
        if (status == 0)
            continue;
        for (std::size_t joined = i; joined-- > 0;)
            profile.del_member_from_group(driver_session, device.device_id, group, members[joined].handle);
        expect_success(status, members[i].word);
    }
    session.keep_change([&] {
        std::string all = std::to_string(group);
        for (const NamedMember &member : members)
            all += ' ' + std::to_string(member.handle);
        return command("group remove", profile, all);
    });
}

void take_out(Session &, const ProfileFunctions &profile, pd_grp_hdl group,
              const std::vector<NamedMember> &members)
{
    u32 state = 0;
    for (const auto &[word, member] : members) // before any of them leaves
        expect_success(
            profile.group_member_state_get(driver_session, device.device_id, group, member, &state), word);
    for (const auto &[word, member] : members)
        expect_success(profile.del_member_from_group(driver_session, device.device_id, group, member), word);
}

void set_state(Session &session, const ProfileFunctions &profile, pd_grp_hdl group, pd_mbr_hdl member,
               unsigned state)
{
    u32 before = 0;
    if (session.keeps_changes())
        expect_success(
            profile.group_member_state_get(driver_session, device.device_id, group, member, &before));
    expect_success(profile.group_member_state_set(driver_session, device.device_id, group, member,
                                                  state == 0 ? P4_PD_GRP_MBR_STATE_ACTIVE
                                                             : P4_PD_GRP_MBR_STATE_INACTIVE));
    session.keep_change([&] {
        return command("group state", profile,
                       std::to_string(group) + ' ' + std::to_string(member) +
                           (before == P4_PD_GRP_MBR_STATE_ACTIVE ? " active" : " inactive"));
    });
}

// A member, or nothing for the word that stands for none.
struct Fallback {
    using Value = std::optional<pd_mbr_hdl>;
    static void describe(Usage &usage) { usage.add({"MEMBER", "none"}); }
    static Value read(Reading &reading)
    {
        if (reading.words.peek() != "none")
            return arg::Member::read(reading);
        reading.words.take();
        return {};
    }
};

void set_fallback(Session &session, const ProfileFunctions &profile, std::optional<pd_mbr_hdl> member)
{
    const pd_mbr_hdl before = session.keeps_changes() ? fallback_of(profile) : 0;
    expect_success(member ? profile.set_fallback_member(driver_session, device, *member)
                          : profile.reset_fallback_member(driver_session, device));
    session.keep_change(
        [&] { return command("group fallback", profile, before ? std::to_string(before) : "none"); });
}

// ---- In a file that tells a state ----

void tell(Session &session, const ProfileFunctions &profile, std::string_view name,
          const std::vector<u64> &settings)
{
    using enum Replacement::Change;
    Replacement &state = session.replacement();
    if (!state.is_planning())
        return create(session, profile, name, settings);
    ProfilePlan &plan = state.covered(profile);
    const pd_grp_hdl group = plan.keep(Kind::group, name);
    const auto &sizes = session.names(profile).group_sizes;
    const auto size = sizes.find(group);
    const bool same = group != 0 && (size == sizes.end() || size->second == settings.front());
    if (!same)
        plan.make(Kind::group, name);
    state.plan(same ? none : add_it);
}

bool is_in(const ProfileFunctions &profile, pd_grp_hdl group, pd_mbr_hdl member)
{
    u32 state = 0;
    return profile.group_member_state_get(driver_session, device.device_id, group, member, &state) ==
           TS_MODEL_OK;
}

void tell_joined(Session &session, const ProfileFunctions &profile, pd_grp_hdl group,
                 const std::vector<NamedMember> &members)
{
    using enum Replacement::Change;
    Replacement &state = session.replacement();
    if (!state.is_planning()) {
        std::vector<NamedMember> others = members;
        std::erase_if(others,
                      [&](const NamedMember &member) { return is_in(profile, group, member.handle); });
        return add(session, profile, group, others);
    }
    bool same = true;
    for (const NamedMember &member : members)
        same = state.covered(profile).join(group, member.handle) && same;
    state.plan(same ? none : modify_it);
}

void tell_taken_out(Session &session, const ProfileFunctions &profile, pd_grp_hdl group,
                    const std::vector<NamedMember> &members)
{
    Replacement &state = session.replacement();
    if (!state.is_planning())
        return take_out(session, profile, group, members);
    for (const NamedMember &member : members)
        state.covered(profile).leave(group, member.handle);
    state.plan(Replacement::Change::modify_it);
}

void tell_state(Session &session, const ProfileFunctions &profile, pd_grp_hdl group, pd_mbr_hdl member,
                unsigned wanted)
{
    using enum Replacement::Change;
    Replacement &state = session.replacement();
    if (!state.is_planning())
        return set_state(session, profile, group, member, wanted);
    state.plan(state.covered(profile).tell_state(group, member, wanted == 0) ? none : modify_it);
}

void tell_fallback(Session &session, const ProfileFunctions &profile, std::optional<pd_mbr_hdl> member)
{
    using enum Replacement::Change;
    Replacement &state = session.replacement();
    if (!state.is_planning())
        return set_fallback(session, profile, member);
    state.plan(state.covered(profile).tell_fallback(member.value_or(0)) ? none : modify_it);
}

void show(Session &session, const ProfileFunctions &profile, std::optional<pd_grp_hdl> group)
{
    show_groups(session, profile, group);
    if (!group)
        show_fallback(session, profile);
}

constexpr std::string_view text =
    R"(  GROUP and MEMBER are handles, or names that create and 'member add' gave.
)";

constexpr Verb verbs[] = {
    verb<create, arg::Profile, arg::NewName<Kind::group>, arg::Settings<size_setting>>(
        "group create", "makes an empty group for up to N members, 256 without")
        .can_be_taken_back()
        .tells_state(state<tell, arg::Profile, arg::Name<Kind::group>, arg::Settings<size_setting>>),
    verb<remove, arg::Profile, arg::Group>("group delete",
                                           "deletes it, unless an entry points at it; its members stay"),
    verb<add, arg::Profile, arg::Group, Members>("group add", "lets all these members join, or none")
        .can_be_taken_back()
        .tells_state(state<tell_joined, arg::Profile, arg::Group, Members>),
    verb<take_out, arg::Profile, arg::Group, Members>("group remove", "takes all these members out, or none")
        .tells_state(state<tell_taken_out, arg::Profile, arg::Group, Members>),
    verb<set_state, arg::Profile, arg::Group, arg::Member, arg::Choice<"state", member_states>>(
        "group state", "only active members are picked; a member joins active")
        .can_be_taken_back()
        .tells_state(
            state<tell_state, arg::Profile, arg::Group, arg::Member, arg::Choice<"state", member_states>>),
    verb<set_fallback, arg::Profile, Fallback>("group fallback",
                                               "the member for packets that find no active member")
        .can_be_taken_back()
        .tells_state(state<tell_fallback, arg::Profile, Fallback>),
    verb<show, arg::Profile, arg::Optional<arg::Group>>("group show", "prints it, or all and the fallback")
        .reads(),
};

} // namespace

const Command group_command{verbs, text, json_option, "the groups of an action profile"};

} // namespace shell
