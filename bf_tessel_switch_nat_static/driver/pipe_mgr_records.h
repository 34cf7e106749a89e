/**
 * @file pipe_mgr_records.h
 * @brief The records that go to the driver and come back, and what the words in them mean.
 *
 * Records are handed over by pointer and valid during the call only, so a driver copies what it keeps.
 * C11 and C++.
 */
#ifndef PD_DRIVER_PIPE_MGR_RECORDS_H
#define PD_DRIVER_PIPE_MGR_RECORDS_H

#include "layout.h"
#include "pd_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** The pipe of a target that means all pipes of the device. */
enum { PIPE_ALL_PIPES = 0xffff };

/** Which entry is meant: value and mask image of the key, and what else the look-up needs. */
typedef struct pipe_match_spec {
    uint8_t *match_value;     /**< big-endian fields, one after the other, each in whole bytes */
    uint8_t *match_mask;      /**< as long as the value */
    uint32_t partition_index; /**< the partition of a partitioned table, 0 elsewhere */
    uint32_t priority;        /**< ternary: the caller's; LPM: the number of suppressed bits; exact: 0 */
    uint16_t num_valid_bits;  /**< sum of the widths of the key fields */
    uint16_t num_bytes;       /**< length of each image */
    uint32_t match_reserved;  /**< always 0 */
} pipe_match_spec;

PD_OFFSET(pipe_match_spec, match_value, 0);
PD_OFFSET(pipe_match_spec, match_mask, 4);
PD_OFFSET(pipe_match_spec, partition_index, 8);
PD_OFFSET(pipe_match_spec, priority, 12);
PD_OFFSET(pipe_match_spec, num_valid_bits, 16);
PD_OFFSET(pipe_match_spec, num_bytes, 18);
PD_OFFSET(pipe_match_spec, match_reserved, 20);
PD_SIZE(pipe_match_spec, 24);

/** The image of an action's parameters. */
typedef struct pipe_action_data {
    uint16_t num_valid_bits; /**< sum of the widths of the parameters */
    uint16_t num_bytes;      /**< length of the image */
    uint8_t *data;           /**< never null, not even for an action without parameters */
} pipe_action_data;

PD_OFFSET(pipe_action_data, num_valid_bits, 0);
PD_OFFSET(pipe_action_data, num_bytes, 2);
PD_OFFSET(pipe_action_data, data, 4);
PD_SIZE(pipe_action_data, 8);

/** A meter as the driver takes it. */
typedef struct pipe_meter_spec {
    uint32_t meter_type;     /**< 0 colour aware, 1 colour unaware */
    uint32_t committed_unit; /**< 0 bytes, 1 packets */
    uint64_t committed_rate;
    uint64_t committed_burst;
    uint32_t peak_unit; /**< 0 bytes, 1 packets */
    uint64_t peak_rate;
    uint64_t peak_burst;
} pipe_meter_spec;

PD_OFFSET(pipe_meter_spec, meter_type, 0);
PD_OFFSET(pipe_meter_spec, committed_unit, 4);
PD_OFFSET(pipe_meter_spec, committed_rate, 8);
PD_OFFSET(pipe_meter_spec, committed_burst, 16);
PD_OFFSET(pipe_meter_spec, peak_unit, 24);
PD_OFFSET(pipe_meter_spec, peak_rate, 28);
PD_OFFSET(pipe_meter_spec, peak_burst, 36);
PD_SIZE(pipe_meter_spec, 44);

/** One element of a register table. */
typedef struct pipe_stful_value {
    uint8_t bytes[16]; /**< the one-bit registers of this program use byte 0 only */
} pipe_stful_value;

PD_SIZE(pipe_stful_value, 16);

/** What becomes of a resource when its entry is written. */
enum {
    PIPE_RES_KEEP = 0,   /**< leave it as it is */
    PIPE_RES_ATTACH = 1, /**< attach it to this entry */
    PIPE_RES_DETACH = 2  /**< detach it from this entry */
};

/** One stateful resource of an entry. */
typedef struct pipe_res_spec {
    uint32_t res_handle; /**< the counter, meter or register table */
    uint32_t res_index;  /**< the cell of that table; 0 for a direct resource */
    union {
        pipe_meter_spec meter;
        pipe_stful_value stful;
    } res_data;       /**< zero unless a value is written */
    uint32_t res_tag; /**< PIPE_RES_KEEP, PIPE_RES_ATTACH or PIPE_RES_DETACH */
} pipe_res_spec;

PD_OFFSET(pipe_res_spec, res_handle, 0);
PD_OFFSET(pipe_res_spec, res_index, 4);
PD_OFFSET(pipe_res_spec, res_data, 8);
PD_OFFSET(pipe_res_spec, res_tag, 52);
PD_SIZE(pipe_res_spec, 56);

/** What an entry does. */
enum {
    PIPE_ACTION_NONE = 0,   /**< no entry: only `action_data` counts */
    PIPE_ACTION_DATA = 1,   /**< parameters of its own */
    PIPE_ACTION_MEMBER = 2, /**< parameters of a profile's member */
    PIPE_ACTION_GROUP = 4   /**< one member of a group, by hash */
};

/** What an entry does, and the stateful resources that hang on it. */
typedef struct pipe_action_spec {
    uint8_t action_kind;    /**< one of PIPE_ACTION_* */
    uint8_t resource_count; /**< resources in use, 0 to 4 */
    pipe_action_data action_data;
    pd_mbr_hdl member_hdl;
    pd_grp_hdl group_hdl;
    pipe_res_spec resources[4];
} pipe_action_spec;

PD_OFFSET(pipe_action_spec, action_kind, 0);
PD_OFFSET(pipe_action_spec, resource_count, 1);
PD_OFFSET(pipe_action_spec, action_data, 4);
PD_OFFSET(pipe_action_spec, member_hdl, 12);
PD_OFFSET(pipe_action_spec, group_hdl, 16);
PD_OFFSET(pipe_action_spec, resources, 20);
PD_SIZE(pipe_action_spec, 244);

/* ---- Counters, registers, WRED ---- */

/** The two counts of a cell, in the driver's order. */
typedef struct pipe_stat_data {
    uint64_t second_count;
    uint64_t first_count;
} pipe_stat_data;

PD_OFFSET(pipe_stat_data, second_count, 0);
PD_OFFSET(pipe_stat_data, first_count, 8);
PD_SIZE(pipe_stat_data, 16);

/** What a read fills: as many elements as the register has values, one for each pipe. */
typedef struct pipe_stful_query {
    uint32_t count; /**< room on the way in; the driver may lower it */
    pipe_stful_value *elements;
} pipe_stful_query;

PD_OFFSET(pipe_stful_query, count, 0);
PD_OFFSET(pipe_stful_query, elements, 4);
PD_SIZE(pipe_stful_query, 8);

/** A WRED cell: four words that the library copies unread. */
typedef struct pipe_wred_spec {
    uint32_t words[4];
} pipe_wred_spec;

PD_SIZE(pipe_wred_spec, 16);

/* ---- Ageing, value sets, hashes ---- */

/** How a table ages its entries. The words are the driver's; those of other modes than 1 have no meaning. */
typedef struct pipe_idle_params {
    uint32_t idle_mode;
    uint32_t idle_param_1;
    uint32_t idle_param_2;
    uint32_t idle_param_3;
    uint32_t idle_param_4;
    uint32_t reserved_1; /**< 0 on write */
    uint32_t idle_param_5;
    uint32_t reserved_2; /**< 0 on write */
} pipe_idle_params;

PD_OFFSET(pipe_idle_params, idle_mode, 0);
PD_OFFSET(pipe_idle_params, idle_param_1, 4);
PD_OFFSET(pipe_idle_params, idle_param_4, 16);
PD_OFFSET(pipe_idle_params, reserved_1, 20);
PD_OFFSET(pipe_idle_params, idle_param_5, 24);
PD_OFFSET(pipe_idle_params, reserved_2, 28);
PD_SIZE(pipe_idle_params, 32);

/** The value of a property. */
typedef struct pipe_pvs_property_value {
    uint32_t value;
    uint32_t reserved; /**< 0 */
} pipe_pvs_property_value;

PD_OFFSET(pipe_pvs_property_value, value, 0);
PD_OFFSET(pipe_pvs_property_value, reserved, 4);
PD_SIZE(pipe_pvs_property_value, 8);

/** What a property is about. */
typedef struct pipe_pvs_property_args {
    uint32_t argument;
    uint32_t reserved_1; /**< 0 */
    uint32_t reserved_2; /**< 0; the driver does not look at it */
} pipe_pvs_property_args;

PD_OFFSET(pipe_pvs_property_args, argument, 0);
PD_OFFSET(pipe_pvs_property_args, reserved_1, 4);
PD_OFFSET(pipe_pvs_property_args, reserved_2, 8);
PD_SIZE(pipe_pvs_property_args, 12);

/** An attribute of one input field. */
typedef struct pipe_hash_calc_input_field_attribute {
    uint32_t input_field; /**< id of the field in the input */
    uint32_t reserved_1;  /**< 0 on set */
    uint32_t reserved_2;  /**< 0 on set */
    uint32_t position;    /**< `input_field` + 1 on set */
    uint32_t attr_type;
    pd_word attr_value;
} pipe_hash_calc_input_field_attribute;

PD_OFFSET(pipe_hash_calc_input_field_attribute, input_field, 0);
PD_OFFSET(pipe_hash_calc_input_field_attribute, reserved_1, 4);
PD_OFFSET(pipe_hash_calc_input_field_attribute, reserved_2, 8);
PD_OFFSET(pipe_hash_calc_input_field_attribute, position, 12);
PD_OFFSET(pipe_hash_calc_input_field_attribute, attr_type, 16);
PD_OFFSET(pipe_hash_calc_input_field_attribute, attr_value, 20);
PD_SIZE(pipe_hash_calc_input_field_attribute, 24);

/** The state of a member within a group, as the driver tells it. */
enum { PIPE_MEMBER_ACTIVE = 0, PIPE_MEMBER_INACTIVE = 1 };

#ifdef __cplusplus
}
#endif

#endif
