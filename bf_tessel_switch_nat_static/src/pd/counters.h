// The families of counters. The caller's record and the driver's hold the two counts in opposite order.
#pragma once

#include "internal.h"
#include "pd_resources.h"
#include "pipe_mgr.h"
#include "rows_resources.h"

namespace TS_INTERNAL pd {

// `cell` is the index of an indexed counter, the entry of a direct one. Of `flags`, bit 0 asks for the
// software copy of this one cell to be brought up first.
inline pd_status counter_read(const Counter &counter, pd_sess_hdl sess, pd_dev_target target, u32 cell,
                              u8 flags, pd_counter_value *value)
{
    pd_status status = PD_STATUS_SUCCESS;
    if (flags & 1)
        status = counter.direct ? pipe_mgr_direct_stat_ent_database_sync(sess, target, counter.handle, cell)
                                : pipe_mgr_stat_ent_database_sync(sess, target, counter.handle, cell);
    if (status != PD_STATUS_SUCCESS)
        return status;
    pipe_stat_data data{};
    pipe_stat_data *list[] = {&data};
    status = counter.direct
                 ? pipe_mgr_mat_ent_direct_stat_query(sess, target.device_id, counter.handle, cell, &data)
                 : pipe_mgr_stat_ent_query(sess, target, counter.handle, &cell, 1, list);
    if (status == PD_STATUS_SUCCESS)
        *value = {data.first_count, data.second_count};
    return status;
}

inline pd_status counter_write(const Counter &counter, pd_sess_hdl sess, pd_dev_target target, u32 cell,
                               pd_counter_value value)
{
    pipe_stat_data data{value.second_count, value.first_count};
    return counter.direct
               ? pipe_mgr_mat_ent_direct_stat_set(sess, target.device_id, counter.handle, cell, &data)
               : pipe_mgr_stat_ent_set(sess, target, counter.handle, cell, &data);
}

inline pd_status counter_hw_sync(const Counter &counter, pd_sess_hdl sess, pd_dev_target target,
                                 pd_sync_cb callback, pd_word cookie)
{
    return counter.direct ? pipe_mgr_direct_stat_database_sync(sess, target, counter.handle, callback, cookie)
                          : pipe_mgr_stat_database_sync(sess, target, counter.handle, callback, cookie);
}

} // namespace pd
