// Finds the objects of the switch program by their handles.
#pragma once

#include "program.h"

namespace model {

// Null for a handle that no table has.
const ProgramTable *find_table(u32 handle);

// One of the rows that have a handle: a resource, digest or hash. Null for a handle that none has.
template <typename Row>
const Row *find_object(std::span<const Row> rows, u32 handle)
{
    for (const Row &row : rows)
        if (row.handle == handle)
            return &row;
    return nullptr;
}

// Whether this is one of `resources` and has a table of its own, not a cell with each entry of a match table.
bool is_indexed(std::span<const ProgramResource> resources, u32 handle);

// Null for an action that is not among `actions`.
const ProgramAction *find_action(std::span<const ProgramAction> actions, u32 handle);

// The profile with this action data table or selector, null for none; 0 is nobody's.
const ProgramProfile *find_profile_by_members(u32 action_table);
const ProgramProfile *find_profile_by_groups(u32 selector);

// An action of any profile, null for none.
const ProgramAction *find_member_action(u32 handle);

} // namespace model
