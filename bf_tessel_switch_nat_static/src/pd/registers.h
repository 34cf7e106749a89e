// The families of the program's registers: flags, one byte each on the caller's side, the first of an
// element's 16 bytes on the driver's. A cell can have a value per pipe, so reading gives a list.
#pragma once

#include "internal.h"
#include "pd_resources.h"
#include "pipe_mgr.h"
#include "pipe_stful.h"
#include "rows_resources.h"

namespace TS_INTERNAL pd {

// Of `flags`, bit 0 goes to the driver.
pd_status register_read(const Resource &reg, pd_sess_hdl sess, pd_dev_target target, u32 index, int flags,
                        u8 *values, u32 *value_count);

// Index-major: whatever the pipes have for one index stands together.
pd_status register_range_read(const Resource &reg, pd_sess_hdl sess, pd_dev_target target, u32 start,
                              u32 count, int flags, u32 *indices_read, u8 *values, u32 *value_count);

inline pipe_stful_value flag_element(const u8 *value)
{
    return {{static_cast<u8>(*value != 0)}};
}

inline pd_status register_write(const Resource &reg, pd_sess_hdl sess, pd_dev_target target, u32 index,
                                const u8 *value)
{
    pipe_stful_value element = flag_element(value);
    return pipe_stful_ent_set(sess, target, reg.handle, index, &element, 0);
}

// Writing and resetting all are one operation of the driver; without an element it resets.
inline pd_status register_write_all(const Resource &reg, pd_sess_hdl sess, pd_dev_target target,
                                    const u8 *value)
{
    pipe_stful_value element = flag_element(value);
    return pipe_stful_table_reset(sess, target, reg.handle, &element);
}

inline pd_status register_reset_all(const Resource &reg, pd_sess_hdl sess, pd_dev_target target)
{
    return pipe_stful_table_reset(sess, target, reg.handle, nullptr);
}

inline pd_status register_range_reset(const Resource &reg, pd_sess_hdl sess, pd_dev_target target, u32 start,
                                      u32 count)
{
    return pipe_stful_table_reset_range(sess, target, reg.handle, start, count, nullptr);
}

inline pd_status register_hw_sync(const Resource &reg, pd_sess_hdl sess, pd_dev_target target,
                                  pd_sync_cb callback, pd_word cookie)
{
    return pipe_stful_database_sync(sess, target, reg.handle, callback, cookie);
}

} // namespace pd
