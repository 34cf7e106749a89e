/**
 * @file bf_drv.h
 * @brief The driver registry, through which a client hears of devices.
 */
#ifndef PD_DRIVER_BF_DRV_H
#define PD_DRIVER_BF_DRV_H

#include "layout.h"
#include "pd_types.h"

#ifdef __cplusplus
extern "C" {
#endif

struct cJSON;

/** What a client wants to be called for. The driver copies the record. */
typedef struct pd_drv_client_callbacks {
    pd_word reserved_1[3]; /**< 0 */
    pd_status (*device_remove)(u32 device_id);
    pd_status (*device_log)(u32 device_id, struct cJSON *root);
    pd_status (*device_restore)(u32 device_id, struct cJSON *root);
    pd_word reserved_2[25]; /**< 0 */
} pd_drv_client_callbacks;

PD_OFFSET(pd_drv_client_callbacks, device_remove, 12);
PD_OFFSET(pd_drv_client_callbacks, device_log, 16);
PD_OFFSET(pd_drv_client_callbacks, device_restore, 20);
PD_SIZE(pd_drv_client_callbacks, 124);

/** Registers a client and writes its handle to `handle`. */
pd_status bf_drv_register(const char *client_name, u32 *handle);

/** Sets the callbacks of a client. The library's `kind` is always 2. */
pd_status bf_drv_client_register_callbacks(u32 handle, pd_drv_client_callbacks *callbacks, u32 kind);

/** Ends a registration. */
pd_status bf_drv_deregister(u32 handle);

#ifdef __cplusplus
}
#endif

#endif
