#include "registry.h"

namespace model {

u32 Registry::add(const char *name)
{
    const std::lock_guard lock{mutex_};
    std::erase_if(clients_, [&](const auto &client) { return client.second.name == name; });
    clients_[++last_handle_] = {name, {}};
    return last_handle_;
}

pd_status Registry::set_callbacks(u32 handle, const pd_drv_client_callbacks &callbacks)
{
    const std::lock_guard lock{mutex_};
    const auto client = clients_.find(handle);
    if (client == clients_.end())
        return unknown_object;
    client->second.callbacks = callbacks;
    return ok;
}

pd_status Registry::remove(u32 handle)
{
    const std::lock_guard lock{mutex_};
    return clients_.erase(handle) != 0 ? ok : unknown_object;
}

void Registry::reset()
{
    const std::lock_guard lock{mutex_};
    clients_.clear();
    last_handle_ = 0;
}

std::optional<pd_drv_client_callbacks> Registry::callbacks()
{
    const std::lock_guard lock{mutex_};
    return clients_.empty() ? std::nullopt : clients_.rbegin()->second.callbacks;
}

Registry &registry()
{
    static Registry instance;
    return instance;
}

} // namespace model
