// Meters and WRED cells by any handle.
#include "failure.h"
#include "meters.h"
#include "pd_resources.h"
#include "pipe_mgr.h"
#include "source_name.h"

namespace {

// Stricter than the rule of the named meters: a request that cannot be met ends the process.
u32 meter_type(u32 requested_meter_type, bool has_pre_color, pd::Place place)
{
    if (requested_meter_type > PD_METER_TYPE_COLOR_UNAWARE)
        pd::fail("requested_meter_type == PD_METER_TYPE_COLOR_AWARE || "
                 "requested_meter_type == PD_METER_TYPE_COLOR_UNAWARE",
                 place, pd_tessel::source_name);
    if (requested_meter_type == PD_METER_TYPE_COLOR_AWARE && !has_pre_color)
        pd::fail("has_pre_color == true", place, pd_tessel::source_name);
    return requested_meter_type;
}

u32 get_bytes_meter_type(u32 requested_meter_type, bool has_pre_color)
{
    return meter_type(requested_meter_type, has_pre_color, {__func__, __LINE__});
}

u32 get_packets_meter_type(u32 requested_meter_type, bool has_pre_color)
{
    return meter_type(requested_meter_type, has_pre_color, {__func__, __LINE__});
}

constexpr u32 bytes_unit = 0;
constexpr u32 packets_unit = 1;

pipe_meter_spec driver_meter(const pd_meter_spec &spec, u32 type, u32 unit)
{
    return {type, unit, spec.committed_rate, spec.committed_burst, unit, spec.peak_rate, spec.peak_burst};
}

// Reading is the same for both kinds.
pd_status read_meter(pd_sess_hdl sess, pd_dev_target target, u32 meter, u32 index, pd_meter_spec *spec)
{
    return pd::meter_read({nullptr, meter, 0}, sess, target, index, spec);
}

} // namespace

pd_status p4_pd_tessel_switch_bytes_meter_set(pd_sess_hdl sess, pd_dev_target dev_tgt, u32 meter, u32 index,
                                              const pd_meter_spec *spec, u8 has_pre_color)
{
    pipe_meter_spec record =
        driver_meter(*spec, get_bytes_meter_type(spec->requested_meter_type, has_pre_color), bytes_unit);
    return pipe_mgr_meter_ent_set(sess, dev_tgt, meter, index, &record, 0);
}

pd_status p4_pd_tessel_switch_packets_meter_set(pd_sess_hdl sess, pd_dev_target dev_tgt, u32 meter, u32 index,
                                                const pd_meter_spec *spec, u8 has_pre_color)
{
    pipe_meter_spec record =
        driver_meter(*spec, get_packets_meter_type(spec->requested_meter_type, has_pre_color), packets_unit);
    return pipe_mgr_meter_ent_set(sess, dev_tgt, meter, index, &record, 0);
}

pd_status p4_pd_tessel_switch_bytes_meter_read(pd_sess_hdl sess, pd_dev_target dev_tgt, u32 meter, u32 index,
                                               pd_meter_spec *spec)
{
    return read_meter(sess, dev_tgt, meter, index, spec);
}

pd_status p4_pd_tessel_switch_packets_meter_read(pd_sess_hdl sess, pd_dev_target dev_tgt, u32 meter,
                                                 u32 index, pd_meter_spec *spec)
{
    return read_meter(sess, dev_tgt, meter, index, spec);
}

pd_status p4_pd_tessel_switch_wred_set(pd_sess_hdl sess, pd_dev_target dev_tgt, u32 wred, u32 index,
                                       const pd_wred_spec *spec)
{
    pipe_wred_spec record{{spec->words[0], spec->words[1], spec->words[2], spec->words[3]}};
    return pipe_mgr_wred_ent_set(sess, dev_tgt, wred, index, &record, 0);
}
