// The groups of one profile, and which members are in them. What the members are is the profile's business.
#pragma once

#include <vector>

#include "memberships.h"
#include "status.h"

namespace model {

struct Group {
    u32 max_size = 0;
    u32 action = 0;  // of the member that was added last, which may have left; 0: none yet
    u32 entries = 0; // that point at the group
    Chain chain{};   // of its memberships
};

class GroupTable {
public:
    pd_grp_hdl add(u32 max_size) { return groups_.add({.max_size = max_size}); }
    void remove(pd_grp_hdl group); // which exists

    Group *find(pd_grp_hdl group) { return groups_.find(group); }
    const Group *find(pd_grp_hdl group) const { return groups_.find(group); }
    u32 count() const { return groups_.count(); }
    pd_grp_hdl next(pd_grp_hdl after) const { return groups_.next(after); }

    pd_status join(pd_grp_hdl group, pd_mbr_hdl member, u32 action);
    pd_status leave(pd_grp_hdl group, pd_mbr_hdl member);

    // Null unless the member is in the group.
    Membership *find(pd_grp_hdl group, pd_mbr_hdl member) { return memberships_.find(group, member); }

    std::vector<Membership> members(const Group &group) const
    {
        return memberships_.chain(group.chain.first, group.chain.size);
    }
    const Memberships &memberships() const { return memberships_; }

private:
    HandleTable<Group> groups_;
    Memberships memberships_;
};

} // namespace model
