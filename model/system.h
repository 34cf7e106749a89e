// The system services' own state.
#pragma once

namespace model {

void reset_system();

} // namespace model
