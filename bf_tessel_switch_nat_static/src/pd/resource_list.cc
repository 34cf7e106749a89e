#include "resource_list.h"

#include <algorithm>
#include <iterator>

#include "bf_sys.h"

namespace pd {

void build_pd_res_spec(const pipe_action_spec *spec, pd_res_ref **list, u32 *count)
{
    *count = 0;
    if (spec->resource_count == 0)
        return;
    *list = static_cast<pd_res_ref *>(bf_sys_calloc(spec->resource_count, sizeof(pd_res_ref)));
    const std::size_t there = std::min<std::size_t>(spec->resource_count, std::size(spec->resources));
    for (std::size_t i = 0; i < there; ++i)
        if (spec->resources[i].res_tag == PIPE_RES_ATTACH)
            (*list)[(*count)++] = {spec->resources[i].res_handle, spec->resources[i].res_index};
}

} // namespace pd
