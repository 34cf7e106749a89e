// The families around a table's default entry: set, find, reset. Reading it back is read_back.h's.
#pragma once

#include "entries.h"

namespace pd {

// As an entry of the table, but for a direct meter without a spec, which is detached here.
template <const Table &table, const Binding &binding>
[[gnu::always_inline]] inline pd_status set_default_action(pd_sess_hdl sess, pd_dev_target target,
                                                           const EntryArguments &with, pd_entry_hdl *entry)
{
    if constexpr (table.direct_meter != 0) {
        EntryRecord<table, *binding.action> act(with.action);
        fill_resource<table, *binding.action>(act.resource(), with, index_mask_in_modify, PIPE_RES_DETACH);
        return pipe_mgr_mat_default_entry_set(sess, target, table.handle, binding.handle, act.spec(), 0,
                                              entry);
    } else {
        return hand_on<false, !binding.action->parameters.empty()>(with, [&](auto... given) {
            return set_default<decltype(given)..., pd_entry_hdl *> TS_BESIDE((shared_entry<table, binding>),
                                                                             sess, target, given..., entry);
        });
    }
}

inline pd_status get_default_entry_handle(const Table &table, pd_sess_hdl sess, pd_dev_target target,
                                          pd_entry_hdl *entry)
{
    return pipe_mgr_table_get_default_entry_handle(sess, target, table.handle, entry);
}

inline pd_status reset_default_entry(const Table &table, pd_sess_hdl sess, pd_dev_target target)
{
    return pipe_mgr_mat_tbl_default_entry_reset(sess, target, table.handle, 0);
}

} // namespace pd
