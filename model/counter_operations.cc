// The driver operations on counters, and the control functions that count.
#include "pipe_mgr_stat.h"

#include <algorithm>

#include "resource_operation.h"
#include "syncs.h"

using namespace model;

namespace {

template <typename Use>
pd_status with_counter(u32 device_id, u32 counter, Use use)
{
    return with_indexed(device_id, &Device::counters, program.counters, counter, use);
}

// Runs `use` on the direct cells of a match table under the device's lock.
template <typename Use>
pd_status with_direct_counter(u32 device_id, u32 table, Use use)
{
    return with_table(device_id, table, [&](Table &found) {
        return found.program().direct_counter ? use(found.counts) : unknown_object;
    });
}

// Likewise when the table has this entry.
template <typename Use>
pd_status with_direct_cell(u32 device_id, u32 table, pd_entry_hdl entry, Use use)
{
    return with_table(device_id, table, [&](Table &found) {
        return found.program().direct_counter && found.has(entry) ? use(found.counts) : unknown_object;
    });
}

pd_status read_cells(const CounterCells &cells, const u32 *indices, u32 count, pipe_stat_data *const *data)
{
    if (std::any_of(data, data + count, [](const pipe_stat_data *cell) { return cell == nullptr; }))
        return bad_argument;
    for (u32 at = 0; at < count; ++at)
        *data[at] = cells.read(indices[at]);
    return ok;
}

void count_hit(Device &device, Table &table, pd_entry_hdl entry, u64 packets, u64 bytes)
{
    if (table.program().direct_counter)
        table.counts.count(entry, packets, bytes);
    const pipe_res_spec *resource = table.software(entry)->resource;
    if (resource != nullptr && resource->res_tag == PIPE_RES_ATTACH &&
        is_indexed(program.counters, resource->res_handle))
        device.counters[resource->res_handle].count(resource->res_index, packets, bytes);
    table.restart_ttl(entry);
}

} // namespace

namespace model {

// ---- Indexed counters -----------------------------------------------------------------------------------

pd_status pipe_mgr_stat_ent_database_sync(pd_sess_hdl, pd_dev_target target, u32 counter, u32 index)
{
    const auto sync = [&](CounterCells &cells) {
        if (!has_cell(index))
            return unknown_object;
        cells.sync(index);
        return ok;
    };
    return with_counter(target.device_id, counter, sync);
}

pd_status pipe_mgr_stat_ent_query(pd_sess_hdl, pd_dev_target target, u32 counter, u32 *indices, u32 count,
                                  pipe_stat_data **data)
{
    const auto read = [&](const CounterCells &cells) {
        if (!std::all_of(indices, indices + count, has_cell))
            return unknown_object;
        return read_cells(cells, indices, count, data);
    };
    return with_counter(target.device_id, counter, read);
}

pd_status pipe_mgr_stat_ent_set(pd_sess_hdl, pd_dev_target target, u32 counter, u32 index,
                                pipe_stat_data *data)
{
    const auto set = [&](CounterCells &cells) {
        if (!has_cell(index))
            return unknown_object;
        cells.write(index, *data);
        return ok;
    };
    return with_counter(target.device_id, counter, set);
}

pd_status pipe_mgr_stat_database_sync(pd_sess_hdl, pd_dev_target target, u32 counter,
                                      pipe_stat_sync_cb callback, pd_word cookie)
{
    const auto sync = [](CounterCells &cells) {
        cells.sync_all();
        return ok;
    };
    return run_sync({callback, target.device_id, cookie},
                    [&] { return with_counter(target.device_id, counter, sync); });
}

// ---- Direct counters ------------------------------------------------------------------------------------

pd_status pipe_mgr_direct_stat_ent_database_sync(pd_sess_hdl, pd_dev_target target, u32 table,
                                                 pd_entry_hdl entry)
{
    const auto sync = [&](CounterCells &cells) {
        cells.sync(entry);
        return ok;
    };
    return with_direct_cell(target.device_id, table, entry, sync);
}

pd_status pipe_mgr_mat_ent_direct_stat_query(pd_sess_hdl, u32 device_id, u32 table, pd_entry_hdl entry,
                                             pipe_stat_data *data)
{
    const auto read = [&](const CounterCells &cells) {
        *data = cells.read(entry);
        return ok;
    };
    return with_direct_cell(device_id, table, entry, read);
}

pd_status pipe_mgr_mat_ent_direct_stat_set(pd_sess_hdl, u32 device_id, u32 table, pd_entry_hdl entry,
                                           pipe_stat_data *data)
{
    const auto set = [&](CounterCells &cells) {
        cells.write(entry, *data);
        return ok;
    };
    return with_direct_cell(device_id, table, entry, set);
}

pd_status pipe_mgr_direct_stat_database_sync(pd_sess_hdl, pd_dev_target target, u32 table,
                                             pipe_stat_sync_cb callback, pd_word cookie)
{
    const auto sync = [](CounterCells &cells) {
        cells.sync_all();
        return ok;
    };
    return run_sync({callback, target.device_id, cookie},
                    [&] { return with_direct_counter(target.device_id, table, sync); });
}

} // namespace model

extern "C" {

// ---- Control --------------------------------------------------------------------------------------------

pd_status ts_model_count(u32 device_id, u32 table, pd_entry_hdl entry, u64 packets, u64 bytes)
{
    return with_device(device_id, [&](Device &device) {
        const ProgramTable *known = find_table(table);
        if (known == nullptr || !device.table(*known).has(entry))
            return unknown_object;
        count_hit(device, device.table(*known), entry, packets, bytes);
        return ok;
    });
}

pd_status ts_model_counted_lookup(u32 device_id, u32 table, const u8 *key, u32 key_bytes, u32 partition_index,
                                  u64 packets, u64 bytes, ts_model_hit *hit)
{
    return with_device(device_id, [&](Device &device) {
        const ProgramTable *known = find_table(table);
        if (known == nullptr)
            return unknown_object;
        if (key == nullptr || hit == nullptr || key_bytes != known->key_bytes)
            return bad_argument;
        Table &found = device.table(*known);
        *hit = found.look_up(key, partition_index);
        count_hit(device, found, hit->hit != 0 ? hit->entry : pd_entry_hdl{TS_MODEL_DEFAULT_ENTRY}, packets,
                  bytes);
        device.snapshots.capture_key({key, key_bytes});
        return ok;
    });
}

} // extern "C"
