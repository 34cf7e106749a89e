#include "line_text.h"

#include <charconv>
#include <cstdint>
#include <iterator>

namespace tap {

void LineText::text(std::string_view words)
{
    line_.append(words);
}

void LineText::decimal(u64 number)
{
    char digits[20];
    line_.append({digits, std::to_chars(digits, std::end(digits), number).ptr});
}

void LineText::signed_decimal(u64 number)
{
    const bool negative = static_cast<std::int64_t>(number) < 0;
    text(negative ? "-" : "");
    decimal(negative ? -number : number);
}

void LineText::hexadecimal(u64 number)
{
    char digits[16];
    text(number != 0 ? "0x" : "");
    line_.append({digits, std::to_chars(digits, std::end(digits), number, 16).ptr});
}

void LineText::pair(std::string_view before, u64 number)
{
    text(before);
    decimal(number);
}

void LineText::digits(const u8 *bytes, std::size_t count)
{
    constexpr char hex[] = "0123456789abcdef";
    u8 *to = line_.reserve(2 * count);
    for (std::size_t at = 0; at < count && !line_.failed(); ++at) {
        *to++ = hex[bytes[at] >> 4];
        *to++ = hex[bytes[at] & 15];
    }
    line_.advance(2 * count);
}

void LineText::image(const u8 *bytes, std::size_t count)
{
    if (bytes == nullptr)
        return text("null");
    if (count == 0)
        return text("-");
    digits(bytes, count);
}

void LineText::words(std::initializer_list<u32> numbers)
{
    const char *before = "[";
    for (const u32 number : numbers) {
        pair(before, number);
        before = " ";
    }
    text("]");
}

} // namespace tap
