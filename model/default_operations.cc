// The driver operations on the default entry of a table.
#include "answer.h"
#include "pipe_mgr_match.h"
#include "table_operation.h"

using namespace model;

namespace model {

pd_status pipe_mgr_mat_default_entry_set(pd_sess_hdl, pd_dev_target target, u32 table, u32 action,
                                         pipe_action_spec *spec, u32, pd_entry_hdl *entry)
{
    const auto set = [&](Table &found, News &news) {
        if (const pd_status status = set_action(found, TS_MODEL_DEFAULT_ENTRY, action, *spec, news))
            return status;
        *entry = TS_MODEL_DEFAULT_ENTRY;
        return ok;
    };
    return change_table(target.device_id, table, set);
}

pd_status pipe_mgr_table_get_default_entry_handle(pd_sess_hdl, pd_dev_target target, u32 table,
                                                  pd_entry_hdl *entry)
{
    const auto tell = [&](Table &) {
        *entry = TS_MODEL_DEFAULT_ENTRY;
        return ok;
    };
    return with_table(target.device_id, table, tell);
}

pd_status pipe_mgr_table_get_default_entry(pd_sess_hdl, pd_dev_target target, u32 table,
                                           pipe_action_spec *spec, u32 *action, u8 from_hw, u32, u32)
{
    const auto get = [&](Table &found) {
        const auto contents = read_copy(found, TS_MODEL_DEFAULT_ENTRY, from_hw);
        if (!contents)
            return unknown_object;
        if (!has_room(*spec, *contents))
            return bad_argument;
        answer_action(found.program(), *contents, *spec, *action);
        return ok;
    };
    return with_table(target.device_id, table, get);
}

pd_status pipe_mgr_mat_tbl_default_entry_reset(pd_sess_hdl, pd_dev_target target, u32 table, u32)
{
    const auto reset = [](Table &found, News &news) {
        found.reset_default(news);
        return ok;
    };
    return change_table(target.device_id, table, reset);
}

} // namespace model
