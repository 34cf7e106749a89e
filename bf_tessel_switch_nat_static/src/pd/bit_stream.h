// The one packer of bits: hash inputs go to the driver without rounding to bytes.
#pragma once

#include "internal.h"
#include "pd_types.h"

namespace TS_INTERNAL pd {

// Puts a field of `width` bits, the low ones of its big-endian bytes, in front of what a zeroed stream holds.
// The stream grows from its end: `cursor` is the byte that is being filled, `used` tells how many of its low
// bits are taken. Deliberate: bits above the width are not cut off, they end up in what comes in front.
void prepend_to_bytestream(u8 **cursor, u32 *used, const u8 *field, u32 width);

} // namespace pd
