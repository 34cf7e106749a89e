// What a client of the console has sent and is to get, and the console that answers it. Knows no socket.
#pragma once

#include "console_session.h"
#include "protocol.h"

namespace console {

class Connection {
public:
    Connection(const ts_console_options &options, std::function<bool()> step);

    // How many bytes it takes at the moment.
    std::size_t room() const;
    void receive(std::string_view bytes);
    // Whether there is something to answer; not before what was answered last is sent.
    bool can_answer() const;
    // Answers the first frame. What is none ends the connection, which the client is told.
    void answer();
    // Takes a request to end the command that is being answered out of what has come.
    bool take_cancel();

    std::string_view unsent() const { return std::string_view{out_}.substr(sent_); }
    void sent(std::size_t bytes);
    // Nothing more is to come of it, once all is sent.
    bool ended() const { return ended_; }

private:
    std::size_t bound() const { return console_.longest_line() + 4096; }
    void answer(const Frame &frame);
    void run(const Request &request);
    void complete(std::string_view line);
    void end(std::string_view why);

    Console console_;
    std::string in_, out_;
    std::size_t sent_ = 0;
    bool ended_ = false;
};

} // namespace console
