// How the actions of a table or of a profile are read back: a constant per action, with a pointer to its
// unrolled decoder. The sequences of a read go over these.
#pragma once

#include <array>
#include <string_view>

#include "internal.h"
#include "unbuild.h"

namespace TS_INTERNAL pd {

// Room for the data of any action, and the size that the driver is told.
inline constexpr u32 data_buffer_bytes = 28;

struct ActionReader {
    u32 handle;
    u32 number;
    bool default_action;
    u8 name_bytes; // of the name that callers know, with the zero behind it
    // null for an action without parameters
    void (*unbuild)(const pipe_action_data *, const pd_res_ref *, u32 count, void *parameters);
};

template <const auto &owner, std::size_t index>
constexpr ActionReader action_reader()
{
    constexpr const Binding &binding = owner.actions[index];
    // A table none of whose actions may be made the default starts with one of them all the same.
    const bool default_action = binding.default_action || !has_default_action(owner.actions);
    static_assert(binding.action->record_size <= sizeof(pd_action_out::parameters));
    static_assert(image_size(binding.action->parameters).bytes <= data_buffer_bytes);
    constexpr std::size_t name_bytes =
        sizeof "p4_pd_tessel_switch_" + std::char_traits<char>::length(binding.action->name);
    static_assert(name_bytes <= 255);
    ActionReader reader{binding.handle, binding.action->number, default_action, u8{name_bytes}, nullptr};
    if constexpr (!binding.action->parameters.empty())
        reader.unbuild = unbuild_action_spec<*binding.action>;
    return reader;
}

template <const auto &owner>
inline constexpr auto action_readers = []<std::size_t... indices>(std::index_sequence<indices...>)
{
    return std::array<ActionReader, sizeof...(indices)>{action_reader<owner, indices>()...};
}
(std::make_index_sequence<owner.actions.size()>{});

inline const ActionReader *find_action(std::span<const ActionReader> actions, u32 handle)
{
    for (const ActionReader &action : actions)
        if (action.handle == handle)
            return &action;
    return nullptr;
}

// Where a caller wants an action.
struct ActionOut {
    char *action_name;  // null when it is not wanted
    void *action;       // its parameters
    u32 *action_number; // null when it is not wanted
};

} // namespace pd
