// The system services: debug mode, log, memory.
#include "system.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <vector>

#include "bf_sys.h"
#include "model.h"

using namespace model;

namespace {

std::atomic<int> debug_mode = 0;
std::atomic<u64> blocks_given = 0;
std::atomic<u64> blocks_freed = 0;
std::atomic<u32> failing_allocation = 0; // the n-th from now, 0 for none

std::mutex log_mutex;
ts_model_log_fn log_sink = nullptr;
void *log_cookie = nullptr;

void write_log(int module, int level, const char *line)
{
    const std::lock_guard lock{log_mutex};
    if (log_sink != nullptr)
        log_sink(module, level, line, log_cookie);
    else
        std::fprintf(stderr, "%s\n", line);
}

} // namespace

void model::reset_system()
{
    debug_mode = 0;
    blocks_given = 0;
    blocks_freed = 0;
    failing_allocation = 0;
    ts_model_set_log(nullptr, nullptr);
}

extern "C" {

int bf_sys_dbg_mode(void)
{
    return debug_mode;
}

int bf_sys_log_and_trace(int module, int level, const char *format, ...)
{
    va_list measured;
    va_list written;
    va_start(measured, format);
    va_copy(written, measured);
    const int length = std::vsnprintf(nullptr, 0, format, measured);
    va_end(measured);
    if (length >= 0) {
        std::vector<char> line(static_cast<std::size_t>(length) + 1);
        std::vsnprintf(line.data(), line.size(), format, written);
        write_log(module, level, line.data());
    }
    va_end(written);
    return length;
}

void *bf_sys_calloc(size_t count, size_t size)
{
    if (failing_allocation.load() != 0 && --failing_allocation == 0)
        return nullptr;
    void *memory = std::calloc(count, size);
    if (memory != nullptr)
        ++blocks_given;
    return memory;
}

void bf_sys_free(void *memory)
{
    if (memory != nullptr)
        ++blocks_freed;
    std::free(memory);
}

void ts_model_allocations(u64 *given, u64 *freed)
{
    *given = blocks_given;
    *freed = blocks_freed;
}

void ts_model_fail_allocation(u32 n)
{
    failing_allocation = n;
}

void ts_model_set_debug_mode(int on)
{
    debug_mode = on != 0;
}

void ts_model_set_log(ts_model_log_fn sink, void *cookie)
{
    const std::lock_guard lock{log_mutex};
    log_sink = sink;
    log_cookie = cookie;
}

} // extern "C"
