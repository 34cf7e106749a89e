// The pieces that the line of a call is put together of.
#pragma once

#include <initializer_list>
#include <string_view>

#include "buffer.h"

namespace tap {

class LineText {
public:
    explicit LineText(Buffer &line) : line_{line} {}

    void text(std::string_view words);
    void decimal(u64 number);
    void signed_decimal(u64 number);
    // "0" for zero, else with 0x in front.
    void hexadecimal(u64 number);
    // What comes before a number, and the number in decimal.
    void pair(std::string_view before, u64 number);
    // Two for each byte.
    void digits(const u8 *bytes, std::size_t count);
    // Likewise; "-" for none, "null" for a null pointer.
    void image(const u8 *bytes, std::size_t count);
    // "[1 2 3]"
    void words(std::initializer_list<u32> numbers);

private:
    Buffer &line_;
};

} // namespace tap
