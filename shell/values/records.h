// The key record of a table and the parameter record of an action, filled from `name=value` words by the
// offsets of their rows.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "rows.h"
#include "values.h"

namespace shell {

// What a key is for: an entry has masks and prefixes, and may leave ternary fields out; a packet has a plain
// value in every field, 0 where none is given, and a message one in every field, all given.
enum class KeyOf { entry, packet, message };

// The name of the MAC address that two neighbours are the halves of; empty when they are none.
std::string_view mac_name(std::string_view first, std::string_view second);

class Record {
public:
    Record(const pd::Table &table, KeyOf use);
    explicit Record(const pd::Action &action);

    // Fills the field called `name`, or the two halves of the MAC address of that name. False when there is
    // no such field; BadLine for a bad value or a field given before.
    bool assign(std::string_view name, std::string_view value);
    // BadLine at `where` when a field is missing, unless it is of a packet.
    void expect_complete(std::string_view where) const;
    // The fields that were not given, by display name; ternary ones, which match anything then, are not among
    // them.
    std::vector<std::string_view> missing() const;

    // Whether a record of the same kind has the same value in every field; masks are not looked at.
    bool has_values_of(const void *record) const;

    // "field" or "parameter"
    const char *kind() const { return kind_; }
    const void *data() const { return storage_.data(); }
    // Of the fields, by display name.
    std::vector<std::string_view> names() const;

private:
    struct Slot {
        std::string_view member;
        std::string_view display;
        u16 offset;
        u16 twin_offset;
        unsigned width;
        pd::Match match;
        bool given = false; // at all
        bool left_out = false;
    };

    struct Operand {
        Value value;
        Value mask;
        unsigned prefix_length = 0;
        bool left_out = false;
    };

    Operand parse(std::string_view text, unsigned width, pd::Match match, std::string_view name) const;
    static Operand parse_value_with_mask(std::string_view text, unsigned width, pd::Match match,
                                         std::string_view name);
    Operand all_zero(std::string_view word, unsigned width, pd::Match match, std::string_view name) const;
    std::vector<std::string_view> names_of(bool (*picked)(const Slot &)) const;
    static bool named(const Slot &slot, std::string_view name);
    static bool may_be_halves(const Slot &first, const Slot &second);
    static bool mac_halves_named(const Slot &first, const Slot &second, std::string_view name);
    void put(Slot &slot, const Operand &operand, std::string_view name);
    std::byte *at(u16 offset);

    std::optional<KeyOf> use_; // none for parameters
    const char *kind_;
    const char *owner_;
    std::string_view member_prefix_; // of the record's members, before the name in the row
    std::vector<Slot> slots_;
    std::vector<u64> storage_; // aligned for every member
};

} // namespace shell
