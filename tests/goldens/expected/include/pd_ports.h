/**
 * @file pd_ports.h
 * @brief Sample tables: the keys of these tables and the functions that write and read their entries.
 *
 * Generated from the catalogue: edit its rows, not this file.
 * The rows of these tables stand in catalogue/ports.toml.
 *
 * All functions build the driver's records on their own stack, make one driver call and return its status
 * unchanged, unless they say otherwise. They test no argument but a direct meter's, keep nothing, and may be
 * called from any thread; calls on the same entry are the caller's to keep apart. Null pointers are not
 * caught. Nothing is allocated but the list of an entry's resources while it is read, and that is freed
 * again.
 */
#ifndef PD_HEADER_ports
#define PD_HEADER_ports

#include "pd_actions.h"
#include "pd_types.h"

PD_BEGIN_DECLS

/* ---- stationCheck ---- */

/**
 * Key of `stationCheck` (0x1000001). Sorts stations by port and address, and polices them.
 * Its image has 5 bytes, 33 bits of them valid. Each entry has a cell of `stationMeter`. Entries age.
 */
typedef struct p4_pd_sample_stationCheck_match_spec_t {
    u32 smacOui; /**< 24 bits, ternary */
    u32 smacOui_mask; /**< the bits of it that count */
    u16 port; /**< 9 bits, ternary */
    u16 port_mask; /**< the bits of it that count */
} p4_pd_sample_stationCheck_match_spec_t;

/**
 * Adds an entry to `stationCheck` that runs `NoAction` (action handle 0x20000001).
 *
 * @param sess        driver session
 * @param dev_tgt     device and pipe, handed on as they are
 * @param match_spec  the key, host byte order; values beyond a field's width go to the driver as they are
 * @param priority    32 bits, handed on unchanged; the driver ranks overlapping entries by it
 * @param ttl         time to live of the entry, 32 bits, in the driver's unit
 * @param stationMeter_spec the entry's meter; null ends the process
 * @param entry_hdl   receives the new entry's handle
 * @return the driver's status, 0 for success; on failure *entry_hdl holds what the driver left there
 */
pd_status p4_pd_sample_stationCheck_table_add_with_NoAction(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_stationCheck_match_spec_t *match_spec,
    u32 priority, u32 ttl, const pd_meter_spec *stationMeter_spec, pd_entry_hdl *entry_hdl);

/**
 * Makes an entry of `stationCheck` run `NoAction`.
 *
 * @param sess        driver session
 * @param dev_id      device
 * @param entry_hdl   the entry
 * @param stationMeter_spec the entry's meter; null leaves it as it is
 * @return the driver's status
 */
pd_status p4_pd_sample_stationCheck_table_modify_with_NoAction(
    pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl, const pd_meter_spec *stationMeter_spec);

/**
 * Makes the entry of `stationCheck` with this key and priority run `NoAction`.
 *
 * @param sess        driver session
 * @param dev_tgt     device and pipe, handed on as they are
 * @param match_spec  the key, host byte order; values beyond a field's width go to the driver as they are
 * @param priority    32 bits, handed on unchanged; the driver ranks overlapping entries by it
 * @param stationMeter_spec the entry's meter; null leaves it as it is
 * @return the driver's status
 */
pd_status p4_pd_sample_stationCheck_table_modify_with_NoAction_by_match_spec(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_stationCheck_match_spec_t *match_spec,
    u32 priority, const pd_meter_spec *stationMeter_spec);

/**
 * Adds an entry to `stationCheck` that runs `setDomain` (action handle 0x20000002).
 *
 * @param sess        driver session
 * @param dev_tgt     device and pipe, handed on as they are
 * @param match_spec  the key, host byte order; values beyond a field's width go to the driver as they are
 * @param priority    32 bits, handed on unchanged; the driver ranks overlapping entries by it
 * @param action_spec the action's parameters, an image of 7 bytes, 45 bits
 * @param ttl         time to live of the entry, 32 bits, in the driver's unit
 * @param stationMeter_spec the entry's meter; null ends the process
 * @param entry_hdl   receives the new entry's handle
 * @return the driver's status, 0 for success; on failure *entry_hdl holds what the driver left there
 */
pd_status p4_pd_sample_stationCheck_table_add_with_setDomain(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_stationCheck_match_spec_t *match_spec,
    u32 priority, const p4_pd_sample_setDomain_action_spec_t *action_spec, u32 ttl,
    const pd_meter_spec *stationMeter_spec, pd_entry_hdl *entry_hdl);

/**
 * Makes an entry of `stationCheck` run `setDomain`.
 *
 * @param sess        driver session
 * @param dev_id      device
 * @param entry_hdl   the entry
 * @param action_spec the action's parameters
 * @param stationMeter_spec the entry's meter; null leaves it as it is
 * @return the driver's status
 */
pd_status p4_pd_sample_stationCheck_table_modify_with_setDomain(
    pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl,
    const p4_pd_sample_setDomain_action_spec_t *action_spec, const pd_meter_spec *stationMeter_spec);

/**
 * Makes the entry of `stationCheck` with this key and priority run `setDomain`.
 *
 * @param sess        driver session
 * @param dev_tgt     device and pipe, handed on as they are
 * @param match_spec  the key, host byte order; values beyond a field's width go to the driver as they are
 * @param priority    32 bits, handed on unchanged; the driver ranks overlapping entries by it
 * @param action_spec the action's parameters
 * @param stationMeter_spec the entry's meter; null leaves it as it is
 * @return the driver's status
 */
pd_status p4_pd_sample_stationCheck_table_modify_with_setDomain_by_match_spec(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_stationCheck_match_spec_t *match_spec,
    u32 priority, const p4_pd_sample_setDomain_action_spec_t *action_spec,
    const pd_meter_spec *stationMeter_spec);

/**
 * Deletes an entry of `stationCheck`.
 *
 * @param sess        driver session
 * @param dev_id      device
 * @param entry_hdl   the entry
 * @return the driver's status
 */
pd_status p4_pd_sample_stationCheck_table_delete(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl);

/**
 * Deletes the entry of `stationCheck` with this key and priority.
 *
 * @param sess        driver session
 * @param dev_tgt     device and pipe, handed on as they are
 * @param match_spec  the key, host byte order; values beyond a field's width go to the driver as they are
 * @param priority    32 bits, handed on unchanged; the driver ranks overlapping entries by it
 * @return the driver's status
 */
pd_status p4_pd_sample_stationCheck_table_delete_by_match_spec(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_stationCheck_match_spec_t *match_spec,
    u32 priority);

/**
 * Finds the entry of `stationCheck` with this key and priority.
 *
 * @param sess        driver session
 * @param dev_tgt     device and pipe, handed on as they are
 * @param match_spec  the key, host byte order; values beyond a field's width go to the driver as they are
 * @param priority    32 bits, handed on unchanged; the driver ranks overlapping entries by it
 * @param entry_hdl   receives the entry's handle
 * @return the driver's status
 */
pd_status p4_pd_sample_stationCheck_match_spec_to_entry_hdl(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_stationCheck_match_spec_t *match_spec,
    u32 priority, pd_entry_hdl *entry_hdl);

/**
 * Fills the plain fields of a key from the driver's record and zeroes all else of it.
 *
 * @param match        the driver's record with its images
 * @param match_spec   receives the key
 */
void unbuild_key_stationCheck(const struct pipe_match_spec *match,
                              p4_pd_sample_stationCheck_match_spec_t *match_spec);

/** Fills the masks of a key from the driver's record and leaves all else of it alone. */
void unbuild_mask_stationCheck(const struct pipe_match_spec *match,
                               p4_pd_sample_stationCheck_match_spec_t *match_spec);

/** Width of `port` in bits: 9. */
u32 p4_pd_sample_stationCheck_port_width(void);

/** Width of `smacOui` in bits: 24. */
u32 p4_pd_sample_stationCheck_smacOui_width(void);

/**
 * Makes `NoAction` the default action of `stationCheck`.
 *
 * @param sess         driver session
 * @param dev_tgt      device and pipe, handed on as they are
 * @param stationMeter_spec the default entry's meter; null detaches it
 * @param entry_hdl    receives the handle of the default entry
 * @return the driver's status
 */
pd_status p4_pd_sample_stationCheck_set_default_action_NoAction(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const pd_meter_spec *stationMeter_spec, pd_entry_hdl *entry_hdl);

/** Gives the handle of the default entry of `stationCheck`. Returns the driver's status. */
pd_status p4_pd_sample_stationCheck_table_get_default_entry_handle(
    pd_sess_hdl sess, pd_dev_target dev_tgt, pd_entry_hdl *entry_hdl);

/** Makes the default entry of `stationCheck` what the program starts with. Returns the driver's status. */
pd_status p4_pd_sample_stationCheck_table_reset_default_entry(pd_sess_hdl sess, pd_dev_target dev_tgt);

/**
 * Reads the default entry of `stationCheck`.
 *
 * @param sess         driver session
 * @param dev_tgt      device and pipe, handed on as they are
 * @param read_from_hw 1 reads the chip, 0 the driver's own copy
 * @param action       receives the action's number and, where it has any, its parameters
 * @return the driver's status; PD_STATUS_UNREADABLE, silently, when its answer is no action that may be the
 * default. The output is written on success only.
 */
pd_status p4_pd_sample_stationCheck_table_get_default_entry(
    pd_sess_hdl sess, pd_dev_target dev_tgt, u8 read_from_hw, pd_default_action_out *action);

/**
 * Reads an entry of `stationCheck`.
 *
 * @param sess         driver session
 * @param dev_id       device
 * @param entry_hdl    the entry, or the default entry
 * @param read_from_hw 1 reads the chip, 0 the driver's own copy
 * @param match_spec   receives the key, zeroed for the default entry
 * @param priority     receives the priority, 32 bits
 * @param action_name  receives the action's full name: P4_PD_TESSEL_SWITCH_ACTION_NAME_BYTES; may be null
 * @param action_spec  receives the parameters, with room for those of any action of the table
 * @param action_number receives the number in the action enum; may be null
 * @param is_default   receives 1 for the default entry, else 0
 * @return the driver's status, when nothing is written on a failure; PD_STATUS_UNREADABLE when the answer
 * carries no action data (nothing is written) or an action that the table lacks (all but the action is
 * written)
 */
pd_status p4_pd_sample_stationCheck_get_entry(
    pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl, u8 read_from_hw,
    p4_pd_sample_stationCheck_match_spec_t *match_spec, u32 *priority, char *action_name, void *action_spec,
    u32 *action_number, u8 *is_default);

/**
 * Reads an entry of `stationCheck` from placement data.
 *
 * @param plcmt_data   the driver's record
 * @param match_spec   receives the key, zeroed for the default entry
 * @param priority     receives the priority, 32 bits
 * @param action       receives the action's number and, where it has any, its parameters
 * @param is_default   receives 1 for the default entry, else 0
 * @return the driver's status; 3 for an action that the table lacks, when all but the action is written
 */
pd_status p4_pd_sample_stationCheck_get_entry_from_plcmt_data(
    void *plcmt_data, p4_pd_sample_stationCheck_match_spec_t *match_spec, u32 *priority,
    pd_plcmt_action_out *action, u8 *is_default);

/**
 * Asks the driver for placement data of `stationCheck`; both words are handed on as they are. Returns its
 * status.
 */
pd_status p4_pd_sample_stationCheck_get_plcmt_data(pd_word first, pd_word second);

/** Counts the entries of `stationCheck`. Returns the driver's status. */
pd_status p4_pd_sample_stationCheck_get_entry_count(pd_sess_hdl sess, pd_dev_target dev_tgt, u32 *count);

/**
 * Gives the first entry of `stationCheck`. PD_END_OF_WALK where there is none. Returns the driver's status.
 */
pd_status p4_pd_sample_stationCheck_get_first_entry_handle(
    pd_sess_hdl sess, pd_dev_target dev_tgt, pd_entry_hdl *first);

/**
 * Gives up to `count` entries behind `entry_hdl`, then PD_END_OF_WALK in the rest of the array. Returns the
 * driver's status.
 */
pd_status p4_pd_sample_stationCheck_get_next_entry_handles(
    pd_sess_hdl sess, pd_dev_target dev_tgt, pd_entry_hdl entry_hdl, u32 count, pd_entry_hdl *next);

/** Sets a property of `stationCheck`; all three words are the driver's. Returns its status. */
pd_status p4_pd_sample_stationCheck_set_property(
    pd_sess_hdl sess, u32 dev_id, u32 property, u32 value, u32 second_value);

/**
 * Reads a property of `stationCheck`; both outputs become 0xffffffff when the driver refuses. Returns its
 * status.
 */
pd_status p4_pd_sample_stationCheck_get_property(
    pd_sess_hdl sess, u32 dev_id, u32 property, u32 *value, u32 *second_value);

/** Has `callback` called, with the cookie, for updates of `stationCheck`. Returns the driver's status. */
pd_status p4_pd_sample_stationCheck_register_mat_update_cb(
    pd_sess_hdl sess, u32 dev_id, pd_mat_update_cb callback, pd_word cookie);

/**
 * Sets how entries of `stationCheck` age and starts it, by two driver calls: the second only behind the
 * success of the first.
 */
pd_status p4_pd_sample_stationCheck_idle_tmo_enable(pd_sess_hdl sess, u32 dev_id, pd_idle_params params);

/** Stops the ageing of `stationCheck`. Returns the driver's status. */
pd_status p4_pd_sample_stationCheck_idle_tmo_disable(pd_sess_hdl sess, u32 dev_id);

/** Has `callback` called, with the cookie, for entries that have run idle. Returns the driver's status. */
pd_status p4_pd_sample_stationCheck_idle_register_tmo_cb(
    pd_sess_hdl sess, u32 dev_id, pd_idle_tmo_cb callback, pd_word cookie);

/** Reads how entries age. Of a mode other than 1 only the mode is written; nothing on a failure. */
pd_status p4_pd_sample_stationCheck_idle_params_get(pd_sess_hdl sess, u32 dev_id, pd_idle_params *params);

/** Sets the time to live of an entry, in the driver's unit. Returns the driver's status. */
pd_status p4_pd_sample_stationCheck_set_ttl(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl, u32 ttl);

/** Reads the time to live of an entry. Returns the driver's status. */
pd_status p4_pd_sample_stationCheck_get_ttl(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl, u32 *ttl);

/** Starts the time to live of an entry anew. Returns the driver's status. */
pd_status p4_pd_sample_stationCheck_reset_ttl(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl);

/** Has the driver update hit states; both words are handed on as they are. Returns its status. */
pd_status p4_pd_sample_stationCheck_update_hit_state(
    pd_sess_hdl sess, u32 dev_id, pd_word first, pd_word second);

/**
 * Reads whether an entry was hit, in the driver's terms. The output is written in any case, with 0 when the
 * driver tells nothing.
 */
pd_status p4_pd_sample_stationCheck_get_hit_state(
    pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl, u32 *hit_state);

/** Gives the handle of `stationCheck`, 0x1000001, unless `handle` is null. Always returns 0. */
pd_status p4_pd_sample_stationCheck_get_mat_table_handle(u32 *handle);

/** Whether a caller ranks the entries of `stationCheck`: 1. */
u32 p4_pd_sample_stationCheck_supports_entry_priority(void);

/** The schema of the key of `stationCheck`: a constant text. */
const char *p4_pd_sample_stationCheck_match_spec_schema(void);

/**
 * Writes the schema of `stationCheck` with a NUL behind it. Returns its length without the NUL; the buffer is
 * not checked.
 */
u32 p4_pd_sample_stationCheck_schema(char *buf);

/**
 * Writes a key of `stationCheck` as the value that goes with its schema. Returns the length without the NUL.
 */
u32 p4_pd_sample_stationCheck_match_spec_value(
    const p4_pd_sample_stationCheck_match_spec_t *match_spec, char *buf);

/**
 * Reads an entry of `stationCheck` and writes it as a value. Returns the length without the NUL; 0, with the
 * buffer left alone, when the driver refuses.
 */
u32 p4_pd_sample_stationCheck_value(pd_sess_hdl sess, u8 dev_id, pd_entry_hdl entry_hdl, u8 read_from_hw,
                                    char *buf);

/** Likewise from placement data, without the priority. */
u32 p4_pd_sample_stationCheck_plcmt_data_value(void *plcmt_data, char *buf);

/**
 * Prints a key of `stationCheck` to a file descriptor, a line per field, set in by `indent` columns. Returns
 * what the last output returned.
 */
int p4_pd_sample_stationCheck_match_spec_print(
    int fd, int indent, const p4_pd_sample_stationCheck_match_spec_t *match_spec);

/**
 * Prints an entry of `stationCheck` from placement data. Returns the status of the decoding; a failure is
 * printed too.
 */
pd_status p4_pd_sample_stationCheck_plcmt_data_print(int fd, int indent, void *plcmt_data);

/**
 * Whether two keys of `stationCheck` are equal in the bits that count: 1, or 0 with the first difference in
 * `msg`, which is left alone otherwise.
 */
u32 p4_pd_sample_stationCheck_match_specs_are_equal(
    const p4_pd_sample_stationCheck_match_spec_t *left, const p4_pd_sample_stationCheck_match_spec_t *right,
    char *msg);

/**
 * Compares an entry of `stationCheck` as placed with what the chip has.
 *
 * @param sess       driver session
 * @param dev_id     device
 * @param table      not used
 * @param entry_hdl  the entry
 * @param plcmt_data the driver's record of the software side; one that cannot be decoded ends the process
 * @param msg        receives the first difference, or that the chip cannot be read; 128 bytes are enough
 * @return not 0 when they agree
 */
u32 p4_pd_sample_stationCheck_plcmt_data_eq_to_hw(
    pd_sess_hdl sess, u8 dev_id, u32 table, pd_entry_hdl entry_hdl, void *plcmt_data, char *msg);

/**
 * Tells a key of `stationCheck` in words, for the counter of an entry. Returns the length without the NUL; 0,
 * with the buffer left alone, when there is nothing to tell.
 */
u32 p4_pd_sample_stationCheck_match_spec_stringify_for_counter(
    const p4_pd_sample_stationCheck_match_spec_t *match_spec, char *buf);

/** Likewise of an entry, as the chip has it; 0 as well when it cannot be read. */
u32 p4_pd_sample_stationCheck_stringify_counter_match_spec(
    pd_sess_hdl sess, u8 dev_id, pd_entry_hdl entry_hdl, char *buf);

/* ---- route ---- */

/**
 * Key of `route` (0x1000002). Routes IPv6 inside a partition, each route with a cell of the route meter.
 * Its image has 18 bytes, 144 bits of them valid. Some actions use a cell of `routeMeter`.
 */
typedef struct p4_pd_sample_route_match_spec_t {
    u16 partition; /**< 16 bits, exact, the partition that is looked up */
    u8 dip[16]; /**< 128 bits, lpm, most significant byte first */
    u16 dip_prefix_length; /**< leading bits that count; above 128: all, ranked behind every prefix */
} p4_pd_sample_route_match_spec_t;

/**
 * Adds an entry to `route` that runs `meterRoute` (action handle 0x20000003).
 *
 * @param sess        driver session
 * @param dev_tgt     device and pipe, handed on as they are
 * @param match_spec  the key, host byte order; values beyond a field's width go to the driver as they are
 * @param action_spec the action's parameters, an image of 6 bytes, 46 bits
 * @param entry_hdl   receives the new entry's handle
 * @return the driver's status, 0 for success; on failure *entry_hdl holds what the driver left there
 */
pd_status p4_pd_sample_route_table_add_with_meterRoute(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_route_match_spec_t *match_spec,
    const p4_pd_sample_meterRoute_action_spec_t *action_spec, pd_entry_hdl *entry_hdl);

/**
 * Makes an entry of `route` run `meterRoute`.
 *
 * @param sess        driver session
 * @param dev_id      device
 * @param entry_hdl   the entry
 * @param action_spec the action's parameters
 * @return the driver's status
 */
pd_status p4_pd_sample_route_table_modify_with_meterRoute(
    pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl,
    const p4_pd_sample_meterRoute_action_spec_t *action_spec);

/**
 * Makes the entry of `route` with this key run `meterRoute`.
 *
 * @param sess        driver session
 * @param dev_tgt     device and pipe, handed on as they are
 * @param match_spec  the key, host byte order; values beyond a field's width go to the driver as they are
 * @param action_spec the action's parameters
 * @return the driver's status
 */
pd_status p4_pd_sample_route_table_modify_with_meterRoute_by_match_spec(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_route_match_spec_t *match_spec,
    const p4_pd_sample_meterRoute_action_spec_t *action_spec);

/**
 * Deletes an entry of `route`.
 *
 * @param sess        driver session
 * @param dev_id      device
 * @param entry_hdl   the entry
 * @return the driver's status
 */
pd_status p4_pd_sample_route_table_delete(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl);

/**
 * Deletes the entry of `route` with this key.
 *
 * @param sess        driver session
 * @param dev_tgt     device and pipe, handed on as they are
 * @param match_spec  the key, host byte order; values beyond a field's width go to the driver as they are
 * @return the driver's status
 */
pd_status p4_pd_sample_route_table_delete_by_match_spec(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_route_match_spec_t *match_spec);

/**
 * Finds the entry of `route` with this key.
 *
 * @param sess        driver session
 * @param dev_tgt     device and pipe, handed on as they are
 * @param match_spec  the key, host byte order; values beyond a field's width go to the driver as they are
 * @param entry_hdl   receives the entry's handle
 * @return the driver's status
 */
pd_status p4_pd_sample_route_match_spec_to_entry_hdl(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_route_match_spec_t *match_spec,
    pd_entry_hdl *entry_hdl);

/**
 * Fills the plain fields of a key from the driver's record and zeroes all else of it.
 *
 * @param match        the driver's record with its images
 * @param match_spec   receives the key
 */
void unbuild_key_route(const struct pipe_match_spec *match, p4_pd_sample_route_match_spec_t *match_spec);

/** Fills the prefix length of a key from the driver's record and leaves all else of it alone. */
void unbuild_mask_route(const struct pipe_match_spec *match, p4_pd_sample_route_match_spec_t *match_spec);

/** Width of `partition` in bits: 16. */
u32 p4_pd_sample_route_partition_width(void);

/** Width of `dip` in bits: 128. */
u32 p4_pd_sample_route_dip_width(void);

/** Gives the handle of the default entry of `route`. Returns the driver's status. */
pd_status p4_pd_sample_route_table_get_default_entry_handle(
    pd_sess_hdl sess, pd_dev_target dev_tgt, pd_entry_hdl *entry_hdl);

/** Makes the default entry of `route` what the program starts with. Returns the driver's status. */
pd_status p4_pd_sample_route_table_reset_default_entry(pd_sess_hdl sess, pd_dev_target dev_tgt);

/**
 * Reads the default entry of `route`.
 *
 * @param sess         driver session
 * @param dev_tgt      device and pipe, handed on as they are
 * @param read_from_hw 1 reads the chip, 0 the driver's own copy
 * @param action       receives the action's number and, where it has any, its parameters
 * @return the driver's status; PD_STATUS_UNREADABLE, silently, when its answer is no action that may be the
 * default. The output is written on success only.
 */
pd_status p4_pd_sample_route_table_get_default_entry(
    pd_sess_hdl sess, pd_dev_target dev_tgt, u8 read_from_hw, pd_default_action_out *action);

/**
 * Reads an entry of `route`.
 *
 * @param sess         driver session
 * @param dev_id       device
 * @param entry_hdl    the entry, or the default entry
 * @param read_from_hw 1 reads the chip, 0 the driver's own copy
 * @param match_spec   receives the key, zeroed for the default entry
 * @param action_name  receives the action's full name: P4_PD_TESSEL_SWITCH_ACTION_NAME_BYTES; may be null
 * @param action_spec  receives the parameters, with room for those of any action of the table
 * @param action_number receives the number in the action enum; may be null
 * @param is_default   receives 1 for the default entry, else 0
 * @return the driver's status, when nothing is written on a failure; PD_STATUS_UNREADABLE when the answer
 * carries no action data (nothing is written) or an action that the table lacks (all but the action is
 * written)
 */
pd_status p4_pd_sample_route_get_entry(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl, u8 read_from_hw,
                                       p4_pd_sample_route_match_spec_t *match_spec, char *action_name,
                                       void *action_spec, u32 *action_number, u8 *is_default);

/**
 * Reads an entry of `route` from placement data.
 *
 * @param plcmt_data   the driver's record
 * @param match_spec   receives the key, zeroed for the default entry
 * @param action       receives the action's number and, where it has any, its parameters
 * @param is_default   receives 1 for the default entry, else 0
 * @return the driver's status; 3 for an action that the table lacks, when all but the action is written
 */
pd_status p4_pd_sample_route_get_entry_from_plcmt_data(
    void *plcmt_data, p4_pd_sample_route_match_spec_t *match_spec, pd_plcmt_action_out *action,
    u8 *is_default);

/**
 * Asks the driver for placement data of `route`; both words are handed on as they are. Returns its status.
 */
pd_status p4_pd_sample_route_get_plcmt_data(pd_word first, pd_word second);

/** Counts the entries of `route`. Returns the driver's status. */
pd_status p4_pd_sample_route_get_entry_count(pd_sess_hdl sess, pd_dev_target dev_tgt, u32 *count);

/** Gives the first entry of `route`. PD_END_OF_WALK where there is none. Returns the driver's status. */
pd_status p4_pd_sample_route_get_first_entry_handle(
    pd_sess_hdl sess, pd_dev_target dev_tgt, pd_entry_hdl *first);

/**
 * Gives up to `count` entries behind `entry_hdl`, then PD_END_OF_WALK in the rest of the array. Returns the
 * driver's status.
 */
pd_status p4_pd_sample_route_get_next_entry_handles(
    pd_sess_hdl sess, pd_dev_target dev_tgt, pd_entry_hdl entry_hdl, u32 count, pd_entry_hdl *next);

/** Sets a property of `route`; all three words are the driver's. Returns its status. */
pd_status p4_pd_sample_route_set_property(
    pd_sess_hdl sess, u32 dev_id, u32 property, u32 value, u32 second_value);

/**
 * Reads a property of `route`; both outputs become 0xffffffff when the driver refuses. Returns its status.
 */
pd_status p4_pd_sample_route_get_property(
    pd_sess_hdl sess, u32 dev_id, u32 property, u32 *value, u32 *second_value);

/** Has `callback` called, with the cookie, for updates of `route`. Returns the driver's status. */
pd_status p4_pd_sample_route_register_mat_update_cb(
    pd_sess_hdl sess, u32 dev_id, pd_mat_update_cb callback, pd_word cookie);

/** Gives the handle of `route`, 0x1000002, unless `handle` is null. Always returns 0. */
pd_status p4_pd_sample_route_get_mat_table_handle(u32 *handle);

/** Whether a caller ranks the entries of `route`: 0. */
u32 p4_pd_sample_route_supports_entry_priority(void);

/** The schema of the key of `route`: a constant text. */
const char *p4_pd_sample_route_match_spec_schema(void);

/**
 * Writes the schema of `route` with a NUL behind it. Returns its length without the NUL; the buffer is not
 * checked.
 */
u32 p4_pd_sample_route_schema(char *buf);

/** Writes a key of `route` as the value that goes with its schema. Returns the length without the NUL. */
u32 p4_pd_sample_route_match_spec_value(const p4_pd_sample_route_match_spec_t *match_spec, char *buf);

/**
 * Reads an entry of `route` and writes it as a value. Returns the length without the NUL; 0, with the buffer
 * left alone, when the driver refuses.
 */
u32 p4_pd_sample_route_value(pd_sess_hdl sess, u8 dev_id, pd_entry_hdl entry_hdl, u8 read_from_hw, char *buf);

/** Likewise from placement data, without the priority. */
u32 p4_pd_sample_route_plcmt_data_value(void *plcmt_data, char *buf);

/**
 * Prints a key of `route` to a file descriptor, a line per field, set in by `indent` columns. Returns what
 * the last output returned.
 */
int p4_pd_sample_route_match_spec_print(int fd, int indent,
                                        const p4_pd_sample_route_match_spec_t *match_spec);

/**
 * Prints an entry of `route` from placement data. Returns the status of the decoding; a failure is printed
 * too.
 */
pd_status p4_pd_sample_route_plcmt_data_print(int fd, int indent, void *plcmt_data);

/**
 * Whether two keys of `route` are equal in the bits that count: 1, or 0 with the first difference in `msg`,
 * which is left alone otherwise.
 */
u32 p4_pd_sample_route_match_specs_are_equal(
    const p4_pd_sample_route_match_spec_t *left, const p4_pd_sample_route_match_spec_t *right, char *msg);

/**
 * Compares an entry of `route` as placed with what the chip has.
 *
 * @param sess       driver session
 * @param dev_id     device
 * @param table      not used
 * @param entry_hdl  the entry
 * @param plcmt_data the driver's record of the software side; one that cannot be decoded ends the process
 * @param msg        receives the first difference, or that the chip cannot be read; 128 bytes are enough
 * @return not 0 when they agree
 */
u32 p4_pd_sample_route_plcmt_data_eq_to_hw(
    pd_sess_hdl sess, u8 dev_id, u32 table, pd_entry_hdl entry_hdl, void *plcmt_data, char *msg);

/* ---- spread ---- */

/**
 * Key of `spread` (0x1000003). Spreads flows over the members of a group.
 * Its image has 3 bytes, 20 bits of them valid.
 */
typedef struct p4_pd_sample_spread_match_spec_t {
    u32 flow; /**< 20 bits, exact */
} p4_pd_sample_spread_match_spec_t;

/**
 * Deletes an entry of `spread`.
 *
 * @param sess        driver session
 * @param dev_id      device
 * @param entry_hdl   the entry
 * @return the driver's status
 */
pd_status p4_pd_sample_spread_table_delete(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl);

/**
 * Deletes the entry of `spread` with this key.
 *
 * @param sess        driver session
 * @param dev_tgt     device and pipe, handed on as they are
 * @param match_spec  the key, host byte order; values beyond a field's width go to the driver as they are
 * @return the driver's status
 */
pd_status p4_pd_sample_spread_table_delete_by_match_spec(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_spread_match_spec_t *match_spec);

/**
 * Finds the entry of `spread` with this key.
 *
 * @param sess        driver session
 * @param dev_tgt     device and pipe, handed on as they are
 * @param match_spec  the key, host byte order; values beyond a field's width go to the driver as they are
 * @param entry_hdl   receives the entry's handle
 * @return the driver's status
 */
pd_status p4_pd_sample_spread_match_spec_to_entry_hdl(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_spread_match_spec_t *match_spec,
    pd_entry_hdl *entry_hdl);

/**
 * Fills the plain fields of a key from the driver's record and zeroes all else of it.
 *
 * @param match        the driver's record with its images
 * @param match_spec   receives the key
 */
void unbuild_key_spread(const struct pipe_match_spec *match, p4_pd_sample_spread_match_spec_t *match_spec);

/** Width of `flow` in bits: 20. */
u32 p4_pd_sample_spread_flow_width(void);

/** Gives the handle of the default entry of `spread`. Returns the driver's status. */
pd_status p4_pd_sample_spread_table_get_default_entry_handle(
    pd_sess_hdl sess, pd_dev_target dev_tgt, pd_entry_hdl *entry_hdl);

/** Makes the default entry of `spread` what the program starts with. Returns the driver's status. */
pd_status p4_pd_sample_spread_table_reset_default_entry(pd_sess_hdl sess, pd_dev_target dev_tgt);

/**
 * Adds an entry to `spread` that points at a member of `spreadProfile`. The member-selection store is asked
 * for the action that goes with it; the entry has no data of its own.
 *
 * @param sess        driver session
 * @param dev_tgt     device and pipe, handed on as they are
 * @param match_spec  the key, host byte order; values beyond a field's width go to the driver as they are
 * @param mbr         a member
 * @param entry_hdl   receives the new entry's handle
 * @return the store's status when it knows no action, with no driver call; else the driver's status
 */
pd_status p4_pd_sample_spread_add_entry(pd_sess_hdl sess, pd_dev_target dev_tgt,
                                        const p4_pd_sample_spread_match_spec_t *match_spec, pd_mbr_hdl mbr,
                                        pd_entry_hdl *entry_hdl);

/**
 * Makes an entry of `spread` point at a member of `spreadProfile`.
 *
 * @param sess        driver session
 * @param dev_id      device
 * @param entry_hdl   the entry
 * @param mbr         a member
 * @return the store's status when it knows no action, with no driver call; else the driver's status
 */
pd_status p4_pd_sample_spread_modify_entry(
    pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl, pd_mbr_hdl mbr);

/**
 * Makes the entry of `spread` with this key point at a member of `spreadProfile`.
 *
 * @param sess        driver session
 * @param dev_tgt     device and pipe, handed on as they are
 * @param match_spec  the key, host byte order; values beyond a field's width go to the driver as they are
 * @param mbr         a member
 * @return the store's status when it knows no action, with no driver call; else the driver's status
 */
pd_status p4_pd_sample_spread_modify_entry_by_match_spec(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_spread_match_spec_t *match_spec,
    pd_mbr_hdl mbr);

/**
 * Makes the default entry of `spread` point at a member of `spreadProfile`.
 *
 * @param sess        driver session
 * @param dev_tgt     device and pipe, handed on as they are
 * @param mbr         a member
 * @param entry_hdl   receives the handle of the default entry
 * @return the store's status when it knows no action, with no driver call; else the driver's status
 */
pd_status p4_pd_sample_spread_set_default_entry(
    pd_sess_hdl sess, pd_dev_target dev_tgt, pd_mbr_hdl mbr, pd_entry_hdl *entry_hdl);

/**
 * Adds an entry to `spread` that points at a group of `spreadProfile`. The member-selection store is asked
 * for the action that goes with it; the entry has no data of its own.
 *
 * @param sess        driver session
 * @param dev_tgt     device and pipe, handed on as they are
 * @param match_spec  the key, host byte order; values beyond a field's width go to the driver as they are
 * @param grp         a group
 * @param entry_hdl   receives the new entry's handle
 * @return the store's status when it knows no action, with no driver call; else the driver's status
 */
pd_status p4_pd_sample_spread_add_entry_with_selector(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_spread_match_spec_t *match_spec,
    pd_grp_hdl grp, pd_entry_hdl *entry_hdl);

/**
 * Makes an entry of `spread` point at a group of `spreadProfile`.
 *
 * @param sess        driver session
 * @param dev_id      device
 * @param entry_hdl   the entry
 * @param grp         a group
 * @return the store's status when it knows no action, with no driver call; else the driver's status
 */
pd_status p4_pd_sample_spread_modify_entry_with_selector(
    pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl, pd_grp_hdl grp);

/**
 * Makes the entry of `spread` with this key point at a group of `spreadProfile`.
 *
 * @param sess        driver session
 * @param dev_tgt     device and pipe, handed on as they are
 * @param match_spec  the key, host byte order; values beyond a field's width go to the driver as they are
 * @param grp         a group
 * @return the store's status when it knows no action, with no driver call; else the driver's status
 */
pd_status p4_pd_sample_spread_modify_entry_with_selector_by_match_spec(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_spread_match_spec_t *match_spec,
    pd_grp_hdl grp);

/**
 * Makes the default entry of `spread` point at a group of `spreadProfile`.
 *
 * @param sess        driver session
 * @param dev_tgt     device and pipe, handed on as they are
 * @param grp         a group
 * @param entry_hdl   receives the handle of the default entry
 * @return the store's status when it knows no action, with no driver call; else the driver's status
 */
pd_status p4_pd_sample_spread_set_default_entry_with_selector(
    pd_sess_hdl sess, pd_dev_target dev_tgt, pd_grp_hdl grp, pd_entry_hdl *entry_hdl);

/**
 * Reads an entry of `spread`: what it points at.
 *
 * @param sess         driver session
 * @param dev_id       device
 * @param entry_hdl    the entry, or the default entry
 * @param read_from_hw 1 reads the chip, 0 the driver's own copy
 * @param match_spec   receives the key, zeroed for the default entry
 * @param has_mbr      receives 1 for an entry that points at a member, else 0
 * @param has_grp      receives 1 for an entry that points at a group, else 0
 * @param grp          receives the group, if it is one
 * @param mbr          receives the member, if it is one
 * @param is_default   receives 1 for the default entry, else 0
 * @return the driver's status; nothing is written on a failure
 */
pd_status p4_pd_sample_spread_get_entry(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl, u8 read_from_hw,
                                        p4_pd_sample_spread_match_spec_t *match_spec, u8 *has_mbr,
                                        u8 *has_grp, pd_grp_hdl *grp, pd_mbr_hdl *mbr, u8 *is_default);

/**
 * Reads an entry of `spread` from placement data. Mind the order of the outputs, which is not that of
 * `p4_pd_sample_spread_get_entry`.
 *
 * @param plcmt_data   the driver's record
 * @param match_spec   receives the key, zeroed for the default entry
 * @param mbr          receives the member, if it is one
 * @param grp          receives the group, if it is one
 * @param has_mbr      receives 1 for an entry that points at a member, 0 for a group
 * @param has_grp      receives 1 for an entry that points at a group, 0 for a member
 * @param is_default   receives 1 for the default entry, else 0
 * @return the driver's status, when nothing is written on a failure. Neither flag is written for an entry
 * that points at neither.
 */
pd_status p4_pd_sample_spread_get_entry_from_plcmt_data(
    void *plcmt_data, p4_pd_sample_spread_match_spec_t *match_spec, pd_mbr_hdl *mbr, pd_grp_hdl *grp,
    u8 *has_mbr, u8 *has_grp, u8 *is_default);

/**
 * Reads what the default entry of `spread` points at.
 *
 * @param sess         driver session
 * @param dev_tgt      device and pipe, handed on as they are
 * @param read_from_hw 1 reads the chip, 0 the driver's own copy
 * @param has_mbr      receives 1 when it points at a member, 0 for a group
 * @param has_grp      receives 1 when it points at a group, 0 for a member
 * @param grp          receives the group, if it is one
 * @param mbr          receives the member, if it is one
 * @return the driver's status; PD_STATUS_UNREADABLE, silently, when it points at neither. Nothing is written
 * on a failure.
 */
pd_status p4_pd_sample_spread_table_get_default_entry(
    pd_sess_hdl sess, pd_dev_target dev_tgt, u8 read_from_hw, u8 *has_mbr, u8 *has_grp, pd_grp_hdl *grp,
    pd_mbr_hdl *mbr);

/**
 * Asks the driver for placement data of `spread`; both words are handed on as they are. Returns its status.
 */
pd_status p4_pd_sample_spread_get_plcmt_data(pd_word first, pd_word second);

/** Counts the entries of `spread`. Returns the driver's status. */
pd_status p4_pd_sample_spread_get_entry_count(pd_sess_hdl sess, pd_dev_target dev_tgt, u32 *count);

/** Gives the first entry of `spread`. PD_END_OF_WALK where there is none. Returns the driver's status. */
pd_status p4_pd_sample_spread_get_first_entry_handle(
    pd_sess_hdl sess, pd_dev_target dev_tgt, pd_entry_hdl *first);

/**
 * Gives up to `count` entries behind `entry_hdl`, then PD_END_OF_WALK in the rest of the array. Returns the
 * driver's status.
 */
pd_status p4_pd_sample_spread_get_next_entry_handles(
    pd_sess_hdl sess, pd_dev_target dev_tgt, pd_entry_hdl entry_hdl, u32 count, pd_entry_hdl *next);

/** Sets a property of `spread`; all three words are the driver's. Returns its status. */
pd_status p4_pd_sample_spread_set_property(
    pd_sess_hdl sess, u32 dev_id, u32 property, u32 value, u32 second_value);

/**
 * Reads a property of `spread`; both outputs become 0xffffffff when the driver refuses. Returns its status.
 */
pd_status p4_pd_sample_spread_get_property(
    pd_sess_hdl sess, u32 dev_id, u32 property, u32 *value, u32 *second_value);

/** Has `callback` called, with the cookie, for updates of `spread`. Returns the driver's status. */
pd_status p4_pd_sample_spread_register_mat_update_cb(
    pd_sess_hdl sess, u32 dev_id, pd_mat_update_cb callback, pd_word cookie);

/** Gives the handle of `spread`, 0x1000003, unless `handle` is null. Always returns 0. */
pd_status p4_pd_sample_spread_get_mat_table_handle(u32 *handle);

/** Whether a caller ranks the entries of `spread`: 0. */
u32 p4_pd_sample_spread_supports_entry_priority(void);

/** The schema of the key of `spread`: a constant text. */
const char *p4_pd_sample_spread_match_spec_schema(void);

/**
 * Writes the schema of `spread` with a NUL behind it. Returns its length without the NUL; the buffer is not
 * checked.
 */
u32 p4_pd_sample_spread_schema(char *buf);

/** Writes a key of `spread` as the value that goes with its schema. Returns the length without the NUL. */
u32 p4_pd_sample_spread_match_spec_value(const p4_pd_sample_spread_match_spec_t *match_spec, char *buf);

/**
 * Reads an entry of `spread` and writes it as a value. Returns the length without the NUL; 0, with the buffer
 * left alone, when the driver refuses.
 */
u32 p4_pd_sample_spread_value(pd_sess_hdl sess, u8 dev_id, pd_entry_hdl entry_hdl, u8 read_from_hw,
                              char *buf);

/** Likewise from placement data, without the priority. */
u32 p4_pd_sample_spread_plcmt_data_value(void *plcmt_data, char *buf);

/**
 * Prints a key of `spread` to a file descriptor, a line per field, set in by `indent` columns. Returns what
 * the last output returned.
 */
int p4_pd_sample_spread_match_spec_print(
    int fd, int indent, const p4_pd_sample_spread_match_spec_t *match_spec);

/**
 * Prints an entry of `spread` from placement data. Returns the status of the decoding; a failure is printed
 * too.
 */
pd_status p4_pd_sample_spread_plcmt_data_print(int fd, int indent, void *plcmt_data);

/**
 * Whether two keys of `spread` are equal in the bits that count: 1, or 0 with the first difference in `msg`,
 * which is left alone otherwise.
 */
u32 p4_pd_sample_spread_match_specs_are_equal(
    const p4_pd_sample_spread_match_spec_t *left, const p4_pd_sample_spread_match_spec_t *right, char *msg);

/**
 * Compares an entry of `spread` as placed with what the chip has.
 *
 * @param sess       driver session
 * @param dev_id     device
 * @param table      not used
 * @param entry_hdl  the entry
 * @param plcmt_data the driver's record of the software side; one that cannot be decoded ends the process
 * @param msg        receives the first difference, or that the chip cannot be read; 128 bytes are enough
 * @return not 0 when they agree
 */
u32 p4_pd_sample_spread_plcmt_data_eq_to_hw(
    pd_sess_hdl sess, u8 dev_id, u32 table, pd_entry_hdl entry_hdl, void *plcmt_data, char *msg);

/* ---- always ---- */

/* Handle 0x1000004. Counts every packet. */

/**
 * Makes `NoAction` the default action of `always`.
 *
 * @param sess         driver session
 * @param dev_tgt      device and pipe, handed on as they are
 * @param entry_hdl    receives the handle of the default entry
 * @return the driver's status
 */
pd_status p4_pd_sample_always_set_default_action_NoAction(
    pd_sess_hdl sess, pd_dev_target dev_tgt, pd_entry_hdl *entry_hdl);

/** Gives the handle of the default entry of `always`. Returns the driver's status. */
pd_status p4_pd_sample_always_table_get_default_entry_handle(
    pd_sess_hdl sess, pd_dev_target dev_tgt, pd_entry_hdl *entry_hdl);

/** Makes the default entry of `always` what the program starts with. Returns the driver's status. */
pd_status p4_pd_sample_always_table_reset_default_entry(pd_sess_hdl sess, pd_dev_target dev_tgt);

/**
 * Reads the default entry of `always`.
 *
 * @param sess         driver session
 * @param dev_tgt      device and pipe, handed on as they are
 * @param read_from_hw 1 reads the chip, 0 the driver's own copy
 * @param action       receives the action's number and, where it has any, its parameters
 * @return the driver's status; PD_STATUS_UNREADABLE, silently, when its answer is no action that may be the
 * default. The output is written on success only.
 */
pd_status p4_pd_sample_always_table_get_default_entry(
    pd_sess_hdl sess, pd_dev_target dev_tgt, u8 read_from_hw, pd_default_action_out *action);

/**
 * Reads an entry of `always`.
 *
 * @param sess         driver session
 * @param dev_id       device
 * @param entry_hdl    the entry
 * @param read_from_hw 1 reads the chip, 0 the driver's own copy
 * @param action_name  receives the action's full name: P4_PD_TESSEL_SWITCH_ACTION_NAME_BYTES; may be null
 * @param action_spec  receives the parameters, with room for those of any action of the table
 * @param action_number receives the number in the action enum; may be null
 * @return the driver's status, when nothing is written on a failure; PD_STATUS_UNREADABLE when the answer
 * carries no action data (nothing is written) or an action that the table lacks (all but the action is
 * written)
 */
pd_status p4_pd_sample_always_get_entry(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl, u8 read_from_hw,
                                        char *action_name, void *action_spec, u32 *action_number);

/**
 * Reads an entry of `always` from placement data.
 *
 * @param plcmt_data   the driver's record
 * @param action       receives the action's number and, where it has any, its parameters
 * @param is_default   receives 1 for the default entry, else 0
 * @return the driver's status; 3 for an action that the table lacks, when all but the action is written
 */
pd_status p4_pd_sample_always_get_entry_from_plcmt_data(
    void *plcmt_data, pd_plcmt_action_out *action, u8 *is_default);

/**
 * Asks the driver for placement data of `always`; both words are handed on as they are. Returns its status.
 */
pd_status p4_pd_sample_always_get_plcmt_data(pd_word first, pd_word second);

/** Counts the entries of `always`. Returns the driver's status. */
pd_status p4_pd_sample_always_get_entry_count(pd_sess_hdl sess, pd_dev_target dev_tgt, u32 *count);

/** Gives the first entry of `always`. PD_END_OF_WALK where there is none. Returns the driver's status. */
pd_status p4_pd_sample_always_get_first_entry_handle(
    pd_sess_hdl sess, pd_dev_target dev_tgt, pd_entry_hdl *first);

/**
 * Gives up to `count` entries behind `entry_hdl`, then PD_END_OF_WALK in the rest of the array. Returns the
 * driver's status.
 */
pd_status p4_pd_sample_always_get_next_entry_handles(
    pd_sess_hdl sess, pd_dev_target dev_tgt, pd_entry_hdl entry_hdl, u32 count, pd_entry_hdl *next);

/** Sets a property of `always`; all three words are the driver's. Returns its status. */
pd_status p4_pd_sample_always_set_property(
    pd_sess_hdl sess, u32 dev_id, u32 property, u32 value, u32 second_value);

/**
 * Reads a property of `always`; both outputs become 0xffffffff when the driver refuses. Returns its status.
 */
pd_status p4_pd_sample_always_get_property(
    pd_sess_hdl sess, u32 dev_id, u32 property, u32 *value, u32 *second_value);

/** Has `callback` called, with the cookie, for updates of `always`. Returns the driver's status. */
pd_status p4_pd_sample_always_register_mat_update_cb(
    pd_sess_hdl sess, u32 dev_id, pd_mat_update_cb callback, pd_word cookie);

/** Gives the handle of `always`, 0x1000004, unless `handle` is null. Always returns 0. */
pd_status p4_pd_sample_always_get_mat_table_handle(u32 *handle);

/** Whether a caller ranks the entries of `always`: 0. */
u32 p4_pd_sample_always_supports_entry_priority(void);

/**
 * Writes the schema of `always` with a NUL behind it. Returns its length without the NUL; the buffer is not
 * checked.
 */
u32 p4_pd_sample_always_schema(char *buf);

/**
 * Reads an entry of `always` and writes it as a value. Returns the length without the NUL; 0, with the buffer
 * left alone, when the driver refuses.
 */
u32 p4_pd_sample_always_value(pd_sess_hdl sess, u8 dev_id, pd_entry_hdl entry_hdl, u8 read_from_hw,
                              char *buf);

/** Likewise from placement data, without the priority. */
u32 p4_pd_sample_always_plcmt_data_value(void *plcmt_data, char *buf);

/**
 * Prints an entry of `always` from placement data. Returns the status of the decoding; a failure is printed
 * too.
 */
pd_status p4_pd_sample_always_plcmt_data_print(int fd, int indent, void *plcmt_data);

/**
 * Compares an entry of `always` as placed with what the chip has.
 *
 * @param sess       driver session
 * @param dev_id     device
 * @param table      not used
 * @param entry_hdl  the entry
 * @param plcmt_data the driver's record of the software side; one that cannot be decoded ends the process
 * @param msg        receives the first difference, or that the chip cannot be read; 128 bytes are enough
 * @return not 0 when they agree
 */
u32 p4_pd_sample_always_plcmt_data_eq_to_hw(
    pd_sess_hdl sess, u8 dev_id, u32 table, pd_entry_hdl entry_hdl, void *plcmt_data, char *msg);

PD_END_DECLS

#endif
