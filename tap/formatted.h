// The text of a printf-like call, so that it can be handed on: a list of arguments cannot.
#pragma once

#include <cstdarg>
#include <cstdio>

#include "buffer.h"

namespace tap {

class Formatted {
public:
    Formatted(const char *format, va_list arguments)
    {
        va_list again;
        va_copy(again, arguments);
        const int length = std::vsnprintf(nullptr, 0, format, arguments);
        if (length > 0) {
            auto *room = reinterpret_cast<char *>(text_.reserve(length + std::size_t{1}));
            if (!text_.failed())
                std::vsnprintf(room, length + std::size_t{1}, format, again);
            text_.advance(length);
        }
        va_end(again);
        text_.c_str();
    }

    const char *c_str() const { return reinterpret_cast<const char *>(text_.bytes().data()); }

private:
    Buffer text_;
};

} // namespace tap

// Makes `name` the text of the function's own further arguments.
#define TAP_FORMATTED(name, format)                                                                          \
    va_list name##_list;                                                                                     \
    va_start(name##_list, format);                                                                           \
    const tap::Formatted name{format, name##_list};                                                          \
    va_end(name##_list)
