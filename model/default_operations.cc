// The driver operations on the default entry of a table.
#include "answer.h"
#include "pipe_mgr_match.h"
#include "table_operation.h"

using namespace model;

extern "C" {

pd_status pipe_mgr_mat_default_entry_set(pd_sess_hdl sess, pd_dev_target target, u32 table, u32 action,
                                         pipe_action_spec *spec, u32 flags, pd_entry_hdl *entry)
{
    const auto set = [&](Table &found, News &news) {
        if (entry == nullptr)
            return bad_argument;
        if (const pd_status status = set_action(found, TS_MODEL_DEFAULT_ENTRY, action, spec, news))
            return status;
        *entry = TS_MODEL_DEFAULT_ENTRY;
        return ok;
    };
    return run_change(
        "pipe_mgr_mat_default_entry_set", target.device_id, table, set,
        [&](Line &line) {
            line.number("sess", sess).target(target).table(table);
            action_of_table(line, table, action);
            line.words("spec", action_text(spec)).number("flags", flags);
        },
        [&](Line &line) { line.number("entry", *entry); });
}

pd_status pipe_mgr_table_get_default_entry_handle(pd_sess_hdl sess, pd_dev_target target, u32 table,
                                                  pd_entry_hdl *entry)
{
    const auto tell = [&](Table &) {
        if (entry == nullptr)
            return bad_argument;
        *entry = TS_MODEL_DEFAULT_ENTRY;
        return ok;
    };
    return run(
        "pipe_mgr_table_get_default_entry_handle", [&] { return with_table(target.device_id, table, tell); },
        [&](Line &line) { line.number("sess", sess).target(target).table(table); },
        [&](Line &line) { line.number("entry", *entry); });
}

pd_status pipe_mgr_table_get_default_entry(pd_sess_hdl sess, pd_dev_target target, u32 table,
                                           pipe_action_spec *spec, u32 *action, u8 from_hw, u32 resources,
                                           u32 flags)
{
    const auto get = [&](Table &found) {
        const auto contents = read_copy(found, TS_MODEL_DEFAULT_ENTRY, from_hw);
        if (!contents)
            return unknown_object;
        if (!has_room(spec, *contents) || action == nullptr)
            return bad_argument;
        answer_action(found.program(), *contents, *spec, *action);
        return ok;
    };
    return run(
        "pipe_mgr_table_get_default_entry", [&] { return with_table(target.device_id, table, get); },
        [&](Line &line) {
            line.number("sess", sess).target(target).table(table).number("from_hw", from_hw);
            line.number("resources", resources).number("flags", flags);
        },
        [&](Line &line) {
            action_of_table(line, table, *action);
            line.words("spec", action_text(spec));
        });
}

pd_status pipe_mgr_mat_tbl_default_entry_reset(pd_sess_hdl sess, pd_dev_target target, u32 table, u32 flags)
{
    const auto reset = [](Table &found, News &news) {
        found.reset_default(news);
        return ok;
    };
    return run_change(
        "pipe_mgr_mat_tbl_default_entry_reset", target.device_id, table, reset,
        [&](Line &line) { line.number("sess", sess).target(target).table(table).number("flags", flags); });
}

} // extern "C"
