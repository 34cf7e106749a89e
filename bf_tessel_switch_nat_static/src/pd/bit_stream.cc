#include "bit_stream.h"

#include "rows.h"

namespace pd {

void prepend_to_bytestream(u8 **cursor, u32 *used, const u8 *field, u32 width)
{
    const u8 *source = field + bytes_of(width);
    while (width > 0) {
        const u32 byte = *--source;
        const u32 upper = *used; // how many bits of the source byte the cursor's byte has no room for
        const u32 lower = 8 - upper;
        **cursor |= static_cast<u8>(byte << upper);
        if (width < lower) {
            *used += width;
            return;
        }
        --*cursor;
        width -= lower;
        *used = 0;
        if (width == 0)
            return;
        **cursor |= static_cast<u8>(byte >> lower);
        *used = width < upper ? width : upper;
        width -= *used;
    }
}

} // namespace pd
