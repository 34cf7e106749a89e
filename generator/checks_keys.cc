#include <algorithm>

#include "checker.h"
#include "names.h"

namespace pdgen {

namespace {

// Room for an image of a key where entries are read back.
constexpr unsigned key_room = 64;

bool is_lpm(const Field &field)
{
    return field.match == Match::lpm;
}

// The member beside the field's own, if any.
std::string twin_of(const Field &field)
{
    if (field.match == Match::ternary)
        return mask_member(field.name);
    return is_lpm(field) ? prefix_length_member(field.name) : "";
}

} // namespace

void Checker::check_key(const Table &table)
{
    std::set<std::string> members, displays;
    unsigned bytes = 0;
    for (const Field &field : table.key) {
        const std::string subject = table.name + "." + field.name;
        if (!members.insert(field.name).second)
            wrong(field.place, subject, "this field stands twice");
        if (!displays.insert(field.display).second)
            wrong(field.place, subject + ".display", "\"", field.display, "\" stands twice");
        check_field(field, subject);
        bytes += (std::min(field.width, 128u) + 7) / 8;
    }
    check_twins(table);
    check_kind(table);
    if (bytes > key_room)
        wrong(table.place, table.name + ".key", "its image has ", bytes, " bytes, and there is room for ",
              key_room, " where entries are read back");
}

void Checker::check_field(const Field &field, const std::string &subject)
{
    check_identifier(field.place, subject, field.name);
    check_identifier(field.place, subject + ".display", field.display, false);
    check_field_width(field, subject);
    check_format(subject, field.format, field.width, field.place);
    if (field.mask && *field.mask == Mask128{})
        wrong(field.place, subject + ".mask", "selects no bit");
    if (is_lpm(field) && field.width != 32 && field.width != 128)
        wrong(field.place, subject + ".width", "an lpm field has 32 or 128 bits");
}

// A member of the record, or a function, that belongs to one field cannot be another's.
void Checker::check_twins(const Table &table)
{
    std::map<std::string, std::string> twins, widths;
    for (const Field &field : table.key) {
        if (const std::string twin = twin_of(field); !twin.empty())
            twins.emplace(twin, field.name);
        if (const auto [first, fresh] = widths.emplace(width_name(field.name), field.name);
            !fresh && first->second != field.name)
            wrong(field.place, table.name + "." + field.name, "its width function has the name of that of ",
                  first->second);
    }
    for (const Field &field : table.key)
        if (const auto other = twins.find(field.name); other != twins.end())
            wrong(field.place, table.name + "." + field.name, "is also the name of the ",
                  field.name.ends_with("_mask") ? "mask" : "prefix length", " of ", other->second);
}

// One ternary or lpm field makes the whole key so.
void Checker::check_kind(const Table &table)
{
    const Field *lpm = nullptr;
    bool ternary = false;
    for (const Field &field : table.key) {
        if (is_lpm(field) && lpm)
            wrong(field.place, table.name + "." + field.name + ".match", "a key has one lpm field");
        lpm = is_lpm(field) ? &field : lpm;
        ternary |= field.match == Match::ternary;
    }
    if (lpm && ternary)
        wrong(table.place, table.name + ".key", "has ternary and lpm fields");
    for (const Field &field : table.key)
        if (field.partition_index && (!lpm || &field != &table.key.front() || field.match != Match::exact))
            wrong(field.place, table.name + "." + field.name + ".partition_index",
                  "only the first field of an lpm key may be the partition, and it matches exactly");
}

void Checker::check_field_width(const Field &field, const std::string &subject)
{
    if (field.width != 128 && (field.width < 1 || field.width > 32)) {
        wrong(field.place, subject + ".width", "must be 1 to 32 bits, or 128");
        return;
    }
    const auto [first, fresh] = field_widths.emplace(field.name, std::pair{field.width, field.place});
    if (!fresh && first->second.first != field.width)
        wrong(field.place, subject + ".width", "is ", field.width, " here and ", first->second.first, " in ",
              at(first->second.second));
    const Mask128 full = full_mask(field.width);
    if (field.mask && ((field.mask->high & ~full.high) || (field.mask->low & ~full.low)))
        wrong(field.place, subject + ".mask", "is wider than the field's ", field.width, " bits");
    if (field.mask && *field.mask == full)
        wrong(field.place, subject + ".mask", "selects every bit: leave it out");
}

void Checker::check_record_order(const Table &table)
{
    if (table.record_order.empty())
        return;
    std::vector<std::string> rows;
    for (const Field &field : table.key)
        rows.push_back(field.name);
    if (rows == table.record_order)
        wrong(table.place, table.name + ".record_order", "is the order of the key: leave it out");
    if (!std::is_permutation(rows.begin(), rows.end(), table.record_order.begin(), table.record_order.end()))
        wrong(table.place, table.name + ".record_order", "must name every field of the key once");
}

} // namespace pdgen
