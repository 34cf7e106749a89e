/**
 * @file bf_snapshot.h
 * @brief The driver operations on snapshots of the packet header vector.
 */
#ifndef PD_DRIVER_BF_SNAPSHOT_H
#define PD_DRIVER_BF_SNAPSHOT_H

#include "pd_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Makes a snapshot; all six arguments are handed on unread. */
pd_status bf_snapshot_create(pd_word first, pd_word second, u8 third, u8 fourth, pd_word fifth,
                             pd_word sixth);

/** Deletes a snapshot. */
pd_status bf_snapshot_delete(u32 snapshot);

/** Sets what a packet must look like to trigger: two records of 709 bytes with big-endian fields. */
pd_status bf_snapshot_capture_trigger_set(u32 snapshot, u8 *spec, u8 *mask);

/** Tells how many bytes a capture takes, and how many of them one stage; neither is 0. */
pd_status bf_snapshot_capture_phv_fields_dict_size(u32 snapshot, u32 *total_bytes, u32 *stage_bytes);

/** Reads a capture into `buffer`, stage after stage. `second` and `control` are handed on unread. */
pd_status bf_snapshot_capture_get(u32 snapshot, pd_word second, void *buffer, pd_word control, u32 *count);

#ifdef __cplusplus
}
#endif

#endif
