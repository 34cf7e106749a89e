#include "explain_records.h"

#include <algorithm>

namespace shell {

namespace {

CallerRecord record_of(std::size_t size)
{
    return CallerRecord(size / sizeof(u64) + 1);
}

} // namespace

CallerRecord key_record(const reflection::TableFunctions &table, pipe_match_spec match)
{
    CallerRecord key = record_of(table.row->record_size);
    table.unbuild_key(&match, key.data());
    if (table.unbuild_mask)
        table.unbuild_mask(&match, key.data());
    return key;
}

CallerRecord parameter_record(const pd::Action &action, const pipe_action_spec &spec)
{
    CallerRecord parameters = record_of(action.record_size);
    std::vector<pd_res_ref> resources;
    for (const pipe_res_spec &resource : resources_of(spec))
        resources.push_back({resource.res_handle, resource.res_index});
    if (!action.parameters.empty())
        reflection::action_texts()[action.number].unbuild(
            &spec.action_data, resources.data(), static_cast<u32>(resources.size()), parameters.data());
    return parameters;
}

std::span<const pipe_res_spec> resources_of(const pipe_action_spec &spec)
{
    return {spec.resources, std::min<std::size_t>(spec.resource_count, std::size(spec.resources))};
}

const pipe_meter_spec *meter_of(const reflection::TableFunctions &table, const pipe_action_spec &spec)
{
    for (const pipe_res_spec &resource : resources_of(spec))
        if (table.row->direct_meter != 0 && resource.res_handle == table.row->direct_meter &&
            resource.res_tag == PIPE_RES_ATTACH)
            return &resource.res_data.meter;
    return nullptr;
}

} // namespace shell
