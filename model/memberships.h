// Which members are in which groups. The groups themselves are somebody else's, who keeps the chain of each.
#pragma once

#include <vector>

#include "handle_table.h"
#include "slot_index.h"

namespace model {

struct Membership {
    pd_grp_hdl group = 0;
    pd_mbr_hdl member = 0;
    u32 previous = 0; // in the group, 0 for none
    u32 next = 0;
    bool active = true;
};

// The memberships of one group in the order of their addition; 0: none.
struct Chain {
    u32 first = 0;
    u32 last = 0;
    u32 size = 0;
};

class Memberships {
public:
    // `chain` is the group's own. The member is not in the group.
    void add(Chain &chain, pd_grp_hdl group, pd_mbr_hdl member);
    bool remove(Chain &chain, pd_grp_hdl group, pd_mbr_hdl member); // whether the member was in it
    void clear(Chain &chain);

    // Null unless the member is in the group.
    Membership *find(pd_grp_hdl group, pd_mbr_hdl member) { return all_.find(handle_of(group, member)); }
    const Membership *find(pd_grp_hdl group, pd_mbr_hdl member) const
    {
        return all_.find(handle_of(group, member));
    }

    // Up to `room` memberships of a group, from this one on; 0 for none.
    std::vector<Membership> chain(u32 membership, u32 room) const;

    // In the order of their addition, by handles of their own.
    const HandleTable<Membership> &all() const { return all_; }

private:
    u32 handle_of(pd_grp_hdl group, pd_mbr_hdl member) const; // 0 for none
    void forget(u32 handle, const Membership &membership);

    HandleTable<Membership> all_;
    SlotIndex by_pair_;
};

} // namespace model
