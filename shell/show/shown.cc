#include "shown.h"

#include <algorithm>
#include <bit>

#include "records.h"

namespace shell {

namespace {

constexpr unsigned prefix_length_width = 16;

ShownField shown(const pd::Field &field)
{
    return {field.display, form_of(field.format, field.width), field.width,
            field.match,   {field.offset, field.twin_offset},  {}};
}

ShownField shown(const pd::Parameter &parameter)
{
    return {parameter.name,        form_of(parameter.format, parameter.width),
            parameter.width,       pd::Match::exact,
            {parameter.offset, 0}, {}};
}

// Makes `first` the whole address when the two are its halves; false otherwise.
bool join(ShownField &first, const ShownField &second)
{
    const std::string_view name = mac_name(first.name, second.name);
    if (name.empty() || first.match != second.match || first.width * 2 != mac_width ||
        second.width * 2 != mac_width)
        return false;
    first = {name, Form::mac, mac_width, first.match, first.place, second.place};
    return true;
}

template <typename Rows>
std::vector<ShownField> shown_rows(const Rows &rows)
{
    std::vector<ShownField> fields;
    for (const auto &row : rows) {
        const ShownField field = shown(row);
        if (fields.empty() || !join(fields.back(), field))
            fields.push_back(field);
    }
    return fields;
}

// The member at `place`, or the whole of the two members that hold a MAC address.
Value member(const ShownField &field, u16 ShownField::Place::*place, const void *record)
{
    const auto *members = static_cast<const std::byte *>(record);
    if (field.form != Form::mac)
        return load(field.width, members + field.place.*place);
    constexpr unsigned half = mac_width / 2;
    return {0, load(half, members + field.place.*place).low << half |
                   load(half, members + field.station.*place).low};
}

Value mask_of(const ShownField &field, const void *record)
{
    return member(field, &ShownField::Place::twin, record);
}

u64 prefix_length_of(const ShownField &field, const void *record)
{
    return load(prefix_length_width, static_cast<const std::byte *>(record) + field.place.twin).low;
}

void append_mask(std::string &to, const ShownField &field, Value mask)
{
    const auto bits = static_cast<unsigned>(std::popcount(mask.high) + std::popcount(mask.low));
    if (mask == ones(field.width))
        return;
    if (field.form != Form::number && bits <= field.width && mask == leading_ones(bits, field.width)) {
        to += '/';
        to += std::to_string(bits);
        return;
    }
    to += '&';
    append_mask_text(to, mask, field.form);
}

void append_scalar(Json &to, Value value, Form form)
{
    if (form == Form::number) {
        to.number(value.low);
        return;
    }
    std::string text;
    append_text(text, value, form);
    to.text(text);
}

} // namespace

std::vector<ShownField> shown_fields(const pd::Table &table)
{
    return shown_rows(table.key);
}

std::vector<ShownField> shown_fields(const pd::Action &action)
{
    return shown_rows(action.parameters);
}

Value value_of(const ShownField &field, const void *record)
{
    return member(field, &ShownField::Place::value, record);
}

void append_text(std::string &to, const ShownField &field, const void *record)
{
    if (matches_anything(field, record)) {
        to += '*';
        return;
    }
    append_text(to, value_of(field, record), field.form);
    if (field.match == pd::Match::lpm) {
        to += '/';
        to += std::to_string(prefix_length_of(field, record));
    } else if (field.match == pd::Match::ternary) {
        append_mask(to, field, mask_of(field, record));
    }
}

std::size_t longest_text(const ShownField &field)
{
    const std::size_t value = longest_text(field.form, field.width);
    switch (field.match) {
    case pd::Match::lpm:
        return value + 1 + std::to_string(field.width).size();
    case pd::Match::ternary:
        return value + 1 + longest_mask_text(field.form, field.width);
    default:
        return value;
    }
}

bool matches_anything(const ShownField &field, const void *record)
{
    return field.match == pd::Match::ternary && mask_of(field, record) == Value{};
}

void append_json(Json &to, const ShownField &field, const void *record)
{
    const Value value = value_of(field, record);
    if (field.match == pd::Match::exact)
        return append_scalar(to, value, field.form);
    to.open_object().key("value");
    append_scalar(to, value, field.form);
    if (field.match == pd::Match::lpm) {
        to.key("prefix_length").number(prefix_length_of(field, record));
    } else {
        to.key("mask");
        append_scalar(to, mask_of(field, record), field.form);
    }
    to.close_object();
}

void append_json(Json &to, const std::vector<ShownField> &fields, const void *record)
{
    to.open_object();
    for (const ShownField &field : fields)
        append_json(to.key(field.name), field, record);
    to.close_object();
}

void append_assignments(std::string &to, const std::vector<ShownField> &fields, const void *record)
{
    for (const ShownField &field : fields)
        if (!matches_anything(field, record)) {
            to += ' ';
            to += field.name;
            to += '=';
            append_text(to, field, record);
        }
}

std::string assignments(const std::vector<ShownField> &fields, const void *record)
{
    std::string text;
    append_assignments(text, fields, record);
    return text.substr(text.empty() ? 0 : 1);
}

} // namespace shell
