// What an entry does as the driver takes it: the image of its parameters and the record that points at it,
// side by side on the caller's stack.
#pragma once

#include <utility>

#include "image.h"
#include "meter.h"
#include "pipe_mgr.h"

namespace pd {

template <const Action &action>
class ActionRecord {
public:
    // `parameters` is the action's record; it is not read for an action without parameters.
    [[gnu::always_inline]] explicit ActionRecord(const void *parameters, u8 kind = PIPE_ACTION_DATA)
    {
        zero<sizeof record>(&record);
        record.action_kind = kind;
        record.action_data.num_valid_bits = size.bits;
        record.action_data.num_bytes = size.bytes;
        record.action_data.data = data;
        fill(parameters, std::make_index_sequence<action.parameters.size()>{});
    }

    ActionRecord(const ActionRecord &) = delete;

    pipe_action_spec *spec() { return &record; }

    // Hangs the one resource of the entry on it and gives the place to fill in the rest.
    [[gnu::always_inline]] pipe_res_spec &add_resource(u32 handle, u32 tag)
    {
        record.resource_count = 1;
        record.resources[0].res_handle = handle;
        record.resources[0].res_tag = tag;
        return record.resources[0];
    }

private:
    static constexpr ImageSize size = image_size(action.parameters);

    u8 data[size.bytes + 1];             // never empty, and with room behind a last field of three bytes
    alignas(16) pipe_action_spec record; // so that hardly a store of zero() crosses a cache line

    template <std::size_t... parameters>
    [[gnu::always_inline]] void fill([[maybe_unused]] const void *from, std::index_sequence<parameters...>)
    {
        (put<parameters>(from), ...);
    }

    template <std::size_t index>
    [[gnu::always_inline]] void put([[maybe_unused]] const void *from)
    {
        constexpr const Parameter &parameter = action.parameters[index];
        constexpr u32 bytes = bytes_of(parameter.width);
        constexpr u16 at = image_offset(action.parameters, index);
        if constexpr (parameter.in_image)
            store_big_endian<bytes>(data + at, load_member<parameter.width>(from, parameter.offset));
        else
            std::memset(data + at, 0, bytes); // the index travels in the resource record alone
    }
};

} // namespace pd
