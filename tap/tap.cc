#include "tap.h"

#include <cerrno>
#include <cstdio>

#include "settings.h"
#include "state.h"

namespace {

// Runs `change` on the state while nobody looks at it.
template <typename Do>
int changed(Do change)
{
    const tap::Change holder;
    return holder.state() != nullptr ? change(*holder.state()) : EDEADLK;
}

} // namespace

const char *ts_tap_version(void)
{
    return PD_VERSION;
}

int ts_tap_trace(ts_tap_trace_fn sink, void *cookie)
{
    return changed([&](tap::State &state) {
        state.end_trace();
        state.sink = sink;
        state.cookie = cookie;
        return 0;
    });
}

int ts_tap_trace_file(const char *path)
{
    return changed([&](tap::State &state) {
        state.end_trace();
        return path != nullptr ? state.trace_to(path) : 0;
    });
}

int ts_tap_record(const char *path, u64 size)
{
    constexpr u64 default_size = u64{64} << 20;
    constexpr u64 least_size = 65536;
    if (size != 0 && size < least_size)
        return EINVAL;
    return changed([&](tap::State &state) {
        state.recorder.reset();
        return path != nullptr ? state.record_to(path, size != 0 ? size : default_size) : 0;
    });
}

int ts_tap_fail(const ts_tap_fault *fault)
{
    return changed([&](tap::State &state) { return state.faults.add(*fault); });
}

int ts_tap_fail_nothing(void)
{
    return changed([](tap::State &state) {
        state.faults.clear();
        return 0;
    });
}

int ts_tap_set(const char *settings, char *error, size_t room)
{
    if (room != 0)
        *error = 0;
    return changed([&](tap::State &state) { return tap::set_all(state, settings, error, room); });
}
