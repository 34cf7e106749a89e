// The name=value words of a command: fields of a record, and options beside them.
#pragma once

#include <initializer_list>
#include <optional>
#include <string_view>

#include "pd_types.h"
#include "records.h"
#include "usage.h"
#include "words.h"

namespace shell {

// The two words by which a group picks a member for a packet.
struct FlowHash {
    u32 first = 0;
    u32 second = 0;
};

// Which part of the parser an entry of a value set is for.
struct ValueSetScope {
    u32 a = 0;
    u32 b = 0;
    u8 c = 0;
};

// The words of a command that name neither field nor parameter; none is taken unless told so.
struct Options {
    bool takes_priority = false;
    bool takes_ttl = false;
    bool takes_meter = false;
    bool takes_hash = false;
    bool takes_packets = false; // and bytes
    bool takes_scope = false;
    bool takes_action = false;

    std::optional<u32> priority;
    std::optional<u32> ttl;
    std::optional<pd_meter_spec> meter;
    std::optional<FlowHash> hash;
    std::optional<u64> packets;
    std::optional<u64> bytes;
    std::optional<ValueSetScope> scope;
    std::optional<std::string_view> action;
};

// Takes words up to a colon or the end, and sees that no field of `record` is missing. A name is a field's
// first, an option's else. `owner` is the table or action that messages name.
void take_assignments(Words &words, Record &record, const char *owner, Options &options);

// Says that these can stand with the last argument.
void describe_options(Usage &usage, std::initializer_list<std::string_view> names);

} // namespace shell
