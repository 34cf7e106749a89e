#include "hashes.h"

#include <algorithm>

#include "bit_stream.h"
#include "image.h"
#include "sys_array.h"

// Deliberate: none of the lists below is tested for lack of memory; there is no result for it.

namespace pd {

namespace {

// Tells which number a handle has. One that is not the calculation's own hides the driver's status.
pd_status tell_choice(pd_status status, u32 current, u32 own, u32 *number)
{
    if (current != own)
        return PD_STATUS_UNKNOWN_CHOICE;
    *number = 0;
    return status;
}

// The input that the driver has for the calculation, 0 when it does not tell.
u32 current_input(const Hash &hash, pd_sess_hdl sess, u32 device_id)
{
    u32 input = 0;
    pipe_mgr_hash_calc_input_get(sess, device_id, hash.handle, &input);
    return input;
}

// What lies in front of the cursor's byte is still zero.
template <u32 bytes>
void prepend_whole(u8 **cursor, pd_word value)
{
    *cursor -= bytes;
    store_big_endian<bytes>(*cursor + 1, static_cast<u32>(value));
}

// The source of a field of up to 32 bits is its word, of a wider one the bytes that its word points at. Most
// fields are whole words at the start of a byte: these take the short way.
void prepend(u8 **cursor, u32 *used, pd_word value, u32 width)
{
    if (width > 32) {
        prepend_to_bytestream(cursor, used, reinterpret_cast<const u8 *>(value), width);
        return;
    }
    if (*used == 0) {
        switch (width) {
        case 8:
            return prepend_whole<1>(cursor, value);
        case 16:
            return prepend_whole<2>(cursor, value);
        case 32:
            return prepend_whole<4>(cursor, value);
        }
    }
    u8 word[4];
    store_big_endian<4>(word, static_cast<u32>(value));
    prepend_to_bytestream(cursor, used, word + sizeof word - bytes_of(width), width);
}

} // namespace

pd_status input_get(const Hash &hash, pd_sess_hdl sess, u32 device_id, u32 *input)
{
    u32 current = 0;
    const pd_status status = pipe_mgr_hash_calc_input_get(sess, device_id, hash.handle, &current);
    return tell_choice(status, current, hash.input, input);
}

pd_status algorithm_get(const Hash &hash, pd_sess_hdl sess, u32 device_id, u32 *algorithm)
{
    u32 current = 0;
    const pd_status status = pipe_mgr_hash_calc_algorithm_get(sess, device_id, hash.handle, &current, 0, 0);
    return tell_choice(status, current, hash.algorithm, algorithm);
}

pd_status input_field_attribute_set(const Hash &hash, pd_sess_hdl sess, u32 device_id, u32 input, u32 count,
                                    const hash_input_field_attribute *attributes)
{
    const u32 handle = choose(input, hash.input);
    if (count == 0)
        return pipe_mgr_hash_calc_input_field_attribute_set(sess, device_id, hash.handle, handle, 0, nullptr);
    const SysArray<pipe_hash_calc_input_field_attribute> list(count);
    for (u32 i = 0; i < count; ++i)
        list[i] = {attributes[i].input_field, 0, 0, attributes[i].input_field + 1, attributes[i].attr_type,
                   attributes[i].attr_value};
    return pipe_mgr_hash_calc_input_field_attribute_set(sess, device_id, hash.handle, handle, count,
                                                        list.get());
}

pd_status input_field_attribute_count_get(const Hash &hash, pd_sess_hdl sess, u32 device_id, u32 input,
                                          u32 *count)
{
    const u32 current = current_input(hash, sess, device_id);
    if (current == hash.input && input != 0)
        return PD_STATUS_UNKNOWN_CHOICE;
    *count = 0;
    return pipe_mgr_hash_calc_input_field_attribute_count_get(sess, device_id, hash.handle, current, count);
}

pd_status input_field_attribute_get(const Hash &hash, pd_sess_hdl sess, u32 device_id, u32 input,
                                    u32 capacity, hash_input_field_attribute *attributes, u32 *count)
{
    *count = 0;
    const u32 current = current_input(hash, sess, device_id);
    if (current == hash.input && input != 0)
        return PD_STATUS_UNKNOWN_CHOICE;
    if (capacity == 0)
        return PD_STATUS_SUCCESS;
    const SysArray<pipe_hash_calc_input_field_attribute> list(capacity);
    const pd_status status = pipe_mgr_hash_calc_input_field_attribute_get(
        sess, device_id, hash.handle, current, capacity, list.get(), count);
    if (status != PD_STATUS_SUCCESS)
        return status;
    *count = std::min(*count, capacity);
    for (u32 i = 0; i < *count; ++i)
        attributes[i] = {list[i].input_field, list[i].attr_type, list[i].attr_value};
    return PD_STATUS_SUCCESS;
}

pd_status calculate_hash_value(const Hash &hash, pd_sess_hdl sess, u32 device_id, u32 count,
                               const hash_input_field_attribute *attributes, const u32 *widths, u8 *value,
                               u32 value_bytes)
{
    u32 bits = 0;
    for (u32 i = 0; i < count; ++i)
        bits += widths[i];
    const u32 bytes = (bits + 7) / 8;
    const SysArray<u8> stream(bytes);
    u8 *cursor = bytes ? stream.get() + bytes - 1 : nullptr;
    u32 used = 0;
    for (u32 i = count; i-- > 0;)
        prepend(&cursor, &used, attributes[i].attr_value, widths[i]);
    return pipe_mgr_hash_calc_calculate_hash_value(sess, device_id, hash.handle, stream.get(), bytes, value,
                                                   value_bytes);
}

} // namespace pd
