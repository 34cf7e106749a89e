// What the generated files hand to reflection.cc.
#pragma once

#include <cstddef>

#include "reflection.h"

namespace reflection {

extern const TableFunctions *const table_index[]; // by handle
extern const std::size_t table_count;
extern const ProfileFunctions *const profile_index[];
extern const std::size_t profile_count;
extern const pd::Action *const action_index[]; // by number
extern const std::size_t action_count;

} // namespace reflection
