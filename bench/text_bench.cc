// What telling of keys and parameters costs: texts of them beside one snprintf for each field, their equality
// beside memcmp, and a schema beside memcpy.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "reflection.h"
#include "text_cases.h"

namespace {

char buffer[4096];

std::size_t next(std::size_t index)
{
    return index + 1 == bench::sample_count ? 0 : index + 1;
}

template <typename Texts>
void write_texts(benchmark::State &state)
{
    std::size_t index = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(Texts::write(index, buffer));
        index = next(index);
    }
}

template <auto key, auto action>
void are_equal(benchmark::State &state)
{
    std::size_t index = 0;
    for (auto _ : state) {
        if (!bench::are_equal(key, index) || !bench::are_equal(action, index))
            state.SkipWithError("equal records differ");
        index = next(index);
    }
}

template <auto key, auto action>
void have_same_bytes(benchmark::State &state)
{
    std::size_t index = 0;
    for (auto _ : state) {
        if (!bench::have_same_bytes(key, index) || !bench::have_same_bytes(action, index))
            state.SkipWithError("equal records differ");
        index = next(index);
    }
}

template <typename Texts>
std::string text(std::size_t index)
{
    return {buffer, Texts::write(index, buffer)};
}

// Registers a case whose two sides write the same texts.
struct Register {
    bool *same;

    template <typename Library, typename HandWritten, auto key_equality, auto action_equality>
    void operator()(const char *table, const char *subject) const
    {
        for (std::size_t index = 0; index < bench::sample_count; ++index)
            if (text<Library>(index) != text<HandWritten>(index)) {
                std::fprintf(stderr, "%s: library and hand-written text differ in sample %zu\n", table,
                             index);
                *same = false;
                return;
            }
        const std::string name = std::string{"/"} + table + "/" + subject;
        benchmark::RegisterBenchmark(("text" + name + "/library").c_str(), write_texts<Library>);
        benchmark::RegisterBenchmark(("text" + name + "/hand-written").c_str(), write_texts<HandWritten>);
        benchmark::RegisterBenchmark(("equal" + name + "/library").c_str(),
                                     are_equal<key_equality, action_equality>);
        benchmark::RegisterBenchmark(("equal" + name + "/memcmp").c_str(),
                                     have_same_bytes<key_equality, action_equality>);
    }
};

// The table with the longest schema.
const reflection::TableFunctions &largest_table()
{
    const auto length = [](const reflection::TableFunctions *table) { return table->text.schema(buffer); };
    return **std::ranges::max_element(reflection::tables(), {}, length);
}

void write_schema(benchmark::State &state)
{
    const auto schema = largest_table().text.schema;
    for (auto _ : state)
        benchmark::DoNotOptimize(schema(buffer));
}

void copy_schema(benchmark::State &state)
{
    std::string text(largest_table().text.schema(buffer) + 1, ' ');
    benchmark::DoNotOptimize(text.data());
    for (auto _ : state) {
        std::memcpy(buffer, text.data(), text.size());
        benchmark::ClobberMemory();
    }
    state.counters["bytes"] = static_cast<double>(text.size());
}

} // namespace

BENCHMARK(write_schema)->Name("schema/library");
BENCHMARK(copy_schema)->Name("schema/memcpy");

int main(int argc, char **argv)
{
    bool same = true;
    bench::for_each_text_case(Register{&same});
    benchmark::Initialize(&argc, argv);
    if (!same || benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
}
