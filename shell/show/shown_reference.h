// Members and groups of action profiles, as what entries point at.
#pragma once

#include "names.h"
#include "result.h"

namespace shell {

// As "member" or "group" the handle and, where there is one, as "member_name" or "group_name" the name;
// nothing for handle 0.
void append_json(Json &to, const ProfileNames &names, const Object &object);
// The same, for people as "points at".
void tell(Result &to, const ProfileNames &names, const Object &object);

} // namespace shell
