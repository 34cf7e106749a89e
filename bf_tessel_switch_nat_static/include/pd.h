/**
 * @file pd.h
 * @brief Chief header of libts_bf_pd_nat_static, the program-dependent API of `tessel_switch`.
 *
 * Callers describe keys and parameters as C structs in host byte order. A write packs them into big-endian
 * images, calls the driver and hands its status back. Entries take one call. Members and groups take more:
 * the driver goes first, and only what it took reaches the member-selection store, whose state nothing rolls
 * back. The library keeps no entries and takes no lock; calls on the same entry are the caller's to keep
 * apart. C99 and C++.
 */
#ifndef PD_H
#define PD_H

#include "pd_actions.h"
#include "pd_inspection.h"
#include "pd_profiles.h"
#include "pd_resources.h"
#include "pd_services.h"
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

/**
 * Rebuilds the member-selection state after a restart that left the chip running: the driver walks its
 * members and groups and the library records them again. Nothing is written to the chip. Doing it twice
 * records them twice. What the store refuses on the way is not told. p4_pd_tessel_switch_init must have run.
 *
 * The five words are the driver's, handed on as they are.
 * @return the driver's status
 */
pd_status p4_pd_tessel_switch_restore_virtual_dev_state(pd_word first, pd_word second, pd_word third,
                                                        pd_word fourth, pd_word fifth);

/** The full name of an action, such as "p4_pd_tessel_switch_setPhase0"; null for a number above 297. */
const char *p4_pd_tessel_switch_action_enum_to_string(u32 action_number);

/** The number of the action with this full name; P4_PD_TESSEL_SWITCH_ACTION_COUNT for null and any other
 * text. */
u32 p4_pd_tessel_switch_action_string_to_enum(const char *name);

PD_END_DECLS

#endif
