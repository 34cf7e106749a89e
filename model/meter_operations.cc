// The driver operations on meters and discard tables, and the control function that reads the latter.
#include "pipe_mgr_meter.h"

#include <algorithm>
#include <iterator>

#include "resource_operation.h"
#include "trace_records.h"

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
pd_status read_attached(const Table &table, pd_entry_hdl entry, pipe_meter_spec *spec)
{
    const auto contents = table.software(entry);
    if (!table.program().direct_meter || !contents || contents->resource == nullptr ||
        contents->resource->res_tag != PIPE_RES_ATTACH)
        return unknown_object;
    if (spec == nullptr)
        return bad_argument;
    *spec = contents->resource->res_data.meter;
    return ok;
}

Line &meter_of(Line &line, pd_sess_hdl sess, pd_dev_target target, u32 meter)
{
    return resource_of(line.number("sess", sess).target(target), "meter", program.meters, meter);
}

std::string wred_text(const pipe_wred_spec *spec)
{
    if (spec == nullptr)
        return "null";
    std::string text;
    for (const u32 word : spec->words)
        append(text, " ", decimal(word));
    return "[" + text + "]";
}

} // namespace

extern "C" {

pd_status pipe_mgr_meter_ent_set(pd_sess_hdl sess, pd_dev_target target, u32 meter, u32 index,
                                 pipe_meter_spec *spec, u32 flags)
{
    const auto set = [&](MeterCells &cells) {
        if (spec == nullptr)
            return bad_argument;
        if (!has_cell(index))
            return unknown_object;
        cells[index] = *spec;
        return ok;
    };
    return run(
        "pipe_mgr_meter_ent_set", [&] { return with_meter(target.device_id, meter, set); },
        [&](Line &line) {
            meter_of(line, sess, target, meter).number("index", index);
            line.words("spec", meter_text(spec)).number("flags", flags);
        });
}

pd_status pipe_mgr_meter_read_entry_idx(pd_sess_hdl sess, pd_dev_target target, u32 meter, u32 index,
                                        pipe_meter_spec *spec, u32 flags)
{
    const auto read = [&](const MeterCells &cells) {
        if (spec == nullptr)
            return bad_argument;
        if (!has_cell(index))
            return unknown_object;
        *spec = read_cell(cells, index);
        return ok;
    };
    return run(
        "pipe_mgr_meter_read_entry_idx", [&] { return with_meter(target.device_id, meter, read); },
        [&](Line &line) {
            meter_of(line, sess, target, meter).number("index", index).number("flags", flags);
        },
        [&](Line &line) { line.words("spec", meter_text(spec)); });
}

pd_status pipe_mgr_meter_read_entry(pd_sess_hdl sess, pd_dev_target target, u32 table, pd_entry_hdl entry,
                                    pipe_meter_spec *spec)
{
    const auto read = [&](const Table &found) { return read_attached(found, entry, spec); };
    return run(
        "pipe_mgr_meter_read_entry", [&] { return with_table(target.device_id, table, read); },
        [&](Line &line) { line.number("sess", sess).target(target).table(table).number("entry", entry); },
        [&](Line &line) { line.words("spec", meter_text(spec)); });
}

pd_status pipe_mgr_meter_set_bytecount_adjust(pd_sess_hdl sess, pd_dev_target target, u32 meter, u32 adjust)
{
    const auto set = [&](u32 &kept) {
        kept = adjust;
        return ok;
    };
    return run(
        "pipe_mgr_meter_set_bytecount_adjust", [&] { return with_adjust(target.device_id, meter, set); },
        [&](Line &line) { meter_of(line, sess, target, meter).number("adjust", adjust); });
}

pd_status pipe_mgr_meter_get_bytecount_adjust(pd_sess_hdl sess, pd_dev_target target, u32 meter, u32 *adjust)
{
    const auto get = [&](u32 kept) {
        if (adjust == nullptr)
            return bad_argument;
        *adjust = kept;
        return ok;
    };
    return run(
        "pipe_mgr_meter_get_bytecount_adjust", [&] { return with_adjust(target.device_id, meter, get); },
        [&](Line &line) { meter_of(line, sess, target, meter); },
        [&](Line &line) { line.number("adjust", *adjust); });
}

pd_status pipe_mgr_wred_ent_set(pd_sess_hdl sess, pd_dev_target target, u32 wred, u32 index,
                                pipe_wred_spec *spec, u32 flags)
{
    const auto set = [&](Device &device) {
        if (spec == nullptr)
            return bad_argument;
        if (!has_cell(index))
            return unknown_object;
        device.wreds[wred][index] = *spec;
        return ok;
    };
    return run(
        "pipe_mgr_wred_ent_set", [&] { return with_device(target.device_id, set); },
        [&](Line &line) {
            line.number("sess", sess).target(target).hex("wred", wred).number("index", index);
            line.words("words", wred_text(spec)).number("flags", flags);
        });
}

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
