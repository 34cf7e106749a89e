// Every digest, parser value set and hash calculation with its functions.
#pragma once

#include <span>

#include "pd_services.h"
#include "rows.h"

namespace reflection {

struct DigestFunctions {
    const pd::Digest *row;
    pd_status (*register_callback)(pd_sess_hdl, u8 device_id, pd_digest_cb, pd_word cookie);
    pd_status (*deregister)(pd_sess_hdl, u8 device_id);
    pd_status (*notify_ack)(pd_sess_hdl, pd_word message);
};

struct ValueSetFunctions {
    const pd::Resource *row;
    pd_status (*set_property)(pd_sess_hdl, u32 device_id, u32 property, u32 value, u32 argument);
    pd_status (*get_property)(pd_sess_hdl, u32 device_id, u32 property, u32 *value, u32 argument);
    pd_status (*entry_add)(pd_sess_hdl, u32 device_id, u32 scope_a, u32 scope_b, u8 scope_c, u32 key,
                           u32 key_mask, u32 *entry);
    pd_status (*entry_modify)(pd_sess_hdl, u32 device_id, u32 entry, u32 key, u32 key_mask);
    pd_status (*entry_delete)(pd_sess_hdl, u32 device_id, u32 entry);
    pd_status (*entry_get)(pd_sess_hdl, u32 device_id, u32 entry, u32 *key, u32 *key_mask);
    pd_status (*entry_handle_get)(pd_sess_hdl, u32 device_id, u32 scope_a, u32 scope_b, u8 scope_c, u32 key,
                                  u32 key_mask, u32 *entry);
    pd_status (*entry_get_first_entry_handle)(pd_sess_hdl, u32 device_id, u32 scope_a, u32 scope_b,
                                              u8 scope_c, u32 *first);
    pd_status (*entry_get_next_entry_handles)(pd_sess_hdl, u32 device_id, u32 scope_a, u32 scope_b,
                                              u8 scope_c, u32 after, u32 count, u32 *next);
    pd_status (*entry_get_count)(pd_sess_hdl, u32 device_id, u32 scope_a, u32 scope_b, u8 scope_c, u8 flag,
                                 u32 *count);
};

struct HashFunctions {
    const pd::Hash *row;
    pd_status (*input_set)(pd_sess_hdl, u32 device_id, u32 input);
    pd_status (*input_get)(pd_sess_hdl, u32 device_id, u32 *input);
    pd_status (*algorithm_set)(pd_sess_hdl, u32 device_id, u32 algorithm);
    pd_status (*algorithm_get)(pd_sess_hdl, u32 device_id, u32 *algorithm);
    pd_status (*seed_set)(pd_sess_hdl, u32 device_id, pd_word first, pd_word second);
    pd_status (*seed_get)(pd_sess_hdl, u32 device_id, void *seed);
    pd_status (*input_field_attribute_set)(pd_sess_hdl, u32 device_id, u32 input, u32 count,
                                           const hash_input_field_attribute *);
    pd_status (*input_field_attribute_count_get)(pd_sess_hdl, u32 device_id, u32 input, u32 *count);
    pd_status (*input_field_attribute_get)(pd_sess_hdl, u32 device_id, u32 input, u32 capacity,
                                           hash_input_field_attribute *, u32 *count);
    pd_status (*calculate_hash_value)(pd_sess_hdl, u32 device_id, u32 count,
                                      const hash_input_field_attribute *, const u32 *widths, u8 *hash,
                                      u32 hash_size);
};

std::span<const DigestFunctions> digests();
std::span<const ValueSetFunctions> value_sets();
std::span<const HashFunctions> hashes();

} // namespace reflection
