// The client of a console: tessel-shell --attach.
#pragma once

#include <string>

#include "session.h"

namespace console {

struct AttachOptions {
    std::string path;         // of the socket
    std::string commands;     // that are to be carried out
    std::string file;         // else, if there are none; "-" is standard input
    bool interactive = false; // in place of standard input; at a prompt
    shell::SessionOptions session;
};

// Returns the exit status. Throws std::runtime_error when the console or the file cannot be read.
int attach(const AttachOptions &options);

} // namespace console
