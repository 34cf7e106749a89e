// What the driver has to receive for a record, worked out one bit at a time from the rules of the images.
// Slow on purpose, and without any of the library's arithmetic: names, widths and offsets of the rows are all
// it reads, and the tables that are unlike the others are named here once more.
#pragma once

#include "recorder.h"
#include "rows.h"

namespace encoder {

using recorder::Bytes;

u32 whole_bytes(u32 width);

// Bit `bit`, counted from the least significant, of the member of `width` bits at `offset`.
bool member_bit(const void *record, u32 offset, u32 width, u32 bit);

// Sizes of an image as the driver's packed word: bytes in the high half, bits in the low half.
u32 packed(const pd::Table &table);
u32 packed(const pd::Action &action);

// The images of a key record, and what goes with them.
struct Key {
    Bytes value, mask;
    u32 partition_index = 0;
    u32 priority = 0;
    u32 packed = 0;

    pipe_match_spec record();
};
Key encode_key(const pd::Table &table, const void *record, u32 priority);

// The driver's answer for an entry with this key.
void answer_key(recorder::Answer &answer, const pd::Table &table, const void *record);

Bytes encode_data(const pd::Action &action, const void *record);

// The records of a key, of a member's action (no kind, no resources) and of an entry's action as they stand
// in a line; `family` decides on indices and absent meters.
enum class Family { add, modify, set_default };
std::string match_text(const pd::Table &table, const void *record, u32 priority);
std::string member_text(const pd::Action &action, const void *record);
std::string action_text(const pd::Table &table, const pd::Action &action, const void *record,
                        const pd_meter_spec *meter, Family family);

// Such a table ranks its entries.
bool is_ternary(const pd::Table &table);

// The only table whose add functions take a time to live.
bool takes_ttl(const pd::Table &table);

} // namespace encoder
