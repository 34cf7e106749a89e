// The control functions of model and tap that commands call, as this library sees them. They go on to the
// model of the process; where there is none, the command ends with one line that says so. The tap is shared
// by all consoles.
#include <cerrno>

#include <dlfcn.h>

#include "driver.h"
#include "model.h"
#include "tap_calls.h"

namespace {

template <typename Function>
Function *in_model(Function *, const char *name)
{
    shell::expect_model();
    return reinterpret_cast<Function *>(dlsym(RTLD_DEFAULT, name));
}

} // namespace

#define IN_MODEL(function) in_model(&(function), #function)

pd_status ts_model_advance_clock(u32 device_id, u32 ticks)
{
    return IN_MODEL(ts_model_advance_clock)(device_id, ticks);
}

pd_status ts_model_lookup(u32 device_id, u32 table, const u8 *key, u32 bytes, u32 partition_index,
                          ts_model_hit *hit)
{
    return IN_MODEL(ts_model_lookup)(device_id, table, key, bytes, partition_index, hit);
}

pd_status ts_model_hardware_lookup(u32 device_id, u32 table, const u8 *key, u32 bytes, u32 partition_index,
                                   ts_model_hit *hit)
{
    return IN_MODEL(ts_model_hardware_lookup)(device_id, table, key, bytes, partition_index, hit);
}

pd_status ts_model_counted_lookup(u32 device_id, u32 table, const u8 *key, u32 key_bytes, u32 partition_index,
                                  u64 packets, u64 bytes, ts_model_hit *hit)
{
    return IN_MODEL(ts_model_counted_lookup)(device_id, table, key, key_bytes, partition_index, packets,
                                             bytes, hit);
}

pd_status ts_model_digest(u32 device_id, u32 digest, const u8 *entries, u32 count)
{
    return IN_MODEL(ts_model_digest)(device_id, digest, entries, count);
}

u32 ts_model_pending_digests(u32 device_id, u32 digest)
{
    return IN_MODEL(ts_model_pending_digests)(device_id, digest);
}

u32 ts_model_capacity(u32 table)
{
    return IN_MODEL(ts_model_capacity)(table);
}

pd_status ts_model_set_capacity(u32 table, u32 entries)
{
    return IN_MODEL(ts_model_set_capacity)(table, entries);
}

u32 ts_model_learning_timeout(u32 device_id)
{
    return IN_MODEL(ts_model_learning_timeout)(device_id);
}

pd_mbr_hdl ts_model_fallback_member(u32 device_id, u32 selector)
{
    return IN_MODEL(ts_model_fallback_member)(device_id, selector);
}

u32 ts_model_references(u32 device_id, u32 table, u32 handle)
{
    return IN_MODEL(ts_model_references)(device_id, table, handle);
}

void ts_model_free_plcmt_data(void *data)
{
    IN_MODEL(ts_model_free_plcmt_data)(data);
}

pd_status ts_model_get_snapshot(u32 snapshot, ts_model_snapshot *out)
{
    return IN_MODEL(ts_model_get_snapshot)(snapshot, out);
}

char *ts_model_log_state(u32 device_id)
{
    return IN_MODEL(ts_model_log_state)(device_id);
}

pd_status ts_model_forget_selection(u32 device_id)
{
    return IN_MODEL(ts_model_forget_selection)(device_id);
}

pd_status ts_model_restore_state(u32 device_id, const char *state)
{
    return IN_MODEL(ts_model_restore_state)(device_id, state);
}

pd_status ts_model_set_hardware_action(u32 device_id, u32 table, pd_entry_hdl entry, u32 action,
                                       const u8 *data, u32 bytes)
{
    return IN_MODEL(ts_model_set_hardware_action)(device_id, table, entry, action, data, bytes);
}

pd_status ts_model_set_hardware_key(u32 device_id, u32 table, pd_entry_hdl entry, const u8 *value,
                                    const u8 *mask, u32 bytes)
{
    return IN_MODEL(ts_model_set_hardware_key)(device_id, table, entry, value, mask, bytes);
}

pd_status ts_model_set_hardware_reference(u32 device_id, u32 table, pd_entry_hdl entry, u8 kind, u32 handle)
{
    return IN_MODEL(ts_model_set_hardware_reference)(device_id, table, entry, kind, handle);
}

pd_status ts_model_remove_hardware_entry(u32 device_id, u32 table, pd_entry_hdl entry)
{
    return IN_MODEL(ts_model_remove_hardware_entry)(device_id, table, entry);
}

int ts_tap_trace(ts_tap_trace_fn tell, void *cookie)
{
    console::trace_current(tell, cookie);
    return 0;
}

int ts_tap_record(const char *, u64)
{
    return ENOTSUP; // only start_record() records
}
