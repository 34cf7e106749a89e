// The keys of counted tables as words: what was dropped or trapped, and why.
#pragma once

#include <span>

#include "internal.h"
#include "pd_types.h"

namespace TS_INTERNAL pd_tessel {

struct TableText;

enum class LabelKind : u8 { always, flag, number, v4addr, v6addr, mac };

// A value with a text of its own, blank and all.
struct LabelName {
    u32 value;
    const char *text;
};

// One item of a line. What an item does not need is 0.
struct Label {
    LabelKind kind;
    const char *text; // the label; of a flag with the blanks behind it
    u8 width;         // of the field, bits
    u8 digits;
    u16 offset; // of the field, of its mask, and of a MAC address's second half
    u16 mask_offset;
    u16 second_offset;
    u16 second_mask_offset;
    u32 full;      // the mask that is not shown
    u32 bits;      // of the value that are shown
    u32 names_if;  // the names count when the mask has one of these
    u32 name_bits; // of the masked value that are a name's value
    std::span<const LabelName> names;
};

// The length of the line; 0, with the buffer left alone, when no item shows.
u32 match_spec_stringify(const TableText &table, const void *key, char *buf);

// Likewise for an entry of the chip; 0 as well when it cannot be read.
u32 stringify_counter(const TableText &table, pd_sess_hdl sess, u8 device_id, pd_entry_hdl entry, char *buf);

} // namespace pd_tessel
