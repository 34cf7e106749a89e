// One device's part of a member-selection state: the actions of members, and the groups they belong to.
#pragma once

#include <tsl/robin_map.h>

#include <vector>

#include "memberships.h"
#include "status.h"

struct cJSON;

namespace model {

class SelectionState {
public:
    pd_status add_member(pd_mbr_hdl member);
    pd_status remove_member(pd_mbr_hdl member); // out of its groups too
    pd_status set_member_action(pd_mbr_hdl member, u32 action);
    pd_status member_action(pd_mbr_hdl member, u32 &action) const; // fails before the action is set
    bool has_member(pd_mbr_hdl member) const { return members_.contains(member); }

    pd_status add_group(pd_grp_hdl group);
    pd_status remove_group(pd_grp_hdl group);
    pd_status set_group_action(pd_grp_hdl group, u32 action);
    pd_status group_action(pd_grp_hdl group, u32 &action) const; // likewise
    bool has_group(pd_grp_hdl group) const { return groups_.contains(group); }

    pd_status join(pd_mbr_hdl member, pd_grp_hdl group);
    pd_status leave(pd_mbr_hdl member, pd_grp_hdl group);
    std::vector<pd_grp_hdl> groups_of(pd_mbr_hdl member) const;

    // Adds "members" and "groups" to `document`.
    void log(cJSON *document) const;
    // Takes the place of what is here, or leaves it alone when the document is bad.
    pd_status restore(const cJSON *document);

private:
    struct Member {
        u32 action = 0; // 0: none yet
        u32 groups = 0; // how many it is in
    };
    struct Group {
        u32 action = 0; // likewise
        Chain chain;    // of its memberships
    };

    template <typename Object>
    using ByHandle = tsl::robin_map<u32, Object>;

    // In ascending order.
    template <typename Object>
    static std::vector<u32> handles_of(const ByHandle<Object> &objects);

    pd_status restore_member(const cJSON *element);
    pd_status restore_group(const cJSON *element);

    ByHandle<Member> members_;
    ByHandle<Group> groups_;
    Memberships memberships_;
};

} // namespace model
