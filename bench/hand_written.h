// What the library is measured against: the same writes as a careful person would write them for one table,
// with the signatures of the exported functions.
#pragma once

#include "pd.h"

#pragma GCC visibility push(default)
namespace hand_written {

// Smallest exact key.
pd_status add_l2_forward_params(pd_sess_hdl sess, pd_dev_target target,
                                const p4_pd_tessel_switch_l2ForwardParams_match_spec_t *key,
                                const p4_pd_tessel_switch_l2ForwardParamsSet_action_spec_t *action,
                                pd_entry_hdl *entry);

// Widest exact key.
pd_status add_halo_row1_stage2(pd_sess_hdl sess, pd_dev_target target,
                               const p4_pd_tessel_switch_haloRow1Stage2_match_spec_t *key,
                               const p4_pd_tessel_switch_haloSetBestResultRow1_action_spec_t *action,
                               pd_entry_hdl *entry);

// Ternary key of 20 fields.
pd_status add_trap_to_cpu(pd_sess_hdl sess, pd_dev_target target,
                          const p4_pd_tessel_switch_trapToCpu_match_spec_t *key, u32 priority,
                          const p4_pd_tessel_switch_copyPacket_action_spec_t *action, pd_entry_hdl *entry);

// LPM of 32 bits.
pd_status add_ipv4_short_mask_lpm(pd_sess_hdl sess, pd_dev_target target,
                                  const p4_pd_tessel_switch_ipv4ShortMaskLpm_match_spec_t *key,
                                  const p4_pd_tessel_switch_setNextHop_action_spec_t *action,
                                  pd_entry_hdl *entry);

// LPM of 128 bits.
pd_status add_ipv6_short_mask_lpm(pd_sess_hdl sess, pd_dev_target target,
                                  const p4_pd_tessel_switch_ipv6ShortMaskLpm_match_spec_t *key,
                                  const p4_pd_tessel_switch_setNextHop_action_spec_t *action,
                                  pd_entry_hdl *entry);

// Partition index.
pd_status add_ipv4_final_resolve0(pd_sess_hdl sess, pd_dev_target target,
                                  const p4_pd_tessel_switch_ipv4FinalResolve0_match_spec_t *key,
                                  const p4_pd_tessel_switch_setNextHop0First_action_spec_t *action,
                                  pd_entry_hdl *entry);

// Direct counter.
pd_status add_l2_dmac_classify(pd_sess_hdl sess, pd_dev_target target,
                               const p4_pd_tessel_switch_l2DmacClassify_match_spec_t *key, u32 priority,
                               pd_entry_hdl *entry);

// Direct meter.
pd_status add_l2_lookup_miss(pd_sess_hdl sess, pd_dev_target target,
                             const p4_pd_tessel_switch_l2LookupMiss_match_spec_t *key, u32 priority,
                             const pd_meter_spec *meter, pd_entry_hdl *entry);

// Indexed resource.
pd_status add_pdp_classify(pd_sess_hdl sess, pd_dev_target target,
                           const p4_pd_tessel_switch_pdpClassify_match_spec_t *key, u32 priority,
                           const p4_pd_tessel_switch_meterPdpClass_action_spec_t *action,
                           pd_entry_hdl *entry);

// No parameters.
pd_status add_l2_static_mac_src_addr_drop(pd_sess_hdl sess, pd_dev_target target,
                                          const p4_pd_tessel_switch_l2StaticMacSrcAddrDrop_match_spec_t *key,
                                          pd_entry_hdl *entry);

} // namespace hand_written
#pragma GCC visibility pop
