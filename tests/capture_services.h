// The services beside the tables, captured: the registry, the member-selection store and the system. Each
// call becomes one line, "<operation> <arguments>"; the answers are the test's. Members and groups are here
// as well, the driver's side of them included.
#pragma once

#include <string>
#include <vector>

#include "bf_drv.h"
#include "pipe_mgr_restart.h"

namespace services {

struct LogLine {
    int module;
    int level;
    std::string format;
    std::string text;
};

extern std::vector<std::string> events;
extern std::vector<LogLine> log;
extern pd_drv_client_callbacks callbacks; // of the last registration

// The answers.
extern pd_status store_status;      // of the member-selection store
extern pd_status register_status;   // of bf_drv_register
extern pd_status callbacks_status;  // of bf_drv_client_register_callbacks
extern pd_status deregister_status; // of bf_drv_deregister
extern pd_word next_state;          // the next handle of a state; counts up
extern u32 client_handle;
extern bool debug_mode;

// Calls of tables, members, groups and memory become events too; a call of a table as capture::text() has it.
extern bool keep_calls;

// Which of the kept calls fails, from 1, and how; 0 for none. An allocation that fails gives null.
extern std::size_t failing_call;
extern pd_status failing_status;

extern pipe_restore_state_cb restore; // of the last restart

// Events and log lines go to standard error as well: that is what a death test sees.
extern bool announce;

// The line of a call. Targets stand as device and pipe.
inline void append(std::string &line, const std::string &argument)
{
    line.append(" ").append(argument);
}

inline void append(std::string &line, pd_dev_target target)
{
    append(line, std::to_string(target.device_id) + " " + std::to_string(target.pipe_id));
}

inline void append(std::string &line, pd_word number)
{
    append(line, std::to_string(number));
}

template <typename... Arguments>
std::string line(std::string operation, const Arguments &...arguments)
{
    (append(operation, arguments), ...);
    return operation;
}

// Keeps a line as an event.
void record(std::string line);

// What the last kept call answers: `otherwise`, unless it is the failing one.
pd_status answer(pd_status otherwise);

// Everything empty, all answers 0; states count from 1, the client's handle is 0x77.
void reset();

} // namespace services
