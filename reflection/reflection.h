// Every table with its functions, for generic callers: shells, sweeps, loaders. One generated table holds the
// rows of the catalogue and, beside each, adapters of one signature around the exported functions. It needs
// the library and its rows; the library knows nothing of it.
#pragma once

#include <span>
#include <string_view>

#include "entry_arguments.h"
#include "pd_types.h"
#include "rows.h"

namespace reflection {

using EntryArguments = pd::EntryArguments;

// Where a caller wants an entry that is read. What a table does not have is not looked at.
struct EntryResults {
    void *key = nullptr; // the table's key record
    u32 *priority = nullptr;
    u8 *is_default = nullptr;
    char *action_name = nullptr;  // may stay null
    void *action = nullptr;       // room for the parameter record of any action of the table
    u32 *action_number = nullptr; // may stay null
};

// One action of one table. A function that does not exist is null.
struct ActionFunctions {
    const pd::Binding *row;
    pd_status (*add)(pd_sess_hdl, pd_dev_target, const EntryArguments &, pd_entry_hdl *);
    pd_status (*modify)(pd_sess_hdl, u32 device_id, pd_entry_hdl, const EntryArguments &);
    pd_status (*modify_by_match_spec)(pd_sess_hdl, pd_dev_target, const EntryArguments &);
    pd_status (*set_default_action)(pd_sess_hdl, pd_dev_target, const EntryArguments &, pd_entry_hdl *);
};

// How entries are pointed at members, or at groups; `to` is the handle of one.
struct ReferenceFunctions {
    pd_status (*add)(pd_sess_hdl, pd_dev_target, const EntryArguments &, u32 to, pd_entry_hdl *);
    pd_status (*modify)(pd_sess_hdl, u32 device_id, pd_entry_hdl, u32 to);
    pd_status (*modify_by_match_spec)(pd_sess_hdl, pd_dev_target, const EntryArguments &, u32 to);
    pd_status (*set_default_entry)(pd_sess_hdl, pd_dev_target, u32 to, pd_entry_hdl *);
};

// What an entry points at, as it is read back.
struct ReferenceResults {
    u8 has_member = 0;
    u8 has_group = 0;
    pd_mbr_hdl member = 0;
    pd_grp_hdl group = 0;
};

// One action of one profile. `action` is the record of its parameters.
struct MemberFunctions {
    const pd::Binding *row;
    pd_status (*add)(pd_sess_hdl, pd_dev_target, const void *action, pd_mbr_hdl *);
    pd_status (*modify)(pd_sess_hdl, u32 device_id, pd_mbr_hdl, const void *action);
};

struct ProfileFunctions {
    const pd::Profile *row;
    std::span<const MemberFunctions> actions; // as row->actions
    // Members
    pd_status (*del_member)(pd_sess_hdl, u32 device_id, pd_mbr_hdl);
    pd_status (*get_member)(pd_sess_hdl, u32 device_id, pd_mbr_hdl, u8 from_hw, pd_action_out *);
    pd_status (*get_member_from_plcmt_data)(void *plcmt_data, pd_action_out *);
    pd_status (*get_full_member_info_from_plcmt_data)(u32 device_id, pd_mbr_hdl, void *plcmt_data,
                                                      pd_action_out *);
    pd_status (*get_plcmt_data)(pd_word first, pd_word second);
    pd_status (*get_first_member)(pd_sess_hdl, pd_dev_target, pd_mbr_hdl *first);
    pd_status (*get_next_members)(pd_sess_hdl, pd_dev_target, pd_mbr_hdl after, u32 count, pd_mbr_hdl *next);
    pd_status (*get_act_prof_entry_count)(pd_sess_hdl, pd_dev_target, u32 *count);
    pd_status (*register_adt_update_cb)(pd_sess_hdl, u32 device_id, pd_adt_update_cb, pd_word cookie);
    pd_status (*get_adt_table_handle)(u32 *handle);
    // Groups
    pd_status (*create_group)(pd_sess_hdl, pd_dev_target, u32 max_group_size, pd_grp_hdl *);
    pd_status (*del_group)(pd_sess_hdl, u32 device_id, pd_grp_hdl);
    pd_status (*add_member_to_group)(pd_sess_hdl, u32 device_id, pd_grp_hdl, pd_mbr_hdl);
    pd_status (*del_member_from_group)(pd_sess_hdl, u32 device_id, pd_grp_hdl, pd_mbr_hdl);
    pd_status (*group_member_state_set)(pd_sess_hdl, u32 device_id, pd_grp_hdl, pd_mbr_hdl, u32 mbr_state);
    pd_status (*group_member_state_get)(pd_sess_hdl, u32 device_id, pd_grp_hdl, pd_mbr_hdl, u32 *mbr_state);
    pd_status (*group_member_get_from_hash)(pd_sess_hdl, u32 device_id, pd_grp_hdl, pd_word first,
                                            pd_word second, pd_word third);
    pd_status (*set_fallback_member)(pd_sess_hdl, pd_dev_target, pd_mbr_hdl);
    pd_status (*reset_fallback_member)(pd_sess_hdl, pd_dev_target);
    pd_status (*sel_track_updates)(u32 device_id, pd_sel_update_cb, pd_word cookie);
    pd_status (*register_callback)(pd_sess_hdl, u32 device_id, pd_sel_update_cb, pd_word cookie);
    pd_status (*register_sel_update_cb)(pd_sess_hdl, u32 device_id, pd_sel_update_cb, pd_word cookie);
    pd_status (*get_sel_table_handle)(u32 *handle);
    pd_status (*get_selector_group_count)(pd_sess_hdl, pd_dev_target, u32 *count);
    pd_status (*get_selector_group_member_count)(pd_sess_hdl, u32 device_id, pd_grp_hdl, u32 *count);
    pd_status (*get_first_group)(pd_sess_hdl, pd_dev_target, pd_grp_hdl *first);
    pd_status (*get_next_groups)(pd_sess_hdl, pd_dev_target, pd_grp_hdl after, u32 count, pd_grp_hdl *next);
    pd_status (*get_first_group_member)(pd_sess_hdl, u32 device_id, pd_grp_hdl, pd_mbr_hdl *first);
    pd_status (*get_next_group_members)(pd_sess_hdl, u32 device_id, pd_grp_hdl, pd_mbr_hdl after, u32 count,
                                        pd_mbr_hdl *next);
    pd_status (*get_word_llp_active_member_count)(pd_sess_hdl, pd_dev_target, pd_word word, pd_word count);
    pd_status (*get_word_llp_active_members)(pd_sess_hdl, pd_dev_target, pd_word word, pd_word count,
                                             pd_word members);
    pd_status (*sel_get_plcmt_data)(pd_word first, pd_word second);
    // Text
    u32 (*schema)(char *buf);
    u32 (*plcmt_data_value)(void *plcmt_data, char *buf);
    pd_status (*adt_plcmt_data_print)(int fd, int indent, void *plcmt_data);
};

// What a table whose entries point at members or groups has in place of actions.
struct IndirectFunctions {
    const ProfileFunctions *profile;
    ReferenceFunctions member;
    ReferenceFunctions group;
    // `to` keeps in each member what the library does not write.
    pd_status (*get_entry)(pd_sess_hdl, u32 device_id, pd_entry_hdl, u8 from_hw, const EntryResults &,
                           ReferenceResults &to);
    pd_status (*get_entry_from_plcmt_data)(void *plcmt_data, const EntryResults &, ReferenceResults &to);
    pd_status (*get_default_entry)(pd_sess_hdl, pd_dev_target, u8 from_hw, ReferenceResults &to);
};

// What a table whose entries age has besides.
struct IdleFunctions {
    pd_status (*tmo_enable)(pd_sess_hdl, u32 device_id, pd_idle_params);
    pd_status (*tmo_disable)(pd_sess_hdl, u32 device_id);
    pd_status (*register_tmo_cb)(pd_sess_hdl, u32 device_id, pd_idle_tmo_cb, pd_word cookie);
    pd_status (*params_get)(pd_sess_hdl, u32 device_id, pd_idle_params *);
    pd_status (*set_ttl)(pd_sess_hdl, u32 device_id, pd_entry_hdl, u32 ttl);
    pd_status (*get_ttl)(pd_sess_hdl, u32 device_id, pd_entry_hdl, u32 *ttl);
    pd_status (*reset_ttl)(pd_sess_hdl, u32 device_id, pd_entry_hdl);
    pd_status (*update_hit_state)(pd_sess_hdl, u32 device_id, pd_word first, pd_word second);
    pd_status (*get_hit_state)(pd_sess_hdl, u32 device_id, pd_entry_hdl, u32 *hit_state);
};

// How a table tells of its entries in text. What a keyless table does not have is null, and so are labels
// where there are none.
struct TableTextFunctions {
    const char *(*match_spec_schema)();
    u32 (*schema)(char *buf);
    u32 (*match_spec_value)(const void *key, char *buf);
    u32 (*value)(pd_sess_hdl, u8 device_id, pd_entry_hdl, u8 from_hw, char *buf);
    u32 (*plcmt_data_value)(void *plcmt_data, char *buf);
    int (*match_spec_print)(int fd, int indent, const void *key);
    pd_status (*plcmt_data_print)(int fd, int indent, void *plcmt_data);
    u32 (*match_specs_are_equal)(const void *left, const void *right, char *msg);
    u32 (*plcmt_data_eq_to_hw)(pd_sess_hdl, u8 device_id, u32 table, pd_entry_hdl, void *plcmt_data,
                               char *msg);
    u32 (*match_spec_stringify_for_counter)(const void *key, char *buf);
    u32 (*stringify_counter_match_spec)(pd_sess_hdl, u8 device_id, pd_entry_hdl, char *buf);
};

// Likewise an action, and how its parameters come out of the driver's image. Without parameters the record is
// not looked at, and the last three are null.
struct ActionTextFunctions {
    const char *(*schema)();
    u32 (*value)(const void *action, char *buf);
    int (*print)(int fd, int indent, const void *action);
    u32 (*action_specs_are_equal)(const void *left, const void *right, char *msg);
    void (*unbuild)(const pipe_action_data *, const pd_res_ref *, u32 count, void *action);
};

struct TableFunctions {
    const pd::Table *row;
    std::span<const ActionFunctions> actions; // as row->actions
    const IndirectFunctions *indirect;        // null where entries carry their action
    const IdleFunctions *idle;                // null where entries do not age
    pd_status (*table_delete)(pd_sess_hdl, u32 device_id, pd_entry_hdl);
    pd_status (*table_delete_by_match_spec)(pd_sess_hdl, pd_dev_target, const EntryArguments &);
    pd_status (*match_spec_to_entry_hdl)(pd_sess_hdl, pd_dev_target, const EntryArguments &, pd_entry_hdl *);
    void (*unbuild_key)(const pipe_match_spec *, void *key);
    void (*unbuild_mask)(const pipe_match_spec *, void *key);
    pd_status (*get_default_entry)(pd_sess_hdl, pd_dev_target, u8 from_hw, pd_default_action_out *);
    pd_status (*get_entry)(pd_sess_hdl, u32 device_id, pd_entry_hdl, u8 from_hw, const EntryResults &);
    pd_status (*get_entry_from_plcmt_data)(void *plcmt_data, const EntryResults &, pd_plcmt_action_out *);
    pd_status (*get_default_entry_handle)(pd_sess_hdl, pd_dev_target, pd_entry_hdl *);
    pd_status (*reset_default_entry)(pd_sess_hdl, pd_dev_target);
    pd_status (*get_plcmt_data)(pd_word first, pd_word second);
    pd_status (*get_entry_count)(pd_sess_hdl, pd_dev_target, u32 *count);
    pd_status (*get_first_entry_handle)(pd_sess_hdl, pd_dev_target, pd_entry_hdl *first);
    pd_status (*get_next_entry_handles)(pd_sess_hdl, pd_dev_target, pd_entry_hdl, u32 count,
                                        pd_entry_hdl *next);
    pd_status (*set_property)(pd_sess_hdl, u32 device_id, u32 property, u32 value, u32 second_value);
    pd_status (*get_property)(pd_sess_hdl, u32 device_id, u32 property, u32 *value, u32 *second_value);
    pd_status (*register_mat_update_cb)(pd_sess_hdl, u32 device_id, pd_mat_update_cb, pd_word cookie);
    pd_status (*get_mat_table_handle)(u32 *handle);
    u32 (*supports_entry_priority)();
    TableTextFunctions text;
};

// All 158 tables, by handle.
std::span<const TableFunctions *const> tables();

// The 4 action profiles, in the order that is kept everywhere.
std::span<const ProfileFunctions *const> profiles();

// All 298 actions, by number, and how each tells of its parameters in text.
std::span<const pd::Action *const> actions();
std::span<const ActionTextFunctions> action_texts();

// Null when there is no such table, or no such action of it.
const TableFunctions *find_table(std::string_view name);
const TableFunctions *find_table(u32 handle);
const ActionFunctions *find_action(const TableFunctions &table, std::string_view name);
const ProfileFunctions *find_profile(std::string_view name);
const MemberFunctions *find_action(const ProfileFunctions &profile, std::string_view name);

} // namespace reflection
