/**
 * @file model.h
 * @brief The control side of the model driver: what tests, shells and examples do to it beside the calls that
 * the library makes.
 *
 * The model stands in for the chip driver, so that the library runs without a chip. It does what the library
 * expects of each operation and refuses what a driver would refuse, with a status of its own. C99 and C++.
 * Every function may be called from any thread.
 */
#ifndef TS_MODEL_H
#define TS_MODEL_H

#include <stddef.h>

#include "pd_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** The statuses that the model makes up itself. */
enum {
    TS_MODEL_OK = 0,
    TS_MODEL_NO_MEMORY = 2, /**< an allocation was made to fail */
    TS_MODEL_BAD_ARGUMENT =
        3, /**< a null pointer, an image of the wrong length, an action that the table lacks */
    TS_MODEL_UNKNOWN_OBJECT = 4, /**< no such table, entry, member, group or device */
    TS_MODEL_ALREADY_EXISTS = 5, /**< an entry with this key and priority */
    TS_MODEL_NO_SPACE = 6        /**< the table is full */
};

/** Puts the model back into the state in which it was loaded: no entries, faults, trace or registrations. */
void ts_model_reset(void);

/* ---- Trace ---- */

/**
 * Receives one line per driver call, after the call: its arguments by name, images in hex, its result. Lines
 * come one at a time, so the sink makes no driver calls and does not set the trace.
 */
typedef void (*ts_model_trace_fn)(const char *line, void *cookie);

/** Sends the trace to `sink`; null turns it off. */
void ts_model_set_trace(ts_model_trace_fn sink, void *cookie);

/* ---- Fault injection ---- */

/**
 * Fails the n-th driver call from now (1 is the next one) with `status`. 0 takes the order back. Every
 * operation with a status counts, the system services do not. A call that is made to fail has no effect.
 */
void ts_model_fail_call(u32 n, pd_status status);

/** Fails every call of the operation with this name, such as "pipe_mgr_mat_ent_add". Status 0 takes it back.
 */
void ts_model_fail_operation(const char *operation, pd_status status);

/** Lets the n-th bf_sys_calloc from now (1 is the next one) return null. 0 takes the order back. */
void ts_model_fail_allocation(u32 n);

/** How many blocks bf_sys_calloc has given out and bf_sys_free has taken back since the last reset. */
void ts_model_allocations(u64 *given, u64 *freed);

/** What bf_sys_dbg_mode answers: 0 or 1. */
void ts_model_set_debug_mode(int on);

/** Receives one line of bf_sys_log_and_trace, without a line end. */
typedef void (*ts_model_log_fn)(int module, int level, const char *line, void *cookie);

/** Sends the system's log to `sink`; null sends it to standard error. */
void ts_model_set_log(ts_model_log_fn sink, void *cookie);

/* ---- Match tables ---- */

/** How many entries the table takes on a device; 1,048,576 until told otherwise. Returns
 * TS_MODEL_UNKNOWN_OBJECT or 0. */
pd_status ts_model_set_capacity(u32 table, u32 entries);

/** How many entries the table holds, the default entry not counted; 0 for an unknown table. */
u32 ts_model_entry_count(u32 device_id, u32 table);

/** What a look-up found. */
typedef struct ts_model_hit {
    int hit; /**< 0: a miss, the other members are 0 */
    pd_entry_hdl entry;
    u32 priority;   /**< of the entry; among hits the lowest number wins */
    u32 candidates; /**< how many entries the key matched */
    u32 runner_up;  /**< the entry that would win without this one, 0 for none */
    u32 runner_up_priority;
} ts_model_hit;

/**
 * Looks a key up as the chip would do it: an exact table by the whole key, a ternary or LPM table by the
 * lowest priority number among the entries that match, the earlier entry first among equals.
 * `key` is a value image of `bytes` bytes; `partition_index` is 0 in a table without partitions.
 */
pd_status ts_model_lookup(u32 device_id, u32 table, const u8 *key, u32 bytes, u32 partition_index,
                          ts_model_hit *hit);

/** An entry as the model holds it; the pointers live until the next change of the table. */
typedef struct ts_model_entry {
    const u8 *value;
    const u8 *mask;
    u32 key_bytes;
    u32 partition_index;
    u32 priority;
    u32 action; /**< handle of the action function */
    u32 action_kind;
    const u8 *data;
    u32 data_bytes;
    u32 handle_of_member_or_group; /**< when action_kind is 2 or 4 */
    u32 res_count;
    u32 res_handle;
    u32 res_index;
    u32 res_tag;
    u32 ttl;
} ts_model_entry;

/** Reads one entry. TS_MODEL_UNKNOWN_OBJECT when there is none. */
pd_status ts_model_get_entry(u32 device_id, u32 table, pd_entry_hdl entry, ts_model_entry *out);

/** The first entry with a handle above `after`, 0 to begin with; 0 when there is none. */
pd_entry_hdl ts_model_next_entry(u32 device_id, u32 table, pd_entry_hdl after);

/* ---- What the driver does of its own accord ---- */

/**
 * Calls the registered client's device-removal callback, then drops what the device held. Nothing happens
 * without a client.
 */
void ts_model_remove_device(u32 device_id);

/**
 * Calls the client's state-log callback and gives the document as JSON text. The caller frees it with free();
 * null without a client.
 */
char *ts_model_log_state(u32 device_id);

/**
 * Parses `json` and hands it to the client's restore callback, whose status comes back. TS_MODEL_BAD_ARGUMENT
 * for text that is no JSON, TS_MODEL_UNKNOWN_OBJECT without a client.
 */
pd_status ts_model_restore_state(u32 device_id, const char *json);

#ifdef __cplusplus
}
#endif

#endif
