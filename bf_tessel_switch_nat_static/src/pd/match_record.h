// The key of an entry as the driver takes it: both images and the record that points at them, side by side on
// the caller's stack.
#pragma once

#include <utility>

#include "image.h"
#include "pipe_mgr.h"

namespace pd {

template <const Table &table>
class MatchRecord {
public:
    // `priority` counts for a ternary key only.
    [[gnu::always_inline]] MatchRecord(const void *key, u32 priority)
    {
        record.match_value = value;
        record.match_mask = mask;
        record.partition_index = 0;
        record.priority = kind == Match::ternary ? priority : 0;
        record.num_valid_bits = size.bits;
        record.num_bytes = size.bytes;
        record.match_reserved = 0;
        fill(key, std::make_index_sequence<table.key.size()>{});
    }

    MatchRecord(const MatchRecord &) = delete;

    pipe_match_spec *spec() { return &record; }

private:
    static constexpr Match kind = key_kind(table);
    static constexpr ImageSize size = image_size(table.key);

    u8 value[size.bytes];
    u8 mask[size.bytes];
    pipe_match_spec record;

    template <std::size_t... fields>
    [[gnu::always_inline]] void fill(const void *key, std::index_sequence<fields...>)
    {
        if constexpr (kind == Match::lpm) {
            constexpr const Field &field = lpm_field();
            const u32 length = load_member<16>(key, field.twin_offset);
            if (length > field.width) {
                // Ranks behind every prefix; the mask stays all ones and the value as it is.
                record.priority = size.bits + 1u;
                (put_exact<fields>(key, 0xff), ...);
            } else {
                record.priority = field.width - length;
                (put_prefixed<fields>(key, length), ...);
            }
        } else if constexpr (kind == Match::ternary) {
            (put_ternary<fields>(key), ...);
        } else {
            (put_exact<fields>(key, 0xff), ...);
        }
    }

    static constexpr const Field &lpm_field()
    {
        for (const Field &field : table.key)
            if (field.match == Match::lpm)
                return field;
        return table.key.front();
    }

    // An exact field is clipped in neither image: in an exact key all mask bits of its bytes are set.
    // The partition goes to a word of the record; its value bytes stay 0.
    template <std::size_t index>
    [[gnu::always_inline]] void put_exact(const void *key, u8 partition_mask)
    {
        constexpr const Field &field = table.key[index];
        constexpr u16 at = image_offset(table.key, index);
        constexpr u16 bytes = bytes_of(field.width);
        if constexpr (field.partition_index) {
            record.partition_index = load_member<field.width>(key, field.offset);
            std::memset(value + at, 0, bytes);
            std::memset(mask + at, partition_mask, bytes);
        } else {
            put_value<index>(key);
            std::memset(mask + at, 0xff, bytes);
        }
    }

    template <std::size_t index>
    [[gnu::always_inline]] void put_value(const void *key)
    {
        constexpr const Field &field = table.key[index];
        constexpr u16 at = image_offset(table.key, index);
        if constexpr (field.width == 128)
            store_wide(value + at, load_wide(key, field.offset));
        else
            store_big_endian<bytes_of(field.width)>(value + at, load_member<field.width>(key, field.offset));
    }

    template <std::size_t index>
    [[gnu::always_inline]] void put_prefixed(const void *key, u32 length)
    {
        constexpr const Field &field = table.key[index];
        constexpr u16 at = image_offset(table.key, index);
        if constexpr (field.match != Match::lpm) {
            put_exact<index>(key, 0);
        } else if constexpr (field.width == 128) {
            const Wide bits = load_wide(wide_prefix_masks[length].data(), 0);
            store_wide(value + at, load_wide(key, field.offset) & bits);
            store_wide(mask + at, bits);
        } else {
            const u32 bits = prefix_mask(length);
            store_big_endian<4>(value + at, load_member<32>(key, field.offset) & bits);
            store_big_endian<4>(mask + at, bits);
        }
    }

    // In a ternary key every mask is clipped to its field's width, but the value is masked before that: bits
    // beyond the width that the caller's mask covers reach the driver. A field without a mask is not masked.
    template <std::size_t index>
    [[gnu::always_inline]] void put_ternary(const void *key)
    {
        constexpr const Field &field = table.key[index];
        constexpr u16 at = image_offset(table.key, index);
        if constexpr (field.width == 128) {
            Wide bits = ~Wide{};
            if constexpr (field.match == Match::ternary)
                bits = load_wide(key, field.twin_offset);
            store_wide(value + at, load_wide(key, field.offset) & bits);
            store_wide(mask + at, bits);
        } else {
            constexpr u32 bytes = bytes_of(field.width);
            u32 bits = ones(32);
            if constexpr (field.match == Match::ternary)
                bits = load_member<field.width>(key, field.twin_offset);
            store_big_endian<bytes>(value + at, load_member<field.width>(key, field.offset) & bits);
            store_big_endian<bytes>(mask + at, bits & ones(field.width));
        }
    }
};

} // namespace pd
