/**
 * @file pipe_mgr_adt.h
 * @brief The driver operations on action data tables: the members of an action profile.
 */
#ifndef PD_DRIVER_PIPE_MGR_ADT_H
#define PD_DRIVER_PIPE_MGR_ADT_H

#include "pipe_mgr_records.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Tells of a change to an action data table. The driver defines what `update` points at. */
typedef void (*pipe_adt_update_cb)(u32 device_id, u32 table, const void *update, pd_word cookie);

/** Creates a member and writes its handle to `member`. `reserved` is always 0. */
pd_status pipe_mgr_adt_ent_add(pd_sess_hdl sess, pd_dev_target target, u32 table, u32 action, u32 reserved,
                               pipe_action_spec *spec, pd_mbr_hdl *member, u32 flags);

/** Replaces the data of a member. */
pd_status pipe_mgr_adt_ent_set(pd_sess_hdl sess, u32 device_id, u32 table, pd_mbr_hdl member, u32 action,
                               pipe_action_spec *spec, u32 flags);

/** Deletes a member. */
pd_status pipe_mgr_adt_ent_del(pd_sess_hdl sess, u32 device_id, u32 table, pd_mbr_hdl member, u32 flags);

/** Reads a member's image into the buffer that `data` points at, and its action's handle into `action`. */
pd_status pipe_mgr_get_action_data_entry(u32 table, pd_dev_target target, pd_mbr_hdl member,
                                         pipe_action_data *data, u32 *action, u8 from_hw);

/** Registers for changes of an action data table. */
pd_status pipe_register_adt_update_cb(pd_sess_hdl sess, u32 device_id, u32 table, pipe_adt_update_cb callback,
                                      pd_word cookie);

/** Gives the placement data of an action data table; the two words are handed on unread. */
pd_status pipe_mgr_plcmt_adt_data_get(pd_word first, pd_word second, u32 table);

/** Decodes a placement record of an action data table. */
pd_status pipe_mgr_plcmt_adt_data_get_entry(void *plcmt_data, pipe_action_data *data, u32 *action);

#ifdef __cplusplus
}
#endif

#endif
