#include "options.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "meters.h"

namespace shell {

namespace {

template <typename Option>
void set_once(std::optional<Option> &option, const Option &value, std::string_view name)
{
    if (option)
        throw BadLine{name, std::string{name} + " is given twice"};
    option = value;
}

pd_meter_spec parse_meter(std::string_view text)
{
    static constexpr const char *names[] = {"committed rate", "committed burst", "peak rate", "peak burst"};
    std::array<u32, std::size(names)> numbers{};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const std::size_t comma = text.find(',');
        if (comma == std::string_view::npos)
            throw BadLine{text, "meter: too few parts: write meter=CR,CB,PR,PB,TYPE"};
        numbers[i] = parse_u32(text.substr(0, comma), ~u32{0}, names[i]);
        text.remove_prefix(comma + 1);
    }
    return {numbers[0], numbers[1], numbers[2], numbers[3], choose(text, {"meter type"}, meter_types)};
}

FlowHash parse_hash(std::string_view text)
{
    const std::size_t comma = text.find(',');
    FlowHash hash;
    hash.first = parse_u32(text.substr(0, comma), ~u32{0}, "hash");
    if (comma != std::string_view::npos)
        hash.second = parse_u32(text.substr(comma + 1), ~u32{0}, "second word of the hash");
    return hash;
}

ValueSetScope parse_scope(std::string_view text)
{
    const std::size_t first = text.find(',');
    const std::size_t second = text.find(',', first == std::string_view::npos ? first : first + 1);
    if (second == std::string_view::npos)
        throw BadLine{text, "scope: too few parts: write scope=A,B,C"};
    ValueSetScope scope;
    scope.a = parse_u32(text.substr(0, first), ~u32{0}, "first part of the scope");
    scope.b = parse_u32(text.substr(first + 1, second - first - 1), ~u32{0}, "second part of the scope");
    scope.c = static_cast<u8>(parse_u32(text.substr(second + 1), 0xff, "third part of the scope"));
    return scope;
}

struct Option {
    std::string_view name;
    std::string_view value; // as help writes it
    std::string_view use;   // behind "it"
    bool Options::*is_taken;
    void (*assign)(Options &to, std::string_view value, std::string_view name);
    bool (*goes_with)(const pd::Table &table);
};

bool any_table(const pd::Table &)
{
    return true;
}

constexpr Option all_options[] = {
    {"priority", "N", "ranks the entries of a table that has a ternary field", &Options::takes_priority,
     [](Options &to, std::string_view value, std::string_view name) {
         set_once(to.priority, parse_u32(value, ~u32{0}, name), name);
     },
     pd::has_priority},
    {"ttl", "N", "stands in add, for a table whose entries take a time to live, and in idle ttl",
     &Options::takes_ttl,
     [](Options &to, std::string_view value, std::string_view name) {
         set_once(to.ttl, parse_u32(value, ~u32{0}, name), name);
     },
     [](const pd::Table &table) { return table.ttl_on_add; }},
    {"meter", "CR,CB,PR,PB,TYPE", "stands in add and modify, for a table with a direct meter",
     &Options::takes_meter,
     [](Options &to, std::string_view value, std::string_view name) {
         set_once(to.meter, parse_meter(value), name);
     },
     [](const pd::Table &table) { return table.direct_meter != 0; }},
    {"hash", "A,B", "stands in lookup, for a table of an action profile", &Options::takes_hash,
     [](Options &to, std::string_view value, std::string_view name) {
         set_once(to.hash, parse_hash(value), name);
     },
     [](const pd::Table &table) { return table.profile != nullptr; }},
    {"packets", "N", "stands in lookup", &Options::takes_packets,
     [](Options &to, std::string_view value, std::string_view name) {
         set_once(to.packets, parse_value(value, 64, name).low, name);
     },
     any_table},
    {"bytes", "N", "stands in lookup", &Options::takes_packets,
     [](Options &to, std::string_view value, std::string_view name) {
         set_once(to.bytes, parse_value(value, 64, name).low, name);
     },
     any_table},
    {"action", "NAME", "stands in show, for a table whose entries carry their action", &Options::takes_action,
     [](Options &to, std::string_view value, std::string_view name) { set_once(to.action, value, name); },
     [](const pd::Table &table) { return table.profile == nullptr; }},
    {"scope", "A,B,C", "stands in pvs add, find and show", &Options::takes_scope,
     [](Options &to, std::string_view value, std::string_view name) {
         set_once(to.scope, parse_scope(value), name);
     },
     any_table},
};

// False when there is no such option.
bool assign_option(Options &options, std::string_view name, std::string_view value)
{
    const auto option = std::ranges::find(all_options, name, &Option::name);
    if (option == std::end(all_options))
        return false;
    if (!(options.*option->is_taken))
        throw BadLine{name, std::string{name} + " does not belong here: it " + std::string{option->use}};
    option->assign(options, value, name);
    return true;
}

} // namespace

void take_assignments(Words &words, Record &record, const char *owner, Options &options)
{
    while (!words.empty() && words.peek() != ":") {
        const auto [name, value] = take_assignment(words);
        if (record.assign(name, value) || assign_option(options, name, value))
            continue;
        std::vector<std::string_view> names = record.names();
        for (const Option &option : all_options)
            if (options.*option.is_taken)
                names.push_back(option.name);
        refuse(name, {record.kind(), owner}, names);
    }
    record.expect_complete(words.peek());
}

void describe_options(Usage &usage, std::initializer_list<std::string_view> names)
{
    for (const std::string_view name : names) {
        const auto option = std::ranges::find(all_options, name, &Option::name);
        usage.places.push_back({.option = std::string{name} + '=',
                                .value = option->value,
                                .optional = true,
                                .goes_with = option->goes_with});
    }
}

} // namespace shell
