// Which of the entries that a key matches wins: the lower priority number, the earlier entry among equals.
// The order in which they are entered makes no difference.
#pragma once

#include "model.h"

namespace model {

class Ranking {
public:
    void enter(pd_entry_hdl entry, u32 priority)
    {
        ++hit_.candidates;
        if (hit_.hit == 0 || wins(entry, priority, hit_.entry, hit_.priority)) {
            hit_.runner_up = hit_.entry;
            hit_.runner_up_priority = hit_.priority;
            hit_.hit = 1;
            hit_.entry = entry;
            hit_.priority = priority;
        } else if (hit_.runner_up == 0 || wins(entry, priority, hit_.runner_up, hit_.runner_up_priority)) {
            hit_.runner_up = entry;
            hit_.runner_up_priority = priority;
        }
    }

    const ts_model_hit &hit() const { return hit_; }

private:
    static bool wins(pd_entry_hdl entry, u32 priority, pd_entry_hdl other, u32 other_priority)
    {
        return priority != other_priority ? priority < other_priority : entry < other;
    }

    ts_model_hit hit_{};
};

} // namespace model
