/**
 * @file pipe_mgr_idle.h
 * @brief The driver operations on idle time: the ageing of match entries.
 */
#ifndef PD_DRIVER_PIPE_MGR_IDLE_H
#define PD_DRIVER_PIPE_MGR_IDLE_H

#include "pipe_mgr_records.h"

#ifdef __cplusplus
extern "C" {
#endif

/** How a table ages its entries. The words are the driver's; those of other modes than 1 have no meaning. */
typedef struct pipe_idle_params {
    u32 idle_mode;
    u32 idle_param_1;
    u32 idle_param_2;
    u32 idle_param_3;
    u32 idle_param_4;
    u32 reserved_1; /**< 0 on write */
    u32 idle_param_5;
    u32 reserved_2; /**< 0 on write */
} pipe_idle_params;

PD_OFFSET(pipe_idle_params, idle_mode, 0);
PD_OFFSET(pipe_idle_params, idle_param_1, 4);
PD_OFFSET(pipe_idle_params, idle_param_4, 16);
PD_OFFSET(pipe_idle_params, reserved_1, 20);
PD_OFFSET(pipe_idle_params, idle_param_5, 24);
PD_OFFSET(pipe_idle_params, reserved_2, 28);
PD_SIZE(pipe_idle_params, 32);

/** Tells of an entry that stayed idle for its time to live. */
typedef void (*pipe_idle_tmo_cb)(u32 device_id, u32 table, pd_entry_hdl entry, pd_word cookie);

/** Sets the parameters of a table's ageing. They stay when ageing is turned off. */
pd_status pipe_mgr_idle_set_params(pd_sess_hdl sess, u32 device_id, u32 table, pipe_idle_params params);

/** Reads the parameters of a table's ageing. */
pd_status pipe_mgr_idle_get_params(pd_sess_hdl sess, u32 device_id, u32 table, pipe_idle_params *params);

/** Turns a table's ageing on (1) or off (0). */
pd_status pipe_mgr_idle_tmo_set_enable(pd_sess_hdl sess, u32 device_id, u32 table, u32 enable);

/** Registers for idle entries of a table. */
pd_status pipe_mgr_idle_register_tmo_cb(pd_sess_hdl sess, u32 device_id, u32 table, pipe_idle_tmo_cb callback,
                                        pd_word cookie);

/** Sets the time to live of an entry. `reserved` is always 0. */
pd_status pipe_mgr_mat_ent_set_idle_ttl(pd_sess_hdl sess, u32 device_id, u32 table, pd_entry_hdl entry,
                                        u32 ttl, u32 reserved, u32 flags);

/** Reads the time to live of an entry. */
pd_status pipe_mgr_mat_ent_get_idle_ttl(pd_sess_hdl sess, u32 device_id, u32 table, pd_entry_hdl entry,
                                        u32 *ttl);

/** Starts the time to live of an entry anew. */
pd_status pipe_mgr_mat_ent_reset_idle_ttl(pd_sess_hdl sess, u32 device_id, u32 table, pd_entry_hdl entry);

/** Brings the hit states of a table up to date; the two words are handed on unread. */
pd_status pipe_mgr_idle_time_update_hit_state(pd_sess_hdl sess, u32 device_id, u32 table, pd_word first,
                                              pd_word second);

/** Reads the hit state of an entry. */
pd_status pipe_mgr_idle_time_get_hit_state(pd_sess_hdl sess, u32 device_id, u32 table, pd_entry_hdl entry,
                                           u32 *hit_state);

#ifdef __cplusplus
}
#endif

#endif
