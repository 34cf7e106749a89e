// What the shell's commands work on: the driver session and device, and the statuses that come back.
#pragma once

#include <array>
#include <string_view>

#include "pd_types.h"
#include "pipe_mgr_records.h"
#include "signals.h"

namespace shell {

// Of the commands that this thread carries out.
inline constinit thread_local pd_sess_hdl driver_session = 0;
inline constinit thread_local pd_dev_target device{0, PIPE_ALL_PIPES};

// Whether this process has the model, and with it the model's control functions.
bool has_model();
// BadLine where the process has none.
void expect_model();

// BadLine with the reason when the driver refused; at `where`, or for the whole line.
void expect_success(pd_status status, std::string_view where = {});

// Visits all handles of a walk, unless it is interrupted. `first(to)` and `next(after, count, to)` read them;
// 0 is the end.
template <typename First, typename Next, typename Visit>
void walk_handles(First first, Next next, Visit visit)
{
    std::array<u32, 256> handles{};
    expect_success(first(handles.data()));
    std::size_t count = 1;
    for (;;) {
        for (std::size_t i = 0; i < count; ++i) {
            if (handles[i] == PD_END_OF_WALK)
                return;
            expect_no_stop_signal();
            visit(handles[i]);
        }
        const u32 last = handles[count - 1];
        count = handles.size();
        handles.fill(PD_END_OF_WALK);
        expect_success(next(last, static_cast<u32>(count), handles.data()));
    }
}

} // namespace shell
