/**
 * @file pipe_mgr_meter.h
 * @brief The driver operations on meters and weighted random early discard.
 */
#ifndef PD_DRIVER_PIPE_MGR_METER_H
#define PD_DRIVER_PIPE_MGR_METER_H

#include "pipe_mgr_records.h"

#ifdef __cplusplus
extern "C" {
#endif

/** A WRED cell: four words that the library copies unread. */
typedef struct pipe_wred_spec {
    u32 words[4];
} pipe_wred_spec;

PD_SIZE(pipe_wred_spec, 16);

/** Writes a cell of a meter table. */
pd_status pipe_mgr_meter_ent_set(pd_sess_hdl sess, pd_dev_target target, u32 meter, u32 index,
                                 pipe_meter_spec *spec, u32 flags);

/** Reads a cell of a meter table. */
pd_status pipe_mgr_meter_read_entry_idx(pd_sess_hdl sess, pd_dev_target target, u32 meter, u32 index,
                                        pipe_meter_spec *spec, u32 flags);

/** Reads the direct meter of a match entry. */
pd_status pipe_mgr_meter_read_entry(pd_sess_hdl sess, pd_dev_target target, u32 table, pd_entry_hdl entry,
                                    pipe_meter_spec *spec);

/** Sets how many bytes are added to each packet's length before it is metered. */
pd_status pipe_mgr_meter_set_bytecount_adjust(pd_sess_hdl sess, pd_dev_target target, u32 meter, u32 adjust);

/** Reads the byte count adjustment. */
pd_status pipe_mgr_meter_get_bytecount_adjust(pd_sess_hdl sess, pd_dev_target target, u32 meter, u32 *adjust);

/** Writes a WRED cell. */
pd_status pipe_mgr_wred_ent_set(pd_sess_hdl sess, pd_dev_target target, u32 wred, u32 index,
                                pipe_wred_spec *spec, u32 flags);

#ifdef __cplusplus
}
#endif

#endif
