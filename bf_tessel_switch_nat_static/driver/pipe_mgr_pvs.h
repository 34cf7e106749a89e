/**
 * @file pipe_mgr_pvs.h
 * @brief The driver operations on parser value sets.
 */
#ifndef PD_DRIVER_PIPE_MGR_PVS_H
#define PD_DRIVER_PIPE_MGR_PVS_H

#include "layout.h"
#include "pd_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** The value of a property. */
typedef struct pipe_pvs_property_value {
    u32 value;
    u32 reserved; /**< 0 */
} pipe_pvs_property_value;

PD_OFFSET(pipe_pvs_property_value, value, 0);
PD_OFFSET(pipe_pvs_property_value, reserved, 4);
PD_SIZE(pipe_pvs_property_value, 8);

/** What a property is about. */
typedef struct pipe_pvs_property_args {
    u32 argument;
    u32 reserved_1; /**< 0 */
    u32 reserved_2; /**< 0; the driver does not look at it */
} pipe_pvs_property_args;

PD_OFFSET(pipe_pvs_property_args, argument, 0);
PD_OFFSET(pipe_pvs_property_args, reserved_1, 4);
PD_OFFSET(pipe_pvs_property_args, reserved_2, 8);
PD_SIZE(pipe_pvs_property_args, 12);

/* Scope and key words are handed on unread; `set` is the handle of the value set. */

/** Sets a property of a value set. */
pd_status pipe_mgr_pvs_set_property(pd_sess_hdl sess, u32 device_id, u32 set, u32 property,
                                    pipe_pvs_property_value value, pipe_pvs_property_args args);

/** Reads a property of a value set. */
pd_status pipe_mgr_pvs_get_property(pd_sess_hdl sess, u32 device_id, u32 set, u32 property, u32 *value,
                                    pipe_pvs_property_args args);

/** Adds an entry and writes its handle to `entry`. */
pd_status pipe_mgr_pvs_entry_add(pd_sess_hdl sess, u32 device_id, u32 set, u32 scope_a, u32 scope_b,
                                 u8 scope_c, u32 key, u32 key_mask, u32 *entry);

/** Replaces the key of an entry. */
pd_status pipe_mgr_pvs_entry_modify(pd_sess_hdl sess, u32 device_id, u32 set, u32 entry, u32 key,
                                    u32 key_mask);

/** Deletes an entry. */
pd_status pipe_mgr_pvs_entry_delete(pd_sess_hdl sess, u32 device_id, u32 set, u32 entry);

/** Reads the key of an entry. The scope pointers may be null, and the library's always are. */
pd_status pipe_mgr_pvs_entry_get(pd_sess_hdl sess, u32 device_id, u32 set, u32 entry, u32 *key, u32 *key_mask,
                                 u32 *scope_a, u32 *scope_b, u8 *scope_c);

/** Finds the entry with this scope and key. */
pd_status pipe_mgr_pvs_entry_handle_get(pd_sess_hdl sess, u32 device_id, u32 set, u32 scope_a, u32 scope_b,
                                        u8 scope_c, u32 key, u32 key_mask, u32 *entry);

/** The first entry of a scope. */
pd_status pipe_mgr_pvs_entry_get_first(pd_sess_hdl sess, u32 device_id, u32 set, u32 scope_a, u32 scope_b,
                                       u8 scope_c, u32 *first);

/** Up to `count` entries behind `after`, written to the array `next`. */
pd_status pipe_mgr_pvs_entry_get_next(pd_sess_hdl sess, u32 device_id, u32 set, u32 scope_a, u32 scope_b,
                                      u8 scope_c, u32 after, u32 count, u32 *next);

/** Counts the entries of a scope. */
pd_status pipe_mgr_pvs_entry_get_count(pd_sess_hdl sess, u32 device_id, u32 set, u32 scope_a, u32 scope_b,
                                       u8 scope_c, u8 flag, u32 *count);

#ifdef __cplusplus
}
#endif

#endif
