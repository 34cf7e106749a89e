// Where command lines come from: a file or pipe, or a person at a terminal.
#pragma once

#include <fstream>
#include <istream>
#include <optional>
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

// The lines of a file. A long one shows its progress on `terminal`, unless that is null.
// Throws std::runtime_error when it cannot be opened.
class FileLines : public LineSource {
public:
    FileLines(const std::string &name, std::ostream *terminal);

    bool next(std::string &line) override { return lines_->next(line); }
    void make_room() override { lines_->make_room(); }

private:
    std::ifstream in_;
    std::optional<Progress> progress_;
    std::optional<StreamLines> lines_;
};

// Prompts for each line; with editing, completion and a history that outlasts the session where the shell was
// built with them.
class TerminalLines : public LineSource {
public:
    TerminalLines();
    ~TerminalLines() override;
    bool next(std::string &line) override;
};

} // namespace shell
