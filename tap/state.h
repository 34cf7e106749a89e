// What the tap is set to do, and the order of those who look at it and those who change it: calls come and go
// without a lock, a change waits until none of them is looking and holds back those that come meanwhile.
#pragma once

#include <atomic>
#include <optional>

#include "faults.h"
#include "recorder.h"
#include "tap.h"

namespace tap {

struct State {
    ts_tap_trace_fn sink = nullptr;
    void *cookie = nullptr;
    int trace_file = -1;
    Faults faults;
    std::optional<Recorder> recorder;

    bool traces() const { return sink != nullptr || trace_file >= 0; }
    bool active() const { return traces() || recorder || faults.any(); }

    void end_trace();
    // Errnos. A path's "%p" stands for the process's number.
    int trace_to(const char *path);
    int record_to(const char *path, u64 size);
};

enum class Mode : u8 { unset, off, on, changing };

extern std::atomic<Mode> mode;

// False when there is nothing to do for a call but to hand it on.
inline bool observing()
{
    return mode.load(std::memory_order_relaxed) != Mode::off;
}

// Looks at the state as long as it lives.
class Look {
public:
    Look();
    Look(const Look &) = delete;
    Look &operator=(const Look &) = delete;
    ~Look();

    // Null when the tap is off, and when this very thread is changing it or telling a trace function.
    State *state() const { return state_; }

private:
    static void leave();

    State *state_;
};

// Changes the state as long as it lives.
class Change {
public:
    Change();
    Change(const Change &) = delete;
    Change &operator=(const Change &) = delete;
    ~Change();

    // Null within a Look of this thread: waiting would last forever.
    State *state() const { return state_; }

private:
    State *state_;
};

// What a thread is in the midst of.
struct Thread {
    u32 looks = 0;
    bool changes = false;
    bool tells = false; // a trace function
    u8 depth = 0;       // of calls that are with the driver
    u32 number = 0;     // the system's, 0 until it is asked
};

extern thread_local Thread this_thread;

u32 thread_number();

} // namespace tap
