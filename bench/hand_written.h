// What the library is measured against: the same writes as a careful person would write them for one table,
// with the signatures of the exported functions.
#pragma once

#include "pd.h"

#pragma GCC visibility push(default)
namespace hand_written {

decltype(p4_pd_tessel_switch_l2ForwardParams_table_add_with_l2ForwardParamsSet) add_l2_forward_params;
decltype(p4_pd_tessel_switch_haloRow1Stage2_table_add_with_haloSetBestResultRow1) add_halo_row1_stage2;
decltype(p4_pd_tessel_switch_trapToCpu_table_add_with_copyPacket) add_trap_to_cpu;
decltype(p4_pd_tessel_switch_ipv4ShortMaskLpm_table_add_with_setNextHop) add_ipv4_short_mask_lpm;
decltype(p4_pd_tessel_switch_ipv6ShortMaskLpm_table_add_with_setNextHop) add_ipv6_short_mask_lpm;
decltype(p4_pd_tessel_switch_l2DmacClassify_table_add_with_setUcast) add_l2_dmac_classify;
decltype(p4_pd_tessel_switch_pdpClassify_table_add_with_meterPdpClass) add_pdp_classify;

} // namespace hand_written
#pragma GCC visibility pop
