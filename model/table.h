// All that a device holds for one match table: its entries, its default entry, where the hardware's copy of
// them differs, its properties and who listens for its updates.
#pragma once

#include <map>
#include <optional>
#include <unordered_map>

#include "counters.h"
#include "idle_time.h"
#include "match_table.h"
#include "profile.h"
#include "registers.h"
#include "updates.h"

namespace model {

// The value and the second value of a property.
struct Property {
    u32 value;
    u32 second;
};

class Table {
public:
    // `profile` is null for a direct table.
    Table(const ProgramTable &program, Profile *profile);

    const ProgramTable &program() const { return entries_.program(); }
    const Profile *profile() const { return profile_; }

    // The records have been checked against the program, but not the member or group that they name. What is
    // written is the same in both copies after it.
    pd_status add(const pipe_match_spec &match, u32 action, const pipe_action_spec &spec, u32 ttl,
                  u32 capacity, pd_entry_hdl &entry, News &news);
    pd_status set_action(pd_entry_hdl entry, u32 action, const pipe_action_spec &spec, News &news);
    pd_status remove(pd_entry_hdl entry, News &news);
    void reset_default(News &news);

    // Attaches, detaches or, by its tag, leaves alone the one resource of an entry.
    pd_status set_resource(pd_entry_hdl entry, const pipe_res_spec &resource, News &news);

    // Of the default entry, which does not age, nothing changes.
    void set_ttl(pd_entry_hdl entry, u32 ttl);
    void restart_ttl(pd_entry_hdl entry);

    pd_entry_hdl find(const pipe_match_spec &match) { return entries_.find(match); }
    // What a packet with this key hits, by either copy.
    ts_model_hit look_up(const u8 *key, u32 partition);
    ts_model_hit look_up_hardware(const u8 *key, u32 partition);
    u32 count() const { return entries_.count(); }
    bool has(pd_entry_hdl entry) const { return entry == TS_MODEL_DEFAULT_ENTRY || entries_.has(entry); }
    pd_entry_hdl next(pd_entry_hdl after) const { return entries_.next(after); }

    // None for an unknown entry, and for one that its copy lacks.
    std::optional<EntryView> software(pd_entry_hdl entry) const;
    std::optional<EntryView> hardware(pd_entry_hdl entry) const;

    // From here on the hardware shows `copy`, nothing for none, until the entry is written again.
    void set_hardware(pd_entry_hdl entry, std::optional<EntryCopy> copy);

    std::map<u32, Property> properties; // by number
    Listeners listeners;
    CounterCells counts; // by entry, like the next two
    RegisterCells registers;
    IdleTime idle;

private:
    void take(News &news, u32 kind, pd_entry_hdl entry) const;
    pd_status check_reference(u32 action, const pipe_action_spec &spec) const;
    void hold(const pipe_action_spec &spec);
    void release(const EntryView &entry);

    Profile *const profile_;

    MatchTable entries_;
    EntryCopy default_;
    std::unordered_map<pd_entry_hdl, std::optional<EntryCopy>> hardware_; // where it differs
};

} // namespace model
