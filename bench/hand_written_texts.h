// The texts of keys and parameters as a careful person would write them for one table or action: one snprintf
// for each field. The signatures are those of the exported functions.
#pragma once

#include "pd.h"

#pragma GCC visibility push(default)
namespace hand_written {

u32 l2_forward_params_text(const p4_pd_tessel_switch_l2ForwardParams_match_spec_t *key, char *buf);
u32 halo_row1_stage2_text(const p4_pd_tessel_switch_haloRow1Stage2_match_spec_t *key, char *buf);
u32 trap_to_cpu_text(const p4_pd_tessel_switch_trapToCpu_match_spec_t *key, char *buf);
u32 ipv4_short_mask_lpm_text(const p4_pd_tessel_switch_ipv4ShortMaskLpm_match_spec_t *key, char *buf);
u32 ipv6_short_mask_lpm_text(const p4_pd_tessel_switch_ipv6ShortMaskLpm_match_spec_t *key, char *buf);
u32 l2_dmac_classify_text(const p4_pd_tessel_switch_l2DmacClassify_match_spec_t *key, char *buf);
u32 pdp_classify_text(const p4_pd_tessel_switch_pdpClassify_match_spec_t *key, char *buf);
u32 l2_forward_params_set_text(const p4_pd_tessel_switch_l2ForwardParamsSet_action_spec_t *action, char *buf);
u32 halo_set_best_result_row1_text(const p4_pd_tessel_switch_haloSetBestResultRow1_action_spec_t *action,
                                   char *buf);
u32 copy_packet_text(const p4_pd_tessel_switch_copyPacket_action_spec_t *action, char *buf);
u32 set_next_hop_text(const p4_pd_tessel_switch_setNextHop_action_spec_t *action, char *buf);
u32 set_ucast_text(char *buf);
u32 meter_pdp_class_text(const p4_pd_tessel_switch_meterPdpClass_action_spec_t *action, char *buf);

} // namespace hand_written
#pragma GCC visibility pop
