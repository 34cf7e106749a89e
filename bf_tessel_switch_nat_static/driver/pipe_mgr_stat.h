/**
 * @file pipe_mgr_stat.h
 * @brief The driver operations on counters, those of their own table and those of a match table.
 */
#ifndef PD_DRIVER_PIPE_MGR_STAT_H
#define PD_DRIVER_PIPE_MGR_STAT_H

#include "pipe_mgr_records.h"

#ifdef __cplusplus
extern "C" {
#endif

/** The two counts of a cell, in the driver's order. */
typedef struct pipe_stat_data {
    u64 second_count;
    u64 first_count;
} pipe_stat_data;

PD_OFFSET(pipe_stat_data, second_count, 0);
PD_OFFSET(pipe_stat_data, first_count, 8);
PD_SIZE(pipe_stat_data, 16);

/** Tells that a table-wide sync is done. */
typedef void (*pipe_stat_sync_cb)(u32 device_id, pd_word cookie);

/* ---- Counter tables, by index -------------------------------------------------------------------------- */

/** Brings one cell of the software copy up to date. */
pd_status pipe_mgr_stat_ent_database_sync(pd_sess_hdl sess, pd_dev_target target, u32 counter, u32 index);

/** Reads `count` cells; `data` is a list of as many record pointers. */
pd_status pipe_mgr_stat_ent_query(pd_sess_hdl sess, pd_dev_target target, u32 counter, u32 *indices,
                                  u32 count, pipe_stat_data **data);

/** Writes one cell. */
pd_status pipe_mgr_stat_ent_set(pd_sess_hdl sess, pd_dev_target target, u32 counter, u32 index,
                                pipe_stat_data *data);

/** Starts a sync of the whole counter and returns; the callback tells its end. */
pd_status pipe_mgr_stat_database_sync(pd_sess_hdl sess, pd_dev_target target, u32 counter,
                                      pipe_stat_sync_cb callback, pd_word cookie);

/* ---- Direct counters, by match table and entry --------------------------------------------------------- */

/** Brings the cell of one entry up to date. */
pd_status pipe_mgr_direct_stat_ent_database_sync(pd_sess_hdl sess, pd_dev_target target, u32 table,
                                                 pd_entry_hdl entry);

/** Reads the cell of an entry. */
pd_status pipe_mgr_mat_ent_direct_stat_query(pd_sess_hdl sess, u32 device_id, u32 table, pd_entry_hdl entry,
                                             pipe_stat_data *data);

/** Writes the cell of an entry. */
pd_status pipe_mgr_mat_ent_direct_stat_set(pd_sess_hdl sess, u32 device_id, u32 table, pd_entry_hdl entry,
                                           pipe_stat_data *data);

/** Starts a sync of all cells of a match table and returns; the callback tells its end. */
pd_status pipe_mgr_direct_stat_database_sync(pd_sess_hdl sess, pd_dev_target target, u32 table,
                                             pipe_stat_sync_cb callback, pd_word cookie);

#ifdef __cplusplus
}
#endif

#endif
