#include "forms.h"

#include <arpa/inet.h>
#include <array>
#include <charconv>

namespace shell {

namespace {

constexpr unsigned ipv6_width = 128;

void append_number(std::string &to, u64 number, int base)
{
    std::array<char, 20> digits;
    const auto end = std::to_chars(digits.begin(), digits.end(), number, base).ptr;
    to.append(digits.data(), end);
}

void append_hex(std::string &to, u64 number)
{
    to += "0x";
    append_number(to, number, 16);
}

void append_address(std::string &to, Value value, int family, unsigned width)
{
    std::array<u8, 16> bytes;
    std::array<char, INET6_ADDRSTRLEN> text;
    write_image(value, width, bytes.data());
    to += inet_ntop(family, bytes.data(), text.data(), text.size());
}

void append_mac(std::string &to, u64 value, unsigned width)
{
    static constexpr char digits[] = "0123456789abcdef";
    for (unsigned left = width; left > 0; left -= 8) {
        if (left != width)
            to += ':';
        to += digits[value >> (left - 4) & 0xf];
        to += digits[value >> (left - 8) & 0xf];
    }
}

} // namespace

Form form_of(pd::Format format, unsigned width)
{
    if (width == ipv6_width)
        return Form::ipv6;
    switch (format) {
    case pd::Format::v4addr:
        return Form::ipv4;
    case pd::Format::mac:
        return Form::mac_half;
    default:
        return Form::number;
    }
}

void append_text(std::string &to, Value value, Form form)
{
    switch (form) {
    case Form::ipv4:
        return append_address(to, value, AF_INET, 32);
    case Form::ipv6:
        return append_address(to, value, AF_INET6, ipv6_width);
    case Form::mac:
        return append_mac(to, value.low, mac_width);
    case Form::mac_half:
        return append_mac(to, value.low, mac_width / 2);
    case Form::number:
        return append_number(to, value.low, 10);
    }
}

std::size_t longest_text(Form form, unsigned width)
{
    std::string text;
    append_text(text, ones(width), form);
    return text.size();
}

void append_mask_text(std::string &to, Value mask, Form form)
{
    if (form == Form::number)
        append_hex(to, mask.low);
    else
        append_text(to, mask, form);
}

std::size_t longest_mask_text(Form form, unsigned width)
{
    if (form != Form::number)
        return longest_text(form, width);
    std::string text;
    append_hex(text, ones(width).low);
    return text.size();
}

} // namespace shell
