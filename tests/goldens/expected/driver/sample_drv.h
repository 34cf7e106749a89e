/**
 * @file sample_drv.h
 * @brief The operations of a sample driver.
 *
 * They are few.
 *
 * Generated from the catalogue: edit its rows, not this file.
 * The rows stand in driver/operations.toml.
 */
#ifndef PD_DRIVER_SAMPLE_DRV_H
#define PD_DRIVER_SAMPLE_DRV_H

#include "callbacks.h"
#include "pd_types.h"
#include "pipe_mgr_records.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Writes a line. */
__attribute__((format(printf, 1, 2)))
int sample_log(const char *format, ...);

/* ---- Entries ---- */

/* `table` is a handle. */

/**
 * Makes what the others need, and gives back the word by which it goes from then on, which is never to be 0.
 */
pd_word sample_start(void);

/** Adds resources. */
pd_status sample_add_resources_to_an_entry_of_a_table(
    pd_dev_target target, pipe_match_spec *match, pipe_res_spec *resources, uint32_t count,
    pipe_stat_data **cells, uint32_t *read, pipe_idle_tmo_cb callback, pd_word cookie);

#ifdef __cplusplus
}
#endif

#endif
