// Meters, as the commands around entries write them.
#pragma once

#include <string>
#include <string_view>

#include "pd_types.h"
#include "reflection.h"

namespace shell {

// By their numbers.
inline constexpr std::string_view meter_types[] = {"aware", "unaware"};
static_assert(PD_METER_TYPE_COLOR_AWARE == 0 && PD_METER_TYPE_COLOR_UNAWARE == 1);

// "meter=CR,CB,PR,PB,TYPE" of an entry, or of the default entry; empty where no meter is attached, and in
// tables without a direct meter. Throws BadLine when the driver refuses.
std::string meter_option(const reflection::TableFunctions &table, pd_entry_hdl entry);

std::string meter_option(const pd_meter_spec &spec);
// Likewise of one with these rates, bursts and type.
std::string meter_option(u64 committed_rate, u64 committed_burst, u64 peak_rate, u64 peak_burst, u32 type);

} // namespace shell
