// Values of fields: read from the forms that people write, checked against the width of their field, and
// moved into records and images.
#pragma once

#include <compare>
#include <string>
#include <string_view>

#include "pd_types.h"

namespace shell {

// An unsigned number of up to 128 bits.
struct Value {
    u64 high = 0;
    u64 low = 0;

    auto operator<=>(const Value &) const = default;
    Value operator&(const Value &mask) const { return {high & mask.high, low & mask.low}; }
};

// The width at which a whole MAC address is read; a half has 24 bits.
constexpr unsigned mac_width = 48;

// The number with the lowest `bits` bits set.
Value ones(unsigned bits);
// A mask of `width` bits whose first `bits` bits are set. `bits` is at most `width`.
Value leading_ones(unsigned bits, unsigned width);

// Reads a number (decimal or 0x), and where the width says so a dotted IPv4 address (32), an IPv6 address
// (128), three bytes of a MAC address (24) or a whole one (48). `name` is what the value is for.
// Throws BadLine.
Value parse_value(std::string_view text, unsigned width, std::string_view name);
// A plain number of at most `largest`. Throws BadLine.
u32 parse_u32(std::string_view text, u32 largest, std::string_view name);

// "4095 (0xfff)"; wide numbers in hex alone.
std::string to_text(Value value);

// Moves a value between here and a record member of the type that the width gives.
void store(Value value, unsigned width, void *member);
Value load(unsigned width, const void *member);
// Big-endian, in as many bytes as the width needs.
void write_image(Value value, unsigned width, u8 *image);

} // namespace shell
