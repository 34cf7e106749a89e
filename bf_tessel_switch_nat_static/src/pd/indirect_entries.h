// The families that write entries which point at a member or a group of an action profile. The entry carries
// the reference only; the member-selection store tells the action that goes with it, and is asked before the
// driver. Reading back is indirect_read_back.h's.
#pragma once

#include "entry_arguments.h"
#include "internal.h"
#include "match_record.h"
#include "rows_profiles.h"

namespace TS_INTERNAL pd {

// What an entry points at.
struct Reference {
    u8 kind; // PIPE_ACTION_MEMBER or PIPE_ACTION_GROUP
    u32 handle;
};

inline Reference to_member(pd_mbr_hdl member)
{
    return {PIPE_ACTION_MEMBER, member};
}

inline Reference to_group(pd_grp_hdl group)
{
    return {PIPE_ACTION_GROUP, group};
}

struct ReferenceRecord {
    alignas(16) pipe_action_spec spec;
    u32 action; // handle of the action function
};

// Fills the record; fails when the store does not know the reference's action.
pd_status refer(const Profile &profile, u32 device_id, Reference to, ReferenceRecord &record);

template <const Table &table>
inline pd_status add_entry(const Profile &profile, pd_sess_hdl sess, pd_dev_target target,
                           const EntryArguments &with, Reference to, pd_entry_hdl *entry)
{
    MatchRecord<table> match(with.key, with.priority);
    ReferenceRecord act;
    if (const pd_status status = refer(profile, target.device_id, to, act); status != PD_STATUS_SUCCESS)
        return status;
    return pipe_mgr_mat_ent_add(sess, target, table.handle, match.spec(), act.action, &act.spec, 0, 0, entry);
}

inline pd_status modify_entry(const Table &table, const Profile &profile, pd_sess_hdl sess, u32 device_id,
                              pd_entry_hdl entry, Reference to)
{
    ReferenceRecord act;
    if (const pd_status status = refer(profile, device_id, to, act); status != PD_STATUS_SUCCESS)
        return status;
    return pipe_mgr_mat_ent_set_action(sess, device_id, table.handle, entry, act.action, &act.spec, 0);
}

template <const Table &table>
inline pd_status modify_entry_by_match_spec(const Profile &profile, pd_sess_hdl sess, pd_dev_target target,
                                            const EntryArguments &with, Reference to)
{
    MatchRecord<table> match(with.key, with.priority);
    ReferenceRecord act;
    if (const pd_status status = refer(profile, target.device_id, to, act); status != PD_STATUS_SUCCESS)
        return status;
    return pipe_mgr_mat_ent_set_action_by_match_spec(sess, target, table.handle, match.spec(), act.action,
                                                     &act.spec, 0);
}

inline pd_status set_default_entry(const Table &table, const Profile &profile, pd_sess_hdl sess,
                                   pd_dev_target target, Reference to, pd_entry_hdl *entry)
{
    ReferenceRecord act;
    if (const pd_status status = refer(profile, target.device_id, to, act); status != PD_STATUS_SUCCESS)
        return status;
    return pipe_mgr_mat_default_entry_set(sess, target, table.handle, act.action, &act.spec, 0, entry);
}

} // namespace pd
