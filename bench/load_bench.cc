// What the loader takes for the library with all its symbols bound at once, beside a well-known library of
// similar size. Each load is one of a process of its own, which has everything else loaded before: the driver
// of the one, the C++ runtime of the other.
#include <benchmark/benchmark.h>
#include <dlfcn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "processor_time.h"

namespace {

// Loads the library in a child, which sends the nanoseconds, or says what is wrong; then a negative number.
double time_load(const char *library)
{
    int ends[2];
    double taken = -1;
    if (pipe(ends) != 0)
        return taken;
    const pid_t child = fork();
    if (child == 0) {
        const double begin = bench::processor_time();
        if (dlopen(library, RTLD_NOW))
            taken = bench::processor_time() - begin;
        else
            std::fprintf(stderr, "load_bench: %s\n", dlerror());
        _exit(write(ends[1], &taken, sizeof taken) != sizeof taken);
    }
    close(ends[1]);
    if (child < 0 || read(ends[0], &taken, sizeof taken) != sizeof taken)
        taken = -1;
    close(ends[0]);
    if (child > 0)
        waitpid(child, nullptr, 0);
    return taken;
}

void load(benchmark::State &state, const char *library)
{
    for (auto _ : state)
        state.SetIterationTime(time_load(library) * 1e-9);
}

} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    if (argc < 2) {
        std::fputs("usage: load_bench [--benchmark_...] LIBRARY...\n", stderr);
        return 1;
    }
    for (int i = 1; i < argc; ++i) {
        if (time_load(argv[i]) < 0)
            return 1;
        benchmark::RegisterBenchmark((std::string{"load/"} + argv[i]).c_str(), load, argv[i])
            ->UseManualTime()
            ->Iterations(1);
    }
    benchmark::RunSpecifiedBenchmarks();
}
