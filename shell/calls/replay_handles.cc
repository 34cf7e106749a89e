#include "replay_handles.h"

#include "profiles.h"

namespace shell {

bool ReplayHandles::has(tap::Kind kind)
{
    return kind == tap::Kind::entry || kind == tap::Kind::entry_word || kind == tap::Kind::value_set_entry ||
           kind == tap::Kind::member || kind == tap::Kind::group;
}

ReplayHandles::Place ReplayHandles::place(tap::Kind kind, u32 table, u32 recorded)
{
    if (kind == tap::Kind::entry_word)
        kind = tap::Kind::entry;
    if (const reflection::ProfileFunctions *profile = profile_by_table(table))
        table = kind == tap::Kind::member  ? profile->row->action_table
                : kind == tap::Kind::group ? profile->row->selector
                                           : table;
    return {kind, table, recorded};
}

void ReplayHandles::learn(tap::Kind kind, u32 table, u32 recorded, u32 played)
{
    played_[place(kind, table, recorded)] = played;
}

u32 ReplayHandles::find(tap::Kind kind, u32 table, u32 recorded) const
{
    const auto known = played_.find(place(kind, table, recorded));
    return known != played_.end() ? known->second : recorded;
}

} // namespace shell
