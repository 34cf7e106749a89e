// What every target shares: its entry, and how it takes an input apart. A target is a function that any bytes
// may be handed to; it ends the process where something is wrong.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace fuzz {

// Reads front to back; behind the end there are zeros.
class Bytes {
public:
    Bytes(const std::uint8_t *data, std::size_t size) : left_(reinterpret_cast<const char *>(data), size) {}

    void take_into(void *to, std::size_t size)
    {
        const std::size_t there = std::min(size, left_.size());
        std::memset(to, 0, size);
        std::memcpy(to, left_.data(), there);
        left_.remove_prefix(there);
    }

    template <typename Number = std::uint8_t>
    Number take()
    {
        Number number;
        take_into(&number, sizeof number);
        return number;
    }

    // An element of a list that is not empty.
    template <typename List>
    const auto &pick(const List &list)
    {
        return list[take<std::uint16_t>() % list.size()];
    }

    void skip(std::size_t size) { left_.remove_prefix(std::min(size, left_.size())); }
    std::string_view rest() const { return left_; }

private:
    std::string_view left_;
};

inline void expect(bool holds, const char *what)
{
    if (holds)
        return;
    std::fprintf(stderr, "expected: %s\n", what);
    std::abort();
}

} // namespace fuzz
