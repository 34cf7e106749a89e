#include "encoder.h"

#include <map>
#include <set>
#include <string_view>

namespace encoder {

u32 whole_bytes(u32 width)
{
    u32 bytes = 0;
    while (bytes * 8 < width)
        ++bytes;
    return bytes;
}

bool member_bit(const void *record, u32 offset, u32 width, u32 bit)
{
    const u8 *member = static_cast<const u8 *>(record) + offset;
    if (width == 128)
        return member[15 - bit / 8] >> bit % 8 & 1;
    if (width <= 8)
        return *member >> bit & 1;
    if (width <= 16)
        return *reinterpret_cast<const u16 *>(member) >> bit & 1;
    return *reinterpret_cast<const u32 *>(member) >> bit & 1;
}

namespace {

const std::map<std::string_view, u32> direct_counters{
    {"l2DmacClassify", 0x4000001},      {"ingressPortDropCheck", 0x4000002},
    {"trapToCpu", 0x4000003},           {"haloCounters", 0x4000004},
    {"finalDropControl", 0x4000006},    {"egressTcamV6RaclBank1", 0x4000008},
    {"egressTcamRaclBank1", 0x4000009}, {"egressPortDropCheck", 0x400000a},
};

// Table, resource, and the action and parameter that use it.
struct Indexed {
    u32 resource;
    std::string_view action;
    std::string_view parameter;
};
const std::map<std::string_view, Indexed> indexed_resources{
    {"egressMirrorRate", {0x5000004, "setEgressMirrorColor", "meterIndex"}},
    {"ingressMirrorRate", {0x5000003, "setIngressMirrorColor", "meterIndex"}},
    {"pdpPolicy", {0x4000005, "setPdpClassCount", "counterIndex"}},
    {"pdpClassify", {0x5000002, "meterPdpClass", "pdpClassId"}},
};

const std::set<std::string_view> zero_images{"setEgressMirrorColor", "setIngressMirrorColor",
                                             "setPdpClassCount"};

// Sets bit `bit` of a field that takes the `bytes` bytes from `start` on.
void set_bit(Bytes &image, std::size_t start, u32 bytes, u32 bit, bool value)
{
    if (value)
        image[start + bytes - 1 - bit / 8] |= static_cast<u8>(1 << bit % 8);
}

u32 valid_bits(const pd::Table &table)
{
    u32 bits = 0;
    for (const pd::Field &field : table.key)
        bits += field.width;
    return bits;
}

struct Prefix {
    bool present = false;
    bool too_long = false;
    u32 suppressed = 0; // bits
};

Prefix prefix_of(const pd::Table &table, const void *record)
{
    for (const pd::Field &field : table.key)
        if (field.match == pd::Match::lpm) {
            const u32 length =
                *reinterpret_cast<const u16 *>(static_cast<const u8 *>(record) + field.twin_offset);
            if (length > field.width)
                return {true, true, 0};
            return {true, false, field.width - length};
        }
    return {};
}

template <typename Fields>
u32 packed_widths(const Fields &fields)
{
    u32 word = 0;
    for (const auto &field : fields)
        word += whole_bytes(field.width) * 0x10000 + field.width;
    return word;
}

// Of a member's action.
pipe_action_spec record_of(const pd::Action &action, Bytes &data)
{
    pipe_action_spec spec{};
    spec.action_data = {static_cast<u16>(packed(action)), static_cast<u16>(packed(action) >> 16),
                        data.data()};
    return spec;
}

struct BitPair {
    bool value;
    bool mask;
};

BitPair encode_bit(const pd::Field &field, bool ternary, const Prefix &prefix, const void *record, u32 bit)
{
    const bool value = member_bit(record, field.offset, field.width, bit);
    if (field.match == pd::Match::lpm) {
        const bool kept = prefix.too_long || bit >= prefix.suppressed;
        return {value && kept, kept};
    }
    if (!ternary)
        return {value, true};
    const bool inside = bit < field.width;
    if (field.match == pd::Match::exact)
        return {value, inside};
    const bool chosen = member_bit(record, field.twin_offset, field.width, bit);
    return {value && chosen, chosen && inside};
}

u32 read_parameter(const pd::Action &action, std::string_view name, const void *record)
{
    u32 value = 0;
    for (const pd::Parameter &parameter : action.parameters)
        if (parameter.name == name)
            for (u32 bit = 0; bit < 32; ++bit)
                value |= u32{member_bit(record, parameter.offset, parameter.width, bit)} << bit;
    return value;
}

void encode_meter(pipe_res_spec &resource, const pd_meter_spec *meter, Family family)
{
    resource.res_handle = 0x5000001;
    if (!meter) {
        resource.res_tag = family == Family::set_default ? 2 : 0;
        return;
    }
    resource.res_tag = 1;
    resource.res_data.meter.meter_type = meter->requested_meter_type == 1;
    resource.res_data.meter.committed_rate = meter->committed_rate;
    resource.res_data.meter.committed_burst = meter->committed_burst;
    resource.res_data.meter.peak_rate = meter->peak_rate;
    resource.res_data.meter.peak_burst = meter->peak_burst;
}

} // namespace

bool is_ternary(const pd::Table &table)
{
    for (const pd::Field &field : table.key)
        if (field.match == pd::Match::ternary)
            return true;
    return false;
}

u32 packed(const pd::Table &table)
{
    return packed_widths(table.key);
}

u32 packed(const pd::Action &action)
{
    return packed_widths(action.parameters);
}

pipe_match_spec Key::record()
{
    return {value.data(),
            mask.data(),
            partition_index,
            priority,
            static_cast<u16>(packed),
            static_cast<u16>(packed >> 16),
            0};
}

Key encode_key(const pd::Table &table, const void *record, u32 priority)
{
    const bool ternary = is_ternary(table);
    const Prefix prefix = prefix_of(table, record);
    Key key;
    key.packed = packed(table);
    if (ternary)
        key.priority = priority;
    if (prefix.present)
        key.priority = prefix.too_long ? valid_bits(table) + 1 : prefix.suppressed;

    for (const pd::Field &field : table.key) {
        const std::size_t start = key.value.size();
        const u32 bytes = whole_bytes(field.width);
        key.value.resize(start + bytes);
        key.mask.resize(start + bytes);
        const bool partition = field.name == std::string_view("fibV4ResultX_partIdx");
        for (u32 bit = 0; bit < bytes * 8; ++bit) {
            const BitPair pair = encode_bit(field, ternary, prefix, record, bit);
            set_bit(key.value, start, bytes, bit, pair.value && !partition);
            set_bit(key.mask, start, bytes, bit, partition ? prefix.too_long : pair.mask);
            if (partition)
                key.partition_index |= u32{pair.value} << bit;
        }
    }
    return key;
}

void answer_key(recorder::Answer &answer, const pd::Table &table, const void *record)
{
    const Key written = encode_key(table, record, 0);
    answer.value = written.value;
    answer.mask = written.mask;
    answer.num_bytes = static_cast<u16>(written.value.size());
    answer.partition_index = written.partition_index;
}

Bytes encode_data(const pd::Action &action, const void *record)
{
    Bytes data;
    data.reserve(1); // an image is never null
    for (const pd::Parameter &parameter : action.parameters) {
        const std::size_t start = data.size();
        const u32 bytes = whole_bytes(parameter.width);
        data.resize(start + bytes);
        for (u32 bit = 0; bit < bytes * 8 && !zero_images.contains(action.name); ++bit)
            set_bit(data, start, bytes, bit, member_bit(record, parameter.offset, parameter.width, bit));
    }
    return data;
}

std::string match_text(const pd::Table &table, const void *record, u32 priority)
{
    return recorder::text_of(encode_key(table, record, priority).record());
}

std::string member_text(const pd::Action &action, const void *record)
{
    Bytes data = encode_data(action, record);
    return recorder::text_of(record_of(action, data));
}

std::string action_text(const pd::Table &table, const pd::Action &action, const void *record,
                        const pd_meter_spec *meter, Family family)
{
    Bytes data = encode_data(action, record);
    pipe_action_spec spec = record_of(action, data);
    spec.action_kind = 1;
    pipe_res_spec &resource = spec.resources[0];
    if (const auto counter = direct_counters.find(table.name); counter != direct_counters.end()) {
        resource.res_handle = counter->second;
        resource.res_tag = 1;
    } else if (const auto indexed = indexed_resources.find(table.name); indexed != indexed_resources.end()) {
        const bool uses = indexed->second.action == action.name;
        const u32 index = read_parameter(action, indexed->second.parameter, record);
        resource.res_handle = indexed->second.resource;
        resource.res_tag = uses ? 1 : 2;
        if (uses)
            resource.res_index = family == Family::add ? index % 0x10000 : index;
    } else if (table.name == std::string_view("l2LookupMiss")) {
        encode_meter(resource, meter, family);
    }
    spec.resource_count = resource.res_handle != 0;
    return recorder::text_of(spec);
}

bool takes_ttl(const pd::Table &table)
{
    return table.name == std::string_view("l2LearningLookup");
}

} // namespace encoder
