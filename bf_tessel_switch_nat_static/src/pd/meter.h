// Meters between the caller's record and the driver's.
#pragma once

#include "internal.h"
#include "pipe_mgr.h"

namespace TS_INTERNAL pd {

// The driver's meter type for a requested one. A request that is no meter type goes through the failure frame
// and then counts as colour aware; a colour-aware request without a pre-colour input counts as colour
// unaware.
u32 get_bytes_meter_type(u32 requested_meter_type, u8 has_pre_color);

// A byte meter. All other bytes of the driver's record are zero already.
inline void fill_bytes_meter(pipe_meter_spec &to, const pd_meter_spec &from)
{
    to.meter_type = get_bytes_meter_type(from.requested_meter_type, 1);
    to.committed_rate = from.committed_rate;
    to.committed_burst = from.committed_burst;
    to.peak_rate = from.peak_rate;
    to.peak_burst = from.peak_burst;
}

} // namespace pd
