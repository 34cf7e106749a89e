// Breaks the long lines of rendered C and C++ text as a careful hand would: argument lists behind a comma,
// comments between words.
#pragma once

#include <string>

namespace pdgen {

std::string lay_out(const std::string &text);

} // namespace pdgen
