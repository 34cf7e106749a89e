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
        // What follows the pointers are 16 bytes, of which the priority and the partition may change.
        store_wide(reinterpret_cast<u8 *>(&record) + pointers, image.template wide<pointers>());
        if constexpr (kind == Match::ternary)
            record.priority = priority;
        fill(key, std::make_index_sequence<table.key.size()>{});
    }

    MatchRecord(const MatchRecord &) = delete;

    pipe_match_spec *spec() { return &record; }

private:
    static constexpr Match kind = key_kind(table);
    static constexpr ImageSize size = image_size(table.key);

    static constexpr std::size_t pointers = offsetof(pipe_match_spec, partition_index);
    static constexpr auto image = [] {
        ConstantImage<sizeof(pipe_match_spec)> bytes;
        bytes.put(offsetof(pipe_match_spec, num_valid_bits), size.bits, 2);
        bytes.put(offsetof(pipe_match_spec, num_bytes), size.bytes, 2);
        return bytes;
    }();

    // Whole 16 bytes, aligned, so that one store fills them; with room behind a last field of three bytes.
    static constexpr u32 room = size.bytes < 4 ? 4 : size.bytes < 8 ? 8 : (size.bytes + 16u) & ~15u;

    alignas(std::min(room, 16u)) u8 value[room];
    alignas(std::min(room, 16u)) u8 mask[room];
    alignas(16) pipe_match_spec record;

    template <std::size_t... fields>
    [[gnu::always_inline]] void fill(const void *key, std::index_sequence<fields...>)
    {
        if constexpr (kind == Match::lpm) {
            constexpr const Field &field = lpm_field();
            const u32 given = load_member<16>(key, field.twin_offset);
            // A longer prefix ranks behind every other; its mask stays all ones and the value as it is.
            const u32 length = given > field.width ? field.width + 1u : given;
            record.priority = given > field.width ? size.bits + 1u : field.width - given;
            (put_prefixed<fields>(key, length), ...);
        } else if constexpr (kind == Match::ternary) {
            (put_ternary<fields>(key), ...);
        } else {
            std::memset(mask, 0xff, sizeof mask); // in one piece, for all fields
            (put_exact<fields>(key), ...);
        }
    }

    static constexpr const Field &lpm_field()
    {
        for (const Field &field : table.key)
            if (field.match == Match::lpm)
                return field;
        return table.key.front();
    }

    // The mask bytes of fields that match exactly beside others. Only a ternary key clips them to the widths.
    static constexpr std::array<u8, room> constant_mask = [] {
        std::array<u8, room> bytes{};
        for (std::size_t index = 0; index < table.key.size(); index++) {
            const Field &field = table.key[index];
            const u16 end = image_offset(table.key, index + 1);
            for (u32 byte = 0; byte < bytes_of(field.width); byte++) {
                const u32 bits = field.width - 8 * byte;
                bytes[end - 1 - byte] = static_cast<u8>(kind == Match::ternary ? ones(bits) : 0xff);
            }
        }
        return bytes;
    }();

    // Whether the mask of a field beside others is the same in every entry.
    static constexpr bool has_constant_mask(std::size_t index)
    {
        return table.key[index].match == Match::exact && !table.key[index].partition_index;
    }

    // Writes the mask bytes of all fields from `index` on that are constant, with the first of them.
    template <std::size_t index>
    [[gnu::always_inline]] void put_constant_mask()
    {
        if constexpr (index == 0 || !has_constant_mask(index - 1)) {
            constexpr u16 at = image_offset(table.key, index);
            constexpr std::size_t end = [] {
                std::size_t next = index;
                while (next < table.key.size() && has_constant_mask(next))
                    ++next;
                return next;
            }();
            std::memcpy(mask + at, constant_mask.data() + at, image_offset(table.key, end) - at);
        }
    }

    // An exact field is clipped in neither image: in an exact key all mask bits of its bytes are set.
    // The partition goes to a word of the record; its value bytes stay 0.
    template <std::size_t index>
    [[gnu::always_inline]] void put_exact(const void *key)
    {
        constexpr const Field &field = table.key[index];
        if constexpr (field.partition_index) {
            record.partition_index = load_member<field.width>(key, field.offset);
            std::memset(value + image_offset(table.key, index), 0, bytes_of(field.width));
        } else {
            put_value<index>(key);
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

    // `length` is one more than the field has bits where the prefix is longer than the field.
    template <std::size_t index>
    [[gnu::always_inline]] void put_prefixed(const void *key, u32 length)
    {
        constexpr const Field &field = table.key[index];
        constexpr u16 at = image_offset(table.key, index);
        constexpr u32 bytes = bytes_of(field.width);
        if constexpr (field.partition_index) {
            put_exact<index>(key);
            std::memset(mask + at, length > lpm_field().width ? 0xff : 0, bytes);
        } else if constexpr (field.match != Match::lpm) {
            put_exact<index>(key);
            put_constant_mask<index>();
        } else if constexpr (field.width == 128) {
            const Wide bits = wide_at(prefix_masks<bytes>[length].data());
            store_wide(value + at, load_wide(key, field.offset) & bits);
            store_wide(mask + at, bits);
        } else {
            u32 bits;
            std::memcpy(&bits, prefix_masks<bytes>[length].data(), sizeof bits);
            const u32 masked = __builtin_bswap32(load_member<32>(key, field.offset)) & bits;
            std::memcpy(value + at, &masked, sizeof masked);
            std::memcpy(mask + at, &bits, sizeof bits);
        }
    }

    // In a ternary key every mask is clipped to its field's width, but the value is masked before that: bits
    // beyond the width that the caller's mask covers reach the driver. A field without a mask is not masked.
    template <std::size_t index>
    [[gnu::always_inline]] void put_ternary(const void *key)
    {
        constexpr const Field &field = table.key[index];
        constexpr u16 at = image_offset(table.key, index);
        if constexpr (field.match == Match::exact) {
            put_value<index>(key);
            put_constant_mask<index>();
        } else if constexpr (field.width == 128) {
            const Wide bits = load_wide(key, field.twin_offset);
            store_wide(value + at, load_wide(key, field.offset) & bits);
            store_wide(mask + at, bits);
        } else {
            constexpr u32 bytes = bytes_of(field.width);
            const u32 bits = load_member<field.width>(key, field.twin_offset);
            store_big_endian<bytes>(value + at, load_member<field.width>(key, field.offset) & bits);
            store_big_endian<bytes>(mask + at, bits & ones(field.width));
        }
    }
};

} // namespace pd
