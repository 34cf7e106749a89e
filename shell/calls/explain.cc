#include "explain.h"

#include <algorithm>
#include <utility>

#include "explain_texts.h"
#include "profiles.h"
#include "resources.h"

namespace shell {

using reflection::ProfileFunctions;
using reflection::TableFunctions;

// ---- Entries ----------------------------------------------------------------------------------------------

// Whether the call is about an entry that no command has added.
bool Explainer::has_no_command(const Call &call) const
{
    for (const char *name : {"entry", "first"}) {
        const auto known = keys_.find({call.word("table"), call.word(name)});
        if (known != keys_.end() && known->second.empty())
            return true;
    }
    return false;
}

// The key where the record tells it, the handle elsewhere.
std::string Explainer::entry(u32 table, u32 handle) const
{
    const auto known = keys_.find({table, handle});
    return known != keys_.end() ? known->second : std::to_string(handle);
}

std::string Explainer::body(const TableFunctions &table, const pipe_action_spec &spec) const
{
    if (!table.indirect)
        return {};
    const pd::Profile &profile = *table.indirect->profile->row;
    if (spec.action_kind == PIPE_ACTION_MEMBER)
        return "member " + member(profile.action_table, spec.member_hdl);
    return spec.action_kind == PIPE_ACTION_GROUP ? "group " + group(profile.selector, spec.group_hdl) : "";
}

// Of an operation that gives an entry its action: the command, the entry, and what it does.
std::string Explainer::entry_command(const char *command, const Call &call, const std::string &entry) const
{
    const TableFunctions *table = reflection::find_table(call.word("table"));
    if (!table)
        return {};
    std::string body = this->body(*table, call.action);
    if (body.empty())
        body = action_text(table->row->actions, call.word("action"), call.action);
    return body.empty() ? body
                        : joined(command, table->row->name, entry + (entry.empty() ? ": " : " : ") + body) +
                              meter_text(*table, call.action);
}

// The key of the call; empty where no command takes it.
std::string Explainer::key(const Call &call) const
{
    const TableFunctions *table = reflection::find_table(call.word("table"));
    return table ? key_text(*table, call.match) : std::string{};
}

std::string Explainer::add(const Call &call)
{
    std::string key = this->key(call);
    std::string text = key.empty() ? key : entry_command("add", call, key);
    if (text.empty())
        key.clear();
    else if (call.number("ttl") != 0)
        text += " ttl=" + std::to_string(call.number("ttl"));
    keys_[{call.word("table"), call.word("entry")}] = std::move(key);
    return text;
}

std::string Explainer::modify(const Call &call)
{
    return entry_command("modify", call, entry(call.word("table"), call.word("entry")));
}

std::string Explainer::modify_by_key(const Call &call)
{
    const std::string key = this->key(call);
    return key.empty() ? key : entry_command("modify", call, key);
}

std::string Explainer::remove(const Call &call)
{
    const Place place{call.word("table"), call.word("entry")};
    std::string text = table_command("delete", call, entry(place.first, place.second));
    keys_.erase(place);
    return text;
}

std::string Explainer::remove_by_key(const Call &call)
{
    const std::string key = this->key(call);
    if (key.empty())
        return {};
    std::erase_if(keys_, [&](const auto &known) {
        return known.first.first == call.word("table") && known.second == key;
    });
    return table_command("delete", call, key);
}

std::string Explainer::set_default(const Call &call)
{
    return entry_command("default", call, {});
}

std::string Explainer::reset_default(const Call &call)
{
    return table_command("reset", call);
}

std::string Explainer::set_property(const Call &call)
{
    return table_command("property", call,
                         std::to_string(call.number("property")) + ' ' +
                             std::to_string(call.number("value")) + ' ' +
                             std::to_string(call.number("second_value")));
}

// ---- Members and groups -----------------------------------------------------------------------------------

// As the record's commands name it, or by its handle.
std::string Explainer::label(char letter, u32 table, u32 handle) const
{
    std::string text;
    if (named_.contains({table, handle}))
        text += letter;
    return text += std::to_string(handle);
}

std::string Explainer::member(u32 profile_table, u32 handle) const
{
    return label('m', profile_table, handle);
}

std::string Explainer::group(u32 selector, u32 handle) const
{
    return label('g', selector, handle);
}

std::string Explainer::add_member(const Call &call)
{
    named_.insert({call.word("table"), call.word("member")});
    std::string text = member_command("member add", call);
    if (text.empty())
        named_.erase({call.word("table"), call.word("member")});
    return text;
}

std::string Explainer::modify_member(const Call &call)
{
    return member_command("member modify", call);
}

std::string Explainer::remove_member(const Call &call)
{
    const Place place{call.word("table"), call.word("member")};
    std::string text = profile_command("member delete", call, member(place.first, place.second));
    named_.erase(place);
    return text;
}

std::string Explainer::create_group(const Call &call)
{
    const Place place{call.word("table"), call.word("group")};
    named_.insert(place);
    return profile_command("group create", call,
                           group(place.first, place.second) +
                               " size=" + std::to_string(call.number("max_group_size")));
}

std::string Explainer::delete_group(const Call &call)
{
    const Place place{call.word("table"), call.word("group")};
    std::string text = profile_command("group delete", call, group(place.first, place.second));
    named_.erase(place);
    return text;
}

// The command, the member, and its action, if that is one of the profile's.
std::string Explainer::member_command(const char *command, const Call &call) const
{
    const ProfileFunctions *profile = profile_by_table(call.word("table"));
    if (!profile)
        return {};
    const std::string action = action_text(profile->row->actions, call.word("action"), call.action);
    return action.empty() ? action
                          : profile_command(command, call,
                                            member(call.word("table"), call.word("member")) + " : " + action);
}

std::string Explainer::group_command(const char *command, const Call &call, const char *behind) const
{
    const ProfileFunctions *profile = profile_by_table(call.word("table"));
    return profile ? profile_command(command, call,
                                     group(profile->row->selector, call.word("group")) + ' ' +
                                         member(profile->row->action_table, call.word("member")) + behind)
                   : std::string{};
}

std::string Explainer::join(const Call &call)
{
    return group_command("group add", call);
}

std::string Explainer::leave(const Call &call)
{
    return group_command("group remove", call);
}

std::string Explainer::activate(const Call &call)
{
    return group_command("group state", call, " active");
}

std::string Explainer::deactivate(const Call &call)
{
    return group_command("group state", call, " inactive");
}

std::string Explainer::set_fallback(const Call &call)
{
    const ProfileFunctions *profile = profile_by_table(call.word("table"));
    return profile ? profile_command("group fallback", call,
                                     member(profile->row->action_table, call.word("member")))
                   : std::string{};
}

std::string Explainer::reset_fallback(const Call &call)
{
    return profile_command("group fallback", call, "none");
}

// ---- Resources --------------------------------------------------------------------------------------------

std::string Explainer::write_counter(const Call &call)
{
    return named_command("counter write", reflection::counters(), call.word("counter"),
                         std::to_string(call.number("index")) + counts_text(call.counts));
}

std::string Explainer::write_direct_counter(const Call &call)
{
    const u32 table = call.word("table");
    return named_command("counter write", reflection::counters(), table,
                         entry(table, call.word("entry")) + counts_text(call.counts));
}

std::string Explainer::set_meter(const Call &call)
{
    return meter_command(call.word("meter"), std::to_string(call.number("index")), call.meter);
}

std::string Explainer::set_direct_meter(const Call &call)
{
    if (call.resources.size() != 1 || call.resources.front().res_tag != PIPE_RES_ATTACH)
        return {};
    const pipe_res_spec &meter = call.resources.front();
    return meter_command(meter.res_handle, entry(call.word("table"), call.word("entry")),
                         meter.res_data.meter);
}

std::string Explainer::adjust_meter(const Call &call)
{
    return named_command("meter adjust", reflection::meters(), call.word("meter"),
                         std::to_string(call.number("adjust")));
}

std::string Explainer::sync_counter(const Call &call)
{
    return named_command("counter sync", reflection::counters(), call.word("counter"));
}

std::string Explainer::sync_direct_counter(const Call &call)
{
    return named_command("counter sync", reflection::counters(), call.word("table"));
}

std::string Explainer::write_register(const Call &call)
{
    return named_command("register write", reflection::registers(), call.word("table"),
                         std::to_string(call.number("index")) + ' ' +
                             std::to_string(call.value.bytes[0] & 1));
}

std::string Explainer::fill_registers(const Call &call)
{
    if (!call.has_value)
        return named_command("register reset", reflection::registers(), call.word("table"));
    return named_command("register fill", reflection::registers(), call.word("table"),
                         std::to_string(call.value.bytes[0] & 1));
}

std::string Explainer::reset_registers(const Call &call)
{
    if (call.has_value)
        return {};
    return named_command("register reset", reflection::registers(), call.word("table"),
                         std::to_string(call.number("start")) +
                             " count=" + std::to_string(call.number("count")));
}

std::string Explainer::sync_registers(const Call &call)
{
    return named_command("register sync", reflection::registers(), call.word("table"));
}

// ---- Idle time --------------------------------------------------------------------------------------------

// One command makes both calls: it is told at the second.
std::string Explainer::keep_idle_params(const Call &call)
{
    idle_params_[call.word("table")] = call.idle;
    return {};
}

std::string Explainer::enable_idle(const Call &call)
{
    if (call.number("enable") == 0)
        return table_command("idle disable", call);
    const auto known = idle_params_.find(call.word("table"));
    if (known == idle_params_.end())
        return table_command("idle enable", call);
    const pipe_idle_params &params = known->second;
    std::string text = "mode=" + std::to_string(params.idle_mode);
    u32 number = 0;
    for (const u32 param : {params.idle_param_1, params.idle_param_2, params.idle_param_3,
                            params.idle_param_4, params.idle_param_5})
        text += " param_" + std::to_string(++number) + '=' + std::to_string(param);
    return table_command("idle enable", call, text);
}

std::string Explainer::set_ttl(const Call &call)
{
    return table_command("idle ttl", call,
                         entry(call.word("table"), call.word("entry")) +
                             " ttl=" + std::to_string(call.number("ttl")));
}

std::string Explainer::restart_ttl(const Call &call)
{
    return table_command("idle restart", call, entry(call.word("table"), call.word("entry")));
}

std::string Explainer::set_hit_state(const Call &call)
{
    return table_command(call.number("second") != 0 ? "idle hit" : "idle expire", call,
                         entry(call.word("table"), call.word("first")));
}

// ---- Digests ----------------------------------------------------------------------------------------------

std::string Explainer::set_digest_timeout(const Call &call)
{
    return "digest timeout " + std::to_string(call.number("timeout"));
}

// ---- Operations -------------------------------------------------------------------------------------------

const Explainer::Row Explainer::rows[] = {
    {"pipe_mgr_mat_ent_add", &Explainer::add},
    {"pipe_mgr_mat_ent_set_action", &Explainer::modify},
    {"pipe_mgr_mat_ent_set_action_by_match_spec", &Explainer::modify_by_key},
    {"pipe_mgr_mat_ent_del", &Explainer::remove},
    {"pipe_mgr_mat_ent_del_by_match_spec", &Explainer::remove_by_key},
    {"pipe_mgr_mat_default_entry_set", &Explainer::set_default},
    {"pipe_mgr_mat_tbl_default_entry_reset", &Explainer::reset_default},
    {"pipe_mgr_tbl_set_property", &Explainer::set_property},
    {"pipe_mgr_adt_ent_add", &Explainer::add_member},
    {"pipe_mgr_adt_ent_set", &Explainer::modify_member},
    {"pipe_mgr_adt_ent_del", &Explainer::remove_member},
    {"pipe_mgr_sel_grp_add", &Explainer::create_group},
    {"pipe_mgr_sel_grp_del", &Explainer::delete_group},
    {"pipe_mgr_sel_grp_mbr_add", &Explainer::join},
    {"pipe_mgr_sel_grp_mbr_del", &Explainer::leave},
    {"pipe_mgr_sel_grp_mbr_enable", &Explainer::activate},
    {"pipe_mgr_sel_grp_mbr_disable", &Explainer::deactivate},
    {"pipe_mgr_sel_fallback_mbr_set", &Explainer::set_fallback},
    {"pipe_mgr_sel_fallback_mbr_reset", &Explainer::reset_fallback},
    {"pipe_mgr_mat_ent_set_resource", &Explainer::set_direct_meter},
    {"pipe_mgr_stat_ent_set", &Explainer::write_counter},
    {"pipe_mgr_mat_ent_direct_stat_set", &Explainer::write_direct_counter},
    {"pipe_mgr_meter_ent_set", &Explainer::set_meter},
    {"pipe_mgr_meter_set_bytecount_adjust", &Explainer::adjust_meter},
    {"pipe_mgr_stat_database_sync", &Explainer::sync_counter},
    {"pipe_mgr_direct_stat_database_sync", &Explainer::sync_direct_counter},
    {"pipe_stful_database_sync", &Explainer::sync_registers},
    {"pipe_mgr_flow_lrn_set_timeout", &Explainer::set_digest_timeout},
    {"pipe_stful_ent_set", &Explainer::write_register},
    {"pipe_stful_table_reset", &Explainer::fill_registers},
    {"pipe_stful_table_reset_range", &Explainer::reset_registers},
    {"pipe_mgr_idle_set_params", &Explainer::keep_idle_params},
    {"pipe_mgr_idle_tmo_set_enable", &Explainer::enable_idle},
    {"pipe_mgr_mat_ent_set_idle_ttl", &Explainer::set_ttl},
    {"pipe_mgr_mat_ent_reset_idle_ttl", &Explainer::restart_ttl},
    {"pipe_mgr_idle_time_update_hit_state", &Explainer::set_hit_state},
};

std::string Explainer::command(const tap::RecordedCall &call)
{
    const auto row = std::ranges::find(rows, std::string_view{call.operation().name}, &Row::operation);
    if (call.operation().returns != tap::Returns::status || call.header.result != 0 || call.header.depth != 0)
        return {};
    const Call arguments{call};
    if (!arguments.ok())
        return {};
    if (row == std::end(rows))
        return services_.command(call.operation().name, arguments);
    const bool of_unknown = row->make != &Explainer::add && has_no_command(arguments);
    const std::string text = (this->*row->make)(arguments);
    return of_unknown ? std::string{} : text;
}

} // namespace shell
