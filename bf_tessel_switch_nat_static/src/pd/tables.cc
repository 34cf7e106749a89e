#include "tables.h"

namespace pd {

pd_status set_property_of TS_BESIDE(u32 table, pd_sess_hdl sess, u32 device_id, u32 property, u32 value,
                                    u32 second_value)
{
    return pipe_mgr_tbl_set_property(sess, device_id, table, property, value, second_value, 0);
}

pd_status get_property_of TS_BESIDE(u32 table, pd_sess_hdl sess, u32 device_id, u32 property, u32 *value,
                                    u32 *second_value)
{
    u32 found = 0, second_found = 0;
    const pd_status status =
        pipe_mgr_tbl_get_property(sess, device_id, table, property, &found, &second_found);
    *value = status == 0 ? found : ~u32{0};
    *second_value = status == 0 ? second_found : ~u32{0};
    return status;
}

pd_status register_update_cb_of TS_BESIDE(u32 table, pd_sess_hdl sess, u32 device_id,
                                          pd_mat_update_cb callback, pd_word cookie)
{
    return pipe_register_mat_update_cb(sess, device_id, table, callback, cookie);
}

pd_status get_entry_count_of TS_BESIDE(u32 table, pd_sess_hdl sess, pd_dev_target target, u32 *count)
{
    return pipe_mgr_get_entry_count(sess, target, table, 0, count);
}

} // namespace pd
