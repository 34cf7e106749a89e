#include "reflection.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>

#include "reflection_tables.h"

namespace reflection {

std::span<const TableFunctions *const> tables()
{
    return {table_index, table_count};
}

std::span<const ProfileFunctions *const> profiles()
{
    return {profile_index, profile_count};
}

std::span<const pd::Action *const> actions()
{
    return {action_index, action_count};
}

const TableFunctions *find_table(std::string_view name)
{
    static const auto by_name = [] {
        std::unordered_map<std::string_view, const TableFunctions *> names;
        for (const TableFunctions *table : tables())
            names.emplace(table->row->name, table);
        return names;
    }();
    const auto found = by_name.find(name);
    return found == by_name.end() ? nullptr : found->second;
}

const TableFunctions *find_table(u32 handle)
{
    const auto all = tables();
    const auto found = std::ranges::lower_bound(
        all, handle, {}, [](const TableFunctions *table) { return table->row->handle; });
    return found != all.end() && (*found)->row->handle == handle ? *found : nullptr;
}

namespace {

template <typename Functions>
const Functions *find_by_action(std::span<const Functions> actions, std::string_view name)
{
    for (const Functions &action : actions)
        if (action.row->action->name == name)
            return &action;
    return nullptr;
}

} // namespace

const ActionFunctions *find_action(const TableFunctions &table, std::string_view name)
{
    return find_by_action(table.actions, name);
}

const ProfileFunctions *find_profile(std::string_view name)
{
    for (const ProfileFunctions *profile : profiles())
        if (profile->row->name == name)
            return profile;
    return nullptr;
}

const MemberFunctions *find_action(const ProfileFunctions &profile, std::string_view name)
{
    return find_by_action(profile.actions, name);
}

} // namespace reflection
