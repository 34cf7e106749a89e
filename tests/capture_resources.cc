// Counters, meters, registers and idle time, captured.
#include "capture_resources.h"

#include <algorithm>

namespace resources {

pipe_stat_data counts;
pipe_meter_spec meter;
pipe_idle_params idle;
std::vector<std::vector<u8>> flags;
std::vector<pipe_hash_calc_input_field_attribute> attributes;
std::vector<u8> stages;
pipe_res_spec resource;
pd_snapshot_phv trigger_spec, trigger_mask;

void reset()
{
    counts = {};
    meter = {};
    idle = {};
    flags.clear();
    attributes.clear();
    stages.clear();
    resource = {};
    trigger_spec = trigger_mask = {};
}

std::string text(const pipe_meter_spec &meter)
{
    if (!services::keep_calls)
        return {};
    std::string text = std::to_string(meter.meter_type);
    for (const u64 number : {u64{meter.committed_unit}, meter.committed_rate, meter.committed_burst,
                             u64{meter.peak_unit}, meter.peak_rate, meter.peak_burst})
        text.append(" ").append(std::to_string(number));
    return bracketed(text);
}

namespace {

std::string hex(const pipe_stful_value *value)
{
    if (!services::keep_calls)
        return {};
    return value ? bracketed(capture::hex(value->bytes, sizeof value->bytes)) : "null";
}

// The room of a query, and where its elements lie.
std::string room(const pipe_stful_query &query, const pipe_stful_value *first)
{
    if (!services::keep_calls)
        return {};
    return std::to_string(query.count) + "@" + std::to_string(query.elements - first);
}

// No more than there is room for.
void give(pipe_stful_query &query, const std::vector<u8> &flags)
{
    query.count = std::min(query.count, static_cast<u32>(flags.size()));
    for (u32 i = 0; i < query.count; ++i) {
        std::fill_n(query.elements[i].bytes, sizeof query.elements[i].bytes, u8{0xee});
        query.elements[i].bytes[0] = flags[i];
    }
}

} // namespace

} // namespace resources

using resources::call;
using resources::text;
using resources::word;
using resources::words;

// ---- Counters ---------------------------------------------------------------------------------------------

pd_status pipe_mgr_stat_ent_database_sync(pd_sess_hdl sess, pd_dev_target target, u32 counter, u32 index)
{
    return call(__func__, sess, target, counter, index);
}

pd_status pipe_mgr_stat_ent_query(pd_sess_hdl sess, pd_dev_target target, u32 counter, u32 *indices,
                                  u32 count, pipe_stat_data **data)
{
    const std::string before = words<u64>(**data);
    **data = resources::counts;
    return call(__func__, sess, target, counter, *indices, count, before);
}

pd_status pipe_mgr_stat_ent_set(pd_sess_hdl sess, pd_dev_target target, u32 counter, u32 index,
                                pipe_stat_data *data)
{
    return call(__func__, sess, target, counter, index, words<u64>(*data));
}

pd_status pipe_mgr_stat_database_sync(pd_sess_hdl sess, pd_dev_target target, u32 counter,
                                      pipe_stat_sync_cb callback, pd_word cookie)
{
    return call(__func__, sess, target, counter, word(callback), cookie);
}

pd_status pipe_mgr_direct_stat_ent_database_sync(pd_sess_hdl sess, pd_dev_target target, u32 table,
                                                 pd_entry_hdl entry)
{
    return call(__func__, sess, target, table, entry);
}

pd_status pipe_mgr_mat_ent_direct_stat_query(pd_sess_hdl sess, u32 device_id, u32 table, pd_entry_hdl entry,
                                             pipe_stat_data *data)
{
    *data = resources::counts;
    return call(__func__, sess, device_id, table, entry);
}

pd_status pipe_mgr_mat_ent_direct_stat_set(pd_sess_hdl sess, u32 device_id, u32 table, pd_entry_hdl entry,
                                           pipe_stat_data *data)
{
    return call(__func__, sess, device_id, table, entry, words<u64>(*data));
}

pd_status pipe_mgr_direct_stat_database_sync(pd_sess_hdl sess, pd_dev_target target, u32 table,
                                             pipe_stat_sync_cb callback, pd_word cookie)
{
    return call(__func__, sess, target, table, word(callback), cookie);
}

// ---- Meters -----------------------------------------------------------------------------------------------

pd_status pipe_mgr_meter_ent_set(pd_sess_hdl sess, pd_dev_target target, u32 meter, u32 index,
                                 pipe_meter_spec *spec, u32 flags)
{
    return call(__func__, sess, target, meter, index, text(*spec), flags);
}

pd_status pipe_mgr_meter_read_entry_idx(pd_sess_hdl sess, pd_dev_target target, u32 meter, u32 index,
                                        pipe_meter_spec *spec, u32 flags)
{
    const std::string before = text(*spec);
    *spec = resources::meter;
    return call(__func__, sess, target, meter, index, before, flags);
}

pd_status pipe_mgr_meter_read_entry(pd_sess_hdl sess, pd_dev_target target, u32 table, pd_entry_hdl entry,
                                    pipe_meter_spec *spec)
{
    const std::string before = text(*spec);
    *spec = resources::meter;
    return call(__func__, sess, target, table, entry, before);
}

pd_status pipe_mgr_meter_set_bytecount_adjust(pd_sess_hdl sess, pd_dev_target target, u32 meter, u32 adjust)
{
    return call(__func__, sess, target, meter, adjust);
}

pd_status pipe_mgr_meter_get_bytecount_adjust(pd_sess_hdl sess, pd_dev_target target, u32 meter, u32 *adjust)
{
    *adjust = capture::answer.numbers[0];
    return call(__func__, sess, target, meter);
}

pd_status pipe_mgr_wred_ent_set(pd_sess_hdl sess, pd_dev_target target, u32 wred, u32 index,
                                pipe_wred_spec *spec, u32 flags)
{
    return call(__func__, sess, target, wred, index, words<u32>(*spec), flags);
}

pd_status pipe_mgr_mat_ent_set_resource(pd_sess_hdl sess, u32 device_id, u32 table, pd_entry_hdl entry,
                                        pipe_res_spec *resources, u32 count, u32 flags)
{
    resources::resource = *resources;
    return call(__func__, sess, device_id, table, entry, count, flags);
}

// ---- Registers --------------------------------------------------------------------------------------------

pd_status pipe_stful_query_get_sizes(pd_sess_hdl sess, u32 device_id, u32 table, u32 *count)
{
    *count = capture::answer.numbers[0];
    return call(__func__, sess, device_id, table);
}

pd_status pipe_stful_ent_query(pd_sess_hdl sess, pd_dev_target target, u32 table, u32 index,
                               pipe_stful_query *query, u32 from_hw)
{
    const std::string before = resources::room(*query, query->elements);
    if (!resources::flags.empty())
        resources::give(*query, resources::flags[0]);
    return call(__func__, sess, target, table, index, before, from_hw);
}

pd_status pipe_stful_ent_query_range(pd_sess_hdl sess, pd_dev_target target, u32 table, u32 start, u32 count,
                                     pipe_stful_query *queries, u32 *indices_read, u32 from_hw)
{
    std::string before;
    for (u32 i = 0; i < count; ++i)
        before.append(i ? " " : "").append(resources::room(queries[i], queries[0].elements));
    *indices_read = static_cast<u32>(resources::flags.size());
    for (u32 i = 0; i < *indices_read; ++i)
        resources::give(queries[i], resources::flags[i]);
    return call(__func__, sess, target, table, start, count, resources::bracketed(before), from_hw);
}

pd_status pipe_stful_ent_set(pd_sess_hdl sess, pd_dev_target target, u32 table, u32 index,
                             pipe_stful_value *value, u32 flags)
{
    return call(__func__, sess, target, table, index, resources::hex(value), flags);
}

pd_status pipe_stful_database_sync(pd_sess_hdl sess, pd_dev_target target, u32 table,
                                   pipe_stful_sync_cb callback, pd_word cookie)
{
    return call(__func__, sess, target, table, word(callback), cookie);
}

pd_status pipe_stful_direct_database_sync(pd_sess_hdl sess, pd_dev_target target, u32 table,
                                          pipe_stful_sync_cb callback, pd_word cookie)
{
    return call(__func__, sess, target, table, word(callback), cookie);
}

pd_status pipe_stful_direct_ent_query(pd_sess_hdl sess, u32 device_id, u32 table, pd_entry_hdl entry,
                                      pipe_stful_query *query, u32 from_hw)
{
    return call(__func__, sess, device_id, table, entry, word(query), from_hw);
}

pd_status pipe_stful_table_reset(pd_sess_hdl sess, pd_dev_target target, u32 table, pipe_stful_value *value)
{
    return call(__func__, sess, target, table, resources::hex(value));
}

pd_status pipe_stful_table_reset_range(pd_sess_hdl sess, pd_dev_target target, u32 table, u32 start,
                                       u32 count, pipe_stful_value *value)
{
    return call(__func__, sess, target, table, start, count, resources::hex(value));
}

// ---- Idle time --------------------------------------------------------------------------------------------

pd_status pipe_mgr_idle_set_params(pd_sess_hdl sess, u32 device_id, u32 table, pipe_idle_params params)
{
    return call(__func__, sess, device_id, table, words<u32>(params));
}

pd_status pipe_mgr_idle_get_params(pd_sess_hdl sess, u32 device_id, u32 table, pipe_idle_params *params)
{
    const std::string before = words<u32>(*params);
    *params = resources::idle;
    return call(__func__, sess, device_id, table, before);
}

pd_status pipe_mgr_idle_tmo_set_enable(pd_sess_hdl sess, u32 device_id, u32 table, u32 enable)
{
    return call(__func__, sess, device_id, table, enable);
}

pd_status pipe_mgr_idle_register_tmo_cb(pd_sess_hdl sess, u32 device_id, u32 table, pipe_idle_tmo_cb callback,
                                        pd_word cookie)
{
    return call(__func__, sess, device_id, table, word(callback), cookie);
}

pd_status pipe_mgr_mat_ent_set_idle_ttl(pd_sess_hdl sess, u32 device_id, u32 table, pd_entry_hdl entry,
                                        u32 ttl, u32 reserved, u32 flags)
{
    return call(__func__, sess, device_id, table, entry, ttl, reserved, flags);
}

pd_status pipe_mgr_mat_ent_get_idle_ttl(pd_sess_hdl sess, u32 device_id, u32 table, pd_entry_hdl entry,
                                        u32 *ttl)
{
    *ttl = capture::answer.numbers[0];
    return call(__func__, sess, device_id, table, entry);
}

pd_status pipe_mgr_mat_ent_reset_idle_ttl(pd_sess_hdl sess, u32 device_id, u32 table, pd_entry_hdl entry)
{
    return call(__func__, sess, device_id, table, entry);
}

pd_status pipe_mgr_idle_time_update_hit_state(pd_sess_hdl sess, u32 device_id, u32 table, pd_word first,
                                              pd_word second)
{
    return call(__func__, sess, device_id, table, first, second);
}

pd_status pipe_mgr_idle_time_get_hit_state(pd_sess_hdl sess, u32 device_id, u32 table, pd_entry_hdl entry,
                                           u32 *hit_state)
{
    *hit_state = capture::answer.numbers[0];
    return call(__func__, sess, device_id, table, entry);
}
