// The driver operations on idle time, and the clock by which entries age.
#include "pipe_mgr_idle.h"

#include "device.h"

using namespace model;

namespace {

// Runs `use` on a table whose entries age.
template <typename Use>
pd_status with_ageing(u32 device_id, u32 table, Use use)
{
    return with_table(device_id, table,
                      [&](Table &found) { return found.program().idle_time ? use(found) : unknown_object; });
}

// Likewise when it has this entry. The default entry does not age.
template <typename Use>
pd_status with_ageing_entry(u32 device_id, u32 table, pd_entry_hdl entry, Use use)
{
    return with_ageing(device_id, table, [&](Table &found) {
        return entry != TS_MODEL_DEFAULT_ENTRY && found.has(entry) ? use(found) : unknown_object;
    });
}

pd_status set_hit_state(Table &table, pd_entry_hdl entry, pd_word state)
{
    if (state > 1)
        return bad_argument;
    if (state == 1)
        table.restart_ttl(entry);
    else
        table.idle.expire(entry);
    return ok;
}

// Entries of one table that have become idle, and who wants to know.
struct Expired {
    pipe_idle_tmo_cb callback;
    pd_word cookie;
    u32 table;
    std::vector<pd_entry_hdl> entries;
};

std::vector<Expired> age_tables(Device &device, u32 ticks)
{
    std::vector<Expired> expired;
    for (const ProgramTable &table : program.tables) {
        if (!table.idle_time)
            continue;
        IdleTime &idle = device.table(table).idle;
        expired.push_back({idle.callback, idle.cookie, table.handle, idle.age(ticks)});
    }
    return expired;
}

} // namespace

namespace model {

// ---- Tables ---------------------------------------------------------------------------------------------

pd_status pipe_mgr_idle_set_params(pd_sess_hdl, u32 device_id, u32 table, pipe_idle_params params)
{
    const auto set = [&](Table &found) {
        found.idle.params = params;
        return ok;
    };
    return with_ageing(device_id, table, set);
}

pd_status pipe_mgr_idle_get_params(pd_sess_hdl, u32 device_id, u32 table, pipe_idle_params *params)
{
    const auto get = [&](const Table &found) {
        *params = found.idle.params;
        return ok;
    };
    return with_ageing(device_id, table, get);
}

pd_status pipe_mgr_idle_tmo_set_enable(pd_sess_hdl, u32 device_id, u32 table, u32 enable)
{
    const auto set = [&](Table &found) {
        found.idle.enabled = enable != 0;
        return ok;
    };
    return with_ageing(device_id, table, set);
}

pd_status pipe_mgr_idle_register_tmo_cb(pd_sess_hdl, u32 device_id, u32 table, pipe_idle_tmo_cb callback,
                                        pd_word cookie)
{
    const auto set = [&](Table &found) {
        found.idle.callback = callback;
        found.idle.cookie = cookie;
        return ok;
    };
    return with_ageing(device_id, table, set);
}

// ---- Entries --------------------------------------------------------------------------------------------

pd_status pipe_mgr_mat_ent_set_idle_ttl(pd_sess_hdl, u32 device_id, u32 table, pd_entry_hdl entry, u32 ttl,
                                        u32, u32)
{
    const auto set = [&](Table &found) {
        found.set_ttl(entry, ttl);
        return ok;
    };
    return with_ageing_entry(device_id, table, entry, set);
}

pd_status pipe_mgr_mat_ent_get_idle_ttl(pd_sess_hdl, u32 device_id, u32 table, pd_entry_hdl entry, u32 *ttl)
{
    const auto get = [&](const Table &found) {
        *ttl = found.software(entry)->ttl;
        return ok;
    };
    return with_ageing_entry(device_id, table, entry, get);
}

pd_status pipe_mgr_mat_ent_reset_idle_ttl(pd_sess_hdl, u32 device_id, u32 table, pd_entry_hdl entry)
{
    const auto reset = [&](Table &found) {
        found.restart_ttl(entry);
        return ok;
    };
    return with_ageing_entry(device_id, table, entry, reset);
}

pd_status pipe_mgr_idle_time_update_hit_state(pd_sess_hdl, u32 device_id, u32 table, pd_word first,
                                              pd_word second)
{
    const auto entry = static_cast<pd_entry_hdl>(first);
    const auto update = [&](Table &found) { return set_hit_state(found, entry, second); };
    return with_ageing_entry(device_id, table, entry, update);
}

pd_status pipe_mgr_idle_time_get_hit_state(pd_sess_hdl, u32 device_id, u32 table, pd_entry_hdl entry,
                                           u32 *hit_state)
{
    const auto get = [&](const Table &found) {
        *hit_state = found.idle.is_idle(entry) ? 0 : 1;
        return ok;
    };
    return with_ageing_entry(device_id, table, entry, get);
}

} // namespace model

extern "C" {

// ---- Control --------------------------------------------------------------------------------------------

pd_status ts_model_advance_clock(u32 device_id, u32 ticks)
{
    std::vector<Expired> expired;
    const pd_status status = with_device(device_id, [&](Device &device) {
        expired = age_tables(device, ticks);
        return ok;
    });
    for (const Expired &table : expired)
        for (const pd_entry_hdl entry : table.entries)
            if (table.callback != nullptr)
                table.callback(device_id, table.table, entry, table.cookie);
    return status;
}

} // extern "C"
