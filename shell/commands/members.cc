// The member command: the members of action profiles.
#include "commands.h"
#include "driver.h"
#include "entry_body.h"
#include "member_reader.h"
#include "profiles.h"
#include "show_profile.h"
#include "verbs.h"

namespace shell {

namespace {

using reflection::MemberFunctions;
using reflection::ProfileFunctions;

struct MemberPart {
    std::string_view name; // of the action, as it was written
    const MemberFunctions *functions;
    Record parameters;
};

// Takes the rest of the command.
MemberPart take_member_part(Words &words, const ProfileFunctions &profile)
{
    take_colon(words, "an action");
    const std::string_view name = words.peek();
    const MemberFunctions &functions = take_action(words, profile);
    MemberPart part{name, &functions, Record{*functions.row->action}};
    Options none;
    take_assignments(words, part.parameters, functions.row->action->name, none);
    words.expect_end();
    return part;
}

void add(Session &session, Words &words, const ProfileFunctions &profile)
{
    ProfileNames &names = session.names(profile);
    const std::string_view name = take_new_name(words, names.members);
    const MemberPart part = take_member_part(words, profile);
    pd_mbr_hdl member = 0;
    expect_success(part.functions->add(driver_session, device, {.action = part.parameters.data()}, &member));
    names.members.give(member, name);
    if (session.verbose())
        print_created(session, profile, {Kind::member, member});
}

void modify(Session &session, Words &words, const ProfileFunctions &profile)
{
    const Names &names = session.names(profile).members;
    const pd_mbr_hdl member = take_object(words, profile, names);
    const MemberPart part = take_member_part(words, profile);
    const pd_status status =
        part.functions->modify(driver_session, device.device_id, member, {.action = part.parameters.data()});
    if (status == PD_STATUS_MISMATCH) {
        MemberReader reader{profile, false};
        reader.read(member);
        throw BadLine{part.name, "member " + names.label(member) + " has the action " +
                                     reader.action().name() + ", and a member keeps its action"};
    }
    expect_success(status);
}

void remove(Session &session, Words &words, const ProfileFunctions &profile)
{
    Names &names = session.names(profile).members;
    const pd_mbr_hdl member = take_object(words, profile, names);
    words.expect_end();
    expect_success(profile.del_member(driver_session, device.device_id, member));
    names.drop(member);
}

void show(Session &session, Words &words, const ProfileFunctions &profile)
{
    std::optional<pd_mbr_hdl> member;
    if (!words.empty())
        member = take_object(words, profile, session.names(profile).members);
    words.expect_end();
    show_members(session, profile, member);
}

constexpr Verb<ProfileVerb> verbs[] = {{"add", add}, {"modify", modify}, {"delete", remove}, {"show", show}};

} // namespace

void run_member(Session &session, Words &words)
{
    ProfileVerb *const run = take_verb<ProfileVerb>(words, verbs);
    run(session, words, take_profile(words));
}

} // namespace shell
