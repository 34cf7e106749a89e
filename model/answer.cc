#include "answer.h"

#include <algorithm>

#include "objects.h"
#include "table.h"

namespace model {

std::optional<EntryView> read_copy(const Table &table, pd_entry_hdl entry, u8 from_hw)
{
    return from_hw != 0 ? table.hardware(entry) : table.software(entry);
}

bool has_buffers(const pipe_match_spec &match, const EntryView &entry)
{
    return entry.value.empty() || (match.match_value != nullptr && match.match_mask != nullptr);
}

bool has_buffers(const pipe_action_spec &spec, const EntryView &entry)
{
    return entry.data.empty() || spec.action_data.data != nullptr;
}

bool has_room(const pipe_match_spec &match, const EntryView &entry)
{
    return has_buffers(match, entry) && match.num_bytes >= entry.value.size();
}

bool has_room(const pipe_action_spec &spec, const EntryView &entry)
{
    return has_buffers(spec, entry) && spec.action_data.num_bytes >= entry.data.size();
}

void answer_match(const ProgramTable &table, const EntryView &entry, pipe_match_spec &match)
{
    const bool is_default = entry.value.empty();
    if (is_default)
        match.match_value = nullptr;
    std::ranges::copy(entry.value, match.match_value);
    std::ranges::copy(entry.mask, match.match_mask);
    match.partition_index = entry.partition;
    match.priority = entry.priority;
    match.num_valid_bits = is_default ? u16{0} : table.key_bits;
    match.num_bytes = static_cast<u16>(entry.value.size());
    match.match_reserved = 0;
}

void answer_action(const ProgramTable &table, const EntryView &entry, pipe_action_spec &spec, u32 &action)
{
    action = entry.action;
    spec.action_kind = entry.action_kind;
    const bool has_data = entry.action_kind == PIPE_ACTION_DATA;
    spec.action_data.num_valid_bits = has_data ? find_action(table.actions, entry.action)->bits : u16{0};
    spec.action_data.num_bytes = static_cast<u16>(entry.data.size());
    std::ranges::copy(entry.data, spec.action_data.data);
    spec.member_hdl = entry.action_kind == PIPE_ACTION_MEMBER ? entry.member_or_group : 0;
    spec.group_hdl = entry.action_kind == PIPE_ACTION_GROUP ? entry.member_or_group : 0;
    spec.resource_count = entry.resource != nullptr;
    if (entry.resource != nullptr)
        spec.resources[0] = *entry.resource;
}

} // namespace model
