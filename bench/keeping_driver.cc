#include "keeping_driver.h"

#include <cstdlib>
#include <cstring>

#include "bf_sys.h"

namespace bench {

std::vector<Entry> entries;

pd_status answer(const Entry &entry, pipe_match_spec *match, pipe_action_spec *spec, u32 *action)
{
    if (entry.status != 0)
        return entry.status;
    std::memcpy(match->match_value, entry.value, entry.match.num_bytes);
    std::memcpy(match->match_mask, entry.mask, entry.match.num_bytes);
    match->partition_index = entry.match.partition_index;
    match->priority = entry.match.priority;
    match->num_valid_bits = entry.match.num_valid_bits;
    match->num_bytes = entry.match.num_bytes;

    std::memcpy(spec->action_data.data, entry.data, entry.spec.action_data.num_bytes);
    spec->action_data.num_valid_bits = entry.spec.action_data.num_valid_bits;
    spec->action_data.num_bytes = entry.spec.action_data.num_bytes;
    spec->action_kind = entry.spec.action_kind;
    spec->resource_count = entry.spec.resource_count;
    for (u32 i = 0; i < entry.spec.resource_count; i++) {
        spec->resources[i].res_handle = entry.spec.resources[i].res_handle;
        spec->resources[i].res_index = entry.spec.resources[i].res_index;
        spec->resources[i].res_tag = entry.spec.resources[i].res_tag;
    }
    *action = entry.action;
    return 0;
}

} // namespace bench

pd_status pipe_mgr_mat_ent_add(pd_sess_hdl, pd_dev_target, u32, pipe_match_spec *match, u32 action,
                               pipe_action_spec *spec, u32, u32, pd_entry_hdl *handle)
{
    bench::Entry entry{
        .value = {}, .mask = {}, .data = {}, .match = *match, .spec = *spec, .action = action, .status = 0};
    std::memcpy(entry.value, match->match_value, match->num_bytes);
    std::memcpy(entry.mask, match->match_mask, match->num_bytes);
    std::memcpy(entry.data, spec->action_data.data, spec->action_data.num_bytes);
    *handle = static_cast<pd_entry_hdl>(bench::entries.size());
    bench::entries.push_back(entry);
    return 0;
}

pd_status pipe_mgr_get_entry(pd_sess_hdl, u32, pd_dev_target, pd_entry_hdl entry, pipe_match_spec *match,
                             pipe_action_spec *spec, u32 *action, u8, u32, u32)
{
    return bench::answer(bench::entries[entry], match, spec, action);
}

void *bf_sys_calloc(size_t count, size_t size)
{
    return std::calloc(count, size);
}

void bf_sys_free(void *memory)
{
    std::free(memory);
}

int bf_sys_dbg_mode()
{
    return 0;
}

int bf_sys_log_and_trace(int, int, const char *, ...)
{
    return 0;
}
