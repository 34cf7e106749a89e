// The digests that a session watches, through the callbacks of the driver.
#pragma once

#include <map>
#include <vector>

#include "digest_form.h"
#include "services.h"

namespace shell {

class Session;

class DigestWatches {
public:
    explicit DigestWatches(Session &session) : session_(session) {}
    DigestWatches(const DigestWatches &) = delete;
    DigestWatches &operator=(const DigestWatches &) = delete;

    // Prints what comes in, and hands each message back unless told to hold them. Each throws BadLine when
    // the driver refuses. Once more changes only whether messages are held.
    void add(const reflection::DigestFunctions &digest, bool hold);
    void remove(const reflection::DigestFunctions &digest);
    // Hands back the messages that are held.
    void acknowledge(const reflection::DigestFunctions &digest);
    // Takes all back, whatever the driver says.
    void clear();

private:
    struct Watch {
        Watch(Session &to, const reflection::DigestFunctions &of) : session(to), digest(of), form(*of.row) {}

        Session &session;
        const reflection::DigestFunctions &digest;
        DigestForm form;
        bool hold = false;
        std::vector<pd_word> held;
    };

    static pd_status receive(pd_sess_hdl sess, void *message, pd_word watch);

    Session &session_;
    std::map<const reflection::DigestFunctions *, Watch> watches_;
};

} // namespace shell
