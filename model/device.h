// What the model holds for each device. One lock per device guards all of it.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "objects.h"
#include "selection_store.h"
#include "table.h"

namespace model {

class Device {
public:
    std::mutex mutex;

    Table &table(const ProgramTable &table);
    std::map<pd_word, SelectionState> selections; // by state handle

    void clear();

private:
    std::vector<std::unique_ptr<Table>> tables_; // made on first use, in the program's order
};

// Device ids reach from 0 to 255; null above. A device exists from its first use on.
Device *find_device(u32 device_id);
void reset_devices();

// How many entries a table takes, on every device.
u32 capacity_of(const ProgramTable &table);
void set_capacity(const ProgramTable &table, u32 entries);

// Runs `use` on the table of a device under the device's lock.
template <typename Use>
pd_status with_table(u32 device_id, u32 table_handle, Use use)
{
    Device *device = find_device(device_id);
    const ProgramTable *table = find_table(table_handle);
    if (device == nullptr || table == nullptr)
        return unknown_object;
    const std::lock_guard lock{device->mutex};
    return use(device->table(*table));
}

} // namespace model
