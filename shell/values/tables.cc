#include "tables.h"

#include <bit>

#include "driver.h"
#include "model.h"
#include "progress.h"

namespace shell {

namespace {

bool serves(const reflection::ActionFunctions &action, ActionOf use)
{
    return use == ActionOf::entry ? action.add != nullptr : action.set_default_action != nullptr;
}

} // namespace

const reflection::TableFunctions *table_of(const pd::Counter &counter)
{
    return counter.direct ? reflection::find_table(counter.handle) : nullptr;
}

const reflection::TableFunctions *table_of(const pd::Meter &meter)
{
    return meter.table ? reflection::find_table(meter.table) : nullptr;
}

std::vector<std::string_view> table_names()
{
    std::vector<std::string_view> names;
    for (const reflection::TableFunctions *table : reflection::tables())
        names.push_back(table->row->name);
    return names;
}

const reflection::TableFunctions &take_table(Words &words)
{
    const std::string_view name = words.take();
    const reflection::TableFunctions *table = reflection::find_table(name);
    if (!table)
        refuse(name, {"table", {}, "tables"}, table_names());
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

const reflection::ActionFunctions &take_action(Words &words, const reflection::TableFunctions &table,
                                               ActionOf use)
{
    const std::string_view name = words.peek();
    const std::vector<std::string_view> names = action_names(table, use);
    if (names.empty())
        throw BadLine{name, std::string{"the default action of "} + table.row->name + " cannot be set"};
    const reflection::ActionFunctions *action = reflection::find_action(table, name);
    if (!action || !serves(*action, use))
        refuse(name, {use == ActionOf::entry ? "action" : "default action", table.row->name}, names);
    words.take();
    return *action;
}

std::vector<std::string_view> action_names(const reflection::TableFunctions &table, ActionOf use)
{
    std::vector<std::string_view> names;
    for (const reflection::ActionFunctions &action : table.actions)
        if (serves(action, use))
            names.push_back(action.row->action->name);
    return names;
}

std::vector<std::string_view> all_action_names()
{
    std::vector<std::string_view> names;
    for (const pd::Action *action : reflection::actions())
        names.push_back(action->name);
    return names;
}

const pd::Action &take_any_action(Words &words)
{
    const std::string_view name = words.take();
    for (const pd::Action *action : reflection::actions())
        if (name == action->name)
            return *action;
    refuse(name, {"action"}, all_action_names());
}

const char *match_name(pd::Match match)
{
    switch (match) {
    case pd::Match::ternary:
        return "ternary";
    case pd::Match::lpm:
        return "lpm";
    default:
        return "exact";
    }
}

const char *key_kind_name(const pd::Table &table)
{
    return table.key.empty() ? "keyless" : match_name(pd::key_kind(table));
}

u32 entry_count(const pd::Table &table)
{
    const auto count = reflection::find_table(table.handle)->get_entry_count;
    u32 entries = 0;
    if (count)
        expect_success(count(driver_session, device, &entries));
    return entries;
}

unsigned uncompared_bits(const pd::Field &field)
{
    return field.width -
           static_cast<unsigned>(std::popcount(field.mask.high) + std::popcount(field.mask.low));
}

pd_entry_hdl default_entry_of(const reflection::TableFunctions &table)
{
    pd_entry_hdl entry = 0;
    expect_success(table.get_default_entry_handle(driver_session, device, &entry));
    return entry;
}

pd_entry_hdl find_entry(const reflection::TableFunctions &table, const reflection::EntryArguments &key)
{
    pd_entry_hdl entry = 0;
    expect_success(table.match_spec_to_entry_hdl(driver_session, device, key, &entry));
    return entry;
}

pd_entry_hdl find_entry_if_any(const reflection::TableFunctions &table, const reflection::EntryArguments &key)
{
    pd_entry_hdl entry = 0;
    const pd_status status = table.match_spec_to_entry_hdl(driver_session, device, key, &entry);
    if (status != TS_MODEL_UNKNOWN_OBJECT)
        expect_success(status);
    return status == TS_MODEL_OK ? entry : 0;
}

void walk_entries(const reflection::TableFunctions &table, const std::function<void(pd_entry_hdl)> &visit)
{
    Progress progress{walk_terminal, walk_terminal ? entry_count(*table.row) : 0,
                      Progress::From::second_second};
    walk_handles([&](u32 *to) { return table.get_first_entry_handle(driver_session, device, to); },
                 [&](u32 after, u32 count, u32 *to) {
                     return table.get_next_entry_handles(driver_session, device, after, count, to);
                 },
                 [&](pd_entry_hdl entry) {
                     visit(entry);
                     progress.advance();
                 });
}

} // namespace shell
