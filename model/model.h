/**
 * @file model.h
 * @brief The control side of the model driver: what tests, shells and examples do to it beside the calls that
 * the library makes.
 *
 * The model stands in for the chip driver, so that the library runs without a chip. It does what the library
 * expects of each operation and refuses what a driver would refuse, with a status of its own. C99 and C++.
 * It does not tell pipes apart: an entry is there for the device as a whole. Every function may be called from any
 * thread.
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
    TS_MODEL_UNKNOWN_OBJECT = 4, /**< no such table, entry, member, group, device or property */
    TS_MODEL_ALREADY_EXISTS = 5, /**< an entry with this key and priority */
    TS_MODEL_NO_SPACE = 6        /**< the table is full */
};

/**
 * Puts the model back into the state in which it was loaded: the program's default entries and no others, no
 * faults, trace, properties or registrations.
 */
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

/**
 * The handle of a table's default entry, the same in every table. Other entries have handles from 1 upwards,
 * never used twice and never this one. Reading takes it like any entry's handle, and so does
 * pipe_mgr_mat_ent_set_action; the default entry cannot be deleted, is not counted and is not walked over.
 *
 * A table starts with the first of its actions, by name, that may be the default, all data zero; where none
 * may, with its only action. A direct counter is attached to it, any other resource detached. A table whose
 * entries point at members or groups starts with no action at all: `action_kind` 0, action 0.
 */
enum { TS_MODEL_DEFAULT_ENTRY = 0x7fffffff };

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
    const u8 *value; /**< null, like the mask, for the default entry */
    const u8 *mask;
    u32 key_bytes; /**< 0 for the default entry */
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

/** Reads one entry or the default entry. TS_MODEL_UNKNOWN_OBJECT when there is none. */
pd_status ts_model_get_entry(u32 device_id, u32 table, pd_entry_hdl entry, ts_model_entry *out);

/** The first entry with a handle above `after`, 0 to begin with; 0 when there is none. */
pd_entry_hdl ts_model_next_entry(u32 device_id, u32 table, pd_entry_hdl after);

/*
 * Walks. Handles come in ascending order, and handle 0 is the end: the first handle of an empty table is 0,
 * and so is what is left of the array behind a table's last entry, all with status 0. The handle that a walk
 * goes on from need not exist any more: it goes on with the next higher one, so a walk survives deletions.
 */

/* ---- Software copy and hardware copy ---- */

/*
 * Every entry, the default entry too, has a software copy and a hardware copy. They are the same until one of
 * the next three functions alters what the hardware shows. Writing the action of the entry, or resetting the
 * default entry, puts them in step again. Look-ups and searches by key go by the software copy.
 *
 * They return TS_MODEL_UNKNOWN_OBJECT for an entry that the hardware does not have.
 */

/**
 * Alters the action and its data. `bytes` is the data length of the action, which is one of the table's; 0
 * where entries point at members or groups.
 */
pd_status ts_model_set_hardware_action(u32 device_id, u32 table, pd_entry_hdl entry, u32 action,
                                       const u8 *data, u32 bytes);

/** Alters both key images of an entry, which are `bytes` long. The default entry has none. */
pd_status ts_model_set_hardware_key(u32 device_id, u32 table, pd_entry_hdl entry, const u8 *value,
                                    const u8 *mask, u32 bytes);

/** Takes the entry out of the hardware: reading it from there gives TS_MODEL_UNKNOWN_OBJECT. */
pd_status ts_model_remove_hardware_entry(u32 device_id, u32 table, pd_entry_hdl entry);

/* ---- Update callbacks ---- */

/** What happened to a table. */
enum {
    TS_MODEL_ENTRY_ADDED = 1,
    TS_MODEL_ENTRY_MODIFIED = 2,
    TS_MODEL_ENTRY_DELETED = 3,
    TS_MODEL_DEFAULT_SET = 4,
    TS_MODEL_DEFAULT_RESET = 5
};

/**
 * What a callback registered for a table's updates gets as `update`. It lives until the callback returns.
 *
 * A callback runs once for each successful call that changes the table, on that call's thread and before it
 * returns, behind its trace line. No lock is held, so it may make driver calls. Callbacks of a table run in
 * the order of their registration. Each registration counts, even of the same callback; registering a null
 * callback takes back all of the session's for this table. A change that is under way on another thread while
 * registrations are taken back may still be told.
 */
typedef struct ts_model_update {
    u32 kind; /**< one of the above */
    pd_entry_hdl entry;
    u32 action;              /**< handle of the action function */
    ts_model_entry contents; /**< behind the change; of a deleted entry, what it was */
} ts_model_update;

/* ---- Placement data ---- */

/**
 * What `first` of pipe_mgr_plcmt_mat_data_get points at in this model; `second` is 0. The operation writes
 * the placement data of the entry's software copy to `data`, which stays readable after the entry's deletion.
 */
typedef struct ts_model_plcmt_request {
    u32 device_id;
    pd_entry_hdl entry; /**< may be TS_MODEL_DEFAULT_ENTRY */
    void *data;         /**< the caller frees it with ts_model_free_plcmt_data */
} ts_model_plcmt_request;

/** Frees placement data; null is allowed. */
void ts_model_free_plcmt_data(void *data);

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
 * for text that is no JSON, TS_MODEL_UNKNOWN_OBJECT without a client. The library trusts the document: text that
 * is JSON but no document of ts_model_log_state's form ends the process.
 */
pd_status ts_model_restore_state(u32 device_id, const char *json);

#ifdef __cplusplus
}
#endif

#endif
