/**
 * @file tap.h
 * @brief The tap before the driver: tells of every operation that is called, records it, or refuses it.
 *
 * libtessel_tap.so defines all operations of the driver and hands each call to the definition that would have
 * been found without it, so it works with any driver: link it before the driver, or load it by LD_PRELOAD.
 * The environment variable TESSEL_TAP sets it at the first call; the functions below set it from within.
 * docs/tap.md tells of both, and of what is recorded.
 *
 * The functions may be called from any thread at any time but from a trace function, where they return
 * EDEADLK. They return 0 or an errno. C99 and C++.
 */
#ifndef TESSEL_TAP_H
#define TESSEL_TAP_H

#include <stddef.h>

#include "pd_types.h"
#include "pd_version.h"

PD_BEGIN_DECLS

/** The version of the tap that was loaded, as PD_VERSION writes it. */
const char *ts_tap_version(void);

/** Receives a call as one line of text, without a newline, on the thread that made it, once it is over. */
typedef void (*ts_tap_trace_fn)(const char *line, void *cookie);

/**
 * Has calls told to a function; null ends it. When this returns, no thread is in the function that was set
 * before. A trace has one end: this takes the place of a file and the other way round.
 */
int ts_tap_trace(ts_tap_trace_fn sink, void *cookie);

/** Has calls written to a file, a line each; it is made anew. "-" is standard error, null ends the trace. */
int ts_tap_trace_file(const char *path);

/**
 * Has calls recorded to a file, which is made anew and keeps the last of them.
 *
 * @param path the file; null ends the record
 * @param size bytes of calls that it keeps, at least 65536; 0 stands for 64 MiB
 */
int ts_tap_record(const char *path, uint64_t size);

/** Which calls are refused, and how. A refused call does not reach the driver and leaves its out values
 * alone. */
typedef struct ts_tap_fault {
    const char *operation; /**< the operation; null for all that return a status */
    uint64_t nth;          /**< refuse the n-th call from now and no other; 0 to refuse all of them */
    double probability;    /**< of a call to be refused, where `nth` is 0; 0 stands for 1 */
    uint64_t seed;         /**< of the chance, which is the same for the same seed and order of calls */
    pd_status status;      /**< what is returned, not 0; an operation that gives memory gives null instead */
} ts_tap_fault;

/** Adds a fault to those that are set; there is room for 16. EINVAL for one that makes no sense. */
int ts_tap_fail(const ts_tap_fault *fault);

/** Takes all faults back. */
int ts_tap_fail_nothing(void);

/**
 * Sets the tap as TESSEL_TAP does: what the text does not mention is off afterwards.
 *
 * @param settings the text, such as "trace,record:/tmp/calls,size=16M"
 * @param error    receives one line that tells what is wrong; nothing when all is well
 * @param room     of `error` in bytes
 */
int ts_tap_set(const char *settings, char *error, size_t room);

PD_END_DECLS

#endif
