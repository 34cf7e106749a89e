#include "group_table.h"

namespace model {

void GroupTable::remove(pd_grp_hdl group)
{
    memberships_.clear(groups_.find(group)->chain);
    groups_.remove(group);
}

pd_status GroupTable::join(pd_grp_hdl group, pd_mbr_hdl member, u32 action)
{
    Group *const found = groups_.find(group);
    if (found == nullptr)
        return unknown_object;
    if (memberships_.find(group, member) != nullptr)
        return already_exists;
    if (found->chain.size == found->max_size)
        return no_space;
    memberships_.add(found->chain, group, member);
    found->action = action;
    return ok;
}

pd_status GroupTable::leave(pd_grp_hdl group, pd_mbr_hdl member)
{
    Group *const found = groups_.find(group);
    return found != nullptr && memberships_.remove(found->chain, group, member) ? ok : unknown_object;
}

} // namespace model
