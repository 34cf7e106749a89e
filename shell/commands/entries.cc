// The commands that write and find entries: add, modify, delete, find, count.
#include <algorithm>
#include <utility>
#include <variant>

#include "commands.h"
#include "driver.h"
#include "entry_body.h"
#include "entry_key.h"
#include "inverse.h"
#include "meters.h"
#include "replacement.h"
#include "result.h"
#include "verb_arguments.h"

namespace shell {

namespace {

using reflection::TableFunctions;

// The key of an entry, with the priority that the table may need.
struct WholeKey {
    struct Value {
        Record key;
        Options options;

        reflection::EntryArguments arguments() const { return key_arguments(key, options); }
    };
    static void describe(Usage &usage)
    {
        usage.add({"KEY"});
        describe_options(usage, {"priority"});
    }
    static Value read(Reading &reading)
    {
        Options options;
        Record key = take_key(reading.words, *reading.table->row, options);
        reading.words.expect_end();
        expect_priority(options, reading.words, *reading.table->row);
        return {std::move(key), options};
    }
};

pd_entry_hdl take_handle(Words &words)
{
    return parse_u32(words.take(), ~u32{0}, "entry handle");
}

// An entry by its handle, or by its whole key.
struct EntryOrKey {
    using Value = std::variant<pd_entry_hdl, WholeKey::Value>;
    static void describe(Usage &usage)
    {
        usage.add({"HANDLE", "KEY"});
        describe_options(usage, {"priority"});
    }
    static Value read(Reading &reading)
    {
        if (is_handle(reading.words.peek()))
            return take_handle(reading.words);
        return WholeKey::read(reading);
    }
};

void describe_bodies(Usage &usage)
{
    usage.add({":"});
    usage.bodies = entry_bodies();
}

struct NewEntry {
    struct Value {
        Options options;
        Record key;
        EntryBody body;
    };
    static void describe(Usage &usage)
    {
        usage.add({"KEY"});
        describe_bodies(usage);
        describe_options(usage, {"priority", "ttl", "meter"});
    }
    static Value read(Reading &reading);
};

NewEntry::Value NewEntry::read(Reading &reading)
{
    Words &words = reading.words;
    const pd::Table &table = *reading.table->row;
    Options options;
    options.takes_ttl = table.ttl_on_add;
    options.takes_meter = table.direct_meter != 0;
    Record key = take_key(words, table, options);
    EntryBody body{reading.session, words, *reading.table, ActionOf::entry, options};
    expect_priority(options, words, table);
    if (options.takes_meter && !options.meter)
        throw BadLine{words.rest(),
                      std::string{table.name} + " has a direct meter: give meter=CR,CB,PR,PB,TYPE"};
    return {options, std::move(key), std::move(body)};
}

struct ChangedEntry {
    struct Value {
        Options options;
        std::variant<pd_entry_hdl, Record> entry;
        EntryBody body;
    };
    static void describe(Usage &usage)
    {
        usage.add({"HANDLE", "KEY"});
        describe_bodies(usage);
        describe_options(usage, {"priority", "meter"});
    }
    static Value read(Reading &reading);
};

ChangedEntry::Value ChangedEntry::read(Reading &reading)
{
    Words &words = reading.words;
    const TableFunctions &table = *reading.table;
    Options options;
    options.takes_meter = table.row->direct_meter != 0;
    std::variant<pd_entry_hdl, Record> entry;
    if (is_handle(words.peek()))
        entry = take_handle(words);
    else
        entry = take_key(words, *table.row, options);
    EntryBody body{reading.session, words, table, ActionOf::entry, options};
    expect_priority(options, words, *table.row);
    return {options, std::move(entry), std::move(body)};
}

void print_entry(Session &session, const TableFunctions &table, pd_entry_hdl entry)
{
    Result result{session.json()};
    result.text("table", table.row->name).number("entry", entry);
    session.print(result.line("entry {entry}"));
}

// `table` is null for the sum over all.
void print_count(Session &session, const pd::Table *table, u64 entries)
{
    Result result{session.json()};
    if (table)
        result.text("table", table->name);
    result.number("entries", entries);
    session.print(result.line(table ? "{entries:8}  {table}" : "{entries:8}  in all"));
}

void add(Session &session, const TableFunctions &table, const NewEntry::Value &given)
{
    const pd_entry_hdl entry = given.body.add(given.key, given.options);
    session.keep_change(
        [&] { return std::string{"delete "} + table.row->name + ' ' + std::to_string(entry); });
    if (session.verbose())
        print_entry(session, table, entry);
}

u32 time_to_live(const TableFunctions &table, pd_entry_hdl entry)
{
    u32 ttl = 0;
    expect_success(table.idle->get_ttl(driver_session, device.device_id, entry, &ttl));
    return ttl;
}

// In a file that tells a state: such an entry there shall be.
void tell(Session &session, const TableFunctions &table, const NewEntry::Value &given)
{
    using enum Replacement::Change;
    Replacement &state = session.replacement();
    EntryReader &reader = state.cover(table);
    const pd_entry_hdl entry = find_entry_if_any(table, key_arguments(given.key, given.options));
    const bool has_ttl = table.row->ttl_on_add;
    const u32 ttl = given.options.ttl.value_or(0);
    if (!state.is_planning()) {
        if (state.change() == add_it)
            return add(session, table, given);
        given.body.modify(entry, given.options);
        if (has_ttl)
            expect_success(table.idle->set_ttl(driver_session, device.device_id, entry, ttl));
        return;
    }
    if (entry == 0)
        return state.plan(add_it);
    state.keep(table, entry);
    reader.read(entry);
    const bool same =
        given.body.is_of(reader) &&
        (!given.options.meter || meter_option(*given.options.meter) == meter_option(table, entry)) &&
        (!has_ttl || ttl == time_to_live(table, entry));
    state.plan(same ? none : modify_it, [&] { return reader.body_text(); });
}

void modify(Session &session, const TableFunctions &table, const ChangedEntry::Value &given)
{
    std::string back;
    if (session.keeps_changes()) {
        const auto *handle = std::get_if<pd_entry_hdl>(&given.entry);
        back = modify_back(
            session, table,
            handle ? *handle
                   : find_entry(table, key_arguments(std::get<Record>(given.entry), given.options)));
    }
    std::visit([&](const auto &entry) { given.body.modify(entry, given.options); }, given.entry);
    session.keep_change([&] { return back; });
}

void remove(Session &, const TableFunctions &table, const EntryOrKey::Value &entry)
{
    if (const auto *handle = std::get_if<pd_entry_hdl>(&entry))
        expect_success(table.table_delete(driver_session, device.device_id, *handle));
    else
        expect_success(table.table_delete_by_match_spec(driver_session, device,
                                                        std::get<WholeKey::Value>(entry).arguments()));
}

void find(Session &session, const TableFunctions &table, const WholeKey::Value &key)
{
    print_entry(session, table, find_entry(table, key.arguments()));
}

struct CountedTable : arg::Table {
    using Value = const pd::Table *;
    static Value read(Reading &reading) { return arg::Table::read(reading).row; }
};

void count(Session &session, std::optional<const pd::Table *> table)
{
    if (table)
        return print_count(session, *table, entry_count(**table));
    u64 total = 0;
    for (const TableFunctions *each : reflection::tables())
        if (const u32 entries = entry_count(*each->row)) {
            print_count(session, each->row, entries);
            total += entries;
        }
    print_count(session, nullptr, total);
}

constexpr std::string_view add_text =
    R"(  Every parameter of ACTION is given as name=value. priority=N stands with the key or at the end.
  ttl=N gives a time to live, for tables that take one (0 without it).
  meter=CR,CB,PR,PB,TYPE is required for a table with a direct meter: committed rate and burst, peak
  rate and burst, and the type: aware or unaware of the colour that a packet brings along.
  In a table of an action profile, 'member M' or 'group G' stands behind the colon, by handle or name.
  'help find' tells how a KEY is written. The handle is printed with --verbose and at the prompt.
)";

constexpr std::string_view modify_text =
    R"(  HANDLE is the number that add printed; or the key says which entry is meant. Parameters as for add.
  Without meter=, an entry with a direct meter keeps its meter.
)";

constexpr std::string_view find_text =
    R"(  KEY is one name=value for each field, by display name (dmacOui) or member name (outerEthHdr_dmacOui).
  Values: decimal, 0x hex, dotted IPv4 (32 bits), IPv6 (128 bits). A MAC address may be given whole where
  its two halves stand side by side: dmac=00:11:22:33:44:55 for dmacOui and dmacStation.
  LPM field: value/length; the whole width without a length. Ternary field: value&mask or value/length;
  all bits without a mask, any value when left out. 'any' is the mask 0 or the prefix 0/0; 'default' is the
  value 0, in an LPM field 0/0.
  priority=N is required where the key has a ternary field; the lowest number wins.
)";

constexpr Verb add_verb[] = {verb<add, arg::KeyedTable, NewEntry>("add", "adds an entry")
                                 .can_be_taken_back()
                                 .tells_state(state<tell, arg::KeyedTable, NewEntry>)};
constexpr Verb modify_verb[] = {
    verb<modify, arg::KeyedTable, ChangedEntry>("modify", "gives an entry another action, member or group")
        .can_be_taken_back()};
constexpr Verb delete_verb[] = {verb<remove, arg::KeyedTable, EntryOrKey>("delete", "deletes an entry")};
constexpr Verb find_verb[] = {
    verb<find, arg::KeyedTable, WholeKey>("find", "prints the handle of the entry with this key").reads()};
constexpr Verb count_verb[] = {verb<count, arg::Optional<CountedTable>>(
                                   "count", "the number of entries of a table, or of all that have any")
                                   .reads()};

} // namespace

const Command add_command{add_verb, add_text};
const Command modify_command{modify_verb, modify_text};
const Command delete_command{delete_verb};
const Command find_command{find_verb, find_text, json_option};
const Command count_command{count_verb, {}, json_option};

} // namespace shell
