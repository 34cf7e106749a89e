// A TOML file as this program reads one. The reader's own assertions are left out in every kind of build: its
// errors behind them say what is wrong with a text, and name the line.
#pragma once

#undef NDEBUG // with it, assertions become assumptions
#define TOML_ASSERT(expr) static_assert(true)
#define TOML_MAX_NESTED_VALUES 8

#include <filesystem>
#include <optional>
#include <toml++/toml.h>

#include "diagnostics.h"

namespace pdgen {

// Reads `directory`/`name`. No value, and a finding, when it is no TOML, or not of the plain kind that is
// taken: ASCII with lines of limited length, so that nothing in it nests deep.
std::optional<toml::table> read_toml(const std::filesystem::path &directory, const std::string &name,
                                     Diagnostics &diagnostics);

} // namespace pdgen
