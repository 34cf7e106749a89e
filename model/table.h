// All that a device holds for one match table: its entries, its default entry, where the hardware's copy of
// them differs, its properties and who listens for its updates.
#pragma once

#include <map>
#include <optional>
#include <unordered_map>

#include "match_table.h"
#include "updates.h"

namespace model {

// The value and the second value of a property.
struct Property {
    u32 value;
    u32 second;
};

class Table {
public:
    explicit Table(const ProgramTable &program);

    const ProgramTable &program() const { return entries_.program(); }

    // The records have been checked against the program. What is written is the same in both copies after it.
    pd_status add(const pipe_match_spec &match, u32 action, const pipe_action_spec &spec, u32 ttl,
                  u32 capacity, pd_entry_hdl &entry, News &news);
    pd_status set_action(pd_entry_hdl entry, u32 action, const pipe_action_spec &spec, News &news);
    pd_status remove(pd_entry_hdl entry, News &news);
    void reset_default(News &news);

    pd_entry_hdl find(const pipe_match_spec &match) { return entries_.find(match); }
    ts_model_hit look_up(const u8 *key, u32 partition) { return entries_.look_up(key, partition); }
    u32 count() const { return entries_.count(); }
    pd_entry_hdl next(pd_entry_hdl after) const { return entries_.next(after); }

    // None for an unknown entry, and for one that its copy lacks.
    std::optional<EntryView> software(pd_entry_hdl entry) const;
    std::optional<EntryView> hardware(pd_entry_hdl entry) const;

    // From here on the hardware shows `copy`, nothing for none, until the entry is written again.
    void set_hardware(pd_entry_hdl entry, std::optional<EntryCopy> copy);

    std::map<u32, Property> properties; // by number
    Listeners listeners;

private:
    void take(News &news, u32 kind, pd_entry_hdl entry) const;

    MatchTable entries_;
    EntryCopy default_;
    std::unordered_map<pd_entry_hdl, std::optional<EntryCopy>> hardware_; // where it differs
};

} // namespace model
