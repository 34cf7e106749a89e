#include "json.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "utf8.h"

namespace shell {

Json &Json::key(std::string_view name)
{
    text(name);
    to_ += ':';
    first_ = true;
    return *this;
}

Json &Json::text(std::string_view text)
{
    piece("\"");
    escape(text);
    to_ += '"';
    return *this;
}

Json &Json::number(u64 number)
{
    std::array<char, 20> digits;
    const auto end = std::to_chars(digits.begin(), digits.end(), number).ptr;
    return piece({digits.data(), static_cast<std::size_t>(end - digits.data())});
}

Json &Json::piece(std::string_view text)
{
    if (!first_)
        to_ += ',';
    to_ += text;
    first_ = text == "{" || text == "[";
    return *this;
}

Json &Json::end(char bracket)
{
    to_ += bracket;
    first_ = false;
    return *this;
}

void Json::escape(std::string_view text)
{
    static constexpr char digits[] = "0123456789abcdef";
    while (!text.empty()) {
        const auto byte = static_cast<unsigned char>(text.front());
        const std::size_t length = utf8_length(text);
        if (byte == '"' || byte == '\\')
            to_ += {'\\', text.front()};
        else if (length == 0 || byte < 0x20)
            to_ += {'\\', 'u', '0', '0', digits[byte >> 4], digits[byte & 0xf]};
        else
            to_ += text.substr(0, length);
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
}

} // namespace shell
