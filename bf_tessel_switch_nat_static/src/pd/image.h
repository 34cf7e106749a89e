// How a record becomes an image: most significant byte first, in whole bytes, without gaps. Everything
// here is unrolled by its caller and costs one or two instructions a field.
#pragma once

#include <algorithm>
#include <array>
#include <cstring>

#include "rows.h"

namespace pd {

// Stores the low `bytes` bytes of `value`, most significant first. Three are stored as four: the byte behind
// them has to be the caller's, to be written afterwards or to be nobody's.
template <u32 bytes>
[[gnu::always_inline]] inline void store_big_endian(u8 *to, u32 value)
{
    static_assert(bytes >= 1 && bytes <= 4);
    if constexpr (bytes == 1) {
        *to = static_cast<u8>(value);
    } else if constexpr (bytes == 2) {
        const u16 swapped = __builtin_bswap16(static_cast<u16>(value));
        std::memcpy(to, &swapped, sizeof swapped);
    } else if constexpr (bytes == 3) {
        store_big_endian<4>(to, value << 8);
    } else {
        const u32 swapped = __builtin_bswap32(value);
        std::memcpy(to, &swapped, sizeof swapped);
    }
}

// Reads the member of `width` bits, up to 32, at `offset` of a caller's record.
template <u32 width>
[[gnu::always_inline]] inline u32 load_member(const void *record, u32 offset)
{
    const u8 *from = static_cast<const u8 *>(record) + offset;
    if constexpr (width <= 8) {
        return *from;
    } else if constexpr (width <= 16) {
        u16 value;
        std::memcpy(&value, from, sizeof value);
        return value;
    } else {
        u32 value;
        std::memcpy(&value, from, sizeof value);
        return value;
    }
}

// Reads `bytes` bytes, most significant first.
template <u32 bytes>
[[gnu::always_inline]] inline u32 load_big_endian(const u8 *from)
{
    static_assert(bytes >= 1 && bytes <= 4);
    if constexpr (bytes == 1) {
        return *from;
    } else if constexpr (bytes == 2) {
        u16 value;
        std::memcpy(&value, from, sizeof value);
        return __builtin_bswap16(value);
    } else if constexpr (bytes == 3) {
        return u32{*from} << 16 | load_big_endian<2>(from + 1);
    } else {
        u32 value;
        std::memcpy(&value, from, sizeof value);
        return __builtin_bswap32(value);
    }
}

// Writes the member of `width` bits, up to 32, at `offset` of a caller's record.
template <u32 width>
[[gnu::always_inline]] inline void store_member(void *record, u32 offset, u32 value)
{
    u8 *to = static_cast<u8 *>(record) + offset;
    if constexpr (width <= 8) {
        *to = static_cast<u8>(value);
    } else if constexpr (width <= 16) {
        const u16 half = static_cast<u16>(value);
        std::memcpy(to, &half, sizeof half);
    } else {
        std::memcpy(to, &value, sizeof value);
    }
}

// 128 bits in the order of the bytes in memory.
using Wide [[gnu::vector_size(16)]] = u8;

[[gnu::always_inline]] inline Wide load_wide(const void *record, u32 offset)
{
    Wide wide;
    std::memcpy(&wide, static_cast<const u8 *>(record) + offset, sizeof wide);
    return wide;
}

// Of a constant, loaded once: what goes through memcpy the compiler reads again where it was stored.
[[gnu::always_inline]] inline Wide wide_at(const u8 *bytes)
{
    using Unaligned [[gnu::vector_size(16), gnu::aligned(1), gnu::may_alias]] = u8;
    return *reinterpret_cast<const Unaligned *>(bytes);
}

[[gnu::always_inline]] inline void store_wide(u8 *to, Wide wide)
{
    std::memcpy(to, &wide, sizeof wide);
}

// The bytes of a record that are known while compiling, to be written by 16 at once.
template <std::size_t size>
struct ConstantImage {
    std::array<u8, size> bytes{};

    // The low bytes of a number in the order of this machine, which is little-endian.
    constexpr void put(std::size_t at, u32 value, u32 count)
    {
        for (u32 byte = 0; byte < count; ++byte)
            bytes[at + byte] = static_cast<u8>(value >> 8 * byte);
    }

    template <std::size_t at>
    constexpr Wide wide() const
    {
        return Wide{bytes[at],      bytes[at + 1],  bytes[at + 2],  bytes[at + 3],
                    bytes[at + 4],  bytes[at + 5],  bytes[at + 6],  bytes[at + 7],
                    bytes[at + 8],  bytes[at + 9],  bytes[at + 10], bytes[at + 11],
                    bytes[at + 12], bytes[at + 13], bytes[at + 14], bytes[at + 15]};
    }
};

// Stores two words of the machine's size, in one piece where that is 16 bytes.
[[gnu::always_inline]] inline void store_words(u8 *to, pd_word first, pd_word second)
{
    using Words [[gnu::vector_size(2 * sizeof(pd_word))]] = pd_word;
    const Words words{first, second};
    std::memcpy(to, &words, sizeof words);
}

// Zeroes a record of `bytes` bytes with 16-byte stores, as those of the writer's record are.
template <std::size_t bytes>
[[gnu::always_inline]] inline void zero(void *record)
{
    if constexpr (bytes < sizeof(Wide)) {
        std::memset(record, 0, bytes);
    } else {
        constexpr std::size_t last = bytes - sizeof(Wide);
        u8 *to = static_cast<u8 *>(record);
#pragma GCC unroll 32
        for (std::size_t at = 0; at < last; at += sizeof(Wide))
            store_wide(to + at, Wide{});
        store_wide(to + last, Wide{}); // overlaps the one before it
    }
}

constexpr u32 ones(u32 bits)
{
    return bits >= 32 ? ~u32{0} : (u32{1} << bits) - 1;
}

// Masks of `bytes` bytes in the byte order of an image: by the number of leading bits, and behind them one of
// all bits. A look-up costs less than shifts, most of all where words have 32 bits.
template <u32 bytes>
inline constexpr auto prefix_masks = [] {
    constexpr u32 bits = bytes * 8;
    std::array<std::array<u8, bytes>, bits + 2> masks{};
    for (u32 length = 0; length < masks.size(); length++)
        for (u32 bit = 0; bit < length && bit < bits; bit++)
            masks[length][bit / 8] |= static_cast<u8>(0x80 >> bit % 8);
    return masks;
}();

} // namespace pd
