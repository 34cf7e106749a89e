// What reading an entry back costs beside the driver: the library, the hand-written code for the same table,
// and the bare driver call with its records prepared, which neither can do without.
#include <benchmark/benchmark.h>

#include <string>

#include "read_cases.h"

namespace {

std::size_t next(std::size_t index)
{
    return index + 1 == bench::sample_count ? 0 : index + 1;
}

template <auto add, auto function>
void read(benchmark::State &state)
{
    bench::keep_samples<add>();
    bench::ResultsOf<function> results;
    std::size_t index = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(bench::get(function, static_cast<pd_entry_hdl>(index), results));
        index = next(index);
    }
}

template <auto add>
void driver_call(benchmark::State &state)
{
    bench::keep_samples<add>();
    bench::Entry buffers{};
    buffers.match.match_value = buffers.value;
    buffers.match.match_mask = buffers.mask;
    buffers.spec.action_data.data = buffers.data;
    std::size_t index = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(pipe_mgr_get_entry(bench::session, 0x1000001, bench::target,
                                                    static_cast<pd_entry_hdl>(index), &buffers.match,
                                                    &buffers.spec, &buffers.action, 0, 1, 0));
        index = next(index);
    }
}

struct Register {
    template <auto add, auto library, auto hand_written>
    void operator()(const char *table, const char *subject) const
    {
        const std::string name = std::string{"read/"} + table + "/" + subject;
        benchmark::RegisterBenchmark((name + "/driver call").c_str(), driver_call<add>);
        benchmark::RegisterBenchmark((name + "/library").c_str(), read<add, library>);
        benchmark::RegisterBenchmark((name + "/hand-written").c_str(), read<add, hand_written>);
    }
};

} // namespace

int main(int argc, char **argv)
{
    bench::for_each_read_case(Register{});
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
}
