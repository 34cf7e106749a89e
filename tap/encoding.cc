#include "encoding.h"

#include <cjson/cJSON.h>

#include <algorithm>
#include <iterator>
#include <memory>

#include "callbacks.h"
#include "pipe_mgr_records.h"

namespace tap {

namespace {

// Says whether there is something at `place`; what that is follows when there is.
bool put_presence(Buffer &to, const void *place)
{
    put(to, place != nullptr);
    return place != nullptr;
}

void put_bytes(Buffer &to, const u8 *bytes, std::size_t count)
{
    if (put_presence(to, bytes))
        to.append(bytes, count);
}

void put_text(Buffer &to, const char *text)
{
    if (!put_presence(to, text))
        return;
    const std::string_view words{text};
    put(to, words.size());
    to.append(words);
}

void put_all(Buffer &to, std::initializer_list<u64> numbers)
{
    for (const u64 number : numbers)
        put(to, number);
}

void put_record(Buffer &to, const pipe_match_spec &match)
{
    put_all(to, {match.partition_index, match.priority, match.num_valid_bits, match.num_bytes,
                 match.match_reserved});
    put_bytes(to, match.match_value, match.num_bytes);
    put_bytes(to, match.match_mask, match.num_bytes);
}

void put_record(Buffer &to, const pipe_action_data &data)
{
    put_all(to, {data.num_valid_bits, data.num_bytes});
    put_bytes(to, data.data, data.num_bytes);
}

void put_record(Buffer &to, const pipe_meter_spec &meter)
{
    put_all(to, {meter.meter_type, meter.committed_unit, meter.committed_rate, meter.committed_burst,
                 meter.peak_unit, meter.peak_rate, meter.peak_burst});
}

void put_record(Buffer &to, const pipe_stful_value &value)
{
    to.append(value.bytes, sizeof value.bytes);
}

enum class ResourceData : u8 { none, meter, value };

// The bytes of the union are padded differently, so zero is what has no byte set.
ResourceData data_of(const pipe_res_spec &resource)
{
    constexpr u32 meters = 0x5;
    const auto *bytes = reinterpret_cast<const u8 *>(&resource.res_data);
    if (std::all_of(bytes, bytes + sizeof resource.res_data, [](u8 byte) { return byte == 0; }))
        return ResourceData::none;
    return resource.res_handle >> 24 == meters ? ResourceData::meter : ResourceData::value;
}

void put_record(Buffer &to, const pipe_res_spec &resource)
{
    const ResourceData data = data_of(resource);
    put_all(to, {resource.res_handle, resource.res_index, resource.res_tag, static_cast<u64>(data)});
    if (data == ResourceData::meter)
        put_record(to, resource.res_data.meter);
    if (data == ResourceData::value)
        put_record(to, resource.res_data.stful);
}

void put_record(Buffer &to, const pipe_action_spec &spec)
{
    put_all(to, {spec.action_kind, spec.member_hdl, spec.group_hdl});
    put_record(to, spec.action_data);
    const std::size_t resources = std::min<std::size_t>(spec.resource_count, std::size(spec.resources));
    put(to, resources);
    for (std::size_t at = 0; at < resources; ++at)
        put_record(to, spec.resources[at]);
}

void put_record(Buffer &to, const pipe_wred_spec &wred)
{
    put_all(to, {wred.words[0], wred.words[1], wred.words[2], wred.words[3]});
}

void put_record(Buffer &to, const pipe_stat_data &counts)
{
    put_all(to, {counts.first_count, counts.second_count});
}

void put_record(Buffer &to, const pipe_hash_calc_input_field_attribute &attribute)
{
    put_all(to, {attribute.input_field, attribute.reserved_1, attribute.reserved_2, attribute.position,
                 attribute.attr_type, attribute.attr_value});
}

void put_record(Buffer &to, const pipe_stful_query &query)
{
    put(to, query.count);
    if (put_presence(to, query.elements))
        for (u32 at = 0; at < query.count; ++at)
            put_record(to, query.elements[at]);
}

template <typename Function>
u64 address(Function *function)
{
    return reinterpret_cast<uintptr_t>(function);
}

void put_record(Buffer &to, const pd_drv_client_callbacks &client)
{
    put_all(to, {address(client.device_remove), address(client.device_log), address(client.device_restore)});
}

void put_record(Buffer &to, const cJSON &document)
{
    const std::unique_ptr<char, decltype(&cJSON_free)> text{cJSON_PrintUnformatted(&document), cJSON_free};
    put_text(to, text.get());
}

void put_record(Buffer &to, const pipe_idle_params &params)
{
    put_all(to, {params.idle_mode, params.idle_param_1, params.idle_param_2, params.idle_param_3,
                 params.idle_param_4, params.reserved_1, params.idle_param_5, params.reserved_2});
}

void put_record(Buffer &to, const pd_dev_target &target)
{
    put_all(to, {target.device_id, target.pipe_id});
}

void put_record(Buffer &to, const pipe_pvs_property_value &value)
{
    put_all(to, {value.value, value.reserved});
}

void put_record(Buffer &to, const pipe_pvs_property_args &args)
{
    put_all(to, {args.argument, args.reserved_1, args.reserved_2});
}

void put_record(Buffer &to, u32 number)
{
    put(to, number);
}

void put_record(Buffer &to, const pipe_stat_data *counts)
{
    if (put_presence(to, counts))
        put_record(to, *counts);
}

// What a place for an out value says before the call.
void put_room(Buffer &to, const ArgumentRow &row, Value value)
{
    if (!put_presence(to, value.as<const void *>()))
        return;
    if (row.kind == Kind::match)
        put(to, value.as<const pipe_match_spec *>()->num_bytes);
    if (row.kind == Kind::action_spec)
        put(to, value.as<const pipe_action_spec *>()->action_data.num_bytes);
    if (row.kind == Kind::action_data)
        put(to, value.as<const pipe_action_data *>()->num_bytes);
    if (row.kind == Kind::query)
        put(to, value.as<const pipe_stful_query *>()->count);
}

// Puts arguments and results by their kinds.
class Putter {
public:
    Putter(Buffer &to, const OperationRow &operation, const Value *values)
        : to_{to}, operation_{operation}, values_{values}
    {
    }

    void arguments()
    {
        for (std::size_t at = 0; at < operation_.arguments.size(); ++at)
            if (operation_.arguments[at].direction == Direction::in)
                whole(at);
            else
                put_room(to_, operation_.arguments[at], values_[at]);
    }

    void results()
    {
        for (std::size_t at = 0; at < operation_.arguments.size(); ++at)
            if (operation_.arguments[at].direction == Direction::out && values_[at].number() != 0)
                whole(at);
    }

private:
    Buffer &to_;
    const OperationRow &operation_;
    const Value *values_;

    // How many elements of a list count.
    u32 length(const ArgumentRow &row) const
    {
        const u32 room = row.count >= 0 ? values_[row.count].as<u32>() : row.size;
        if (row.written < 0 || values_[row.written].number() == 0)
            return room;
        return std::min(room, *values_[row.written].as<const u32 *>());
    }

    template <typename Element>
    void list(std::size_t at)
    {
        const auto *elements = values_[at].as<const Element *>();
        if (!put_presence(to_, elements))
            return;
        const u32 count = length(operation_.arguments[at]);
        put(to_, count);
        for (u32 element = 0; element < count; ++element)
            put_record(to_, elements[element]);
    }

    void byte_list(std::size_t at)
    {
        const auto *bytes = values_[at].as<const u8 *>();
        if (!put_presence(to_, bytes))
            return;
        const u32 count = length(operation_.arguments[at]);
        put(to_, count);
        to_.append(bytes, count);
    }

    template <typename Record>
    void record(std::size_t at)
    {
        const auto *there = values_[at].as<const Record *>();
        if (put_presence(to_, there))
            put_record(to_, *there);
    }

    // A number that goes in by itself and out by pointer.
    template <typename Number>
    void number(std::size_t at)
    {
        const bool in = operation_.arguments[at].direction == Direction::in;
        put(to_, in ? values_[at].number() : *values_[at].as<const Number *>());
    }

    void whole(std::size_t at)
    {
        switch (operation_.arguments[at].kind) {
        case Kind::session:
        case Kind::device:
        case Kind::table:
        case Kind::action:
        case Kind::counter:
        case Kind::meter:
        case Kind::register_table:
        case Kind::digest:
        case Kind::value_set:
        case Kind::calculation:
        case Kind::handle:
        case Kind::entry:
        case Kind::value_set_entry:
        case Kind::member:
        case Kind::group:
        case Kind::number:
            return number<u32>(at);
        case Kind::device_byte:
        case Kind::byte:
            return number<u8>(at);
        case Kind::entry_word:
        case Kind::selection:
        case Kind::word:
            return number<pd_word>(at);
        case Kind::integer:
        case Kind::size:
        case Kind::opaque:
        case Kind::callback:
            return put(to_, values_[at].number());
        case Kind::target:
            return put_record(to_, *values_[at].as<const pd_dev_target *>());
        case Kind::idle_params:
            return put_record(to_, *values_[at].as<const pipe_idle_params *>());
        case Kind::property_value:
            return put_record(to_, *values_[at].as<const pipe_pvs_property_value *>());
        case Kind::property_args:
            return put_record(to_, *values_[at].as<const pipe_pvs_property_args *>());
        case Kind::match:
            return record<pipe_match_spec>(at);
        case Kind::action_spec:
            return record<pipe_action_spec>(at);
        case Kind::action_data:
            return record<pipe_action_data>(at);
        case Kind::meter_spec:
            return record<pipe_meter_spec>(at);
        case Kind::wred_spec:
            return record<pipe_wred_spec>(at);
        case Kind::register_value:
            return record<pipe_stful_value>(at);
        case Kind::query:
            return record<pipe_stful_query>(at);
        case Kind::counts:
            return record<pipe_stat_data>(at);
        case Kind::client:
            return record<pd_drv_client_callbacks>(at);
        case Kind::document:
            return record<cJSON>(at);
        case Kind::numbers:
        case Kind::members:
            return list<u32>(at);
        case Kind::bytes:
            return byte_list(at);
        case Kind::resources:
            return list<pipe_res_spec>(at);
        case Kind::attributes:
            return list<pipe_hash_calc_input_field_attribute>(at);
        case Kind::queries:
            return list<pipe_stful_query>(at);
        case Kind::counts_list:
            return list<const pipe_stat_data *>(at);
        case Kind::text:
        case Kind::format:
            return put_text(to_, values_[at].as<const char *>());
        }
    }
};

} // namespace

void put_arguments(Buffer &to, const OperationRow &operation, const Value *values)
{
    Putter{to, operation, values}.arguments();
}

void put_results(Buffer &to, const OperationRow &operation, const Value *values)
{
    Putter{to, operation, values}.results();
}

u64 Cursor::number()
{
    u64 number = 0;
    for (unsigned shift = 0; shift < 64 && !rest_.empty(); shift += 7) {
        const u8 byte = rest_.front();
        rest_ = rest_.subspan(1);
        number |= u64{byte & 0x7fu} << shift;
        if (byte < 0x80)
            return number;
    }
    ok_ = false;
    return 0;
}

std::span<const u8> Cursor::bytes(std::size_t count)
{
    if (count > rest_.size()) {
        ok_ = false;
        return {};
    }
    const auto taken = rest_.first(count);
    rest_ = rest_.subspan(count);
    return taken;
}

u32 Cursor::count()
{
    const u64 count = number();
    if (count <= rest_.size())
        return static_cast<u32>(count);
    ok_ = false;
    return 0;
}

} // namespace tap
