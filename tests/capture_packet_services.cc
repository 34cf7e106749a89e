// Digests, parser value sets, hash calculations and snapshots, captured.
#include <algorithm>

#include "bf_snapshot.h"
#include "capture_resources.h"

using resources::call;
using resources::word;
using resources::words;

// ---- Digests ----------------------------------------------------------------------------------------------

pd_status pipe_mgr_lrn_digest_notification_register(pd_sess_hdl sess, u8 device_id, u32 digest,
                                                    pipe_lrn_digest_cb callback, pd_word cookie)
{
    return call(__func__, sess, device_id, digest, word(callback), cookie);
}

pd_status pipe_mgr_lrn_digest_notification_deregister(pd_sess_hdl sess, u8 device_id, u32 digest)
{
    return call(__func__, sess, device_id, digest);
}

pd_status pipe_mgr_flow_lrn_notify_ack(pd_sess_hdl sess, u32 digest, pd_word message)
{
    return call(__func__, sess, digest, message);
}

pd_status pipe_mgr_flow_lrn_set_timeout(pd_sess_hdl sess, u8 device_id, u32 timeout)
{
    return call(__func__, sess, device_id, timeout);
}

// ---- Parser value sets ------------------------------------------------------------------------------------

pd_status pipe_mgr_pvs_set_property(pd_sess_hdl sess, u32 device_id, u32 set, u32 property,
                                    pipe_pvs_property_value value, pipe_pvs_property_args args)
{
    return call(__func__, sess, device_id, set, property, words<u32>(value), words<u32>(args));
}

pd_status pipe_mgr_pvs_get_property(pd_sess_hdl sess, u32 device_id, u32 set, u32 property, u32 *value,
                                    pipe_pvs_property_args args)
{
    *value = capture::answer.numbers[0];
    return call(__func__, sess, device_id, set, property, words<u32>(args));
}

pd_status pipe_mgr_pvs_entry_add(pd_sess_hdl sess, u32 device_id, u32 set, u32 scope_a, u32 scope_b,
                                 u8 scope_c, u32 key, u32 key_mask, u32 *entry)
{
    *entry = capture::entry;
    return call(__func__, sess, device_id, set, scope_a, scope_b, scope_c, key, key_mask);
}

pd_status pipe_mgr_pvs_entry_modify(pd_sess_hdl sess, u32 device_id, u32 set, u32 entry, u32 key,
                                    u32 key_mask)
{
    return call(__func__, sess, device_id, set, entry, key, key_mask);
}

pd_status pipe_mgr_pvs_entry_delete(pd_sess_hdl sess, u32 device_id, u32 set, u32 entry)
{
    return call(__func__, sess, device_id, set, entry);
}

pd_status pipe_mgr_pvs_entry_get(pd_sess_hdl sess, u32 device_id, u32 set, u32 entry, u32 *key, u32 *key_mask,
                                 u32 *scope_a, u32 *scope_b, u8 *scope_c)
{
    *key = capture::answer.numbers[0];
    *key_mask = capture::answer.numbers[1];
    return call(__func__, sess, device_id, set, entry, word(scope_a), word(scope_b), word(scope_c));
}

pd_status pipe_mgr_pvs_entry_handle_get(pd_sess_hdl sess, u32 device_id, u32 set, u32 scope_a, u32 scope_b,
                                        u8 scope_c, u32 key, u32 key_mask, u32 *entry)
{
    *entry = capture::entry;
    return call(__func__, sess, device_id, set, scope_a, scope_b, scope_c, key, key_mask);
}

pd_status pipe_mgr_pvs_entry_get_first(pd_sess_hdl sess, u32 device_id, u32 set, u32 scope_a, u32 scope_b,
                                       u8 scope_c, u32 *first)
{
    *first = capture::entry;
    return call(__func__, sess, device_id, set, scope_a, scope_b, scope_c);
}

pd_status pipe_mgr_pvs_entry_get_next(pd_sess_hdl sess, u32 device_id, u32 set, u32 scope_a, u32 scope_b,
                                      u8 scope_c, u32 after, u32 count, u32 *next)
{
    std::copy_n(capture::answer.numbers.begin(), std::min<std::size_t>(count, 4), next);
    return call(__func__, sess, device_id, set, scope_a, scope_b, scope_c, after, count);
}

pd_status pipe_mgr_pvs_entry_get_count(pd_sess_hdl sess, u32 device_id, u32 set, u32 scope_a, u32 scope_b,
                                       u8 scope_c, u8 flag, u32 *count)
{
    *count = capture::answer.numbers[0];
    return call(__func__, sess, device_id, set, scope_a, scope_b, scope_c, flag);
}

// ---- Hash calculations ------------------------------------------------------------------------------------

pd_status pipe_mgr_hash_calc_input_set(pd_sess_hdl sess, u32 device_id, u32 calculation, u32 input)
{
    return call(__func__, sess, device_id, calculation, input);
}

pd_status pipe_mgr_hash_calc_input_get(pd_sess_hdl sess, u32 device_id, u32 calculation, u32 *input)
{
    const u32 before = *input;
    *input = capture::answer.numbers[0];
    return call(__func__, sess, device_id, calculation, before);
}

pd_status pipe_mgr_hash_calc_algorithm_set(pd_sess_hdl sess, u32 device_id, u32 calculation, u32 algorithm,
                                           pd_word option_1, pd_word option_2, pd_word option_3)
{
    return call(__func__, sess, device_id, calculation, algorithm, option_1, option_2, option_3);
}

pd_status pipe_mgr_hash_calc_algorithm_get(pd_sess_hdl sess, u32 device_id, u32 calculation, u32 *algorithm,
                                           pd_word option_1, pd_word option_2)
{
    const u32 before = *algorithm;
    *algorithm = capture::answer.numbers[0];
    return call(__func__, sess, device_id, calculation, before, option_1, option_2);
}

pd_status pipe_mgr_hash_calc_seed_set(pd_sess_hdl sess, u32 device_id, u32 calculation, pd_word first,
                                      pd_word second)
{
    return call(__func__, sess, device_id, calculation, first, second);
}

pd_status pipe_mgr_hash_calc_seed_get(pd_sess_hdl sess, u32 device_id, u32 calculation, void *seed)
{
    return call(__func__, sess, device_id, calculation, word(seed));
}

pd_status pipe_mgr_hash_calc_input_field_attribute_set(pd_sess_hdl sess, u32 device_id, u32 calculation,
                                                       u32 input, u32 count,
                                                       pipe_hash_calc_input_field_attribute *attributes)
{
    std::string list = attributes || !services::keep_calls ? "" : "null";
    for (u32 i = 0; i < count && services::keep_calls; ++i) {
        const auto &record = attributes[i];
        list += services::line(i ? " [" : "[", record.input_field, record.reserved_1, record.reserved_2,
                               record.position, record.attr_type, record.attr_value);
        list += " ]";
    }
    return call(__func__, sess, device_id, calculation, input, count, list);
}

pd_status pipe_mgr_hash_calc_input_field_attribute_count_get(pd_sess_hdl sess, u32 device_id, u32 calculation,
                                                             u32 input, u32 *count)
{
    const u32 before = *count;
    *count = capture::answer.numbers[1];
    return call(__func__, sess, device_id, calculation, input, before);
}

pd_status pipe_mgr_hash_calc_input_field_attribute_get(pd_sess_hdl sess, u32 device_id, u32 calculation,
                                                       u32 input, u32 capacity,
                                                       pipe_hash_calc_input_field_attribute *attributes,
                                                       u32 *count)
{
    const u32 before = *count;
    *count = std::min(capacity, static_cast<u32>(resources::attributes.size()));
    std::copy_n(resources::attributes.begin(), *count, attributes);
    return call(__func__, sess, device_id, calculation, input, capacity, before);
}

pd_status pipe_mgr_hash_calc_calculate_hash_value(pd_sess_hdl sess, u32 device_id, u32 calculation,
                                                  u8 *stream, u32 stream_bytes, u8 *hash, u32 hash_size)
{
    const std::string bytes =
        services::keep_calls ? resources::bracketed(capture::hex(stream, stream_bytes)) : "";
    return call(__func__, sess, device_id, calculation, bytes, stream_bytes, word(hash), hash_size);
}

// ---- Snapshots --------------------------------------------------------------------------------------------

pd_status bf_snapshot_create(pd_word first, pd_word second, u8 third, u8 fourth, pd_word fifth, pd_word sixth)
{
    return call(__func__, first, second, third, fourth, fifth, sixth);
}

pd_status bf_snapshot_delete(u32 snapshot)
{
    return call(__func__, snapshot);
}

pd_status bf_snapshot_capture_trigger_set(u32 snapshot, u8 *spec, u8 *mask)
{
    std::copy_n(spec, sizeof(pd_snapshot_phv), resources::trigger_spec.bytes);
    std::copy_n(mask, sizeof(pd_snapshot_phv), resources::trigger_mask.bytes);
    return call(__func__, snapshot);
}

pd_status bf_snapshot_capture_phv_fields_dict_size(u32 snapshot, u32 *total_bytes, u32 *stage_bytes)
{
    *total_bytes = capture::answer.numbers[0];
    *stage_bytes = capture::answer.numbers[1];
    return call(__func__, snapshot);
}

pd_status bf_snapshot_capture_get(u32 snapshot, pd_word second, void *buffer, pd_word control, u32 *count)
{
    const u32 before = *count;
    *count = capture::answer.numbers[2];
    std::copy(resources::stages.begin(), resources::stages.end(), static_cast<u8 *>(buffer));
    return call(__func__, snapshot, second, control, before);
}
