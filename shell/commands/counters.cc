// The counter command.
#include "counter_rates.h"

#include <cmath>

#include "commands.h"
#include "driver.h"
#include "entry_body.h"
#include "entry_key.h"
#include "entry_reader.h"
#include "list.h"
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

constexpr const char *sentence = "packets={packets} bytes={bytes}";

void tell(Result &to, const pd_counter_value &value)
{
    to.number("packets", value.first_count).number("bytes", value.second_count);
}

void read(Session &session, const CounterFunctions &counter, const Cell &place)
{
    const u32 cell = place.find();
    Result result{session.json()};
    result.text("counter", counter.row->name).number(counter.row->direct ? "entry" : "index", cell);
    tell(result, read_cell(session, counter, cell));
    session.print(result.line(sentence));
}

constexpr Setting count_settings[] = {{"packets", 64}, {"bytes", 64, 0}};

using Counts = arg::SettingsBehindColon<count_settings, "packets=N [bytes=M]">;

void write(Session &session, const CounterFunctions &counter, const Cell &place,
           const std::vector<u64> &counts)
{
    const u32 cell = place.find();
    session.keep_change([&] {
        Result before{false};
        tell(before, read_cell(session, counter, cell));
        return std::string{"counter write "} + counter.row->name + ' ' + std::to_string(cell) + " : " +
               before.line(sentence);
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
    names.insert(names.end(), {"rates", "read", "write", "sync"});
    refuse(words.peek(), {"counter or word"}, names);
}

// By how much it went up in each second; nothing for an entry that is new.
void tell_rates(Result &to, CounterRates::Seen &seen, pd_entry_hdl entry, const pd_counter_value &value)
{
    const auto [before, is_new] = seen.counts.try_emplace(entry, value);
    const auto rate = [&](u64 now, u64 then) {
        return static_cast<u64>(std::llround(static_cast<double>(now - then) / seen.seconds));
    };
    if (!is_new && seen.seconds > 0) {
        to.number("packets_per_second", rate(value.first_count, before->second.first_count));
        to.number("bytes_per_second", rate(value.second_count, before->second.second_count));
    }
    before->second = value;
}

// The entries with their counts, and at the end what missed them all; with `seen` also with their rates.
void list_entries(Session &session, const CounterFunctions &counter, CounterRates::Seen *seen)
{
    const reflection::TableFunctions &table = *table_of(*counter.row);
    EntryReader reader{table, false, session.names(table)};
    std::vector<Column> columns{{"entry", Column::digits, to_the_right},
                                {"packets", count_width, to_the_right},
                                {"bytes", count_width, to_the_right}};
    if (seen)
        for (const std::string_view name : {"packets_per_second", "bytes_per_second"})
            columns.push_back({name, name.size(), to_the_right});
    columns.push_back({"key"});
    List list{session, std::move(columns)};
    const auto print = [&](pd_entry_hdl entry) {
        Result &row = list.row();
        row.text("counter", counter.row->name);
        if (reader.is_default())
            row.flag("default", true).shown("entry", "default");
        else
            row.number("entry", reader.handle());
        const pd_counter_value value = read_cell(session, counter, entry);
        tell(row, value);
        if (seen)
            tell_rates(row, *seen, entry, value);
        if (!reader.is_default())
            reader.tell_key(row);
        list.end_row();
    };
    list.fill([&] {
        reader.walk([&] { print(reader.handle()); });
        const pd_entry_hdl entry = default_entry_of(table);
        reader.read_default();
        print(entry);
    });
}

void list(Session &session, const CounterFunctions &counter)
{
    list_entries(session, counter, nullptr);
}

void rates(Session &session, const CounterFunctions &counter)
{
    list_entries(session, counter, &session.counter_rates().next(counter));
}

constexpr std::string_view text =
    R"(  CELL is an index; of a counter that is direct to a table, an entry's handle, its key, or 'default'.
  Counts are those that the driver remembers; --hw brings them up to date first.
)";

constexpr Verb verbs[] = {
    verb<list, Listed>("counter", "lists the entries of a table with their counts, and the default entry")
        .lists(),
    verb<rates, Listed>("counter rates",
                        "likewise, and how much they went up a second since it was asked before")
        .lists(),
    verb<read, arg::Counter, arg::Cell>("counter read", "prints both counts of a cell").reads(),
    verb<write, arg::Counter, arg::Cell, Counts>("counter write", "sets them; bytes is 0 when it is left out")
        .can_be_taken_back(),
    verb<sync, arg::Counter>("counter sync",
                             "has the driver bring its counts up to date with the hardware's"),
};

} // namespace

CounterRates::Seen &CounterRates::next(const reflection::CounterFunctions &counter)
{
    const auto now = std::chrono::steady_clock::now();
    Seen &seen = seen_[&counter];
    seen.seconds = std::chrono::duration<double>(now - seen.when).count();
    seen.when = now;
    return seen;
}

const Command counter_command{verbs, text, read_list_options, "the counts of entries and of counter cells"};

} // namespace shell
