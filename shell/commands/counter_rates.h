// What a session has seen of counters, so that it can tell by how much they have gone up since.
#pragma once

#include <chrono>
#include <map>
#include <unordered_map>

#include "pd_types.h"
#include "reflection_records.h"

namespace shell {

class CounterRates {
public:
    struct Seen {
        std::chrono::steady_clock::time_point when{};
        double seconds = 0; // between the last two looks
        std::unordered_map<pd_entry_hdl, pd_counter_value> counts;
    };

    // What was seen of it before, for a look at this moment.
    Seen &next(const reflection::CounterFunctions &counter);

private:
    std::map<const reflection::CounterFunctions *, Seen> seen_;
};

} // namespace shell
