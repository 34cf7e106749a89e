#include "signals.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>

namespace shell {

namespace {

constexpr int stop_signals[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t interrupt = 0;
volatile std::sig_atomic_t end = 0;
constinit thread_local const std::function<void()> *between_steps = nullptr;

void note(int signal)
{
    (signal == SIGINT ? interrupt : end) = signal;
}

} // namespace

void catch_stop_signals()
{
    struct sigaction action {};
    action.sa_handler = note; // without SA_RESTART: what waits for somebody else is to return
    for (const int signal : stop_signals) {
        struct sigaction before {};
        sigaction(signal, nullptr, &before);
        if (before.sa_handler != SIG_IGN)
            sigaction(signal, &action, nullptr);
    }
}

int stop_signal()
{
    return end != 0 ? end : interrupt;
}

void ask_between_steps(const std::function<void()> *step)
{
    between_steps = step;
}

void expect_no_stop_signal()
{
    if (between_steps)
        return (*between_steps)();
    if (stop_signal() != 0)
        throw Interrupted{};
}

void forget_interrupt()
{
    interrupt = 0;
}

namespace {

// What comes first; input where the time is over, too.
Awaited await(pollfd *input, const timespec *time)
{
    sigset_t stopping, before;
    sigemptyset(&stopping);
    for (const int signal : stop_signals)
        sigaddset(&stopping, signal);
    sigprocmask(SIG_BLOCK, &stopping, &before); // so that none comes between the question and the wait
    Awaited awaited = Awaited::stop_signal;
    if (stop_signal() == 0) {
        const bool by_signal = ppoll(input, input ? 1 : 0, time, &before) < 0 && errno == EINTR;
        awaited = !by_signal ? Awaited::input : stop_signal() != 0 ? awaited : Awaited::other_signal;
    }
    sigprocmask(SIG_SETMASK, &before, nullptr);
    return awaited;
}

} // namespace

Awaited await_input(int fd)
{
    pollfd input{fd, POLLIN, 0};
    return await(&input, nullptr);
}

void wait_for(std::chrono::seconds time)
{
    const auto end = std::chrono::steady_clock::now() + time;
    for (Awaited awaited = Awaited::other_signal; awaited == Awaited::other_signal;) {
        expect_no_stop_signal();
        const auto left = std::max(end - std::chrono::steady_clock::now(), std::chrono::nanoseconds{0});
        const auto seconds = std::chrono::floor<std::chrono::seconds>(left);
        const timespec rest{static_cast<time_t>(seconds.count()),
                            static_cast<long>((left - seconds).count())};
        awaited = await(nullptr, &rest);
    }
    expect_no_stop_signal();
}

IgnoredSignal::IgnoredSignal(int signal) : signal_(signal)
{
    struct sigaction ignore {};
    ignore.sa_handler = SIG_IGN;
    sigaction(signal, &ignore, &before_);
}

IgnoredSignal::~IgnoredSignal()
{
    sigaction(signal_, &before_, nullptr);
}

} // namespace shell
