// Every counter, meter and register with its functions.
#pragma once

#include <span>

#include "pd_resources.h"
#include "rows.h"

namespace reflection {

// `cell` is an index, or an entry of the table that a counter or meter is direct to.
struct CounterFunctions {
    const pd::Counter *row;
    pd_status (*read)(pd_sess_hdl, pd_dev_target, u32 cell, u8 flags, pd_counter_value *);
    pd_status (*write)(pd_sess_hdl, pd_dev_target, u32 cell, pd_counter_value);
    pd_status (*hw_sync)(pd_sess_hdl, pd_dev_target, pd_sync_cb, pd_word cookie);
};

struct MeterFunctions {
    const pd::Meter *row;
    pd_status (*set)(pd_sess_hdl, pd_dev_target, u32 cell, const pd_meter_spec *);
    pd_status (*read)(pd_sess_hdl, pd_dev_target, u32 cell, pd_meter_spec *);
    pd_status (*bytecount_adjust_set)(pd_sess_hdl, pd_dev_target, u32 adjust);
    pd_status (*bytecount_adjust_get)(pd_sess_hdl, pd_dev_target, u32 *adjust);
};

struct RegisterFunctions {
    const pd::Resource *row;
    pd_status (*read)(pd_sess_hdl, pd_dev_target, u32 index, int flags, u8 *values, u32 *value_count);
    pd_status (*write)(pd_sess_hdl, pd_dev_target, u32 index, const u8 *value);
    pd_status (*reset_all)(pd_sess_hdl, pd_dev_target);
    pd_status (*write_all)(pd_sess_hdl, pd_dev_target, const u8 *value);
    pd_status (*range_reset)(pd_sess_hdl, pd_dev_target, u32 start, u32 count);
    pd_status (*range_read)(pd_sess_hdl, pd_dev_target, u32 start, u32 count, int flags, u32 *indices_read,
                            u8 *values, u32 *value_count);
    pd_status (*hw_sync)(pd_sess_hdl, pd_dev_target, pd_sync_cb, pd_word cookie);
};

std::span<const CounterFunctions> counters();
std::span<const MeterFunctions> meters();
std::span<const RegisterFunctions> registers();

} // namespace reflection
