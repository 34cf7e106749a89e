// How a record file is laid out: a page that says what it is, then a ring of calls. docs/tap.md tells the
// format; all numbers are little-endian, which is what both ABIs have.
#pragma once

#include <atomic>
#include <cstring>

#include "operation.h"

namespace tap {

inline constexpr char file_magic[8] = {'t', 'e', 's', 's', 'e', 'l', 't', 'p'};
inline constexpr u32 file_version = 1;
inline constexpr u32 file_header_bytes = 4096;

struct FileHeader {
    char magic[8];
    u32 version;
    u32 header_bytes;
    u64 capacity;   // of the ring in bytes
    u64 operations; // fingerprint of the rows that the calls refer to
    u64 monotonic;  // nanoseconds of both clocks when the file was made
    u64 real_time;
    u32 process;
    u32 reserved;
    alignas(8) std::atomic<u64> head;    // bytes that have been given out to calls since the file was made
    alignas(8) std::atomic<u64> dropped; // calls that did not fit
};
static_assert(sizeof(FileHeader) == 72 && std::atomic<u64>::is_always_lock_free);

// A call in the ring: this, then its body, padded with zeros to a multiple of 8 bytes.
struct CallHeader {
    u64 position; // where it begins, counted in bytes since the file was made; written last
    u32 length;   // with this header and the padding
    u32 checksum; // of all but these four bytes
    u64 start;    // nanoseconds of the monotonic clock
    u32 thread;   // the system's number of it
    u16 operation;
    u8 flags;
    u8 depth;     // how many calls of the thread this one lies in, by way of callbacks
    u64 result;   // what the operation returned, 0 for nothing
    u64 duration; // nanoseconds
};
static_assert(sizeof(CallHeader) == 48);

inline constexpr u8 call_refused = 1; // by a fault of the tap: no driver saw it
inline constexpr u8 call_has_results = 2;

// Over 64-bit words; `bytes` is a multiple of 8, and the checksum's own place counts as 0.
inline u32 checksum_of(const u8 *call, std::size_t bytes)
{
    constexpr u64 odd = 0x9e3779b97f4a7c15;
    u64 sum = bytes;
    for (std::size_t at = 0; at < bytes; at += 8) {
        u64 word;
        std::memcpy(&word, call + at, sizeof word);
        if (at == 8)
            word &= 0xffffffff;
        sum = (sum ^ word) * odd;
        sum ^= sum >> 32;
    }
    return static_cast<u32>(sum);
}

// Of the names, kinds and order of all operations and their arguments.
u64 operations_fingerprint();

} // namespace tap
