#include "syncs.h"

namespace model {

// What still waits at the end of the process is not told any more.
Syncs::~Syncs()
{
    {
        const std::lock_guard lock{mutex_};
        waiting_.clear();
    }
    set_thread(false);
}

void Syncs::set_thread(bool on)
{
    const std::lock_guard switching{switching_};
    std::jthread ending; // joined without the lock that the thread needs
    const std::lock_guard lock{mutex_};
    if (on && !worker_.joinable())
        worker_ = std::jthread{[this](const std::stop_token &stop) { work(stop); }};
    else if (!on)
        ending = std::move(worker_);
}

void Syncs::tell(const Sync &sync)
{
    if (sync.callback == nullptr)
        return;
    {
        const std::lock_guard lock{mutex_};
        if (worker_.joinable()) {
            waiting_.push_back(sync);
            changed_.notify_all();
            return;
        }
    }
    sync.callback(sync.device_id, sync.cookie);
}

void Syncs::wait()
{
    std::unique_lock lock{mutex_};
    changed_.wait(lock, [this] { return waiting_.empty() && !telling_; });
}

void Syncs::work(const std::stop_token &stop)
{
    std::unique_lock lock{mutex_};
    while (changed_.wait(lock, stop, [this] { return !waiting_.empty(); })) {
        const Sync sync = waiting_.front();
        waiting_.pop_front();
        telling_ = true;
        lock.unlock();
        sync.callback(sync.device_id, sync.cookie);
        lock.lock();
        telling_ = false;
        changed_.notify_all();
    }
}

Syncs &syncs()
{
    static Syncs instance;
    return instance;
}

} // namespace model

extern "C" {

void ts_model_set_sync_thread(int on)
{
    model::syncs().set_thread(on != 0);
}

void ts_model_wait_for_syncs(void)
{
    model::syncs().wait();
}

} // extern "C"
