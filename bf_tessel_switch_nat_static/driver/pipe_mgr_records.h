/**
 * @file pipe_mgr_records.h
 * @brief The records that match entries, members and resources share on their way to the driver.
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
    u8 *match_value;     /**< big-endian fields, one after the other, each in whole bytes */
    u8 *match_mask;      /**< as long as the value */
    u32 partition_index; /**< the partition of a partitioned table, 0 elsewhere */
    u32 priority;        /**< ternary: the caller's; LPM: the number of suppressed bits; exact: 0 */
    u16 num_valid_bits;  /**< sum of the widths of the key fields */
    u16 num_bytes;       /**< length of each image */
    u32 match_reserved;  /**< always 0 */
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
    u16 num_valid_bits; /**< sum of the widths of the parameters */
    u16 num_bytes;      /**< length of the image */
    u8 *data;           /**< never null, not even for an action without parameters */
} pipe_action_data;

PD_OFFSET(pipe_action_data, num_valid_bits, 0);
PD_OFFSET(pipe_action_data, num_bytes, 2);
PD_OFFSET(pipe_action_data, data, 4);
PD_SIZE(pipe_action_data, 8);

/** A meter as the driver takes it. */
typedef struct pipe_meter_spec {
    u32 meter_type;     /**< 0 colour aware, 1 colour unaware */
    u32 committed_unit; /**< 0 bytes, 1 packets */
    u64 committed_rate;
    u64 committed_burst;
    u32 peak_unit; /**< 0 bytes, 1 packets */
    u64 peak_rate;
    u64 peak_burst;
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
    u8 bytes[16]; /**< the one-bit registers of this program use byte 0 only */
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
    u32 res_handle; /**< the counter, meter or register table */
    u32 res_index;  /**< the cell of that table; 0 for a direct resource */
    union {
        pipe_meter_spec meter;
        pipe_stful_value stful;
    } res_data;  /**< zero unless a value is written */
    u32 res_tag; /**< PIPE_RES_KEEP, PIPE_RES_ATTACH or PIPE_RES_DETACH */
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
    u8 action_kind;    /**< one of PIPE_ACTION_* */
    u8 resource_count; /**< resources in use, 0 to 4 */
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

#ifdef __cplusplus
}
#endif

#endif
