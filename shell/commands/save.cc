// The save command: the state of tables as commands that bring it about again.
#include <algorithm>
#include <optional>
#include <stdexcept>

#include "commands.h"
#include "driver.h"
#include "entry_reader.h"
#include "file_name.h"
#include "meters.h"
#include "new_file.h"
#include "save_profile.h"
#include "verb_arguments.h"

namespace shell {

namespace {

using reflection::TableFunctions;

// " meter=CR,CB,PR,PB,TYPE" where the entry has a meter.
std::string meter(const TableFunctions &table, pd_entry_hdl entry)
{
    const std::string option = meter_option(table, entry);
    return option.empty() ? option : ' ' + option;
}

std::string default_meter(const TableFunctions &table)
{
    if (!table.row->direct_meter)
        return {};
    return meter(table, default_entry_of(table));
}

// " ttl=N" where the entry has a time to live.
std::string time_to_live(const TableFunctions &table, pd_entry_hdl entry)
{
    u32 ttl = 0;
    if (table.idle)
        expect_success(table.idle->get_ttl(driver_session, device.device_id, entry, &ttl));
    return ttl == 0 ? std::string{} : " ttl=" + std::to_string(ttl);
}

void save_default(LineSink &file, EntryReader &reader, const TableFunctions &table)
{
    reader.read_default();
    const bool has_one =
        reader.names() ? reader.reference().handle != 0 : pd::has_default_action(table.row->actions);
    file.write_line(has_one ? reader.command() + default_meter(table)
                            : std::string{"reset "} + table.row->name);
}

void save_entries(LineSink &file, EntryReader &reader, const TableFunctions &table)
{
    const std::string name = table.row->name;
    const bool ttl_behind = table.idle && !table.row->ttl_on_add;
    std::string line, key;
    reader.walk([&] {
        key.clear();
        reader.append_key(key);
        line = reader.command() + meter(table, reader.handle());
        const std::string ttl = time_to_live(table, reader.handle());
        file.write_line(ttl_behind ? line : line + ttl);
        if (ttl_behind && !ttl.empty())
            file.write_line("idle ttl " + name + ' ' + key + ttl);
    });
}

void save_table(LineSink &file, const TableFunctions &table, Session &session)
{
    std::optional<ProfileNames> names;
    if (table.indirect) {
        names = named_throughout(*table.indirect->profile, session.names(*table.indirect->profile));
        save_profile(file, *table.indirect->profile, *names);
    }
    EntryReader reader{table, false, names ? &*names : nullptr};
    save_default(file, reader, table);
    if (!table.row->key.empty())
        save_entries(file, reader, table);
}

// The tables that the rest of the command names, or all that can be saved.
struct Tables {
    using Value = std::vector<const TableFunctions *>;
    static void describe(Usage &usage)
    {
        usage.places.push_back({.alternatives = {"TABLE"}, .optional = true, .repeated = true});
    }
    static Value read(Reading &reading);
};

Tables::Value Tables::read(Reading &reading)
{
    if (reading.words.empty())
        return {reflection::tables().begin(), reflection::tables().end()};
    Value tables;
    while (!reading.words.empty()) {
        const std::string_view name = reading.words.peek();
        tables.push_back(&take_table(reading.words));
        if (std::ranges::count(tables, tables.back()) > 1)
            throw BadLine{name, quoted(name) + " is named twice"};
    }
    return tables;
}

void save_tables(LineSink &file, const std::vector<const TableFunctions *> &tables, Session &session)
{
    file.write_line("# Written by save, for load --replace, or for load into empty tables.");
    for (const TableFunctions *table : tables)
        save_table(file, *table, session);
}

// Saves to the session's output.
class Printed : public LineSink {
public:
    explicit Printed(Session &session) : session_(session) {}

    void write_line(std::string_view line) override { session_.print_text("save", line); }

private:
    Session &session_;
};

void save(Session &session, const FileName &to, const Tables::Value &tables)
{
    if (to.where == "-") {
        Printed printed{session};
        return save_tables(printed, tables, session);
    }
    if (!session.may_write_files())
        return;
    try {
        session.out().flush(); // the file may be where the output goes
        NewFile file{to.name};
        save_tables(file, tables, session);
        file.commit();
    } catch (const std::runtime_error &error) {
        throw BadLine{to.where, shell::quoted(to.name) + " cannot be written: " + error.what()};
    }
}

constexpr std::string_view text =
    R"(  Writes the commands that bring all tables, or those that are named, to their state, to FILE, which appears
  when it is whole, or with - to the output. What is no regular file is written straight into. A table of an
  action profile brings its members and groups along, an entry its meter and time to live. Counts, properties
  and what is no part of a table are not saved. 'help load' tells how FILE is written.
)";

constexpr Verb verbs[] = {
    verb<save, arg::File, Tables>("save", "writes the state of tables to a file that load reads").reads()};

} // namespace

const Command save_command{verbs, text};

} // namespace shell
