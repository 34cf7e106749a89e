// The families of digests. Messages go from the driver to the caller's callback directly; where a field lies
// in one is the inspection layer's to tell.
#pragma once

#include "internal.h"
#include "pd_services.h"
#include "pipe_mgr.h"
#include "rows_services.h"

namespace TS_INTERNAL pd {

inline pd_status register_digest(const Digest &digest, pd_sess_hdl sess, u8 device_id, pd_digest_cb callback,
                                 pd_word cookie)
{
    return pipe_mgr_lrn_digest_notification_register(sess, device_id, digest.handle, callback, cookie);
}

inline pd_status deregister_digest(const Digest &digest, pd_sess_hdl sess, u8 device_id)
{
    return pipe_mgr_lrn_digest_notification_deregister(sess, device_id, digest.handle);
}

inline pd_status notify_ack(const Digest &digest, pd_sess_hdl sess, pd_word message)
{
    return pipe_mgr_flow_lrn_notify_ack(sess, digest.handle, message);
}

} // namespace pd
