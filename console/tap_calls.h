// The tap of the process, if it has one: traces of single commands for any number of consoles at once, and a
// record of all calls that they share.
#pragma once

#include <ostream>
#include <string>

#include "tap.h"

namespace console {

// The trace of one console: it tells of the calls that its own commands make, and of those of no other
// thread.
struct Trace {
    ts_tap_trace_fn tell = nullptr; // null while it is off
    void *cookie = nullptr;
    std::size_t room = 0; // bytes of calls that the command may still tell; what is longer is left out
};

// Whose commands this thread carries out while it lives.
class Tracing {
public:
    explicit Tracing(Trace &trace);
    ~Tracing();
    Tracing(const Tracing &) = delete;
    Tracing &operator=(const Tracing &) = delete;
};

// Has the commands of this thread's console traced; null ends that. BadLine without the tap.
void trace_current(ts_tap_trace_fn tell, void *cookie);

// Begins, or ends, the process's record. BadLine without the tap, or when it records already.
void start_record();
void stop_record();
// What was recorded so far, or last, as commands; other calls as comments.
void explain_record(std::ostream &out);

} // namespace console
