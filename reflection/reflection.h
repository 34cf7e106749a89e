// Every table with its functions, for generic callers: shells, sweeps, loaders. One generated table holds the
// rows of the catalogue and, beside each, adapters of one signature around the exported functions. It needs
// the library and its rows; the library knows nothing of it.
#pragma once

#include <span>
#include <string_view>

#include "reflection_records.h"

namespace reflection {

// All 158 tables, by handle.
std::span<const TableFunctions *const> tables();

// The 4 action profiles, in the order that is kept everywhere.
std::span<const ProfileFunctions *const> profiles();

// All 298 actions, by number, and how each tells of its parameters in text.
std::span<const pd::Action *const> actions();
std::span<const ActionTextFunctions> action_texts();

// Null when there is no such table, or no such action of it.
const TableFunctions *find_table(std::string_view name);
const TableFunctions *find_table(u32 handle);
const ActionFunctions *find_action(const TableFunctions &table, std::string_view name);
const ProfileFunctions *find_profile(std::string_view name);
const MemberFunctions *find_action(const ProfileFunctions &profile, std::string_view name);

} // namespace reflection
