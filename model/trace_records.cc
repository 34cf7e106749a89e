#include "trace_records.h"

#include <algorithm>
#include <iterator>

#include "trace.h"

namespace model {

namespace {

constexpr u32 meter_handle_kind = 0x5;

bool all_zero(const void *memory, std::size_t bytes)
{
    const auto *first = static_cast<const u8 *>(memory);
    return std::all_of(first, first + bytes, [](u8 byte) { return byte == 0; });
}

std::string meter_text(const pipe_meter_spec &meter)
{
    return "{type=" + decimal(meter.meter_type) + " committed=" + decimal(meter.committed_unit) + ":" +
           decimal(meter.committed_rate) + ":" + decimal(meter.committed_burst) +
           " peak=" + decimal(meter.peak_unit) + ":" + decimal(meter.peak_rate) + ":" +
           decimal(meter.peak_burst) + "}";
}

std::string resource_text(const pipe_res_spec &resource)
{
    std::string text = "handle=" + hexadecimal(resource.res_handle) +
                       " index=" + decimal(resource.res_index) + " tag=" + decimal(resource.res_tag);
    if (all_zero(&resource.res_data, sizeof resource.res_data))
        return text;
    if (resource.res_handle >> 24 == meter_handle_kind)
        return text + " meter=" + meter_text(resource.res_data.meter);
    return text + " data=" + image(resource.res_data.stful.bytes, sizeof resource.res_data.stful.bytes);
}

std::string resources_text(const pipe_action_spec &spec)
{
    const std::size_t count = std::min<std::size_t>(spec.resource_count, std::size(spec.resources));
    std::string text;
    for (std::size_t at = 0; at < count; ++at)
        append(text, "; ", resource_text(spec.resources[at]));
    return count == 0 ? "" : " resources=[" + text + "]";
}

} // namespace

std::string match_text(const pipe_match_spec *match)
{
    if (match == nullptr)
        return "null";
    std::string text = "{value=" + image(match->match_value, match->num_bytes) +
                       " mask=" + image(match->match_mask, match->num_bytes) +
                       " partition=" + decimal(match->partition_index) +
                       " priority=" + decimal(match->priority) + " bits=" + decimal(match->num_valid_bits) +
                       " bytes=" + decimal(match->num_bytes);
    if (match->match_reserved != 0)
        text += " reserved=" + decimal(match->match_reserved);
    return text + "}";
}

std::string action_text(const pipe_action_spec *spec)
{
    if (spec == nullptr)
        return "null";
    const pipe_action_data &data = spec->action_data;
    std::string text = "{kind=" + decimal(spec->action_kind) + " bits=" + decimal(data.num_valid_bits) +
                       " bytes=" + decimal(data.num_bytes) + " data=" + image(data.data, data.num_bytes);
    if (spec->action_kind == PIPE_ACTION_MEMBER)
        text += " member=" + decimal(spec->member_hdl);
    if (spec->action_kind == PIPE_ACTION_GROUP)
        text += " group=" + decimal(spec->group_hdl);
    return text + resources_text(*spec) + "}";
}

} // namespace model
