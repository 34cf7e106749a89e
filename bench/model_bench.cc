// What the model takes for each of many exact entries, from an empty table on, through the library.
#include <benchmark/benchmark.h>

#include "model.h"
#include "pd.h"

namespace {

pd_status add_host(u32 number)
{
    const p4_pd_tessel_switch_ipv4Host_match_spec_t key = {
        .l3Info_vrfId = 1,
        .ingIpv4_dip = number * 2654435761u, // odd, so no two are the same; far apart, as hosts are
    };
    const p4_pd_tessel_switch_setNextHop_action_spec_t action = {.action_nextHop = number};
    pd_entry_hdl entry;
    return p4_pd_tessel_switch_ipv4Host_table_add_with_setNextHop(1, {0, 0xffff}, &key, &action, &entry);
}

bool add_hosts(u32 count)
{
    for (u32 number = 0; number < count; number++)
        if (add_host(number) != TS_MODEL_OK)
            return false;
    return true;
}

void fill_table(benchmark::State &state)
{
    const u32 entries = static_cast<u32>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        ts_model_reset();
        p4_pd_tessel_switch_init();
        state.ResumeTiming();
        if (!add_hosts(entries)) {
            state.SkipWithError("the model refused an entry");
            return;
        }
    }
    state.counters["seconds_per_entry"] = benchmark::Counter(
        entries, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

} // namespace

BENCHMARK(fill_table)->Name("model/fill table")->Arg(10'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
