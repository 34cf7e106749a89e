// What callers that know no table hand over for an entry, and where they want one that is read.
#pragma once

#include "entry_arguments.h"
#include "pd_resources.h"
#include "pd_services.h"

namespace reflection {

using EntryArguments = pd::EntryArguments;

// Where a caller wants an entry that is read. What a table does not have is not looked at.
struct EntryResults {
    void *key = nullptr; // the table's key record
    u32 *priority = nullptr;
    u8 *is_default = nullptr;
    char *action_name = nullptr;  // may stay null
    void *action = nullptr;       // room for the parameter record of any action of the table
    u32 *action_number = nullptr; // may stay null
};

// Likewise what an entry points at. Each keeps what the library does not write.
struct ReferenceResults {
    u8 has_member = 0;
    u8 has_group = 0;
    pd_mbr_hdl member = 0;
    pd_grp_hdl group = 0;
};

} // namespace reflection
