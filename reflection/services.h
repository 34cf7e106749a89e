// Every digest, parser value set and hash calculation with its functions.
#pragma once

#include "reflection_records.h"

namespace reflection {

std::span<const DigestFunctions> digests();
std::span<const ValueSetFunctions> value_sets();
std::span<const HashFunctions> hashes();

} // namespace reflection
