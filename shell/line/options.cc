#include "options.h"

#include <array>

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

void expect_taken(bool taken, std::string_view name, const char *what_for)
{
    if (!taken)
        throw BadLine{name, std::string{name} + " does not belong here: it " + what_for};
}

// Those that are taken, by their names.
std::vector<std::string_view> taken(const Options &options)
{
    std::vector<std::string_view> names;
    const auto add = [&](bool takes, std::initializer_list<std::string_view> of) {
        if (takes)
            names.insert(names.end(), of);
    };
    add(options.takes_priority, {"priority"});
    add(options.takes_ttl, {"ttl"});
    add(options.takes_meter, {"meter"});
    add(options.takes_hash, {"hash"});
    add(options.takes_packets, {"packets", "bytes"});
    add(options.takes_scope, {"scope"});
    return names;
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

// False when there is no such option.
bool assign_option(Options &options, std::string_view name, std::string_view value)
{
    if (name == "priority") {
        expect_taken(options.takes_priority, name, "ranks the entries of a table that has a ternary field");
        set_once(options.priority, parse_u32(value, ~u32{0}, name), name);
    } else if (name == "ttl") {
        expect_taken(options.takes_ttl, name,
                     "stands in add, for a table whose entries take a time to live, and in idle ttl");
        set_once(options.ttl, parse_u32(value, ~u32{0}, name), name);
    } else if (name == "meter") {
        expect_taken(options.takes_meter, name, "stands in add and modify, for a table with a direct meter");
        set_once(options.meter, parse_meter(value), name);
    } else if (name == "hash") {
        expect_taken(options.takes_hash, name, "stands in lookup, for a table of an action profile");
        set_once(options.hash, parse_hash(value), name);
    } else if (name == "packets" || name == "bytes") {
        expect_taken(options.takes_packets, name, "stands in lookup");
        set_once(name == "packets" ? options.packets : options.bytes, parse_value(value, 64, name).low, name);
    } else if (name == "scope") {
        expect_taken(options.takes_scope, name, "stands in pvs add, find and show");
        set_once(options.scope, parse_scope(value), name);
    } else {
        return false;
    }
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
        const std::vector<std::string_view> others = taken(options);
        names.insert(names.end(), others.begin(), others.end());
        refuse(name, {record.kind(), owner}, names);
    }
    record.expect_complete(words.peek());
}

} // namespace shell
