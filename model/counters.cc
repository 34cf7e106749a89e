#include "counters.h"

namespace model {

pipe_stat_data CounterCells::read(u32 cell) const
{
    const auto found = cells_.find(cell);
    return found != cells_.end() ? found->second.software : pipe_stat_data{};
}

void CounterCells::write(u32 cell, const pipe_stat_data &counts)
{
    cells_[cell] = {counts, counts};
}

void CounterCells::count(u32 cell, u64 packets, u64 bytes)
{
    pipe_stat_data &hardware = cells_[cell].hardware;
    hardware.first_count += packets;
    hardware.second_count += bytes;
}

void CounterCells::sync(u32 cell)
{
    const auto found = cells_.find(cell);
    if (found != cells_.end())
        found.value().software = found->second.hardware;
}

void CounterCells::sync_all()
{
    for (auto cell = cells_.begin(); cell != cells_.end(); ++cell)
        cell.value().software = cell->second.hardware;
}

} // namespace model
