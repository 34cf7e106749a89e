// What reading is measured against: the same read-backs as a careful person would write them for one table,
// with the signatures of the exported functions.
#pragma once

#include "pd.h"

#pragma GCC visibility push(default)
namespace hand_written {

decltype(p4_pd_tessel_switch_l2ForwardParams_get_entry) get_l2_forward_params;
decltype(p4_pd_tessel_switch_haloRow1Stage2_get_entry) get_halo_row1_stage2;
decltype(p4_pd_tessel_switch_trapToCpu_get_entry) get_trap_to_cpu;
decltype(p4_pd_tessel_switch_ipv4ShortMaskLpm_get_entry) get_ipv4_short_mask_lpm;
decltype(p4_pd_tessel_switch_ipv6ShortMaskLpm_get_entry) get_ipv6_short_mask_lpm;
decltype(p4_pd_tessel_switch_l2DmacClassify_get_entry) get_l2_dmac_classify;
decltype(p4_pd_tessel_switch_pdpClassify_get_entry) get_pdp_classify;

} // namespace hand_written
#pragma GCC visibility pop
