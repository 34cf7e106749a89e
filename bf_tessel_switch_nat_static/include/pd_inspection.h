/**
 * @file pd_inspection.h
 * @brief The library described in text, by handle: schemas, values, walks, printing, comparison, labels; and
 * addresses as people write them.
 *
 * The functions of one table, action or profile stand in the header of its group. Texts go to a caller's
 * buffer, which is not checked; a schema needs up to 3,290 bytes, any other text less. Lengths do not count
 * the NUL behind a text. Nothing is allocated, and any thread may call.
 */
#ifndef PD_INSPECTION_H
#define PD_INSPECTION_H

#include "pd_types.h"

PD_BEGIN_DECLS

/* ---- Schemas and values -------------------------------------------------------------------------------- */

/** Writes the schema of the table, or profile by its action data table; "()" for another handle. Returns its
 * length. */
u32 p4_pd_tessel_switch_cli_schema(u32 handle, char *buf);

/**
 * Reads an entry and writes it as a value.
 *
 * @param sess         driver session
 * @param dev_id       device
 * @param table        handle of the match table
 * @param entry_hdl    the entry, or the default entry
 * @param read_from_hw 1 reads the chip, 0 the driver's own copy
 * @param buf          receives the text
 * @return its length; 0, with the buffer left alone, when the driver refuses and for an unknown table
 */
u32 p4_pd_tessel_switch_entry_value(pd_sess_hdl sess, u8 dev_id, u32 table, pd_entry_hdl entry_hdl,
                                    u8 read_from_hw, char *buf);

/** Likewise from placement data, without the priority. */
u32 p4_pd_tessel_switch_plcmt_data_value(u32 table, void *plcmt_data, char *buf);

/** Likewise a member of the profile with this action data table. */
u32 p4_pd_tessel_switch_adt_plcmt_data_value(u32 action_table, void *plcmt_data, char *buf);

/* ---- Walks --------------------------------------------------------------------------------------------- */

/* Walks end at PD_END_OF_WALK, or where the status is not PD_STATUS_SUCCESS. */

/** The first entry of a table. For an unknown table `out` becomes PD_UNKNOWN_HANDLE, and the status is 0. */
pd_status p4_pd_tessel_switch_entry_hdl_first(pd_sess_hdl sess, pd_dev_target dev_tgt, u32 table,
                                              pd_entry_hdl *out);

/** Up to `count` entries behind `entry_hdl`. For an unknown table the first of `out` becomes
 * PD_UNKNOWN_HANDLE, status 0. */
pd_status p4_pd_tessel_switch_entry_hdl_next(pd_sess_hdl sess, pd_dev_target dev_tgt, u32 table,
                                             pd_entry_hdl entry_hdl, u32 count, pd_entry_hdl *out);

/** The default entry of a table. For an unknown table `out` becomes PD_UNKNOWN_HANDLE, and the status is 0.
 */
pd_status p4_pd_tessel_switch_entry_hdl_default(pd_sess_hdl sess, pd_dev_target dev_tgt, u32 table,
                                                pd_entry_hdl *out);

/** The first member of a profile. For an unknown one `out` becomes PD_UNKNOWN_HANDLE, the status
 * PD_STATUS_MISMATCH. */
pd_status p4_pd_tessel_switch_member_hdl_first(pd_sess_hdl sess, pd_dev_target dev_tgt, u32 action_table,
                                               pd_mbr_hdl *out);

/** Up to `count` members behind `mbr`. For an unknown profile the first of `out` becomes PD_UNKNOWN_HANDLE,
 * the status PD_STATUS_MISMATCH. */
pd_status p4_pd_tessel_switch_member_hdl_next(pd_sess_hdl sess, pd_dev_target dev_tgt, u32 action_table,
                                              pd_mbr_hdl mbr, u32 count, pd_mbr_hdl *out);

/* ---- Printing and comparison --------------------------------------------------------------------------- */

/** Prints an entry from placement data; says so for an unknown table, and returns how much that printed. */
pd_status p4_pd_tessel_switch_plcmt_data_print(int fd, int indent, u32 table, void *plcmt_data);

/** Prints a member from placement data; says so for an unknown profile, and returns how much that printed. */
pd_status p4_pd_tessel_switch_adt_plcmt_data_print(int fd, int indent, u32 action_table, void *plcmt_data);

/**
 * Compares an entry as placed with what the chip has.
 *
 * @param sess       driver session
 * @param dev_id     device
 * @param table      handle of the match table; an unknown one ends the process
 * @param entry_hdl  the entry
 * @param plcmt_data the driver's record of the software side; one that cannot be decoded ends the process
 * @param ignored    not used
 * @param msg        receives the first difference, or that the chip cannot be read; 128 bytes are enough
 * @return not 0 when they agree
 */
u32 p4_pd_tessel_switch_plcmt_data_eq_to_hw(pd_sess_hdl sess, u8 dev_id, u32 table, pd_entry_hdl entry_hdl,
                                            void *plcmt_data, u32 ignored, char *msg);

/**
 * Tells the key of an entry of a counted table in words, as the chip has it. Returns the length; 0, with the
 * buffer left alone, when there is nothing to tell, the entry cannot be read or the table's keys are not told
 * in words.
 */
u32 p4_pd_tessel_switch_stringify_counter_matchspec(pd_sess_hdl sess, u8 dev_id, u32 table,
                                                    pd_entry_hdl entry_hdl, char *buf);

/* ---- Addresses ----------------------------------------------------------------------------------------- */

/* Each writes a label, a blank, the address and a blank, and returns the length. */

/** An IPv4 address, its high byte first. */
u32 p4_pd_tessel_switch__print_v4addr_exact(char *buf, const char *label, u32 address);

/** With a prefix length behind a slash. */
u32 p4_pd_tessel_switch__print_v4addr_lpm(char *buf, const char *label, u32 address, u16 prefix_length);

/** With the count of leading ones of the mask behind a slash; nothing, and 0, for a mask of 0. */
u32 p4_pd_tessel_switch__print_v4addr_ternary(char *buf, const char *label, u32 address, u32 mask);

/** An IPv6 address of 16 bytes, without the blank at the end. */
u32 p4_pd_tessel_switch__print_v6addr_exact(char *buf, const char *label, const u8 *address);

/** With a prefix length behind a slash. */
u32 p4_pd_tessel_switch__print_v6addr_lpm(char *buf, const char *label, const u8 *address, u16 prefix_length);

/** With the mask behind a slash; nothing, and 0, for a mask of 0. */
u32 p4_pd_tessel_switch__print_v6addr_ternary(char *buf, const char *label, const u8 *address,
                                              const u8 *mask);

/** A MAC address from the low 24 bits of two words, as in 0011.2233.4455. */
u32 p4_pd_tessel_switch__print_mac_exact(char *buf, const char *label, u32 upper, u32 lower);

/** With the mask behind a slash, unless it is full; nothing, and 0, for a mask of 0. */
u32 p4_pd_tessel_switch__print_mac_ternary(char *buf, const char *label, u32 upper, u32 upper_mask, u32 lower,
                                           u32 lower_mask);

PD_END_DECLS

#endif
