// The fields of a key record and the parameters of an action as people see them: by display name, the two
// halves of a MAC address as one, with masks and prefixes behind their values.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "forms.h"
#include "json.h"
#include "rows.h"

namespace shell {

struct ShownField {
    struct Place { // in the record
        u16 value;
        u16 twin; // mask or prefix length
    };

    std::string_view name;
    Form form;
    unsigned width;
    pd::Match match;
    Place place;
    Place station; // second half of a MAC address
};

std::vector<ShownField> shown_fields(const pd::Table &table);
std::vector<ShownField> shown_fields(const pd::Action &action);

// Without mask or prefix.
Value value_of(const ShownField &field, const void *record);

// "10.1.0.0/16", "5&0xf", "*" for a ternary field that matches anything.
void append_text(std::string &to, const ShownField &field, const void *record);
std::size_t longest_text(const ShownField &field);
bool matches_anything(const ShownField &field, const void *record);

// A plain value; with a mask or prefix length, an object of both.
void append_json(Json &to, const ShownField &field, const void *record);
// An object of all fields.
void append_json(Json &to, const std::vector<ShownField> &fields, const void *record);
// " name=value" of each field that does not match anything.
void append_assignments(std::string &to, const std::vector<ShownField> &fields, const void *record);
// The same without the first blank.
std::string assignments(const std::vector<ShownField> &fields, const void *record);

} // namespace shell
