#include "table.h"

#include "default_entry.h"

namespace model {

Table::Table(const ProgramTable &program) : entries_{program}, default_{program_default(program)} {}

void Table::take(News &news, u32 kind, pd_entry_hdl entry) const
{
    news.take(listeners, kind, program().handle, entry, *software(entry));
}

pd_status Table::add(const pipe_match_spec &match, u32 action, const pipe_action_spec &spec, u32 ttl,
                     u32 capacity, pd_entry_hdl &entry, News &news)
{
    if (const pd_status status = entries_.add(match, action, spec, ttl, capacity, entry))
        return status;
    take(news, TS_MODEL_ENTRY_ADDED, entry);
    return ok;
}

pd_status Table::set_action(pd_entry_hdl entry, u32 action, const pipe_action_spec &spec, News &news)
{
    const bool is_default = entry == TS_MODEL_DEFAULT_ENTRY;
    if (is_default)
        default_.write_action(action, spec);
    else if (const pd_status status = entries_.set_action(entry, action, spec))
        return status;
    hardware_.erase(entry);
    take(news, is_default ? TS_MODEL_DEFAULT_SET : TS_MODEL_ENTRY_MODIFIED, entry);
    return ok;
}

pd_status Table::remove(pd_entry_hdl entry, News &news)
{
    if (!entries_.get(entry))
        return unknown_object;
    take(news, TS_MODEL_ENTRY_DELETED, entry);
    hardware_.erase(entry);
    return entries_.remove(entry);
}

void Table::reset_default(News &news)
{
    default_ = program_default(program());
    hardware_.erase(TS_MODEL_DEFAULT_ENTRY);
    take(news, TS_MODEL_DEFAULT_RESET, TS_MODEL_DEFAULT_ENTRY);
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
