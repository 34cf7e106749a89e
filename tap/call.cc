#include "call.h"

#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "encoding.h"
#include "line.h"

namespace tap {

std::atomic<void *> next_definitions[operation_count];

namespace {

u64 now()
{
    timespec time;
    clock_gettime(CLOCK_MONOTONIC, &time);
    return time.tv_sec * u64{1'000'000'000} + time.tv_nsec;
}

// The caller of an operation finds its errno as the driver left it.
class KeepErrno {
public:
    ~KeepErrno() { errno = kept_; }

private:
    int kept_ = errno;
};

} // namespace

void *find_next(unsigned operation)
{
    const char *name = operations()[operation].name;
    void *next = dlsym(RTLD_NEXT, name);
    if (next == nullptr) {
        dprintf(STDERR_FILENO, "libtessel_tap: no driver behind the tap has %s\n", name);
        std::_Exit(127);
    }
    next_definitions[operation].store(next, std::memory_order_release);
    return next;
}

Call::Call(unsigned operation, std::initializer_list<Value> values)
    : operation_{operation}, values_{values.begin()}
{
    const KeepErrno keep;
    const Look look;
    State *const state = look.state();
    if (state == nullptr)
        return;
    if (const ts_tap_fault *fault = state->faults.refuse(operation)) {
        refused_ = true;
        refusal_ = operations()[operation].returns == Returns::status ? fault->status : 0;
    }
    kept_ = state->traces() || state->recorder;
    if (!kept_)
        return;
    bytes_.advance(sizeof(CallHeader));
    put_arguments(bytes_, operations()[operation], values_);
    depth_ = this_thread.depth;
    start_ = now();
}

void Call::enter()
{
    ++this_thread.depth;
}

void Call::leave()
{
    --this_thread.depth;
}

void Call::end(Value result)
{
    if (!kept_)
        return;
    const KeepErrno keep;
    const Look look;
    State *const state = look.state();
    if (state == nullptr)
        return;
    const u64 duration = now() - start_;
    const OperationRow &operation = operations()[operation_];
    const bool has_results = !refused_ && (operation.returns != Returns::status || result.number() == 0);
    if (has_results)
        put_results(bytes_, operation, values_);
    if (state->traces())
        trace(*state, result.number(), has_results);
    if (!state->recorder)
        return;
    const auto flags = static_cast<u8>((refused_ ? call_refused : 0) | (has_results ? call_has_results : 0));
    const CallHeader header{.position = 0,
                            .length = 0,
                            .checksum = 0,
                            .start = start_,
                            .thread = thread_number(),
                            .operation = static_cast<u16>(operation_),
                            .flags = flags,
                            .depth = depth_,
                            .result = result.number(),
                            .duration = duration};
    if (!bytes_.failed())
        std::memcpy(bytes_.data(), &header, sizeof header);
    state->recorder->write(bytes_);
}

void Call::trace(const State &state, u64 result, bool has_results)
{
    Buffer line;
    const auto body = bytes_.failed() ? std::span<const u8>{} : bytes_.bytes().subspan(sizeof(CallHeader));
    write_line(line, operations()[operation_], result, body, has_results);
    if (state.sink != nullptr) {
        this_thread.tells = true;
        state.sink(line.c_str(), state.cookie);
        this_thread.tells = false;
        return;
    }
    line.append('\n');
    std::span<const u8> rest = line.bytes();
    while (!rest.empty()) {
        const ssize_t written = ::write(state.trace_file, rest.data(), rest.size());
        if (written < 0 && errno != EINTR)
            return;
        rest = rest.subspan(std::max<ssize_t>(written, 0));
    }
}

} // namespace tap
