#include <algorithm>

#include "checker.h"
#include "names.h"

namespace pdgen {

namespace {

// Callers have this much room for a text and its NUL: pd_inspection.h promises it.
constexpr std::size_t text_room = 3290;

// What a label needs, by its kind.
struct LabelForm {
    unsigned width;     // in bits that the field must have; 0 for any
    std::size_t beside; // the characters beside the text, at most
};
constexpr LabelForm label_forms[] = {{0, 12}, {1, 1}, {0, 25}, {32, 20}, {128, 93}, {24, 31}};

const LabelForm &form_of(LabelKind kind)
{
    return label_forms[static_cast<std::size_t>(kind)];
}

// The lengths of what the templates make of the rows.

std::size_t format_length(Format format)
{
    return format == Format::none ? 4 : name_of(format, format_names).size() + 2;
}

std::size_t tuple_length(std::size_t display, std::size_t name, unsigned width, std::size_t mask,
                         std::size_t format)
{
    constexpr std::string_view around = "( '','',,,,None,None),";
    return around.size() + display + name + std::to_string(width).size() + mask + format;
}

std::size_t field_length(const Field &field)
{
    const std::size_t mask = hex(field.mask.value_or(full_mask(field.width))).size();
    const std::size_t display = field.display.size(), name = field.name.size();
    const std::size_t own = tuple_length(display, name, field.width, mask, format_length(field.format));
    if (field.match == Match::ternary)
        return own + tuple_length(display + 4, mask_member(field.name).size(), field.width, mask, 4);
    if (field.match == Match::lpm)
        return own + tuple_length(display + 12, prefix_length_member(field.name).size(), 16, 6, 4);
    return own;
}

std::size_t action_length(const Action &action)
{
    std::size_t length = std::string_view("( (''),())").size() + action.name.size();
    for (const Parameter &parameter : action.parameters)
        length += std::string_view("('',,,None),").size() + parameter.name.size() +
                  format_length(parameter.format) + std::to_string(parameter.width).size();
    return length;
}

std::size_t actions_length(const Catalogue &catalogue, const std::vector<Binding> &bindings)
{
    std::size_t length = 0;
    for (const Binding &binding : bindings)
        if (const Action *action = catalogue.find_action(binding.name))
            length += action_length(*action) + 1;
    return length;
}

std::size_t table_length(const Catalogue &catalogue, const Table &table)
{
    std::size_t key = 2;
    for (const Field &field : table.key)
        key += field_length(field);
    return std::string_view("( ('','mat',(False,)),,())").size() + table.name.size() + key +
           actions_length(catalogue, table.actions);
}

// The longest line that the rows can make.
std::size_t line_length(const Labels &labels)
{
    std::size_t length = 0;
    for (const Label &label : labels.rows) {
        std::size_t longest = label.text.size() + form_of(label.kind).beside;
        for (const LabelName &name : label.names)
            longest = std::max(longest, name.text.size());
        length += longest;
    }
    return length;
}

} // namespace

void Checker::check_schemas()
{
    const auto check = [this](const Place &place, const std::string &owner, std::size_t length) {
        if (length >= text_room)
            wrong(place, owner, "its schema has ", length, " characters, and no text has more than ",
                  text_room - 1);
    };
    for (const Group &group : catalogue.groups)
        for (const Table &table : group.tables)
            check(table.place, table.name, table_length(catalogue, table));
    for (const Profile &profile : catalogue.profiles)
        check(profile.place, profile.name, 2 + actions_length(catalogue, profile.actions));
}

void Checker::check_labels()
{
    std::set<std::string> tables;
    for (const Labels &labels : catalogue.labels) {
        if (labels.table.empty())
            continue; // reported where it was read
        const Table *table = find_table(labels.table);
        if (!table)
            wrong(labels.place, labels.table, "there is no such table");
        if (!tables.insert(labels.table).second)
            wrong(labels.place, labels.table, "has labels already");
        if (line_length(labels) >= text_room)
            wrong(labels.place, labels.table, "a line can have ", line_length(labels),
                  " characters, and no text has more than ", text_room - 1);
        if (table)
            for (const Label &label : labels.rows)
                check_label(*table, label);
    }
}

const Table *Checker::find_table(const std::string &name) const
{
    for (const Group &group : catalogue.groups)
        for (const Table &table : group.tables)
            if (table.name == name)
                return &table;
    return nullptr;
}

void Checker::check_label(const Table &table, const Label &label)
{
    const std::string subject = table.name + "." + label.field;
    if (label.second.empty() == (label.kind == LabelKind::mac))
        wrong(label.place, subject + ".second", "a MAC address has two halves, and nothing else has");
    check_label_field(table, label, label.field, subject);
    if (!label.second.empty())
        check_label_field(table, label, label.second, subject + ".second");
    if (!is_plain(label.text))
        wrong(label.place, subject + ".text", not_plain);
    for (const LabelName &name : label.names)
        if (!is_plain(name.text))
            wrong(label.place, subject + ".names", not_plain);
    if (!label.names.empty() && label.kind != LabelKind::number)
        wrong(label.place, subject + ".names", "only a number has names");
}

void Checker::check_label_field(const Table &table, const Label &label, const std::string &name,
                                const std::string &subject)
{
    const Field *field = table.find_field(name);
    if (!field) {
        wrong(label.place, subject, "the key has no field \"", name, "\"");
        return;
    }
    const unsigned width = form_of(label.kind).width;
    if (width != 0 && width != field->width)
        wrong(label.place, subject, "\"", name_of(label.kind, label_kind_names), "\" needs ", width,
              " bits, not ", field->width);
    const bool always = label.kind == LabelKind::always;
    if ((field->match == Match::ternary) == always)
        wrong(label.place, subject,
              always ? "\"always\" is for a field without a mask" : "the field has no mask");
}

} // namespace pdgen
