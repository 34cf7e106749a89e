// What the handles of the switch program are called.
#pragma once

#include "operation.h"

namespace tap {

// Null for a handle without a name.
const char *handle_name(Kind kind, u32 handle);

} // namespace tap
