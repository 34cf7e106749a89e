#include "capture_services.h"

#include <cjson/cJSON.h>
#include <cstdarg>
#include <cstdio>

#include "bf_sys.h"
#include "pd_ms.h"

namespace services {

std::vector<std::string> events;
std::vector<LogLine> log;
pd_drv_client_callbacks callbacks;
pd_status store_status;
pd_status register_status;
pd_status callbacks_status;
pd_status deregister_status;
pd_word next_state;
u32 client_handle;
bool debug_mode;
bool keep_calls;
std::size_t failing_call;
pd_status failing_status;
pipe_restore_state_cb restore;
bool announce;

void record(std::string line)
{
    if (announce)
        std::fprintf(stderr, "%s\n", line.c_str());
    events.push_back(std::move(line));
}

pd_status answer(pd_status otherwise)
{
    return keep_calls && events.size() == failing_call ? failing_status : otherwise;
}

void reset()
{
    events.clear();
    log.clear();
    callbacks = {};
    store_status = register_status = callbacks_status = deregister_status = 0;
    next_state = 1;
    client_handle = 0x77;
    debug_mode = announce = keep_calls = false;
    failing_call = failing_status = 0;
    restore = nullptr;
}

namespace {

// The element of a document that a call was about.
void append_name(const cJSON *document)
{
    events.back().append(" ").append(cJSON_GetObjectItem(document, "name")->valuestring);
}

} // namespace

} // namespace services

using services::line;
using services::record;

pd_status p4_pd_ms_init()
{
    record(line(__func__));
    return services::store_status;
}

pd_word p4_pd_ms_init_state()
{
    record(line(__func__));
    return services::next_state++;
}

pd_status p4_pd_ms_destroy_state_for_dev(pd_word state, u32 device_id)
{
    record(line(__func__, state, device_id));
    return services::store_status;
}

pd_status p4_pd_ms_destroy_txn_state_for_dev(u32 device_id)
{
    record(line(__func__, device_id));
    return services::store_status;
}

pd_status p4_pd_ms_log_state(u32 device_id, pd_word state, cJSON *document)
{
    record(line(__func__, device_id, state));
    services::append_name(document);
    cJSON_AddNumberToObject(document, "state", static_cast<double>(state));
    return services::store_status;
}

pd_status p4_pd_ms_restore_state(u32 device_id, pd_word state, cJSON *document)
{
    record(line(__func__, device_id, state));
    services::append_name(document);
    return services::store_status;
}

pd_status bf_drv_register(const char *client_name, u32 *handle)
{
    record(line(__func__));
    services::events.back().append(" ").append(client_name);
    *handle = services::client_handle;
    return services::register_status;
}

pd_status bf_drv_client_register_callbacks(u32 handle, pd_drv_client_callbacks *callbacks, u32 kind)
{
    record(line(__func__, handle, kind));
    services::callbacks = *callbacks;
    return services::callbacks_status;
}

pd_status bf_drv_deregister(u32 handle)
{
    record(line(__func__, handle));
    return services::deregister_status;
}

int bf_sys_dbg_mode()
{
    return services::debug_mode;
}

int bf_sys_log_and_trace(int module, int level, const char *format, ...)
{
    char text[512];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    if (services::announce)
        std::fprintf(stderr, "log %d %d [%s] %s\n", module, level, format, text);
    services::log.push_back({module, level, format, text});
    return -1; // a log that fails changes nothing
}
