// The default entry that a table starts with.
#pragma once

#include "entry_copy.h"
#include "program.h"

namespace model {

// The first action, by name, that may be the default, or the only one of a table in which none may: its data
// all zero, a direct counter attached, any other resource detached. An indirect table starts with no action.
EntryCopy program_default(const ProgramTable &table);

} // namespace model
