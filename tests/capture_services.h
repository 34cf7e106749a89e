// The services beside the tables, captured: the registry, the member-selection store and the system. Each
// call becomes one line, "<operation> <arguments>"; the answers are the test's.
#pragma once

#include <string>
#include <vector>

#include "bf_drv.h"

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

// Events and log lines go to standard error as well: that is what a death test sees.
extern bool announce;

// Everything empty, all answers 0; states count from 1, the client's handle is 0x77.
void reset();

} // namespace services
