// Where save writes to.
#pragma once

#include <string_view>

namespace shell {

class LineSink {
public:
    virtual ~LineSink() = default;
    virtual void write_line(std::string_view line) = 0;
};

} // namespace shell
