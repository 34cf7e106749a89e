/**
 * @file pipe_mgr.h
 * @brief The chip driver's table manager as the library calls it, all subjects together.
 *
 * The driver is not part of this library: these declarations say what the library expects of it. Every
 * operation returns 0 for success, and every status is the driver's own. A `flags` argument is always 0.
 * C11 and C++.
 */
#ifndef PD_DRIVER_PIPE_MGR_H
#define PD_DRIVER_PIPE_MGR_H

#include "pipe_mgr_adt.h"
#include "pipe_mgr_hash.h"
#include "pipe_mgr_idle.h"
#include "pipe_mgr_learn.h"
#include "pipe_mgr_match.h"
#include "pipe_mgr_meter.h"
#include "pipe_mgr_pvs.h"
#include "pipe_mgr_records.h"
#include "pipe_mgr_restart.h"
#include "pipe_mgr_sel.h"
#include "pipe_mgr_stat.h"

#endif
