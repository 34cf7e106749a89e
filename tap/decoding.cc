#include "decoding.h"

namespace tap {

namespace {

u8 *image(Cursor &from, std::size_t bytes)
{
    return get_presence(from) ? const_cast<u8 *>(from.bytes(bytes).data()) : nullptr;
}

// The address of a function in the process that was recorded.
template <typename Function>
void get_address(Cursor &from, Function *&function)
{
    function = reinterpret_cast<Function *>(static_cast<uintptr_t>(from.number()));
}

} // namespace

void get_record(Cursor &from, pd_dev_target &target)
{
    target.device_id = from.word();
    target.pipe_id = from.word();
}

void get_record(Cursor &from, pipe_idle_params &params)
{
    for (u32 *word : {&params.idle_mode, &params.idle_param_1, &params.idle_param_2, &params.idle_param_3,
                      &params.idle_param_4, &params.reserved_1, &params.idle_param_5, &params.reserved_2})
        *word = from.word();
}

void get_record(Cursor &from, pipe_pvs_property_value &value)
{
    value.value = from.word();
    value.reserved = from.word();
}

void get_record(Cursor &from, pipe_pvs_property_args &args)
{
    args.argument = from.word();
    args.reserved_1 = from.word();
    args.reserved_2 = from.word();
}

void get_record(Cursor &from, pipe_match_spec &match)
{
    match.partition_index = from.word();
    match.priority = from.word();
    match.num_valid_bits = static_cast<u16>(from.number());
    match.num_bytes = static_cast<u16>(from.number());
    match.match_reserved = from.word();
    match.match_value = image(from, match.num_bytes);
    match.match_mask = image(from, match.num_bytes);
}

void get_record(Cursor &from, pipe_action_data &data)
{
    data.num_valid_bits = static_cast<u16>(from.number());
    data.num_bytes = static_cast<u16>(from.number());
    data.data = image(from, data.num_bytes);
}

void get_record(Cursor &from, pipe_meter_spec &meter)
{
    meter.meter_type = from.word();
    meter.committed_unit = from.word();
    meter.committed_rate = from.number();
    meter.committed_burst = from.number();
    meter.peak_unit = from.word();
    meter.peak_rate = from.number();
    meter.peak_burst = from.number();
}

void get_record(Cursor &from, pipe_wred_spec &wred)
{
    for (u32 &word : wred.words)
        word = from.word();
}

void get_record(Cursor &from, pipe_stful_value &value)
{
    const auto bytes = from.bytes(sizeof value.bytes);
    std::memset(value.bytes, 0, sizeof value.bytes);
    if (!bytes.empty())
        std::memcpy(value.bytes, bytes.data(), bytes.size());
}

void get_record(Cursor &from, pipe_res_spec &resource)
{
    enum { meter = 1, value = 2 };
    resource = {};
    resource.res_handle = from.word();
    resource.res_index = from.word();
    resource.res_tag = from.word();
    const u64 data = from.number();
    if (data == meter)
        get_record(from, resource.res_data.meter);
    if (data == value)
        get_record(from, resource.res_data.stful);
}

void get_record(Cursor &from, pipe_action_spec &spec)
{
    spec = {};
    spec.action_kind = static_cast<u8>(from.number());
    spec.member_hdl = from.word();
    spec.group_hdl = from.word();
    get_record(from, spec.action_data);
    spec.resource_count = static_cast<u8>(from.count());
    for (u32 at = 0; at < spec.resource_count && at < std::size(spec.resources); ++at)
        get_record(from, spec.resources[at]);
}

void get_record(Cursor &from, pipe_stat_data &counts)
{
    counts.first_count = from.number();
    counts.second_count = from.number();
}

void get_record(Cursor &from, pipe_hash_calc_input_field_attribute &attribute)
{
    attribute.input_field = from.word();
    attribute.reserved_1 = from.word();
    attribute.reserved_2 = from.word();
    attribute.position = from.word();
    attribute.attr_type = from.word();
    attribute.attr_value = static_cast<pd_word>(from.number());
}

void get_record(Cursor &from, pd_drv_client_callbacks &client)
{
    client = {};
    get_address(from, client.device_remove);
    get_address(from, client.device_log);
    get_address(from, client.device_restore);
}

bool get_query(Cursor &from, u32 &count)
{
    count = from.word();
    return get_presence(from);
}

const char *get_text(Cursor &from, std::size_t &length)
{
    length = 0;
    if (!get_presence(from))
        return nullptr;
    length = from.count();
    return reinterpret_cast<const char *>(from.bytes(length).data());
}

bool get_room(Cursor &from, Kind kind, u32 &room)
{
    room = 0;
    if (!get_presence(from))
        return false;
    if (kind == Kind::match || kind == Kind::action_spec || kind == Kind::action_data || kind == Kind::query)
        room = from.word();
    return true;
}

} // namespace tap
