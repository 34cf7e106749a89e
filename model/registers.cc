#include "registers.h"

#include <algorithm>

namespace model {

void RegisterCells::read(u32 cell, Pipes pipes, bool from_hw, pipe_stful_value *values) const
{
    const auto found = cells_.find(cell);
    if (found == cells_.end()) {
        std::fill_n(values, pipes.count, pipe_stful_value{});
        return;
    }
    const Values &copy = from_hw ? found->second.hardware : found->second.software;
    std::copy_n(copy.begin() + pipes.first, pipes.count, values);
}

void RegisterCells::write(u32 cell, Pipes pipes, const pipe_stful_value &value)
{
    write_hardware(cell, pipes, value);
    std::fill_n(cells_[cell].software.begin() + pipes.first, pipes.count, value);
}

void RegisterCells::write_hardware(u32 cell, Pipes pipes, const pipe_stful_value &value)
{
    std::fill_n(cells_[cell].hardware.begin() + pipes.first, pipes.count, value);
}

void RegisterCells::sync_all(Pipes pipes)
{
    for (auto cell = cells_.begin(); cell != cells_.end(); ++cell)
        std::copy_n(cell->second.hardware.begin() + pipes.first, pipes.count,
                    cell.value().software.begin() + pipes.first);
}

} // namespace model
