// The entries of one match table, of whatever kind its key is.
//
// Entries with the same mask image and partition form a group; an exact table has one group, an LPM table one
// for each prefix length. An index finds, for a group and a masked value, the entries of that value, which
// differ in priority only and hang on a chain. A look-up asks it for every group of the partition. Entries
// live in flat arrays and are named by their slot.
#pragma once

#include <tsl/robin_map.h>

#include <array>
#include <cstring>
#include <optional>
#include <vector>

#include "entry_copy.h"
#include "handle_map.h"
#include "program.h"
#include "slot_index.h"
#include "status.h"

namespace model {

class MatchTable {
public:
    explicit MatchTable(const ProgramTable &program);
    MatchTable(const MatchTable &) = delete;
    MatchTable &operator=(const MatchTable &) = delete;

    const ProgramTable &program() const { return program_; }

    // The records have been checked against the program.
    pd_status add(const pipe_match_spec &match, u32 action, const pipe_action_spec &spec, u32 ttl,
                  u32 capacity, pd_entry_hdl &entry);
    pd_status set_action(pd_entry_hdl entry, u32 action, const pipe_action_spec &spec);
    pd_status remove(pd_entry_hdl entry);

    // Nothing happens for an unknown entry.
    void set_resource(pd_entry_hdl entry, const pipe_res_spec &resource);
    void set_ttl(pd_entry_hdl entry, u32 ttl);

    // The entry with this partition, mask, masked value and priority; 0 for none.
    pd_entry_hdl find(const pipe_match_spec &match);

    // Calls `visit` with handle and priority of every entry that matches a packet with this key.
    template <typename Visit>
    void visit_matches(const u8 *key, u32 partition, Visit visit)
    {
        const auto groups = by_partition_.find(partition);
        if (groups == by_partition_.end())
            return;
        set_key(key);
        std::array<Value, 32> values; // that wait for memory together
        for (auto group = groups->second.begin(); group != groups->second.end();) {
            u32 count = 0;
            for (; count < values.size() && group != groups->second.end(); ++group)
                by_value_.fetch((values[count++] = key_under(*group)).hash);
            for (u32 at = 0; at < count; ++at)
                for (u32 slot = first_of(values[at]); slot != none; slot = entries_[slot].next)
                    visit(entries_[slot].handle, entries_[slot].priority);
        }
    }

    u32 count() const { return count_; }
    bool has(pd_entry_hdl entry) const { return slot_of(entry) != none; }
    pd_entry_hdl next(pd_entry_hdl after) const { return slots_.next(after); } // 0 at the end
    std::optional<EntryView> get(pd_entry_hdl entry) const;                    // none for an unknown handle

private:
    static constexpr u32 none = HandleMap::none;

    struct Entry {
        pd_entry_hdl handle;
        u32 group;
        u32 hash; // of group and masked value
        u32 next; // slot of the next entry with this value, or none
        u32 previous;
        u32 priority;
        u32 action;
        u32 member_or_group;
        u32 ttl;
        u16 data_bytes;
        u8 action_kind;
        u8 resource_count;
    };

    struct Group {
        u32 partition;
        u32 hash;    // of partition and mask
        u32 entries; // 0: free for another mask
        u32 place;   // among those of its partition
    };

    struct Value { // what the indices are asked for: key_ under the mask of a group
        u32 group;
        u32 hash;
    };

    u8 *value_of(u32 slot) { return values_.data() + std::size_t{slot} * key_bytes_; }
    const u8 *value_of(u32 slot) const { return values_.data() + std::size_t{slot} * key_bytes_; }
    u64 *mask_words(u32 group) { return masks_.data() + std::size_t{group} * key_.size(); }
    const u64 *mask_words(u32 group) const { return masks_.data() + std::size_t{group} * key_.size(); }
    const u8 *mask_of(u32 group) const { return reinterpret_cast<const u8 *>(mask_words(group)); }
    const u8 *data_of(u32 slot) const { return data_.data() + std::size_t{slot} * data_bytes_; }

    u32 mask_hash(const u8 *mask, u32 partition) const;
    void set_key(const u8 *value) { std::memcpy(key_.data(), value, key_bytes_); }
    Value key_under(u32 group) const;
    bool has_key(u32 slot, u32 group) const; // in this group

    u32 slot_of(pd_entry_hdl entry) const { return slots_.find(entry); } // none for an unknown handle
    u32 first_of(const Value &value) const;                              // head of the chain, or none
    u32 find_ranked(const Value &value, u32 priority) const;             // the entry, or none
    u32 find_group(const pipe_match_spec &match) const;
    u32 group_of(const pipe_match_spec &match); // opens one for a new mask
    void close_if_empty(u32 group);
    u32 take_slot();
    void link(u32 slot, u32 head);
    void unlink(u32 slot);
    void write_action(u32 slot, u32 action, const pipe_action_spec &spec);

    const ProgramTable &program_;
    const u32 key_bytes_;
    const u32 data_bytes_; // room for the longest action
    u32 count_ = 0;

    std::vector<Entry> entries_; // by slot, like the next three
    std::vector<u8> values_;
    std::vector<u8> data_;
    std::vector<pipe_res_spec> resources_; // empty in a table without a resource
    std::vector<u32> free_slots_;
    HandleMap slots_; // by handle

    std::vector<Group> groups_;
    std::vector<u64> masks_; // by group, as long as key_
    std::vector<u32> free_groups_;
    tsl::robin_map<u32, std::vector<u32>> by_partition_; // the groups that have entries

    std::vector<u64> key_; // what is looked for, filled up with zeros
    SlotIndex by_value_;   // the heads of the chains
    SlotIndex by_rank_;    // by value and priority, of a ternary table
    SlotIndex by_mask_;    // the groups, by partition and mask
};

} // namespace model
