// A session with the switch program: it registers the library with the driver, carries out command lines one
// after the other, and tells about those that are bad.
#pragma once

#include <ostream>
#include <string>
#include <string_view>

#include "lines.h"
#include "words.h"

namespace shell {

struct SessionOptions {
    bool keep_going = false;  // a bad line does not end the session
    bool verbose = false;     // add tells the handle of the new entry
    bool interactive = false; // a person reads along: bad lines are no failure
};

class Session {
public:
    Session(std::ostream &out, std::ostream &err, SessionOptions options);
    ~Session();
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    // Carries out the lines of `source`, which messages call `name`. Returns the exit status.
    int run(LineSource &source, std::string_view name);

    // ---- For commands ----
    std::ostream &out() { return out_; }
    bool verbose() const { return options_.verbose || options_.interactive; }
    void set_trace(bool on);
    void quit() { done_ = true; }

private:
    bool read_command(LineSource &source);
    void execute();
    void show_trace();
    void report(LineSource &source, std::string_view name, const BadLine &error);

    std::ostream &out_;
    std::ostream &err_;
    SessionOptions options_;
    bool done_ = false;
    std::string line_;    // as read
    std::string command_; // without comments; its lines apart when it has several
    u64 lines_read_ = 0;
    u64 first_line_ = 0; // of the command
    u64 bad_lines_ = 0;
    std::string trace_; // of the command
};

} // namespace shell
