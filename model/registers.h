// The cells of one register: by index, or by entry where it hangs on a match table. A cell that nobody has
// touched is 0 in every pipe.
#pragma once

#include <tsl/robin_map.h>

#include <array>

#include "model.h"
#include "pipe_stful.h"

namespace model {

// The pipes that a target means; none for a pipe that the device lacks.
struct Pipes {
    u32 first;
    u32 count;
};

constexpr Pipes all_pipes{0, TS_MODEL_PIPES};

constexpr Pipes pipes_of(u32 pipe_id)
{
    if (pipe_id == PIPE_ALL_PIPES)
        return all_pipes;
    return pipe_id < TS_MODEL_PIPES ? Pipes{pipe_id, 1} : Pipes{0, 0};
}

class RegisterCells {
public:
    // `values` has room for one value per pipe.
    void read(u32 cell, Pipes pipes, bool from_hw, pipe_stful_value *values) const;
    void write(u32 cell, Pipes pipes, const pipe_stful_value &value);
    void write_hardware(u32 cell, Pipes pipes, const pipe_stful_value &value);
    void drop(u32 cell) { cells_.erase(cell); }

    // Brings the software copy up to date.
    void sync_all(Pipes pipes);

private:
    using Values = std::array<pipe_stful_value, TS_MODEL_PIPES>;

    struct Cell {
        Values software;
        Values hardware;
    };

    tsl::robin_pg_map<u32, Cell> cells_;
};

} // namespace model
