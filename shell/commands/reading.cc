// The commands that read entries: show, entry.
#include <algorithm>

#include "commands.h"
#include "driver.h"
#include "entry_filter.h"
#include "entry_key.h"
#include "entry_reader.h"
#include "list.h"
#include "profiles.h"
#include "show_profile.h"
#include "verb_arguments.h"

namespace shell {

namespace {

std::vector<Column> columns_of(const EntryReader &reader)
{
    std::vector<Column> columns{{"entry", Column::digits, to_the_right}};
    for (const ShownField &field : reader.key_fields()) {
        const bool plain = field.form == Form::number && field.match == pd::Match::exact;
        columns.push_back({field.name, std::max(field.name.size(), longest_text(field)),
                           plain ? to_the_right : Column::Aligned::left, "key"});
    }
    if (pd::has_priority(reader.table()))
        columns.push_back({"priority", Column::digits, to_the_right});
    if (reader.names()) {
        columns.push_back({"points at"});
        return columns;
    }
    std::size_t action_width = sizeof "action" - 1;
    for (const pd::Binding &binding : reader.table().actions)
        if (binding.entry)
            action_width = std::max(action_width, std::string_view{binding.action->name}.size());
    columns.insert(columns.end(), {{"action", action_width}, {"parameters"}});
    return columns;
}

// Which entries are shown: of a table those that are wanted, or all that a profile holds.
struct Shown {
    struct Value {
        arg::TableOrProfile::Value of;
        std::optional<EntryFilter> filter; // of a table
    };
    static void describe(Usage &usage)
    {
        arg::TableOrProfile::describe(usage);
        usage.places.push_back({.alternatives = {"KEY"}, .optional = true});
        describe_options(usage, {"priority", "action"});
    }
    static Value read(Reading &reading)
    {
        if (const reflection::ProfileFunctions *profile = take_profile_unless_table(reading.words))
            return {{nullptr, profile}, {}};
        // A table without a key has no entries to show.
        reading.table = &take_keyed_table(reading.words);
        return {{reading.table, nullptr}, EntryFilter{reading.words, *reading.table}};
    }
};

void show(Session &session, const Shown::Value &what)
{
    if (what.of.profile)
        return show_profile(session, *what.of.profile);
    const reflection::TableFunctions &table = *what.of.table;
    EntryReader reader{table, session.from_hardware(), session.names(table)};
    List list{session, columns_of(reader)};
    const auto print = [&] {
        if (!what.filter->wants(reader))
            return;
        reader.tell(list.row());
        list.end_row();
    };
    const auto print_missing = [&] {
        Result &row = list.row();
        row.text("table", table.row->name).number("entry", reader.handle());
        row.json([](Json &json) { json.key("missing").text("hardware"); });
        row.shown(reader.key_fields().front().name, "not in hardware");
        list.end_row();
    };
    list.fill([&] { reader.walk(print, print_missing); });
}

void entry(Session &session, const reflection::TableFunctions &table, const Cell &which)
{
    EntryReader reader{table, session.from_hardware(), session.names(table)};
    reader.read(which.find());
    Result result{session.json()};
    reader.tell(result);
    session.print(
        result.lines(reader.is_default() ? "default entry of {table}" : "entry {entry} of {table}"));
}

constexpr std::string_view show_help =
    R"(  KEY names some fields, with a mask or prefix where that is wanted: shown are the entries that agree there and are no
  less exact. action=NAME and priority=N pick entries, too. --hw reads from the hardware instead of the driver's
  memory and names the entries that it lacks.
)";

constexpr std::string_view entry_help =
    R"(  ENTRY is a handle, a key or 'default'. --json prints a JSON object, --hw reads from the hardware instead of the
  driver's memory.
)";

constexpr Verb show_verb[] = {
    verb<show, Shown>("show", "prints all entries of a table, or all that a profile holds").lists()};
constexpr Verb entry_verb[] = {
    verb<entry, arg::KeyedTable, arg::Entry>("entry", "prints one entry, read back").reads()};

} // namespace

const Command show_command{show_verb, show_help, read_list_options};
const Command entry_command{entry_verb, entry_help, read_options};

} // namespace shell
