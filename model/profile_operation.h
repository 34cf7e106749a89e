// What the operations on action profiles have in common. They name a profile by its action data table, when
// they are about members, or by its selector, when they are about groups.
#pragma once

#include "device.h"

namespace model {

// Runs a `change` that may alter a profile. Those who have registered for its changes hear of it outside of
// every lock.
template <typename Change>
pd_status change_profile(u32 device_id, const ProgramProfile *profile, Change change)
{
    ProfileNews news;
    const pd_status status =
        with_profile(device_id, profile, [&](Profile &found) { return change(found, news); });
    news.tell(device_id);
    return status;
}

// Runs `use` on the group, of which it changes nothing.
template <typename Use>
pd_status with_group(u32 device_id, u32 selector, pd_grp_hdl group, Use use)
{
    return with_profile(device_id, find_profile_by_groups(selector), [&](const Profile &profile) {
        const Group *const found = profile.groups().find(group);
        return found != nullptr ? use(profile.groups(), *found) : unknown_object;
    });
}

// Runs `use` on whatever the handle names the table of: entries, members or groups.
template <typename Use>
pd_status with_any_table(u32 device_id, u32 handle, Use use)
{
    if (const ProgramProfile *of_members = find_profile_by_members(handle))
        return with_profile(device_id, of_members, [&](Profile &found) { return use(found.members()); });
    if (const ProgramProfile *of_groups = find_profile_by_groups(handle))
        return with_profile(device_id, of_groups, [&](Profile &found) { return use(found.groups()); });
    return with_table(device_id, handle, use);
}

} // namespace model
