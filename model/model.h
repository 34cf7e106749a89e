/**
 * @file model.h
 * @brief The control side of the model driver: what tests, shells and examples do to it beside the calls that
 * the library makes.
 *
 * The model stands in for the chip driver, so that the library runs without a chip. It does what the library
 * expects of each operation and refuses what a driver would refuse, with a status of its own. C99 and C++.
 * Only registers tell pipes apart: an entry is there for the device as a whole. Every function may be called
 * from any thread.
 */
#ifndef TS_MODEL_H
#define TS_MODEL_H

#include <stddef.h>

#include "pd_types.h"
#include "pd_version.h"

#ifdef __cplusplus
extern "C" {
#endif

/** The statuses that the model makes up itself. */
enum {
    TS_MODEL_OK = PD_STATUS_SUCCESS,
    TS_MODEL_NO_MEMORY = PD_STATUS_NO_MEMORY, /**< an allocation was made to fail */
    TS_MODEL_BAD_ARGUMENT =
        3, /**< a null pointer, an image of the wrong length, an action that the table lacks */
    TS_MODEL_UNKNOWN_OBJECT = 4, /**< no such table, entry, member, group, device, property or cell */
    TS_MODEL_ALREADY_EXISTS = 5, /**< an entry with this key and priority, a member of this group */
    TS_MODEL_NO_SPACE = 6,       /**< the table or group is full */
    TS_MODEL_IN_USE = 7          /**< an entry, a group or a fallback still needs what is to be deleted */
};

/** The version of the model that was loaded, as PD_VERSION writes it. */
const char *ts_model_version(void);

/**
 * Puts the model back into the state in which it was loaded: the program's default entries and no others, no
 * properties or registrations.
 */
void ts_model_reset(void);

/* ---- System services ---- */

/** Lets the n-th bf_sys_calloc from now (1 is the next one) return null. 0 takes the order back. */
void ts_model_fail_allocation(uint32_t n);

/** How many blocks bf_sys_calloc has given out and bf_sys_free has taken back since the last reset. */
void ts_model_allocations(uint64_t *given, uint64_t *freed);

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
pd_status ts_model_set_capacity(uint32_t table, uint32_t entries);

/** That number; 0 for an unknown table. */
uint32_t ts_model_capacity(uint32_t table);

/** How many entries the table holds, the default entry not counted; 0 for an unknown table. */
uint32_t ts_model_entry_count(uint32_t device_id, uint32_t table);

/** What a look-up found. */
typedef struct ts_model_hit {
    int hit;                     /**< 0: a miss, the other members are 0 */
    pd_entry_hdl entry;          /**< the entry that wins */
    uint32_t priority;           /**< of the entry; among hits the lowest number wins */
    uint32_t candidates;         /**< how many entries the key matched */
    uint32_t runner_up;          /**< the entry that would win without this one, 0 for none */
    uint32_t runner_up_priority; /**< its priority */
} ts_model_hit;

/**
 * Looks a key up as the chip would do it: an exact table by the whole key, a ternary or LPM table by the
 * lowest priority number among the entries that match, the earlier entry first among equals.
 * `key` is a value image of `bytes` bytes; `partition_index` is 0 in a table without partitions.
 */
pd_status ts_model_lookup(uint32_t device_id, uint32_t table, const uint8_t *key, uint32_t bytes,
                          uint32_t partition_index, ts_model_hit *hit);

/**
 * Looks a key up likewise in what the hardware shows: an entry that the hardware lacks is not hit, one whose
 * key was altered there is hit by the altered key. Its priority stays.
 */
pd_status ts_model_hardware_lookup(uint32_t device_id, uint32_t table, const uint8_t *key, uint32_t bytes,
                                   uint32_t partition_index, ts_model_hit *hit);

/** An entry as the model holds it; the pointers live until the next change of the table. */
typedef struct ts_model_entry {
    const uint8_t *value;     /**< null, like the mask, for the default entry */
    const uint8_t *mask;      /**< of the value */
    uint32_t key_bytes;       /**< of either, 0 for the default entry */
    uint32_t partition_index; /**< 0 in a table without partitions */
    uint32_t priority;        /**< as it was given */
    uint32_t action;          /**< handle of the action function */
    uint32_t action_kind;     /**< as in the driver's record: the action itself, a member or a group */
    const uint8_t *data;      /**< the image of the action's parameters */
    uint32_t data_bytes;      /**< of it */
    uint32_t handle_of_member_or_group; /**< when action_kind is 2 or 4 */
    uint32_t res_count;                 /**< 1 for an entry with a cell of a resource, else 0 */
    uint32_t res_handle;                /**< of the resource */
    uint32_t res_index;                 /**< its cell */
    uint32_t res_tag;                   /**< as in the driver's record */
    uint32_t ttl;                       /**< as it was given */
} ts_model_entry;

/** Reads one entry or the default entry. TS_MODEL_UNKNOWN_OBJECT when there is none. */
pd_status ts_model_get_entry(uint32_t device_id, uint32_t table, pd_entry_hdl entry, ts_model_entry *out);

/** The first entry with a handle above `after`, 0 to begin with; 0 when there is none. */
pd_entry_hdl ts_model_next_entry(uint32_t device_id, uint32_t table, pd_entry_hdl after);

/*
 * Walks. Handles come in ascending order, and handle 0 is the end: the first handle of an empty table is 0,
 * and so is what is left of the array behind a table's last entry, all with status 0. The handle that a walk
 * goes on from need not exist any more: it goes on with the next higher one, so a walk survives deletions.
 */

/* ---- Action profiles ---- */

/*
 * Each profile has members, which pipe_mgr_adt_* name by its action data table, and groups, which
 * pipe_mgr_sel_* name by its selector. Both have handles from 1 upwards, never used twice. What an operation
 * names by `table` is a match table, an action data table or a selector where it counts, walks or reads
 * placement data.
 *
 * A member's record has action_kind 0, the image of the action's length and no resources. Its action stays
 * what it was when it was added: another one is refused with TS_MODEL_BAD_ARGUMENT, as is an action handle
 * that is not the member's when it joins a group or an entry is pointed at it. An entry that points at a
 * group may name any action of the profile.
 *
 * The members of a group are in the order of their addition, and walks follow it: their end is member 0, but
 * to go on from a member that is not in the group gives TS_MODEL_UNKNOWN_OBJECT. A member is active from when
 * it joins. The marker of pipe_mgr_sel_grp_add has no effect.
 *
 * A member cannot be deleted while an entry, a default entry or a group has it or it is the fallback, nor a
 * group while an entry or a default entry points at it: TS_MODEL_IN_USE. A group that is deleted leaves its
 * members.
 */

/** How many entries of match tables, default entries included, point at the member of an action data table or
 * at the group of a selector; 0 for an unknown one. */
uint32_t ts_model_references(uint32_t device_id, uint32_t table, uint32_t handle);

/** The member that pipe_mgr_sel_fallback_mbr_set has set, 0 for none. There is one for each selector. */
pd_mbr_hdl ts_model_fallback_member(uint32_t device_id, uint32_t selector);

/*
 * A group picks a member for a packet by two words of 32 bits: the CRC-32 (polynomial 0x04c11db7, reflected,
 * starts with and inverted by all ones) of their eight bytes, each word's low byte first, is divided by the
 * number of active members, and the remainder counts these in their order, from 0. Where none is active, the
 * selector's fallback member is picked, and without one there is none: TS_MODEL_UNKNOWN_OBJECT.
 *
 * The last three words of pipe_mgr_sel_grp_mbr_get_from_hash are these two, cut to 32 bits, and the address
 * of a pd_mbr_hdl. The word of pipe_mgr_get_word_llp_active_member_count and ..._members is a group's handle;
 * `count` of the first is the address of a uint32_t, of the second how many handles the array at `members`
 * takes: the active members in their order, and 0 behind the last.
 */

/** The member that a packet gets which hits this entry of a match table; the two words count for a group
 * only. */
pd_status ts_model_lookup_member(uint32_t device_id, uint32_t table, pd_entry_hdl entry, uint32_t first,
                                 uint32_t second, pd_mbr_hdl *member);

/**
 * Alters what the hardware shows of a member: its action, one of the profile's, and the data, `bytes` long as
 * that action has it. Writing the member puts both copies in step again.
 */
pd_status ts_model_set_hardware_member(uint32_t device_id, uint32_t action_table, pd_mbr_hdl member,
                                       uint32_t action, const uint8_t *data, uint32_t bytes);

/** What happened to a profile. The first three are for pipe_register_adt_update_cb, the rest for both
 * callbacks of a selector, those of pipe_mgr_sel_tbl_register_cb first. */
enum {
    TS_MODEL_MEMBER_ADDED = 1,
    TS_MODEL_MEMBER_MODIFIED = 2,
    TS_MODEL_MEMBER_DELETED = 3,
    TS_MODEL_GROUP_ADDED = 4,
    TS_MODEL_GROUP_DELETED = 5, /**< its members leave it untold */
    TS_MODEL_MEMBER_JOINED = 6,
    TS_MODEL_MEMBER_LEFT = 7,
    TS_MODEL_MEMBER_ENABLED = 8,
    TS_MODEL_MEMBER_DISABLED = 9,
    TS_MODEL_FALLBACK_SET = 10,
    TS_MODEL_FALLBACK_RESET = 11
};

/** What these callbacks get as `update`. What stands below of the callbacks of match tables holds for them
 * too. */
typedef struct ts_model_profile_update {
    uint32_t kind;     /**< one of the above */
    pd_grp_hdl group;  /**< 0 where none is concerned */
    pd_mbr_hdl member; /**< likewise */
    uint32_t action; /**< of the member, as its data: behind the change, or what it was; 0 without a member */
    const uint8_t *data; /**< the image of its parameters */
    uint32_t data_bytes; /**< of it */
} ts_model_profile_update;

/*
 * pipe_mgr_hitless_ha_restore_virtual_dev_state takes a session as its first word, which the callback gets,
 * and a device id as its second; it does not look at the other three. It calls back on its own thread with no
 * lock held: for the members of all profiles by handle, then for the groups by handle, with action 0, then
 * for the memberships in the order of their addition, with the member's action. The resource word is 0.
 *
 * So a group gets back the action of the member in it that was added last. Where its recorded action is that
 * of a member that has left, one that is still there and has this action is told of once more at the end.
 * Without such a member, and so in an empty group, the recorded action is lost. Member states and fallbacks
 * are the driver's own and outlast a restart.
 */

/** Drops all that the member-selection store has of a device, which is what a restarted process has lost. */
pd_status ts_model_forget_selection(uint32_t device_id);

/* ---- Software copy and hardware copy ---- */

/*
 * Every entry, the default entry too, has a software copy and a hardware copy. They are the same until one of
 * the next four functions alters what the hardware shows. Writing the action of the entry, or resetting the
 * default entry, puts them in step again. Look-ups but for ts_model_hardware_lookup, and searches by key, go
 * by the software copy.
 *
 * They return TS_MODEL_UNKNOWN_OBJECT for an entry that the hardware does not have.
 */

/**
 * Alters the action and its data. `bytes` is the data length of the action, which is one of the table's; 0
 * where entries point at members or groups.
 */
pd_status ts_model_set_hardware_action(uint32_t device_id, uint32_t table, pd_entry_hdl entry,
                                       uint32_t action, const uint8_t *data, uint32_t bytes);

/** Alters both key images of an entry, which are `bytes` long. The default entry has none. */
pd_status ts_model_set_hardware_key(uint32_t device_id, uint32_t table, pd_entry_hdl entry,
                                    const uint8_t *value, const uint8_t *mask, uint32_t bytes);

/**
 * Alters what an entry points at: `kind` is PIPE_ACTION_MEMBER or PIPE_ACTION_GROUP, `handle` that of a
 * member or group of the table's profile. A table without one gives TS_MODEL_BAD_ARGUMENT.
 */
pd_status ts_model_set_hardware_reference(uint32_t device_id, uint32_t table, pd_entry_hdl entry,
                                          uint8_t kind, uint32_t handle);

/** Takes the entry out of the hardware: reading it from there gives TS_MODEL_UNKNOWN_OBJECT. */
pd_status ts_model_remove_hardware_entry(uint32_t device_id, uint32_t table, pd_entry_hdl entry);

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
 * returns. No lock is held, so it may make driver calls. Callbacks of a table run in
 * the order of their registration. Each registration counts, even of the same callback; registering a null
 * callback takes back all of the session's for this table. A change that is under way on another thread while
 * registrations are taken back may still be told.
 */
typedef struct ts_model_update {
    uint32_t kind;           /**< one of the above */
    pd_entry_hdl entry;      /**< that changed */
    uint32_t action;         /**< handle of the action function */
    ts_model_entry contents; /**< behind the change; of a deleted entry, what it was */
} ts_model_update;

/* ---- Placement data ---- */

/**
 * What `first` of pipe_mgr_plcmt_mat_data_get, pipe_mgr_plcmt_adt_data_get and pipe_mgr_plcmt_sel_data_get
 * points at in this model; `second` is 0. The operation writes the placement data of the software copy to
 * `data`, which stays readable after the deletion of the entry, member or group. Data of another kind than an
 * operation decodes is refused with TS_MODEL_BAD_ARGUMENT.
 */
typedef struct ts_model_plcmt_request {
    uint32_t device_id; /**< where it is */
    pd_entry_hdl entry; /**< may be TS_MODEL_DEFAULT_ENTRY; in a profile, the member or group */
    void *data;         /**< the caller frees it with ts_model_free_plcmt_data */
} ts_model_plcmt_request;

/**
 * Writes the members of the group that placement data tells of, in their order, `room` of them at most.
 * Returns how many there are; 0 for null and for data that tells of no group.
 */
uint32_t ts_model_plcmt_group(const void *plcmt_data, pd_mbr_hdl *members, uint32_t room);

/** Frees placement data; null is allowed. */
void ts_model_free_plcmt_data(void *data);

/* ---- Resources ---- */

enum {
    TS_MODEL_PIPES = 4,             /**< of a device; PIPE_ALL_PIPES stands for all of them */
    TS_MODEL_REGISTER_CELLS = 4096, /**< of each indexed register */
    TS_MODEL_INDEXED_CELLS =
        65536 /**< of each indexed counter, meter and discard table: what 16 bits reach */
};

/*
 * Cells that nobody has written are 0. An index beyond a resource's cells is TS_MODEL_UNKNOWN_OBJECT; a
 * discard table takes any handle. What belongs to an entry goes with it; the default entry has cells like any
 * other, and keeps its counts and its register when it is reset. Asking for a counter, meter, register or
 * ageing that a table does not have gives TS_MODEL_UNKNOWN_OBJECT.
 *
 * pipe_mgr_mat_ent_set_resource takes the resource of the table, for which it tells listeners of a modified
 * entry unless the tag says to keep it, and the register of the entry: a resource whose handle is that of
 * the match table itself, with the tag to attach. So each entry of each match table has a register.
 *
 * Meters keep what was set. Reading a direct meter needs one that is attached.
 */

/* ---- Counters ---- */

/**
 * Counts a hit of an entry, or of the default entry, as the chip would: in the direct cell of the entry, in
 * the cell of an indexed counter that is attached to it, and for its ageing. `packets` is added to the first
 * count, `bytes` to the second one, both of the hardware copy; reading shows the software copy, which a sync
 * brings up to date. Writing a cell writes both copies.
 */
pd_status ts_model_count(uint32_t device_id, uint32_t table, pd_entry_hdl entry, uint64_t packets,
                         uint64_t bytes);

/** ts_model_lookup, then ts_model_count for what the key hit, on a miss for the default entry; armed
 * snapshots capture the key. */
pd_status ts_model_counted_lookup(uint32_t device_id, uint32_t table, const uint8_t *key, uint32_t key_bytes,
                                  uint32_t partition_index, uint64_t packets, uint64_t bytes,
                                  ts_model_hit *hit);

/**
 * Says who calls the callbacks of table-wide syncs, of counters and registers alike: the thread of the
 * operation, before it returns (0, as after a reset), or a thread of the model's
 * own (1). The copies are in step before either. No lock is held, so a callback may make driver calls.
 * Turning the thread off, and ts_model_reset, wait until it has told what is waiting, so a callback must do
 * neither.
 */
void ts_model_set_sync_thread(int on);

/** Waits until all syncs have been told. Not for callbacks. */
void ts_model_wait_for_syncs(void);

/* ---- Meters and discard tables ---- */

/** Reads what pipe_mgr_wred_ent_set has set in a cell, which no driver operation reads. */
pd_status ts_model_get_wred(uint32_t device_id, uint32_t wred, uint32_t index, uint32_t words[4]);

/* ---- Registers ---- */

/**
 * Alters a cell in the hardware copy only. `table` is an indexed register and `cell` an index, or `table` a
 * match table and `cell` an entry; `value` has at most 16 bytes, the rest is 0. Reading shows the software
 * copy unless asked for the hardware's; a sync brings the former up to date, and writing a cell writes both.
 *
 * A register has one value per pipe; a target with one pipe reads, writes and syncs that pipe only. An
 * indexed register keeps the first byte of a value, that of an entry all 16. Reading a range stops at the
 * last cell, resetting one beyond it is refused.
 */
pd_status ts_model_set_hardware_register(uint32_t device_id, uint32_t table, uint32_t cell, uint32_t pipe_id,
                                         const uint8_t *value, uint32_t bytes);

/* ---- Idle time ---- */

/**
 * Lets `ticks` pass on a device. In tables whose ageing is on, an entry with a time to live other than 0
 * becomes idle when as many ticks have passed since it was added, hit or given its time to live anew; these
 * make an idle entry active again. The callback of the table, the last one registered, is then called once
 * for each, on this thread and with no lock held, by ascending handles of table and entry. The ageing
 * parameters are kept and not looked at. The time to live of an entry reads as it was set, whatever is left
 * of it.
 *
 * The hit state of an entry is 1 while it is active and 0 when it is idle. The two words of
 * pipe_mgr_idle_time_update_hit_state are an entry and its new hit state: 1 is a hit without packets, and 0
 * makes it idle without a callback.
 */
pd_status ts_model_advance_clock(uint32_t device_id, uint32_t ticks);

/* ---- Digests ---- */

/**
 * What the callback registered for a digest gets as `message`. It lives until it is handed back with
 * pipe_mgr_flow_lrn_notify_ack by the session that it went to, its address being the message word; anything
 * else is refused with TS_MODEL_UNKNOWN_OBJECT. ts_model_reset and the removal of the device free it, too.
 */
typedef struct ts_model_digest_message {
    uint32_t device_id;     /**< whose packets it is about */
    uint32_t digest;        /**< its handle */
    uint32_t count;         /**< of entries, at least 1 */
    uint32_t entry_bytes;   /**< of one entry */
    const uint8_t *entries; /**< one behind the other, as they were given to ts_model_digest */
} ts_model_digest_message;

/**
 * Sends one message of `count` packed entries, their fields big-endian, to whoever has registered for the
 * digest. The callback runs on this thread with no lock held, so it may make driver calls, and its status
 * comes back. Without one: TS_MODEL_UNKNOWN_OBJECT. The learning timeout is kept, but nothing waits for it.
 *
 * A digest has one callback per device: registering again replaces the session's own, and another session is
 * refused with TS_MODEL_ALREADY_EXISTS until the first one has deregistered.
 */
pd_status ts_model_digest(uint32_t device_id, uint32_t digest, const uint8_t *entries, uint32_t count);

/** How many messages of a digest are not acknowledged yet. */
uint32_t ts_model_pending_digests(uint32_t device_id, uint32_t digest);

/** What pipe_mgr_flow_lrn_set_timeout has set, 0 to begin with. */
uint32_t ts_model_learning_timeout(uint32_t device_id);

/* ---- Parser value sets ---- */

/*
 * Entries have handles from 1 upwards in each set, never used twice. In one scope, no two entries have the
 * same mask and the same key under it: TS_MODEL_ALREADY_EXISTS. Walks are those of match tables, within one
 * scope. Counting does not look at its flag. A property is kept per number and argument, and reading one that
 * was never set gives TS_MODEL_UNKNOWN_OBJECT.
 */

/* ---- Dynamic hash calculations ---- */

/**
 * The algorithms, by their handles. A calculation starts with its own, and takes either; its input is its own
 * and no other.
 *
 * A hash is the CRC of the stream as it comes; attributes of input fields are kept, but have no part in it.
 * It is written big-endian and right-aligned: in front of a longer output stand zeros, and a shorter one gets
 * the low bytes.
 */
enum {
    TS_MODEL_CRC_16 = 0x23000000, /**< polynomial 0x8005, reflected, starts with 0 */
    TS_MODEL_CRC_32 = 0x23000001  /**< polynomial 0x04c11db7, reflected, starts with all ones, inverted */
};

/** What pipe_mgr_hash_calc_seed_get writes: the two words of pipe_mgr_hash_calc_seed_set, 0 to begin with. */
typedef struct ts_model_hash_seed {
    pd_word first;  /**< the CRC's start value, as many low bits as it has, not reflected; 0: the usual one */
    pd_word second; /**< kept, but of no effect */
} ts_model_hash_seed;

/* ---- Snapshots ---- */

enum {
    TS_MODEL_STAGES = 20, /**< of each pipe and direction, from 0 */
    TS_MODEL_INGRESS = 0,
    TS_MODEL_EGRESS = 1
};

/**
 * A snapshot as the model holds it; the pointers live until its trigger is set again or it is deleted.
 *
 * The six words of bf_snapshot_create are the first five members in their order, and the address of a
 * uint32_t that receives the handle, whose bit 1 is the direction. Setting the trigger arms the snapshot and
 * drops what it has captured. While it is armed, each ts_model_counted_lookup in any table of the device
 * captures its key, whatever the trigger is: the key's image goes to the start of the next stage's record,
 * until the last stage has one.
 *
 * bf_snapshot_capture_get does not look at `second` and `control`. Its count is `captured`.
 * bf_snapshot_capture_phv_fields_dict_size tells sizes even when it fails: those of a single stage for an
 * unknown snapshot.
 */
typedef struct ts_model_snapshot {
    uint32_t device_id;   /**< that it was made for */
    uint32_t pipe;        /**< kept as given */
    uint32_t first_stage; /**< the stages that it looks at, at most TS_MODEL_STAGES - 1 */
    uint32_t last_stage;  /**< included, not below the first */
    uint32_t direction;   /**< of the pipeline: TS_MODEL_INGRESS or TS_MODEL_EGRESS */
    uint32_t captured;    /**< stages, up to the last one that captured something */
    const uint8_t *spec;  /**< the trigger, null like its mask before it is set */
    const uint8_t *mask;  /**< the bits of it that count */
    uint32_t stage_bytes; /**< of the two records, and of each stage of a capture */
} ts_model_snapshot;

/** Reads a snapshot. TS_MODEL_UNKNOWN_OBJECT when there is none. */
pd_status ts_model_get_snapshot(uint32_t snapshot, ts_model_snapshot *out);

/**
 * Captures `count` bytes in one stage of an armed snapshot; the rest of the stage's record is 0.
 * TS_MODEL_UNKNOWN_OBJECT for a snapshot that is not armed.
 */
pd_status ts_model_capture(uint32_t snapshot, uint32_t stage, const uint8_t *bytes, uint32_t count);

/* ---- What the driver does of its own accord ---- */

/**
 * Calls the registered client's device-removal callback, then drops what the device held. Nothing happens
 * without a client.
 */
void ts_model_remove_device(uint32_t device_id);

/**
 * Calls the client's state-log callback and gives the document as JSON text. The caller frees it with free();
 * null without a client.
 */
char *ts_model_log_state(uint32_t device_id);

/**
 * Parses `json` and hands it to the client's restore callback, whose status comes back. TS_MODEL_BAD_ARGUMENT
 * for text that is no JSON, TS_MODEL_UNKNOWN_OBJECT without a client. The library trusts the document: text
 * that is JSON but no document of ts_model_log_state's form ends the process.
 */
pd_status ts_model_restore_state(uint32_t device_id, const char *json);

#ifdef __cplusplus
}
#endif

#endif
