// What indexed meters and discard tables keep: what was set, by index. A cell that nobody has set is 0.
#pragma once

#include <tsl/robin_map.h>

#include "pipe_mgr_meter.h"

namespace model {

using MeterCells = tsl::robin_pg_map<u32, pipe_meter_spec>;
using WredCells = tsl::robin_pg_map<u32, pipe_wred_spec>;

template <typename Cells>
typename Cells::mapped_type read_cell(const Cells &cells, u32 index)
{
    const auto found = cells.find(index);
    return found != cells.end() ? found->second : typename Cells::mapped_type{};
}

} // namespace model
