// Rebuilds the member-selection state after a restart that left the chip running: the driver walks what it
// has restored and calls back once per member, group and membership.
#include "pd.h"
#include "pd_ms.h"
#include "pipe_mgr_restart.h"
#include "rows_profiles.h"

namespace {

const pd::Profile *find_profile(u32 action_table)
{
    for (const pd::Profile *profile : pd::profiles::all)
        if (profile->action_table == action_table)
            return profile;
    return nullptr;
}

bool has_action(const pd::Profile &profile, u32 action)
{
    for (const pd::Binding &binding : profile.actions)
        if (binding.handle == action)
            return true;
    return false;
}

// A group's action is that of the member restored into it last. False when the member's is not known.
bool restore_membership(pd_sess_hdl sess, pd_word state, u32 device_id, pd_grp_hdl group, pd_mbr_hdl member)
{
    p4_pd_ms_add_mbr_to_grp(sess, state, device_id, member, group);
    u32 action = 0;
    if (p4_pd_ms_get_mbr_act(state, device_id, member, &action) != PD_STATUS_SUCCESS)
        return false;
    p4_pd_ms_set_grp_act(state, device_id, group, action);
    return true;
}

} // namespace

extern "C" {

// Private: the driver has it by its address only. It reports nothing, and what the store answers is ignored
// but where the next step needs it.
static void p4_pd_tessel_switch_ha_restore_state_from_adt_sel(pd_sess_hdl sess, u32 device_id,
                                                              u32 action_table, u32 action, pd_grp_hdl group,
                                                              pd_mbr_hdl member, u32 resources)
{
    const pd::Profile *profile = find_profile(action_table);
    if (!profile)
        return;
    const pd_word state = *profile->state;
    if (member != 0 && group != 0) {
        if (!restore_membership(sess, state, device_id, group, member))
            return;
    } else if (member != 0) {
        p4_pd_ms_new_mbr(sess, state, device_id, member);
        p4_pd_ms_set_mbr_act(state, device_id, member, action);
    } else if (group != 0) {
        p4_pd_ms_new_grp(sess, state, device_id, group);
    }
    if (resources != 0 && has_action(*profile, action))
        p4_pd_ms_mbr_apply_to_grps(state, device_id, member, p4_pd_ms_grp_update_res, state);
}
}

pd_status p4_pd_tessel_switch_restore_virtual_dev_state(pd_word first, pd_word second, pd_word third,
                                                        pd_word fourth, pd_word fifth)
{
    return pipe_mgr_hitless_ha_restore_virtual_dev_state(first, second, third, fourth, fifth,
                                                         p4_pd_tessel_switch_ha_restore_state_from_adt_sel);
}
