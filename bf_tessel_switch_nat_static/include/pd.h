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
#include "pd_program.h"
#include "pd_resources.h"
#include "pd_services.h"
#include "pd_tables.h"
#include "pd_types.h"

PD_BEGIN_DECLS

/** The library's client handle at the driver: zero until p4_pd_tessel_switch_init has registered it. */
extern uint32_t bf_drv_hdl;

PD_END_DECLS

#endif
