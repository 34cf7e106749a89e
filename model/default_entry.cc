#include "default_entry.h"

#include <algorithm>

namespace model {

EntryCopy program_default(const ProgramTable &table)
{
    if (table.action_table != 0)
        return {};
    const auto found = std::ranges::find(table.actions, true, &ProgramAction::default_action);
    const ProgramAction &action = found != table.actions.end() ? *found : table.actions.front();
    const std::vector<u8> data(action.bytes);
    EntryCopy entry{{.action = action.handle, .action_kind = PIPE_ACTION_DATA, .data = data}};
    if (table.resource != 0)
        entry.set_resource({.res_handle = table.resource,
                            .res_index = 0,
                            .res_data = {},
                            .res_tag = table.direct_counter ? PIPE_RES_ATTACH : PIPE_RES_DETACH});
    return entry;
}

} // namespace model
