// Recorded driver calls as the commands that make them.
#pragma once

#include <map>
#include <set>
#include <string>
#include <utility>

#include "arguments.h"
#include "explain_services.h"
#include "reflection.h"

namespace shell {

// Goes over the calls of one record in their order. Entries are named by their keys, members and groups by m
// and g with the handles that they had, as far as the record tells how they came to be.
class Explainer {
public:
    // Empty for a call that no command makes, or that failed.
    std::string command(const tap::RecordedCall &call);

private:
    using Call = tap::Arguments;
    using Maker = std::string (Explainer::*)(const Call &);
    struct Row {
        std::string_view operation;
        Maker make;
    };
    static const Row rows[];

    std::string add(const Call &call);
    std::string modify(const Call &call);
    std::string modify_by_key(const Call &call);
    std::string remove(const Call &call);
    std::string remove_by_key(const Call &call);
    std::string set_default(const Call &call);
    std::string reset_default(const Call &call);
    std::string set_property(const Call &call);
    std::string add_member(const Call &call);
    std::string modify_member(const Call &call);
    std::string remove_member(const Call &call);
    std::string create_group(const Call &call);
    std::string delete_group(const Call &call);
    std::string join(const Call &call);
    std::string leave(const Call &call);
    std::string activate(const Call &call);
    std::string deactivate(const Call &call);
    std::string set_fallback(const Call &call);
    std::string reset_fallback(const Call &call);
    std::string write_counter(const Call &call);
    std::string write_direct_counter(const Call &call);
    std::string set_meter(const Call &call);
    std::string set_direct_meter(const Call &call);
    std::string adjust_meter(const Call &call);
    std::string sync_counter(const Call &call);
    std::string sync_direct_counter(const Call &call);
    std::string write_register(const Call &call);
    std::string fill_registers(const Call &call);
    std::string reset_registers(const Call &call);
    std::string sync_registers(const Call &call);
    std::string set_digest_timeout(const Call &call);
    std::string keep_idle_params(const Call &call);
    std::string enable_idle(const Call &call);
    std::string set_ttl(const Call &call);
    std::string restart_ttl(const Call &call);
    std::string set_hit_state(const Call &call);

    bool has_no_command(const Call &call) const;
    std::string entry(u32 table, u32 handle) const;
    std::string entry_command(const char *command, const Call &call, const std::string &entry) const;
    std::string key(const Call &call) const;
    std::string body(const reflection::TableFunctions &table, const pipe_action_spec &spec) const;
    std::string label(char letter, u32 table, u32 handle) const;
    std::string member(u32 profile_table, u32 handle) const;
    std::string group(u32 selector, u32 handle) const;
    std::string member_command(const char *command, const Call &call) const;
    std::string group_command(const char *command, const Call &call, const char *behind = "") const;

    using Place = std::pair<u32, u32>;  // table, handle
    std::map<Place, std::string> keys_; // of entries; empty where no command adds them
    std::set<Place> named_;             // members and groups that the record has seen come
    std::map<u32, pipe_idle_params> idle_params_;
    ServiceExplainer services_;
};

} // namespace shell
