// The commands that tell what the switch program has: tables, describe.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iomanip>

#include "commands.h"
#include "json.h"
#include "verb_arguments.h"

namespace shell {

namespace {

std::string hex(u32 number)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%x", number);
    return text;
}

std::string mask_text(const pd::Field &field)
{
    std::string text;
    append_mask_text(text, {field.mask.high, field.mask.low}, Form::number);
    return text;
}

// The width of the first column of a list whose longest text this is.
template <typename Rows, typename Text>
int column(const Rows &rows, Text text)
{
    std::size_t longest = 0;
    for (const auto &row : rows)
        longest = std::max(longest, std::strlen(text(row)));
    return static_cast<int>(longest) + 2;
}

void describe_key(std::ostream &out, const pd::Table &table)
{
    const int display = column(table.key, [](const pd::Field &field) { return field.display; });
    const int member = column(table.key, [](const pd::Field &field) { return field.name; });
    out << "key:\n";
    for (const pd::Field &field : table.key)
        out << "  " << std::left << std::setw(display) << field.display << std::setw(member) << field.name
            << std::right << std::setw(3) << unsigned{field.width}
            << (field.width == 1 ? " bit   " : " bits  ") << match_name(field.match)
            << (uncompared_bits(field) ? ", mask " + mask_text(field) : "")
            << (field.partition_index ? ", the partition index" : "") << '\n';
}

void describe_actions(std::ostream &out, std::span<const pd::Binding> actions)
{
    const int name = column(actions, [](const pd::Binding &binding) { return binding.action->name; });
    out << "actions:\n";
    for (const pd::Binding &binding : actions) {
        std::string line = "  " + std::string{binding.action->name};
        line.resize(static_cast<std::size_t>(name) + 2, ' ');
        for (const pd::Parameter &parameter : binding.action->parameters)
            line += std::string{parameter.name} + ':' + std::to_string(parameter.width) + ' ';
        if (!binding.entry)
            line += "(default only)";
        else if (binding.default_action)
            line += "(default too)";
        out << line.substr(0, line.find_last_not_of(' ') + 1) << '\n';
    }
}

void describe_resources(std::ostream &out, const pd::Table &table)
{
    if (table.direct_counter)
        out << "direct counter: " << hex(table.direct_counter) << '\n';
    if (table.direct_meter)
        out << "direct meter: " << hex(table.direct_meter) << ", add takes meter=CR,CB,PR,PB,TYPE\n";
    if (table.indexed_resource)
        out << "indexed resource: " << hex(table.indexed_resource) << '\n';
    if (table.idle_time)
        out << "idle time" << (table.ttl_on_add ? ": add takes ttl=N" : "") << '\n';
}

// The members that the table's object has in both commands.
void append_summary(Json &to, const pd::Table &table)
{
    to.key("table").text(table.name).key("brief").text(table.brief).key("handle").number(table.handle);
    to.key("key_kind").text(key_kind_name(table)).key("entries").number(entry_count(table));
    if (table.profile)
        to.key("profile").text(table.profile);
}

void append_key(Json &to, const pd::Table &table)
{
    to.open_array();
    for (const pd::Field &field : table.key) {
        to.open_object().key("field").text(field.display).key("member").text(field.name);
        to.key("width").number(field.width).key("match").text(match_name(field.match));
        if (uncompared_bits(field))
            to.key("mask").text(mask_text(field));
        to.close_object();
    }
    to.close_array();
}

void append_actions(Json &to, std::span<const pd::Binding> actions)
{
    to.open_array();
    for (const pd::Binding &binding : actions) {
        to.open_object().key("action").text(binding.action->name).key("handle").number(binding.handle);
        to.key("entry").flag(binding.entry).key("default").flag(binding.default_action);
        to.key("parameters").open_array();
        for (const pd::Parameter &parameter : binding.action->parameters)
            to.open_object()
                .key("parameter")
                .text(parameter.name)
                .key("width")
                .number(parameter.width)
                .close_object();
        to.close_array().close_object();
    }
    to.close_array();
}

// Only the resources that the table has.
void append_resources(Json &to, const pd::Table &table)
{
    const std::pair<const char *, u32> resources[] = {{"direct_counter", table.direct_counter},
                                                      {"direct_meter", table.direct_meter},
                                                      {"indexed_resource", table.indexed_resource}};
    for (const auto &[name, handle] : resources)
        if (handle)
            to.key(name).number(handle);
    to.key("idle_time").flag(table.idle_time).key("ttl").flag(table.ttl_on_add);
}

std::string summary_json(const pd::Table &table)
{
    std::string line;
    Json json{line};
    json.open_object();
    append_summary(json, table);
    json.close_object();
    return line;
}

std::string description_json(const pd::Table &table)
{
    std::string line;
    Json json{line};
    json.open_object();
    append_summary(json, table);
    json.key("priority").flag(pd::has_priority(table)).key("key");
    append_key(json, table);
    append_actions(json.key("actions"), table.actions);
    append_resources(json, table);
    json.close_object();
    return line;
}

void describe(std::ostream &out, const pd::Table &table)
{
    out << table.name << ": " << table.brief << "\nhandle " << hex(table.handle) << ", "
        << key_kind_name(table) << (pd::has_priority(table) ? " with priority=N" : "")
        << ", entries: " << entry_count(table) << '\n';
    if (!table.key.empty())
        describe_key(out, table);
    if (table.profile)
        out << "entries point at members or groups of the action profile " << table.profile << '\n';
    else
        describe_actions(out, table.actions);
    describe_resources(out, table);
}

void describe(std::ostream &out, const reflection::ProfileFunctions &functions)
{
    const pd::Profile &profile = *functions.row;
    out << profile.name << ": action profile of " << table_of(functions).row->name << "\naction data "
        << hex(profile.action_table) << ", selector " << hex(profile.selector)
        << ", members: " << count_members(functions) << ", groups: " << count_groups(functions) << '\n';
    describe_actions(out, profile.actions);
}

std::string description_json(const reflection::ProfileFunctions &functions)
{
    const pd::Profile &profile = *functions.row;
    std::string line;
    Json json{line};
    json.open_object().key("profile").text(profile.name).key("table").text(table_of(functions).row->name);
    json.key("action_data").number(profile.action_table).key("selector").number(profile.selector);
    json.key("members").number(count_members(functions)).key("groups").number(count_groups(functions));
    append_actions(json.key("actions"), profile.actions);
    json.close_object();
    return line;
}

// `object`: a table or an action profile.
template <typename Object>
void print_description(Session &session, const Object &object)
{
    if (session.json())
        session.print(description_json(object));
    else
        describe(session.out(), object);
}

void tables(Session &session, std::optional<std::string_view> part)
{
    const int name = column(reflection::tables(), [](const auto *table) { return table->row->name; });
    for (const reflection::TableFunctions *functions : reflection::tables()) {
        const pd::Table &table = *functions->row;
        if (std::string_view{table.name}.find(part.value_or("")) == std::string_view::npos)
            continue;
        if (session.json())
            session.print(summary_json(table));
        else
            session.out() << std::left << std::setw(name) << table.name << std::setw(8)
                          << key_kind_name(table) << std::right << std::setw(8) << entry_count(table) << "  "
                          << table.brief << (table.profile ? std::string{" ("} + table.profile + ')' : "")
                          << '\n';
    }
}

void describe_one(Session &session, const arg::TableOrProfile::Value &object)
{
    if (object.profile)
        print_description(session, *object.profile);
    else
        print_description(session, *object.table->row);
}

constexpr Verb tables_verb[] = {
    verb<tables, arg::Optional<arg::Word<"TEXT">>>(
        "tables", "the tables whose name contains TEXT, with key kind and number of entries")
        .reads()};

constexpr Verb describe_verb[] = {
    verb<describe_one, arg::TableOrProfile>(
        "describe", "the key, actions and resources of a table, the actions of a profile")
        .reads()};

} // namespace

const Command tables_command{tables_verb, {}, json_option};
const Command describe_command{describe_verb, {}, json_option};

} // namespace shell
