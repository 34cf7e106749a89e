// All that a device holds for one action profile: its members, its groups, the fallback member, and who
// listens for changes of either.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "group_table.h"
#include "pipe_mgr_records.h"
#include "profile_updates.h"
#include "program.h"

namespace model {

struct MemberData {
    u32 action = 0;
    std::vector<u8> data;
};

struct Member {
    MemberData software;
    std::unique_ptr<MemberData> hardware; // where it differs
    u32 entries = 0;                      // that point at the member
    u32 holders = 0;                      // groups that it is in, and the selector whose fallback it is

    const MemberData &copy(bool from_hw) const { return from_hw && hardware ? *hardware : software; }
};

// What an entry points at: a PIPE_ACTION_* and the handle of a member or group.
struct Reference {
    u8 kind;
    u32 handle;
};

// What picks a member of a group: two words of a packet.
struct Flow {
    u32 first;
    u32 second;
};

class Profile {
public:
    explicit Profile(const ProgramProfile &program) : program_{program} {}

    const ProgramProfile &program() const { return program_; }
    const HandleTable<Member> &members() const { return members_; }
    const GroupTable &groups() const { return groups_; }
    pd_mbr_hdl fallback() const { return fallback_; } // 0 for none

    // Action and data have been checked against the program.
    pd_mbr_hdl add_member(u32 action, std::span<const u8> data, ProfileNews &news);
    pd_status set_member(pd_mbr_hdl member, u32 action, std::span<const u8> data, ProfileNews &news);
    pd_status remove_member(pd_mbr_hdl member, ProfileNews &news);
    pd_status set_hardware(pd_mbr_hdl member, MemberData data);

    pd_grp_hdl add_group(u32 max_size, ProfileNews &news);
    pd_status remove_group(pd_grp_hdl group, ProfileNews &news);
    pd_status join(pd_grp_hdl group, pd_mbr_hdl member, u32 action, ProfileNews &news);
    pd_status leave(pd_grp_hdl group, pd_mbr_hdl member, ProfileNews &news);
    pd_status set_active(pd_grp_hdl group, pd_mbr_hdl member, bool active, ProfileNews &news);
    pd_status set_fallback(pd_mbr_hdl member, ProfileNews &news);
    void reset_fallback(ProfileNews &news);

    // None for an unknown group. What picks gives 0 then, and where no member is active and no fallback set.
    std::optional<std::vector<pd_mbr_hdl>> active_members(pd_grp_hdl group) const;
    pd_mbr_hdl pick(pd_grp_hdl group, Flow flow) const;
    pd_mbr_hdl pick(Reference reference, Flow flow) const;

    // What entries do with members and groups: a reference is checked before it is held.
    pd_status check(Reference reference, u32 action) const;
    void hold(Reference reference) { ++*entries_of(reference); }
    void release(Reference reference) { --*entries_of(reference); }

    Listeners member_listeners;
    Listeners group_listeners;    // of pipe_mgr_sel_tbl_register_cb
    Listeners selector_listeners; // of pipe_register_sel_update_cb

private:
    u32 *entries_of(Reference reference);
    void take_members(ProfileNews &news, u32 kind, pd_mbr_hdl member) const;
    void take_groups(ProfileNews &news, u32 kind, pd_grp_hdl group, pd_mbr_hdl member) const;
    ts_model_profile_update update(u32 kind, pd_grp_hdl group, pd_mbr_hdl member) const;

    const ProgramProfile &program_;
    HandleTable<Member> members_;
    GroupTable groups_;
    pd_mbr_hdl fallback_ = 0;
};

} // namespace model
