/**
 * @file pd.h
 * @brief Chief header of libts_bf_pd_nat_static, the program-dependent API of `tessel_switch`.
 *
 * A caller fills plain records with one member per key field or action parameter, in host byte order; the
 * library makes the byte images and driver records from them, makes one driver call with the compiled-in
 * handles and returns the driver's status. It keeps no entries and takes no lock. C99 and C++.
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
