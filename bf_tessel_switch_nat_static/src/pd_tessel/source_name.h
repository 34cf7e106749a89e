// The source name in every assertion of this directory.
#pragma once

namespace pd_tessel {

inline constexpr char source_name[] = "bf_tessel_switch_nat_static/src/pd_tessel";

} // namespace pd_tessel
