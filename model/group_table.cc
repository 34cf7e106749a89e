#include "group_table.h"

namespace model {

void GroupTable::remove(pd_grp_hdl group)
{
    for (u32 at = groups_.find(group)->first; at != 0;) {
        const Membership gone = *memberships_.find(at);
        by_pair_.erase(pair(group, gone.member));
        memberships_.remove(at);
        at = gone.next;
    }
    groups_.remove(group);
}

pd_status GroupTable::join(pd_grp_hdl group, pd_mbr_hdl member, u32 action)
{
    Group *const found = groups_.find(group);
    if (found == nullptr)
        return unknown_object;
    if (by_pair_.contains(pair(group, member)))
        return already_exists;
    if (found->size == found->max_size)
        return no_space;
    const u32 added = memberships_.add({.group = group, .member = member, .previous = found->last});
    by_pair_[pair(group, member)] = added;
    (found->last != 0 ? memberships_.find(found->last)->next : found->first) = added;
    found->last = added;
    found->action = action;
    ++found->size;
    return ok;
}

pd_status GroupTable::leave(pd_grp_hdl group, pd_mbr_hdl member)
{
    const auto known = by_pair_.find(pair(group, member));
    if (known == by_pair_.end())
        return unknown_object;
    Group &left = *groups_.find(group);
    const Membership gone = *memberships_.find(known->second);
    (gone.previous != 0 ? memberships_.find(gone.previous)->next : left.first) = gone.next;
    (gone.next != 0 ? memberships_.find(gone.next)->previous : left.last) = gone.previous;
    --left.size;
    memberships_.remove(known->second);
    by_pair_.erase(known);
    return ok;
}

Membership *GroupTable::find(pd_grp_hdl group, pd_mbr_hdl member)
{
    const auto known = by_pair_.find(pair(group, member));
    return known != by_pair_.end() ? memberships_.find(known->second) : nullptr;
}

const Membership *GroupTable::find(pd_grp_hdl group, pd_mbr_hdl member) const
{
    const auto known = by_pair_.find(pair(group, member));
    return known != by_pair_.end() ? memberships_.find(known->second) : nullptr;
}

std::vector<Membership> GroupTable::chain(u32 membership, u32 room) const
{
    std::vector<Membership> found;
    for (u32 at = membership; at != 0 && found.size() < room; at = found.back().next)
        found.push_back(*memberships_.find(at));
    return found;
}

} // namespace model
