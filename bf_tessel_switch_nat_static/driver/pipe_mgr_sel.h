/**
 * @file pipe_mgr_sel.h
 * @brief The driver operations on selector tables: groups of members.
 */
#ifndef PD_DRIVER_PIPE_MGR_SEL_H
#define PD_DRIVER_PIPE_MGR_SEL_H

#include "pipe_mgr_records.h"

#ifdef __cplusplus
extern "C" {
#endif

/** The state of a member within a group, as the driver tells it. */
enum { PIPE_MEMBER_ACTIVE = 0, PIPE_MEMBER_INACTIVE = 1 };

/** Tells of a change to a group. The driver defines what `update` points at. */
typedef void (*pipe_sel_tbl_cb)(u32 device_id, u32 table, const void *update, pd_word cookie);
typedef void (*pipe_sel_update_cb)(u32 device_id, u32 table, const void *update, pd_word cookie);

/* ---- Groups -------------------------------------------------------------------------------------------- */

/** Opens a group without members, told to `group`. `reserved` is always 0, `marker` 0xdeadbeef. */
pd_status pipe_mgr_sel_grp_add(pd_sess_hdl sess, pd_dev_target target, u32 table, u32 reserved,
                               u32 max_group_size, u32 marker, pd_grp_hdl *group, u32 flags);

/** Deletes a group. */
pd_status pipe_mgr_sel_grp_del(pd_sess_hdl sess, u32 device_id, u32 table, pd_grp_hdl group, u32 flags);

/** Counts the members of a group. */
pd_status pipe_mgr_get_sel_grp_mbr_count(pd_sess_hdl sess, u32 device_id, u32 table, pd_grp_hdl group,
                                         u32 *count);

/** Lists up to `count` members, with a byte for each in `states`; `written` tells how many there are. */
pd_status pipe_mgr_sel_grp_mbrs_get(pd_sess_hdl sess, u32 device_id, u32 table, pd_grp_hdl group, u32 count,
                                    pd_mbr_hdl *members, u8 *states, u32 *written, u32 flags);

/** The first member of a group. */
pd_status pipe_mgr_get_first_group_member(pd_sess_hdl sess, u32 table, u32 device_id, pd_grp_hdl group,
                                          pd_mbr_hdl *first);

/** Up to `count` members behind `after`, written to the array `next`. */
pd_status pipe_mgr_get_next_group_members(pd_sess_hdl sess, u32 table, u32 device_id, pd_grp_hdl group,
                                          pd_mbr_hdl after, u32 count, pd_mbr_hdl *next);

/* ---- Membership ---------------------------------------------------------------------------------------- */

/** Puts a member into a group; its action's handle goes along. */
pd_status pipe_mgr_sel_grp_mbr_add(pd_sess_hdl sess, u32 device_id, u32 table, pd_grp_hdl group, u32 action,
                                   pd_mbr_hdl member, u32 flags);

/** Takes a member out of a group. */
pd_status pipe_mgr_sel_grp_mbr_del(pd_sess_hdl sess, u32 device_id, u32 table, pd_grp_hdl group,
                                   pd_mbr_hdl member, u32 flags);

/** Makes a member of a group active. */
pd_status pipe_mgr_sel_grp_mbr_enable(pd_sess_hdl sess, u32 device_id, u32 table, pd_grp_hdl group,
                                      pd_mbr_hdl member, u32 flags);

/** Makes a member of a group inactive. */
pd_status pipe_mgr_sel_grp_mbr_disable(pd_sess_hdl sess, u32 device_id, u32 table, pd_grp_hdl group,
                                       pd_mbr_hdl member, u32 flags);

/** Reads whether a member is active in its group: PIPE_MEMBER_ACTIVE or PIPE_MEMBER_INACTIVE. */
pd_status pipe_mgr_sel_grp_mbr_state_get(pd_sess_hdl sess, u32 device_id, u32 table, pd_grp_hdl group,
                                         pd_mbr_hdl member, u32 *state);

/** Gives the member that a hash picks. The last three words are handed on. */
pd_status pipe_mgr_sel_grp_mbr_get_from_hash(pd_sess_hdl sess, u32 device_id, u32 table, pd_grp_hdl group,
                                             pd_word first, pd_word second, pd_word third);

/** Sets the member that takes over when a group picks none. */
pd_status pipe_mgr_sel_fallback_mbr_set(pd_sess_hdl sess, pd_dev_target target, u32 table, pd_mbr_hdl member,
                                        u32 flags);

/** Clears the fallback member. */
pd_status pipe_mgr_sel_fallback_mbr_reset(pd_sess_hdl sess, pd_dev_target target, u32 table, u32 flags);

/* ---- Callbacks, placement, words ---------------------------------------------------------------- */

/** Registers for group changes; session 0 tracks them without one. */
pd_status pipe_mgr_sel_tbl_register_cb(pd_sess_hdl sess, u32 device_id, u32 table, pipe_sel_tbl_cb callback,
                                       pd_word cookie);

/** Registers for changes of a selector table. */
pd_status pipe_register_sel_update_cb(pd_sess_hdl sess, u32 device_id, u32 table, pipe_sel_update_cb callback,
                                      pd_word cookie);

/** Counts the active members of a word; the last two words, the word and where the count goes, are handed on.
 */
pd_status pipe_mgr_get_word_llp_active_member_count(pd_sess_hdl sess, pd_dev_target target, u32 table,
                                                    pd_word word, pd_word count);

/** Lists the active members of a word; the last three words are handed on. */
pd_status pipe_mgr_get_word_llp_active_members(pd_sess_hdl sess, pd_dev_target target, u32 table,
                                               pd_word word, pd_word count, pd_word members);

/** Gives the placement data of a selector table; the two words are handed on unread. */
pd_status pipe_mgr_plcmt_sel_data_get(pd_word first, pd_word second, u32 table);

#ifdef __cplusplus
}
#endif

#endif
