// Names of files as words give them.
#pragma once

#include <string>
#include <string_view>

#include "words.h"

namespace shell {

struct FileName {
    std::string name;       // "~/" expanded, without quotation marks and backslashes
    std::string_view where; // as it was written
};

// Takes the next word, in which quotation marks keep blanks together and a backslash takes the character
// behind it as it is. Throws BadLine when there is none or a quotation mark is left open.
FileName take_file_name(Words &words);

} // namespace shell
