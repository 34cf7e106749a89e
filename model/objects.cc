#include "objects.h"

#include <algorithm>

namespace model {

const ProgramTable *find_table(u32 handle)
{
    const auto found = std::ranges::lower_bound(program.tables, handle, {}, &ProgramTable::handle);
    return found != program.tables.end() && found->handle == handle ? &*found : nullptr;
}

bool is_indexed(std::span<const ProgramResource> resources, u32 handle)
{
    const auto is_direct = [handle](const ProgramTable &table) {
        return table.resource == handle && (table.direct_counter || table.direct_meter);
    };
    return find_object(resources, handle) != nullptr && std::ranges::none_of(program.tables, is_direct);
}

const ProgramAction *find_action(std::span<const ProgramAction> actions, u32 handle)
{
    const auto found = std::ranges::find(actions, handle, &ProgramAction::handle);
    return found != actions.end() ? &*found : nullptr;
}

const ProgramProfile *find_profile_by_members(u32 action_table)
{
    const auto found = std::ranges::find(program.profiles, action_table, &ProgramProfile::action_table);
    return found != program.profiles.end() ? &*found : nullptr;
}

const ProgramProfile *find_profile_by_groups(u32 selector)
{
    const auto found = std::ranges::find(program.profiles, selector, &ProgramProfile::selector);
    return found != program.profiles.end() ? &*found : nullptr;
}

const ProgramAction *find_member_action(u32 handle)
{
    for (const ProgramProfile &profile : program.profiles)
        if (const ProgramAction *action = find_action(profile.actions, handle))
            return action;
    return nullptr;
}

} // namespace model
