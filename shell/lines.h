// Where command lines come from: a file or pipe, or a person at a terminal.
#pragma once

#include <istream>
#include <string>

#include "progress.h"

namespace shell {

class LineSource {
public:
    virtual ~LineSource() = default;
    // False at the end. Throws std::runtime_error when reading fails.
    virtual bool next(std::string &line) = 0;
    // Called before a message goes to the terminal.
    virtual void make_room() {}
};

class StreamLines : public LineSource {
public:
    // `progress` may be null.
    explicit StreamLines(std::istream &in, Progress *progress = nullptr) : in_(in), progress_(progress) {}

    bool next(std::string &line) override;
    void make_room() override;

private:
    std::istream &in_;
    Progress *progress_;
};

// Prompts for each line; with editing and history where the shell was built with them.
class TerminalLines : public LineSource {
public:
    bool next(std::string &line) override;
};

} // namespace shell
