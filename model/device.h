// What the model holds for each device. One lock per device guards all of it.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "digests.h"
#include "hash_calculation.h"
#include "meters.h"
#include "objects.h"
#include "profile.h"
#include "selection_store.h"
#include "snapshots.h"
#include "table.h"
#include "value_set.h"

namespace model {

class Device {
public:
    std::mutex mutex;

    Table &table(const ProgramTable &table);
    Profile &profile(const ProgramProfile &profile);
    std::map<pd_word, SelectionState> selections; // by state handle
    Digests digests;
    std::map<u32, ValueSet> value_sets;    // by handle, made on first use
    std::map<u32, HashCalculation> hashes; // likewise
    Snapshots snapshots;
    std::map<u32, CounterCells> counters; // the indexed ones by handle, made on first use like the next three
    std::map<u32, MeterCells> meters;
    std::map<u32, WredCells> wreds;
    std::map<u32, RegisterCells> registers;
    std::map<u32, u32> byte_count_adjusts; // by meter

    void clear();

private:
    std::vector<std::unique_ptr<Table>> tables_;     // made on first use, in the program's order
    std::vector<std::unique_ptr<Profile>> profiles_; // likewise
};

// Device ids reach from 0 to 255; null above. A device exists from its first use on.
Device *find_device(u32 device_id);
void reset_devices();

// How many entries a table takes, on every device.
u32 capacity_of(const ProgramTable &table);
void set_capacity(const ProgramTable &table, u32 entries);

// Runs `use` on a device under its lock.
template <typename Use>
pd_status with_device(u32 device_id, Use use)
{
    Device *device = find_device(device_id);
    if (device == nullptr)
        return unknown_object;
    const std::lock_guard lock{device->mutex};
    return use(*device);
}

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

// Likewise on a profile; null for one that the program lacks.
template <typename Use>
pd_status with_profile(u32 device_id, const ProgramProfile *profile, Use use)
{
    Device *device = find_device(device_id);
    if (device == nullptr || profile == nullptr)
        return unknown_object;
    const std::lock_guard lock{device->mutex};
    return use(device->profile(*profile));
}

} // namespace model
