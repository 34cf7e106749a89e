// Equality of two records, under the bits that count. Telling of the first difference, in words.
#pragma once

#include <cstring>

#include "internal.h"
#include "texts.h"

namespace TS_INTERNAL pd_tessel {

// Member by member. 1 when equal, with `msg` left alone; else 0.
u32 keys_are_equal(const TableText &table, const void *left, const void *right, char *msg);
u32 parameters_are_equal(const ActionText &action, const void *left, const void *right, char *msg);

// Records that are the same byte for byte need no look at their members. Their type tells the compiler their
// size, so that it compares short ones without a call.
template <typename Record>
u32 match_specs_are_equal(const TableText &table, const Record *left, const Record *right, char *msg)
{
    return std::memcmp(left, right, sizeof(Record)) == 0 ? 1 : keys_are_equal(table, left, right, msg);
}

template <typename Record>
u32 action_specs_are_equal(const ActionText &action, const Record *left, const Record *right, char *msg)
{
    return std::memcmp(left, right, sizeof(Record)) == 0 ? 1 : parameters_are_equal(action, left, right, msg);
}

// Compares an entry as placed with what the chip has. 1 when they agree, but for one way to the answer, which
// gives the chip's flag.
u32 plcmt_data_eq_to_hw(const TableText &table, pd_sess_hdl sess, u8 device_id, pd_entry_hdl entry,
                        void *plcmt_data, char *msg);

} // namespace pd_tessel
