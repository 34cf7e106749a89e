#include "hand_written.h"

#include <cstdlib>
#include <cstring>

#include "pipe_mgr_match.h"

namespace hand_written {

namespace {

void put16(u8 *to, u32 value)
{
    to[0] = static_cast<u8>(value >> 8);
    to[1] = static_cast<u8>(value);
}

void put24(u8 *to, u32 value)
{
    to[0] = static_cast<u8>(value >> 16);
    to[1] = static_cast<u8>(value >> 8);
    to[2] = static_cast<u8>(value);
}

void put32(u8 *to, u32 value)
{
    to[0] = static_cast<u8>(value >> 24);
    to[1] = static_cast<u8>(value >> 16);
    to[2] = static_cast<u8>(value >> 8);
    to[3] = static_cast<u8>(value);
}

} // namespace

pd_status add_l2_forward_params(pd_sess_hdl sess, pd_dev_target target,
                                const p4_pd_tessel_switch_l2ForwardParams_match_spec_t *key,
                                const p4_pd_tessel_switch_l2ForwardParamsSet_action_spec_t *action,
                                pd_entry_hdl *entry)
{
    u8 value[1];
    u8 mask[1];
    u8 data[3];
    value[0] = key->outerEthHdr_valid;
    mask[0] = 0xff;

    pipe_match_spec match = {};
    match.match_value = value;
    match.match_mask = mask;
    match.num_valid_bits = 1;
    match.num_bytes = sizeof value;

    put24(data, action->action_port);

    pipe_action_spec spec = {};
    spec.action_kind = PIPE_ACTION_DATA;
    spec.action_data.num_valid_bits = 20;
    spec.action_data.num_bytes = sizeof data;
    spec.action_data.data = data;

    return pipe_mgr_mat_ent_add(sess, target, 0x100002a, &match, 0x2000005e, &spec, 0, 0, entry);
}

pd_status add_halo_row1_stage2(pd_sess_hdl sess, pd_dev_target target,
                               const p4_pd_tessel_switch_haloRow1Stage2_match_spec_t *key,
                               const p4_pd_tessel_switch_haloSetBestResultRow1_action_spec_t *action,
                               pd_entry_hdl *entry)
{
    u8 value[14];
    u8 mask[14];
    u8 data[4];
    value[0] = key->haloKeyOrig_crlId;
    put16(value + 1, key->haloKeyMaskedRow1_sip);
    put16(value + 3, key->haloKeyMaskedRow1_dip);
    put16(value + 5, key->haloKeyMaskedRow1_srcPort);
    put16(value + 7, key->haloKeyMaskedRow1_dstPort);
    value[9] = key->haloKeyMaskedRow1_proto;
    value[10] = key->haloKeyMaskedRow1_dscp;
    value[11] = key->haloKeyMaskedRow1_ttl;
    value[12] = key->haloKeyMaskedRow1_flags;
    value[13] = key->haloKeyMaskedRow1_isFrag;
    std::memset(mask, 0xff, sizeof mask);

    pipe_match_spec match = {};
    match.match_value = value;
    match.match_mask = mask;
    match.num_valid_bits = 103;
    match.num_bytes = sizeof value;

    put32(data, action->action_res);

    pipe_action_spec spec = {};
    spec.action_kind = PIPE_ACTION_DATA;
    spec.action_data.num_valid_bits = 32;
    spec.action_data.num_bytes = sizeof data;
    spec.action_data.data = data;

    return pipe_mgr_mat_ent_add(sess, target, 0x1000037, &match, 0x20000048, &spec, 0, 0, entry);
}

pd_status add_trap_to_cpu(pd_sess_hdl sess, pd_dev_target target,
                          const p4_pd_tessel_switch_trapToCpu_match_spec_t *key, u32 priority,
                          const p4_pd_tessel_switch_copyPacket_action_spec_t *action, pd_entry_hdl *entry)
{
    u8 value[44];
    u8 mask[44];
    u8 data[2];
    put16(value, key->ingMd_etherType & key->ingMd_etherType_mask);
    put16(mask, key->ingMd_etherType_mask);
    value[2] = key->ingMd_bcast & key->ingMd_bcast_mask;
    mask[2] = key->ingMd_bcast_mask & 0x01;
    value[3] = key->ingMd_mcast & key->ingMd_mcast_mask;
    mask[3] = key->ingMd_mcast_mask & 0x01;
    value[4] = key->ingMd_l4Attr & key->ingMd_l4Attr_mask;
    mask[4] = key->ingMd_l4Attr_mask & 0x07;
    put16(value + 5, key->ingMd_srcPort & key->ingMd_srcPort_mask);
    put16(mask + 5, key->ingMd_srcPort_mask);
    put16(value + 7, key->ingMd_dstPort & key->ingMd_dstPort_mask);
    put16(mask + 7, key->ingMd_dstPort_mask);
    put16(value + 9, key->phase0_ingVPort & key->phase0_ingVPort_mask);
    put16(mask + 9, key->phase0_ingVPort_mask & 0x3fff);
    put16(value + 11, key->ingMd_ingL3Aintf & key->ingMd_ingL3Aintf_mask);
    put16(mask + 11, key->ingMd_ingL3Aintf_mask & 0x0fff);
    value[13] = key->l3Info_ingL3DmacValid & key->l3Info_ingL3DmacValid_mask;
    mask[13] = key->l3Info_ingL3DmacValid_mask & 0x01;
    value[14] = key->ingMd_ttl & key->ingMd_ttl_mask;
    mask[14] = key->ingMd_ttl_mask;
    value[15] = key->arpHdr_valid & key->arpHdr_valid_mask;
    mask[15] = key->arpHdr_valid_mask & 0x01;
    put16(value + 16, key->arpHdr_opcode & key->arpHdr_opcode_mask);
    put16(mask + 16, key->arpHdr_opcode_mask);
    value[18] = key->ingMd_igmpSnoopingEnabled & key->ingMd_igmpSnoopingEnabled_mask;
    mask[18] = key->ingMd_igmpSnoopingEnabled_mask & 0x01;
    put32(value + 19, key->ingIpv4_dip & key->ingIpv4_dip_mask);
    put32(mask + 19, key->ingIpv4_dip_mask);
    value[23] = key->ingMd_protocol & key->ingMd_protocol_mask;
    mask[23] = key->ingMd_protocol_mask;
    value[24] = key->egrMd_vxlanFlood & key->egrMd_vxlanFlood_mask;
    mask[24] = key->egrMd_vxlanFlood_mask & 0x01;
    value[25] = key->egrMd_decapType & key->egrMd_decapType_mask;
    mask[25] = key->egrMd_decapType_mask & 0x07;
    for (int i = 0; i < 16; i++) {
        value[26 + i] = key->ingIpv6_dip[i] & key->ingIpv6_dip_mask[i];
        mask[26 + i] = key->ingIpv6_dip_mask[i];
    }
    value[42] = key->ingMd_cpuMemberOfIngressVlan & key->ingMd_cpuMemberOfIngressVlan_mask;
    mask[42] = key->ingMd_cpuMemberOfIngressVlan_mask & 0x01;
    value[43] = key->egrMd_cpuReasonCode & key->egrMd_cpuReasonCode_mask;
    mask[43] = key->egrMd_cpuReasonCode_mask;

    pipe_match_spec match = {};
    match.match_value = value;
    match.match_mask = mask;
    match.priority = priority;
    match.num_valid_bits = 287;
    match.num_bytes = sizeof value;

    data[0] = action->action_cpuReasonCode;
    data[1] = action->action_llm;

    pipe_action_spec spec = {};
    spec.action_kind = PIPE_ACTION_DATA;
    spec.action_data.num_valid_bits = 9;
    spec.action_data.num_bytes = sizeof data;
    spec.action_data.data = data;
    spec.resource_count = 1;
    spec.resources[0].res_handle = 0x4000003;
    spec.resources[0].res_tag = PIPE_RES_ATTACH;

    return pipe_mgr_mat_ent_add(sess, target, 0x1000040, &match, 0x200000cd, &spec, 0, 0, entry);
}

pd_status add_ipv4_short_mask_lpm(pd_sess_hdl sess, pd_dev_target target,
                                  const p4_pd_tessel_switch_ipv4ShortMaskLpm_match_spec_t *key,
                                  const p4_pd_tessel_switch_setNextHop_action_spec_t *action,
                                  pd_entry_hdl *entry)
{
    const u32 length = key->ingIpv4_dip_prefix_length;
    u8 value[5];
    u8 mask[5];
    u8 data[4];

    pipe_match_spec match = {};
    match.match_value = value;
    match.match_mask = mask;
    match.num_valid_bits = 40;
    match.num_bytes = sizeof value;

    u32 bits = 0xffffffff;
    if (length > 32) {
        match.priority = 41;
    } else {
        match.priority = 32 - length;
        bits = length == 0 ? 0 : bits << (32 - length);
    }
    value[0] = key->l3Info_vrfId;
    mask[0] = 0xff;
    put32(value + 1, key->ingIpv4_dip & bits);
    put32(mask + 1, bits);

    put32(data, action->action_nextHop);

    pipe_action_spec spec = {};
    spec.action_kind = PIPE_ACTION_DATA;
    spec.action_data.num_valid_bits = 32;
    spec.action_data.num_bytes = sizeof data;
    spec.action_data.data = data;

    return pipe_mgr_mat_ent_add(sess, target, 0x100003d, &match, 0x200000ae, &spec, 0, 0, entry);
}

pd_status add_ipv6_short_mask_lpm(pd_sess_hdl sess, pd_dev_target target,
                                  const p4_pd_tessel_switch_ipv6ShortMaskLpm_match_spec_t *key,
                                  const p4_pd_tessel_switch_setNextHop_action_spec_t *action,
                                  pd_entry_hdl *entry)
{
    const u32 length = key->ingIpv6_dip_prefix_length;
    u8 value[17];
    u8 mask[17];
    u8 data[4];

    pipe_match_spec match = {};
    match.match_value = value;
    match.match_mask = mask;
    match.num_valid_bits = 136;
    match.num_bytes = sizeof value;

    value[0] = key->l3Info_vrfId;
    std::memcpy(value + 1, key->ingIpv6_dip, 16);
    std::memset(mask, 0xff, sizeof mask);
    if (length > 128) {
        match.priority = 137;
    } else {
        match.priority = 128 - length;
        const u32 whole = length / 8;
        std::memset(mask + 1 + whole, 0, 16 - whole);
        if (length % 8 != 0)
            mask[1 + whole] = static_cast<u8>(0xff << (8 - length % 8));
        for (int i = 1; i <= 16; i++)
            value[i] &= mask[i];
    }

    put32(data, action->action_nextHop);

    pipe_action_spec spec = {};
    spec.action_kind = PIPE_ACTION_DATA;
    spec.action_data.num_valid_bits = 32;
    spec.action_data.num_bytes = sizeof data;
    spec.action_data.data = data;

    return pipe_mgr_mat_ent_add(sess, target, 0x1000021, &match, 0x20000060, &spec, 0, 0, entry);
}

pd_status add_l2_dmac_classify(pd_sess_hdl sess, pd_dev_target target,
                               const p4_pd_tessel_switch_l2DmacClassify_match_spec_t *key, u32 priority,
                               pd_entry_hdl *entry)
{
    u8 value[8];
    u8 mask[8];
    u8 data[1];
    put16(value, key->ig_intr_md_ingress_port);
    put16(mask, 0x01ff);
    put24(value + 2, key->outerEthHdr_dmacOui & key->outerEthHdr_dmacOui_mask);
    put24(mask + 2, key->outerEthHdr_dmacOui_mask);
    put24(value + 5, key->outerEthHdr_dmacStation & key->outerEthHdr_dmacStation_mask);
    put24(mask + 5, key->outerEthHdr_dmacStation_mask);

    pipe_match_spec match = {};
    match.match_value = value;
    match.match_mask = mask;
    match.priority = priority;
    match.num_valid_bits = 57;
    match.num_bytes = sizeof value;

    pipe_action_spec spec = {};
    spec.action_kind = PIPE_ACTION_DATA;
    spec.action_data.data = data;
    spec.resource_count = 1;
    spec.resources[0].res_handle = 0x4000001;
    spec.resources[0].res_tag = PIPE_RES_ATTACH;

    return pipe_mgr_mat_ent_add(sess, target, 0x1000009, &match, 0x20000008, &spec, 0, 0, entry);
}

pd_status add_pdp_classify(pd_sess_hdl sess, pd_dev_target target,
                           const p4_pd_tessel_switch_pdpClassify_match_spec_t *key, u32 priority,
                           const p4_pd_tessel_switch_meterPdpClass_action_spec_t *action, pd_entry_hdl *entry)
{
    u8 value[10];
    u8 mask[10];
    u8 data[4];
    value[0] = key->arpHdr_valid & key->arpHdr_valid_mask;
    mask[0] = key->arpHdr_valid_mask & 0x01;
    value[1] = key->tesselCpuHdr_valid & key->tesselCpuHdr_valid_mask;
    mask[1] = key->tesselCpuHdr_valid_mask & 0x01;
    value[2] = key->egrMd_cpuReasonCode & key->egrMd_cpuReasonCode_mask;
    mask[2] = key->egrMd_cpuReasonCode_mask;
    value[3] = key->egrMd_trapToCpu & key->egrMd_trapToCpu_mask;
    mask[3] = key->egrMd_trapToCpu_mask & 0x01;
    value[4] = key->ingMd_bcast & key->ingMd_bcast_mask;
    mask[4] = key->ingMd_bcast_mask & 0x01;
    value[5] = key->ingMd_protocol & key->ingMd_protocol_mask;
    mask[5] = key->ingMd_protocol_mask;
    put16(value + 6, key->ingMd_srcPort & key->ingMd_srcPort_mask);
    put16(mask + 6, key->ingMd_srcPort_mask);
    put16(value + 8, key->ingMd_dstPort & key->ingMd_dstPort_mask);
    put16(mask + 8, key->ingMd_dstPort_mask);

    pipe_match_spec match = {};
    match.match_value = value;
    match.match_mask = mask;
    match.priority = priority;
    match.num_valid_bits = 52;
    match.num_bytes = sizeof value;

    put32(data, action->action_pdpClassId);

    pipe_action_spec spec = {};
    spec.action_kind = PIPE_ACTION_DATA;
    spec.action_data.num_valid_bits = 32;
    spec.action_data.num_bytes = sizeof data;
    spec.action_data.data = data;
    spec.resource_count = 1;
    spec.resources[0].res_handle = 0x5000002;
    spec.resources[0].res_index = action->action_pdpClassId & 0xffff;
    spec.resources[0].res_tag = PIPE_RES_ATTACH;

    return pipe_mgr_mat_ent_add(sess, target, 0x100006a, &match, 0x20000118, &spec, 0, 0, entry);
}

} // namespace hand_written
