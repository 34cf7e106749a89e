// The handles of member-selection states, which are the same for all devices.
#pragma once

namespace model {

// Takes all handles back; those given out before are unknown then.
void reset_selection_states();

} // namespace model
