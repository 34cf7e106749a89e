// Random records of callers, for sweeps over the catalogue. The seed is fixed and named in failures.
#pragma once

#include <cstring>
#include <iterator>
#include <random>
#include <vector>

#include "rows.h"

namespace sweep {

using Bytes = std::vector<u8>;

inline constexpr u32 seed = 20240607;
inline constexpr pd_status statuses[] = {0, 1, 2, 15, 0x7fffffff, 0xffffffff};

// Of the member that holds a field of `width` bits.
inline std::size_t member_size(u32 width)
{
    return width <= 8 ? 1 : width <= 16 ? 2 : width <= 32 ? 4 : 16;
}

inline void set_prefix_length(Bytes &key, const pd::Field &field, u32 length)
{
    const u16 twin = static_cast<u16>(length);
    std::memcpy(&key[field.twin_offset], &twin, sizeof twin);
}

class Random {
public:
    u32 word() { return static_cast<u32>(numbers()); }

    // Nothing, everything, or anything: bits beyond the width of a field are set more often than not.
    void scramble(u8 *bytes, std::size_t size)
    {
        const u32 kind = word() % 4;
        for (std::size_t i = 0; i < size; ++i)
            bytes[i] = kind == 0 ? 0 : kind == 1 ? 0xff : static_cast<u8>(word());
    }

    u16 prefix_length(u32 width)
    {
        const u32 choices[] = {0, width, width + 1, 65535, word() % (width + 1), word() % (width + 1)};
        return static_cast<u16>(choices[word() % std::size(choices)]);
    }

    // What lies between the members is not zero.
    Bytes key(const pd::Table &table)
    {
        Bytes key(table.record_size, 0xa5);
        for (const pd::Field &field : table.key) {
            const std::size_t size = member_size(field.width);
            scramble(&key[field.offset], size);
            if (field.match == pd::Match::ternary)
                scramble(&key[field.twin_offset], size);
            if (field.match == pd::Match::lpm)
                set_prefix_length(key, field, prefix_length(field.width));
        }
        return key;
    }

    Bytes parameters(const pd::Action &action)
    {
        Bytes parameters(action.record_size, 0xa5);
        for (const pd::Parameter &parameter : action.parameters)
            scramble(&parameters[parameter.offset], member_size(parameter.width));
        return parameters;
    }

private:
    std::mt19937 numbers{seed};
};

} // namespace sweep
