// Text as the characters of UTF-8.
#pragma once

#include <cstddef>
#include <string_view>

namespace shell {

// The bytes of the character that `text` begins with; 0 where its bytes are no UTF-8.
std::size_t utf8_length(std::string_view text);

// How many characters there are, when all of it is UTF-8.
std::size_t utf8_characters(std::string_view text);

} // namespace shell
