// Members, groups and the restart, captured: the driver's side and the store's.
#include <algorithm>

#include "capture_driver.h"
#include "capture_services.h"
#include "pd_ms.h"
#include "pipe_mgr.h"

namespace {

// The status of a call with these arguments.
template <typename... Arguments>
pd_status call(const char *operation, const Arguments &...arguments)
{
    if (services::keep_calls)
        services::record(services::line(operation, arguments...));
    return services::answer(capture::status);
}

template <typename Callback>
pd_word word(Callback *callback)
{
    return reinterpret_cast<pd_word>(callback);
}

// Returns what the buffer held before.
std::string give(pipe_action_data &data, u32 &action)
{
    std::string before = services::keep_calls ? capture::hex(data.data, capture::answer.data.size()) : "";
    std::copy(capture::answer.data.begin(), capture::answer.data.end(), data.data);
    action = capture::answer.action;
    return before;
}

// What a reader of resources must take no notice of.
void give_resources(pd_word &resources, pd_word &count)
{
    resources = ~pd_word{0};
    count = 7;
}

} // namespace

// ---- The driver: members -------------------------------------------------------------------------------

pd_status pipe_mgr_adt_ent_del(pd_sess_hdl sess, u32 device_id, u32 table, pd_mbr_hdl member, u32 flags)
{
    return call(__func__, sess, device_id, table, member, flags);
}

pd_status pipe_mgr_get_action_data_entry(u32 table, pd_dev_target target, pd_mbr_hdl member,
                                         pipe_action_data *data, u32 *action, u8 from_hw)
{
    const std::string buffer = give(*data, *action);
    return call(__func__, table, target, member, data->num_bytes, buffer, from_hw);
}

pd_status pipe_register_adt_update_cb(pd_sess_hdl sess, u32 device_id, u32 table, pipe_adt_update_cb callback,
                                      pd_word cookie)
{
    return call(__func__, sess, device_id, table, word(callback), cookie);
}

pd_status pipe_mgr_plcmt_adt_data_get(pd_word first, pd_word second, u32 table)
{
    return call(__func__, first, second, table);
}

pd_status pipe_mgr_plcmt_adt_data_get_entry(void *plcmt_data, pipe_action_data *data, u32 *action)
{
    const std::string buffer = give(*data, *action);
    return call(__func__, reinterpret_cast<pd_word>(plcmt_data), buffer);
}

// ---- The driver: groups --------------------------------------------------------------------------------

pd_status pipe_mgr_sel_grp_add(pd_sess_hdl sess, pd_dev_target target, u32 table, u32 reserved,
                               u32 max_group_size, u32 marker, pd_grp_hdl *group, u32 flags)
{
    *group = capture::entry;
    return call(__func__, sess, target, table, reserved, max_group_size, marker, flags);
}

pd_status pipe_mgr_sel_grp_del(pd_sess_hdl sess, u32 device_id, u32 table, pd_grp_hdl group, u32 flags)
{
    return call(__func__, sess, device_id, table, group, flags);
}

pd_status pipe_mgr_get_sel_grp_mbr_count(pd_sess_hdl sess, u32 device_id, u32 table, pd_grp_hdl group,
                                         u32 *count)
{
    *count = capture::answer.numbers[0];
    return call(__func__, sess, device_id, table, group);
}

pd_status pipe_mgr_sel_grp_mbrs_get(pd_sess_hdl sess, u32 device_id, u32 table, pd_grp_hdl group, u32 count,
                                    pd_mbr_hdl *members, u8 *states, u32 *written, u32 flags)
{
    const u32 before = *written;
    for (u32 i = 0; i < count; ++i)
        members[i] = 101 + i;
    std::fill_n(states, count, u8{1});
    *written = capture::answer.numbers[1];
    return call(__func__, sess, device_id, table, group, count, before, flags);
}

pd_status pipe_mgr_get_first_group_member(pd_sess_hdl sess, u32 table, u32 device_id, pd_grp_hdl group,
                                          pd_mbr_hdl *first)
{
    *first = capture::entry;
    return call(__func__, sess, table, device_id, group);
}

pd_status pipe_mgr_get_next_group_members(pd_sess_hdl sess, u32 table, u32 device_id, pd_grp_hdl group,
                                          pd_mbr_hdl after, u32 count, pd_mbr_hdl *next)
{
    *next = capture::entry;
    return call(__func__, sess, table, device_id, group, after, count);
}

pd_status pipe_mgr_sel_grp_mbr_add(pd_sess_hdl sess, u32 device_id, u32 table, pd_grp_hdl group, u32 action,
                                   pd_mbr_hdl member, u32 flags)
{
    return call(__func__, sess, device_id, table, group, action, member, flags);
}

pd_status pipe_mgr_sel_grp_mbr_del(pd_sess_hdl sess, u32 device_id, u32 table, pd_grp_hdl group,
                                   pd_mbr_hdl member, u32 flags)
{
    return call(__func__, sess, device_id, table, group, member, flags);
}

pd_status pipe_mgr_sel_grp_mbr_enable(pd_sess_hdl sess, u32 device_id, u32 table, pd_grp_hdl group,
                                      pd_mbr_hdl member, u32 flags)
{
    return call(__func__, sess, device_id, table, group, member, flags);
}

pd_status pipe_mgr_sel_grp_mbr_disable(pd_sess_hdl sess, u32 device_id, u32 table, pd_grp_hdl group,
                                       pd_mbr_hdl member, u32 flags)
{
    return call(__func__, sess, device_id, table, group, member, flags);
}

pd_status pipe_mgr_sel_grp_mbr_state_get(pd_sess_hdl sess, u32 device_id, u32 table, pd_grp_hdl group,
                                         pd_mbr_hdl member, u32 *state)
{
    *state = capture::answer.numbers[0];
    return call(__func__, sess, device_id, table, group, member);
}

pd_status pipe_mgr_sel_grp_mbr_get_from_hash(pd_sess_hdl sess, u32 device_id, u32 table, pd_grp_hdl group,
                                             pd_word first, pd_word second, pd_word third)
{
    return call(__func__, sess, device_id, table, group, first, second, third);
}

pd_status pipe_mgr_sel_fallback_mbr_set(pd_sess_hdl sess, pd_dev_target target, u32 table, pd_mbr_hdl member,
                                        u32 flags)
{
    return call(__func__, sess, target, table, member, flags);
}

pd_status pipe_mgr_sel_fallback_mbr_reset(pd_sess_hdl sess, pd_dev_target target, u32 table, u32 flags)
{
    return call(__func__, sess, target, table, flags);
}

pd_status pipe_mgr_sel_tbl_register_cb(pd_sess_hdl sess, u32 device_id, u32 table, pipe_sel_tbl_cb callback,
                                       pd_word cookie)
{
    return call(__func__, sess, device_id, table, word(callback), cookie);
}

pd_status pipe_register_sel_update_cb(pd_sess_hdl sess, u32 device_id, u32 table, pipe_sel_update_cb callback,
                                      pd_word cookie)
{
    return call(__func__, sess, device_id, table, word(callback), cookie);
}

pd_status pipe_mgr_get_word_llp_active_member_count(pd_sess_hdl sess, pd_dev_target target, u32 table,
                                                    pd_word word, pd_word count)
{
    return call(__func__, sess, target, table, word, count);
}

pd_status pipe_mgr_get_word_llp_active_members(pd_sess_hdl sess, pd_dev_target target, u32 table,
                                               pd_word word, pd_word count, pd_word members)
{
    return call(__func__, sess, target, table, word, count, members);
}

pd_status pipe_mgr_plcmt_sel_data_get(pd_word first, pd_word second, u32 table)
{
    return call(__func__, first, second, table);
}

pd_status pipe_mgr_hitless_ha_restore_virtual_dev_state(pd_word first, pd_word second, pd_word third,
                                                        pd_word fourth, pd_word fifth,
                                                        pipe_restore_state_cb restore)
{
    services::restore = restore;
    return call(__func__, first, second, third, fourth, fifth);
}

// ---- The store -----------------------------------------------------------------------------------------

pd_status p4_pd_ms_new_mbr(pd_sess_hdl sess, pd_word state, u32 device_id, pd_mbr_hdl member)
{
    return call(__func__, sess, state, device_id, member);
}

pd_status p4_pd_ms_del_mbr(pd_sess_hdl sess, pd_word state, u32 device_id, pd_mbr_hdl member)
{
    return call(__func__, sess, state, device_id, member);
}

pd_status p4_pd_ms_set_mbr_act(pd_word state, u32 device_id, pd_mbr_hdl member, u32 action)
{
    return call(__func__, state, device_id, member, action);
}

pd_status p4_pd_ms_get_mbr_act(pd_word state, u32 device_id, pd_mbr_hdl member, u32 *action)
{
    *action = capture::answer.action;
    return call(__func__, state, device_id, member);
}

pd_status p4_pd_ms_mbr_get_res(pd_word state, u32 device_id, pd_mbr_hdl member, pd_word *resources,
                               pd_word *count)
{
    give_resources(*resources, *count);
    return call(__func__, state, device_id, member);
}

pd_status p4_pd_ms_mbr_apply_to_grps(pd_word state, u32 device_id, pd_mbr_hdl member,
                                     p4_pd_ms_grp_cb callback, pd_word cookie)
{
    return call(__func__, state, device_id, member, word(callback), cookie);
}

pd_status p4_pd_ms_new_grp(pd_sess_hdl sess, pd_word state, u32 device_id, pd_grp_hdl group)
{
    return call(__func__, sess, state, device_id, group);
}

pd_status p4_pd_ms_del_grp(pd_sess_hdl sess, pd_word state, u32 device_id, pd_grp_hdl group, u32 count,
                           pd_mbr_hdl *members)
{
    std::string list = members ? "" : "null";
    for (u32 i = 0; i < count; ++i)
        services::append(list, members[i]);
    return call(__func__, sess, state, device_id, group, count, list);
}

pd_status p4_pd_ms_add_mbr_to_grp(pd_sess_hdl sess, pd_word state, u32 device_id, pd_mbr_hdl member,
                                  pd_grp_hdl group)
{
    return call(__func__, sess, state, device_id, member, group);
}

pd_status p4_pd_ms_del_mbr_from_grp(pd_sess_hdl sess, pd_word state, u32 device_id, pd_mbr_hdl member,
                                    pd_grp_hdl group)
{
    return call(__func__, sess, state, device_id, member, group);
}

pd_status p4_pd_ms_set_grp_act(pd_word state, u32 device_id, pd_grp_hdl group, u32 action)
{
    return call(__func__, state, device_id, group, action);
}

pd_status p4_pd_ms_get_grp_act(pd_word state, u32 device_id, pd_grp_hdl group, u32 *action)
{
    *action = capture::answer.action;
    return call(__func__, state, device_id, group);
}

pd_status p4_pd_ms_grp_get_res(pd_word state, u32 device_id, pd_grp_hdl group, pd_word *resources,
                               pd_word *count)
{
    give_resources(*resources, *count);
    return call(__func__, state, device_id, group);
}

pd_status p4_pd_ms_grp_update_res(u32 device_id, pd_grp_hdl group, pd_word cookie)
{
    return call(__func__, device_id, group, cookie);
}
