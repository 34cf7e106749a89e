// What the inspection layer knows of a member of a record: a key field, its mask or prefix length, or an
// action parameter. The tuples of a key stand in the order of its rows, in which all text and every
// comparison goes; where the members lie in memory has no say. They are made from the rows while compiling.
#pragma once

#include <array>
#include <cstring>

#include "internal.h"
#include "rows.h"

namespace TS_INTERNAL pd_tessel {

using pd::Mask;

struct Tuple {
    const char *name; // the record member; a parameter's without "action_"
    Mask mask;        // the bits that count
    u16 offset;       // in the record
    u8 width;         // bits
};

inline constexpr u8 wide = 128;

// Room for the key record of any table.
inline constexpr u32 max_record_bytes = 256;

constexpr Mask ones(u8 width)
{
    return {0, (u64{1} << width) - 1};
}

constexpr bool is_partial(const Tuple &tuple)
{
    return tuple.width != wide && tuple.mask.low != ones(tuple.width).low;
}

constexpr std::size_t hex_digits(u32 width)
{
    return (width + 3) / 4;
}

// The value of a tuple of up to 32 bits, with the bits that count.
inline u32 value_of(const Tuple &tuple, const void *record)
{
    const u8 *from = static_cast<const u8 *>(record) + tuple.offset;
    u32 value = *from;
    if (tuple.width > 16) {
        std::memcpy(&value, from, sizeof value);
    } else if (tuple.width > 8) {
        u16 half;
        std::memcpy(&half, from, sizeof half);
        value = half;
    }
    return value & static_cast<u32>(tuple.mask.low);
}

constexpr std::size_t tuple_count(const pd::Table &table)
{
    std::size_t count = 0;
    for (const pd::Field &field : table.key)
        count += field.match == pd::Match::exact ? 1 : 2;
    return count;
}

template <const pd::Table &table>
constexpr auto make_key_tuples()
{
    static_assert(table.record_size <= max_record_bytes);
    std::array<Tuple, tuple_count(table)> tuples{};
    std::size_t count = 0;
    for (const pd::Field &field : table.key) {
        tuples[count++] = {field.name, field.mask, field.offset, field.width};
        if (field.match == pd::Match::ternary)
            tuples[count++] = {field.twin, field.mask, field.twin_offset, field.width};
        else if (field.match == pd::Match::lpm)
            tuples[count++] = {field.twin, ones(16), field.twin_offset, 16};
    }
    return tuples;
}

template <const pd::Action &action>
constexpr auto make_parameter_tuples()
{
    std::array<Tuple, action.parameters.size()> tuples{};
    for (std::size_t i = 0; i < tuples.size(); ++i) {
        const pd::Parameter &parameter = action.parameters[i];
        tuples[i] = {parameter.name, ones(parameter.width), parameter.offset, parameter.width};
    }
    return tuples;
}

template <const pd::Table &table>
inline constexpr auto key_tuples = make_key_tuples<table>();

template <const pd::Action &action>
inline constexpr auto parameter_tuples = make_parameter_tuples<action>();

} // namespace pd_tessel
