// The lines that a session goes through; for the files that make up the session.
#pragma once

#include <string>

#include "session.h"

namespace shell {

// Lines on their way from a source: the command that they make up, and where they stand.
struct Session::Script {
    LineSource &source;
    const std::string name;
    const bool at_prompt;
    std::string line;    // as read
    std::string command; // without comments; its lines apart when it has several
    u64 lines_read = 0;
    u64 first_line = 0; // of the command
    bool whole = false; // all its lines were read

    bool read_command();
};

} // namespace shell
