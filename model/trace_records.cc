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

std::string resource_text(const pipe_res_spec &resource)
{
    std::string text = "handle=" + hexadecimal(resource.res_handle) +
                       " index=" + decimal(resource.res_index) + " tag=" + decimal(resource.res_tag);
    if (all_zero(&resource.res_data, sizeof resource.res_data))
        return text;
    if (resource.res_handle >> 24 == meter_handle_kind)
        return text + " meter=" + meter_text(&resource.res_data.meter);
    return text + " data=" + image(resource.res_data.stful.bytes, sizeof resource.res_data.stful.bytes);
}

std::string data_words(const pipe_action_data &data)
{
    return "bits=" + decimal(data.num_valid_bits) + " bytes=" + decimal(data.num_bytes) +
           " data=" + image(data.data, data.num_bytes);
}

} // namespace

std::string meter_text(const pipe_meter_spec *meter)
{
    if (meter == nullptr)
        return "null";
    return "{type=" + decimal(meter->meter_type) + " committed=" + decimal(meter->committed_unit) + ":" +
           decimal(meter->committed_rate) + ":" + decimal(meter->committed_burst) +
           " peak=" + decimal(meter->peak_unit) + ":" + decimal(meter->peak_rate) + ":" +
           decimal(meter->peak_burst) + "}";
}

std::string resources_text(std::span<const pipe_res_spec> resources)
{
    std::string text;
    for (const pipe_res_spec &resource : resources)
        append(text, "; ", resource_text(resource));
    return "[" + text + "]";
}

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

std::string data_text(const pipe_action_data &data)
{
    std::string text = "{";
    return text += data_words(data) + "}";
}

std::string action_text(const pipe_action_spec *spec)
{
    if (spec == nullptr)
        return "null";
    std::string text = "{kind=" + decimal(spec->action_kind) + " " + data_words(spec->action_data);
    if (spec->action_kind == PIPE_ACTION_MEMBER)
        text += " member=" + decimal(spec->member_hdl);
    if (spec->action_kind == PIPE_ACTION_GROUP)
        text += " group=" + decimal(spec->group_hdl);
    const std::size_t resources = std::min<std::size_t>(spec->resource_count, std::size(spec->resources));
    if (resources != 0)
        text += " resources=" + resources_text({spec->resources, resources});
    return text + "}";
}

} // namespace model
