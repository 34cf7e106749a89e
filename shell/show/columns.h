// A line of text in columns whose widths are known beforehand, so that the first line of a list can be
// printed before the last one is read.
#pragma once

#include <string>
#include <string_view>

namespace shell {

class Columns {
public:
    enum class Aligned { left, right };
    static constexpr std::size_t digits = 10; // of a 32-bit number

    void begin() { line_.clear(); }
    void cell(std::string_view text, std::size_t width, Aligned aligned);
    // The whole line, until the next begin().
    std::string_view end();

private:
    std::string line_;
};

} // namespace shell
