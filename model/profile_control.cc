// The control functions that look at action profiles and at what entries make of them.
#include "placement.h"
#include "profile_operation.h"

using namespace model;

extern "C" {

u32 ts_model_references(u32 device_id, u32 table, u32 handle)
{
    u32 entries = 0;
    const auto count = [&](const auto *found) {
        if (found != nullptr)
            entries = found->entries;
        return ok;
    };
    with_profile(device_id, find_profile_by_members(table),
                 [&](const Profile &profile) { return count(profile.members().find(handle)); });
    with_profile(device_id, find_profile_by_groups(table),
                 [&](const Profile &profile) { return count(profile.groups().find(handle)); });
    return entries;
}

pd_mbr_hdl ts_model_fallback_member(u32 device_id, u32 selector)
{
    pd_mbr_hdl fallback = 0;
    with_profile(device_id, find_profile_by_groups(selector), [&](const Profile &profile) {
        fallback = profile.fallback();
        return ok;
    });
    return fallback;
}

pd_status ts_model_lookup_member(u32 device_id, u32 table, pd_entry_hdl entry, u32 first, u32 second,
                                 pd_mbr_hdl *member)
{
    return with_table(device_id, table, [&](const Table &found) {
        if (member == nullptr || found.profile() == nullptr)
            return bad_argument;
        const auto contents = found.software(entry);
        if (!contents)
            return unknown_object;
        const Reference reference{contents->action_kind, contents->member_or_group};
        *member = found.profile()->pick(reference, {first, second});
        return *member != 0 ? ok : unknown_object;
    });
}

u32 ts_model_plcmt_group(const void *plcmt_data, pd_mbr_hdl *members, u32 room)
{
    const auto *const placement = placement_of<GroupPlacement>(plcmt_data);
    if (placement == nullptr)
        return 0;
    for (u32 at = 0; at < room && at < placement->members.size(); ++at)
        members[at] = placement->members[at].member;
    return static_cast<u32>(placement->members.size());
}

} // extern "C"
