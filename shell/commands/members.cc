// The member command: the members of action profiles.
#include "commands.h"
#include "driver.h"
#include "entry_body.h"
#include "member_reader.h"
#include "profiles.h"
#include "replacement.h"
#include "show_profile.h"
#include "verb_arguments.h"

namespace shell {

namespace {

using reflection::MemberFunctions;
using reflection::ProfileFunctions;

struct MemberPart {
    std::string_view name; // of the action, as it was written
    const MemberFunctions *functions;
    Record parameters;
};

// What stands behind the colon.
struct Body {
    using Value = MemberPart;
    static void describe(Usage &usage)
    {
        usage.add({":"});
        usage.bodies = {{"ACTION", "PARAMETERS"}};
    }
    static Value read(Reading &reading);
};

MemberPart Body::read(Reading &reading)
{
    Words &words = reading.words;
    take_colon(words, "an action");
    const std::string_view name = words.peek();
    const MemberFunctions &functions = take_action(words, *reading.profile);
    MemberPart part{name, &functions, Record{*functions.row->action}};
    Options none;
    take_assignments(words, part.parameters, functions.row->action->name, none);
    return part;
}

void add(Session &session, const ProfileFunctions &profile, std::string_view name, const MemberPart &part)
{
    pd_mbr_hdl member = 0;
    expect_success(part.functions->add(driver_session, device, {.action = part.parameters.data()}, &member));
    session.names(profile).members.give(member, name);
    session.keep_change(
        [&] { return std::string{"member delete "} + profile.row->name + ' ' + std::to_string(member); });
    if (session.verbose())
        print_created(session, profile, {Kind::member, member});
}

void modify(Session &session, const ProfileFunctions &profile, pd_mbr_hdl member, const MemberPart &part)
{
    std::string back;
    if (session.keeps_changes()) {
        MemberReader reader{profile, false};
        reader.read(member);
        back = std::string{"member modify "} + profile.row->name + ' ' + std::to_string(member) + " : ";
        reader.action().append_text(back);
    }
    const pd_status status =
        part.functions->modify(driver_session, device.device_id, member, {.action = part.parameters.data()});
    if (status == PD_STATUS_MISMATCH) {
        MemberReader reader{profile, false};
        reader.read(member);
        throw BadLine{part.name, "member " + session.names(profile).members.label(member) +
                                     " has the action " + reader.action().name() +
                                     ", and a member keeps its action"};
    }
    expect_success(status);
    session.keep_change([&] { return back; });
}

void remove(Session &session, const ProfileFunctions &profile, pd_mbr_hdl member)
{
    expect_success(profile.del_member(driver_session, device.device_id, member));
    session.names(profile).members.drop(member);
}

// ---- In a file that tells a state ----

void tell(Session &session, const ProfileFunctions &profile, std::string_view name, const MemberPart &part)
{
    using enum Replacement::Change;
    Replacement &state = session.replacement();
    if (!state.is_planning()) {
        if (state.change() == add_it)
            return add(session, profile, name, part);
        return modify(session, profile, session.names(profile).members.find(name), part);
    }
    ProfilePlan &plan = state.covered(profile);
    MemberReader reader{profile, false};
    const pd_mbr_hdl member = plan.keep(Kind::member, name);
    if (member != 0)
        reader.read(member);
    const ShownAction &action = reader.action();
    if (member == 0 || &action.row() != part.functions->row->action) {
        plan.make(Kind::member, name);
        return state.plan(add_it);
    }
    state.plan(part.parameters.has_values_of(action.parameters()) ? none : modify_it, [&] {
        std::string now;
        action.append_text(now);
        return now;
    });
}

// Where a group is to be empty that entries point at, a member has been in it.
void tell_removed(Session &session, const ProfileFunctions &profile, pd_mbr_hdl member)
{
    Replacement &state = session.replacement();
    if (!state.is_planning())
        return remove(session, profile, member);
    state.covered(profile).drop_member(member);
    state.plan(Replacement::Change::modify_it);
}

void show(Session &session, const ProfileFunctions &profile, std::optional<pd_mbr_hdl> member)
{
    show_members(session, profile, member);
}

constexpr std::string_view text =
    R"(  MEMBER is a handle, or a NAME that add gave: a letter, then letters, digits and any of _-./
  'describe PROFILE' tells the actions. Names last as long as the session. --hw reads from the hardware.
)";

constexpr Verb verbs[] = {
    verb<add, arg::Profile, arg::NewName<Kind::member>, Body>("member add", "adds a member")
        .can_be_taken_back()
        .tells_state(state<tell, arg::Profile, arg::Name<Kind::member>, Body>),
    verb<modify, arg::Profile, arg::Member, Body>("member modify",
                                                  "gives it other parameters; a member keeps its action")
        .can_be_taken_back(),
    verb<remove, arg::Profile, arg::Member>("member delete",
                                            "deletes it, unless an entry, a group or the fallback needs it")
        .tells_state(state<tell_removed, arg::Profile, arg::Member>),
    verb<show, arg::Profile, arg::Optional<arg::Member>>("member show", "prints it, or all").lists(),
};

} // namespace

const Command member_command{verbs, text, read_list_options, "the members of an action profile"};

} // namespace shell
