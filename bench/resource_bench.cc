// What reading a direct counter costs beside the driver: all of 100,000 in the model, through the library and
// with the same driver calls made bare.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <vector>

#include "model.h"
#include "pd.h"
#include "pipe_mgr_stat.h"
#include "processor_time.h"

namespace {

constexpr pd_sess_hdl session = 1;
constexpr pd_dev_target target = {0, 0xffff};
constexpr u32 entry_count = 100'000;
constexpr u32 table = 0x100006f; // haloCounters

std::vector<pd_entry_hdl> entries(entry_count);

// Each entry's counts are its own.
bool add_counted_entries()
{
    pd_status failures = 0;
    for (u32 number = 0; number < entry_count; ++number) {
        const p4_pd_tessel_switch_haloCounters_match_spec_t key = {.haloResultRow1_bestResult = number};
        failures |=
            p4_pd_tessel_switch_haloCounters_table_add_with_onMiss(session, target, &key, &entries[number]);
        failures |= p4_pd_tessel_switch_counter_write_haloCount(session, target, entries[number],
                                                                {number, u64{number} << 32});
    }
    return failures == 0;
}

// With bit 0 of the flags, a read is two driver calls.
constexpr u8 as_it_stands = 0, brought_up_first = 1;

pd_counter_value through_library(pd_entry_hdl entry, u8 flags)
{
    pd_counter_value value{};
    p4_pd_tessel_switch_counter_read_haloCount(session, target, entry, flags, &value);
    return value;
}

pd_counter_value bare(pd_entry_hdl entry, u8 flags)
{
    pipe_stat_data data{};
    if (flags)
        pipe_mgr_direct_stat_ent_database_sync(session, target, table, entry);
    pipe_mgr_mat_ent_direct_stat_query(session, target.device_id, table, entry, &data);
    return {data.first_count, data.second_count};
}

using Read = pd_counter_value(pd_entry_hdl entry, u8 flags);

// Whether each entry's own counts come back.
bool reads_right(Read *read)
{
    for (u32 number = 0; number < entry_count; ++number)
        for (const u8 flags : {as_it_stands, brought_up_first}) {
            const pd_counter_value value = read(entries[number], flags);
            if (value.first_count != number || value.second_count != u64{number} << 32)
                return false;
        }
    return true;
}

// In nanoseconds, of one read of each.
template <Read *read>
double time_all(u8 flags)
{
    const double begin = bench::processor_time();
    for (const pd_entry_hdl entry : entries)
        benchmark::DoNotOptimize(read(entry, flags));
    return bench::processor_time() - begin;
}

// Both sides in one benchmark, so that whatever slows the machine slows both.
void read_counters(benchmark::State &state, u8 flags)
{
    double library = 0, prepared = 0;
    for (auto _ : state) {
        library += time_all<through_library>(flags);
        prepared += time_all<bare>(flags);
    }
    const double reads = static_cast<double>(state.iterations()) * entry_count;
    state.counters["library_ns"] = library / reads;
    state.counters["bare_ns"] = prepared / reads;
    state.counters["ratio"] = library / prepared;
}

} // namespace

BENCHMARK_CAPTURE(read_counters, as_it_stands, as_it_stands)->Name("counters/as they stand")->Iterations(1);
BENCHMARK_CAPTURE(read_counters, brought_up_first, brought_up_first)
    ->Name("counters/brought up to date first")
    ->Iterations(1);

int main(int argc, char **argv)
{
    p4_pd_tessel_switch_init();
    if (!add_counted_entries() || !reads_right(through_library) || !reads_right(bare)) {
        std::fputs("resource_bench: the counters do not read as they were written\n", stderr);
        return 1;
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
}
