// What the inspection layer has to say of a record, put together slot by slot from the rows and bit by bit
// from the record. Slow on purpose, and without the library's arithmetic.
#pragma once

#include <string>
#include <vector>

#include "rows.h"

namespace formatter {

// One tuple of a key, or one parameter.
struct Slot {
    std::string name; // of the record member; a parameter's without "action_"
    std::string display;
    std::string format;
    u32 offset; // in the record
    u32 width;
    pd::Mask mask;
};

// In the order of the rows.
std::vector<Slot> slots_of(const pd::Table &table);
std::vector<Slot> slots_of(const pd::Action &action);

bool is_partial(const Slot &slot);

std::string key_schema(const pd::Table &table);
std::string action_schema(const pd::Action &action);
std::string table_schema(const pd::Table &table);
std::string profile_schema(const pd::Profile &profile);

std::string key_value(const pd::Table &table, const void *key);
std::string action_value(const pd::Action &action, const void *parameters);

// One line an element; those of an action without its name.
std::vector<std::string> key_lines(const pd::Table &table, int indent, const void *key);
std::vector<std::string> action_lines(const pd::Action &action, int indent, const void *parameters);
std::string joined(const std::vector<std::string> &lines);

// The first difference, "" when there is none.
std::string key_difference(const pd::Table &table, const void *left, const void *right);
std::string action_difference(const pd::Action &action, const void *left, const void *right);

} // namespace formatter
