// The families of dynamic hash calculations: what a hash is made of, its algorithm and seed, and its value
// for given fields.
#pragma once

#include "internal.h"
#include "pd_services.h"
#include "pipe_mgr.h"
#include "rows_services.h"

namespace TS_INTERNAL pd {

// A calculation has one input and one algorithm, which callers know as number 0. Any other number goes to the
// driver as handle 0, which it refuses.
inline u32 choose(u32 number, u32 handle)
{
    return number == 0 ? handle : 0;
}

inline pd_status input_set(const Hash &hash, pd_sess_hdl sess, u32 device_id, u32 input)
{
    return pipe_mgr_hash_calc_input_set(sess, device_id, hash.handle, choose(input, hash.input));
}

inline pd_status algorithm_set(const Hash &hash, pd_sess_hdl sess, u32 device_id, u32 algorithm)
{
    return pipe_mgr_hash_calc_algorithm_set(sess, device_id, hash.handle, choose(algorithm, hash.algorithm),
                                            0, 0, 0);
}

inline pd_status seed_set(const Hash &hash, pd_sess_hdl sess, u32 device_id, pd_word first, pd_word second)
{
    return pipe_mgr_hash_calc_seed_set(sess, device_id, hash.handle, first, second);
}

inline pd_status seed_get(const Hash &hash, pd_sess_hdl sess, u32 device_id, void *seed)
{
    return pipe_mgr_hash_calc_seed_get(sess, device_id, hash.handle, seed);
}

pd_status input_get(const Hash &hash, pd_sess_hdl sess, u32 device_id, u32 *input);
pd_status algorithm_get(const Hash &hash, pd_sess_hdl sess, u32 device_id, u32 *algorithm);

pd_status input_field_attribute_set(const Hash &hash, pd_sess_hdl sess, u32 device_id, u32 input, u32 count,
                                    const hash_input_field_attribute *attributes);
pd_status input_field_attribute_count_get(const Hash &hash, pd_sess_hdl sess, u32 device_id, u32 input,
                                          u32 *count);
pd_status input_field_attribute_get(const Hash &hash, pd_sess_hdl sess, u32 device_id, u32 input,
                                    u32 capacity, hash_input_field_attribute *attributes, u32 *count);

// `widths`: of each field, in bits.
pd_status calculate_hash_value(const Hash &hash, pd_sess_hdl sess, u32 device_id, u32 count,
                               const hash_input_field_attribute *attributes, const u32 *widths, u8 *value,
                               u32 value_bytes);

} // namespace pd
