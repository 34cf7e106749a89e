// Sample tables. Generated from the catalogue: edit its rows, not this file.
#include "pd_ports.h"

#include "entries.h"
#include "rows_ports.h"

using namespace pd;

pd_status p4_pd_sample_stationCheck_table_add_with_NoAction(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_stationCheck_match_spec_t *match_spec,
    u32 priority, u32 ttl, const pd_meter_spec *stationMeter_spec, pd_entry_hdl *entry_hdl)
{
    return add<tables::stationCheck, actions::NoAction>(
        sess, dev_tgt, {.key = match_spec, .priority = priority, .ttl = ttl, .meter = stationMeter_spec},
        entry_hdl);
}

pd_status p4_pd_sample_stationCheck_table_modify_with_NoAction(
    pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl, const pd_meter_spec *stationMeter_spec)
{
    return modify<tables::stationCheck, actions::NoAction>(
        sess, dev_id, entry_hdl, { .meter = stationMeter_spec });
}

pd_status p4_pd_sample_stationCheck_table_modify_with_NoAction_by_match_spec(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_stationCheck_match_spec_t *match_spec,
    u32 priority, const pd_meter_spec *stationMeter_spec)
{
    return modify_by_match_spec<tables::stationCheck, actions::NoAction>(
        sess, dev_tgt, {.key = match_spec, .priority = priority, .meter = stationMeter_spec});
}

pd_status p4_pd_sample_stationCheck_table_add_with_setDomain(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_stationCheck_match_spec_t *match_spec,
    u32 priority, const p4_pd_sample_setDomain_action_spec_t *action_spec, u32 ttl,
    const pd_meter_spec *stationMeter_spec, pd_entry_hdl *entry_hdl)
{
    return add<tables::stationCheck, actions::setDomain>(
        sess, dev_tgt,
        {.key = match_spec, .priority = priority, .action = action_spec, .ttl = ttl,
         .meter = stationMeter_spec}, entry_hdl);
}

pd_status p4_pd_sample_stationCheck_table_modify_with_setDomain(
    pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl,
    const p4_pd_sample_setDomain_action_spec_t *action_spec, const pd_meter_spec *stationMeter_spec)
{
    return modify<tables::stationCheck, actions::setDomain>(
        sess, dev_id, entry_hdl, { .action = action_spec, .meter = stationMeter_spec });
}

pd_status p4_pd_sample_stationCheck_table_modify_with_setDomain_by_match_spec(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_stationCheck_match_spec_t *match_spec,
    u32 priority, const p4_pd_sample_setDomain_action_spec_t *action_spec,
    const pd_meter_spec *stationMeter_spec)
{
    return modify_by_match_spec<tables::stationCheck, actions::setDomain>(
        sess, dev_tgt,
        {.key = match_spec, .priority = priority, .action = action_spec, .meter = stationMeter_spec});
}

pd_status p4_pd_sample_stationCheck_table_delete(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl)
{
    return table_delete<tables::stationCheck>(sess, dev_id, entry_hdl);
}

pd_status p4_pd_sample_stationCheck_table_delete_by_match_spec(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_stationCheck_match_spec_t *match_spec,
    u32 priority)
{
    return table_delete_by_match_spec<tables::stationCheck>(
        sess, dev_tgt, {.key = match_spec, .priority = priority});
}

pd_status p4_pd_sample_stationCheck_match_spec_to_entry_hdl(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_stationCheck_match_spec_t *match_spec,
    u32 priority, pd_entry_hdl *entry_hdl)
{
    return match_spec_to_entry_hdl<tables::stationCheck>(
        sess, dev_tgt, {.key = match_spec, .priority = priority}, entry_hdl);
}

pd_status p4_pd_sample_route_table_add_with_meterRoute(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_route_match_spec_t *match_spec,
    const p4_pd_sample_meterRoute_action_spec_t *action_spec, pd_entry_hdl *entry_hdl)
{
    return add<tables::route, actions::meterRoute>(
        sess, dev_tgt, {.key = match_spec, .action = action_spec}, entry_hdl);
}

pd_status p4_pd_sample_route_table_modify_with_meterRoute(
    pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl,
    const p4_pd_sample_meterRoute_action_spec_t *action_spec)
{
    return modify<tables::route, actions::meterRoute>(sess, dev_id, entry_hdl, { .action = action_spec });
}

pd_status p4_pd_sample_route_table_modify_with_meterRoute_by_match_spec(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_route_match_spec_t *match_spec,
    const p4_pd_sample_meterRoute_action_spec_t *action_spec)
{
    return modify_by_match_spec<tables::route, actions::meterRoute>(
        sess, dev_tgt, {.key = match_spec, .action = action_spec});
}

pd_status p4_pd_sample_route_table_delete(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl)
{
    return table_delete<tables::route>(sess, dev_id, entry_hdl);
}

pd_status p4_pd_sample_route_table_delete_by_match_spec(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_route_match_spec_t *match_spec)
{
    return table_delete_by_match_spec<tables::route>(sess, dev_tgt, {.key = match_spec});
}

pd_status p4_pd_sample_route_match_spec_to_entry_hdl(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_route_match_spec_t *match_spec,
    pd_entry_hdl *entry_hdl)
{
    return match_spec_to_entry_hdl<tables::route>(sess, dev_tgt, {.key = match_spec}, entry_hdl);
}

pd_status p4_pd_sample_spread_table_delete(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry_hdl)
{
    return table_delete<tables::spread>(sess, dev_id, entry_hdl);
}

pd_status p4_pd_sample_spread_table_delete_by_match_spec(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_spread_match_spec_t *match_spec)
{
    return table_delete_by_match_spec<tables::spread>(sess, dev_tgt, {.key = match_spec});
}

pd_status p4_pd_sample_spread_match_spec_to_entry_hdl(
    pd_sess_hdl sess, pd_dev_target dev_tgt, const p4_pd_sample_spread_match_spec_t *match_spec,
    pd_entry_hdl *entry_hdl)
{
    return match_spec_to_entry_hdl<tables::spread>(sess, dev_tgt, {.key = match_spec}, entry_hdl);
}

