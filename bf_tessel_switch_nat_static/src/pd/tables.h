// The small families that every table has: properties, update callbacks, its handle, counts and walks. They
// add the table's handle and forward.
#pragma once

#include "internal.h"
#include "pipe_mgr.h"
#include "rows.h"
#include "shared_call.h"

namespace TS_INTERNAL pd {

// Of the table with this handle.
[[TS_SHARED]] pd_status set_property_of TS_BESIDE(u32 table, pd_sess_hdl sess, u32 device_id, u32 property,
                                                  u32 value, u32 second_value);
// Both outputs are written in any case: all ones when the driver refuses.
[[TS_SHARED]] pd_status get_property_of TS_BESIDE(u32 table, pd_sess_hdl sess, u32 device_id, u32 property,
                                                  u32 *value, u32 *second_value);
[[TS_SHARED]] pd_status register_update_cb_of TS_BESIDE(u32 table, pd_sess_hdl sess, u32 device_id,
                                                        pd_mat_update_cb callback, pd_word cookie);
[[TS_SHARED]] pd_status get_entry_count_of TS_BESIDE(u32 table, pd_sess_hdl sess, pd_dev_target target,
                                                     u32 *count);

inline pd_status set_property(const Table &table, pd_sess_hdl sess, u32 device_id, u32 property, u32 value,
                              u32 second_value)
{
    return set_property_of TS_BESIDE(table.handle, sess, device_id, property, value, second_value);
}

inline pd_status get_property(const Table &table, pd_sess_hdl sess, u32 device_id, u32 property, u32 *value,
                              u32 *second_value)
{
    return get_property_of TS_BESIDE(table.handle, sess, device_id, property, value, second_value);
}

inline pd_status register_mat_update_cb(const Table &table, pd_sess_hdl sess, u32 device_id,
                                        pd_mat_update_cb callback, pd_word cookie)
{
    return register_update_cb_of TS_BESIDE(table.handle, sess, device_id, callback, cookie);
}

inline pd_status get_mat_table_handle(const Table &table, u32 *handle)
{
    if (handle)
        *handle = table.handle;
    return 0;
}

inline pd_status get_entry_count(const Table &table, pd_sess_hdl sess, pd_dev_target target, u32 *count)
{
    return get_entry_count_of TS_BESIDE(table.handle, sess, target, count);
}

inline pd_status get_first_entry_handle(const Table &table, pd_sess_hdl sess, pd_dev_target target,
                                        pd_entry_hdl *first)
{
    return pipe_mgr_get_first_entry_handle(sess, table.handle, target, first);
}

inline pd_status get_next_entry_handles(const Table &table, pd_sess_hdl sess, pd_dev_target target,
                                        pd_entry_hdl entry, u32 count, pd_entry_hdl *next)
{
    return pipe_mgr_get_next_entry_handles(sess, table.handle, target, entry, count, next);
}

inline pd_status get_plcmt_data(const Table &table, pd_word first, pd_word second)
{
    return pipe_mgr_plcmt_mat_data_get(first, second, table.handle);
}

} // namespace pd
