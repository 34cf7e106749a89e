#include "show_profile.h"

#include <algorithm>

#include "driver.h"
#include "entry_reader.h"
#include "list.h"
#include "member_reader.h"
#include "profiles.h"
#include "shown_reference.h"

namespace shell {

namespace {

using reflection::ProfileFunctions;

// The entries that point at one member or group.
struct Users {
    std::vector<pd_entry_hdl> entries;
    bool default_entry = false;
};

// "1, 2, default"; a long list is cut.
std::string users_text(const Users &users)
{
    constexpr std::size_t most = 8;
    std::string text;
    for (std::size_t i = 0; i < std::min(most, users.entries.size()); ++i)
        text += (i == 0 ? "" : ", ") + std::to_string(users.entries[i]);
    if (users.entries.size() > most)
        text += " and " + std::to_string(users.entries.size() - most) + " more";
    if (users.default_entry)
        text += text.empty() ? "default" : ", default";
    return text.empty() ? "none" : text;
}

void append_json(Json &to, const Users &users)
{
    to.key("entries").open_array();
    for (const pd_entry_hdl entry : users.entries)
        to.number(entry);
    to.close_array().key("default").flag(users.default_entry);
}

void tell(Result &to, const Users &users)
{
    to.json([&](Json &json) { append_json(json, users); }).shown("entries", users_text(users));
}

// Who points at the members, or at the groups, of a profile.
class AllUsers {
public:
    AllUsers(const ProfileFunctions &profile, const ProfileNames &names, Kind kind);

    const Users &of(u32 handle) const
    {
        static const Users none;
        const auto found = users_.find(handle);
        return found == users_.end() ? none : found->second;
    }

private:
    std::unordered_map<u32, Users> users_;
};

AllUsers::AllUsers(const ProfileFunctions &profile, const ProfileNames &names, Kind kind)
{
    EntryReader reader{table_of(profile), false, &names};
    reader.walk([&] {
        if (const Object to = reader.reference(); to.kind == kind)
            users_[to.handle].entries.push_back(reader.handle());
    });
    reader.read_default();
    if (const Object to = reader.reference(); to.kind == kind)
        users_[to.handle].default_entry = true;
}

std::size_t longest_parameters(const ProfileFunctions &profile)
{
    std::size_t longest = sizeof "parameters" - 1;
    for (const pd::Binding &binding : profile.row->actions) {
        std::size_t width = 0;
        for (const ShownField &field : shown_fields(*binding.action))
            width += field.name.size() + sizeof "= " - 1 + longest_text(field);
        longest = std::max(longest, width);
    }
    return longest;
}

std::vector<Column> member_columns(const ProfileFunctions &profile, const Names &names)
{
    std::size_t action_width = sizeof "action" - 1;
    for (const pd::Binding &binding : profile.row->actions)
        action_width = std::max(action_width, std::string_view{binding.action->name}.size());
    return {{"member", Column::digits, to_the_right},
            {"name", std::max(names.longest(), sizeof "name" - 1)},
            {"action", action_width},
            {"parameters", longest_parameters(profile)},
            {"entries"}};
}

struct GroupMember {
    pd_mbr_hdl member;
    bool active;
};

std::vector<GroupMember> members_of(const ProfileFunctions &profile, pd_grp_hdl group)
{
    std::vector<GroupMember> members;
    walk_group(profile, group, [&](pd_mbr_hdl member) {
        members.push_back({member, is_active(profile, group, member)});
    });
    return members;
}

// Gives the sentence.
const char *tell_group(Result &to, const ProfileFunctions &profile, const ProfileNames &names,
                       pd_grp_hdl group, const Users &users)
{
    const std::vector<GroupMember> members = members_of(profile, group);
    std::size_t width = 0;
    for (const GroupMember &member : members)
        width = std::max(width, names.members.label(member.member).size());
    const std::string each_sentence = "\n  {name:-" + std::to_string(width) + "}  {state}";
    const std::string *name = names.groups.name_of(group);

    to.text("profile", profile.row->name);
    to.json([&](Json &json) { append_json(json, names, {Kind::group, group}); });
    to.shown("group", std::to_string(group) + (name ? " (" + *name + ')' : ""));
    to.shown("count", std::to_string(members.size()));
    to.shown("active", std::to_string(std::ranges::count(members, true, &GroupMember::active)));
    to.list("members", members, [&](Result &each, const GroupMember &member) {
        each.json([&](Json &json) { append_json(json, names, {Kind::member, member.member}); });
        each.shown("name", names.members.label(member.member));
        each.flag("active", member.active).shown("state", member.active ? "active" : "inactive");
        return std::string_view{each_sentence};
    });
    tell(to, users);
    return members.size() == 1
               ? "group {group}: {count} member, {active} active; entries: {entries}{members}"
               : "group {group}: {count} members, {active} active; entries: {entries}{members}";
}

} // namespace

void print_created(Session &session, const ProfileFunctions &profile, const Object &object)
{
    Result result{session.json()};
    result.text("profile", profile.row->name);
    result.json([&](Json &json) { append_json(json, session.names(profile), object); });
    result.shown("kind", kind_name(object.kind)).shown("handle", std::to_string(object.handle));
    session.print(result.line("{kind} {handle}"));
}

void show_members(Session &session, const ProfileFunctions &profile, std::optional<pd_mbr_hdl> member)
{
    const ProfileNames &names = session.names(profile);
    const AllUsers users{profile, names, Kind::member};
    MemberReader reader{profile, session.from_hardware()};
    List list{session, member_columns(profile, names.members)};
    const auto show = [&](pd_mbr_hdl handle) {
        reader.read(handle);
        const std::string *name = names.members.name_of(handle);
        Result &row = list.row();
        row.text("profile", profile.row->name).number("member", handle);
        if (name)
            row.json([&](Json &json) { json.key("member_name").text(*name); }).shown("name", *name);
        reader.action().tell(row);
        tell(row, users.of(handle));
        list.end_row();
    };
    list.fill([&] { member ? show(*member) : walk_members(profile, show); });
}

void show_groups(Session &session, const ProfileFunctions &profile, std::optional<pd_grp_hdl> group)
{
    const ProfileNames &names = session.names(profile);
    const AllUsers users{profile, names, Kind::group};
    const auto show = [&](pd_grp_hdl handle) {
        Result result{session.json()};
        const char *const sentence = tell_group(result, profile, names, handle, users.of(handle));
        session.print(result.line(sentence));
    };
    if (group)
        show(*group);
    else
        walk_groups(profile, show);
}

void show_fallback(Session &session, const ProfileFunctions &profile)
{
    if (!has_model()) // the library has no function that tells
        return session.print_text("fallback", "fallback: unknown without the model");
    const ProfileNames &names = session.names(profile);
    const Object fallback{Kind::member, fallback_of(profile)};
    Result result{session.json()};
    result.text("profile", profile.row->name).json([&](Json &json) {
        append_json(json.key("fallback").open_object(), names, fallback);
        json.close_object();
    });
    result.shown("member", fallback.handle == 0 ? "none" : names.text_of(fallback));
    session.print(result.line("fallback: {member}"));
}

void show_profile(Session &session, const ProfileFunctions &profile)
{
    show_members(session, profile);
    show_groups(session, profile);
    show_fallback(session, profile);
}

} // namespace shell
