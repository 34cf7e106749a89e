#include "texts.h"

namespace pd_tessel {

const TableText *find_table(u32 handle)
{
    const u32 slot = handle - first_table_handle;
    return slot < table_handle_count ? table_texts[slot] : nullptr;
}

const ProfileText *find_profile(u32 action_table)
{
    for (u32 i = 0; i < profile_count; ++i)
        if (profile_texts[i]->reader->action_table == action_table)
            return profile_texts[i];
    return nullptr;
}

const ActionText &action_of(std::span<const pd::ActionReader> actions, u32 number, const char *condition,
                            pd::Place place)
{
    for (const pd::ActionReader &action : actions)
        if (action.number == number)
            return action_texts[number];
    pd::fail(condition, place, source_name);
}

} // namespace pd_tessel
