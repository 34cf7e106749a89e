#include "objects.h"

#include <algorithm>

namespace model {

const ProgramTable *find_table(u32 handle)
{
    const auto found = std::ranges::lower_bound(program.tables, handle, {}, &ProgramTable::handle);
    return found != program.tables.end() && found->handle == handle ? &*found : nullptr;
}

const ProgramAction *find_action(std::span<const ProgramAction> actions, u32 handle)
{
    const auto found = std::ranges::find(actions, handle, &ProgramAction::handle);
    return found != actions.end() ? &*found : nullptr;
}

const ProgramAction *find_member_action(u32 handle)
{
    for (const ProgramProfile &profile : program.profiles)
        if (const ProgramAction *action = find_action(profile.actions, handle))
            return action;
    return nullptr;
}

} // namespace model
