// The small families that every table has: properties, update callbacks, its handle, counts and walks. They
// add the table's handle and forward.
#pragma once

#include "pipe_mgr.h"
#include "rows.h"

namespace pd {

inline pd_status set_property(const Table &table, pd_sess_hdl sess, u32 device_id, u32 property, u32 value,
                              u32 second_value)
{
    return pipe_mgr_tbl_set_property(sess, device_id, table.handle, property, value, second_value, 0);
}

// Both outputs are written in any case: all ones when the driver refuses.
inline pd_status get_property(const Table &table, pd_sess_hdl sess, u32 device_id, u32 property, u32 *value,
                              u32 *second_value)
{
    u32 found = 0, second_found = 0;
    const pd_status status =
        pipe_mgr_tbl_get_property(sess, device_id, table.handle, property, &found, &second_found);
    *value = status == 0 ? found : ~u32{0};
    *second_value = status == 0 ? second_found : ~u32{0};
    return status;
}

inline pd_status register_mat_update_cb(const Table &table, pd_sess_hdl sess, u32 device_id,
                                        pd_mat_update_cb callback, pd_word cookie)
{
    return pipe_register_mat_update_cb(sess, device_id, table.handle, callback, cookie);
}

inline pd_status get_mat_table_handle(const Table &table, u32 *handle)
{
    if (handle)
        *handle = table.handle;
    return 0;
}

inline pd_status get_entry_count(const Table &table, pd_sess_hdl sess, pd_dev_target target, u32 *count)
{
    return pipe_mgr_get_entry_count(sess, target, table.handle, 0, count);
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
