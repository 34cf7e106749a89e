#include "table.h"

#include "default_entry.h"
#include "ranking.h"

namespace model {

namespace {

bool matches(const EntryView &entry, const u8 *key, u32 partition)
{
    if (entry.partition != partition)
        return false;
    for (std::size_t at = 0; at < entry.mask.size(); ++at)
        if (((entry.value[at] ^ key[at]) & entry.mask[at]) != 0)
            return false;
    return true;
}

} // namespace

Table::Table(const ProgramTable &program, Profile *profile)
    : profile_{profile}, entries_{program}, default_{program_default(program)}
{
}

void Table::take(News &news, u32 kind, pd_entry_hdl entry) const
{
    news.take(listeners, kind, program().handle, entry, *software(entry));
}

pd_status Table::check_reference(u32 action, const pipe_action_spec &spec) const
{
    return profile_ != nullptr ? profile_->check({spec.action_kind, member_or_group(spec)}, action) : ok;
}

void Table::hold(const pipe_action_spec &spec)
{
    if (profile_ != nullptr)
        profile_->hold({spec.action_kind, member_or_group(spec)});
}

void Table::release(const EntryView &entry)
{
    if (profile_ != nullptr && entry.action_kind != PIPE_ACTION_NONE)
        profile_->release({entry.action_kind, entry.member_or_group});
}

pd_status Table::add(const pipe_match_spec &match, u32 action, const pipe_action_spec &spec, u32 ttl,
                     u32 capacity, pd_entry_hdl &entry, News &news)
{
    if (const pd_status status = check_reference(action, spec))
        return status;
    if (const pd_status status = entries_.add(match, action, spec, ttl, capacity, entry))
        return status;
    hold(spec);
    restart_ttl(entry);
    take(news, TS_MODEL_ENTRY_ADDED, entry);
    return ok;
}

pd_status Table::set_action(pd_entry_hdl entry, u32 action, const pipe_action_spec &spec, News &news)
{
    const auto before = software(entry);
    if (!before)
        return unknown_object;
    if (const pd_status status = check_reference(action, spec))
        return status;
    hold(spec);
    release(*before);
    const bool is_default = entry == TS_MODEL_DEFAULT_ENTRY;
    if (is_default)
        default_.write_action(action, spec);
    else
        entries_.set_action(entry, action, spec);
    hardware_.erase(entry);
    take(news, is_default ? TS_MODEL_DEFAULT_SET : TS_MODEL_ENTRY_MODIFIED, entry);
    return ok;
}

pd_status Table::remove(pd_entry_hdl entry, News &news)
{
    const auto contents = entries_.get(entry);
    if (!contents)
        return unknown_object;
    release(*contents);
    take(news, TS_MODEL_ENTRY_DELETED, entry);
    hardware_.erase(entry);
    counts.drop(entry);
    registers.drop(entry);
    idle.drop(entry);
    return entries_.remove(entry);
}

void Table::reset_default(News &news)
{
    release(default_.view());
    default_ = program_default(program());
    hardware_.erase(TS_MODEL_DEFAULT_ENTRY);
    take(news, TS_MODEL_DEFAULT_RESET, TS_MODEL_DEFAULT_ENTRY);
}

pd_status Table::set_resource(pd_entry_hdl entry, const pipe_res_spec &resource, News &news)
{
    if (!has(entry))
        return unknown_object;
    if (resource.res_tag == PIPE_RES_KEEP)
        return ok;
    const bool is_default = entry == TS_MODEL_DEFAULT_ENTRY;
    if (is_default)
        default_.set_resource(resource);
    else
        entries_.set_resource(entry, resource);
    const auto differing = hardware_.find(entry);
    if (differing != hardware_.end() && differing->second)
        differing->second->set_resource(resource);
    take(news, is_default ? TS_MODEL_DEFAULT_SET : TS_MODEL_ENTRY_MODIFIED, entry);
    return ok;
}

void Table::set_ttl(pd_entry_hdl entry, u32 ttl)
{
    entries_.set_ttl(entry, ttl);
    restart_ttl(entry);
}

void Table::restart_ttl(pd_entry_hdl entry)
{
    if (!program().idle_time)
        return;
    if (const auto contents = entries_.get(entry))
        idle.restart(entry, contents->ttl);
}

ts_model_hit Table::look_up(const u8 *key, u32 partition)
{
    Ranking ranking;
    entries_.visit_matches(key, partition,
                           [&](pd_entry_hdl entry, u32 priority) { ranking.enter(entry, priority); });
    return ranking.hit();
}

ts_model_hit Table::look_up_hardware(const u8 *key, u32 partition)
{
    Ranking ranking;
    entries_.visit_matches(key, partition, [&](pd_entry_hdl entry, u32 priority) {
        if (!hardware_.contains(entry))
            ranking.enter(entry, priority);
    });
    for (const auto &[entry, copy] : hardware_)
        if (copy && entry != TS_MODEL_DEFAULT_ENTRY && matches(copy->view(), key, partition))
            ranking.enter(entry, copy->view().priority);
    return ranking.hit();
}

std::optional<EntryView> Table::software(pd_entry_hdl entry) const
{
    return entry == TS_MODEL_DEFAULT_ENTRY ? default_.view() : entries_.get(entry);
}

std::optional<EntryView> Table::hardware(pd_entry_hdl entry) const
{
    const auto differing = hardware_.find(entry);
    if (differing == hardware_.end())
        return software(entry);
    return differing->second ? std::optional{differing->second->view()} : std::nullopt;
}

void Table::set_hardware(pd_entry_hdl entry, std::optional<EntryCopy> copy)
{
    hardware_[entry] = std::move(copy);
}

} // namespace model
