// The packing rule in reverse: from the driver's images back to callers' records, unrolled over the rows.
#pragma once

#include <utility>

#include "image.h"
#include "pipe_mgr.h"

namespace pd {

// What an index parameter that stands in no image reads as when the entry has no resource at all.
inline constexpr u32 no_index = 65535;

// Unrolled code takes the address of an image by value: out of the driver's record it would be loaded again
// behind every byte that is stored.

template <const Table &table, std::size_t index>
[[gnu::always_inline]] inline void unbuild_field(const u8 *value, [[maybe_unused]] u32 partition_index,
                                                 void *key)
{
    constexpr const Field &field = table.key[index];
    constexpr u32 bytes = bytes_of(field.width);
    constexpr u16 at = image_offset(table.key, index);
    if constexpr (field.partition_index)
        store_member<field.width>(key, field.offset, partition_index);
    else if constexpr (field.width == 128)
        store_wide(static_cast<u8 *>(key) + field.offset, load_wide(value, at));
    else
        store_member<field.width>(key, field.offset, load_big_endian<bytes>(value + at));
}

template <const Table &table, std::size_t... fields>
[[gnu::always_inline]] inline void unbuild_fields(const u8 *value, u32 partition_index, void *key,
                                                  std::index_sequence<fields...>)
{
    (unbuild_field<table, fields>(value, partition_index, key), ...);
}

// Fills the plain fields of `key` and zeroes all else of it.
template <const Table &table>
inline void unbuild_key(const pipe_match_spec *match, void *key)
{
    zero<table.record_size>(key);
    unbuild_fields<table>(match->match_value, match->partition_index, key,
                          std::make_index_sequence<table.key.size()>{});
}

// How many leading bits a mask has: the place of its lowest set bit. A hole in it is not seen.
inline u32 prefix_length(u32 mask)
{
    return mask ? 32 - static_cast<u32>(__builtin_ctz(mask)) : 0;
}

// Likewise of 128 bits, most significant byte first.
inline u32 wide_prefix_length(const u8 *mask)
{
    u64 words[2];
    std::memcpy(words, mask, sizeof words);
    const u64 high = __builtin_bswap64(words[0]), low = __builtin_bswap64(words[1]);
    if (low)
        return 128 - static_cast<u32>(__builtin_ctzll(low));
    return high ? 64 - static_cast<u32>(__builtin_ctzll(high)) : 0;
}

template <const Table &table, std::size_t index>
[[gnu::always_inline]] inline void unbuild_field_mask(const u8 *mask, void *key)
{
    constexpr const Field &field = table.key[index];
    constexpr u32 bytes = bytes_of(field.width);
    constexpr u16 at = image_offset(table.key, index);
    if constexpr (field.match == Match::exact)
        return; // the mask of such a field is nobody's to read
    else if constexpr (field.match == Match::lpm && field.width == 128)
        store_member<16>(key, field.twin_offset, wide_prefix_length(mask + at));
    else if constexpr (field.match == Match::lpm)
        store_member<16>(key, field.twin_offset, prefix_length(load_big_endian<4>(mask + at)));
    else if constexpr (field.width == 128)
        store_wide(static_cast<u8 *>(key) + field.twin_offset, load_wide(mask, at));
    else
        store_member<field.width>(key, field.twin_offset, load_big_endian<bytes>(mask + at));
}

template <const Table &table, std::size_t... fields>
[[gnu::always_inline]] inline void unbuild_field_masks(const u8 *mask, void *key,
                                                       std::index_sequence<fields...>)
{
    (unbuild_field_mask<table, fields>(mask, key), ...);
}

// Fills the masks or the prefix length of `key` and touches nothing else of it.
template <const Table &table>
inline void unbuild_mask(const pipe_match_spec *match, void *key)
{
    unbuild_field_masks<table>(match->match_mask, key, std::make_index_sequence<table.key.size()>{});
}

// The cell of `resource` that the list names; the last one counts.
inline u32 find_index(u32 resource, const pd_res_ref *list, u32 count)
{
    if (count == 0)
        return no_index;
    u32 index = 0;
    for (u32 i = 0; i < count; ++i)
        if (list[i].res_handle == resource)
            index = list[i].res_index;
    return index;
}

template <const Action &action, std::size_t index>
[[gnu::always_inline]] inline void unbuild_parameter(const u8 *data, [[maybe_unused]] const pd_res_ref *list,
                                                     [[maybe_unused]] u32 count, void *parameters)
{
    constexpr const Parameter &parameter = action.parameters[index];
    constexpr u32 bytes = bytes_of(parameter.width);
    constexpr u16 at = image_offset(action.parameters, index);
    if constexpr (parameter.in_image)
        store_member<parameter.width>(parameters, parameter.offset, load_big_endian<bytes>(data + at));
    else
        store_member<parameter.width>(parameters, parameter.offset,
                                      find_index(parameter.index_of, list, count));
}

template <const Action &action, std::size_t... indices>
[[gnu::always_inline]] inline void unbuild_parameters(const u8 *data, const pd_res_ref *list, u32 count,
                                                      void *parameters, std::index_sequence<indices...>)
{
    (unbuild_parameter<action, indices>(data, list, count, parameters), ...);
}

template <const Action &action>
inline void unbuild_action_spec(const pipe_action_data *data, const pd_res_ref *list, u32 count,
                                void *parameters)
{
    zero<action.record_size>(parameters);
    unbuild_parameters<action>(data->data, list, count, parameters,
                               std::make_index_sequence<action.parameters.size()>{});
}

} // namespace pd
