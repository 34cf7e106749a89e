// Tells callers that a table-wide sync is done: at once, or from a thread of the model's own.
#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

#include "status.h"

namespace model {

struct Sync {
    void (*callback)(u32 device_id, pd_word cookie); // may be null
    u32 device_id;
    pd_word cookie;
};

class Syncs {
public:
    ~Syncs();

    // Turning the thread off waits until it has told what is waiting.
    void set_thread(bool on);
    void tell(const Sync &sync);
    void wait();

private:
    void work(const std::stop_token &stop);

    std::mutex switching_; // held while the thread starts or ends
    std::mutex mutex_;     // guards all that follows
    std::condition_variable_any changed_;
    std::deque<Sync> waiting_;
    bool telling_ = false;
    std::jthread worker_;
};

Syncs &syncs();

// Runs what syncs a whole table. Its end is told outside of every lock.
template <typename Execute>
pd_status run_sync(const Sync &sync, Execute execute)
{
    const pd_status status = execute();
    if (status == ok)
        syncs().tell(sync);
    return status;
}

} // namespace model
