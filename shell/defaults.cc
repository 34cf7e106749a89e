// The commands around a table's default entry: default, reset.
#include "action_part.h"
#include "commands.h"
#include "driver.h"
#include "entry_reader.h"

namespace shell {

namespace {

void set_default(Words &words, const reflection::TableFunctions &table)
{
    Options options;
    options.takes_meter = table.row->direct_meter != 0;
    const ActionPart action = take_action_part(words, table, ActionOf::default_entry, options);
    pd_entry_hdl entry = 0;
    expect_success(action.functions->set_default_action(driver_session, device,
                                                        arguments(nullptr, &action, options), &entry));
}

} // namespace

void run_default(Session &session, Words &words)
{
    const reflection::TableFunctions &table = take_direct_table(words);
    if (!words.empty())
        return set_default(words, table);
    EntryReader reader{table, session.from_hardware()};
    reader.read_default();
    std::string line;
    if (session.json())
        reader.append_json(line);
    else
        reader.append_action(line);
    session.print(line);
}

void run_reset(Session &, Words &words)
{
    const reflection::TableFunctions &table = take_table(words);
    words.expect_end();
    expect_success(table.reset_default_entry(driver_session, device));
}

} // namespace shell
