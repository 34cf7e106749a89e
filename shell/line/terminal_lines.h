// Command lines of a person at a terminal.
#pragma once

#include "lines.h"

namespace shell {

using LineCompletion = std::function<std::vector<std::string>(std::string_view line)>;

// Prompts for each line; with editing, completion and a history that outlasts the session where the shell was
// built with them.
class TerminalLines : public LineSource {
public:
    TerminalLines();
    ~TerminalLines() override;
    bool next(std::string &line) override;
    void complete_with(const ObjectNames &names) override;
    // Has `complete` tell what a line's last word can become.
    void complete_by(LineCompletion complete);
};

} // namespace shell
