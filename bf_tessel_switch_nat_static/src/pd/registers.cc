#include "registers.h"

#include "status.h"
#include "sys_array.h"

namespace pd {

namespace {

// Writes the flags of one index and tells where the next go.
u8 *tell_flags(const pipe_stful_query &query, u8 *values)
{
    for (u32 i = 0; i < query.count; ++i)
        *values++ = query.elements[i].bytes[0];
    return values;
}

} // namespace

pd_status register_read(const Resource &reg, pd_sess_hdl sess, pd_dev_target target, u32 index, int flags,
                        u8 *values, u32 *value_count)
{
    u32 room = 0;
    pd_status status = pipe_stful_query_get_sizes(sess, target.device_id, reg.handle, &room);
    if (status != success)
        return status;
    const SysArray<pipe_stful_value> elements(room);
    if (!elements)
        return out_of_memory;
    pipe_stful_query query{room, elements.get()};
    status = pipe_stful_ent_query(sess, target, reg.handle, index, &query, flags & 1);
    if (status != success)
        return status;
    *value_count = query.count;
    tell_flags(query, values);
    return success;
}

pd_status register_range_read(const Resource &reg, pd_sess_hdl sess, pd_dev_target target, u32 start,
                              u32 count, int flags, u32 *indices_read, u8 *values, u32 *value_count)
{
    u32 room = 0;
    pd_status status = pipe_stful_query_get_sizes(sess, target.device_id, reg.handle, &room);
    if (status != success)
        return status;
    const SysArray<pipe_stful_query> queries(count);
    const SysArray<pipe_stful_value> elements(count * room);
    if (!queries || !elements)
        return out_of_memory;
    for (u32 i = 0; i < count; ++i)
        queries[i] = {room, &elements[i * room]};
    status = pipe_stful_ent_query_range(sess, target, reg.handle, start, count, queries.get(), indices_read,
                                        flags & 1);
    if (status != success)
        return status;
    *value_count = 0;
    for (u32 i = 0; i < *indices_read; ++i) {
        *value_count += queries[i].count;
        values = tell_flags(queries[i], values);
    }
    return success;
}

} // namespace pd
