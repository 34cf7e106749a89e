// Command lines of a person at a terminal.
#pragma once

#include "lines.h"

namespace shell {

// Prompts for each line; with editing, completion and a history that outlasts the session where the shell was
// built with them.
class TerminalLines : public LineSource {
public:
    TerminalLines();
    ~TerminalLines() override;
    bool next(std::string &line) override;
    void complete_with(const ObjectNames &names) override;
};

} // namespace shell
