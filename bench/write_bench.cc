// What adding an entry costs before the driver begins: the library, the ordinary and the best hand-written
// code for the same table, and the bare driver call, which none can do without.
#include <benchmark/benchmark.h>

#include <string>

#include "pipe_mgr_match.h"
#include "write_cases.h"

namespace {

template <auto function>
void write(benchmark::State &state)
{
    std::size_t index = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(bench::call(function, index));
        index = index + 1 == bench::sample_count ? 0 : index + 1;
    }
}

void driver_call(benchmark::State &state)
{
    pipe_match_spec match = {};
    pipe_action_spec spec = {};
    for (auto _ : state)
        benchmark::DoNotOptimize(pipe_mgr_mat_ent_add(bench::session, bench::target, 0x1000001, &match,
                                                      0x20000000, &spec, 0, 0, &bench::new_entry));
}

struct Register {
    template <auto library, auto hand_written, auto best>
    void operator()(const char *table, const char *subject) const
    {
        const std::string name = std::string{"write/"} + table + "/" + subject;
        benchmark::RegisterBenchmark((name + "/library").c_str(), write<library>);
        benchmark::RegisterBenchmark((name + "/hand-written").c_str(), write<hand_written>);
        benchmark::RegisterBenchmark((name + "/best").c_str(), write<best>);
    }
};

} // namespace

int main(int argc, char **argv)
{
    benchmark::RegisterBenchmark("write/driver call", driver_call);
    bench::for_each_case(Register{});
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
}
