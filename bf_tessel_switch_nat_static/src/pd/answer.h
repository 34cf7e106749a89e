// The records and buffers that the driver reads an entry into, and the key out of them. For the sequences of
// a read only.
#pragma once

#include "read_back.h"

namespace pd {

// What the driver answers into; a reader of action data hangs `data` on `spec` first.
struct Answer {
    // Aligned so that the stores of zero() stay within their cache lines.
    alignas(16) u8 value[max_key_bytes];
    alignas(16) u8 mask[max_key_bytes];
    alignas(16) pipe_action_spec spec;
    pipe_match_spec match;
    u8 data[data_buffer_bytes];
    u32 action;

    explicit Answer(const TableReader &table)
    {
        zero<sizeof spec>(&spec);
        zero<sizeof data>(data);
        match = {};
        if (table.key_size.bytes == 0)
            return; // the record of a keyless table is all zero
        // Not by the byte, since how many a key needs is not known while compiling; most need 16.
        zero<sizeof(Wide)>(value);
        zero<sizeof(Wide)>(mask);
        if (table.key_size.bytes > sizeof(Wide)) {
            zero<sizeof value - sizeof(Wide)>(value + sizeof(Wide));
            zero<sizeof mask - sizeof(Wide)>(mask + sizeof(Wide));
        }
        match.match_value = value;
        match.match_mask = mask;
    }

    Answer(const Answer &) = delete;
};

// A null image or an empty one is how the default entry shows.
inline void read_key(const TableReader &table, const pipe_match_spec &match, const KeyOut &out)
{
    const bool is_default = !match.match_value || match.num_bytes == 0;
    *out.is_default = is_default;
    if (is_default)
        std::memset(out.key, 0, table.record_size);
    else
        table.unbuild_key(&match, out.key);
    if (table.has_priority)
        *out.priority = match.priority;
    if (!is_default && table.unbuild_mask)
        table.unbuild_mask(&match, out.key);
}

} // namespace pd
