// The families of parser value sets. They add the set's handle and forward; only properties change their
// shape.
#pragma once

#include "internal.h"
#include "pipe_mgr.h"
#include "rows_services.h"

namespace TS_INTERNAL pd {

// Which part of the parser an entry is for. Not looked at here.
struct ValueSetScope {
    u32 a;
    u32 b;
    u8 c;
};

inline pd_status set_property(const Resource &set, pd_sess_hdl sess, u32 device_id, u32 property, u32 value,
                              u32 argument)
{
    return pipe_mgr_pvs_set_property(sess, device_id, set.handle, property, {value, 0}, {argument, 0, 0});
}

// The output is written in any case: all ones when the driver refuses.
inline pd_status get_property(const Resource &set, pd_sess_hdl sess, u32 device_id, u32 property, u32 *value,
                              u32 argument)
{
    u32 found = 0;
    const pd_status status =
        pipe_mgr_pvs_get_property(sess, device_id, set.handle, property, &found, {argument, 0, 0});
    *value = status == PD_STATUS_SUCCESS ? found : ~u32{0};
    return status;
}

inline pd_status entry_add(const Resource &set, pd_sess_hdl sess, u32 device_id, ValueSetScope scope, u32 key,
                           u32 key_mask, u32 *entry)
{
    return pipe_mgr_pvs_entry_add(sess, device_id, set.handle, scope.a, scope.b, scope.c, key, key_mask,
                                  entry);
}

inline pd_status entry_modify(const Resource &set, pd_sess_hdl sess, u32 device_id, u32 entry, u32 key,
                              u32 key_mask)
{
    return pipe_mgr_pvs_entry_modify(sess, device_id, set.handle, entry, key, key_mask);
}

inline pd_status entry_delete(const Resource &set, pd_sess_hdl sess, u32 device_id, u32 entry)
{
    return pipe_mgr_pvs_entry_delete(sess, device_id, set.handle, entry);
}

// The scope is not asked for.
inline pd_status entry_get(const Resource &set, pd_sess_hdl sess, u32 device_id, u32 entry, u32 *key,
                           u32 *key_mask)
{
    return pipe_mgr_pvs_entry_get(sess, device_id, set.handle, entry, key, key_mask, nullptr, nullptr,
                                  nullptr);
}

inline pd_status entry_handle_get(const Resource &set, pd_sess_hdl sess, u32 device_id, ValueSetScope scope,
                                  u32 key, u32 key_mask, u32 *entry)
{
    return pipe_mgr_pvs_entry_handle_get(sess, device_id, set.handle, scope.a, scope.b, scope.c, key,
                                         key_mask, entry);
}

inline pd_status entry_get_first(const Resource &set, pd_sess_hdl sess, u32 device_id, ValueSetScope scope,
                                 u32 *first)
{
    return pipe_mgr_pvs_entry_get_first(sess, device_id, set.handle, scope.a, scope.b, scope.c, first);
}

inline pd_status entry_get_next(const Resource &set, pd_sess_hdl sess, u32 device_id, ValueSetScope scope,
                                u32 entry, u32 count, u32 *next)
{
    return pipe_mgr_pvs_entry_get_next(sess, device_id, set.handle, scope.a, scope.b, scope.c, entry, count,
                                       next);
}

inline pd_status entry_get_count(const Resource &set, pd_sess_hdl sess, u32 device_id, ValueSetScope scope,
                                 u8 flag, u32 *count)
{
    return pipe_mgr_pvs_entry_get_count(sess, device_id, set.handle, scope.a, scope.b, scope.c, flag, count);
}

} // namespace pd
