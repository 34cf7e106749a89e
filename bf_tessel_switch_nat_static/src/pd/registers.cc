#include "registers.h"

#include <algorithm>

#include "sys_array.h"

namespace pd {

namespace {

// Writes the flags of one index, of which there are as many as the driver was given room for at most. Tells
// how many.
u32 tell_flags(const pipe_stful_query &query, u32 room, u8 *values)
{
    const u32 count = std::min(query.count, room);
    for (u32 i = 0; i < count; ++i)
        values[i] = query.elements[i].bytes[0];
    return count;
}

} // namespace

pd_status register_read(const Resource &reg, pd_sess_hdl sess, pd_dev_target target, u32 index, int flags,
                        u8 *values, u32 *value_count)
{
    u32 room = 0;
    pd_status status = pipe_stful_query_get_sizes(sess, target.device_id, reg.handle, &room);
    if (status != PD_STATUS_SUCCESS)
        return status;
    const SysArray<pipe_stful_value> elements(room);
    if (!elements)
        return PD_STATUS_NO_MEMORY;
    pipe_stful_query query{room, elements.get()};
    status = pipe_stful_ent_query(sess, target, reg.handle, index, &query, flags & 1);
    if (status != PD_STATUS_SUCCESS)
        return status;
    *value_count = tell_flags(query, room, values);
    return PD_STATUS_SUCCESS;
}

pd_status register_range_read(const Resource &reg, pd_sess_hdl sess, pd_dev_target target, u32 start,
                              u32 count, int flags, u32 *indices_read, u8 *values, u32 *value_count)
{
    u32 room = 0;
    pd_status status = pipe_stful_query_get_sizes(sess, target.device_id, reg.handle, &room);
    if (status != PD_STATUS_SUCCESS)
        return status;
    u32 all = 0;
    if (__builtin_mul_overflow(count, room, &all))
        return PD_STATUS_NO_MEMORY;
    const SysArray<pipe_stful_query> queries(count);
    const SysArray<pipe_stful_value> elements(all);
    if (!queries || !elements)
        return PD_STATUS_NO_MEMORY;
    for (u32 i = 0; i < count; ++i)
        queries[i] = {room, &elements[i * room]};
    status = pipe_stful_ent_query_range(sess, target, reg.handle, start, count, queries.get(), indices_read,
                                        flags & 1);
    if (status != PD_STATUS_SUCCESS)
        return status;
    *value_count = 0;
    *indices_read = std::min(*indices_read, count);
    for (u32 i = 0; i < *indices_read; ++i)
        *value_count += tell_flags(queries[i], room, values + *value_count);
    return PD_STATUS_SUCCESS;
}

} // namespace pd
