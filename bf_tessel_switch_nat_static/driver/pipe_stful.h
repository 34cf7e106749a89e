/**
 * @file pipe_stful.h
 * @brief The driver operations on register tables.
 */
#ifndef PD_DRIVER_PIPE_STFUL_H
#define PD_DRIVER_PIPE_STFUL_H

#include "pipe_mgr_records.h"

#ifdef __cplusplus
extern "C" {
#endif

/** What a read fills: as many elements as the register has values, one for each pipe. */
typedef struct pipe_stful_query {
    u32 count; /**< room on the way in; the driver may lower it */
    pipe_stful_value *elements;
} pipe_stful_query;

PD_OFFSET(pipe_stful_query, count, 0);
PD_OFFSET(pipe_stful_query, elements, 4);
PD_SIZE(pipe_stful_query, 8);

/** Tells that a sync of a register table is done. */
typedef void (*pipe_stful_sync_cb)(u32 device_id, pd_word cookie);

/* `from_hw` is 0 or 1. */

/** How many elements a read of one index gives. */
pd_status pipe_stful_query_get_sizes(pd_sess_hdl sess, u32 device_id, u32 table, u32 *count);

/** Reads one index. */
pd_status pipe_stful_ent_query(pd_sess_hdl sess, pd_dev_target target, u32 table, u32 index,
                               pipe_stful_query *query, u32 from_hw);

/** Reads `count` indices from `start` on into as many queries; `indices_read` tells how many were read. */
pd_status pipe_stful_ent_query_range(pd_sess_hdl sess, pd_dev_target target, u32 table, u32 start, u32 count,
                                     pipe_stful_query *queries, u32 *indices_read, u32 from_hw);

/** Writes one index. */
pd_status pipe_stful_ent_set(pd_sess_hdl sess, pd_dev_target target, u32 table, u32 index,
                             pipe_stful_value *value, u32 flags);

/** Starts a sync of a register table and returns; the callback tells its end. */
pd_status pipe_stful_database_sync(pd_sess_hdl sess, pd_dev_target target, u32 table,
                                   pipe_stful_sync_cb callback, pd_word cookie);

/** The same for registers that are attached to match entries. */
pd_status pipe_stful_direct_database_sync(pd_sess_hdl sess, pd_dev_target target, u32 table,
                                          pipe_stful_sync_cb callback, pd_word cookie);

/** Reads the register of a match entry. */
pd_status pipe_stful_direct_ent_query(pd_sess_hdl sess, u32 device_id, u32 table, pd_entry_hdl entry,
                                      pipe_stful_query *query, u32 from_hw);

/** Sets all indices to `value`, or to their default when it is null. */
pd_status pipe_stful_table_reset(pd_sess_hdl sess, pd_dev_target target, u32 table, pipe_stful_value *value);

/** The same for `count` indices from `start` on. */
pd_status pipe_stful_table_reset_range(pd_sess_hdl sess, pd_dev_target target, u32 table, u32 start,
                                       u32 count, pipe_stful_value *value);

#ifdef __cplusplus
}
#endif

#endif
