// Whether the two sides of the service benchmark do the same work: for every sample the driver is to get the
// same trigger from both, and for a hash the bytes of the five-tuple. This program is its own driver; it
// writes down each call.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "bf_snapshot.h"
#include "bf_sys.h"
#include "pipe_mgr_hash.h"
#include "service_cases.h"

namespace {

std::string last_call;

void append(const u8 *bytes, std::size_t count)
{
    last_call.append(reinterpret_cast<const char *>(bytes), count);
}

std::string trigger(bench::SetTrigger function, u32 snapshot, std::size_t index)
{
    last_call.clear();
    bench::set_trigger(function, snapshot, index);
    return last_call;
}

std::string big_endian(const bench::FiveTuple &tuple)
{
    std::string bytes;
    for (std::size_t i = 0; i < bench::tuple_fields; ++i)
        for (u32 shift = bench::tuple_widths[i]; shift > 0; shift -= 8)
            bytes += static_cast<char>(tuple.fields[i].attr_value >> (shift - 8));
    return bytes;
}

bool is_same(std::size_t index)
{
    for (const u32 snapshot : {bench::layout_a, bench::layout_b})
        if (trigger(p4_pd_tessel_switch_snapshot_capture_trigger_set, snapshot, index) !=
            trigger(hand_written::set_trigger, snapshot, index)) {
            std::fprintf(stderr, "snapshot %u: library and hand-written code differ in sample %zu\n",
                         snapshot, index);
            return false;
        }
    u8 value[4];
    last_call.clear();
    bench::hash(index, value, sizeof value);
    if (last_call == big_endian(bench::samples<bench::FiveTuple>[index]))
        return true;
    std::fprintf(stderr, "hash: the driver does not get the bytes of sample %zu\n", index);
    return false;
}

} // namespace

pd_status bf_snapshot_capture_trigger_set(u32 snapshot, u8 *spec, u8 *mask)
{
    last_call += std::to_string(snapshot);
    append(spec, sizeof(pd_snapshot_phv));
    append(mask, sizeof(pd_snapshot_phv));
    return 0;
}

pd_status pipe_mgr_hash_calc_calculate_hash_value(pd_sess_hdl, u32, u32, u8 *stream, u32 stream_bytes, u8 *,
                                                  u32)
{
    append(stream, stream_bytes);
    return 0;
}

void *bf_sys_calloc(size_t count, size_t size)
{
    return std::calloc(count, size);
}

void bf_sys_free(void *memory)
{
    std::free(memory);
}

int main()
{
    for (std::size_t index = 0; index < bench::sample_count; ++index)
        if (!is_same(index))
            return 1;
}
