// The statuses that the library makes up itself. The driver's own pass through unchanged, so a caller cannot
// tell them from the same numbers of the driver.
#pragma once

#include "pd_types.h"

namespace pd {

inline constexpr pd_status success = 0;
inline constexpr pd_status out_of_memory = 2;
inline constexpr pd_status bad_placement_data = 3;
inline constexpr pd_status unknown_choice = 3;
inline constexpr pd_status unreadable_answer = 15;
inline constexpr pd_status wrong_action = ~pd_status{0};

} // namespace pd
