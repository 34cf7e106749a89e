// What a caller hands to an entry function. A function that does not take one of these leaves it alone.
#pragma once

#include "internal.h"
#include "pd_types.h"

namespace pd {

struct EntryArguments {
    const void *key = nullptr;    // the table's key record
    u32 priority = 0;             // tables with a ternary key
    const void *action = nullptr; // the action's parameter record
    u32 ttl = 0;                  // tables whose add functions take one
    const pd_meter_spec *meter = nullptr;
};

} // namespace pd
