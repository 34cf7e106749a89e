/**
 * @file pipe_mgr_learn.h
 * @brief The driver operations on digests: records that the chip sends to the control plane.
 */
#ifndef PD_DRIVER_PIPE_MGR_LEARN_H
#define PD_DRIVER_PIPE_MGR_LEARN_H

#include "pd_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Receives a message of digest entries, which goes back with pipe_mgr_flow_lrn_notify_ack. */
typedef pd_status (*pipe_lrn_digest_cb)(pd_sess_hdl sess, void *message, pd_word cookie);

/** Registers for the messages of a digest. The callback is the caller's own. */
pd_status pipe_mgr_lrn_digest_notification_register(pd_sess_hdl sess, u8 device_id, u32 digest,
                                                    pipe_lrn_digest_cb callback, pd_word cookie);

/** Ends the messages of a digest. */
pd_status pipe_mgr_lrn_digest_notification_deregister(pd_sess_hdl sess, u8 device_id, u32 digest);

/** Hands a message back to the driver. */
pd_status pipe_mgr_flow_lrn_notify_ack(pd_sess_hdl sess, u32 digest, pd_word message);

/** Sets after which time a message that is not full goes out. One setting for the device. */
pd_status pipe_mgr_flow_lrn_set_timeout(pd_sess_hdl sess, u8 device_id, u32 timeout);

#ifdef __cplusplus
}
#endif

#endif
