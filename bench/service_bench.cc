// What setting the trigger of a snapshot costs beside a swap written by hand, and what the hash of a
// five-tuple costs beside the driver call and the allocation that it cannot do without.
#include <benchmark/benchmark.h>

#include "bf_sys.h"
#include "pipe_mgr_hash.h"
#include "service_cases.h"

namespace {

template <auto function, u32 snapshot>
void set_trigger(benchmark::State &state)
{
    for (auto _ : state) // what is in the records makes no difference
        benchmark::DoNotOptimize(bench::set_trigger(function, snapshot, 0));
}

void hash(benchmark::State &state)
{
    u8 value[4];
    std::size_t index = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(bench::hash(index, value, sizeof value));
        index = index + 1 == bench::sample_count ? 0 : index + 1;
    }
}

void allocation_and_driver_call(benchmark::State &state)
{
    u8 value[4];
    for (auto _ : state) {
        u8 *const stream = static_cast<u8 *>(bf_sys_calloc(bench::tuple_bytes, 1));
        benchmark::DoNotOptimize(pipe_mgr_hash_calc_calculate_hash_value(
            bench::session, bench::target.device_id, bench::tuple_hash, stream, bench::tuple_bytes, value,
            sizeof value));
        bf_sys_free(stream);
    }
}

constexpr auto library = p4_pd_tessel_switch_snapshot_capture_trigger_set;
constexpr auto hand_written_one = hand_written::set_trigger;

} // namespace

BENCHMARK(set_trigger<library, bench::layout_a>)->Name("trigger/A/library");
BENCHMARK(set_trigger<hand_written_one, bench::layout_a>)->Name("trigger/A/hand-written");
BENCHMARK(set_trigger<library, bench::layout_b>)->Name("trigger/B/library");
BENCHMARK(set_trigger<hand_written_one, bench::layout_b>)->Name("trigger/B/hand-written");
BENCHMARK(hash)->Name("hash/library");
BENCHMARK(allocation_and_driver_call)->Name("hash/driver call");

BENCHMARK_MAIN();
