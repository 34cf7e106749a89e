// A row of bytes that grows. It serves signal handlers too: beyond its first room, memory comes from mmap(),
// not from an allocator that the interrupted code may be in the midst of.
#pragma once

#include <cstddef>
#include <cstring>
#include <span>
#include <string_view>

#include "pd_types.h"

namespace tap {

class Buffer {
public:
    Buffer() = default;
    Buffer(const Buffer &) = delete;
    Buffer &operator=(const Buffer &) = delete;
    ~Buffer();

    // Room for `bytes` more at the end. When memory runs out the buffer is emptied and stays so.
    u8 *reserve(std::size_t bytes)
    {
        if (bytes > room_ - size_)
            grow(bytes);
        return data_ + size_;
    }

    void append(const void *bytes, std::size_t count)
    {
        u8 *to = reserve(count);
        if (!failed_ && count != 0)
            std::memcpy(to, bytes, count);
        advance(count);
    }

    void append(std::string_view text) { append(text.data(), text.size()); }
    void append(char c) { append(&c, 1); }

    // Takes bytes that were written to what reserve() gave.
    void advance(std::size_t bytes) { size_ += failed_ ? 0 : bytes; }

    // Puts `bytes` bytes of 0 to the end.
    void append_zeros(std::size_t bytes)
    {
        std::memset(reserve(bytes), 0, failed_ ? 0 : bytes);
        advance(bytes);
    }

    // Ends the text with a zero, which does not count.
    const char *c_str()
    {
        *reserve(1) = 0;
        return reinterpret_cast<const char *>(data_);
    }

    u8 *data() { return data_; }
    std::size_t size() const { return size_; }
    bool failed() const { return failed_; }
    std::span<const u8> bytes() const { return {data_, size_}; }

private:
    void grow(std::size_t bytes);

    static constexpr std::size_t first_room = 1024;

    u8 *data_ = first_;
    std::size_t size_ = 0;
    std::size_t room_ = first_room;
    bool failed_ = false;
    alignas(8) u8 first_[first_room];
};

} // namespace tap
