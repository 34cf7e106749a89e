// The save command: the state of tables as commands that bring it about again.
#include <algorithm>
#include <optional>
#include <stdexcept>

#include "commands.h"
#include "driver.h"
#include "entry_reader.h"
#include "new_file.h"
#include "save_profile.h"
#include "tables.h"

namespace shell {

namespace {

using reflection::TableFunctions;

constexpr char unknown_meter[] = " meter=0,0,0,0,aware";

// What the library cannot read back, and what is written in its place.
void save_remarks(NewFile &file, const pd::Table &table)
{
    const std::string name = table.name;
    if (table.ttl_on_add)
        file.write_line("# " + name + ": times to live are not saved; entries get ttl=0");
    if (table.direct_meter)
        file.write_line("# " + name + ": meters are not saved; entries get" + unknown_meter +
                        ", the default none");
}

void save_default(NewFile &file, EntryReader &reader)
{
    reader.read_default();
    if (reader.names() && reader.reference().handle == 0)
        return; // no command makes an entry point at nothing
    std::string line = std::string{"default "} + reader.table().name + " : ";
    reader.append_body(line);
    file.write_line(line);
}

void save_entries(NewFile &file, EntryReader &reader)
{
    const pd::Table &table = reader.table();
    const std::string add = std::string{"add "} + table.name;
    std::string line;
    reader.walk([&] {
        line = add;
        append_assignments(line, reader.key_fields(), reader.key());
        if (pd::has_priority(table))
            line += " priority=" + std::to_string(reader.priority());
        line += " : ";
        reader.append_body(line);
        if (table.direct_meter)
            line += unknown_meter;
        file.write_line(line);
    });
}

void save_table(NewFile &file, const TableFunctions &table, Session &session)
{
    std::optional<ProfileNames> names;
    if (table.indirect) {
        names = named_throughout(*table.indirect->profile, session.names(*table.indirect->profile));
        save_profile(file, *table.indirect->profile, *names);
    }
    EntryReader reader{table, false, names ? &*names : nullptr};
    save_remarks(file, *table.row);
    if (names || pd::has_default_action(table.row->actions))
        save_default(file, reader);
    if (!table.row->key.empty())
        save_entries(file, reader);
}

// The tables that the rest of the command names, or all that can be saved.
std::vector<const TableFunctions *> take_tables(Words &words)
{
    std::vector<const TableFunctions *> tables;
    if (words.empty()) {
        tables.assign(reflection::tables().begin(), reflection::tables().end());
        return tables;
    }
    while (!words.empty()) {
        const std::string_view name = words.peek();
        tables.push_back(&take_table(words));
        if (std::ranges::count(tables, tables.back()) > 1)
            throw BadLine{name, quoted(name) + " is named twice"};
    }
    return tables;
}

} // namespace

void run_save(Session &session, Words &words)
{
    const std::string_view name = words.take("file name");
    const std::vector<const TableFunctions *> tables = take_tables(words);
    try {
        NewFile file{std::string{name}};
        file.write_line("# Written by save. Load it into empty tables.");
        for (const TableFunctions *table : tables)
            save_table(file, *table, session);
        file.commit();
    } catch (const std::runtime_error &error) {
        throw BadLine{name, quoted(name) + " cannot be written: " + error.what()};
    }
}

} // namespace shell
