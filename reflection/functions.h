// Every exported function in text.
#pragma once

#include <string_view>

namespace reflection {

// A line for each: its name, its family, the object that it is about, the type of what it returns, its
// parameters and its brief, with tabs between them.
extern const std::string_view function_lines;

} // namespace reflection
