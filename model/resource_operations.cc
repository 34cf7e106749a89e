// The driver operation that writes the resources of a match entry.
#include "pipe_mgr_match.h"

#include <algorithm>
#include <span>
#include <vector>

#include "table_operation.h"

using namespace model;

namespace {

constexpr u32 most_resources = 4;

// A resource that names its own match table is the register of the entry.
bool is_register(u32 table, const pipe_res_spec &resource)
{
    return resource.res_handle == table;
}

bool all_fit(const ProgramTable &table, std::span<const pipe_res_spec> resources)
{
    return std::ranges::all_of(resources, [&](const pipe_res_spec &resource) {
        return is_register(table.handle, resource) ? resource.res_tag == PIPE_RES_ATTACH
                                                   : resource_fits(table, resource);
    });
}

pd_status set_resources(Table &table, pd_entry_hdl entry, std::span<const pipe_res_spec> resources,
                        News &news)
{
    if (!table.has(entry))
        return unknown_object;
    if (!all_fit(table.program(), resources))
        return bad_argument;
    for (const pipe_res_spec &resource : resources)
        if (is_register(table.program().handle, resource))
            table.registers.write(entry, all_pipes, resource.res_data.stful);
        else
            table.set_resource(entry, resource, news);
    return ok;
}

// A direct resource has no index, so callers leave the word as it happens to be.
std::vector<pipe_res_spec> with_clean_indices(u32 table_handle, const pipe_res_spec *resources, u32 count)
{
    if (count > most_resources)
        return {};
    std::vector<pipe_res_spec> cleaned(resources, resources + count);
    const ProgramTable *table = find_table(table_handle);
    const bool is_direct = table != nullptr && (table->direct_counter || table->direct_meter);
    for (pipe_res_spec &resource : cleaned)
        if (is_direct || is_register(table_handle, resource))
            resource.res_index = 0;
    return cleaned;
}

} // namespace

namespace model {

pd_status pipe_mgr_mat_ent_set_resource(pd_sess_hdl, u32 device_id, u32 table, pd_entry_hdl entry,
                                        pipe_res_spec *resources, u32 count, u32)
{
    const std::vector<pipe_res_spec> cleaned = with_clean_indices(table, resources, count);
    return change_table(device_id, table, [&](Table &found, News &news) {
        return cleaned.size() == count ? set_resources(found, entry, cleaned, news) : bad_argument;
    });
}

} // namespace model
