#include "match_table.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <string_view>

namespace model {

namespace {

u32 longest_data(std::span<const ProgramAction> actions)
{
    u32 bytes = 0;
    for (const ProgramAction &action : actions)
        bytes = std::max<u32>(bytes, action.bytes);
    return bytes;
}

} // namespace

MatchTable::MatchTable(const ProgramTable &program)
    : program_{program}, key_bytes_{program.key_bytes}, data_bytes_{program.action_table == 0
                                                                        ? longest_data(program.actions)
                                                                        : 0},
      scratch_(program.key_bytes)
{
}

// ---- Images and the index -------------------------------------------------------------------------------

u32 MatchTable::hash(const u8 *image, u32 seed) const
{
    constexpr u32 golden_ratio = 0x9e3779b9;
    const std::string_view bytes{reinterpret_cast<const char *>(image), key_bytes_};
    return static_cast<u32>(std::hash<std::string_view>{}(bytes)) ^ seed * golden_ratio;
}

std::size_t MatchTable::MaskHash::operator()(u32 group) const
{
    return table->hash(table->mask_of(group), table->groups_[group].partition);
}

bool MatchTable::has_mask(u32 group, const Mask &mask) const
{
    return groups_[group].partition == mask.partition &&
           std::memcmp(mask_of(group), mask.mask, key_bytes_) == 0;
}

bool MatchTable::has_value(u32 slot, const Value &value) const
{
    if (entries_[slot].group != value.group)
        return false;
    const u8 *own = value_of(slot);
    const u8 *mask = mask_of(value.group);
    for (u32 at = 0; at < key_bytes_; ++at)
        if ((own[at] & mask[at]) != value.masked[at])
            return false;
    return true;
}

MatchTable::Value MatchTable::masked(const u8 *value, u32 group)
{
    const u8 *mask = mask_of(group);
    for (u32 at = 0; at < key_bytes_; ++at)
        scratch_[at] = value[at] & mask[at];
    return {group, hash(scratch_.data(), group), scratch_.data()};
}

u32 MatchTable::first_of(const Value &value) const
{
    const auto head = by_value_.find(value, value.hash);
    return head != by_value_.end() ? *head : none;
}

// Entries of a ternary table can be many on a chain.
u32 MatchTable::find_ranked(const Value &value, u32 priority) const
{
    if (program_.key == Key::ternary) {
        const auto found = by_rank_.find(Ranked{value, priority});
        return found != by_rank_.end() ? *found : none;
    }
    u32 slot = first_of(value);
    while (slot != none && entries_[slot].priority != priority)
        slot = entries_[slot].next;
    return slot;
}

void MatchTable::link(u32 slot, u32 head)
{
    if (program_.key == Key::ternary)
        by_rank_.insert(slot);
    if (head == none) {
        by_value_.insert(slot);
        return;
    }
    const u32 next = entries_[head].next;
    entries_[slot].next = next;
    entries_[slot].previous = head;
    entries_[head].next = slot;
    if (next != none)
        entries_[next].previous = slot;
}

void MatchTable::unlink(u32 slot)
{
    const auto [next, previous] = std::pair{entries_[slot].next, entries_[slot].previous};
    if (program_.key == Key::ternary)
        by_rank_.erase(slot);
    if (next != none)
        entries_[next].previous = previous;
    if (previous != none) {
        entries_[previous].next = next;
        return;
    }
    by_value_.erase(slot);
    if (next != none)
        by_value_.insert(next);
}

// ---- Groups ---------------------------------------------------------------------------------------------

u32 MatchTable::find_group(const pipe_match_spec &match) const
{
    const auto group = by_mask_.find(Mask{match.partition_index, match.match_mask});
    return group != by_mask_.end() ? *group : none;
}

u32 MatchTable::group_of(const pipe_match_spec &match)
{
    const u32 known = find_group(match);
    if (known != none)
        return known;
    u32 group = static_cast<u32>(groups_.size());
    if (free_groups_.empty()) {
        groups_.emplace_back();
        masks_.resize(masks_.size() + key_bytes_);
    } else {
        group = free_groups_.back();
        free_groups_.pop_back();
    }
    std::vector<u32> &others = by_partition_[match.partition_index];
    groups_[group] = {match.partition_index, 0, static_cast<u32>(others.size())};
    others.push_back(group);
    std::copy_n(match.match_mask, key_bytes_, masks_.data() + std::size_t{group} * key_bytes_);
    by_mask_.insert(group);
    return group;
}

void MatchTable::close_if_empty(u32 group)
{
    if (groups_[group].entries != 0)
        return;
    by_mask_.erase(group);
    free_groups_.push_back(group);
    std::vector<u32> &others = by_partition_[groups_[group].partition];
    groups_[others.back()].place = groups_[group].place;
    others[groups_[group].place] = others.back();
    others.pop_back();
}

// ---- Entries --------------------------------------------------------------------------------------------

u32 MatchTable::take_slot()
{
    if (!free_slots_.empty()) {
        const u32 slot = free_slots_.back();
        free_slots_.pop_back();
        return slot;
    }
    const u32 slot = static_cast<u32>(entries_.size());
    entries_.emplace_back();
    values_.resize(values_.size() + key_bytes_);
    data_.resize(data_.size() + data_bytes_);
    if (program_.resource != 0)
        resources_.emplace_back();
    return slot;
}

void MatchTable::write_action(u32 slot, u32 action, const pipe_action_spec &spec)
{
    Entry &entry = entries_[slot];
    entry.action = action;
    entry.action_kind = spec.action_kind;
    entry.member_or_group = member_or_group(spec);
    const std::span<const u8> data = model::data_of(spec);
    entry.data_bytes = static_cast<u16>(data.size());
    std::ranges::copy(data, data_.data() + std::size_t{slot} * data_bytes_);
    if (brings_resource(spec, entry.resource_count != 0)) {
        entry.resource_count = spec.resource_count;
        resources_[slot] = spec.resources[0];
    }
}

pd_status MatchTable::add(const pipe_match_spec &match, u32 action, const pipe_action_spec &spec, u32 ttl,
                          u32 capacity, pd_entry_hdl &entry)
{
    const u32 group = group_of(match);
    const Value value = masked(match.match_value, group);
    const bool duplicate = find_ranked(value, match.priority) != none;
    const bool full = count_ >= capacity || slots_.issued() + 1 == TS_MODEL_DEFAULT_ENTRY;
    if (duplicate || full) {
        close_if_empty(group);
        return duplicate ? already_exists : no_space;
    }

    const u32 slot = take_slot();
    entry = slots_.add(slot);
    std::copy_n(match.match_value, key_bytes_, value_of(slot));
    entries_[slot] = Entry{};
    entries_[slot].handle = entry;
    entries_[slot].group = group;
    entries_[slot].hash = value.hash;
    entries_[slot].next = entries_[slot].previous = none;
    entries_[slot].priority = match.priority;
    entries_[slot].ttl = ttl;
    write_action(slot, action, spec);
    link(slot, first_of(value));
    ++groups_[group].entries;
    ++count_;
    return ok;
}

pd_status MatchTable::set_action(pd_entry_hdl entry, u32 action, const pipe_action_spec &spec)
{
    const u32 slot = slot_of(entry);
    if (slot == none)
        return unknown_object;
    write_action(slot, action, spec);
    return ok;
}

void MatchTable::set_resource(pd_entry_hdl entry, const pipe_res_spec &resource)
{
    const u32 slot = slot_of(entry);
    if (slot == none)
        return;
    entries_[slot].resource_count = 1;
    resources_[slot] = resource;
}

void MatchTable::set_ttl(pd_entry_hdl entry, u32 ttl)
{
    const u32 slot = slot_of(entry);
    if (slot != none)
        entries_[slot].ttl = ttl;
}

pd_status MatchTable::remove(pd_entry_hdl entry)
{
    const u32 slot = slot_of(entry);
    if (slot == none)
        return unknown_object;
    unlink(slot);
    const u32 group = entries_[slot].group;
    --groups_[group].entries;
    close_if_empty(group);
    free_slots_.push_back(slots_.remove(entry));
    --count_;
    return ok;
}

pd_entry_hdl MatchTable::find(const pipe_match_spec &match)
{
    const u32 group = find_group(match);
    if (group == none)
        return 0;
    const u32 slot = find_ranked(masked(match.match_value, group), match.priority);
    return slot != none ? entries_[slot].handle : 0;
}

std::optional<EntryView> MatchTable::get(pd_entry_hdl entry) const
{
    const u32 slot = slot_of(entry);
    if (slot == none)
        return std::nullopt;
    const Entry &found = entries_[slot];
    return EntryView{.value = {value_of(slot), key_bytes_},
                     .mask = {mask_of(found.group), key_bytes_},
                     .partition = groups_[found.group].partition,
                     .priority = found.priority,
                     .ttl = found.ttl,
                     .action = found.action,
                     .action_kind = found.action_kind,
                     .member_or_group = found.member_or_group,
                     .data = {data_of(slot), found.data_bytes},
                     .resource = found.resource_count != 0 ? &resources_[slot] : nullptr};
}

} // namespace model
