// What the operations on indexed counters, meters and registers have in common.
#pragma once

#include "device.h"

namespace model {

// Runs `use` on the cells of an indexed resource under the device's lock; `made` are those of its kind that
// the device has.
template <typename Cells, typename Use>
pd_status with_indexed(u32 device_id, std::map<u32, Cells> Device::*made,
                       std::span<const ProgramResource> resources, u32 handle, Use use)
{
    return with_device(device_id, [&](Device &device) {
        const auto found = (device.*made).find(handle);
        if (found != (device.*made).end())
            return use(found->second);
        return is_indexed(resources, handle) ? use((device.*made)[handle]) : unknown_object;
    });
}

// Whether the index is one of a cell of an indexed counter, meter or discard table.
constexpr bool has_cell(u32 index)
{
    return index < TS_MODEL_INDEXED_CELLS;
}

} // namespace model
