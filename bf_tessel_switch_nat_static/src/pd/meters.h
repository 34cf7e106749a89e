// The families of the program's meters, all of which count bytes. Those that take any meter's handle are the
// inspection layer's.
#pragma once

#include "internal.h"
#include "meter.h"
#include "rows_resources.h"

namespace TS_INTERNAL pd {

// `cell` is the index of an indexed meter, the entry of a direct one. A direct meter is written as a resource
// of its entry, whatever the pipe.
inline pd_status meter_set(const Meter &meter, pd_sess_hdl sess, pd_dev_target target, u32 cell,
                           const pd_meter_spec *spec)
{
    pipe_res_spec resource{};
    fill_bytes_meter(resource.res_data.meter, *spec);
    if (meter.table == 0)
        return pipe_mgr_meter_ent_set(sess, target, meter.handle, cell, &resource.res_data.meter, 0);
    resource.res_handle = meter.handle;
    resource.res_tag = PIPE_RES_ATTACH;
    return pipe_mgr_mat_ent_set_resource(sess, target.device_id, meter.table, cell, &resource, 1, 0);
}

// What the driver holds beyond 32 bits is dropped.
inline void tell_meter(const pipe_meter_spec &from, pd_meter_spec *to)
{
    *to = {static_cast<u32>(from.committed_rate), static_cast<u32>(from.committed_burst),
           static_cast<u32>(from.peak_rate), static_cast<u32>(from.peak_burst), from.meter_type};
}

inline pd_status meter_read(const Meter &meter, pd_sess_hdl sess, pd_dev_target target, u32 cell,
                            pd_meter_spec *spec)
{
    pipe_meter_spec answer{};
    const pd_status status = meter.table == 0
                                 ? pipe_mgr_meter_read_entry_idx(sess, target, meter.handle, cell, &answer, 0)
                                 : pipe_mgr_meter_read_entry(sess, target, meter.table, cell, &answer);
    if (status == PD_STATUS_SUCCESS)
        tell_meter(answer, spec);
    return status;
}

inline pd_status meter_bytecount_adjust_set(const Meter &meter, pd_sess_hdl sess, pd_dev_target target,
                                            u32 adjust)
{
    return pipe_mgr_meter_set_bytecount_adjust(sess, target, meter.handle, adjust);
}

inline pd_status meter_bytecount_adjust_get(const Meter &meter, pd_sess_hdl sess, pd_dev_target target,
                                            u32 *adjust)
{
    return pipe_mgr_meter_get_bytecount_adjust(sess, target, meter.handle, adjust);
}

} // namespace pd
