// The driver operations on registers, and the control function that makes the hardware's copy differ.
#include "pipe_stful.h"

#include <algorithm>

#include "resource_operation.h"
#include "syncs.h"

using namespace model;

namespace {

// Runs `use` on the cells of an indexed register under the device's lock, if the device has the pipes.
template <typename Use>
pd_status with_register(pd_dev_target target, u32 table, Use use)
{
    if (pipes_of(target.pipe_id).count == 0)
        return unknown_object;
    return with_indexed(target.device_id, &Device::registers, program.registers, table, use);
}

constexpr bool has_cells(u32 start, u32 count)
{
    return start <= TS_MODEL_REGISTER_CELLS && count <= TS_MODEL_REGISTER_CELLS - start;
}

// An indexed register is a flag: the first byte of a value, whatever the others may be.
pipe_stful_value flag_of(const pipe_stful_value *value)
{
    return value != nullptr ? pipe_stful_value{{value->bytes[0]}} : pipe_stful_value{};
}

bool has_room(const pipe_stful_query &query, Pipes pipes)
{
    return query.elements != nullptr && query.count >= pipes.count;
}

// The query has room.
void answer(const RegisterCells &cells, u32 cell, Pipes pipes, bool from_hw, pipe_stful_query &query)
{
    cells.read(cell, pipes, from_hw, query.elements);
    query.count = pipes.count;
}

void write_range(RegisterCells &cells, u32 start, u32 count, Pipes pipes, const pipe_stful_value &value)
{
    for (u32 at = 0; at < count; ++at)
        cells.write(start + at, pipes, value);
}

pd_status read_range(const RegisterCells &cells, u32 start, u32 count, Pipes pipes, bool from_hw,
                     pipe_stful_query *queries, u32 &indices_read)
{
    const u32 there =
        std::min(count, TS_MODEL_REGISTER_CELLS - std::min<u32>(start, TS_MODEL_REGISTER_CELLS));
    if (!std::all_of(queries, queries + there, [&](const auto &query) { return has_room(query, pipes); }))
        return bad_argument;
    for (u32 at = 0; at < there; ++at)
        answer(cells, start + at, pipes, from_hw, queries[at]);
    indices_read = there;
    return ok;
}

} // namespace

namespace model {

// ---- Indexed registers ----------------------------------------------------------------------------------

pd_status pipe_stful_query_get_sizes(pd_sess_hdl, u32 device_id, u32 table, u32 *count)
{
    const auto tell = [&](const RegisterCells &) {
        *count = TS_MODEL_PIPES;
        return ok;
    };
    return with_register({device_id, PIPE_ALL_PIPES}, table, tell);
}

pd_status pipe_stful_ent_query(pd_sess_hdl, pd_dev_target target, u32 table, u32 index,
                               pipe_stful_query *query, u32 from_hw)
{
    const auto read = [&](const RegisterCells &cells) {
        const Pipes pipes = pipes_of(target.pipe_id);
        if (!has_cells(index, 1))
            return unknown_object;
        if (!has_room(*query, pipes))
            return bad_argument;
        answer(cells, index, pipes, from_hw != 0, *query);
        return ok;
    };
    return with_register(target, table, read);
}

pd_status pipe_stful_ent_query_range(pd_sess_hdl, pd_dev_target target, u32 table, u32 start, u32 count,
                                     pipe_stful_query *queries, u32 *indices_read, u32 from_hw)
{
    const auto read = [&](const RegisterCells &cells) {
        return read_range(cells, start, count, pipes_of(target.pipe_id), from_hw != 0, queries,
                          *indices_read);
    };
    return with_register(target, table, read);
}

pd_status pipe_stful_ent_set(pd_sess_hdl, pd_dev_target target, u32 table, u32 index, pipe_stful_value *value,
                             u32)
{
    const auto set = [&](RegisterCells &cells) {
        if (!has_cells(index, 1))
            return unknown_object;
        cells.write(index, pipes_of(target.pipe_id), flag_of(value));
        return ok;
    };
    return with_register(target, table, set);
}

pd_status pipe_stful_table_reset(pd_sess_hdl, pd_dev_target target, u32 table, pipe_stful_value *value)
{
    const auto reset = [&](RegisterCells &cells) {
        write_range(cells, 0, TS_MODEL_REGISTER_CELLS, pipes_of(target.pipe_id), flag_of(value));
        return ok;
    };
    return with_register(target, table, reset);
}

pd_status pipe_stful_table_reset_range(pd_sess_hdl, pd_dev_target target, u32 table, u32 start, u32 count,
                                       pipe_stful_value *value)
{
    const auto reset = [&](RegisterCells &cells) {
        if (!has_cells(start, count))
            return unknown_object;
        write_range(cells, start, count, pipes_of(target.pipe_id), flag_of(value));
        return ok;
    };
    return with_register(target, table, reset);
}

pd_status pipe_stful_database_sync(pd_sess_hdl, pd_dev_target target, u32 table, pipe_stful_sync_cb callback,
                                   pd_word cookie)
{
    const auto sync = [&](RegisterCells &cells) {
        cells.sync_all(pipes_of(target.pipe_id));
        return ok;
    };
    return run_sync({callback, target.device_id, cookie}, [&] { return with_register(target, table, sync); });
}

// ---- Registers of match entries, which pipe_mgr_mat_ent_set_resource writes -----------------------------

pd_status pipe_stful_direct_database_sync(pd_sess_hdl, pd_dev_target target, u32 table,
                                          pipe_stful_sync_cb callback, pd_word cookie)
{
    const Pipes pipes = pipes_of(target.pipe_id);
    const auto sync = [&](Table &found) {
        if (pipes.count == 0)
            return unknown_object;
        found.registers.sync_all(pipes);
        return ok;
    };
    return run_sync({callback, target.device_id, cookie},
                    [&] { return with_table(target.device_id, table, sync); });
}

pd_status pipe_stful_direct_ent_query(pd_sess_hdl, u32 device_id, u32 table, pd_entry_hdl entry,
                                      pipe_stful_query *query, u32 from_hw)
{
    const auto read = [&](const Table &found) {
        if (!found.has(entry))
            return unknown_object;
        if (!has_room(*query, all_pipes))
            return bad_argument;
        answer(found.registers, entry, all_pipes, from_hw != 0, *query);
        return ok;
    };
    return with_table(device_id, table, read);
}

} // namespace model

extern "C" {

// ---- Control --------------------------------------------------------------------------------------------

pd_status ts_model_set_hardware_register(u32 device_id, u32 table, u32 cell, u32 pipe_id, const u8 *value,
                                         u32 bytes)
{
    const Pipes pipes = pipes_of(pipe_id);
    pipe_stful_value written{};
    if (value == nullptr || bytes > sizeof written.bytes)
        return bad_argument;
    std::copy_n(value, bytes, written.bytes);
    if (find_table(table) != nullptr)
        return with_table(device_id, table, [&](Table &found) {
            if (!found.has(cell) || pipes.count == 0)
                return unknown_object;
            found.registers.write_hardware(cell, pipes, written);
            return ok;
        });
    return with_register({device_id, pipe_id}, table, [&](RegisterCells &cells) {
        if (!has_cells(cell, 1))
            return unknown_object;
        cells.write_hardware(cell, pipes, flag_of(&written));
        return ok;
    });
}

} // extern "C"
