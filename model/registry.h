// The clients that have registered with the driver.
#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "bf_drv.h"
#include "status.h"

namespace model {

class Registry {
public:
    // A name that is registered already is taken over under a new handle.
    u32 add(const char *name);
    pd_status set_callbacks(u32 handle, const pd_drv_client_callbacks &callbacks);
    pd_status remove(u32 handle);
    void reset();

    // Those of the client that registered last; none without a client or before it has set them.
    std::optional<pd_drv_client_callbacks> callbacks();

private:
    struct Client {
        std::string name;
        std::optional<pd_drv_client_callbacks> callbacks;
    };

    std::mutex mutex_;
    std::map<u32, Client> clients_; // by handle
    u32 last_handle_ = 0;
};

Registry &registry();

} // namespace model
