// A call as a line of text: its arguments by name, its status, and what it gave out.
#pragma once

#include "buffer.h"
#include "operation.h"

namespace tap {

// `result` and `body` are those of a recorded call: what put_arguments() made, then put_results() where
// `has_results`. False for a body that is damaged.
bool write_line(Buffer &line, const OperationRow &operation, u64 result, std::span<const u8> body,
                bool has_results);

} // namespace tap
