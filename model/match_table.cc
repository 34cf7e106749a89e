#include "match_table.h"

#include <algorithm>
#include <bit>
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

u32 rank_hash(u32 value_hash, u32 priority)
{
    return value_hash ^ priority * 0x85ebca6b;
}

} // namespace

MatchTable::MatchTable(const ProgramTable &program)
    : program_{program}, key_bytes_{program.key_bytes}, data_bytes_{program.action_table == 0
                                                                        ? longest_data(program.actions)
                                                                        : 0},
      key_((program.key_bytes + sizeof(u64) - 1) / sizeof(u64))
{
}

// ---- Images and the index -------------------------------------------------------------------------------

u32 MatchTable::mask_hash(const u8 *mask, u32 partition) const
{
    constexpr u32 golden_ratio = 0x9e3779b9;
    const std::string_view bytes{reinterpret_cast<const char *>(mask), key_bytes_};
    return static_cast<u32>(std::hash<std::string_view>{}(bytes)) ^ partition * golden_ratio;
}

MatchTable::Value MatchTable::key_under(u32 group) const
{
    constexpr u64 golden_ratio = 0x9e3779b97f4a7c15;
    const u64 *mask = mask_words(group);
    u64 hash = group;
    for (std::size_t at = 0; at < key_.size(); ++at) {
        const u64 product = ((key_[at] & mask[at]) + at) * golden_ratio;
        hash = std::rotl(hash, 7) + (product ^ product >> 32);
    }
    hash *= golden_ratio;
    return {group, static_cast<u32>(hash >> 32)};
}

bool MatchTable::has_key(u32 slot, u32 group) const
{
    if (entries_[slot].group != group)
        return false;
    const u8 *own = value_of(slot);
    const u8 *mask = mask_of(group);
    const u8 *key = reinterpret_cast<const u8 *>(key_.data());
    for (u32 at = 0; at < key_bytes_; ++at)
        if (((own[at] ^ key[at]) & mask[at]) != 0)
            return false;
    return true;
}

u32 MatchTable::first_of(const Value &value) const
{
    return by_value_.find(value.hash, [&](u32 slot) { return has_key(slot, value.group); });
}

// Entries of a ternary table can be many on a chain.
u32 MatchTable::find_ranked(const Value &value, u32 priority) const
{
    const auto is = [&](u32 slot) {
        return entries_[slot].priority == priority && has_key(slot, value.group);
    };
    if (program_.key == Key::ternary)
        return by_rank_.find(rank_hash(value.hash, priority), is);
    u32 slot = first_of(value);
    while (slot != none && entries_[slot].priority != priority)
        slot = entries_[slot].next;
    return slot;
}

void MatchTable::link(u32 slot, u32 head)
{
    if (program_.key == Key::ternary)
        by_rank_.insert(rank_hash(entries_[slot].hash, entries_[slot].priority), slot);
    if (head == none) {
        by_value_.insert(entries_[slot].hash, slot);
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
        by_rank_.erase(rank_hash(entries_[slot].hash, entries_[slot].priority), slot);
    if (next != none)
        entries_[next].previous = previous;
    if (previous != none) {
        entries_[previous].next = next;
        return;
    }
    if (next != none)
        by_value_.replace(entries_[slot].hash, slot, next);
    else
        by_value_.erase(entries_[slot].hash, slot);
}

// ---- Groups ---------------------------------------------------------------------------------------------

u32 MatchTable::find_group(const pipe_match_spec &match) const
{
    const auto is = [&](u32 group) {
        return groups_[group].partition == match.partition_index &&
               std::memcmp(mask_of(group), match.match_mask, key_bytes_) == 0;
    };
    return by_mask_.find(mask_hash(match.match_mask, match.partition_index), is);
}

u32 MatchTable::group_of(const pipe_match_spec &match)
{
    const u32 known = find_group(match);
    if (known != none)
        return known;
    u32 group = static_cast<u32>(groups_.size());
    if (free_groups_.empty()) {
        groups_.emplace_back();
        masks_.resize(masks_.size() + key_.size());
    } else {
        group = free_groups_.back();
        free_groups_.pop_back();
    }
    std::vector<u32> &others = by_partition_[match.partition_index];
    groups_[group] = {.partition = match.partition_index,
                      .hash = mask_hash(match.match_mask, match.partition_index),
                      .entries = 0,
                      .place = static_cast<u32>(others.size())};
    others.push_back(group);
    std::memcpy(mask_words(group), match.match_mask, key_bytes_);
    by_mask_.insert(groups_[group].hash, group);
    return group;
}

void MatchTable::close_if_empty(u32 group)
{
    if (groups_[group].entries != 0)
        return;
    by_mask_.erase(groups_[group].hash, group);
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
    set_key(match.match_value);
    const Value value = key_under(group);
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
    set_key(match.match_value);
    const u32 slot = find_ranked(key_under(group), match.priority);
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
