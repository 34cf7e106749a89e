// A driver without contents: every operation of any_driver.cc, which is generated, comes to any_operation(),
// which whoever links that file defines. For tests, benchmarks, and whoever answers all operations alike.
#pragma once

#include <initializer_list>

#include "operation.h"

namespace tap {

// `operation` is the place of its row; the result is what the operation returns.
u64 any_operation(unsigned operation, std::initializer_list<Value> values);

} // namespace tap
