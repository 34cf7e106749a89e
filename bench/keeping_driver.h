// A driver that keeps the records of each entry and hands them back, and does nothing else: what is left of a
// read-back when the driver does the least. The n-th entry added has the handle n - 1.
#pragma once

#include <vector>

#include "pipe_mgr_match.h"

#pragma GCC visibility push(default)
namespace bench {

struct Entry {
    u8 value[64];
    u8 mask[64];
    u8 data[28];
    pipe_match_spec match;
    pipe_action_spec spec;
    u32 action;
    pd_status status; // of reading it
};

// Room for the entries of one table; a benchmark clears it between tables.
extern std::vector<Entry> entries;

// Reads an entry as pipe_mgr_get_entry does.
pd_status answer(const Entry &entry, pipe_match_spec *match, pipe_action_spec *spec, u32 *action);

} // namespace bench
#pragma GCC visibility pop
