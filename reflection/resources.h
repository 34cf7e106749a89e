// Every counter, meter and register with its functions.
#pragma once

#include "reflection_records.h"

namespace reflection {

std::span<const CounterFunctions> counters();
std::span<const MeterFunctions> meters();
std::span<const RegisterFunctions> registers();

} // namespace reflection
