// The text of the driver's records in a trace line.
#pragma once

#include <string>

#include "pipe_mgr_records.h"

namespace model {

// "{value=0123 mask=ffff partition=0 priority=0 bits=9 bytes=2}"
std::string match_text(const pipe_match_spec *match);

// "{kind=1 bits=33 bytes=6 data=000100020003}", behind it the member or group and the resources, if any.
std::string action_text(const pipe_action_spec *spec);

} // namespace model
