/**
 * @file pd.h
 * @brief Chief header of libts_bf_pd_nat_static, the program-dependent API of `tessel_switch`.
 *
 * Callers describe keys and parameters as C structs in host byte order. Each write packs them into big-endian
 * images, calls the driver once and hands its status back. The library keeps no entries and takes no lock; calls
 * on the same entry are the caller's to keep apart. C99 and C++.
 */
#ifndef PD_H
#define PD_H

#include "pd_actions.h"
#include "pd_tables.h"
#include "pd_types.h"

PD_BEGIN_DECLS

/** The library's client handle at the driver: zero until p4_pd_tessel_switch_init has registered it. */
extern u32 bf_drv_hdl;

/**
 * Makes the library a client of the driver: starts the member-selection service with one state per action
 * profile and registers as "p4_pd_tessel_switch_pd". To be called once, before anything else, and not beside
 * other calls. A registration that the driver refuses ends the process.
 */
void p4_pd_tessel_switch_init(void);

/**
 * Deregisters the library from the driver. Member-selection state stays as it is.
 * @return the driver's status
 */
pd_status p4_pd_tessel_switch_cleanup(void);

/** Does nothing, deliberately: device state is dropped when the driver removes the device. */
void p4_pd_tessel_switch_device_state_cleanup(void);

PD_END_DECLS

#endif
