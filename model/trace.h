// The trace: one line per driver call, with its arguments by name, its status and its results.
#pragma once

#include <atomic>
#include <mutex>
#include <string>
#include <string_view>

#include "model.h"

namespace model {

class Trace {
public:
    void set(ts_model_trace_fn sink, void *cookie);
    bool on() const { return on_; }
    void send(const std::string &line);

private:
    std::atomic<bool> on_ = false; // spares making lines that nobody wants
    std::mutex mutex_;
    ts_model_trace_fn sink_ = nullptr;
    void *cookie_ = nullptr;
};

Trace &trace();

// Writes the line of one call: its arguments, then status(), then its results.
class Line {
public:
    explicit Line(const char *operation) : text_{std::string{operation} + "("} {}

    Line &number(const char *name, u64 value);
    Line &hex(const char *name, u64 value);
    Line &string(const char *name, const char *value); // quoted; null for a null pointer
    Line &words(const char *name, std::string_view value);
    Line &target(pd_dev_target target);
    Line &table(u32 handle);
    // Null for an object without a known name.
    Line &object(const char *name, u32 handle, const char *object_name);
    Line &action(u32 handle, const char *action_name) { return object("action", handle, action_name); }
    void status(pd_status status);

    const std::string &text() const { return text_; }

private:
    void begin(const char *name);

    std::string text_;
    bool first_ = true;
};

std::string decimal(u64 value);
std::string hexadecimal(u64 value);

// Adds one element to a list.
void append(std::string &list, const char *separator, std::string_view element);

// "[1 2]", "null" for a null pointer.
std::string list_text(const u32 *numbers, u32 count);

// Lower-case hex digits, "-" for no bytes, "null" for a null pointer.
std::string image(const u8 *bytes, u32 count);

} // namespace model
