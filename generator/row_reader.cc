#include "row_reader.h"

#include <limits>

namespace pdgen {

RowReader::RowReader(const toml::table &table, std::string file_name, std::string row_subject,
                     Diagnostics &findings)
    : row(table), file(std::move(file_name)), subject(std::move(row_subject)), diagnostics(findings)
{
}

const toml::node *RowReader::find(const char *key, bool required)
{
    asked.insert(key);
    const toml::node *node = row.get(key);
    if (!node && required)
        diagnostics.add(place(), field(key), "is missing");
    return node;
}

const toml::array *RowReader::find_array(const char *key, bool required)
{
    const toml::node *node = find(key, required);
    const toml::array *array = node ? node->as_array() : nullptr;
    if (node && !array)
        wrong(key, "must be an array");
    return array;
}

void RowReader::wrong(const char *key, const std::string &what)
{
    const toml::node *node = row.get(key);
    diagnostics.add(node ? place_of(*node) : place(), field(key), what);
}

std::string RowReader::text(const char *key)
{
    return find(key, true) ? text_or(key, "") : "";
}

std::string RowReader::text_or(const char *key, const std::string &otherwise)
{
    const toml::node *node = find(key, false);
    if (!node)
        return otherwise;
    const auto value = node->value_exact<std::string>();
    if (!value)
        wrong(key, "must be a string");
    else if (value->empty())
        wrong(key, "must not be empty");
    return value.value_or(otherwise);
}

std::string RowReader::no_choice(const std::string &name, std::span<const char *const> names)
{
    std::string text = "\"" + name + "\" is none of ";
    for (const char *known : names)
        text += std::string(known == names.front() ? "" : known == names.back() ? " and " : ", ") + known;
    return text;
}

std::uint32_t RowReader::number(const char *key)
{
    return find(key, true) ? number_if_any(key).value_or(0) : 0;
}

std::optional<std::uint32_t> RowReader::number_if_any(const char *key)
{
    const toml::node *node = find(key, false);
    if (!node)
        return std::nullopt;
    const auto value = node->value_exact<std::int64_t>();
    if (!value || *value < 0 || *value > std::numeric_limits<std::uint32_t>::max()) {
        wrong(key, "must be an integer of 32 bits, not negative");
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(*value);
}

bool RowReader::flag_or(const char *key, bool otherwise)
{
    const toml::node *node = find(key, false);
    if (!node)
        return otherwise;
    const auto value = node->value_exact<bool>();
    if (!value)
        wrong(key, "must be true or false");
    return value.value_or(otherwise);
}

namespace {

// TOML integers end at 63 bits, so a mask of a wider field is written as a string of hexadecimal digits.
std::optional<Mask128> parse_mask(const std::string &text)
{
    if (!text.starts_with("0x") || text.size() < 3 || text.size() > 34)
        return std::nullopt;
    Mask128 mask;
    for (char c : text.substr(2)) {
        const bool digit = c >= '0' && c <= '9';
        if (!digit && !(c >= 'a' && c <= 'f'))
            return std::nullopt;
        mask.high = mask.high << 4 | mask.low >> 60;
        mask.low = mask.low << 4 | static_cast<unsigned>(digit ? c - '0' : c - 'a' + 10);
    }
    return mask;
}

} // namespace

std::optional<Mask128> RowReader::mask(const char *key)
{
    const toml::node *node = find(key, false);
    if (!node)
        return std::nullopt;
    if (const auto value = node->value_exact<std::int64_t>(); value && *value >= 0)
        return Mask128{0, static_cast<std::uint64_t>(*value)};
    const auto text = node->value_exact<std::string>();
    const auto mask = text ? parse_mask(*text) : std::nullopt;
    if (!mask)
        wrong(key, "must be a positive integer, or a string of hexadecimal digits such as \"0xff00\"");
    return mask;
}

std::vector<std::string> RowReader::texts(const char *key)
{
    const toml::array *array = find_array(key, true);
    if (array && array->empty())
        wrong(key, "must not be empty");
    return array ? texts_or_none(key) : std::vector<std::string>{};
}

std::vector<std::string> RowReader::texts_or_none(const char *key)
{
    std::vector<std::string> texts;
    const toml::array *array = find_array(key, false);
    for (std::size_t i = 0; array && i < array->size(); ++i) {
        const auto value = (*array)[i].value_exact<std::string>();
        texts.push_back(value.value_or(""));
        if (!value)
            diagnostics.add(place_of((*array)[i]), field(key), "must hold strings only");
        else if (value->empty())
            diagnostics.add(place_of((*array)[i]), field(key), "must hold no empty strings");
    }
    return texts;
}

std::vector<unsigned> RowReader::numbers(const char *key)
{
    std::vector<unsigned> numbers;
    const toml::array *array = find_array(key, true);
    for (std::size_t i = 0; array && i < array->size(); ++i) {
        const auto value = (*array)[i].value_exact<std::int64_t>();
        if (value && *value >= 0 && *value <= std::numeric_limits<int>::max())
            numbers.push_back(static_cast<unsigned>(*value));
        else
            diagnostics.add(place_of((*array)[i]), field(key), "must hold integers only, none negative");
    }
    return numbers;
}

void RowReader::report_unknown_keys()
{
    for (const auto &[key, node] : row)
        if (!asked.contains(key.str()))
            diagnostics.add({file, key.source().begin.line}, field(std::string(key.str()).c_str()),
                            "is no known key");
}

} // namespace pdgen
