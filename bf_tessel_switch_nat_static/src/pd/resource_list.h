// The list of the resources that an entry has attached, made while an entry is read back.
#pragma once

#include "internal.h"
#include "pipe_mgr.h"

namespace TS_INTERNAL pd {

// Lists the attached resources of `spec`. Without any resource it sets the count to 0 and leaves the list
// alone; otherwise it allocates room for all, attached or not, and the caller frees it with bf_sys_free. The
// allocation is not tested.
void build_pd_res_spec(const pipe_action_spec *spec, pd_res_ref **list, u32 *count);

} // namespace pd
