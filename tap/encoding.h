// The bytes of a recorded call: numbers in groups of seven bits, the lowest first, the highest bit set in all
// but the last byte, and raw bytes behind their length. The same for all ABIs.
#pragma once

#include "buffer.h"
#include "operation.h"

namespace tap {

inline void put(Buffer &to, u64 number)
{
    u8 *const begin = to.reserve(10);
    u8 *at = begin;
    for (; number >= 0x80; number >>= 7)
        *at++ = static_cast<u8>(number | 0x80);
    *at++ = static_cast<u8>(number);
    to.advance(at - begin);
}

// Puts the arguments of a call, as far as they are known before it: of what goes out, whether there is a
// place for it, and how much room.
void put_arguments(Buffer &to, const OperationRow &operation, const Value *values);

// Puts what a call that succeeded has given out.
void put_results(Buffer &to, const OperationRow &operation, const Value *values);

// Takes numbers and bytes out again. Behind the end everything is 0 or empty, and ok() tells.
class Cursor {
public:
    explicit Cursor(std::span<const u8> bytes) : rest_{bytes} {}

    bool ok() const { return ok_; }

    u64 number();
    u32 word() { return static_cast<u32>(number()); }
    std::span<const u8> bytes(std::size_t count);
    // A number of things of which each takes a byte at least.
    u32 count();

private:
    std::span<const u8> rest_;
    bool ok_ = true;
};

} // namespace tap
