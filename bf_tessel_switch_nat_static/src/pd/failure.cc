#include "failure.h"

#undef NDEBUG // assert.h declares __assert_fail in debug builds only, and it is needed in all
#include <assert.h>
#include <execinfo.h>

#include <cstdio>

#include "bf_sys.h"

namespace pd {

namespace {

constexpr int log_module = 0;
constexpr int log_level = 2;
constexpr int backtrace_depth = 128;

// The full name of the function, which need not be kept for the thousands that never fail.
class FunctionName {
public:
    explicit FunctionName(Place place)
    {
        if (place.owner)
            std::snprintf(name, sizeof name, "p4_pd_tessel_switch_%s_%s", place.owner, place.function);
        else
            std::snprintf(name, sizeof name, "%s", place.function);
    }

    const char *get() const { return name; }

private:
    char name[160];
};

void log_backtrace()
{
    void *frames[backtrace_depth];
    const int count = backtrace(frames, backtrace_depth);
    char **lines = backtrace_symbols(frames, count);
    for (int i = 0; lines && i < count; ++i)
        bf_sys_log_and_trace(log_module, log_level, "%s", lines[i]);
    // Not freed: the process is about to end.
}

} // namespace

void fail(const char *condition, Place place, const char *source)
{
    __assert_fail(condition, source, static_cast<unsigned>(place.line), FunctionName(place).get());
}

void report(const char *condition, const char *format, Place place)
{
    if (bf_sys_dbg_mode()) {
        log_backtrace();
        fail(condition, place);
    }
    bf_sys_log_and_trace(log_module, log_level, format, FunctionName(place).get(), place.line);
}

} // namespace pd
