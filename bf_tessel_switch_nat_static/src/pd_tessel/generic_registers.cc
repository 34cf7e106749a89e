// Registers by any handle, their elements not looked at.
#include "pd_resources.h"
#include "pipe_mgr.h"
#include "pipe_stful.h"

pd_status p4_pd_tessel_switch_register_read_direct(pd_sess_hdl sess, pd_dev_target dev_tgt, u32 table,
                                                   pd_entry_hdl entry_hdl, int flags, pipe_stful_query *query)
{
    return pipe_stful_direct_ent_query(sess, dev_tgt.device_id, table, entry_hdl, query, flags & 1);
}

// The one word names both the match table and the register, and the driver sees eight bits of the device:
// deliberate.
pd_status p4_pd_tessel_switch_register_write_direct(pd_sess_hdl sess, u32 dev_id, u32 table,
                                                    pd_entry_hdl entry_hdl, const pipe_stful_value *value)
{
    pipe_res_spec resource{};
    resource.res_handle = table;
    resource.res_data.stful = *value;
    resource.res_tag = PIPE_RES_ATTACH;
    return pipe_mgr_mat_ent_set_resource(sess, static_cast<u8>(dev_id), table, entry_hdl, &resource, 1, 0);
}

pd_status p4_pd_tessel_switch_register_read_indirect(pd_sess_hdl sess, pd_dev_target dev_tgt, u32 table,
                                                     u32 index, int flags, pipe_stful_query *query)
{
    return pipe_stful_ent_query(sess, dev_tgt, table, index, query, flags & 1);
}

pd_status p4_pd_tessel_switch_register_write_indirect(pd_sess_hdl sess, pd_dev_target dev_tgt, u32 table,
                                                      u32 index, pipe_stful_value *value)
{
    return pipe_stful_ent_set(sess, dev_tgt, table, index, value, 0);
}

pd_status p4_pd_tessel_switch_register_hw_sync_direct(pd_sess_hdl sess, pd_dev_target dev_tgt, u32 table,
                                                      pd_sync_cb callback, pd_word cookie)
{
    return pipe_stful_direct_database_sync(sess, dev_tgt, table, callback, cookie);
}

pd_status p4_pd_tessel_switch_register_hw_sync_indirect(pd_sess_hdl sess, pd_dev_target dev_tgt, u32 table,
                                                        pd_sync_cb callback, pd_word cookie)
{
    return pipe_stful_database_sync(sess, dev_tgt, table, callback, cookie);
}

pd_status p4_pd_tessel_switch_register_reset_all_indirect(pd_sess_hdl sess, pd_dev_target dev_tgt, u32 table)
{
    return pipe_stful_table_reset(sess, dev_tgt, table, nullptr);
}

pd_status p4_pd_tessel_switch_register_range_reset_indirect(pd_sess_hdl sess, pd_dev_target dev_tgt,
                                                            u32 table, u32 start, u32 count)
{
    return pipe_stful_table_reset_range(sess, dev_tgt, table, start, count, nullptr);
}

pd_status p4_pd_tessel_switch_register_write_all_indirect(pd_sess_hdl sess, pd_dev_target dev_tgt, u32 table,
                                                          pipe_stful_value *value)
{
    return pipe_stful_table_reset(sess, dev_tgt, table, value);
}
