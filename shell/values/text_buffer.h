// Room for the texts that the library writes.
#pragma once

#include <array>
#include <string>

#include "pd_types.h"

namespace shell {

// The text whose length `write(buffer)` returns; empty when it wrote none.
template <typename Write>
std::string text_of(const Write &write)
{
    std::array<char, 4096> buffer; // the longest text, a schema, has 3,289 characters
    const u32 length = write(buffer.data());
    return {buffer.data(), length};
}

} // namespace shell
