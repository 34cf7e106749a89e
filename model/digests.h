// Digests of one device: who has registered for them, and which messages are not acknowledged yet.
#pragma once

#include <map>
#include <memory>
#include <vector>

#include "pipe_mgr_learn.h"
#include "program.h"
#include "status.h"

namespace model {

struct DigestListener {
    pd_sess_hdl sess;
    pipe_lrn_digest_cb callback;
    pd_word cookie;
};

class Digests {
public:
    pd_status add_listener(u32 digest, const DigestListener &listener);
    pd_status remove_listener(u32 digest, pd_sess_hdl sess);
    // Null while nobody has registered.
    const DigestListener *listener(u32 digest) const;

    // A new message for the digest's listener, which exists. It lives until it is acknowledged.
    ts_model_digest_message *add_message(u32 device_id, const ProgramDigest &digest, const u8 *entries,
                                         u32 count);
    pd_status acknowledge(pd_sess_hdl sess, u32 digest, pd_word message);
    u32 pending(u32 digest) const;

    u32 timeout = 0;

private:
    struct Message {
        pd_sess_hdl sess;
        std::vector<u8> entries;
        ts_model_digest_message record;
    };

    std::map<u32, DigestListener> listeners_;              // by digest
    std::map<pd_word, std::unique_ptr<Message>> messages_; // by the address of the record
};

} // namespace model
