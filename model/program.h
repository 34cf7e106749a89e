// What the model has to know of the switch program it stands in for: which objects exist, and what they are
// like. The generator writes the one instance from the catalogue.
#pragma once

#include <span>

#include "pd_types.h"

namespace model {

enum class Key : u8 { none, exact, ternary, lpm };

struct ProgramAction {
    u32 handle;
    u16 bits; // of the data image
    u16 bytes;
    bool entry;
    bool default_action;
};

struct ProgramTable {
    u32 handle;
    Key key;
    u16 key_bits;
    u16 key_bytes;
    std::span<const ProgramAction> actions; // the profile's for an indirect table
    u32 resource;                           // direct or indexed counter or meter, 0 for none
    bool direct_counter;                    // whether that resource is one
    bool direct_meter;                      // likewise
    bool idle_time;                         // its entries age
    u32 action_table;                       // of the profile of an indirect table, 0 for a direct one
    u32 selector;                           // likewise
};

struct ProgramProfile {
    u32 action_table;
    u32 selector;
    std::span<const ProgramAction> actions;
};

// A counter, meter, register or parser value set.
struct ProgramResource {
    u32 handle;
};

struct ProgramDigest {
    u32 handle;
    u16 entry_bytes;
};

struct ProgramHash {
    u32 handle;
    u32 input;
    u32 algorithm;
};

struct Program {
    std::span<const ProgramTable> tables;     // by handle
    std::span<const ProgramProfile> profiles; // in the order of the library's state words
    std::span<const ProgramResource> counters;
    std::span<const ProgramResource> meters;
    std::span<const ProgramResource> registers;
    std::span<const ProgramResource> value_sets;
    std::span<const ProgramDigest> digests;
    std::span<const ProgramHash> hashes;
    u32 snapshot_bytes; // of one stage
};

extern const Program program;

} // namespace model
