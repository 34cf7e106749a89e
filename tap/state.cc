#include "state.h"

#include <fcntl.h>
#include <pthread.h>
#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>

#include "settings.h"

namespace tap {

std::atomic<Mode> mode = Mode::unset;
thread_local Thread this_thread;

namespace {

// Never destroyed: calls may come as late as from other libraries' ends.
State &the_state()
{
    alignas(State) static unsigned char memory[sizeof(State)];
    static State *const state = new (memory) State;
    return *state;
}

std::atomic<u32> lookers = 0;
std::atomic_flag changer = ATOMIC_FLAG_INIT;

void lock_changes()
{
    while (changer.test_and_set(std::memory_order_acquire))
        sched_yield();
}

void unlock_changes()
{
    changer.clear(std::memory_order_release);
}

void set_from_environment(State &state)
{
    const char *settings = secure_getenv("TESSEL_TAP"); // none in a program with raised rights
    char error[300];
    if (settings != nullptr && set_all(state, settings, error, sizeof error) != 0)
        dprintf(STDERR_FILENO, "libtessel_tap: TESSEL_TAP: %s\n", error);
}

// While a thread looks, a change that has begun goes no further than to wait for it.
bool must_hold_changes()
{
    return this_thread.looks == 0 && !this_thread.changes;
}

void before_fork()
{
    if (must_hold_changes())
        lock_changes();
}

void after_fork_in_parent()
{
    if (must_hold_changes())
        unlock_changes();
}

// A child has one thread: whoever else looked or was about to change is not there any more.
void after_fork_in_child()
{
    this_thread.number = 0;
    if (this_thread.changes)
        return;
    lookers = this_thread.looks != 0 ? 1 : 0;
    if (mode == Mode::changing)
        mode = the_state().active() ? Mode::on : Mode::off;
    unlock_changes();
}

__attribute__((constructor)) void watch_forks()
{
    pthread_atfork(before_fork, after_fork_in_parent, after_fork_in_child);
}

std::string with_process(const char *path)
{
    std::string text = path;
    if (const std::size_t at = text.find("%p"); at != std::string::npos)
        text.replace(at, 2, std::to_string(getpid()));
    return text;
}

} // namespace

u32 thread_number()
{
    if (this_thread.number == 0)
        this_thread.number = static_cast<u32>(syscall(SYS_gettid));
    return this_thread.number;
}

void State::end_trace()
{
    if (trace_file > STDERR_FILENO)
        close(trace_file);
    trace_file = -1;
    sink = nullptr;
}

int State::trace_to(const char *path)
{
    end_trace();
    if (std::strcmp(path, "-") == 0) {
        trace_file = STDERR_FILENO;
        return 0;
    }
    constexpr int how = O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC;
    trace_file = open(with_process(path).c_str(), how, 0600);
    return trace_file < 0 ? errno : 0;
}

int State::record_to(const char *path, u64 size)
{
    recorder.emplace();
    const int error = recorder->open(with_process(path), size);
    if (error != 0)
        recorder.reset();
    return error;
}

// A thread counts as a looker for its outermost look; a signal in between counts for itself.
Look::Look() : state_{nullptr}
{
    while (!this_thread.changes && !this_thread.tells) {
        if (this_thread.looks == 0)
            lookers.fetch_add(1);
        ++this_thread.looks;
        const Mode found = mode.load();
        if (found == Mode::on) {
            state_ = &the_state();
            return;
        }
        leave();
        if (found == Mode::off || this_thread.looks != 0)
            return;
        if (found == Mode::unset)
            const Change first; // sets what the environment says
        else
            sched_yield();
    }
}

Look::~Look()
{
    if (state_ != nullptr)
        leave();
}

void Look::leave()
{
    if (--this_thread.looks == 0)
        lookers.fetch_sub(1);
}

Change::Change() : state_{nullptr}
{
    if (this_thread.looks != 0 || this_thread.changes)
        return;
    this_thread.changes = true;
    lock_changes();
    const bool first = mode.exchange(Mode::changing) == Mode::unset;
    while (lookers != 0)
        sched_yield();
    state_ = &the_state();
    if (first)
        set_from_environment(*state_);
}

Change::~Change()
{
    if (state_ == nullptr)
        return;
    mode = state_->active() ? Mode::on : Mode::off;
    unlock_changes();
    this_thread.changes = false;
}

} // namespace tap
