// Snapshots. A trigger goes to the driver with the bytes of its fields reversed; the swap is unrolled over
// the rows of the two layouts.
#include <algorithm>
#include <cstring>
#include <utility>

#include "bf_snapshot.h"
#include "pd_services.h"
#include "rows_services.h"
#include "sys_array.h"

namespace pd {

namespace {

// The stages that a caller's capture has room for.
constexpr u32 max_stages = 20;

// Says which layout the record of a snapshot has.
constexpr u32 layout_bit = 2;

[[gnu::always_inline]] inline void swap_two_bytes(u8 *field)
{
    u16 value;
    std::memcpy(&value, field, sizeof value);
    value = __builtin_bswap16(value);
    std::memcpy(field, &value, sizeof value);
}

[[gnu::always_inline]] inline void swap_four_bytes(u8 *field)
{
    u32 value;
    std::memcpy(&value, field, sizeof value);
    value = __builtin_bswap32(value);
    std::memcpy(field, &value, sizeof value);
}

template <const SnapshotLayout &layout>
void swap_fields(u8 *record)
{
    [&]<std::size_t... fields>(std::index_sequence<fields...>)
    {
        (swap_two_bytes(record + layout.two_bytes[fields]), ...);
    }
    (std::make_index_sequence<layout.two_bytes.size()>{});
    [&]<std::size_t... fields>(std::index_sequence<fields...>)
    {
        (swap_four_bytes(record + layout.four_bytes[fields]), ...);
    }
    (std::make_index_sequence<layout.four_bytes.size()>{});
}

} // namespace

} // namespace pd

using namespace pd;

pd_status p4_pd_tessel_switch_snapshot_create(pd_word first, pd_word second, u8 third, u8 fourth,
                                              pd_word fifth, pd_word sixth)
{
    return bf_snapshot_create(first, second, third, fourth, fifth, sixth);
}

pd_status p4_pd_tessel_switch_snapshot_delete(u32 snapshot)
{
    return bf_snapshot_delete(snapshot);
}

pd_status p4_pd_tessel_switch_snapshot_capture_trigger_set(u32 snapshot, const pd_snapshot_phv *spec,
                                                           const pd_snapshot_phv *mask)
{
    pd_snapshot_phv spec_copy = *spec, mask_copy = *mask;
    const auto swap = snapshot & layout_bit ? swap_fields<snapshots::B> : swap_fields<snapshots::A>;
    swap(spec_copy.bytes);
    swap(mask_copy.bytes);
    return bf_snapshot_capture_trigger_set(snapshot, spec_copy.bytes, mask_copy.bytes);
}

// Deliberate: a capture keeps the driver's byte order, and is copied even when the driver did not give one.
pd_status p4_pd_tessel_switch_snapshot_capture_data_get(u32 snapshot, pd_word second,
                                                        pd_snapshot_phv *capture, pd_word control, u32 *count)
{
    *count = 0;
    u32 total_bytes = 0, stage_bytes = 0;
    bf_snapshot_capture_phv_fields_dict_size(snapshot, &total_bytes, &stage_bytes);
    const SysArray<u8> buffer(1, total_bytes);
    if (!buffer)
        return PD_STATUS_NO_MEMORY;
    const pd_status status = bf_snapshot_capture_get(snapshot, second, buffer.get(), control, count);
    // A stage that holds no record is none, nor are those of a driver that refuses to tell sizes.
    const u32 stages = stage_bytes < sizeof *capture ? 0 : std::min(total_bytes / stage_bytes, max_stages);
    for (u32 stage = 0; stage < stages; ++stage)
        std::memcpy(capture[stage].bytes, &buffer[stage * stage_bytes], sizeof capture[stage].bytes);
    return status;
}
