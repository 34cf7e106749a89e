#include "equality.h"

#include <bit>
#include <cstdio>

namespace pd_tessel {

namespace {

u64 big_endian(const u8 *bytes)
{
    u64 word;
    std::memcpy(&word, bytes, sizeof word);
    return __builtin_bswap64(word);
}

// A wide field is compared under its mask, though it is shown without it: deliberate.
bool wide_fields_are_equal(const Tuple &tuple, const void *left, const void *right)
{
    const u8 *a = static_cast<const u8 *>(left) + tuple.offset,
             *b = static_cast<const u8 *>(right) + tuple.offset;
    return ((big_endian(a) ^ big_endian(b)) & tuple.mask.high) == 0 &&
           ((big_endian(a + 8) ^ big_endian(b + 8)) & tuple.mask.low) == 0;
}

bool are_equal(const Tuple &tuple, const void *left, const void *right, const char *prefix, char *msg)
{
    if (tuple.width == wide) {
        const bool equal = wide_fields_are_equal(tuple, left, right);
        if (!equal)
            std::sprintf(msg, "%s%s differs", prefix, tuple.name);
        return equal;
    }
    const u32 a = value_of(tuple, left), b = value_of(tuple, right);
    if (a != b)
        std::sprintf(msg, "%s%s differs 0x%x vs 0x%x", prefix, tuple.name, a, b);
    return a == b;
}

u32 are_equal(std::span<const Tuple> tuples, const void *left, const void *right, const char *prefix,
              char *msg)
{
    for (const Tuple &tuple : tuples)
        if (!are_equal(tuple, left, right, prefix, msg))
            return 0;
    return 1;
}

} // namespace

u32 keys_are_equal(const TableText &table, const void *left, const void *right, char *msg)
{
    return are_equal(table.key, left, right, "mspec ", msg);
}

u32 parameters_are_equal(const ActionText &action, const void *left, const void *right, char *msg)
{
    return are_equal(action.parameters, left, right, "aspec action_", msg);
}

} // namespace pd_tessel
