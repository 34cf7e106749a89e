// What the driver refuses of a caller's records because the program has no such thing.
#pragma once

#include "pipe_mgr_records.h"
#include "program.h"
#include "status.h"

namespace model {

// Whether an entry of the table may have it.
bool resource_fits(const ProgramTable &table, const pipe_res_spec &resource);

pd_status check_match(const ProgramTable &table, const pipe_match_spec &match);

// For the entry with this handle: the default entry takes only what may be the default.
pd_status check_action(const ProgramTable &table, pd_entry_hdl entry, u32 action,
                       const pipe_action_spec &spec);

// For a member: its record has an image and nothing else.
pd_status check_member(const ProgramProfile &profile, u32 action, const pipe_action_spec &spec);

} // namespace model
