// Joins the constant pieces of a schema while compiling.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

namespace pd_tessel {

template <std::size_t... sizes>
constexpr auto join(const char (&...pieces)[sizes])
{
    std::array<char, (sizes + ...) - sizeof...(sizes) + 1> text{};
    auto to = text.begin();
    ((to = std::copy_n(pieces, sizes - 1, to)), ...);
    return text;
}

} // namespace pd_tessel
