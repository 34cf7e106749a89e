// The operations of the member-selection store.
#include "selection_operations.h"

#include <cjson/cJSON.h>

#include <atomic>
#include <memory>

#include "pd_ms.h"
#include "profile_operation.h"

using namespace model;

namespace {

std::atomic<pd_word> last_state = 0; // handles ascend from 1

// Runs `use` on the device's part of a state under the device's lock.
template <typename Use>
pd_status with_state(pd_word state, u32 device_id, Use use)
{
    Device *device = find_device(device_id);
    if (device == nullptr || state == 0 || state > last_state)
        return unknown_object;
    const std::lock_guard lock{device->mutex};
    return use(device->selections[state]);
}

// This program's members have no resources, so both words of a known object are 0.
pd_status no_resources(bool known, pd_word *resources, pd_word *count)
{
    if (!known)
        return unknown_object;
    *resources = 0;
    *count = 0;
    return ok;
}

} // namespace

void model::reset_selection_states()
{
    last_state = 0;
}

namespace model {

// ---- Life -----------------------------------------------------------------------------------------------

pd_status p4_pd_ms_init(void)
{
    return ok;
}

extern "C" pd_word p4_pd_ms_init_state(void)
{
    return ++last_state;
}

pd_status p4_pd_ms_destroy_state_for_dev(pd_word state, u32 device_id)
{
    const auto drop = [](SelectionState &store) {
        store = {};
        return ok;
    };
    return with_state(state, device_id, drop);
}

pd_status p4_pd_ms_destroy_txn_state_for_dev(u32 device_id)
{
    return find_device(device_id) != nullptr ? ok : unknown_object;
}

pd_status p4_pd_ms_log_state(u32 device_id, pd_word state, cJSON *document)
{
    const auto log = [&](const SelectionState &store) {
        store.log(document);
        return ok;
    };
    return with_state(state, device_id, log);
}

pd_status p4_pd_ms_restore_state(u32 device_id, pd_word state, cJSON *document)
{
    return with_state(state, device_id, [&](SelectionState &store) { return store.restore(document); });
}

// ---- Members --------------------------------------------------------------------------------------------

pd_status p4_pd_ms_new_mbr(pd_sess_hdl, pd_word state, u32 device_id, pd_mbr_hdl member)
{
    return with_state(state, device_id, [&](auto &store) { return store.add_member(member); });
}

pd_status p4_pd_ms_del_mbr(pd_sess_hdl, pd_word state, u32 device_id, pd_mbr_hdl member)
{
    return with_state(state, device_id, [&](auto &store) { return store.remove_member(member); });
}

pd_status p4_pd_ms_set_mbr_act(pd_word state, u32 device_id, pd_mbr_hdl member, u32 action)
{
    const auto set = [&](SelectionState &store) { return store.set_member_action(member, action); };
    return with_state(state, device_id, set);
}

pd_status p4_pd_ms_get_mbr_act(pd_word state, u32 device_id, pd_mbr_hdl member, u32 *action)
{
    const auto get = [&](const SelectionState &store) { return store.member_action(member, *action); };
    return with_state(state, device_id, get);
}

pd_status p4_pd_ms_mbr_get_res(pd_word state, u32 device_id, pd_mbr_hdl member, pd_word *resources,
                               pd_word *count)
{
    const auto get = [&](const SelectionState &store) {
        return no_resources(store.has_member(member), resources, count);
    };
    return with_state(state, device_id, get);
}

pd_status p4_pd_ms_mbr_apply_to_grps(pd_word state, u32 device_id, pd_mbr_hdl member,
                                     p4_pd_ms_grp_cb callback, pd_word cookie)
{
    std::vector<pd_grp_hdl> groups;
    const pd_status status = with_state(state, device_id, [&](const SelectionState &store) {
        groups = store.groups_of(member);
        return store.has_member(member) ? ok : unknown_object;
    });
    if (status != ok)
        return status;
    for (const pd_grp_hdl group : groups)
        if (const pd_status failure = callback(device_id, group, cookie))
            return failure;
    return ok;
}

// ---- Groups ---------------------------------------------------------------------------------------------

pd_status p4_pd_ms_new_grp(pd_sess_hdl, pd_word state, u32 device_id, pd_grp_hdl group)
{
    return with_state(state, device_id, [&](auto &store) { return store.add_group(group); });
}

pd_status p4_pd_ms_del_grp(pd_sess_hdl, pd_word state, u32 device_id, pd_grp_hdl group, u32, pd_mbr_hdl *)
{
    return with_state(state, device_id, [&](auto &store) { return store.remove_group(group); });
}

pd_status p4_pd_ms_add_mbr_to_grp(pd_sess_hdl, pd_word state, u32 device_id, pd_mbr_hdl member,
                                  pd_grp_hdl group)
{
    return with_state(state, device_id, [&](auto &store) { return store.join(member, group); });
}

pd_status p4_pd_ms_del_mbr_from_grp(pd_sess_hdl, pd_word state, u32 device_id, pd_mbr_hdl member,
                                    pd_grp_hdl group)
{
    return with_state(state, device_id, [&](auto &store) { return store.leave(member, group); });
}

pd_status p4_pd_ms_set_grp_act(pd_word state, u32 device_id, pd_grp_hdl group, u32 action)
{
    const auto set = [&](SelectionState &store) { return store.set_group_action(group, action); };
    return with_state(state, device_id, set);
}

pd_status p4_pd_ms_get_grp_act(pd_word state, u32 device_id, pd_grp_hdl group, u32 *action)
{
    const auto get = [&](const SelectionState &store) { return store.group_action(group, *action); };
    return with_state(state, device_id, get);
}

pd_status p4_pd_ms_grp_get_res(pd_word state, u32 device_id, pd_grp_hdl group, pd_word *resources,
                               pd_word *count)
{
    const auto get = [&](const SelectionState &store) {
        return no_resources(store.has_group(group), resources, count);
    };
    return with_state(state, device_id, get);
}

pd_status p4_pd_ms_grp_update_res(u32 device_id, pd_grp_hdl group, pd_word cookie)
{
    const auto known = [&](const SelectionState &store) {
        return store.has_group(group) ? ok : unknown_object;
    };
    return with_state(cookie, device_id, known);
}

} // namespace model
