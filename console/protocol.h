// What goes over the socket of a console: frames of one letter, the length of what follows in four bytes, low
// byte first, and so many bytes. docs/console.md lists them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "pd_types.h"

namespace console {

enum class Kind : char {
    // of the client
    run = 'r',
    complete = 'c',
    cancel = 'x',
    // of the server
    hello = 'h',
    output = 'o',
    messages = 'm',
    done = 'd',
    candidates = 'l',
};

inline constexpr std::string_view greeting = "tessel-console 1";
inline constexpr std::size_t frame_head_bytes = 5;

struct Frame {
    Kind kind;
    std::string_view body; // within the bytes that it was found in
};

void append_frame(std::string &to, Kind kind, std::string_view body);

// The frame that `bytes` begin with, unless it is not whole yet.
std::optional<Frame> first_frame(std::string_view bytes);
// Whether `bytes` begin like a frame of more than `bound` bytes.
bool is_too_long(std::string_view bytes, std::size_t bound);

// A command with the place that it has, in the body of a run frame: a byte for the form, four for the lines
// before it, the place's name up to a line end, the command.
struct Request {
    unsigned form = 0;
    u32 lines_before = 0;
    std::string_view name;
    std::string_view command;
};

std::string body_of(const Request &request);
std::optional<Request> request_of(std::string_view body);

} // namespace console
