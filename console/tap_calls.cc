#include "tap_calls.h"

#include <cerrno>
#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <mutex>
#include <system_error>
#include <unistd.h>

#include "explain.h"
#include "record_reader.h"
#include "signals.h"
#include "words.h"

namespace console {

namespace {

using shell::BadLine;

constexpr u64 record_bytes = u64{8} << 20;

constinit thread_local Trace *current = nullptr;

// What consoles share: there is one tap in a process.
struct Shared {
    std::mutex mutex;
    unsigned traces = 0; // that are on
    bool recording = false;
    std::string record; // the file; empty before the first one

    ~Shared() { remove_record(); }
    void remove_record()
    {
        std::error_code ignored;
        if (!record.empty())
            std::filesystem::remove(record, ignored);
        record.clear();
    }
};

Shared &shared()
{
    static Shared instance;
    return instance;
}

// Null where the process has no tap.
template <typename Function>
Function *in_tap(Function *, const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_DEFAULT, name));
}
#define IN_TAP(function) in_tap(&(function), #function)

void expect_tap()
{
    if (!IN_TAP(ts_tap_trace))
        throw BadLine{{}, "this needs the tap, which is not in this process"};
}

void tell_current(const char *line, void *)
{
    if (!current || !current->tell)
        return;
    const std::size_t size = std::char_traits<char>::length(line);
    if (size > current->room)
        return;
    current->room -= size;
    current->tell(line, current->cookie);
}

bool environment_records()
{
    const char *settings = std::getenv("TESSEL_TAP");
    return settings && std::string_view{settings}.find("record") != std::string_view::npos;
}

} // namespace

Tracing::Tracing(Trace &trace)
{
    current = &trace;
}

Tracing::~Tracing()
{
    current = nullptr;
}

void start_record()
{
    expect_tap();
    Shared &all = shared();
    const std::lock_guard lock{all.mutex};
    if (all.recording || environment_records())
        throw BadLine{{}, "the tap records already"};
    all.remove_record();
    std::string path = (std::filesystem::temp_directory_path() / "tessel-console-XXXXXX").string();
    const int file = mkostemp(path.data(), O_CLOEXEC);
    if (file < 0)
        throw BadLine{{}, path + ": " + std::generic_category().message(errno)};
    close(file);
    all.record = path;
    if (const int error = IN_TAP(ts_tap_record)(path.c_str(), record_bytes)) {
        all.remove_record();
        throw BadLine{{}, path + ": " + std::generic_category().message(error)};
    }
    all.recording = true;
}

void stop_record()
{
    Shared &all = shared();
    const std::lock_guard lock{all.mutex};
    if (!all.recording)
        throw BadLine{{}, "no console records"};
    IN_TAP(ts_tap_record)(nullptr, 0);
    all.recording = false;
}

void explain_record(std::ostream &out)
{
    Shared &all = shared();
    std::string error;
    const auto record = [&] {
        const std::lock_guard lock{all.mutex};
        if (all.record.empty())
            throw BadLine{{}, "nothing was recorded: 'record on' begins"};
        return tap::RecordReader::open(all.record, error);
    }();
    if (!record)
        throw BadLine{{}, error};
    shell::Explainer explainer;
    for (const tap::RecordedCall &call : record->calls()) {
        shell::expect_no_stop_signal();
        if (call.gap_before)
            out << "# calls are lost here\n";
        const std::string command = explainer.command(call);
        out << (command.empty() ? "# " + tap::line_of(call) : command) << '\n';
    }
}

void trace_current(ts_tap_trace_fn tell, void *cookie)
{
    if (tell)
        expect_tap();
    if (!current || (current->tell != nullptr) == (tell != nullptr))
        return;
    Shared &all = shared();
    const std::lock_guard lock{all.mutex};
    current->tell = tell;
    current->cookie = cookie;
    const unsigned before = all.traces;
    all.traces += tell ? 1u : -1u;
    if (before == 0 || all.traces == 0)
        IN_TAP(ts_tap_trace)(tell ? tell_current : nullptr, nullptr);
}

} // namespace console
