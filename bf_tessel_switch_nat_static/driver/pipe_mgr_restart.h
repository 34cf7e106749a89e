/**
 * @file pipe_mgr_restart.h
 * @brief The driver operation that rebuilds host state after a restart which left the chip running.
 */
#ifndef PD_DRIVER_PIPE_MGR_RESTART_H
#define PD_DRIVER_PIPE_MGR_RESTART_H

#include "pd_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Replays one member (no group), one group (no member) or one membership (both) of an action profile.
 * `action_table` is the profile's action data table; `resources` is not 0 when the action has resources.
 */
typedef void (*pipe_restore_state_cb)(pd_sess_hdl sess, u32 device_id, u32 action_table, u32 action,
                                      pd_grp_hdl group, pd_mbr_hdl member, u32 resources);

/** Walks the restored action data and selector tables and calls back; the five words are handed on unread. */
pd_status pipe_mgr_hitless_ha_restore_virtual_dev_state(pd_word first, pd_word second, pd_word third,
                                                        pd_word fourth, pd_word fifth,
                                                        pipe_restore_state_cb restore);

#ifdef __cplusplus
}
#endif

#endif
