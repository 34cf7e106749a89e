// The commands around a table's default entry: default, reset.
#include "commands.h"
#include "driver.h"
#include "entry_body.h"
#include "entry_reader.h"

namespace shell {

void run_default(Session &session, Words &words)
{
    const reflection::TableFunctions &table = take_table(words);
    if (!words.empty()) {
        Options options;
        options.takes_meter = table.row->direct_meter != 0;
        return EntryBody{session, words, table, ActionOf::default_entry, options}.set_default(options);
    }
    EntryReader reader{table, session.from_hardware(), session.names(table)};
    reader.read_default();
    std::string line;
    if (session.json())
        reader.append_json(line);
    else
        reader.append_body(line);
    session.print(line);
}

void run_reset(Session &, Words &words)
{
    const reflection::TableFunctions &table = take_table(words);
    words.expect_end();
    expect_success(table.reset_default_entry(driver_session, device));
}

} // namespace shell
