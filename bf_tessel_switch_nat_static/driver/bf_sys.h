/**
 * @file bf_sys.h
 * @brief The system services: debug mode, log, memory.
 */
#ifndef PD_DRIVER_BF_SYS_H
#define PD_DRIVER_BF_SYS_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Not 0 when the system runs in debug mode. */
int bf_sys_dbg_mode(void);

/** Writes one line to the system's log, printf fashion. The library's lines are of module 0 and level 2. */
int bf_sys_log_and_trace(int module, int level, const char *format, ...)
    __attribute__((format(printf, 3, 4)));

/** Gives zeroed memory for `count` elements of `size` bytes, or null. */
void *bf_sys_calloc(size_t count, size_t size);

/** Takes memory of bf_sys_calloc back. */
void bf_sys_free(void *memory);

#ifdef __cplusplus
}
#endif

#endif
