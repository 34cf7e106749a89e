/**
 * @file pd_ports.h
 * @brief Sample tables: the keys of these tables and the functions that write their entries.
 *
 * Generated from the catalogue: edit its rows, not this file.
 * The rows of these tables stand in catalogue/ports.toml.
 *
 * All functions build the driver's records on their own stack, make one driver call and return its status
 * unchanged; they test no argument but a direct meter's, allocate nothing, keep nothing, and may be called
 * from
 * any thread. Calls on the same entry are the caller's to keep apart. Null pointers are not caught.
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

/* ---- always ---- */

/* Handle 0x1000004. Counts every packet. */

PD_END_DECLS

#endif
