#include "values.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <optional>

#include "rows.h"
#include "words.h"

namespace shell {

namespace {

constexpr unsigned mac_half_width = 24;
constexpr unsigned ipv4_width = 32;
constexpr unsigned ipv6_width = 128;

bool fits(Value value, unsigned width)
{
    const Value largest = ones(width);
    return (value.high & ~largest.high) == 0 && (value.low & ~largest.low) == 0;
}

Value from_bytes(const u8 *bytes, std::size_t count)
{
    Value value;
    for (std::size_t i = 0; i < count; ++i) {
        value.high = value.high << 8 | value.low >> 56;
        value.low = value.low << 8 | bytes[i];
    }
    return value;
}

std::optional<unsigned> digit(char c, unsigned base)
{
    unsigned value = base;
    if (c >= '0' && c <= '9')
        value = static_cast<unsigned>(c - '0');
    else if (c >= 'a' && c <= 'f')
        value = static_cast<unsigned>(c - 'a') + 10;
    else if (c >= 'A' && c <= 'F')
        value = static_cast<unsigned>(c - 'A') + 10;
    return value < base ? std::optional{value} : std::nullopt;
}

// value * base + digit, with false when it would need more than 128 bits.
bool append_digit(Value &value, unsigned base, unsigned digit)
{
    const u64 lower = (value.low & 0xffffffff) * base + digit;
    const u64 upper = (value.low >> 32) * base + (lower >> 32);
    const u64 carry = upper >> 32;
    if (value.high > (~u64{0} - carry) / base)
        return false;
    value.low = upper << 32 | (lower & 0xffffffff);
    value.high = value.high * base + carry;
    return true;
}

struct Number {
    Value value;
    bool too_wide = false;
};

// Nothing when the text is no number.
std::optional<Number> read_number(std::string_view text)
{
    const bool hex = text.starts_with("0x") || text.starts_with("0X");
    const unsigned base = hex ? 16 : 10;
    text.remove_prefix(hex ? 2 : 0);
    if (text.empty())
        return std::nullopt;
    Number number;
    for (const char c : text) {
        const std::optional<unsigned> next = digit(c, base);
        if (!next)
            return std::nullopt;
        number.too_wide = number.too_wide || !append_digit(number.value, base, *next);
    }
    return number;
}

std::optional<Value> read_address(std::string_view text, int family, std::size_t bytes)
{
    std::array<char, INET6_ADDRSTRLEN> terminated{};
    std::array<u8, 16> address;
    if (text.size() >= terminated.size())
        return std::nullopt;
    text.copy(terminated.data(), text.size());
    if (inet_pton(family, terminated.data(), address.data()) != 1)
        return std::nullopt;
    return from_bytes(address.data(), bytes);
}

// Hex digits, exactly as many as the width has: by two between colons or hyphens, or by four between dots.
std::optional<Value> read_mac(std::string_view text, unsigned width)
{
    const std::size_t mark = text.find_first_of(":-.");
    const std::size_t group = mark != std::string_view::npos && text[mark] == '.' ? 4 : 2;
    const std::size_t digits = width / 4;
    if (mark != group || digits % group != 0 || text.size() != digits + digits / group - 1)
        return std::nullopt;
    Value value;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (i % (group + 1) == group) {
            if (text[i] != text[mark])
                return std::nullopt;
            continue;
        }
        const std::optional<unsigned> next = digit(text[i], 16);
        if (!next)
            return std::nullopt;
        append_digit(value, 16, *next);
    }
    return value;
}

std::optional<Number> read(std::string_view text, unsigned width)
{
    std::optional<Value> address;
    if (width == ipv4_width && text.find('.') != std::string_view::npos)
        address = read_address(text, AF_INET, 4);
    else if (width == ipv6_width && text.find(':') != std::string_view::npos)
        address = read_address(text, AF_INET6, 16);
    else if (width == mac_width || width == mac_half_width)
        address = read_mac(text, width);
    if (address)
        return Number{*address};
    return read_number(text);
}

const char *special_form(unsigned width)
{
    switch (width) {
    case mac_half_width:
        return " or three bytes such as 00:11:22";
    case ipv4_width:
        return " or an IPv4 address";
    case mac_width:
        return " or a MAC address";
    case ipv6_width:
        return " or an IPv6 address";
    default:
        return "";
    }
}

template <typename Member>
void copy_to(void *to, u64 value)
{
    const auto member = static_cast<Member>(value);
    std::memcpy(to, &member, sizeof member);
}

template <typename Member>
Value copy_from(const void *from)
{
    Member member;
    std::memcpy(&member, from, sizeof member);
    return {0, member};
}

} // namespace

Value ones(unsigned bits)
{
    const auto below = [](unsigned count) { return count == 0 ? 0 : ~u64{0} >> (64 - count); };
    return {below(bits > 64 ? bits - 64 : 0), below(std::min(bits, 64u))};
}

Value leading_ones(unsigned bits, unsigned width)
{
    const Value all = ones(width);
    const Value suppressed = ones(width - bits);
    return {all.high & ~suppressed.high, all.low & ~suppressed.low};
}

Value parse_value(std::string_view text, unsigned width, std::string_view name)
{
    const std::optional<Number> number = read(text, width);
    if (!number)
        throw BadLine{text, std::string{name} + ": " +
                                (text.empty() ? "no value" : quoted(text) + " is no value") +
                                ": give a number up to " + to_text(ones(width)) + special_form(width)};
    if (number->too_wide || !fits(number->value, width))
        throw BadLine{text, std::string{name} + ": " + quoted(text) + " does not fit into " +
                                std::to_string(width) + (width == 1 ? " bit" : " bits") + ": give at most " +
                                to_text(ones(width))};
    return number->value;
}

u32 parse_u32(std::string_view text, u32 largest, std::string_view name)
{
    const std::optional<Number> number = read_number(text);
    if (!number || number->too_wide || number->value.high != 0 || number->value.low > largest)
        throw BadLine{text, std::string{name} + ": " + quoted(text) + " is no number from 0 to " +
                                std::to_string(largest)};
    return static_cast<u32>(number->value.low);
}

std::string to_text(Value value)
{
    std::array<char, 64> text;
    if (value.high != 0)
        std::snprintf(text.data(), text.size(), "0x%" PRIx64 "%016" PRIx64, value.high, value.low);
    else if (value.low < 10)
        std::snprintf(text.data(), text.size(), "%" PRIu64, value.low);
    else
        std::snprintf(text.data(), text.size(), "%" PRIu64 " (0x%" PRIx64 ")", value.low, value.low);
    return text.data();
}

void store(Value value, unsigned width, void *member)
{
    if (width <= 8)
        copy_to<u8>(member, value.low);
    else if (width <= 16)
        copy_to<u16>(member, value.low);
    else if (width <= 32)
        copy_to<u32>(member, value.low);
    else
        write_image(value, width, static_cast<u8 *>(member));
}

Value load(unsigned width, const void *member)
{
    if (width <= 8)
        return copy_from<u8>(member);
    if (width <= 16)
        return copy_from<u16>(member);
    if (width <= 32)
        return copy_from<u32>(member);
    return from_bytes(static_cast<const u8 *>(member), pd::bytes_of(width));
}

void write_image(Value value, unsigned width, u8 *image)
{
    for (unsigned i = pd::bytes_of(width); i-- > 0;) {
        image[i] = static_cast<u8>(value.low);
        value.low = value.low >> 8 | value.high << 56;
        value.high >>= 8;
    }
}

} // namespace shell
