// A driver that keeps the last table operation it was asked for, everything it pointed at included, and
// answers what the test has chosen; the services for memory are here too. It allocates nothing but what it is
// asked for. Link it in place of a driver; capture_services.h has the rest.
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
    const u32 *result = nullptr;
    std::array<pd_word, 3> words{}; // what no other member is for, in order

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

// What the operations that read answer, failures included. The images go into the caller's buffers.
struct Answer {
    Image value{};
    Image mask{};
    u16 num_bytes = 0;       // of the key
    bool null_value = false; // match_value becomes null
    u32 partition_index = 0;
    u32 priority = 0;
    u32 action = 0;
    u8 action_kind = 1;
    u8 resource_count = 0;
    std::array<u8, 28> data{};
    std::array<pipe_res_spec, 4> resources{};
    std::array<u32, 4> numbers{}; // properties, handles of a walk, counts, or the state of a member
    u32 member = 0;               // what an entry points at
    u32 group = 0;
};
extern Answer answer;
extern const Answer *placement; // what placement data of an entry holds; null for the same

// Driver calls, allocations and frees since the last reset: "pipe_mgr_get_entry bf_sys_calloc bf_sys_free".
std::string steps();

// The last allocation, and how many are there that have not been freed.
struct Allocation {
    std::size_t count = 0;
    std::size_t size = 0;
};
extern Allocation allocation;
extern bool out_of_memory; // bf_sys_calloc gives null
u32 live_allocations();

// No calls; status 0, entry 0, an empty answer, placement data the same. Frees what the library has left
// allocated.
void reset();

// The parts of an action record that tests look at one by one.
pipe_action_spec spec_of(const Call &call);

// "01 ff", and "" for no bytes.
std::string hex(const u8 *bytes, std::size_t size);
std::string hex(const Image &image);

void PrintTo(const Call &call, std::ostream *out);
std::string text(const Call &call);

} // namespace capture
