#include "decoder.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <string_view>

#include "encoder.h"

namespace decoder {

namespace {

using encoder::whole_bytes;

// The resource whose index each of these actions has in its only index parameter.
const std::map<std::string_view, std::pair<std::string_view, u32>> index_parameters{
    {"setEgressMirrorColor", {"meterIndex", 0x5000004}},
    {"setIngressMirrorColor", {"meterIndex", 0x5000003}},
    {"setPdpClassCount", {"counterIndex", 0x4000005}},
};

void set_member_bit(u8 *record, u32 offset, u32 width, u32 bit, bool value)
{
    u8 *member = record + offset;
    if (!value)
        return;
    if (width == 128)
        member[15 - bit / 8] |= static_cast<u8>(1 << bit % 8);
    else if (width <= 8)
        *member |= static_cast<u8>(1 << bit);
    else if (width <= 16)
        *reinterpret_cast<u16 *>(member) |= static_cast<u16>(1 << bit);
    else
        *reinterpret_cast<u32 *>(member) |= u32{1} << bit;
}

void clear_member(u8 *record, u32 offset, u32 width)
{
    std::memset(record + offset, 0, width <= 8 ? 1 : width <= 16 ? 2 : width <= 32 ? 4 : 16);
}

bool image_bit(const u8 *image, u32 start, u32 bytes, u32 bit)
{
    return image[start + bytes - 1 - bit / 8] >> bit % 8 & 1;
}

void set_half(u8 *record, u32 offset, u32 value)
{
    const u16 half = static_cast<u16>(value);
    std::memcpy(record + offset, &half, sizeof half);
}

// `start` and `bytes`: where the field's image lies.
u32 scan_prefix(const u8 *mask, u32 start, u32 bytes, u32 width)
{
    for (u32 z = 0; z < width; ++z)
        if (image_bit(mask, start, bytes, z))
            return width - z;
    return 0;
}

u32 index_of(u32 resource, const std::vector<pd_res_ref> &list)
{
    u32 index = list.empty() ? 65535 : 0;
    for (const pd_res_ref &element : list)
        if (element.res_handle == resource)
            index = element.res_index;
    return index;
}

} // namespace

void decode_values(u8 *key, const pd::Table &table, const u8 *value, u32 partition_index)
{
    u32 start = 0;
    for (const pd::Field &field : table.key) {
        const u32 bytes = whole_bytes(field.width);
        const bool partition = field.name == std::string_view("fibV4ResultX_partIdx");
        clear_member(key, field.offset, field.width);
        for (u32 bit = 0; bit < bytes * 8; ++bit)
            set_member_bit(key, field.offset, field.width, bit,
                           partition ? partition_index >> bit & 1 : image_bit(value, start, bytes, bit));
        start += bytes;
    }
}

void decode_masks(u8 *key, const pd::Table &table, const u8 *mask)
{
    u32 start = 0;
    for (const pd::Field &field : table.key) {
        const u32 bytes = whole_bytes(field.width);
        if (field.match == pd::Match::lpm)
            set_half(key, field.twin_offset, scan_prefix(mask, start, bytes, field.width));
        if (field.match == pd::Match::ternary) {
            clear_member(key, field.twin_offset, field.width);
            for (u32 bit = 0; bit < bytes * 8; ++bit)
                set_member_bit(key, field.twin_offset, field.width, bit, image_bit(mask, start, bytes, bit));
        }
        start += bytes;
    }
}

void read_back_key(u8 *key, const pd::Table &table, const void *from)
{
    const encoder::Key images = encoder::encode_key(table, from, 0);
    decode_values(key, table, images.value.data(), images.partition_index);
    decode_masks(key, table, images.mask.data());
}

void read_back_parameters(u8 *parameters, const pd::Action &action, const void *from,
                          const std::vector<pd_res_ref> &list)
{
    const auto image = encoder::encode_data(action, from);
    const auto indexed = index_parameters.find(action.name);
    u32 start = 0;
    for (const pd::Parameter &parameter : action.parameters) {
        const u32 bytes = whole_bytes(parameter.width);
        for (u32 bit = 0; bit < bytes * 8; ++bit)
            set_member_bit(parameters, parameter.offset, parameter.width, bit,
                           image_bit(image.data(), start, bytes, bit));
        start += bytes;
        if (indexed == index_parameters.end() || indexed->second.first != parameter.name)
            continue;
        const u32 index = index_of(indexed->second.second, list);
        std::memcpy(parameters + parameter.offset, &index, sizeof index);
    }
}

} // namespace decoder
