// The driver operations on what a table has beside its entries: properties and update callbacks.
#include "pipe_mgr_match.h"
#include "table_operation.h"

using namespace model;

namespace model {

pd_status pipe_mgr_tbl_set_property(pd_sess_hdl, u32 device_id, u32 table, u32 property, u32 value,
                                    u32 second_value, u32)
{
    const auto set = [&](Table &found) {
        found.properties[property] = {value, second_value};
        return ok;
    };
    return with_table(device_id, table, set);
}

pd_status pipe_mgr_tbl_get_property(pd_sess_hdl, u32 device_id, u32 table, u32 property, u32 *value,
                                    u32 *second_value)
{
    const auto get = [&](Table &found) {
        const auto known = found.properties.find(property);
        if (known == found.properties.end())
            return unknown_object;
        *value = known->second.value;
        *second_value = known->second.second;
        return ok;
    };
    return with_table(device_id, table, get);
}

pd_status pipe_register_mat_update_cb(pd_sess_hdl sess, u32 device_id, u32 table, pd_mat_update_cb callback,
                                      pd_word cookie)
{
    const auto set = [&](Table &found) {
        found.listeners.set({sess, callback, cookie});
        return ok;
    };
    return with_table(device_id, table, set);
}

} // namespace model
