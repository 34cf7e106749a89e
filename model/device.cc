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

} // namespace

Table &Device::table(const ProgramTable &table)
{
    tables_.resize(program.tables.size());
    std::unique_ptr<Table> &made = tables_[position(table)];
    if (!made)
        made = std::make_unique<Table>(table);
    return *made;
}

void Device::clear()
{
    const std::lock_guard lock{mutex};
    tables_.clear();
    selections.clear();
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
