// What a file wants an action profile to hold, beside what it holds. While planning, what is still to be made
// goes by handles that no driver gives.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "names.h"
#include "reflection.h"

namespace shell {

class ProfilePlan {
public:
    // `names` are the session's; all that has none gets one, as save gives it.
    ProfilePlan(const reflection::ProfileFunctions &profile, ProfileNames &names);
    // The session's names are as they were before, unless the plan is carried out.
    ~ProfilePlan();
    ProfilePlan(const ProfilePlan &) = delete;
    ProfilePlan &operator=(const ProfilePlan &) = delete;

    // A change that no command makes: its text behind a sign, and how it comes about.
    using Make =
        std::function<void(char sign, const std::string &text, const std::function<void()> &carry_out)>;

    // ---- Planning ----
    // The member or group of this name stays, unless one is made in its place; 0 for none. BadLine where the
    // file has told of it before.
    u32 keep(Kind kind, std::string_view name);
    void make(Kind kind, std::string_view name);
    void drop_member(pd_mbr_hdl member);
    // Each tells whether it is so already.
    bool join(pd_grp_hdl group, pd_mbr_hdl member);
    bool tell_state(pd_grp_hdl group, pd_mbr_hdl member, bool active);
    bool tell_fallback(pd_mbr_hdl member);
    void leave(pd_grp_hdl group, pd_mbr_hdl member);

    // ---- Behind it ----
    // The session's names are those of what stays, if it is carried out.
    void end_planning(bool is_carried_out);
    // Members that leave groups, before others join.
    void make_room(const Make &make);
    // States and a fallback that no command tells, and what the file does not name.
    void clear_up(const Make &make);

private:
    using Joined = std::pair<pd_grp_hdl, pd_mbr_hdl>;

    std::set<u32> &kept(Kind kind);
    const std::map<pd_mbr_hdl, bool> &members_of(pd_grp_hdl group);
    std::string command(const char *verb, pd_grp_hdl group, pd_mbr_hdl member) const;

    const reflection::ProfileFunctions &profile_;
    ProfileNames &names_;
    const ProfileNames before_, all_;
    u32 next_made_; // handle
    std::set<u32> kept_members_, kept_groups_;
    std::vector<u32> unwanted_members_, unwanted_groups_;
    std::set<Joined> joined_, stated_;
    bool fallback_told_ = false;
    bool is_carried_out_ = false;
    std::map<pd_grp_hdl, std::map<pd_mbr_hdl, bool>> there_; // active or not
};

} // namespace shell
