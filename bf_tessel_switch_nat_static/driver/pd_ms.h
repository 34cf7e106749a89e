/**
 * @file pd_ms.h
 * @brief The member-selection store: the actions of members, and the groups they belong to.
 *
 * Argument order: (sess, state, device) where members or groups come and go, (state, device) elsewhere;
 * p4_pd_ms_log_state and p4_pd_ms_restore_state begin with the device. C11 and C++.
 */
#ifndef PD_DRIVER_PD_MS_H
#define PD_DRIVER_PD_MS_H

#include "pd_types.h"

#ifdef __cplusplus
extern "C" {
#endif

struct cJSON;

/** Called for each group of a member. */
typedef pd_status (*p4_pd_ms_grp_cb)(u32 device_id, pd_grp_hdl group, pd_word cookie);

/* ---- Life ---------------------------------------------------------------------------------------------- */

/** Prepares the store. */
pd_status p4_pd_ms_init(void);

/** Makes the state of one action profile, for all devices, and returns its handle. */
pd_word p4_pd_ms_init_state(void);

/** Drops one device's part of a state. */
pd_status p4_pd_ms_destroy_state_for_dev(pd_word state, u32 device_id);

/** Drops what the device's open transactions hold. */
pd_status p4_pd_ms_destroy_txn_state_for_dev(u32 device_id);

/** Writes one device's part of a state into `document`, beside what is there already. */
pd_status p4_pd_ms_log_state(u32 device_id, pd_word state, struct cJSON *document);

/** Reads one device's part of a state back out of `document`. */
pd_status p4_pd_ms_restore_state(u32 device_id, pd_word state, struct cJSON *document);

/* ---- Members ------------------------------------------------------------------------------------------- */

/** Records a new member, which has no action yet. */
pd_status p4_pd_ms_new_mbr(pd_sess_hdl sess, pd_word state, u32 device_id, pd_mbr_hdl member);

/** Forgets a member. */
pd_status p4_pd_ms_del_mbr(pd_sess_hdl sess, pd_word state, u32 device_id, pd_mbr_hdl member);

/** Records the action of a member. */
pd_status p4_pd_ms_set_mbr_act(pd_word state, u32 device_id, pd_mbr_hdl member, u32 action);

/** Reads the action of a member; fails for a member that has none or is unknown. */
pd_status p4_pd_ms_get_mbr_act(pd_word state, u32 device_id, pd_mbr_hdl member, u32 *action);

/** Reads the resources of a member, as two words of the store's own. */
pd_status p4_pd_ms_mbr_get_res(pd_word state, u32 device_id, pd_mbr_hdl member, pd_word *resources,
                               pd_word *count);

/** Calls `callback` for each group that the member is in. */
pd_status p4_pd_ms_mbr_apply_to_grps(pd_word state, u32 device_id, pd_mbr_hdl member,
                                     p4_pd_ms_grp_cb callback, pd_word cookie);

/* ---- Groups -------------------------------------------------------------------------------------------- */

/** Records a new, empty group. */
pd_status p4_pd_ms_new_grp(pd_sess_hdl sess, pd_word state, u32 device_id, pd_grp_hdl group);

/** Forgets a group and takes the listed members out of it; `count` 0 comes with a null list. */
pd_status p4_pd_ms_del_grp(pd_sess_hdl sess, pd_word state, u32 device_id, pd_grp_hdl group, u32 count,
                           pd_mbr_hdl *members);

/** Records that a member is in a group. Member before group. */
pd_status p4_pd_ms_add_mbr_to_grp(pd_sess_hdl sess, pd_word state, u32 device_id, pd_mbr_hdl member,
                                  pd_grp_hdl group);

/** Records that a member has left a group. Member before group. */
pd_status p4_pd_ms_del_mbr_from_grp(pd_sess_hdl sess, pd_word state, u32 device_id, pd_mbr_hdl member,
                                    pd_grp_hdl group);

/** Records the action that an entry pointing at the group has. */
pd_status p4_pd_ms_set_grp_act(pd_word state, u32 device_id, pd_grp_hdl group, u32 action);

/** Reads the action of a group; fails for a group that never had a member or is unknown. */
pd_status p4_pd_ms_get_grp_act(pd_word state, u32 device_id, pd_grp_hdl group, u32 *action);

/** Reads the resources of a group, as two words of the store's own. */
pd_status p4_pd_ms_grp_get_res(pd_word state, u32 device_id, pd_grp_hdl group, pd_word *resources,
                               pd_word *count);

/** A p4_pd_ms_grp_cb: takes the resources of its members over into a group. `cookie` is the state. */
pd_status p4_pd_ms_grp_update_res(u32 device_id, pd_grp_hdl group, pd_word cookie);

#ifdef __cplusplus
}
#endif

#endif
