// The types of the catalogue's rows. The generator writes the rows themselves as constexpr objects of these
// types; hot code reads them while compiling, cold code while running. Whatever follows from a rule (image
// sizes, packed words, the kind of a key) is computed here and stored nowhere.
#pragma once

#include <cstddef>
#include <span>

#include "internal.h"
#include "pd_types.h"

namespace pd {

enum class Match : u8 { exact, ternary, lpm };
enum class Format : u8 { none, v4addr, v6addr, mac, port, vport, dec };

// The bits of a field that take part in matching, for text and comparison only; images follow the width.
struct Mask {
    u64 high; // bits 64 to 127
    u64 low;
};

// One key field.
struct Field {
    const char *name;    // the record member
    const char *display; // the short name that people see
    const char *twin;    // <name>_mask or <name>_prefix_length, where there is one
    u16 offset;          // in the caller's record
    u16 twin_offset;     // of that one
    u8 width;            // bits
    Match match;
    Format format;
    Mask mask;
    bool partition_index; // goes to the partition word; its bytes of the image stay zero
};

// One action parameter.
struct Parameter {
    const char *name; // the record member is action_<name>
    u16 offset;
    u8 width; // bits
    Format format;
    u32 index_of;  // the counter or meter table that it indexes, 0 for none
    bool in_image; // false: its bytes of the image stay zero
};

struct Action {
    const char *name;
    u32 number; // in the action enum
    std::span<const Parameter> parameters;
    u16 record_size; // 0 without parameters
};

// An action as one table or profile uses it.
struct Binding {
    const Action *action;
    u32 handle;
    bool entry;          // entries may use it
    bool default_action; // the table's default may be set to it
};

struct Table {
    const char *name;
    const char *brief;
    u32 handle;
    std::span<const Field> key;
    u16 record_size;                  // 0 for a keyless table
    std::span<const Binding> actions; // by name; empty for an indirect table
    u32 direct_counter;               // handles, 0 for none
    u32 direct_meter;
    // What the assertion of an add without the meter's spec says; null without a meter.
    const char *missing_meter;
    u32 indexed_resource; // reached through the parameter that has its handle in index_of
    bool idle_time;
    bool ttl_on_add;     // the add functions take a time to live
    const char *profile; // the action profile of an indirect table, null elsewhere
};

struct Profile {
    const char *name;
    u32 action_table;
    u32 selector;
    std::span<const Binding> actions; // by name
    pd_word *state;                   // its word of member-selection state
};

// A counter is named by what the driver knows its cells by: its own handle and an index, or the match table
// that it is direct to and an entry.
struct Counter {
    const char *name;
    u32 handle;
    bool direct;
};

struct Meter {
    const char *name;
    u32 handle;
    u32 table; // that it is direct to, 0 for an indexed one
};

// A register or a parser value set.
struct Resource {
    const char *name;
    u32 handle;
};

struct DigestField {
    const char *name;
    u32 offset; // in an entry, whose fields follow each other without gaps
    u32 bytes;
};

struct Digest {
    const char *name;
    u32 handle;
    u32 entry_bytes;
    std::span<const DigestField> fields;
};

// A hash calculation has one input and one algorithm to choose from.
struct Hash {
    const char *name;
    u32 handle;
    u32 input;
    u32 algorithm;
};

// Where the fields of a snapshot record lie whose bytes have an order.
struct SnapshotLayout {
    std::span<const u16> two_bytes;
    std::span<const u16> four_bytes;
};

// ---- What follows from a row ----------------------------------------------------------------------------

constexpr u16 bytes_of(u32 width)
{
    return static_cast<u16>((width + 7) / 8);
}

struct ImageSize {
    u16 bytes;
    u16 bits; // the valid ones
};

// `fields`: the fields of a key or the parameters of an action.
template <typename Fields>
constexpr ImageSize image_size(const Fields &fields)
{
    ImageSize size{};
    for (const auto &field : fields) {
        size.bytes = static_cast<u16>(size.bytes + bytes_of(field.width));
        size.bits = static_cast<u16>(size.bits + field.width);
    }
    return size;
}

// Where the image of element `index` begins.
template <typename Fields>
constexpr u16 image_offset(const Fields &fields, std::size_t index)
{
    return image_size(fields.first(index)).bytes;
}

// A key is ternary or LPM as soon as one of its fields is; the other fields then match exactly.
constexpr Match key_kind(const Table &table)
{
    for (const Field &field : table.key)
        if (field.match != Match::exact)
            return field.match;
    return Match::exact;
}

constexpr bool has_priority(const Table &table)
{
    return key_kind(table) == Match::ternary;
}

// Whether a default action can be set.
constexpr bool has_default_action(std::span<const Binding> actions)
{
    for (const Binding &binding : actions)
        if (binding.default_action)
            return true;
    return false;
}

// Which parameter addresses `resource`; the number of parameters when none does.
constexpr std::size_t index_parameter(const Action &action, u32 resource)
{
    std::size_t index = 0;
    while (index < action.parameters.size() && action.parameters[index].index_of != resource)
        ++index;
    return index;
}

// Of functions that tell a constant and do nothing else.
template <typename Constant>
constexpr Constant constant(Constant value)
{
    return value;
}

} // namespace pd
