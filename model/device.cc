#include "device.h"

#include <array>
#include <atomic>

namespace model {

namespace {

constexpr u32 default_capacity = 1'048'576;

std::array<Device, 256> &devices()
{
    static std::array<Device, 256> instance;
    return instance;
}

std::vector<std::atomic<u32>> make_capacities()
{
    std::vector<std::atomic<u32>> made(program.tables.size());
    for (std::atomic<u32> &capacity : made)
        capacity = default_capacity;
    return made;
}

std::vector<std::atomic<u32>> &capacities()
{
    static std::vector<std::atomic<u32>> instance = make_capacities();
    return instance;
}

std::size_t position(const ProgramTable &table)
{
    return static_cast<std::size_t>(&table - program.tables.data());
}

// Null for a direct table.
Profile *profile_of(Device &device, const ProgramTable &table)
{
    const ProgramProfile *found = find_profile_by_members(table.action_table);
    return found != nullptr ? &device.profile(*found) : nullptr;
}

} // namespace

Table &Device::table(const ProgramTable &table)
{
    tables_.resize(program.tables.size());
    std::unique_ptr<Table> &made = tables_[position(table)];
    if (!made)
        made = std::make_unique<Table>(table, profile_of(*this, table));
    return *made;
}

Profile &Device::profile(const ProgramProfile &profile)
{
    profiles_.resize(program.profiles.size());
    std::unique_ptr<Profile> &made = profiles_[static_cast<std::size_t>(&profile - program.profiles.data())];
    if (!made)
        made = std::make_unique<Profile>(profile);
    return *made;
}

void Device::clear()
{
    const std::lock_guard lock{mutex};
    tables_.clear();
    profiles_.clear();
    selections.clear();
    digests = {};
    value_sets.clear();
    hashes.clear();
    snapshots = {};
    counters.clear();
    meters.clear();
    wreds.clear();
    registers.clear();
    byte_count_adjusts.clear();
}

Device *find_device(u32 device_id)
{
    return device_id < devices().size() ? &devices()[device_id] : nullptr;
}

void reset_devices()
{
    for (Device &device : devices())
        device.clear();
    for (std::atomic<u32> &capacity : capacities())
        capacity = default_capacity;
}

u32 capacity_of(const ProgramTable &table)
{
    return capacities()[position(table)];
}

void set_capacity(const ProgramTable &table, u32 entries)
{
    capacities()[position(table)] = entries;
}

} // namespace model
