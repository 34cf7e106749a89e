// Finds the objects of the switch program by their handles.
#pragma once

#include "program.h"

namespace model {

// Null for a handle that no table has.
const ProgramTable *find_table(u32 handle);

// Null for an action that is not among `actions`.
const ProgramAction *find_action(std::span<const ProgramAction> actions, u32 handle);

// An action of any profile, null for none.
const ProgramAction *find_member_action(u32 handle);

} // namespace model
