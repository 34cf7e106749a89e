#include <algorithm>

#include "checker.h"

namespace pdgen {

namespace {

constexpr HandleRange action_handles{"action", 0x20000000, 0x20ffffff};
constexpr HandleRange action_table_handles{"action table", 0x2000001, 0x2ffffff};
constexpr HandleRange selector_handles{"selector", 0x3000001, 0x3ffffff};

// What the driver and a caller offer when an entry is read back.
constexpr unsigned record_room = 28;

// The size of the record that a compiler makes of the parameters.
unsigned record_bytes(const Action &action)
{
    unsigned size = 0, alignment = 1;
    const auto align = [&](unsigned to) { size = (size + to - 1) / to * to; };
    for (const Parameter &parameter : action.parameters) {
        const unsigned bytes = parameter.width <= 8 ? 1 : parameter.width <= 16 ? 2 : 4;
        align(bytes);
        size += bytes;
        alignment = std::max(alignment, bytes);
    }
    align(alignment);
    return size;
}

} // namespace

void Checker::check_actions()
{
    std::uint32_t next = 0;
    for (const Action &action : catalogue.actions) {
        check_name("action", action.name, action.place);
        if (action.number != next)
            wrong(action.place, action.name + ".number", "must be ", next,
                  ": the action enum has no holes, and "
                  "rows stand in its order");
        next = action.number + 1; // one hole is one finding
        check_parameters(action);
    }
}

void Checker::check_parameters(const Action &action)
{
    std::set<std::string> parameters;
    for (const Parameter &parameter : action.parameters) {
        const std::string subject = action.name + "." + parameter.name;
        check_identifier(parameter.place, subject, parameter.name, false); // the member is action_<name>
        if (!parameters.insert(parameter.name).second)
            wrong(parameter.place, subject, "this parameter stands twice");
        if (parameter.width < 1 || parameter.width > 32)
            wrong(parameter.place, subject + ".width", "must be 1 to 32 bits");
        check_format(subject, parameter.format, parameter.width, parameter.place);
        check_index(action, parameter, subject);
    }
    if (record_bytes(action) > record_room)
        wrong(action.place, action.name + ".parameters", "their record has ", record_bytes(action),
              " bytes, and there is room for ", record_room, " where entries are read back");
}

void Checker::check_index(const Action &action, const Parameter &parameter, const std::string &subject)
{
    if (parameter.index_of.empty()) {
        if (!parameter.in_image)
            wrong(parameter.place, subject + ".in_image",
                  "only a parameter with index_of may stay out of the image");
        return;
    }
    if (!catalogue.find_resource(parameter.index_of))
        wrong(parameter.place, subject + ".index_of", "there is no counter or meter \"", parameter.index_of,
              "\"");
    if (parameter.width != 32)
        wrong(parameter.place, subject + ".width", "an index has 32 bits");
    const auto [first, fresh] = index_users.emplace(parameter.index_of, action.name);
    if (!fresh)
        wrong(parameter.place, subject + ".index_of", parameter.index_of, " is indexed by ", first->second,
              " already");
}

void Checker::check_bindings(const std::string &owner, const std::vector<Binding> &bindings)
{
    for (std::size_t i = 0; i < bindings.size(); ++i) {
        const Binding &binding = bindings[i];
        const std::string subject = owner + "." + binding.name;
        if (binding.name.empty())
            continue; // reported where it was read
        used_actions.insert(binding.name);
        if (!catalogue.find_action(binding.name))
            wrong(binding.place, subject, "there is no such action");
        check_handle(action_handles, subject + ".handle", binding.handle, binding.place);
        if (i && binding.name == bindings[i - 1].name)
            wrong(binding.place, subject, "this action stands twice");
        else if (i && binding.name < bindings[i - 1].name)
            wrong(binding.place, subject, "actions stand by name, and ", bindings[i - 1].name,
                  " comes later");
    }
}

void Checker::check_profiles()
{
    std::set<std::string> tables;
    for (const Profile &profile : catalogue.profiles) {
        check_name("profile", profile.name, profile.place);
        check_handle(action_table_handles, profile.name + ".action_table", profile.action_table,
                     profile.place);
        check_handle(selector_handles, profile.name + ".selector", profile.selector, profile.place);
        check_bindings(profile.name, profile.actions);
        if (!names.contains("table " + profile.table))
            wrong(profile.place, profile.name + ".table", "there is no table \"", profile.table, "\"");
        if (!tables.insert(profile.table).second)
            wrong(profile.place, profile.name + ".table", profile.table, " has a profile already");
    }
}

} // namespace pdgen
