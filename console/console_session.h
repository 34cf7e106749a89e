// A console: a session of the shell as a guest in this process, whose output is kept and bounded.
#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <ostream>
#include <streambuf>
#include <string>

#include "console.h"
#include "session.h"
#include "tap_calls.h"

namespace console {

// Keeps what is written, up to a bound; what is beyond it is left out.
class BoundedText : public std::streambuf {
public:
    explicit BoundedText(std::size_t bound) : bound_(bound) {}

    std::string &text() { return text_; }
    bool full() const { return full_; }
    void clear();

protected:
    std::streamsize xsputn(const char *from, std::streamsize size) override;
    int_type overflow(int_type byte) override;

private:
    const std::size_t bound_;
    std::string text_;
    bool full_ = false;
};

// Where a command stands, for messages; at a prompt without a name.
struct Place {
    std::string name = {};
    u64 lines_before = 0;
};

class Console {
public:
    // `step` is called between two steps of a long command; true ends it.
    Console(const ts_console_options &options, std::function<bool()> step);
    ~Console();
    Console(const Console &) = delete;
    Console &operator=(const Console &) = delete;

    // One command at a time; returns its TS_CONSOLE status. output() and messages() live until the next.
    int run(std::string_view command, unsigned form, const Place &place);
    std::string &output() { return output_.text(); }
    std::string &messages() { return messages_.text(); }
    // Ends the command that is being carried out. From any thread.
    void cancel() { cancelled_ = true; }
    std::vector<std::string> complete(std::string_view line);
    std::size_t longest_line() const { return line_bytes_; }

private:
    class AtWork;

    bool carry_out(std::string_view command, const Place &place);
    bool carry_out_own(std::string_view command);
    void expect_going_on();

    const ts_console_options options_;
    const std::size_t line_bytes_, answer_bytes_;
    const std::function<bool()> step_;
    std::mutex mutex_;
    std::atomic<bool> cancelled_ = false;
    Trace trace_;
    BoundedText output_, messages_;
    std::ostream out_{&output_}, err_{&messages_};
    std::optional<shell::Session> session_;
};

} // namespace console
