// The driver operations on the groups of action profiles.
#include <algorithm>

#include "pipe_mgr_sel.h"
#include "placement.h"
#include "profile_operation.h"

using namespace model;

namespace {

pd_status set_active(u32 device_id, u32 table, pd_grp_hdl group, pd_mbr_hdl member, bool active)
{
    return change_profile(device_id, find_profile_by_groups(table), [&](Profile &profile, ProfileNews &news) {
        return profile.set_active(group, member, active, news);
    });
}

u8 state_of(const Membership &membership)
{
    return membership.active ? PIPE_MEMBER_ACTIVE : PIPE_MEMBER_INACTIVE;
}

// The words that are handed on as they come, with the model's meaning.
u32 *to_word(pd_word address)
{
    return reinterpret_cast<u32 *>(address);
}

// Runs `use` on the active members of the group that `word` names.
template <typename Use>
pd_status with_active_members(u32 device_id, u32 table, pd_word word, Use use)
{
    return with_profile(device_id, find_profile_by_groups(table), [&](const Profile &profile) {
        const auto active = profile.active_members(static_cast<pd_grp_hdl>(word));
        return active ? use(*active) : unknown_object;
    });
}

template <typename Callback>
pd_status listen(pd_sess_hdl sess, u32 device_id, u32 table, Listeners Profile::*who, Callback callback,
                 pd_word cookie)
{
    const auto set = [&](Profile &profile) {
        (profile.*who).set({sess, callback, cookie});
        return ok;
    };
    return with_profile(device_id, find_profile_by_groups(table), set);
}

} // namespace

namespace model {

// ---- Groups ---------------------------------------------------------------------------------------------

pd_status pipe_mgr_sel_grp_add(pd_sess_hdl, pd_dev_target target, u32 table, u32, u32 max_group_size, u32,
                               pd_grp_hdl *group, u32)
{
    const auto add = [&](Profile &profile, ProfileNews &news) {
        *group = profile.add_group(max_group_size, news);
        return ok;
    };
    return change_profile(target.device_id, find_profile_by_groups(table), add);
}

pd_status pipe_mgr_sel_grp_del(pd_sess_hdl, u32 device_id, u32 table, pd_grp_hdl group, u32)
{
    return change_profile(device_id, find_profile_by_groups(table), [&](Profile &profile, ProfileNews &news) {
        return profile.remove_group(group, news);
    });
}

pd_status pipe_mgr_get_sel_grp_mbr_count(pd_sess_hdl, u32 device_id, u32 table, pd_grp_hdl group, u32 *count)
{
    const auto tell = [&](const GroupTable &, const Group &found) {
        *count = found.chain.size;
        return ok;
    };
    return with_group(device_id, table, group, tell);
}

pd_status pipe_mgr_sel_grp_mbrs_get(pd_sess_hdl, u32 device_id, u32 table, pd_grp_hdl group, u32 count,
                                    pd_mbr_hdl *members, u8 *states, u32 *written, u32)
{
    const auto list = [&](const GroupTable &groups, const Group &found) {
        *written = 0;
        for (const Membership &membership : groups.memberships().chain(found.chain.first, count)) {
            members[*written] = membership.member;
            states[(*written)++] = state_of(membership);
        }
        return ok;
    };
    return with_group(device_id, table, group, list);
}

pd_status pipe_mgr_get_first_group_member(pd_sess_hdl, u32 table, u32 device_id, pd_grp_hdl group,
                                          pd_mbr_hdl *first)
{
    const auto tell = [&](const GroupTable &groups, const Group &found) {
        const auto members = groups.memberships().chain(found.chain.first, 1);
        *first = members.empty() ? 0 : members.front().member;
        return ok;
    };
    return with_group(device_id, table, group, tell);
}

pd_status pipe_mgr_get_next_group_members(pd_sess_hdl, u32 table, u32 device_id, pd_grp_hdl group,
                                          pd_mbr_hdl after, u32 count, pd_mbr_hdl *next)
{
    const auto tell = [&](const GroupTable &groups, const Group &) {
        const Membership *const from = groups.memberships().find(group, after);
        if (from == nullptr)
            return unknown_object;
        const auto members = groups.memberships().chain(from->next, count);
        std::fill_n(std::ranges::transform(members, next, &Membership::member).out, count - members.size(),
                    0);
        return ok;
    };
    return with_group(device_id, table, group, tell);
}

// ---- Membership -----------------------------------------------------------------------------------------

pd_status pipe_mgr_sel_grp_mbr_add(pd_sess_hdl, u32 device_id, u32 table, pd_grp_hdl group, u32 action,
                                   pd_mbr_hdl member, u32)
{
    return change_profile(device_id, find_profile_by_groups(table), [&](Profile &profile, ProfileNews &news) {
        return profile.join(group, member, action, news);
    });
}

pd_status pipe_mgr_sel_grp_mbr_del(pd_sess_hdl, u32 device_id, u32 table, pd_grp_hdl group, pd_mbr_hdl member,
                                   u32)
{
    return change_profile(device_id, find_profile_by_groups(table), [&](Profile &profile, ProfileNews &news) {
        return profile.leave(group, member, news);
    });
}

pd_status pipe_mgr_sel_grp_mbr_enable(pd_sess_hdl, u32 device_id, u32 table, pd_grp_hdl group,
                                      pd_mbr_hdl member, u32)
{
    return set_active(device_id, table, group, member, true);
}

pd_status pipe_mgr_sel_grp_mbr_disable(pd_sess_hdl, u32 device_id, u32 table, pd_grp_hdl group,
                                       pd_mbr_hdl member, u32)
{
    return set_active(device_id, table, group, member, false);
}

pd_status pipe_mgr_sel_grp_mbr_state_get(pd_sess_hdl, u32 device_id, u32 table, pd_grp_hdl group,
                                         pd_mbr_hdl member, u32 *state)
{
    const auto tell = [&](const GroupTable &groups, const Group &) {
        const Membership *const found = groups.memberships().find(group, member);
        if (found == nullptr)
            return unknown_object;
        *state = state_of(*found);
        return ok;
    };
    return with_group(device_id, table, group, tell);
}

// ---- Selection ------------------------------------------------------------------------------------------

pd_status pipe_mgr_sel_grp_mbr_get_from_hash(pd_sess_hdl, u32 device_id, u32 table, pd_grp_hdl group,
                                             pd_word first, pd_word second, pd_word third)
{
    const auto pick = [&](const Profile &profile) {
        if (third == 0)
            return bad_argument;
        const pd_mbr_hdl picked = profile.pick(group, {static_cast<u32>(first), static_cast<u32>(second)});
        if (picked == 0)
            return unknown_object;
        *to_word(third) = picked;
        return ok;
    };
    return with_profile(device_id, find_profile_by_groups(table), pick);
}

pd_status pipe_mgr_sel_fallback_mbr_set(pd_sess_hdl, pd_dev_target target, u32 table, pd_mbr_hdl member, u32)
{
    return change_profile(
        target.device_id, find_profile_by_groups(table),
        [&](Profile &profile, ProfileNews &news) { return profile.set_fallback(member, news); });
}

pd_status pipe_mgr_sel_fallback_mbr_reset(pd_sess_hdl, pd_dev_target target, u32 table, u32)
{
    const auto reset = [](Profile &profile, ProfileNews &news) {
        profile.reset_fallback(news);
        return ok;
    };
    return change_profile(target.device_id, find_profile_by_groups(table), reset);
}

pd_status pipe_mgr_get_word_llp_active_member_count(pd_sess_hdl, pd_dev_target target, u32 table,
                                                    pd_word word, pd_word count)
{
    const auto tell = [&](const std::vector<pd_mbr_hdl> &active) {
        if (count == 0)
            return bad_argument;
        *to_word(count) = static_cast<u32>(active.size());
        return ok;
    };
    return with_active_members(target.device_id, table, word, tell);
}

pd_status pipe_mgr_get_word_llp_active_members(pd_sess_hdl, pd_dev_target target, u32 table, pd_word word,
                                               pd_word count, pd_word members)
{
    const auto room = static_cast<u32>(count);
    const auto list = [&](std::vector<pd_mbr_hdl> active) {
        if (members == 0)
            return bad_argument;
        active.resize(room);
        std::ranges::copy(active, to_word(members));
        return ok;
    };
    return with_active_members(target.device_id, table, word, list);
}

// ---- Callbacks and placement ----------------------------------------------------------------------------

pd_status pipe_mgr_sel_tbl_register_cb(pd_sess_hdl sess, u32 device_id, u32 table, pipe_sel_tbl_cb callback,
                                       pd_word cookie)
{
    return listen(sess, device_id, table, &Profile::group_listeners, callback, cookie);
}

pd_status pipe_register_sel_update_cb(pd_sess_hdl sess, u32 device_id, u32 table, pipe_sel_update_cb callback,
                                      pd_word cookie)
{
    return listen(sess, device_id, table, &Profile::selector_listeners, callback, cookie);
}

pd_status pipe_mgr_plcmt_sel_data_get(pd_word first, pd_word second, u32 table)
{
    ts_model_plcmt_request *const request = request_of(first, second);
    const auto get = [&](const GroupTable &groups, const Group &found) {
        request->data = new Placement{GroupPlacement{groups.members(found)}};
        return ok;
    };
    return answer_request(request,
                          [&] { return with_group(request->device_id, table, request->entry, get); });
}

} // namespace model
