/**
 * @file pipe_mgr_match.h
 * @brief The driver operations on match tables: entries, defaults, read-back, walks, properties, placement.
 */
#ifndef PD_DRIVER_PIPE_MGR_MATCH_H
#define PD_DRIVER_PIPE_MGR_MATCH_H

#include "pipe_mgr_records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Entries ----------------------------------------------------------------------------------------- */

/** Adds an entry and writes its handle to `entry`. `ttl` starts the idle time, 0 where there is none. */
pd_status pipe_mgr_mat_ent_add(pd_sess_hdl sess, pd_dev_target target, u32 table, pipe_match_spec *match,
                               u32 action, pipe_action_spec *spec, u32 ttl, u32 flags, pd_entry_hdl *entry);

/** Replaces the action of an entry. */
pd_status pipe_mgr_mat_ent_set_action(pd_sess_hdl sess, u32 device_id, u32 table, pd_entry_hdl entry,
                                      u32 action, pipe_action_spec *spec, u32 flags);

/** Replaces the action of the entry with this key. */
pd_status pipe_mgr_mat_ent_set_action_by_match_spec(pd_sess_hdl sess, pd_dev_target target, u32 table,
                                                    pipe_match_spec *match, u32 action,
                                                    pipe_action_spec *spec, u32 flags);

/** Writes `count` resources of an entry and leaves its action alone. */
pd_status pipe_mgr_mat_ent_set_resource(pd_sess_hdl sess, u32 device_id, u32 table, pd_entry_hdl entry,
                                        pipe_res_spec *resources, u32 count, u32 flags);

/** Deletes an entry. */
pd_status pipe_mgr_mat_ent_del(pd_sess_hdl sess, u32 device_id, u32 table, pd_entry_hdl entry, u32 flags);

/** Deletes the entry with this key. */
pd_status pipe_mgr_mat_ent_del_by_match_spec(pd_sess_hdl sess, pd_dev_target target, u32 table,
                                             pipe_match_spec *match, u32 flags);

/** Finds the entry with this key and writes its handle to `entry`. */
pd_status pipe_mgr_match_spec_to_ent_hdl(pd_sess_hdl sess, pd_dev_target target, u32 table,
                                         pipe_match_spec *match, pd_entry_hdl *entry, u32 flags);

/* ---- Default entries ----------------------------------------------------------------------------------- */

/** Sets the action of a miss and writes the handle of the default entry to `entry`. */
pd_status pipe_mgr_mat_default_entry_set(pd_sess_hdl sess, pd_dev_target target, u32 table, u32 action,
                                         pipe_action_spec *spec, u32 flags, pd_entry_hdl *entry);

/** Writes the handle of the default entry to `entry`. */
pd_status pipe_mgr_table_get_default_entry_handle(pd_sess_hdl sess, pd_dev_target target, u32 table,
                                                  pd_entry_hdl *entry);

/**
 * Reads the default entry into `spec`, whose data pointer and room the caller has set, and the handle of its
 * action into `action`. The library always passes 1 and 0 as the last two arguments.
 */
pd_status pipe_mgr_table_get_default_entry(pd_sess_hdl sess, pd_dev_target target, u32 table,
                                           pipe_action_spec *spec, u32 *action, u8 from_hw, u32 resources,
                                           u32 flags);

/** Goes back to the default action that the program starts with. */
pd_status pipe_mgr_mat_tbl_default_entry_reset(pd_sess_hdl sess, pd_dev_target target, u32 table, u32 flags);

/* ---- Read-back ----------------------------------------------------------------------------------------- */

/**
 * Reads an entry into buffers that `match` and `spec` point at. The default entry shows as a null
 * `match_value` or a `num_bytes` of 0. The library always passes 1 and 0 as the last two arguments.
 */
pd_status pipe_mgr_get_entry(pd_sess_hdl sess, u32 table, pd_dev_target target, pd_entry_hdl entry,
                             pipe_match_spec *match, pipe_action_spec *spec, u32 *action, u8 from_hw,
                             u32 resources, u32 flags);

/**
 * Counts the entries of a match table, the members of an action data table or the groups of a selector table.
 * `from_hw` is always 0.
 */
pd_status pipe_mgr_get_entry_count(pd_sess_hdl sess, pd_dev_target target, u32 table, u32 from_hw,
                                   u32 *count);

/** The first entry, member or group of a table. */
pd_status pipe_mgr_get_first_entry_handle(pd_sess_hdl sess, u32 table, pd_dev_target target, u32 *first);

/** Up to `count` handles behind `after`, written to the array `next`. */
pd_status pipe_mgr_get_next_entry_handles(pd_sess_hdl sess, u32 table, pd_dev_target target, u32 after,
                                          u32 count, u32 *next);

/* ---- Properties and callbacks -------------------------------------------------------------------------- */

/** Sets a property of a table. */
pd_status pipe_mgr_tbl_set_property(pd_sess_hdl sess, u32 device_id, u32 table, u32 property, u32 value,
                                    u32 second_value, u32 flags);

/** Reads a property of a table. */
pd_status pipe_mgr_tbl_get_property(pd_sess_hdl sess, u32 device_id, u32 table, u32 property, u32 *value,
                                    u32 *second_value);

/** Registers for changes of a match table. */
pd_status pipe_register_mat_update_cb(pd_sess_hdl sess, u32 device_id, u32 table, pd_mat_update_cb callback,
                                      pd_word cookie);

/* ---- Placement records --------------------------------------------------------------------------------- */

/** Gives the placement data of a match table; the two words are handed on unread. */
pd_status pipe_mgr_plcmt_mat_data_get(pd_word first, pd_word second, u32 table);

/** Decodes a placement record of a match table into `match`, `spec` and `action`, like a read-back. */
pd_status pipe_mgr_plcmt_mat_data_get_entry(void *plcmt_data, pipe_match_spec *match, pipe_action_spec *spec,
                                            u32 *action);

#ifdef __cplusplus
}
#endif

#endif
