// The commands that write and find entries: add, modify, delete, find, count.
#include <algorithm>

#include "commands.h"
#include "driver.h"
#include "entry_body.h"
#include "entry_key.h"
#include "json.h"

namespace shell {

namespace {

using reflection::TableFunctions;

// The key of an entry with nothing behind it.
Record take_last_key(Words &words, const pd::Table &table, Options &options)
{
    Record key = take_key(words, table, options);
    words.expect_end();
    expect_priority(options, words, table);
    return key;
}

void print_entry(Session &session, const TableFunctions &table, pd_entry_hdl entry)
{
    std::string line;
    if (session.json())
        Json{line}.open_object().key("table").text(table.row->name).key("entry").number(entry).close_object();
    else
        line = "entry " + std::to_string(entry);
    session.print(line);
}

// `table` is null for the sum over all.
void print_count(Session &session, const pd::Table *table, u64 entries)
{
    std::string line;
    if (session.json()) {
        Json json{line};
        json.open_object();
        if (table)
            json.key("table").text(table->name);
        json.key("entries").number(entries).close_object();
    } else {
        constexpr std::size_t digits = 8;
        line = std::to_string(entries);
        line.insert(0, digits - std::min(digits, line.size()), ' ');
        line += std::string{"  "} + (table ? table->name : "in all");
    }
    session.print(line);
}

} // namespace

void run_add(Session &session, Words &words)
{
    const TableFunctions &table = take_keyed_table(words);
    Options options;
    options.takes_ttl = table.row->ttl_on_add;
    options.takes_meter = table.row->direct_meter != 0;
    const Record key = take_key(words, *table.row, options);
    const EntryBody body{session, words, table, ActionOf::entry, options};
    expect_priority(options, words, *table.row);
    if (options.takes_meter && !options.meter)
        throw BadLine{words.rest(),
                      std::string{table.row->name} + " has a direct meter: give meter=CR,CB,PR,PB,TYPE"};
    const pd_entry_hdl entry = body.add(key, options);
    if (session.verbose())
        print_entry(session, table, entry);
}

void run_modify(Session &session, Words &words)
{
    const TableFunctions &table = take_keyed_table(words);
    Options options;
    options.takes_meter = table.row->direct_meter != 0;
    if (is_handle(words.peek())) {
        const pd_entry_hdl entry = parse_u32(words.take(), ~u32{0}, "entry handle");
        return EntryBody{session, words, table, ActionOf::entry, options}.modify(entry, options);
    }
    const Record key = take_key(words, *table.row, options);
    const EntryBody body{session, words, table, ActionOf::entry, options};
    expect_priority(options, words, *table.row);
    body.modify(key, options);
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
    expect_success(table.table_delete_by_match_spec(driver_session, device, key_arguments(key, options)));
}

void run_find(Session &session, Words &words)
{
    const TableFunctions &table = take_keyed_table(words);
    Options options;
    const Record key = take_last_key(words, *table.row, options);
    pd_entry_hdl entry = 0;
    expect_success(
        table.match_spec_to_entry_hdl(driver_session, device, key_arguments(key, options), &entry));
    print_entry(session, table, entry);
}

void run_count(Session &session, Words &words)
{
    if (!words.empty()) {
        const pd::Table &table = *take_table(words).row;
        words.expect_end();
        return print_count(session, &table, entry_count(table));
    }
    u64 total = 0;
    for (const TableFunctions *table : reflection::tables())
        if (const u32 entries = entry_count(*table->row)) {
            print_count(session, table->row, entries);
            total += entries;
        }
    print_count(session, nullptr, total);
}

} // namespace shell
