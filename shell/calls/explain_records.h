// The library's records that a recorded call was made from.
#pragma once

#include <vector>

#include "arguments.h"
#include "reflection.h"

namespace shell {

// Aligned for every member.
using CallerRecord = std::vector<u64>;

CallerRecord key_record(const reflection::TableFunctions &table, pipe_match_spec match);
CallerRecord parameter_record(const pd::Action &action, const pipe_action_spec &spec);

std::span<const pipe_res_spec> resources_of(const pipe_action_spec &spec);
// What the call attaches to the entry as its meter; null for none.
const pipe_meter_spec *meter_of(const reflection::TableFunctions &table, const pipe_action_spec &spec);

} // namespace shell
