// The ageing of a match table's entries.
#pragma once

#include <tsl/robin_map.h>

#include <vector>

#include "pipe_mgr_idle.h"

namespace model {

class IdleTime {
public:
    pipe_idle_params params{};
    bool enabled = false;
    pipe_idle_tmo_cb callback = nullptr;
    pd_word cookie = 0;

    void restart(pd_entry_hdl entry, u32 ttl); // an entry with a ttl of 0 does not age
    void expire(pd_entry_hdl entry) { left_[entry] = 0; }
    void drop(pd_entry_hdl entry) { left_.erase(entry); }
    bool is_idle(pd_entry_hdl entry) const;

    // Lets time pass while ageing is on. Gives the entries that became idle by it, in ascending order.
    std::vector<pd_entry_hdl> age(u32 ticks);

private:
    tsl::robin_pg_map<pd_entry_hdl, u32> left_; // ticks until the entry is idle
};

} // namespace model
