#include "idle_time.h"

#include <algorithm>

namespace model {

void IdleTime::restart(pd_entry_hdl entry, u32 ttl)
{
    if (ttl != 0)
        left_[entry] = ttl;
    else
        left_.erase(entry);
}

bool IdleTime::is_idle(pd_entry_hdl entry) const
{
    const auto found = left_.find(entry);
    return found != left_.end() && found->second == 0;
}

std::vector<pd_entry_hdl> IdleTime::age(u32 ticks)
{
    std::vector<pd_entry_hdl> expired;
    if (!enabled)
        return expired;
    for (auto entry = left_.begin(); entry != left_.end(); ++entry) {
        u32 &left = entry.value();
        if (left != 0 && left <= ticks)
            expired.push_back(entry->first);
        left -= std::min(left, ticks);
    }
    std::ranges::sort(expired);
    return expired;
}

} // namespace model
