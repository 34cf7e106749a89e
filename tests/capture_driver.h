// A driver that keeps the last entry operation it was asked for, everything it pointed at included, and
// answers what the test has chosen. It allocates nothing. Link it in place of a driver; capture_services.h
// has the rest.
#pragma once

#include <array>
#include <ostream>
#include <string>
#include <string_view>

#include "pipe_mgr.h"

namespace capture {

// Bytes that a record pointed at.
struct Image {
    std::array<u8, 64> bytes{};
    u32 size = 0;

    bool operator==(const Image &) const = default;
};

// One call. What an operation has no argument for stays zero.
struct Call {
    std::string_view operation;
    pd_sess_hdl sess = 0;
    u32 device_id = 0;
    u32 pipe_id = 0; // of a target
    u32 table = 0;
    pd_entry_hdl entry = 0;
    u32 action = 0;
    u32 ttl = 0;
    u32 flags = 0;
    const pd_entry_hdl *result = nullptr;

    bool has_match = false;
    Image value{};
    Image mask{};
    u32 partition_index = 0;
    u32 priority = 0;
    u32 packed = 0; // bytes of an image in the high half, valid bits in the low half
    u32 match_reserved = 0;

    bool has_spec = false;
    Image data{};
    bool data_is_null = false;
    std::array<u8, sizeof(pipe_action_spec)> spec{}; // every byte, but for a zeroed data pointer

    bool operator==(const Call &) const = default;
};

extern Call last;
extern u32 calls;

// What the operations answer. `entry` goes through the result pointer, failures included.
extern pd_status status;
extern pd_entry_hdl entry;

// No calls; status 0, entry 0.
void reset();

// The parts of an action record that tests look at one by one.
pipe_action_spec spec_of(const Call &call);

// "01 ff", and "" for no bytes.
std::string hex(const u8 *bytes, std::size_t size);
std::string hex(const Image &image);

void PrintTo(const Call &call, std::ostream *out);

} // namespace capture
