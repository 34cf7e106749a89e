// What reading is measured against: the same read-backs as a careful person would write them for one table,
// with the signatures of the exported functions.
#pragma once

#include "pd.h"

#pragma GCC visibility push(default)
namespace hand_written {

// Smallest exact key.
pd_status get_l2_forward_params(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry, u8 from_hw,
                                p4_pd_tessel_switch_l2ForwardParams_match_spec_t *key, char *name,
                                void *parameters, u32 *number, u8 *is_default);

// Widest exact key.
pd_status get_halo_row1_stage2(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry, u8 from_hw,
                               p4_pd_tessel_switch_haloRow1Stage2_match_spec_t *key, char *name,
                               void *parameters, u32 *number, u8 *is_default);

// Ternary key of 20 fields.
pd_status get_trap_to_cpu(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry, u8 from_hw,
                          p4_pd_tessel_switch_trapToCpu_match_spec_t *key, u32 *priority, char *name,
                          void *parameters, u32 *number, u8 *is_default);

// LPM of 32 bits.
pd_status get_ipv4_short_mask_lpm(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry, u8 from_hw,
                                  p4_pd_tessel_switch_ipv4ShortMaskLpm_match_spec_t *key, char *name,
                                  void *parameters, u32 *number, u8 *is_default);

// LPM of 128 bits.
pd_status get_ipv6_short_mask_lpm(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry, u8 from_hw,
                                  p4_pd_tessel_switch_ipv6ShortMaskLpm_match_spec_t *key, char *name,
                                  void *parameters, u32 *number, u8 *is_default);

// Partition index.
pd_status get_ipv4_final_resolve0(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry, u8 from_hw,
                                  p4_pd_tessel_switch_ipv4FinalResolve0_match_spec_t *key, char *name,
                                  void *parameters, u32 *number, u8 *is_default);

// Direct counter.
pd_status get_l2_dmac_classify(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry, u8 from_hw,
                               p4_pd_tessel_switch_l2DmacClassify_match_spec_t *key, u32 *priority,
                               char *name, void *parameters, u32 *number, u8 *is_default);

// Direct meter.
pd_status get_l2_lookup_miss(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry, u8 from_hw,
                             p4_pd_tessel_switch_l2LookupMiss_match_spec_t *key, u32 *priority, char *name,
                             void *parameters, u32 *number, u8 *is_default);

// Indexed resource.
pd_status get_pdp_classify(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry, u8 from_hw,
                           p4_pd_tessel_switch_pdpClassify_match_spec_t *key, u32 *priority, char *name,
                           void *parameters, u32 *number, u8 *is_default);

// No parameters.
pd_status get_l2_static_mac_src_addr_drop(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry, u8 from_hw,
                                          p4_pd_tessel_switch_l2StaticMacSrcAddrDrop_match_spec_t *key,
                                          char *name, void *parameters, u32 *number, u8 *is_default);

} // namespace hand_written
#pragma GCC visibility pop
