// Action profiles, their members and groups: as words name them, and as the library walks them.
#pragma once

#include <functional>
#include <initializer_list>
#include <string_view>
#include <vector>

#include "names.h"
#include "reflection.h"
#include "words.h"

namespace shell {

class Session;

std::vector<std::string_view> profile_names();
// The table whose entries point at the profile's members and groups.
const reflection::TableFunctions &table_of(const reflection::ProfileFunctions &profile);
// By the handle of its members' table, of its groups' or of the table whose entries point at them; null for
// none.
const reflection::ProfileFunctions *profile_by_table(u32 handle);

// ---- Words. Each takes the next one and throws BadLine when it names nothing. ----

const reflection::ProfileFunctions &take_profile(Words &words);
// Takes nothing and gives null when the next word does not name a profile.
const reflection::ProfileFunctions *take_profile_if_named(Words &words);
// As that one, but throws BadLine when it does not name a table either.
const reflection::ProfileFunctions *take_profile_unless_table(Words &words);
const reflection::MemberFunctions &take_action(Words &words, const reflection::ProfileFunctions &profile);
// "member" or "group". What else the caller takes there is told where neither stands.
Kind take_kind(Words &words, std::initializer_list<std::string_view> others = {});
// The handle of a member or group, given as such or as one of `names`.
u32 take_object(Words &words, const reflection::ProfileFunctions &profile, const Names &names);
// Takes the name for a member or group; empty when the next word is an option, a colon or missing.
std::string_view take_name(Words &words);
// Likewise one that is not taken.
std::string_view take_new_name(Words &words, const Names &names);

// ---- Walks and counts. Each throws BadLine when the driver refuses. ----

using Visit = std::function<void(u32 handle)>;
void walk_members(const reflection::ProfileFunctions &profile, const Visit &visit);
void walk_groups(const reflection::ProfileFunctions &profile, const Visit &visit);
void walk_group(const reflection::ProfileFunctions &profile, pd_grp_hdl group, const Visit &visit);
u32 count_members(const reflection::ProfileFunctions &profile);
u32 count_groups(const reflection::ProfileFunctions &profile);
bool is_active(const reflection::ProfileFunctions &profile, pd_grp_hdl group, pd_mbr_hdl member);
pd_mbr_hdl fallback_of(const reflection::ProfileFunctions &profile); // 0 for none

} // namespace shell
