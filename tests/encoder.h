// What the driver has to receive for a record, worked out one bit at a time from the rules of the images.
// Slow on purpose, and without any of the library's arithmetic: names, widths and offsets of the rows are all
// it reads, and the tables that are unlike the others are named here once more.
#pragma once

#include <vector>

#include "capture_driver.h"
#include "rows.h"

namespace encoder {

u32 whole_bytes(u32 width);

// Bit `bit`, counted from the least significant, of the member of `width` bits at `offset`.
bool member_bit(const void *record, u32 offset, u32 width, u32 bit);

// Sizes of an image as the driver's packed word: bytes in the high half, bits in the low half.
u32 packed(const std::vector<u32> &widths);
u32 packed(const pd::Table &table);
u32 packed(const pd::Action &action);

// Puts into `call` what the key record gives.
void encode_key(capture::Call &call, const pd::Table &table, const void *record, u32 priority);

// Puts into `call` what the record of a member's action gives: no kind and no resources.
void encode_member(capture::Call &call, const pd::Action &action, const void *record);

// Puts into `call` what the action's record and the meter give; `family` decides on indices and absent
// meters.
enum class Family { add, modify, set_default };
void encode_action(capture::Call &call, const pd::Table &table, const pd::Action &action, const void *record,
                   const pd_meter_spec *meter, Family family);

// The only table whose add functions take a time to live.
bool takes_ttl(const pd::Table &table);

} // namespace encoder
