// Prints what an action profile holds: members, groups, the fallback member, and the entries that point at
// them.
#pragma once

#include <optional>

#include "names.h"
#include "reflection.h"
#include "session.h"

namespace shell {

// One member or group, or all.
void show_members(Session &session, const reflection::ProfileFunctions &profile,
                  std::optional<pd_mbr_hdl> member = {});
void show_groups(Session &session, const reflection::ProfileFunctions &profile,
                 std::optional<pd_grp_hdl> group = {});
void show_fallback(Session &session, const reflection::ProfileFunctions &profile);
void show_profile(Session &session, const reflection::ProfileFunctions &profile);

// The handle of a new member or group.
void print_created(Session &session, const reflection::ProfileFunctions &profile, const Object &object);

} // namespace shell
