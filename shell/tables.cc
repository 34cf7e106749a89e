#include "tables.h"

#include "driver.h"
#include "model.h"

namespace shell {

namespace {

std::vector<std::string_view> table_names()
{
    std::vector<std::string_view> names;
    for (const reflection::TableFunctions *table : reflection::tables())
        names.push_back(table->row->name);
    return names;
}

std::vector<std::string_view> entry_action_names(const reflection::TableFunctions &table)
{
    std::vector<std::string_view> names;
    for (const reflection::ActionFunctions &action : table.actions)
        if (action.add)
            names.push_back(action.row->action->name);
    return names;
}

} // namespace

const reflection::TableFunctions &take_table(Words &words)
{
    const std::string_view name = words.take("table name; tables lists them");
    const reflection::TableFunctions *table = reflection::find_table(name);
    if (!table)
        throw BadLine{name, "unknown table " + quoted(name) + suggestion(name, table_names()) +
                                "; tables lists them"};
    return *table;
}

const reflection::TableFunctions &take_keyed_table(Words &words)
{
    const std::string_view name = words.peek();
    const reflection::TableFunctions &table = take_table(words);
    if (table.row->key.empty())
        throw BadLine{name, std::string{table.row->name} +
                                " has no key, and so no entries: only its default action runs"};
    return table;
}

const reflection::ActionFunctions &take_entry_action(Words &words, const reflection::TableFunctions &table)
{
    const std::string_view name = words.peek();
    const reflection::ActionFunctions *action = reflection::find_action(table, name);
    if (!action || !action->add)
        throw BadLine{name, (name.empty() ? "missing action" : "unknown action " + quoted(name)) + ": " +
                                table.row->name + " has " + listed(entry_action_names(table))};
    words.take();
    return *action;
}

const char *key_kind_name(const pd::Table &table)
{
    if (table.key.empty())
        return "keyless";
    switch (pd::key_kind(table)) {
    case pd::Match::ternary:
        return "ternary";
    case pd::Match::lpm:
        return "lpm";
    default:
        return "exact";
    }
}

u32 entry_count(const pd::Table &table)
{
    return ts_model_entry_count(device.device_id, table.handle);
}

} // namespace shell
