// Walks by the handle of a table or profile. Deliberate: a handle that is not known gives no entry with a
// status of success, but no member with a status of its own.
#include "pd_inspection.h"
#include "pipe_mgr.h"
#include "texts.h"

namespace {

pd_status unknown(u32 *out, pd_status status)
{
    *out = PD_UNKNOWN_HANDLE;
    return status;
}

} // namespace

pd_status p4_pd_tessel_switch_entry_hdl_first(pd_sess_hdl sess, pd_dev_target dev_tgt, u32 table,
                                              pd_entry_hdl *out)
{
    if (!pd_tessel::find_table(table))
        return unknown(out, PD_STATUS_SUCCESS);
    return pipe_mgr_get_first_entry_handle(sess, table, dev_tgt, out);
}

pd_status p4_pd_tessel_switch_entry_hdl_next(pd_sess_hdl sess, pd_dev_target dev_tgt, u32 table,
                                             pd_entry_hdl entry_hdl, u32 count, pd_entry_hdl *out)
{
    if (!pd_tessel::find_table(table))
        return unknown(out, PD_STATUS_SUCCESS);
    return pipe_mgr_get_next_entry_handles(sess, table, dev_tgt, entry_hdl, count, out);
}

pd_status p4_pd_tessel_switch_entry_hdl_default(pd_sess_hdl sess, pd_dev_target dev_tgt, u32 table,
                                                pd_entry_hdl *out)
{
    if (!pd_tessel::find_table(table))
        return unknown(out, PD_STATUS_SUCCESS);
    return pipe_mgr_table_get_default_entry_handle(sess, dev_tgt, table, out);
}

pd_status p4_pd_tessel_switch_member_hdl_first(pd_sess_hdl sess, pd_dev_target dev_tgt, u32 action_table,
                                               pd_mbr_hdl *out)
{
    if (!pd_tessel::find_profile(action_table))
        return unknown(out, PD_STATUS_MISMATCH);
    return pipe_mgr_get_first_entry_handle(sess, action_table, dev_tgt, out);
}

pd_status p4_pd_tessel_switch_member_hdl_next(pd_sess_hdl sess, pd_dev_target dev_tgt, u32 action_table,
                                              pd_mbr_hdl mbr, u32 count, pd_mbr_hdl *out)
{
    if (!pd_tessel::find_profile(action_table))
        return unknown(out, PD_STATUS_MISMATCH);
    return pipe_mgr_get_next_entry_handles(sess, action_table, dev_tgt, mbr, count, out);
}
