// Where the output of one command goes in place of the session's: to a program, into a file, or a screen at a
// time to a pager.
#pragma once

#include <cstdio>
#include <memory>
#include <optional>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

namespace shell {

// In characters; none where that is not known.
std::optional<std::size_t> width_of_terminal();

// "| PROGRAM", "> FILE" or ">> FILE" at the end of a command.
struct Redirection {
    std::string_view sign;   // "|", ">" or ">>"; empty for none
    std::string_view target; // as it was written
};

// The first such sign that is a word of its own, and all behind it; `command` keeps what is before.
Redirection take_redirection(std::string_view &command);

// What is written to it goes to the program or file. BadLine where that cannot be.
class RedirectedOutput : public std::ostream {
public:
    explicit RedirectedOutput(const Redirection &to);
    ~RedirectedOutput() override;
    // Waits for the program, and sees that everything was written.
    void finish();

private:
    class Buffer;

    const Redirection to_;
    std::unique_ptr<Buffer> buffer_;
};

// What is written to it goes to `out` where it fits the terminal, and to $PAGER, or less, where it does not.
class PagedOutput : public std::ostream {
public:
    explicit PagedOutput(std::ostream &out);
    ~PagedOutput() override;

private:
    class Buffer;

    std::unique_ptr<Buffer> buffer_;
};

} // namespace shell
