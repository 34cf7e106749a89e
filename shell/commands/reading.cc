// The commands that read entries: show, entry.
#include <algorithm>

#include "columns.h"
#include "commands.h"
#include "driver.h"
#include "entry_key.h"
#include "entry_reader.h"
#include "profiles.h"
#include "show_profile.h"
#include "verb_arguments.h"

namespace shell {

namespace {

// The entries of a table as lines. How wide a column is depends on the table alone.
class EntryLines {
public:
    explicit EntryLines(const EntryReader &reader);

    std::string_view heading();
    std::string_view line();
    // Of an entry that the copy lacks.
    std::string_view line_without_entry();

private:
    using Aligned = Columns::Aligned;

    static std::size_t key_width(const ShownField &field);
    static Aligned key_aligned(const ShownField &field);

    const EntryReader &reader_;
    std::size_t action_width_ = sizeof "action" - 1;
    std::string cell_;
    Columns columns_;
};

EntryLines::EntryLines(const EntryReader &reader) : reader_(reader)
{
    for (const pd::Binding &binding : reader.table().actions)
        if (binding.entry)
            action_width_ = std::max(action_width_, std::string_view{binding.action->name}.size());
}

std::string_view EntryLines::heading()
{
    columns_.begin();
    columns_.cell("entry", Columns::digits, Aligned::right);
    for (const ShownField &field : reader_.key_fields())
        columns_.cell(field.name, key_width(field), key_aligned(field));
    if (pd::has_priority(reader_.table()))
        columns_.cell("priority", Columns::digits, Aligned::right);
    if (reader_.names()) {
        columns_.cell("points at", 0, Aligned::left);
    } else {
        columns_.cell("action", action_width_, Aligned::left);
        columns_.cell("parameters", 0, Aligned::left);
    }
    return columns_.end();
}

std::string_view EntryLines::line()
{
    columns_.begin();
    columns_.cell(std::to_string(reader_.handle()), Columns::digits, Aligned::right);
    for (const ShownField &field : reader_.key_fields()) {
        cell_.clear();
        append_text(cell_, field, reader_.key());
        columns_.cell(cell_, key_width(field), key_aligned(field));
    }
    if (pd::has_priority(reader_.table()))
        columns_.cell(std::to_string(reader_.priority()), Columns::digits, Aligned::right);
    if (reader_.names()) {
        columns_.cell(reader_.names()->text_of(reader_.reference()), 0, Aligned::left);
    } else {
        const ShownAction &action = reader_.action();
        columns_.cell(action.name(), action_width_, Aligned::left);
        columns_.cell(assignments(action.fields(), action.parameters()), 0, Aligned::left);
    }
    return columns_.end();
}

std::string_view EntryLines::line_without_entry()
{
    columns_.begin();
    columns_.cell(std::to_string(reader_.handle()), Columns::digits, Aligned::right);
    columns_.cell("not in hardware", 0, Aligned::left);
    return columns_.end();
}

std::size_t EntryLines::key_width(const ShownField &field)
{
    return std::max(field.name.size(), longest_text(field));
}

Columns::Aligned EntryLines::key_aligned(const ShownField &field)
{
    const bool plain = field.form == Form::number && field.match == pd::Match::exact;
    return plain ? Aligned::right : Aligned::left;
}

void show_json(Session &session, EntryReader &reader)
{
    std::string line;
    const auto print = [&] {
        line.clear();
        reader.append_json(line);
        session.print(line);
    };
    reader.walk(print, [&] {
        line.clear();
        Json json{line};
        json.open_object().key("table").text(reader.table().name).key("entry").number(reader.handle());
        json.key("missing").text("hardware").close_object();
        session.print(line);
    });
}

void show_text(Session &session, EntryReader &reader)
{
    EntryLines lines{reader};
    session.print(lines.heading());
    reader.walk([&] { session.print(lines.line()); }, [&] { session.print(lines.line_without_entry()); });
}

// A name and what stands behind it.
using Line = std::pair<std::string_view, std::string>;

void append_lines(std::vector<Line> &lines, const std::vector<ShownField> &fields, const void *record)
{
    for (const ShownField &field : fields)
        append_text(lines.emplace_back(field.name, "").second, field, record);
}

void print_entry(Session &session, const EntryReader &reader)
{
    const pd::Table &table = reader.table();
    std::vector<Line> lines;
    if (!reader.is_default()) {
        append_lines(lines, reader.key_fields(), reader.key());
        if (pd::has_priority(table))
            lines.emplace_back("priority", std::to_string(reader.priority()));
    }
    if (reader.names()) {
        lines.emplace_back("points at", reader.names()->text_of(reader.reference()));
    } else {
        lines.emplace_back("action", reader.action().name());
        append_lines(lines, reader.action().fields(), reader.action().parameters());
    }

    std::size_t width = 0;
    for (const auto &[name, text] : lines)
        width = std::max(width, name.size());
    session.print(reader.is_default() ? std::string{"default entry of "} + table.name
                                      : "entry " + std::to_string(reader.handle()) + " of " + table.name);
    for (const auto &[name, text] : lines)
        session.print("  " + std::string{name} + std::string(width - name.size() + 2, ' ') + text);
}

void show(Session &session, const arg::TableOrProfile::Value &what)
{
    if (what.profile)
        return show_profile(session, *what.profile);
    EntryReader reader{*what.table, session.from_hardware(), session.names(*what.table)};
    if (session.json())
        show_json(session, reader);
    else
        show_text(session, reader);
}

void entry(Session &session, const reflection::TableFunctions &table, const Cell &which)
{
    EntryReader reader{table, session.from_hardware(), session.names(table)};
    reader.read(which.find());
    if (!session.json())
        return print_entry(session, reader);
    std::string line;
    reader.append_json(line);
    session.print(line);
}

// A table without a key has no entries to show.
struct Shown : arg::TableOrProfile {
    static Value read(Reading &reading)
    {
        const reflection::ProfileFunctions *profile = take_profile_unless_table(reading.words);
        return {profile ? nullptr : &take_keyed_table(reading.words), profile};
    }
};

constexpr std::string_view show_help =
    R"(  --json prints a JSON object for each entry, --hw reads from the hardware instead of the driver's memory and
  names the entries that it lacks.
)";

constexpr std::string_view entry_help =
    R"(  ENTRY is a handle, a key or 'default'. --json prints a JSON object, --hw reads from the hardware instead of the
  driver's memory.
)";

constexpr Verb show_verb[] = {
    verb<show, Shown>("show", "prints all entries of a table, or all that a profile holds").reads()};
constexpr Verb entry_verb[] = {
    verb<entry, arg::KeyedTable, arg::Entry>("entry", "prints one entry, read back").reads()};

} // namespace

const Command show_command{show_verb, show_help, read_options};
const Command entry_command{entry_verb, entry_help, read_options};

} // namespace shell
