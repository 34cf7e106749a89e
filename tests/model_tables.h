// Tables of the program that the tests of the model write to: one of each kind, with one of its actions.
#pragma once

#include <string>
#include <vector>

#include "pipe_mgr.h"

using Bytes = std::vector<u8>;
using Lines = std::vector<std::string>;

struct Table {
    u32 handle;
    u16 bits; // of the key's image
    u16 bytes;
    u32 action;
    u16 data_bytes;
};

inline constexpr Table exact{0x1000001, 9, 2, 0x20000000, 6};     // ingressPortMapping, setPhase0
inline constexpr Table lpm{0x100003d, 40, 5, 0x200000ae, 4};      // ipv4ShortMaskLpm, setNextHop
inline constexpr Table indirect{0x1000047, 14, 2, 0x200000bd, 5}; // ecmpGroup, setEcmpNextHop
inline constexpr Table metered{0x100005b, 57, 8, 0x200000ec, 0};  // l2LookupMiss, l2LookupBcastHit

inline std::string hex(const Bytes &bytes)
{
    constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (const u8 byte : bytes)
        text.append({digits[byte >> 4], digits[byte & 15]});
    return text;
}

// Gives the profile of `indirect` members 1 to `members`, which run its action, and empty groups 1 to
// `groups`.
inline void fill_profile(u32 members, u32 groups)
{
    u8 data[5]{};
    pipe_action_spec spec{};
    spec.action_data = {40, indirect.data_bytes, data};
    u32 handle = 0;
    for (u32 at = 0; at < members; ++at)
        pipe_mgr_adt_ent_add(1, {0, PIPE_ALL_PIPES}, 0x200001d, indirect.action, 0, &spec, &handle, 0);
    for (u32 at = 0; at < groups; ++at)
        pipe_mgr_sel_grp_add(1, {0, PIPE_ALL_PIPES}, 0x3000001, 0, 8, 0xdeadbeef, &handle, 0);
}
