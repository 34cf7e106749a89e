// The driver registry's operations, and the events that the driver tells its client of.
#include <cjson/cJSON.h>

#include <memory>

#include "device.h"
#include "registry.h"

using namespace model;

namespace {
using Document = std::unique_ptr<cJSON, decltype(&cJSON_Delete)>;

} // namespace

namespace model {

pd_status bf_drv_register(const char *client_name, u32 *handle)
{
    *handle = registry().add(client_name);
    return ok;
}

pd_status bf_drv_client_register_callbacks(u32 handle, pd_drv_client_callbacks *callbacks, u32)
{
    return registry().set_callbacks(handle, *callbacks);
}

pd_status bf_drv_deregister(u32 handle)
{
    return registry().remove(handle);
}

} // namespace model

extern "C" {

void ts_model_remove_device(u32 device_id)
{
    const auto callbacks = registry().callbacks();
    if (!callbacks)
        return;
    if (callbacks->device_remove != nullptr)
        callbacks->device_remove(device_id);
    if (Device *device = find_device(device_id))
        device->clear();
}

char *ts_model_log_state(u32 device_id)
{
    const auto callbacks = registry().callbacks();
    if (!callbacks || callbacks->device_log == nullptr)
        return nullptr;
    const Document root{cJSON_CreateObject(), cJSON_Delete};
    callbacks->device_log(device_id, root.get());
    return cJSON_Print(root.get());
}

pd_status ts_model_restore_state(u32 device_id, const char *json)
{
    const Document root{json != nullptr ? cJSON_Parse(json) : nullptr, cJSON_Delete};
    if (!root)
        return bad_argument;
    const auto callbacks = registry().callbacks();
    if (!callbacks || callbacks->device_restore == nullptr)
        return unknown_object;
    return callbacks->device_restore(device_id, root.get());
}

} // extern "C"
