#include "read_back.h"

#include "answer.h"
#include "bf_sys.h"
#include "pd_actions.h"
#include "resource_list.h"

namespace pd {

namespace {

// The resource list of one answer.
class ResourceList {
public:
    explicit ResourceList(const pipe_action_spec &spec)
    {
        if (spec.resource_count != 0)
            build_pd_res_spec(&spec, &list, &count);
    }
    ResourceList(const ResourceList &) = delete;
    ~ResourceList()
    {
        if (list)
            bf_sys_free(list);
    }

    void unbuild(const ActionReader &action, const pipe_action_data &data, void *parameters) const
    {
        if (action.unbuild)
            action.unbuild(&data, list, count, parameters);
    }

private:
    pd_res_ref *list = nullptr;
    u32 count = 0;
};

// All names begin alike and have more than 16 bytes, few more than 48: the call of a function that looks for
// their end would cost more than all of it. The last piece may overlap the one before it.
void copy_name(char *name, const ActionReader &action)
{
    const char *from = p4_pd_tessel_switch_action_name_strings[action.number];
    u8 *to = reinterpret_cast<u8 *>(name);
    const u32 last = action.name_bytes - u32{sizeof(Wide)};
    for (u32 at = 0; at < last; at += sizeof(Wide))
        store_wide(to + at, load_wide(from, at));
    store_wide(to + last, load_wide(from, last));
}

void read_action(const ActionReader &action, const Answer &answer, const ResourceList &resources,
                 const ActionOut &out)
{
    if (out.action_name)
        copy_name(out.action_name, action);
    if (out.action_number)
        *out.action_number = action.number;
    resources.unbuild(action, answer.spec.action_data, out.action);
}

} // namespace

pd_status read_entry(pd_sess_hdl sess, u32 device_id, pd_entry_hdl entry, u8 from_hw, void *key,
                     char *action_name, void *action, u32 *action_number, u8 *is_default, u32 *priority,
                     const TableReader &table, const char *function, int line)
{
    const Place place{function, line};
    Answer answer(table);
    answer.spec.action_data.data = answer.data;
    answer.match.num_valid_bits = table.key_size.bits;
    answer.match.num_bytes = table.key_size.bytes;
    answer.spec.action_data.num_bytes = data_buffer_bytes;
    pd_status status = pipe_mgr_get_entry(sess, table.handle, {device_id, PIPE_ALL_PIPES}, entry,
                                          &answer.match, &answer.spec, &answer.action, from_hw, 1, 0);
    if (status != PD_STATUS_SUCCESS)
        return status;
    if (answer.spec.action_kind != PIPE_ACTION_DATA) {
        PD_ASSERT_OR_STATUS("0", "0", place);
        return PD_STATUS_UNREADABLE;
    }
    const ResourceList resources(answer.spec);
    if (const ActionReader *found = find_action(table.actions, answer.action)) {
        read_action(*found, answer, resources, {action_name, action, action_number});
    } else {
        // The key is still told: this is what a debugger needs to find the entry.
        PD_ASSERT_OR_STATUS("((void *)0)", "NULL", place);
        status = PD_STATUS_UNREADABLE;
    }
    if (table.record_size)
        read_key(table, answer.match, {key, priority, is_default});
    return status;
}

pd_status get_entry_from_plcmt_data(const TableReader &table, void *plcmt_data, const KeyOut &key,
                                    pd_plcmt_action_out *action, Place place)
{
    Answer answer(table);
    answer.spec.action_data.data = answer.data;
    const pd_status status =
        pipe_mgr_plcmt_mat_data_get_entry(plcmt_data, &answer.match, &answer.spec, &answer.action);
    if (status != PD_STATUS_SUCCESS)
        return status;
    // Deliberate: the kind of action is not looked at here, and the key comes before the action.
    if (table.record_size)
        read_key(table, answer.match, key);
    else
        *key.is_default = 1;
    const ActionReader *found = find_action(table.actions, answer.action);
    if (!found) {
        PD_ASSERT_OR_STATUS("((void *)0)", "NULL", place);
        return PD_STATUS_BAD_PLACEMENT_DATA;
    }
    action->action_number = found->number;
    ResourceList(answer.spec).unbuild(*found, answer.spec.action_data, &action->parameters);
    return PD_STATUS_SUCCESS;
}

pd_status get_default_entry(const TableReader &table, pd_sess_hdl sess, pd_dev_target target, u8 from_hw,
                            pd_default_action_out *action)
{
    Answer answer(table);
    answer.spec.action_data.data = answer.data;
    answer.spec.action_data.num_bytes = data_buffer_bytes;
    const pd_status status = pipe_mgr_table_get_default_entry(sess, target, table.handle, &answer.spec,
                                                              &answer.action, from_hw, 1, 0);
    if (status != PD_STATUS_SUCCESS)
        return status;
    if (answer.spec.action_kind != PIPE_ACTION_DATA)
        return PD_STATUS_UNREADABLE;
    pd_res_ref *list = nullptr;
    u32 count = 0;
    build_pd_res_spec(&answer.spec, &list, &count);
    const ActionReader *found = find_action(table.actions, answer.action);
    if (!found || !found->default_action)
        return PD_STATUS_UNREADABLE; // Deliberate: silent, and the list is not freed.
    action->action_number = found->number;
    if (found->unbuild)
        found->unbuild(&answer.spec.action_data, list, count, &action->parameters);
    if (list)
        bf_sys_free(list);
    return PD_STATUS_SUCCESS;
}

} // namespace pd
