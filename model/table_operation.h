// What the operations on match tables have in common.
#pragma once

#include "checks.h"
#include "device.h"
#include "operation.h"
#include "trace_records.h"

namespace model {

// Runs an operation whose `change` may alter a table. Those who have registered for the table's updates hear
// of it behind the trace line, outside of every lock.
template <typename Change, typename... Texts>
pd_status run_change(const char *operation, u32 device_id, u32 table, Change change, Texts... texts)
{
    News news;
    const auto execute = [&] {
        return with_table(device_id, table, [&](Table &found) { return change(found, news); });
    };
    const pd_status status = run(operation, execute, texts...);
    news.tell(device_id);
    return status;
}

// Runs `use` on the handle of the entry with this key.
template <typename Use>
pd_status with_entry(Table &table, const pipe_match_spec *match, Use use)
{
    if (const pd_status status = check_match(table.program(), match))
        return status;
    const pd_entry_hdl entry = table.find(*match);
    return entry != 0 ? use(entry) : unknown_object;
}

inline pd_status set_action(Table &table, pd_entry_hdl entry, u32 action, const pipe_action_spec *spec,
                            News &news)
{
    if (const pd_status status = check_action(table.program(), entry, action, spec))
        return status;
    return table.set_action(entry, action, *spec, news);
}

// The action with the name that it has in this table.
inline void action_of_table(Line &line, u32 table_handle, u32 handle)
{
    const ProgramTable *table = find_table(table_handle);
    const ProgramAction *action = table != nullptr ? find_action(table->actions, handle) : nullptr;
    line.action(handle, action != nullptr ? action->name : nullptr);
}

} // namespace model
