/**
 * @file pipe_mgr_hash.h
 * @brief The driver operations on dynamic hash calculations.
 */
#ifndef PD_DRIVER_PIPE_MGR_HASH_H
#define PD_DRIVER_PIPE_MGR_HASH_H

#include "layout.h"
#include "pd_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** An attribute of one input field. */
typedef struct pipe_hash_calc_input_field_attribute {
    u32 input_field; /**< id of the field in the input */
    u32 reserved_1;  /**< 0 on set */
    u32 reserved_2;  /**< 0 on set */
    u32 position;    /**< `input_field` + 1 on set */
    u32 attr_type;
    pd_word attr_value;
} pipe_hash_calc_input_field_attribute;

PD_OFFSET(pipe_hash_calc_input_field_attribute, input_field, 0);
PD_OFFSET(pipe_hash_calc_input_field_attribute, reserved_1, 4);
PD_OFFSET(pipe_hash_calc_input_field_attribute, reserved_2, 8);
PD_OFFSET(pipe_hash_calc_input_field_attribute, position, 12);
PD_OFFSET(pipe_hash_calc_input_field_attribute, attr_type, 16);
PD_OFFSET(pipe_hash_calc_input_field_attribute, attr_value, 20);
PD_SIZE(pipe_hash_calc_input_field_attribute, 24);

/* `calculation`, `input` and `algorithm` are handles; the driver refuses 0. */

/** Chooses the input of a calculation. */
pd_status pipe_mgr_hash_calc_input_set(pd_sess_hdl sess, u32 device_id, u32 calculation, u32 input);

/** Reads the input of a calculation. */
pd_status pipe_mgr_hash_calc_input_get(pd_sess_hdl sess, u32 device_id, u32 calculation, u32 *input);

/** Chooses the algorithm of a calculation. The last three arguments are always 0. */
pd_status pipe_mgr_hash_calc_algorithm_set(pd_sess_hdl sess, u32 device_id, u32 calculation, u32 algorithm,
                                           pd_word option_1, pd_word option_2, pd_word option_3);

/** Reads the algorithm of a calculation. The last two arguments are always 0. */
pd_status pipe_mgr_hash_calc_algorithm_get(pd_sess_hdl sess, u32 device_id, u32 calculation, u32 *algorithm,
                                           pd_word option_1, pd_word option_2);

/** Sets the seed of a calculation, whose form is the driver's. */
pd_status pipe_mgr_hash_calc_seed_set(pd_sess_hdl sess, u32 device_id, u32 calculation, pd_word first,
                                      pd_word second);

/** Reads the seed of a calculation. */
pd_status pipe_mgr_hash_calc_seed_get(pd_sess_hdl sess, u32 device_id, u32 calculation, void *seed);

/** Sets the attributes of input fields; `count` 0 comes with a null list. */
pd_status pipe_mgr_hash_calc_input_field_attribute_set(pd_sess_hdl sess, u32 device_id, u32 calculation,
                                                       u32 input, u32 count,
                                                       pipe_hash_calc_input_field_attribute *attributes);

/** Counts the attributes that are set. */
pd_status pipe_mgr_hash_calc_input_field_attribute_count_get(pd_sess_hdl sess, u32 device_id, u32 calculation,
                                                             u32 input, u32 *count);

/** Reads up to `capacity` attributes and writes to `count` how many they are. */
pd_status pipe_mgr_hash_calc_input_field_attribute_get(pd_sess_hdl sess, u32 device_id, u32 calculation,
                                                       u32 input, u32 capacity,
                                                       pipe_hash_calc_input_field_attribute *attributes,
                                                       u32 *count);

/** Hashes a stream of whole bytes, spare bits at the top of its first byte, into `hash_size` of `hash`. */
pd_status pipe_mgr_hash_calc_calculate_hash_value(pd_sess_hdl sess, u32 device_id, u32 calculation,
                                                  u8 *stream, u32 stream_bytes, u8 *hash, u32 hash_size);

#ifdef __cplusplus
}
#endif

#endif
