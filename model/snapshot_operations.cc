// The driver operations on snapshots, and the control functions that look at them and let them capture.
#include "bf_snapshot.h"

#include <algorithm>

#include "device.h"

using namespace model;

namespace {

// Runs `use` on a snapshot under the lock of its device, which the handle names.
template <typename Use>
pd_status with_snapshot(u32 handle, Use use)
{
    return with_device(Snapshots::device_of(handle), [&](Device &device) {
        Snapshot *snapshot = device.snapshots.find(handle);
        return snapshot != nullptr ? use(*snapshot) : unknown_object;
    });
}

pd_status create(pd_word device_id, pd_word pipe, u8 first_stage, u8 last_stage, pd_word direction,
                 u32 *handle)
{
    if (first_stage > last_stage || last_stage >= TS_MODEL_STAGES || direction > TS_MODEL_EGRESS ||
        handle == nullptr)
        return bad_argument;
    const SnapshotPlace place{static_cast<u32>(device_id), static_cast<u32>(pipe), first_stage, last_stage,
                              static_cast<u32>(direction)};
    return with_device(place.device_id,
                       [&](Device &device) { return device.snapshots.create(place, *handle); });
}

} // namespace

namespace model {

// ---- Driver operations ----------------------------------------------------------------------------------

pd_status bf_snapshot_create(pd_word first, pd_word second, u8 third, u8 fourth, pd_word fifth, pd_word sixth)
{
    auto *handle = reinterpret_cast<u32 *>(sixth);
    return create(first, second, third, fourth, fifth, handle);
}

pd_status bf_snapshot_delete(u32 snapshot)
{
    const auto remove = [&](Device &device) { return device.snapshots.remove(snapshot); };
    return with_device(Snapshots::device_of(snapshot), remove);
}

pd_status bf_snapshot_capture_trigger_set(u32 snapshot, u8 *spec, u8 *mask)
{
    const auto set = [&](Snapshot &found) {
        found.set_trigger(spec, mask);
        return ok;
    };
    return with_snapshot(snapshot, set);
}

pd_status bf_snapshot_capture_phv_fields_dict_size(u32 snapshot, u32 *total_bytes, u32 *stage_bytes)
{
    const auto tell = [&](const Snapshot &found) {
        *total_bytes = found.stages() * program.snapshot_bytes;
        *stage_bytes = program.snapshot_bytes;
        return ok;
    };
    return with_snapshot(snapshot, tell);
}

pd_status bf_snapshot_capture_get(u32 snapshot, pd_word, void *buffer, pd_word, u32 *count)
{
    const auto get = [&](const Snapshot &found) {
        std::ranges::copy(found.records(), static_cast<u8 *>(buffer));
        *count = found.captured();
        return ok;
    };
    return with_snapshot(snapshot, get);
}

} // namespace model

extern "C" {

// ---- Control --------------------------------------------------------------------------------------------

pd_status ts_model_get_snapshot(u32 snapshot, ts_model_snapshot *out)
{
    return with_snapshot(snapshot, [&](const Snapshot &found) {
        if (out == nullptr)
            return bad_argument;
        *out = found.public_form();
        return ok;
    });
}

pd_status ts_model_capture(u32 snapshot, u32 stage, const u8 *bytes, u32 count)
{
    return with_snapshot(snapshot, [&](Snapshot &found) {
        return bytes != nullptr ? found.capture(stage, {bytes, count}) : bad_argument;
    });
}

} // extern "C"
