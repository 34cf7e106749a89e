/**
 * @file callbacks.h
 * @brief The functions that the driver calls back.
 *
 * The driver defines what an `update` points at. C11 and C++.
 */
#ifndef PD_DRIVER_CALLBACKS_H
#define PD_DRIVER_CALLBACKS_H

#include "layout.h"
#include "pd_types.h"

#ifdef __cplusplus
extern "C" {
#endif

struct cJSON;

/** What a client wants to be called for. The driver copies the record. */
typedef struct pd_drv_client_callbacks {
    pd_word reserved_1[3]; /**< 0 */
    pd_status (*device_remove)(uint32_t device_id);
    pd_status (*device_log)(uint32_t device_id, struct cJSON *root);
    pd_status (*device_restore)(uint32_t device_id, struct cJSON *root);
    pd_word reserved_2[25]; /**< 0 */
} pd_drv_client_callbacks;

PD_OFFSET(pd_drv_client_callbacks, device_remove, 12);
PD_OFFSET(pd_drv_client_callbacks, device_log, 16);
PD_OFFSET(pd_drv_client_callbacks, device_restore, 20);
PD_SIZE(pd_drv_client_callbacks, 124);

/** Tells of a change to an action data table. */
typedef void (*pipe_adt_update_cb)(uint32_t device_id, uint32_t table, const void *update, pd_word cookie);

/** Tells of a change to a group. */
typedef void (*pipe_sel_tbl_cb)(uint32_t device_id, uint32_t table, const void *update, pd_word cookie);
typedef void (*pipe_sel_update_cb)(uint32_t device_id, uint32_t table, const void *update, pd_word cookie);

/** Tells that a table-wide sync is done. */
typedef void (*pipe_stat_sync_cb)(uint32_t device_id, pd_word cookie);

/** Tells that a sync of a register table is done. */
typedef void (*pipe_stful_sync_cb)(uint32_t device_id, pd_word cookie);

/** Tells of an entry that stayed idle for its time to live. */
typedef void (*pipe_idle_tmo_cb)(uint32_t device_id, uint32_t table, pd_entry_hdl entry, pd_word cookie);

/** Receives a message of digest entries, which goes back with pipe_mgr_flow_lrn_notify_ack. */
typedef pd_status (*pipe_lrn_digest_cb)(pd_sess_hdl sess, void *message, pd_word cookie);

/** Called for each group of a member. */
typedef pd_status (*p4_pd_ms_grp_cb)(uint32_t device_id, pd_grp_hdl group, pd_word cookie);

/**
 * Replays one member (no group), one group (no member) or one membership (both) of an action profile.
 * `action_table` is the profile's action data table; `resources` is not 0 when the action has resources.
 */
typedef void (*pipe_restore_state_cb)(pd_sess_hdl sess, uint32_t device_id, uint32_t action_table,
                                      uint32_t action, pd_grp_hdl group, pd_mbr_hdl member,
                                      uint32_t resources);

#ifdef __cplusplus
}
#endif

#endif
