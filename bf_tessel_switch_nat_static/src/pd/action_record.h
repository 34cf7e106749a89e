// What an entry does as the driver takes it: the image of its parameters and the record that points at it,
// side by side on the caller's stack.
#pragma once

#include <utility>

#include "image.h"
#include "meter.h"
#include "pipe_mgr.h"

namespace pd {

// What is the same in every record of an action in one table.
struct ActionConstants {
    u8 kind = PIPE_ACTION_DATA;
    u32 resource = 0; // the handle of the one that hangs on the entry, 0 for none
    u32 tag = PIPE_RES_KEEP;
};

template <const Action &action, ActionConstants constants = ActionConstants{}>
class ActionRecord {
public:
    // `parameters` is the action's record; it is not read for an action without parameters.
    [[gnu::always_inline]] explicit ActionRecord(const void *parameters)
    {
        copy_constants(std::make_index_sequence<(sizeof record + sizeof(Wide) - 1) / sizeof(Wide)>{});
        if constexpr (sizeof(void *) == 8) // with both words behind it, which are zero
            store_words(reinterpret_cast<u8 *>(&record.action_data.data), reinterpret_cast<pd_word>(data), 0);
        else
            record.action_data.data = data;
        fill(parameters, std::make_index_sequence<action.parameters.size()>{});
    }

    ActionRecord(const ActionRecord &) = delete;

    pipe_action_spec *spec() { return &record; }

    // The resource of the entry, to fill in what differs from entry to entry.
    pipe_res_spec &resource() { return record.resources[0]; }

private:
    static constexpr ImageSize size = image_size(action.parameters);

    u8 data[size.bytes + 1];             // never empty, and with room behind a last field of three bytes
    alignas(16) pipe_action_spec record; // so that hardly a store of 16 bytes crosses a cache line

    // The record as it stands before anything is filled in.
    static constexpr auto image = [] {
        ConstantImage<sizeof(pipe_action_spec)> bytes;
        constexpr std::size_t sizes = offsetof(pipe_action_spec, action_data);
        bytes.put(offsetof(pipe_action_spec, action_kind), constants.kind, 1);
        bytes.put(sizes + offsetof(pipe_action_data, num_valid_bits), size.bits, 2);
        bytes.put(sizes + offsetof(pipe_action_data, num_bytes), size.bytes, 2);
        if (constants.resource) {
            constexpr std::size_t resource = offsetof(pipe_action_spec, resources);
            bytes.put(offsetof(pipe_action_spec, resource_count), 1, 1);
            bytes.put(resource + offsetof(pipe_res_spec, res_handle), constants.resource, 4);
            bytes.put(resource + offsetof(pipe_res_spec, res_tag), constants.tag, 4);
        }
        return bytes;
    }();

    // In pieces of 16 bytes, the last of which may overlap the one before it. Most are zero. The compiler's
    // own choice for a record of some size, a string instruction, costs more than all the rest of a call;
    // bench/README.md has the figures.
    template <std::size_t... pieces>
    [[gnu::always_inline]] void copy_constants(std::index_sequence<pieces...>)
    {
        constexpr std::size_t last = sizeof record - sizeof(Wide);
        u8 *to = reinterpret_cast<u8 *>(&record);
        (store_wide(to + std::min(pieces * sizeof(Wide), last),
                    image.template wide<std::min(pieces * sizeof(Wide), last)>()),
         ...);
    }

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
