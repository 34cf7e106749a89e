#include "memberships.h"

namespace model {

namespace {

u32 pair_hash(pd_grp_hdl group, pd_mbr_hdl member)
{
    const u64 pair = u64{group} << 32 | member;
    return static_cast<u32>(pair * 0x9e3779b97f4a7c15 >> 32);
}

} // namespace

void Memberships::add(Chain &chain, pd_grp_hdl group, pd_mbr_hdl member)
{
    const u32 added = all_.add({.group = group, .member = member, .previous = chain.last});
    by_pair_.insert(pair_hash(group, member), added);
    (chain.last != 0 ? all_.find(chain.last)->next : chain.first) = added;
    chain.last = added;
    ++chain.size;
}

bool Memberships::remove(Chain &chain, pd_grp_hdl group, pd_mbr_hdl member)
{
    const u32 handle = handle_of(group, member);
    if (handle == 0)
        return false;
    const Membership gone = *all_.find(handle);
    (gone.previous != 0 ? all_.find(gone.previous)->next : chain.first) = gone.next;
    (gone.next != 0 ? all_.find(gone.next)->previous : chain.last) = gone.previous;
    --chain.size;
    forget(handle, gone);
    return true;
}

void Memberships::clear(Chain &chain)
{
    for (u32 at = chain.first; at != 0;) {
        const Membership gone = *all_.find(at);
        forget(at, gone);
        at = gone.next;
    }
    chain = {};
}

std::vector<Membership> Memberships::chain(u32 membership, u32 room) const
{
    std::vector<Membership> found;
    for (u32 at = membership; at != 0 && found.size() < room; at = found.back().next)
        found.push_back(*all_.find(at));
    return found;
}

u32 Memberships::handle_of(pd_grp_hdl group, pd_mbr_hdl member) const
{
    const u32 handle = by_pair_.find(pair_hash(group, member), [&](u32 at) {
        const Membership &membership = *all_.find(at);
        return membership.group == group && membership.member == member;
    });
    return handle != SlotIndex::none ? handle : 0;
}

void Memberships::forget(u32 handle, const Membership &membership)
{
    by_pair_.erase(pair_hash(membership.group, membership.member), handle);
    all_.remove(handle);
}

} // namespace model
