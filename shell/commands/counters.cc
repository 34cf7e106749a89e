// The counter command.
#include <algorithm>

#include "columns.h"
#include "commands.h"
#include "driver.h"
#include "entry_body.h"
#include "entry_key.h"
#include "entry_reader.h"
#include "named.h"
#include "resources.h"
#include "settings.h"
#include "tables.h"
#include "verb_arguments.h"

namespace shell {

namespace {

using reflection::CounterFunctions;

constexpr std::size_t count_width = 12;

pd_counter_value read_cell(const Session &session, const CounterFunctions &counter, u32 cell)
{
    pd_counter_value value{};
    expect_success(counter.read(driver_session, device, cell, session.from_hardware(), &value));
    return value;
}

void append_json(Json &to, const pd_counter_value &value)
{
    to.key("packets").number(value.first_count).key("bytes").number(value.second_count);
}

void read(Session &session, const CounterFunctions &counter, const Cell &place)
{
    const u32 cell = place.find();
    const pd_counter_value value = read_cell(session, counter, cell);
    std::string line;
    if (session.json()) {
        Json json{line};
        json.open_object().key("counter").text(counter.row->name);
        json.key(counter.row->direct ? "entry" : "index").number(cell);
        append_json(json, value);
        json.close_object();
    } else {
        line =
            "packets=" + std::to_string(value.first_count) + " bytes=" + std::to_string(value.second_count);
    }
    session.print(line);
}

constexpr Setting count_settings[] = {{"packets", 64}, {"bytes", 64, 0}};

using Counts = arg::SettingsBehindColon<count_settings, "packets=N [bytes=M]">;

std::string text_of(const pd_counter_value &value)
{
    return "packets=" + std::to_string(value.first_count) + " bytes=" + std::to_string(value.second_count);
}

void write(Session &session, const CounterFunctions &counter, const Cell &place,
           const std::vector<u64> &counts)
{
    const u32 cell = place.find();
    session.keep_change([&] {
        return std::string{"counter write "} + counter.row->name + ' ' + std::to_string(cell) + " : " +
               text_of(read_cell(session, counter, cell));
    });
    expect_success(counter.write(driver_session, device, cell, {counts[0], counts[1]}));
}

// The copies are in step when the driver calls back, which it does before it returns.
void sync(Session &, const CounterFunctions &counter)
{
    expect_success(counter.hw_sync(
        driver_session, device, [](u32, pd_word) {}, 0));
}

// The name of a direct counter or of the table that it is direct to.
struct Listed {
    using Value = const CounterFunctions &;
    static void describe(Usage &usage) { usage.add({"TABLE", "COUNTER"}); }
    static Value read(Reading &reading);
};

const CounterFunctions &Listed::read(Reading &reading)
{
    Words &words = reading.words;
    std::vector<std::string_view> names;
    for (const CounterFunctions &counter : reflection::counters()) {
        if (!counter.row->direct)
            continue;
        if (words.peek() == counter.row->name || words.peek() == table_of(*counter.row)->row->name) {
            words.take();
            return counter;
        }
        names.push_back(counter.row->name);
    }
    names.insert(names.end(), {"read", "write", "sync"});
    refuse(words.peek(), {"counter or word"}, names);
}

std::string json_line(const CounterFunctions &counter, const EntryReader &reader,
                      const pd_counter_value &value)
{
    std::string line;
    Json json{line};
    json.open_object().key("counter").text(counter.row->name);
    if (reader.is_default())
        json.key("default").flag(true);
    else
        json.key("entry").number(reader.handle());
    append_json(json, value);
    if (!reader.is_default())
        reader.append_key(json);
    json.close_object();
    return line;
}

class CountLines {
public:
    std::string_view heading() { return line("entry", "packets", "bytes", "key"); }
    std::string_view line(const EntryReader &reader, const pd_counter_value &value)
    {
        std::string key;
        if (!reader.is_default())
            reader.append_key(key);
        return line(reader.is_default() ? "default" : std::to_string(reader.handle()),
                    std::to_string(value.first_count), std::to_string(value.second_count), key);
    }

private:
    std::string_view line(std::string_view entry, std::string_view packets, std::string_view bytes,
                          std::string_view key)
    {
        columns_.begin();
        columns_.cell(entry, Columns::digits, Columns::Aligned::right);
        columns_.cell(packets, count_width, Columns::Aligned::right);
        columns_.cell(bytes, count_width, Columns::Aligned::right);
        columns_.cell(key, 0, Columns::Aligned::left);
        return columns_.end();
    }

    Columns columns_;
};

// The entries with their counts, and at the end what missed them all.
void list(Session &session, const CounterFunctions &counter)
{
    const reflection::TableFunctions &table = *table_of(*counter.row);
    EntryReader reader{table, false, session.names(table)};
    CountLines lines;
    const auto print = [&](pd_entry_hdl entry) {
        const pd_counter_value value = read_cell(session, counter, entry);
        session.print(session.json() ? json_line(counter, reader, value) : lines.line(reader, value));
    };
    if (!session.json())
        session.print(lines.heading());
    reader.walk([&] { print(reader.handle()); });
    pd_entry_hdl entry = 0;
    expect_success(table.get_default_entry_handle(driver_session, device, &entry));
    reader.read_default();
    print(entry);
}

constexpr std::string_view text =
    R"(  CELL is an index; of a counter that is direct to a table, an entry's handle, its key, or 'default'.
  Counts are those that the driver remembers; --hw brings them up to date first.
)";

constexpr Verb verbs[] = {
    verb<list, Listed>("counter", "lists the entries of a table with their counts, and the default entry")
        .reads(),
    verb<read, arg::Counter, arg::Cell>("counter read", "prints both counts of a cell").reads(),
    verb<write, arg::Counter, arg::Cell, Counts>("counter write", "sets them; bytes is 0 when it is left out")
        .can_be_taken_back(),
    verb<sync, arg::Counter>("counter sync",
                             "has the driver bring its counts up to date with the hardware's"),
};

} // namespace

const Command counter_command{verbs, text, read_options, "the counts of entries and of counter cells"};

} // namespace shell
