// What the benchmark of snapshots and hashes calls, and what it calls it with.
#pragma once

#include "hand_written_services.h"
#include "write_cases.h"

namespace bench {

// Snapshots of either layout; bit 1 of the handle tells which.
inline constexpr u32 layout_a = 1, layout_b = 3;

using SetTrigger = pd_status(u32 snapshot, const pd_snapshot_phv *spec, const pd_snapshot_phv *mask);

// The mask is another sample than the value.
[[gnu::always_inline]] inline pd_status set_trigger(SetTrigger function, u32 snapshot, std::size_t index)
{
    const auto &records = samples<pd_snapshot_phv>;
    return function(snapshot, &records[index], &records[sample_count - 1 - index]);
}

// The five-tuple: two IPv4 addresses, the protocol, two ports.
inline constexpr u32 tuple_widths[] = {32, 32, 8, 16, 16};
inline constexpr std::size_t tuple_fields = std::size(tuple_widths), tuple_bytes = 13;
inline constexpr u32 tuple_hash = 0x8000008; // hashOuterIpv4Hdr

struct FiveTuple {
    hash_input_field_attribute fields[tuple_fields];
};

// Values that fit their fields.
template <>
inline void restrict_sample(FiveTuple &tuple, std::size_t)
{
    for (std::size_t i = 0; i < tuple_fields; ++i)
        tuple.fields[i].attr_value &= 0xffffffffu >> (32 - tuple_widths[i]);
}

[[gnu::always_inline]] inline pd_status hash(std::size_t index, u8 *value, u32 bytes)
{
    return p4_pd_tessel_switch_hash_calc_hashOuterIpv4Hdr_calculate_hash_value(
        session, target.device_id, tuple_fields, samples<FiveTuple>[index].fields, tuple_widths, value,
        bytes);
}

} // namespace bench
