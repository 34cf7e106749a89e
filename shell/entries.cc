// The commands that write and find entries: add, modify, delete, find, count.
#include <iomanip>

#include "commands.h"
#include "driver.h"
#include "options.h"
#include "records.h"
#include "tables.h"

namespace shell {

namespace {

using reflection::ActionFunctions;
using reflection::EntryArguments;
using reflection::TableFunctions;

bool is_handle(std::string_view word)
{
    return !word.empty() && word != ":" && word.find('=') == std::string_view::npos;
}

void expect_no_profile(const pd::Table &table, std::string_view name)
{
    if (table.profile)
        throw BadLine{name, "entries of " + std::string{table.name} + " name members or groups of " +
                                table.profile + ", which this version does not offer"};
}

void expect_priority(const Options &options, const Words &words, const pd::Table &table)
{
    if (options.takes_priority && !options.priority)
        throw BadLine{words.rest(), std::string{table.name} + " has a ternary field: give priority=N"};
}

// The colon, the action and its parameters, with the options that may follow them.
struct ActionPart {
    const ActionFunctions *functions;
    Record parameters;
};

ActionPart take_action_part(Words &words, const TableFunctions &table, Options &options)
{
    if (words.empty())
        throw BadLine{words.rest(), "missing ':' and an action, with blanks around the colon"};
    if (words.peek() != ":")
        throw BadLine{words.peek(), "expected ':' before the action instead of " + quoted(words.peek())};
    words.take();
    const ActionFunctions &functions = take_entry_action(words, table);
    ActionPart part{&functions, Record{*functions.row->action}};
    take_assignments(words, part.parameters, functions.row->action->name, options);
    words.expect_end();
    return part;
}

EntryArguments arguments(const Record *key, const ActionPart *action, const Options &options)
{
    EntryArguments result;
    result.key = key ? key->data() : nullptr;
    result.action = action ? action->parameters.data() : nullptr;
    result.priority = options.priority.value_or(0);
    result.ttl = options.ttl.value_or(0);
    result.meter = options.meter ? &*options.meter : nullptr;
    return result;
}

// The key of an entry, up to the colon or the end.
Record take_key(Words &words, const pd::Table &table, Options &options)
{
    options.takes_priority = pd::has_priority(table);
    Record key{table, KeyOf::entry};
    take_assignments(words, key, table.name, options);
    return key;
}

// The key of an entry with nothing behind it.
Record take_last_key(Words &words, const pd::Table &table, Options &options)
{
    const Record key = take_key(words, table, options);
    words.expect_end();
    expect_priority(options, words, table);
    return key;
}

void modify_by_handle(Words &words, const TableFunctions &table, Options &options)
{
    const pd_entry_hdl entry = parse_u32(words.take(), ~u32{0}, "entry handle");
    const ActionPart action = take_action_part(words, table, options);
    expect_success(action.functions->modify(driver_session, device.device_id, entry,
                                            arguments(nullptr, &action, options)));
}

void modify_by_key(Words &words, const TableFunctions &table, Options &options)
{
    const Record key = take_key(words, *table.row, options);
    const ActionPart action = take_action_part(words, table, options);
    expect_priority(options, words, *table.row);
    expect_success(
        action.functions->modify_by_match_spec(driver_session, device, arguments(&key, &action, options)));
}

void print_count(std::ostream &out, u64 entries, const char *name)
{
    out << std::right << std::setw(8) << entries << "  " << name << '\n';
}

} // namespace

void run_add(Session &session, Words &words)
{
    const std::string_view name = words.peek();
    const TableFunctions &table = take_keyed_table(words);
    expect_no_profile(*table.row, name);
    Options options;
    options.takes_ttl = table.row->ttl_on_add;
    options.takes_meter = table.row->direct_meter != 0;
    const Record key = take_key(words, *table.row, options);
    const ActionPart action = take_action_part(words, table, options);
    expect_priority(options, words, *table.row);
    if (options.takes_meter && !options.meter)
        throw BadLine{words.rest(),
                      std::string{table.row->name} + " has a direct meter: give meter=CR,CB,PR,PB,TYPE"};
    pd_entry_hdl entry = 0;
    expect_success(action.functions->add(driver_session, device, arguments(&key, &action, options), &entry));
    if (session.verbose())
        session.out() << "entry " << entry << '\n';
}

void run_modify(Session &, Words &words)
{
    const std::string_view name = words.peek();
    const TableFunctions &table = take_keyed_table(words);
    expect_no_profile(*table.row, name);
    Options options;
    options.takes_meter = table.row->direct_meter != 0;
    if (is_handle(words.peek()))
        modify_by_handle(words, table, options);
    else
        modify_by_key(words, table, options);
}

void run_delete(Session &, Words &words)
{
    const TableFunctions &table = take_keyed_table(words);
    if (is_handle(words.peek())) {
        const pd_entry_hdl entry = parse_u32(words.take(), ~u32{0}, "entry handle");
        words.expect_end();
        expect_success(table.table_delete(driver_session, device.device_id, entry));
        return;
    }
    Options options;
    const Record key = take_last_key(words, *table.row, options);
    expect_success(
        table.table_delete_by_match_spec(driver_session, device, arguments(&key, nullptr, options)));
}

void run_find(Session &session, Words &words)
{
    const TableFunctions &table = take_keyed_table(words);
    Options options;
    const Record key = take_last_key(words, *table.row, options);
    pd_entry_hdl entry = 0;
    expect_success(
        table.match_spec_to_entry_hdl(driver_session, device, arguments(&key, nullptr, options), &entry));
    session.out() << "entry " << entry << '\n';
}

void run_count(Session &session, Words &words)
{
    if (!words.empty()) {
        const pd::Table &table = *take_table(words).row;
        words.expect_end();
        return print_count(session.out(), entry_count(table), table.name);
    }
    u64 total = 0;
    for (const TableFunctions *table : reflection::tables())
        if (const u32 entries = entry_count(*table->row)) {
            print_count(session.out(), entries, table->row->name);
            total += entries;
        }
    print_count(session.out(), total, "in all");
}

} // namespace shell
