#include "result.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <utility>

namespace shell {

namespace {

// "name:8" taken apart.
int take_width(std::string_view &name)
{
    const std::size_t colon = name.find(':');
    if (colon == std::string_view::npos)
        return 0;
    int width = 0;
    std::from_chars(name.data() + colon + 1, name.data() + name.size(), width);
    name = name.substr(0, colon);
    return width;
}

} // namespace

Result &Result::clear()
{
    document_.clear();
    text_.clear();
    items_.clear();
    if (as_json_)
        json_.open_document();
    return *this;
}

// A value whose text stands from `begin` on.
Result &Result::keep(std::string_view part_of, std::string_view name, std::size_t begin, Value rank,
                     bool ranked)
{
    items_.push_back({part_of, name, begin, text_.size(), rank, ranked, false});
    return *this;
}

Result &Result::keep(std::string_view part_of, const ShownField &field, const void *record)
{
    const std::size_t begin = text_.size();
    append_text(text_, field, record);
    keep(part_of, field.name, begin, value_of(field, record), true);
    items_.back().matches_anything = matches_anything(field, record);
    return *this;
}

Result &Result::number(std::string_view name, u64 value, std::string_view part_of)
{
    return number(name, value, part_of, append_text);
}

Result &Result::hex(std::string_view name, u64 value)
{
    return number(name, value, {}, append_mask_text);
}

Result &Result::number(std::string_view name, u64 value, std::string_view part_of,
                       void (*append)(std::string &to, Value value, Form form))
{
    if (as_json_)
        json_.key(name).number(value);
    if (!keeps_)
        return *this;
    const std::size_t begin = text_.size();
    append(text_, {0, value}, Form::number);
    return keep(part_of, name, begin, {0, value}, true);
}

Result &Result::text(std::string_view name, std::string_view value)
{
    if (as_json_)
        json_.key(name).text(value);
    return shown(name, value);
}

Result &Result::flag(std::string_view name, bool value)
{
    if (as_json_)
        json_.key(name).flag(value);
    return *this;
}

Result &Result::fields(std::string_view name, const std::vector<ShownField> &fields, const void *record)
{
    if (as_json_)
        append_json(json_.key(name), fields, record);
    if (!keeps_)
        return *this;
    for (const ShownField &field : fields)
        keep(name, field, record);
    return *this;
}

Result &Result::field(const ShownField &field, const void *record)
{
    if (as_json_)
        append_json(json_.key(field.name), field, record);
    return keeps_ ? keep({}, field, record) : *this;
}

Result &Result::shown(std::string_view name, std::string_view text)
{
    if (!keeps_)
        return *this;
    const std::size_t begin = text_.size();
    text_ += text;
    return keep({}, name, begin, {}, false);
}

std::string Result::line(std::string_view sentence)
{
    if (as_json_) {
        json_.close_object();
        return document_;
    }
    std::string line;
    std::size_t padding = 0; // behind what is in the line, if more comes
    const auto add = [&](std::string_view text) {
        if (!text.empty())
            line.append(std::exchange(padding, 0), ' ').append(text);
    };
    while (!sentence.empty()) {
        const std::size_t open = std::min(sentence.find('{'), sentence.size());
        const std::string_view before = sentence.substr(0, open);
        add(before);
        sentence.remove_prefix(open);
        if (sentence.empty())
            break;
        std::string_view name = sentence.substr(1, sentence.find('}') - 1);
        sentence.remove_prefix(name.size() + 2);
        const int width = take_width(name);
        const std::string_view text = text_of(name);
        const auto least = static_cast<std::size_t>(std::abs(width));
        const std::size_t missing = least - std::min(least, text.size());
        if (text.empty() && before.ends_with(' '))
            line.pop_back();
        padding += width > 0 ? missing : 0;
        add(text);
        padding += width < 0 ? missing : 0;
    }
    return line;
}

std::string Result::lines(std::string_view heading)
{
    std::string lines = line(heading);
    if (as_json_)
        return lines;
    std::size_t width = 0;
    const auto is_in_heading = [&](const Item &item) {
        return heading.find('{' + std::string{item.name} + '}') != std::string_view::npos;
    };
    for (const Item &item : items_)
        if (!is_in_heading(item))
            width = std::max(width, item.name.size());
    for (const Item &item : items_) {
        if (is_in_heading(item))
            continue;
        lines.append("\n  ").append(item.name).append(width - item.name.size() + 2, ' ');
        lines += text_of(item);
    }
    return lines;
}

const Result::Item *Result::find(std::string_view name, std::string_view part_of) const
{
    for (const Item &item : items_)
        if (item.name == name && (part_of.empty() || item.part_of == part_of))
            return &item;
    return nullptr;
}

std::string_view Result::text_of(const Item &item) const
{
    return std::string_view{text_}.substr(item.begin, item.end - item.begin);
}

std::string_view Result::text_of(std::string_view name)
{
    if (const Item *item = find(name))
        return text_of(*item);
    joined_.clear();
    for (const Item &item : items_) {
        if (item.part_of != name || item.matches_anything)
            continue;
        joined_ += joined_.empty() ? "" : " ";
        joined_.append(item.name).append("=").append(text_of(item));
    }
    return joined_;
}

} // namespace shell
