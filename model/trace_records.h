// The text of the driver's records in a trace line.
#pragma once

#include <span>
#include <string>

#include "pipe_mgr_records.h"

namespace model {

// "{value=0123 mask=ffff partition=0 priority=0 bits=9 bytes=2}"
std::string match_text(const pipe_match_spec *match);

// "{bits=33 bytes=6 data=000100020003}"
std::string data_text(const pipe_action_data &data);

// "{kind=1 bits=33 bytes=6 data=000100020003}", behind it the member or group and the resources, if any.
std::string action_text(const pipe_action_spec *spec);

// "[handle=0x5000001 index=0 tag=1 meter={type=0 committed=0:1000:10 peak=0:2000:20}]"
std::string resources_text(std::span<const pipe_res_spec> resources);

// "{type=0 committed=0:1000:10 peak=0:2000:20}", each time the unit, the rate and the burst.
std::string meter_text(const pipe_meter_spec *meter);

} // namespace model
