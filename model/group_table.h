// The groups of one profile, and which members are in them. What the members are is the profile's business.
#pragma once

#include <tsl/robin_map.h>

#include <vector>

#include "handle_table.h"
#include "status.h"

namespace model {

struct Group {
    u32 max_size = 0;
    u32 size = 0;
    u32 action = 0;  // of the member that was added last, which may have left; 0: none yet
    u32 entries = 0; // that point at the group
    u32 first = 0;   // of its memberships, which are chained in the order of their addition; 0: none
    u32 last = 0;
};

struct Membership {
    pd_grp_hdl group = 0;
    pd_mbr_hdl member = 0;
    u32 previous = 0; // in the group, 0 for none
    u32 next = 0;
    bool active = true;
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
    Membership *find(pd_grp_hdl group, pd_mbr_hdl member);
    const Membership *find(pd_grp_hdl group, pd_mbr_hdl member) const;

    // Up to `room` memberships of a group, from this one on; 0 for none.
    std::vector<Membership> chain(u32 membership, u32 room) const;
    std::vector<Membership> members(const Group &group) const { return chain(group.first, group.size); }

    // All memberships in the order of their addition, by a handle of their own.
    const HandleTable<Membership> &memberships() const { return memberships_; }

private:
    // Of group and member. The table takes the low bits of a hash, so both must reach them.
    struct PairHash {
        std::size_t operator()(u64 pair) const
        {
            return static_cast<std::size_t>(pair * 0x9e3779b97f4a7c15 >> 32);
        }
    };

    static u64 pair(pd_grp_hdl group, pd_mbr_hdl member) { return u64{group} << 32 | member; }

    HandleTable<Group> groups_;
    HandleTable<Membership> memberships_;
    tsl::robin_map<u64, u32, PairHash> by_pair_; // handles of memberships
};

} // namespace model
