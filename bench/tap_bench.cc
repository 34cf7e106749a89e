// What the tap adds to a call: pipe_mgr_mat_ent_add of a driver that does nothing, called bare, through a tap
// that is off, and through one that records or traces.
#include <benchmark/benchmark.h>
#include <dlfcn.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "pipe_mgr_match.h"
#include "tap.h"

namespace {

using Add = decltype(pipe_mgr_mat_ent_add);

// As l2DmacClassify has it.
pd_status add_with(Add *add)
{
    static u8 value[9] = {0, 7, 1, 2, 3, 4, 5, 6, 7}, mask[9] = {}, data[6] = {};
    static pipe_match_spec match{value, mask, 0, 10, 65, 9, 0};
    static pipe_action_spec spec{PIPE_ACTION_DATA, 0, {33, 6, data}, 0, 0, {}};
    pd_entry_hdl entry = 0;
    return add(1, {0, PIPE_ALL_PIPES}, 0x1000009, &match, 0x20000008, &spec, 0, 0, &entry);
}

void run(benchmark::State &state, Add *add, const std::string &settings)
{
    char error[200] = "";
    if (ts_tap_set(settings.c_str(), error, sizeof error) != 0)
        return state.SkipWithError(error);
    for (auto _ : state)
        benchmark::DoNotOptimize(add_with(add));
    ts_tap_set("", error, sizeof error);
}

// Past the tap, which stands before this definition.
Add *bare()
{
    void *driver = dlopen("libbench_operations.so", RTLD_LAZY | RTLD_NOLOAD);
    return driver != nullptr ? reinterpret_cast<Add *>(dlsym(driver, "pipe_mgr_mat_ent_add")) : nullptr;
}

} // namespace

int main(int argc, char **argv)
{
    Add *const driver = bare();
    char folder[] = "/tmp/tap_bench_XXXXXX";
    if (driver == nullptr || mkdtemp(folder) == nullptr) {
        std::fprintf(stderr, "tap_bench: no driver or no folder\n");
        return 1;
    }
    const std::string file = std::string{folder} + "/record";
    benchmark::RegisterBenchmark("bare", run, driver, "");
    benchmark::RegisterBenchmark("off", run, &pipe_mgr_mat_ent_add, "");
    benchmark::RegisterBenchmark("record", run, &pipe_mgr_mat_ent_add, "record:" + file);
    benchmark::RegisterBenchmark("trace", run, &pipe_mgr_mat_ent_add, "trace:/dev/null");
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    unlink(file.c_str());
    rmdir(folder);
}
