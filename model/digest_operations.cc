// The driver operations on digests, and the control functions that play the chip that sends them.
#include "device.h"

using namespace model;

namespace {

// Runs `use` on the digests of a device under its lock.
template <typename Use>
pd_status with_digests(u32 device_id, u32 digest, Use use)
{
    return with_device(device_id, [&](Device &device) {
        return find_object(program.digests, digest) != nullptr ? use(device.digests) : unknown_object;
    });
}

// A message does not tell its device before it is known, so each device is asked for it.
pd_status acknowledge(pd_sess_hdl sess, u32 digest, pd_word message)
{
    pd_status status = unknown_object;
    for (u32 device_id = 0; status != ok && find_device(device_id) != nullptr; ++device_id)
        status = with_digests(device_id, digest,
                              [&](Digests &digests) { return digests.acknowledge(sess, digest, message); });
    return status;
}

} // namespace

namespace model {

// ---- Driver operations ----------------------------------------------------------------------------------

pd_status pipe_mgr_lrn_digest_notification_register(pd_sess_hdl sess, u8 device_id, u32 digest,
                                                    pipe_lrn_digest_cb callback, pd_word cookie)
{
    const auto add = [&](Digests &digests) { return digests.add_listener(digest, {sess, callback, cookie}); };
    return with_digests(device_id, digest, add);
}

pd_status pipe_mgr_lrn_digest_notification_deregister(pd_sess_hdl sess, u8 device_id, u32 digest)
{
    const auto remove = [&](Digests &digests) { return digests.remove_listener(digest, sess); };
    return with_digests(device_id, digest, remove);
}

pd_status pipe_mgr_flow_lrn_notify_ack(pd_sess_hdl sess, u32 digest, pd_word message)
{
    return acknowledge(sess, digest, message);
}

pd_status pipe_mgr_flow_lrn_set_timeout(pd_sess_hdl, u8 device_id, u32 timeout)
{
    const auto set = [&](Device &device) {
        device.digests.timeout = timeout;
        return ok;
    };
    return with_device(device_id, set);
}

} // namespace model

extern "C" {

// ---- Control --------------------------------------------------------------------------------------------

pd_status ts_model_digest(u32 device_id, u32 digest, const u8 *entries, u32 count)
{
    DigestListener listener{};
    ts_model_digest_message *message = nullptr;
    const pd_status status = with_digests(device_id, digest, [&](Digests &digests) {
        const DigestListener *known = digests.listener(digest);
        if (entries == nullptr || count == 0)
            return bad_argument;
        if (known == nullptr)
            return unknown_object;
        listener = *known;
        message = digests.add_message(device_id, *find_object(program.digests, digest), entries, count);
        return ok;
    });
    return status == ok ? listener.callback(listener.sess, message, listener.cookie) : status;
}

u32 ts_model_pending_digests(u32 device_id, u32 digest)
{
    u32 count = 0;
    with_digests(device_id, digest, [&](const Digests &digests) {
        count = digests.pending(digest);
        return ok;
    });
    return count;
}

u32 ts_model_learning_timeout(u32 device_id)
{
    u32 timeout = 0;
    with_device(device_id, [&](const Device &device) {
        timeout = device.digests.timeout;
        return ok;
    });
    return timeout;
}

} // extern "C"
