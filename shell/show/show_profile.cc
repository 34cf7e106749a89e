#include "show_profile.h"

#include <algorithm>

#include "columns.h"
#include "driver.h"
#include "entry_reader.h"
#include "member_reader.h"
#include "profiles.h"

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

// The members of a profile as lines; the first is the heading.
class MemberLines {
public:
    MemberLines(const ProfileFunctions &profile, const Names &names);

    std::string_view heading() { return line("member", "name", "action", "parameters", "entries"); }
    std::string_view line(std::string_view member, std::string_view name, std::string_view action,
                          std::string_view parameters, std::string_view entries);

private:
    std::size_t name_width_;
    std::size_t action_width_ = sizeof "action" - 1;
    std::size_t parameters_width_;
    Columns columns_;
};

MemberLines::MemberLines(const ProfileFunctions &profile, const Names &names)
    : name_width_(std::max(names.longest(), sizeof "name" - 1)),
      parameters_width_(longest_parameters(profile))
{
    for (const pd::Binding &binding : profile.row->actions)
        action_width_ = std::max(action_width_, std::string_view{binding.action->name}.size());
}

std::string_view MemberLines::line(std::string_view member, std::string_view name, std::string_view action,
                                   std::string_view parameters, std::string_view entries)
{
    using Aligned = Columns::Aligned;
    columns_.begin();
    columns_.cell(member, Columns::digits, Aligned::right);
    columns_.cell(name, name_width_, Aligned::left);
    columns_.cell(action, action_width_, Aligned::left);
    columns_.cell(parameters, parameters_width_, Aligned::left);
    columns_.cell(entries, 0, Aligned::left);
    return columns_.end();
}

std::string member_json(const ProfileFunctions &profile, const ProfileNames &names, pd_mbr_hdl member,
                        const ShownAction &action, const Users &users)
{
    std::string text;
    Json json{text};
    json.open_object().key("profile").text(profile.row->name);
    append_json(json, names, {Kind::member, member});
    action.append_json(json);
    append_json(json, users);
    json.close_object();
    return text;
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

void print_group(Session &session, const ProfileFunctions &profile, pd_grp_hdl group, const Users &users)
{
    const ProfileNames &names = session.names(profile);
    const std::vector<GroupMember> members = members_of(profile, group);
    const std::string *name = names.groups.name_of(group);
    std::string text = "group " + std::to_string(group) + (name ? " (" + *name + ')' : "") + ": " +
                       std::to_string(members.size()) + (members.size() == 1 ? " member, " : " members, ") +
                       std::to_string(std::ranges::count(members, true, &GroupMember::active)) +
                       " active; entries: " + users_text(users);
    std::size_t width = 0;
    for (const GroupMember &member : members)
        width = std::max(width, names.members.label(member.member).size());
    for (const auto &[member, active] : members) {
        const std::string label = names.members.label(member);
        text +=
            "\n  " + label + std::string(width - label.size() + 2, ' ') + (active ? "active" : "inactive");
    }
    session.print(text);
}

std::string group_json(const ProfileFunctions &profile, const ProfileNames &names, pd_grp_hdl group,
                       const Users &users)
{
    std::string text;
    Json json{text};
    json.open_object().key("profile").text(profile.row->name);
    append_json(json, names, {Kind::group, group});
    json.key("members").open_array();
    for (const auto &[member, active] : members_of(profile, group)) {
        json.open_object();
        append_json(json, names, {Kind::member, member});
        json.key("active").flag(active).close_object();
    }
    json.close_array();
    append_json(json, users);
    json.close_object();
    return text;
}

} // namespace

void print_created(Session &session, const ProfileFunctions &profile, const Object &object)
{
    std::string line = std::string{kind_name(object.kind)} + ' ' + std::to_string(object.handle);
    if (session.json()) {
        line.clear();
        Json json{line};
        json.open_object().key("profile").text(profile.row->name);
        append_json(json, session.names(profile), object);
        json.close_object();
    }
    session.print(line);
}

void show_members(Session &session, const ProfileFunctions &profile, std::optional<pd_mbr_hdl> member)
{
    const ProfileNames &names = session.names(profile);
    const AllUsers users{profile, names, Kind::member};
    MemberReader reader{profile, session.from_hardware()};
    MemberLines lines{profile, names.members};
    const auto show = [&](pd_mbr_hdl handle) {
        reader.read(handle);
        const ShownAction &action = reader.action();
        if (session.json())
            return session.print(member_json(profile, names, handle, action, users.of(handle)));
        const std::string *name = names.members.name_of(handle);
        session.print(lines.line(std::to_string(handle), name ? *name : "", action.name(),
                                 assignments(action.fields(), action.parameters()),
                                 users_text(users.of(handle))));
    };
    if (!session.json())
        session.print(lines.heading());
    if (member)
        show(*member);
    else
        walk_members(profile, show);
}

void show_groups(Session &session, const ProfileFunctions &profile, std::optional<pd_grp_hdl> group)
{
    const ProfileNames &names = session.names(profile);
    const AllUsers users{profile, names, Kind::group};
    const auto show = [&](pd_grp_hdl handle) {
        if (session.json())
            session.print(group_json(profile, names, handle, users.of(handle)));
        else
            print_group(session, profile, handle, users.of(handle));
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
    if (!session.json())
        return session.print("fallback: " + (fallback.handle == 0 ? "none" : names.text_of(fallback)));
    std::string text;
    Json json{text};
    json.open_object().key("profile").text(profile.row->name).key("fallback").open_object();
    append_json(json, names, fallback);
    json.close_object().close_object();
    session.print(text);
}

void show_profile(Session &session, const ProfileFunctions &profile)
{
    show_members(session, profile);
    show_groups(session, profile);
    show_fallback(session, profile);
}

} // namespace shell
