// The entries of one match table, of whatever kind its key is.
//
// Entries with the same mask image and partition form a group; an exact table has one group, an LPM table one
// for each prefix length. One hash index finds, for a group and a masked value, the entries of that value,
// which differ in priority only and hang on a chain. Entries live in flat arrays and are named by their slot.
#pragma once

#include <tsl/robin_map.h>
#include <tsl/robin_set.h>

#include <optional>
#include <vector>

#include "entry_copy.h"
#include "handle_map.h"
#include "program.h"
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
        for (const u32 group : groups->second)
            for (u32 slot = first_of(masked(key, group)); slot != none; slot = entries_[slot].next)
                visit(entries_[slot].handle, entries_[slot].priority);
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
        u32 entries; // 0: free for another mask
        u32 place;   // among those of its partition
    };

    struct Value { // what the index is asked for
        u32 group;
        u32 hash;
        const u8 *masked;
    };

    struct Ranked { // what the index of ternary entries is asked for
        Value value;
        u32 priority;
    };

    struct RankHash {
        using is_transparent = void;
        const MatchTable *table;
        static std::size_t mixed(u32 hash, u32 priority) { return hash ^ priority * 0x85ebca6b; }
        std::size_t operator()(u32 slot) const
        {
            return mixed(table->entries_[slot].hash, table->entries_[slot].priority);
        }
        std::size_t operator()(const Ranked &ranked) const
        {
            return mixed(ranked.value.hash, ranked.priority);
        }
    };

    struct RankEqual {
        using is_transparent = void;
        const MatchTable *table;
        bool operator()(u32 slot, u32 other) const { return slot == other; }
        bool operator()(const Ranked &ranked, u32 slot) const
        {
            return table->entries_[slot].priority == ranked.priority && table->has_value(slot, ranked.value);
        }
        bool operator()(u32 slot, const Ranked &ranked) const { return (*this)(ranked, slot); }
    };

    struct Mask { // what the groups are asked for
        u32 partition;
        const u8 *mask;
    };

    struct ValueHash {
        using is_transparent = void;
        const MatchTable *table;
        std::size_t operator()(u32 slot) const { return table->entries_[slot].hash; }
        std::size_t operator()(const Value &value) const { return value.hash; }
    };

    struct ValueEqual {
        using is_transparent = void;
        const MatchTable *table;
        bool operator()(u32 slot, u32 other) const { return slot == other; }
        bool operator()(const Value &value, u32 slot) const { return table->has_value(slot, value); }
        bool operator()(u32 slot, const Value &value) const { return table->has_value(slot, value); }
    };

    struct MaskHash {
        using is_transparent = void;
        const MatchTable *table;
        std::size_t operator()(u32 group) const;
        std::size_t operator()(const Mask &mask) const { return table->hash(mask.mask, mask.partition); }
    };

    struct MaskEqual {
        using is_transparent = void;
        const MatchTable *table;
        bool operator()(u32 group, u32 other) const { return group == other; }
        bool operator()(const Mask &mask, u32 group) const { return table->has_mask(group, mask); }
        bool operator()(u32 group, const Mask &mask) const { return table->has_mask(group, mask); }
    };

    template <typename Hash, typename Equal>
    using Index = tsl::robin_set<u32, Hash, Equal, std::allocator<u32>, true>;

    u8 *value_of(u32 slot) { return values_.data() + std::size_t{slot} * key_bytes_; }
    const u8 *value_of(u32 slot) const { return values_.data() + std::size_t{slot} * key_bytes_; }
    const u8 *mask_of(u32 group) const { return masks_.data() + std::size_t{group} * key_bytes_; }
    const u8 *data_of(u32 slot) const { return data_.data() + std::size_t{slot} * data_bytes_; }

    u32 hash(const u8 *image, u32 seed) const;
    bool has_value(u32 slot, const Value &value) const;
    bool has_mask(u32 group, const Mask &mask) const;

    Value masked(const u8 *value, u32 group);                            // valid until the next call
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
    std::vector<u8> masks_; // by group
    std::vector<u32> free_groups_;
    tsl::robin_map<u32, std::vector<u32>> by_partition_; // the groups that have entries

    std::vector<u8> scratch_; // the value that masked() made
    Index<ValueHash, ValueEqual> by_value_{0, ValueHash{this}, ValueEqual{this}};
    Index<RankHash, RankEqual> by_rank_{0, RankHash{this}, RankEqual{this}}; // of a ternary table
    Index<MaskHash, MaskEqual> by_mask_{0, MaskHash{this}, MaskEqual{this}};
};

} // namespace model
