#include "snapshots.h"

#include <algorithm>

#include "program.h"

namespace model {

Snapshot::Snapshot(const SnapshotPlace &place)
    : place_{place}, records_(std::size_t{stages()} * program.snapshot_bytes)
{
}

ts_model_snapshot Snapshot::public_form() const
{
    return {place_.device_id,
            place_.pipe,
            place_.first_stage,
            place_.last_stage,
            place_.direction,
            captured_,
            armed() ? spec_.data() : nullptr,
            armed() ? mask_.data() : nullptr,
            program.snapshot_bytes};
}

void Snapshot::set_trigger(const u8 *spec, const u8 *mask)
{
    spec_.assign(spec, spec + program.snapshot_bytes);
    mask_.assign(mask, mask + program.snapshot_bytes);
    std::ranges::fill(records_, u8{0});
    captured_ = 0;
}

pd_status Snapshot::capture(u32 stage, std::span<const u8> bytes)
{
    if (!armed())
        return unknown_object;
    if (stage < place_.first_stage || stage > place_.last_stage || bytes.size() > program.snapshot_bytes)
        return bad_argument;
    const u32 position = stage - place_.first_stage;
    const auto record =
        std::span{records_}.subspan(std::size_t{position} * program.snapshot_bytes, program.snapshot_bytes);
    std::ranges::fill(record, u8{0});
    std::ranges::copy(bytes, record.begin());
    captured_ = std::max(captured_, position + 1);
    return ok;
}

void Snapshot::capture_next(std::span<const u8> bytes)
{
    capture(place_.first_stage + captured_, bytes);
}

pd_status Snapshots::create(const SnapshotPlace &place, u32 &handle)
{
    if (last_number_ + 1 == 1u << (device_shift - number_shift))
        return no_space;
    handle =
        place.device_id << device_shift | ++last_number_ << number_shift | place.direction << direction_shift;
    snapshots_.try_emplace(handle, place);
    return ok;
}

pd_status Snapshots::remove(u32 handle)
{
    return snapshots_.erase(handle) != 0 ? ok : unknown_object;
}

Snapshot *Snapshots::find(u32 handle)
{
    const auto known = snapshots_.find(handle);
    return known != snapshots_.end() ? &known->second : nullptr;
}

void Snapshots::capture_key(std::span<const u8> key)
{
    for (auto &[handle, snapshot] : snapshots_)
        snapshot.capture_next(key);
}

} // namespace model
