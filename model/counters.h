// The cells of one counter: by index, or by entry where a match table has it. A cell that nobody has touched
// is 0.
#pragma once

#include <tsl/robin_map.h>

#include "pipe_mgr_stat.h"

namespace model {

class CounterCells {
public:
    pipe_stat_data read(u32 cell) const; // the software copy
    void write(u32 cell, const pipe_stat_data &counts);
    void count(u32 cell, u64 packets, u64 bytes); // in the hardware copy
    void drop(u32 cell) { cells_.erase(cell); }

    // Bring the software copy up to date.
    void sync(u32 cell);
    void sync_all();

private:
    struct Cell {
        pipe_stat_data software;
        pipe_stat_data hardware;
    };

    tsl::robin_pg_map<u32, Cell> cells_;
};

} // namespace model
