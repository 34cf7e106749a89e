#include "indirect_read_back.h"

#include "answer.h"

namespace pd {

namespace {

// False, with nothing written, for an entry that points at neither.
bool read_reference(const pipe_action_spec &spec, const ReferenceOut &to)
{
    const bool member = spec.action_kind == PIPE_ACTION_MEMBER, group = spec.action_kind == PIPE_ACTION_GROUP;
    if (!member && !group)
        return false;
    *to.has_member = member;
    *to.has_group = group;
    if (member)
        *to.member = spec.member_hdl;
    else
        *to.group = spec.group_hdl;
    return true;
}

} // namespace

pd_status get_indirect_entry(const TableReader &table, pd_sess_hdl sess, u32 device_id, pd_entry_hdl entry,
                             u8 from_hw, const KeyOut &key, const ReferenceOut &to)
{
    Answer answer(table);
    answer.match.num_valid_bits = table.key_size.bits;
    answer.match.num_bytes = table.key_size.bytes;
    const pd_status status = pipe_mgr_get_entry(sess, table.handle, {device_id, PIPE_ALL_PIPES}, entry,
                                                &answer.match, &answer.spec, &answer.action, from_hw, 1, 0);
    if (status != PD_STATUS_SUCCESS)
        return status;
    if (!read_reference(answer.spec, to))
        *to.has_member = *to.has_group = 0;
    read_key(table, answer.match, key);
    return PD_STATUS_SUCCESS;
}

pd_status get_indirect_entry_from_plcmt_data(const TableReader &table, void *plcmt_data, const KeyOut &key,
                                             const ReferenceOut &to)
{
    Answer answer(table);
    answer.spec.action_data.data = answer.data;
    const pd_status status =
        pipe_mgr_plcmt_mat_data_get_entry(plcmt_data, &answer.match, &answer.spec, &answer.action);
    if (status != PD_STATUS_SUCCESS)
        return status;
    read_key(table, answer.match, key);
    read_reference(answer.spec,
                   to); // deliberate: the flags of an entry that points at neither stay as they are
    return PD_STATUS_SUCCESS;
}

pd_status get_indirect_default_entry(const TableReader &table, pd_sess_hdl sess, pd_dev_target target,
                                     u8 from_hw, const ReferenceOut &to)
{
    Answer answer(table);
    const pd_status status = pipe_mgr_table_get_default_entry(sess, target, table.handle, &answer.spec,
                                                              &answer.action, from_hw, 1, 0);
    if (status != PD_STATUS_SUCCESS)
        return status;
    return read_reference(answer.spec, to) ? PD_STATUS_SUCCESS : PD_STATUS_UNREADABLE; // deliberate: silent
}

} // namespace pd
