// The tables whose entries a session sees running idle, through the callbacks of the driver.
#pragma once

#include <set>
#include <utility>
#include <vector>

#include "reflection.h"

namespace shell {

class IdleWatches {
public:
    IdleWatches() = default;
    IdleWatches(const IdleWatches &) = delete;
    IdleWatches &operator=(const IdleWatches &) = delete;

    // Each throws BadLine when the driver refuses.
    void add(const reflection::TableFunctions &table);
    void remove(const reflection::TableFunctions &table);
    // Takes all back, whatever the driver says.
    void clear();

    using Entry = std::pair<const reflection::TableFunctions *, pd_entry_hdl>;
    // Those that ran idle since the last call.
    std::vector<Entry> take_expired() { return std::exchange(expired_, {}); }

private:
    std::set<const reflection::TableFunctions *> tables_;
    std::vector<Entry> expired_;
};

} // namespace shell
