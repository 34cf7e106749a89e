#include "replay_handles.h"

#include "reflection.h"

namespace shell {

namespace {

using reflection::ProfileFunctions;
using tap::Kind;

// A profile goes by its action data table, its selector, or the match table whose entries point into it.
const ProfileFunctions *profile_of(u32 table)
{
    if (const reflection::TableFunctions *found = reflection::find_table(table))
        return found->indirect ? found->indirect->profile : nullptr;
    for (const ProfileFunctions *profile : reflection::profiles())
        if (profile->row->action_table == table || profile->row->selector == table)
            return profile;
    return nullptr;
}

} // namespace

bool ReplayHandles::has(Kind kind)
{
    return kind == Kind::entry || kind == Kind::entry_word || kind == Kind::value_set_entry ||
           kind == Kind::member || kind == Kind::group;
}

ReplayHandles::Place ReplayHandles::place(Kind kind, u32 table, u32 recorded)
{
    if (kind == Kind::entry_word)
        kind = Kind::entry;
    if (const ProfileFunctions *profile = profile_of(table))
        table = kind == Kind::member  ? profile->row->action_table
                : kind == Kind::group ? profile->row->selector
                                      : table;
    return {kind, table, recorded};
}

void ReplayHandles::learn(Kind kind, u32 table, u32 recorded, u32 played)
{
    played_[place(kind, table, recorded)] = played;
}

u32 ReplayHandles::find(Kind kind, u32 table, u32 recorded) const
{
    const auto known = played_.find(place(kind, table, recorded));
    return known != played_.end() ? known->second : recorded;
}

} // namespace shell
