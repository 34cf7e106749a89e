// Hexadecimal digits into a caller's buffer.
#pragma once

#include "pd_types.h"

namespace pd_tessel {

inline constexpr u32 wide_digits = 32;

inline char *put_hex(char *to, u32 value, u32 digits)
{
    for (u32 i = digits; i-- > 0; value >>= 4)
        to[i] = "0123456789abcdef"[value & 0xf];
    return to + digits;
}

// The 16 bytes of a wide field, in upper case unlike all others: deliberate.
inline char *put_wide_hex(char *to, const u8 *bytes)
{
    for (u32 i = 0; i < wide_digits / 2; ++i) {
        *to++ = "0123456789ABCDEF"[bytes[i] >> 4];
        *to++ = "0123456789ABCDEF"[bytes[i] & 0xf];
    }
    return to;
}

} // namespace pd_tessel
