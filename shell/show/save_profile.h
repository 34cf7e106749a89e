// The state of an action profile as commands that bring it about again.
#pragma once

#include "line_sink.h"
#include "names.h"
#include "reflection.h"

namespace shell {

// `names` with a new name for every member and group that has none.
ProfileNames named_throughout(const reflection::ProfileFunctions &profile, const ProfileNames &names);

// Members, groups with their members and states, and the fallback member. All have names. Throws BadLine when
// the driver refuses, and as the sink does.
void save_profile(LineSink &file, const reflection::ProfileFunctions &profile, const ProfileNames &names);

} // namespace shell
