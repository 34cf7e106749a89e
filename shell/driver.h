// What the shell's commands work on: the driver session and device, and the statuses that come back.
#pragma once

#include "pd_types.h"
#include "pipe_mgr_records.h"

namespace shell {

inline constexpr pd_sess_hdl driver_session = 0;
inline constexpr pd_dev_target device{0, PIPE_ALL_PIPES};

// BadLine with the reason when the driver refused.
void expect_success(pd_status status);

} // namespace shell
