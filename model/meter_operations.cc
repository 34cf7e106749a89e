// The driver operations on meters and discard tables, and the control function that reads the latter.
#include "pipe_mgr_meter.h"

#include <algorithm>
#include <iterator>

#include "resource_operation.h"

using namespace model;

namespace {

template <typename Use>
pd_status with_meter(u32 device_id, u32 meter, Use use)
{
    return with_indexed(device_id, &Device::meters, program.meters, meter, use);
}

// Runs `use` on the byte count adjustment of a meter, which direct meters have as well.
template <typename Use>
pd_status with_adjust(u32 device_id, u32 meter, Use use)
{
    return with_device(device_id, [&](Device &device) {
        if (find_object(program.meters, meter) == nullptr)
            return unknown_object;
        return use(device.byte_count_adjusts[meter]);
    });
}

// The meter that is attached to the entry.
pd_status read_attached(const Table &table, pd_entry_hdl entry, pipe_meter_spec &spec)
{
    const auto contents = table.software(entry);
    if (!table.program().direct_meter || !contents || contents->resource == nullptr ||
        contents->resource->res_tag != PIPE_RES_ATTACH)
        return unknown_object;
    spec = contents->resource->res_data.meter;
    return ok;
}

} // namespace

namespace model {

pd_status pipe_mgr_meter_ent_set(pd_sess_hdl, pd_dev_target target, u32 meter, u32 index,
                                 pipe_meter_spec *spec, u32)
{
    const auto set = [&](MeterCells &cells) {
        if (!has_cell(index))
            return unknown_object;
        cells[index] = *spec;
        return ok;
    };
    return with_meter(target.device_id, meter, set);
}

pd_status pipe_mgr_meter_read_entry_idx(pd_sess_hdl, pd_dev_target target, u32 meter, u32 index,
                                        pipe_meter_spec *spec, u32)
{
    const auto read = [&](const MeterCells &cells) {
        if (!has_cell(index))
            return unknown_object;
        *spec = read_cell(cells, index);
        return ok;
    };
    return with_meter(target.device_id, meter, read);
}

pd_status pipe_mgr_meter_read_entry(pd_sess_hdl, pd_dev_target target, u32 table, pd_entry_hdl entry,
                                    pipe_meter_spec *spec)
{
    const auto read = [&](const Table &found) { return read_attached(found, entry, *spec); };
    return with_table(target.device_id, table, read);
}

pd_status pipe_mgr_meter_set_bytecount_adjust(pd_sess_hdl, pd_dev_target target, u32 meter, u32 adjust)
{
    const auto set = [&](u32 &kept) {
        kept = adjust;
        return ok;
    };
    return with_adjust(target.device_id, meter, set);
}

pd_status pipe_mgr_meter_get_bytecount_adjust(pd_sess_hdl, pd_dev_target target, u32 meter, u32 *adjust)
{
    const auto get = [&](u32 kept) {
        *adjust = kept;
        return ok;
    };
    return with_adjust(target.device_id, meter, get);
}

pd_status pipe_mgr_wred_ent_set(pd_sess_hdl, pd_dev_target target, u32 wred, u32 index, pipe_wred_spec *spec,
                                u32)
{
    const auto set = [&](Device &device) {
        if (!has_cell(index))
            return unknown_object;
        device.wreds[wred][index] = *spec;
        return ok;
    };
    return with_device(target.device_id, set);
}

} // namespace model

extern "C" {

pd_status ts_model_get_wred(u32 device_id, u32 wred, u32 index, u32 words[4])
{
    return with_device(device_id, [&](Device &device) {
        if (words == nullptr)
            return bad_argument;
        const pipe_wred_spec cell = read_cell(device.wreds[wred], index);
        std::copy(std::begin(cell.words), std::end(cell.words), words);
        return ok;
    });
}

} // extern "C"
