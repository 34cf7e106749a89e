#include "utf8.h"

#include <algorithm>

namespace shell {

namespace {

bool is_continuation(char c)
{
    return (static_cast<unsigned char>(c) & 0xc0) == 0x80;
}

// What the lead byte promises; 0 for a byte that begins no character.
std::size_t promised_length(unsigned char lead)
{
    return lead < 0x80 ? 1 : lead < 0xc2 ? 0 : lead < 0xe0 ? 2 : lead < 0xf0 ? 3 : lead < 0xf5 ? 4 : 0;
}

// Whether the second byte makes a form that is longer than it need be, a surrogate, or more than the last
// character.
bool is_out_of_range(unsigned char lead, unsigned char second)
{
    switch (lead) {
    case 0xe0:
        return second < 0xa0;
    case 0xed:
        return second >= 0xa0;
    case 0xf0:
        return second < 0x90;
    case 0xf4:
        return second >= 0x90;
    default:
        return false;
    }
}

} // namespace

std::size_t utf8_length(std::string_view text)
{
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const std::size_t length = text.empty() ? 0 : promised_length(byte(0));
    if (length > text.size())
        return 0;
    if (length > 1) {
        const std::string_view behind = text.substr(1, length - 1);
        if (!std::ranges::all_of(behind, is_continuation) || is_out_of_range(byte(0), byte(1)))
            return 0;
    }
    return length;
}

std::size_t utf8_characters(std::string_view text)
{
    return text.size() - static_cast<std::size_t>(std::ranges::count_if(text, is_continuation));
}

} // namespace shell
