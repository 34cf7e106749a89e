// Signals that ask the shell to stop: Ctrl-C (SIGINT) ends a command or cancels a line at the prompt, SIGTERM
// and SIGHUP end the session. They are only noted; whoever works for long asks for them between two steps.
#pragma once

#include <chrono>
#include <csignal>
#include <functional>

namespace shell {

// Thrown where such a signal ends a command or the reading of a line.
struct Interrupted {};

// From now on these signals are noted, unless the process was started to ignore them.
void catch_stop_signals();

// The signal that came and was not forgotten, 0 for none; the end of the session before Ctrl-C.
int stop_signal();
void expect_no_stop_signal(); // throws Interrupted
// Has this thread call `step` there instead, which may throw; null ends that.
void ask_between_steps(const std::function<void()> *step);
// Ctrl-C has done its work. What ends the session stays.
void forget_interrupt();

enum class Awaited { input, stop_signal, other_signal };

// Waits until `fd` can be read, is at its end or fails, or a signal is handled, be it just before.
Awaited await_input(int fd);

// Waits so long. Throws Interrupted when a signal asks to stop.
void wait_for(std::chrono::seconds time);

class IgnoredSignal {
public:
    explicit IgnoredSignal(int signal);
    ~IgnoredSignal();
    IgnoredSignal(const IgnoredSignal &) = delete;
    IgnoredSignal &operator=(const IgnoredSignal &) = delete;

private:
    const int signal_;
    struct sigaction before_ {};
};

} // namespace shell
