// Registration with the driver, and what the driver calls when a device goes, is logged or is restored.

#include <cjson/cJSON.h>
#include <cstring>

#include "bf_drv.h"
#include "failure.h"
#include "pd.h"
#include "pd_ms.h"
#include "rows_profiles.h"

u32 bf_drv_hdl = 0;

namespace {

constexpr char client_name[] = "p4_pd_tessel_switch_pd";
constexpr u32 client_kind = 2;

// None of the services' results changes what these callbacks return.

pd_status p4_pd_tessel_switch_dev_remove(u32 device_id)
{
    for (const pd::Profile *profile : pd::profiles::all)
        p4_pd_ms_destroy_state_for_dev(*profile->state, device_id);
    p4_pd_ms_destroy_txn_state_for_dev(device_id);
    return 0;
}

pd_status p4_pd_tessel_switch_dev_log(u32 device_id, cJSON *root)
{
    cJSON_AddStringToObject(root, "name", "tessel_switch");
    cJSON *elements = cJSON_CreateArray();
    cJSON_AddItemToObject(root, "act_profs", elements);
    for (const pd::Profile *profile : pd::profiles::all) {
        cJSON *element = cJSON_CreateObject();
        cJSON_AddItemToArray(elements, element);
        cJSON_AddStringToObject(element, "name", profile->name);
        p4_pd_ms_log_state(device_id, *profile->state, element);
    }
    return 0;
}

// Trusts the document: it comes from p4_pd_tessel_switch_dev_log, so "act_profs" and every "name" exist.
// Deliberate: the root's own name is not read, and repeated names are not filtered.
pd_status p4_pd_tessel_switch_dev_restore(u32 device_id, cJSON *root)
{
    for (cJSON *element = cJSON_GetObjectItem(root, "act_profs")->child; element; element = element->next) {
        const char *name = cJSON_GetObjectItem(element, "name")->valuestring;
        for (const pd::Profile *profile : pd::profiles::all)
            if (std::strcmp(name, profile->name) == 0)
                p4_pd_ms_restore_state(device_id, *profile->state, element);
    }
    return 0;
}

} // namespace

void p4_pd_tessel_switch_init()
{
    p4_pd_ms_init();
    for (const pd::Profile *profile : pd::profiles::all)
        *profile->state = p4_pd_ms_init_state();
    if (bf_drv_register(client_name, &bf_drv_hdl) != 0)
        pd::fail("r == BF_SUCCESS", {__func__, __LINE__});

    pd_drv_client_callbacks callbacks{};
    callbacks.device_remove = p4_pd_tessel_switch_dev_remove;
    callbacks.device_log = p4_pd_tessel_switch_dev_log;
    callbacks.device_restore = p4_pd_tessel_switch_dev_restore;
    bf_drv_client_register_callbacks(bf_drv_hdl, &callbacks, client_kind);
}

pd_status p4_pd_tessel_switch_cleanup()
{
    return bf_drv_deregister(bf_drv_hdl);
}

void p4_pd_tessel_switch_device_state_cleanup() {}
