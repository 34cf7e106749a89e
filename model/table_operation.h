// What the operations on match tables have in common.
#pragma once

#include "checks.h"
#include "device.h"

namespace model {

// Runs a `change` that may alter a table. Those who have registered for the table's updates hear of it
// outside of every lock.
template <typename Change>
pd_status change_table(u32 device_id, u32 table, Change change)
{
    News news;
    const pd_status status = with_table(device_id, table, [&](Table &found) { return change(found, news); });
    news.tell(device_id);
    return status;
}

// Runs `use` on the handle of the entry with this key.
template <typename Use>
pd_status with_entry(Table &table, const pipe_match_spec &match, Use use)
{
    if (const pd_status status = check_match(table.program(), match))
        return status;
    const pd_entry_hdl entry = table.find(match);
    return entry != 0 ? use(entry) : unknown_object;
}

inline pd_status set_action(Table &table, pd_entry_hdl entry, u32 action, const pipe_action_spec &spec,
                            News &news)
{
    if (const pd_status status = check_action(table.program(), entry, action, spec))
        return status;
    return table.set_action(entry, action, spec, news);
}

} // namespace model
