// The families of tables whose entries age. Ageing starts when it is enabled, which sets its parameters
// first.
#pragma once

#include "internal.h"
#include "pipe_mgr.h"
#include "rows.h"

namespace TS_INTERNAL pd {

// The mode whose parameters are told.
inline constexpr u32 idle_mode_with_parameters = 1;

// The flag at the end of the caller's record stays here.
inline pd_status idle_tmo_enable(const Table &table, pd_sess_hdl sess, u32 device_id,
                                 const pd_idle_params &params)
{
    const pd_status status =
        pipe_mgr_idle_set_params(sess, device_id, table.handle,
                                 {params.idle_mode, params.idle_param_1, params.idle_param_2,
                                  params.idle_param_3, params.idle_param_4, 0, params.idle_param_5, 0});
    if (status != PD_STATUS_SUCCESS)
        return status;
    return pipe_mgr_idle_tmo_set_enable(sess, device_id, table.handle, 1);
}

inline pd_status idle_tmo_disable(const Table &table, pd_sess_hdl sess, u32 device_id)
{
    return pipe_mgr_idle_tmo_set_enable(sess, device_id, table.handle, 0);
}

inline pd_status idle_register_tmo_cb(const Table &table, pd_sess_hdl sess, u32 device_id,
                                      pd_idle_tmo_cb callback, pd_word cookie)
{
    return pipe_mgr_idle_register_tmo_cb(sess, device_id, table.handle, callback, cookie);
}

// Of another mode the mode is told alone.
inline pd_status idle_params_get(const Table &table, pd_sess_hdl sess, u32 device_id, pd_idle_params *params)
{
    pipe_idle_params answer{};
    const pd_status status = pipe_mgr_idle_get_params(sess, device_id, table.handle, &answer);
    if (status != PD_STATUS_SUCCESS)
        return status;
    params->idle_mode = answer.idle_mode;
    if (answer.idle_mode != idle_mode_with_parameters)
        return PD_STATUS_SUCCESS;
    params->idle_param_1 = answer.idle_param_1;
    params->idle_param_2 = answer.idle_param_2;
    params->idle_param_3 = answer.idle_param_3;
    params->idle_param_4 = answer.idle_param_4;
    params->idle_param_5 = answer.idle_param_5;
    params->idle_flag = 0;
    return PD_STATUS_SUCCESS;
}

inline pd_status set_ttl(const Table &table, pd_sess_hdl sess, u32 device_id, pd_entry_hdl entry, u32 ttl)
{
    return pipe_mgr_mat_ent_set_idle_ttl(sess, device_id, table.handle, entry, ttl, 0, 0);
}

inline pd_status get_ttl(const Table &table, pd_sess_hdl sess, u32 device_id, pd_entry_hdl entry, u32 *ttl)
{
    return pipe_mgr_mat_ent_get_idle_ttl(sess, device_id, table.handle, entry, ttl);
}

inline pd_status reset_ttl(const Table &table, pd_sess_hdl sess, u32 device_id, pd_entry_hdl entry)
{
    return pipe_mgr_mat_ent_reset_idle_ttl(sess, device_id, table.handle, entry);
}

inline pd_status update_hit_state(const Table &table, pd_sess_hdl sess, u32 device_id, pd_word first,
                                  pd_word second)
{
    return pipe_mgr_idle_time_update_hit_state(sess, device_id, table.handle, first, second);
}

// Deliberate: the caller's word is written whatever the status.
inline pd_status get_hit_state(const Table &table, pd_sess_hdl sess, u32 device_id, pd_entry_hdl entry,
                               u32 *hit_state)
{
    u32 state = 0;
    const pd_status status = pipe_mgr_idle_time_get_hit_state(sess, device_id, table.handle, entry, &state);
    *hit_state = state;
    return status;
}

} // namespace pd
