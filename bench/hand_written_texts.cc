#include "hand_written_texts.h"

#include <cstdio>
#include <cstring>

namespace hand_written {

namespace {

constexpr std::size_t room = 40; // more than any field takes

u32 length(const char *end, const char *buf)
{
    return static_cast<u32>(end - buf);
}

int put_wide(char *to, const u8 *field)
{
    return std::snprintf(to, room, "0x%02X%02X%02X%02X%02X%02X%02X%02X%02X%02X%02X%02X%02X%02X%02X%02X,",
                         field[0], field[1], field[2], field[3], field[4], field[5], field[6], field[7],
                         field[8], field[9], field[10], field[11], field[12], field[13], field[14],
                         field[15]);
}

} // namespace

u32 l2_forward_params_text(const p4_pd_tessel_switch_l2ForwardParams_match_spec_t *key, char *buf)
{
    char *to = stpcpy(buf, "( ");
    to += std::snprintf(to, room, "0x%01x,", key->outerEthHdr_valid & 0x1);
    return length(stpcpy(to, "),"), buf);
}

u32 halo_row1_stage2_text(const p4_pd_tessel_switch_haloRow1Stage2_match_spec_t *key, char *buf)
{
    char *to = stpcpy(buf, "( ");
    to += std::snprintf(to, room, "0x%02x,", key->haloKeyOrig_crlId);
    to += std::snprintf(to, room, "0x%04x,", key->haloKeyMaskedRow1_sip);
    to += std::snprintf(to, room, "0x%04x,", key->haloKeyMaskedRow1_dip);
    to += std::snprintf(to, room, "0x%04x,", key->haloKeyMaskedRow1_srcPort);
    to += std::snprintf(to, room, "0x%04x,", key->haloKeyMaskedRow1_dstPort);
    to += std::snprintf(to, room, "0x%02x,", key->haloKeyMaskedRow1_proto);
    to += std::snprintf(to, room, "0x%02x,", key->haloKeyMaskedRow1_dscp & 0x3f);
    to += std::snprintf(to, room, "0x%02x,", key->haloKeyMaskedRow1_ttl);
    to += std::snprintf(to, room, "0x%02x,", key->haloKeyMaskedRow1_flags);
    to += std::snprintf(to, room, "0x%01x,", key->haloKeyMaskedRow1_isFrag & 0x1);
    return length(stpcpy(to, "),"), buf);
}

u32 trap_to_cpu_text(const p4_pd_tessel_switch_trapToCpu_match_spec_t *key, char *buf)
{
    char *to = stpcpy(buf, "( ");
    to += std::snprintf(to, room, "0x%04x,", key->ingMd_etherType);
    to += std::snprintf(to, room, "0x%04x,", key->ingMd_etherType_mask);
    to += std::snprintf(to, room, "0x%01x,", key->ingMd_bcast & 0x1);
    to += std::snprintf(to, room, "0x%01x,", key->ingMd_bcast_mask & 0x1);
    to += std::snprintf(to, room, "0x%01x,", key->ingMd_mcast & 0x1);
    to += std::snprintf(to, room, "0x%01x,", key->ingMd_mcast_mask & 0x1);
    to += std::snprintf(to, room, "0x%01x,", key->ingMd_l4Attr & 0x7);
    to += std::snprintf(to, room, "0x%01x,", key->ingMd_l4Attr_mask & 0x7);
    to += std::snprintf(to, room, "0x%04x,", key->ingMd_srcPort);
    to += std::snprintf(to, room, "0x%04x,", key->ingMd_srcPort_mask);
    to += std::snprintf(to, room, "0x%04x,", key->ingMd_dstPort);
    to += std::snprintf(to, room, "0x%04x,", key->ingMd_dstPort_mask);
    to += std::snprintf(to, room, "0x%04x,", key->phase0_ingVPort & 0x3fff);
    to += std::snprintf(to, room, "0x%04x,", key->phase0_ingVPort_mask & 0x3fff);
    to += std::snprintf(to, room, "0x%03x,", key->ingMd_ingL3Aintf & 0xfff);
    to += std::snprintf(to, room, "0x%03x,", key->ingMd_ingL3Aintf_mask & 0xfff);
    to += std::snprintf(to, room, "0x%01x,", key->l3Info_ingL3DmacValid & 0x1);
    to += std::snprintf(to, room, "0x%01x,", key->l3Info_ingL3DmacValid_mask & 0x1);
    to += std::snprintf(to, room, "0x%02x,", key->ingMd_ttl);
    to += std::snprintf(to, room, "0x%02x,", key->ingMd_ttl_mask);
    to += std::snprintf(to, room, "0x%01x,", key->arpHdr_valid & 0x1);
    to += std::snprintf(to, room, "0x%01x,", key->arpHdr_valid_mask & 0x1);
    to += std::snprintf(to, room, "0x%04x,", key->arpHdr_opcode);
    to += std::snprintf(to, room, "0x%04x,", key->arpHdr_opcode_mask);
    to += put_wide(to, key->ingIpv6_dip);
    to += put_wide(to, key->ingIpv6_dip_mask);
    to += std::snprintf(to, room, "0x%01x,", key->ingMd_igmpSnoopingEnabled & 0x1);
    to += std::snprintf(to, room, "0x%01x,", key->ingMd_igmpSnoopingEnabled_mask & 0x1);
    to += std::snprintf(to, room, "0x%08x,", key->ingIpv4_dip);
    to += std::snprintf(to, room, "0x%08x,", key->ingIpv4_dip_mask);
    to += std::snprintf(to, room, "0x%02x,", key->ingMd_protocol);
    to += std::snprintf(to, room, "0x%02x,", key->ingMd_protocol_mask);
    to += std::snprintf(to, room, "0x%01x,", key->egrMd_vxlanFlood & 0x1);
    to += std::snprintf(to, room, "0x%01x,", key->egrMd_vxlanFlood_mask & 0x1);
    to += std::snprintf(to, room, "0x%01x,", key->egrMd_decapType & 0x7);
    to += std::snprintf(to, room, "0x%01x,", key->egrMd_decapType_mask & 0x7);
    to += std::snprintf(to, room, "0x%01x,", key->ingMd_cpuMemberOfIngressVlan & 0x1);
    to += std::snprintf(to, room, "0x%01x,", key->ingMd_cpuMemberOfIngressVlan_mask & 0x1);
    to += std::snprintf(to, room, "0x%02x,", key->egrMd_cpuReasonCode);
    to += std::snprintf(to, room, "0x%02x,", key->egrMd_cpuReasonCode_mask);
    return length(stpcpy(to, "),"), buf);
}

u32 ipv4_short_mask_lpm_text(const p4_pd_tessel_switch_ipv4ShortMaskLpm_match_spec_t *key, char *buf)
{
    char *to = stpcpy(buf, "( ");
    to += std::snprintf(to, room, "0x%02x,", key->l3Info_vrfId);
    to += std::snprintf(to, room, "0x%08x,", key->ingIpv4_dip & 0xfff00000);
    to += std::snprintf(to, room, "0x%04x,", key->ingIpv4_dip_prefix_length);
    return length(stpcpy(to, "),"), buf);
}

u32 ipv6_short_mask_lpm_text(const p4_pd_tessel_switch_ipv6ShortMaskLpm_match_spec_t *key, char *buf)
{
    char *to = stpcpy(buf, "( ");
    to += std::snprintf(to, room, "0x%02x,", key->l3Info_vrfId);
    to += put_wide(to, key->ingIpv6_dip);
    to += std::snprintf(to, room, "0x%04x,", key->ingIpv6_dip_prefix_length);
    return length(stpcpy(to, "),"), buf);
}

u32 l2_dmac_classify_text(const p4_pd_tessel_switch_l2DmacClassify_match_spec_t *key, char *buf)
{
    char *to = stpcpy(buf, "( ");
    to += std::snprintf(to, room, "0x%03x,", key->ig_intr_md_ingress_port & 0x7f);
    to += std::snprintf(to, room, "0x%06x,", key->outerEthHdr_dmacOui & 0xffffff);
    to += std::snprintf(to, room, "0x%06x,", key->outerEthHdr_dmacOui_mask & 0xffffff);
    to += std::snprintf(to, room, "0x%06x,", key->outerEthHdr_dmacStation & 0xffffff);
    to += std::snprintf(to, room, "0x%06x,", key->outerEthHdr_dmacStation_mask & 0xffffff);
    return length(stpcpy(to, "),"), buf);
}

u32 pdp_classify_text(const p4_pd_tessel_switch_pdpClassify_match_spec_t *key, char *buf)
{
    char *to = stpcpy(buf, "( ");
    to += std::snprintf(to, room, "0x%01x,", key->tesselCpuHdr_valid & 0x1);
    to += std::snprintf(to, room, "0x%01x,", key->tesselCpuHdr_valid_mask & 0x1);
    to += std::snprintf(to, room, "0x%01x,", key->arpHdr_valid & 0x1);
    to += std::snprintf(to, room, "0x%01x,", key->arpHdr_valid_mask & 0x1);
    to += std::snprintf(to, room, "0x%02x,", key->egrMd_cpuReasonCode);
    to += std::snprintf(to, room, "0x%02x,", key->egrMd_cpuReasonCode_mask);
    to += std::snprintf(to, room, "0x%01x,", key->egrMd_trapToCpu & 0x1);
    to += std::snprintf(to, room, "0x%01x,", key->egrMd_trapToCpu_mask & 0x1);
    to += std::snprintf(to, room, "0x%01x,", key->ingMd_bcast & 0x1);
    to += std::snprintf(to, room, "0x%01x,", key->ingMd_bcast_mask & 0x1);
    to += std::snprintf(to, room, "0x%04x,", key->ingMd_dstPort);
    to += std::snprintf(to, room, "0x%04x,", key->ingMd_dstPort_mask);
    to += std::snprintf(to, room, "0x%02x,", key->ingMd_protocol);
    to += std::snprintf(to, room, "0x%02x,", key->ingMd_protocol_mask);
    to += std::snprintf(to, room, "0x%04x,", key->ingMd_srcPort);
    to += std::snprintf(to, room, "0x%04x,", key->ingMd_srcPort_mask);
    return length(stpcpy(to, "),"), buf);
}

u32 l2_forward_params_set_text(const p4_pd_tessel_switch_l2ForwardParamsSet_action_spec_t *action, char *buf)
{
    char *to = stpcpy(buf, "('l2ForwardParamsSet',(");
    to += std::snprintf(to, room, "0x%05x,", action->action_port & 0xfffff);
    return length(stpcpy(to, ")),"), buf);
}

u32 halo_set_best_result_row1_text(const p4_pd_tessel_switch_haloSetBestResultRow1_action_spec_t *action,
                                   char *buf)
{
    char *to = stpcpy(buf, "('haloSetBestResultRow1',(");
    to += std::snprintf(to, room, "0x%08x,", action->action_res);
    return length(stpcpy(to, ")),"), buf);
}

u32 copy_packet_text(const p4_pd_tessel_switch_copyPacket_action_spec_t *action, char *buf)
{
    char *to = stpcpy(buf, "('copyPacket',(");
    to += std::snprintf(to, room, "0x%02x,", action->action_cpuReasonCode);
    to += std::snprintf(to, room, "0x%01x,", action->action_llm & 0x1);
    return length(stpcpy(to, ")),"), buf);
}

u32 set_next_hop_text(const p4_pd_tessel_switch_setNextHop_action_spec_t *action, char *buf)
{
    char *to = stpcpy(buf, "('setNextHop',(");
    to += std::snprintf(to, room, "0x%08x,", action->action_nextHop);
    return length(stpcpy(to, ")),"), buf);
}

u32 set_ucast_text(char *buf)
{
    return length(stpcpy(buf, "('setUcast',()),"), buf);
}

u32 meter_pdp_class_text(const p4_pd_tessel_switch_meterPdpClass_action_spec_t *action, char *buf)
{
    char *to = stpcpy(buf, "('meterPdpClass',(");
    to += std::snprintf(to, room, "0x%08x,", action->action_pdpClassId);
    return length(stpcpy(to, ")),"), buf);
}

} // namespace hand_written
