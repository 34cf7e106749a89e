/**
 * @file pd_types.h
 * @brief The words that every operation of the library speaks in: handles, targets, statuses.
 *
 * Plain C99, no dependencies but <stdint.h>. Every other public header includes this one.
 */
#ifndef PD_TYPES_H
#define PD_TYPES_H

#include <stdint.h>

/** Around the declarations of a public header: C linkage, visible outside the library. */
#ifdef __cplusplus
#define PD_BEGIN_DECLS                                                                                       \
    _Pragma("GCC visibility push(default)") extern "C"                                                       \
    {
#define PD_END_DECLS                                                                                         \
    }                                                                                                        \
    _Pragma("GCC visibility pop")
#else
#define PD_BEGIN_DECLS
#define PD_END_DECLS /**< ends what it begins */
#endif

PD_BEGIN_DECLS

#ifdef PD_SHORT_TYPES /* for those who want them: the names are common, and a program may have its own */
typedef uint8_t u8;
typedef uint16_t u16;
typedef uint32_t u32;
typedef uint64_t u64;
#endif

/** A word that may carry a pointer: cookies and words that the library only forwards. */
typedef uintptr_t pd_word;

/** A driver session, the first argument of every operation that reaches the driver. */
typedef uint32_t pd_sess_hdl;
/** An entry of a match-action table; made by the driver when the entry is added. */
typedef uint32_t pd_entry_hdl;
/** A member of an action profile. */
typedef uint32_t pd_mbr_hdl;
/** A selector group of an action profile. */
typedef uint32_t pd_grp_hdl;

/**
 * 0 for success. The driver's statuses pass through the library unchanged; those below are the library's own,
 * and a caller cannot tell them from the same numbers of the driver.
 */
typedef uint32_t pd_status;

/** The statuses that the library makes up itself, each where the function's text names it. */
enum {
    PD_STATUS_SUCCESS = 0,
    PD_STATUS_NO_MEMORY = 2,          /**< the system's memory service gave none */
    PD_STATUS_UNKNOWN_CHOICE = 3,     /**< the input or algorithm of a hash calculation is not its own */
    PD_STATUS_BAD_PLACEMENT_DATA = 3, /**< placement data hold an action that the table lacks */
    PD_STATUS_UNREADABLE = 15, /**< the driver's answer holds no action, member or group that may be there */
};

/** The library's status of all ones: a member runs another action, or no profile has the handle. */
#define PD_STATUS_MISMATCH UINT32_C(0xffffffff)

/**
 * The driver's "no more" in a walk over entries, members, groups, members of a group or a value set: what a
 * `first` function gives where there is none, and with what a `next` function fills the rest of its array. A
 * caller stops at this handle, and at any status but PD_STATUS_SUCCESS, which may leave the array as it was;
 * else it asks for those behind the last handle. Default entries are no part of a walk.
 */
#define PD_END_OF_WALK UINT32_C(0)

/** What the walks by handle give for a table or profile that is not known; it ends a walk, too. */
#define PD_UNKNOWN_HANDLE UINT32_C(0xffffffff)

/** Where an operation applies: a device and one of its pipes. Passed by value, handed on unread. */
typedef struct pd_dev_target {
    uint32_t device_id; /**< the chip */
    uint32_t pipe_id;   /**< one pipe of it, or 0xffff for all pipes */
} pd_dev_target;

/** What a meter is asked to do with the colour that a packet brings along. */
enum { PD_METER_TYPE_COLOR_AWARE = 0, PD_METER_TYPE_COLOR_UNAWARE = 1 };

/** A meter as a caller describes it. Rates and bursts are in the driver's units. */
typedef struct pd_meter_spec {
    uint32_t committed_rate;  /**< that is guaranteed */
    uint32_t committed_burst; /**< above it for a moment */
    uint32_t peak_rate;       /**< that is never exceeded */
    uint32_t peak_burst;      /**< above it for a moment */
    /** PD_METER_TYPE_COLOR_AWARE or PD_METER_TYPE_COLOR_UNAWARE; another value is logged and counts as colour
     * aware, and ends the process when the driver is in debug mode. */
    uint32_t requested_meter_type;
} pd_meter_spec;

/** Called by the driver for an update of a match table; `update` is the driver's. */
typedef void (*pd_mat_update_cb)(uint32_t device_id, uint32_t table, const void *update, pd_word cookie);

/** Called by the driver for a change to a profile's members; `update` is the driver's. */
typedef void (*pd_adt_update_cb)(uint32_t device_id, uint32_t table, const void *update, pd_word cookie);

/** Called by the driver for a change to a profile's groups; `update` is the driver's. */
typedef void (*pd_sel_update_cb)(uint32_t device_id, uint32_t table, const void *update, pd_word cookie);

/** Called by the driver when a copy that was asked for is up to date. */
typedef void (*pd_sync_cb)(uint32_t device_id, pd_word cookie);

/** Called by the driver for an entry that has been idle for its time to live. */
typedef void (*pd_idle_tmo_cb)(uint32_t device_id, uint32_t table, pd_entry_hdl entry, pd_word cookie);

/** How the entries of a table age. What the parameters mean is the driver's. */
typedef struct pd_idle_params {
    uint32_t idle_mode;    /**< 1 is the mode that the parameters belong to */
    uint32_t idle_param_1; /**< the driver's, like the four below */
    uint32_t idle_param_2; /**< likewise */
    uint32_t idle_param_3; /**< likewise */
    uint32_t idle_param_4; /**< likewise */
    uint32_t idle_param_5; /**< likewise */
    uint8_t idle_flag;     /**< not handed on; 0 when read */
} pd_idle_params;

/** Whether a member takes part in the selection of its group. */
enum { P4_PD_GRP_MBR_STATE_ACTIVE = 0, P4_PD_GRP_MBR_STATE_INACTIVE = 1 };

/* Records of the driver that some functions take by pointer. */
struct pipe_match_spec;
struct pipe_action_data;

/** One resource of an entry that was read back: the counter, meter or register table and the cell of it. */
typedef struct pd_res_ref {
    uint32_t res_handle; /**< handle of the counter, meter or register */
    uint32_t res_index;  /**< the cell */
} pd_res_ref;

/** What an entry does, as it is read back. */
typedef struct pd_action_out {
    uint32_t action_number; /**< in the action enum; tells whose record `parameters` holds */
    union {
        uint32_t words[7];
        uint8_t bytes[28];
    } parameters; /**< the action's parameter record, untouched for an action without parameters */
} pd_action_out;

/** What `_table_get_default_entry` gives. */
typedef pd_action_out pd_default_action_out;
/** What `_get_entry_from_plcmt_data` gives. */
typedef pd_action_out pd_plcmt_action_out;

PD_END_DECLS

#endif
