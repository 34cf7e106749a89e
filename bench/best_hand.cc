// SSE2 alone, one byte swap a word, no string instructions, no loops at run time, no branch but for prefixes.
#include "best_hand.h"

#include <emmintrin.h>

#include <cstring>

#include "pipe_mgr_match.h"

namespace best_hand {

namespace {

inline void put16(u8 *to, u32 value)
{
    const u16 swapped = __builtin_bswap16(static_cast<u16>(value));
    std::memcpy(to, &swapped, sizeof swapped);
}

inline void put24(u8 *to, u32 value)
{
    to[0] = static_cast<u8>(value >> 16);
    put16(to + 1, value);
}

inline void put32(u8 *to, u32 value)
{
    const u32 swapped = __builtin_bswap32(value);
    std::memcpy(to, &swapped, sizeof swapped);
}

inline __m128i get128(const u8 *from)
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i *>(from));
}

inline void put128(u8 *to, __m128i value)
{
    _mm_storeu_si128(reinterpret_cast<__m128i *>(to), value);
}

// A ternary field: its value is masked by the caller's mask, its mask clipped to the width.
inline void put_ternary8(u8 *value, u8 *mask, u8 field, u8 field_mask, u8 clip = 0xff)
{
    *value = field & field_mask;
    *mask = field_mask & clip;
}

inline void put_ternary16(u8 *value, u8 *mask, u16 field, u16 field_mask, u16 clip = 0xffff)
{
    put16(value, field & field_mask);
    put16(mask, field_mask & clip);
}

// What an entry does, zeroed by 16 bytes; the last store overlaps the one before it.
struct alignas(16) Action {
    pipe_action_spec spec;

    [[gnu::always_inline]] Action(u8 *data, u16 bytes, u16 bits)
    {
        u8 *to = reinterpret_cast<u8 *>(&spec);
#pragma GCC unroll 32
        for (std::size_t at = 0; at + 16 < sizeof spec; at += 16)
            put128(to + at, _mm_setzero_si128());
        put128(to + sizeof spec - 16, _mm_setzero_si128());
        spec.action_kind = PIPE_ACTION_DATA;
        spec.action_data.num_valid_bits = bits;
        spec.action_data.num_bytes = bytes;
        spec.action_data.data = data;
    }

    [[gnu::always_inline]] void attach(u32 handle, u32 index)
    {
        spec.resource_count = 1;
        spec.resources[0].res_handle = handle;
        spec.resources[0].res_index = index;
        spec.resources[0].res_tag = PIPE_RES_ATTACH;
    }
};

} // namespace

pd_status add_l2_forward_params(pd_sess_hdl sess, pd_dev_target target,
                                const p4_pd_tessel_switch_l2ForwardParams_match_spec_t *key,
                                const p4_pd_tessel_switch_l2ForwardParamsSet_action_spec_t *parameters,
                                pd_entry_hdl *entry)
{
    u8 value[1] = {key->outerEthHdr_valid}, mask[1] = {0xff}, data[3];
    pipe_match_spec match{value, mask, 0, 0, 1, sizeof value, 0};
    put24(data, parameters->action_port);
    Action action(data, sizeof data, 20);
    return pipe_mgr_mat_ent_add(sess, target, 0x100002a, &match, 0x2000005e, &action.spec, 0, 0, entry);
}

pd_status add_halo_row1_stage2(pd_sess_hdl sess, pd_dev_target target,
                               const p4_pd_tessel_switch_haloRow1Stage2_match_spec_t *key,
                               const p4_pd_tessel_switch_haloSetBestResultRow1_action_spec_t *parameters,
                               pd_entry_hdl *entry)
{
    u8 value[14], mask[14], data[4];
    value[0] = key->haloKeyOrig_crlId;
    put16(value + 1, key->haloKeyMaskedRow1_sip);
    put16(value + 3, key->haloKeyMaskedRow1_dip);
    put16(value + 5, key->haloKeyMaskedRow1_srcPort);
    put16(value + 7, key->haloKeyMaskedRow1_dstPort);
    std::memcpy(value + 9, &key->haloKeyMaskedRow1_proto,
                5); // five bytes that follow each other on both sides
    std::memset(mask, 0xff, sizeof mask);
    pipe_match_spec match{value, mask, 0, 0, 103, sizeof value, 0};
    put32(data, parameters->action_res);
    Action action(data, sizeof data, 32);
    return pipe_mgr_mat_ent_add(sess, target, 0x1000037, &match, 0x20000048, &action.spec, 0, 0, entry);
}

pd_status add_trap_to_cpu(pd_sess_hdl sess, pd_dev_target target,
                          const p4_pd_tessel_switch_trapToCpu_match_spec_t *key, u32 priority,
                          const p4_pd_tessel_switch_copyPacket_action_spec_t *parameters, pd_entry_hdl *entry)
{
    u8 value[44], mask[44];
    u8 data[2] = {parameters->action_cpuReasonCode, parameters->action_llm};
    put_ternary16(value, mask, key->ingMd_etherType, key->ingMd_etherType_mask);
    put_ternary8(value + 2, mask + 2, key->ingMd_bcast, key->ingMd_bcast_mask, 0x01);
    put_ternary8(value + 3, mask + 3, key->ingMd_mcast, key->ingMd_mcast_mask, 0x01);
    put_ternary8(value + 4, mask + 4, key->ingMd_l4Attr, key->ingMd_l4Attr_mask, 0x07);
    put_ternary16(value + 5, mask + 5, key->ingMd_srcPort, key->ingMd_srcPort_mask);
    put_ternary16(value + 7, mask + 7, key->ingMd_dstPort, key->ingMd_dstPort_mask);
    put_ternary16(value + 9, mask + 9, key->phase0_ingVPort, key->phase0_ingVPort_mask, 0x3fff);
    put_ternary16(value + 11, mask + 11, key->ingMd_ingL3Aintf, key->ingMd_ingL3Aintf_mask, 0x0fff);
    put_ternary8(value + 13, mask + 13, key->l3Info_ingL3DmacValid, key->l3Info_ingL3DmacValid_mask, 0x01);
    put_ternary8(value + 14, mask + 14, key->ingMd_ttl, key->ingMd_ttl_mask);
    put_ternary8(value + 15, mask + 15, key->arpHdr_valid, key->arpHdr_valid_mask, 0x01);
    put_ternary16(value + 16, mask + 16, key->arpHdr_opcode, key->arpHdr_opcode_mask);
    put_ternary8(value + 18, mask + 18, key->ingMd_igmpSnoopingEnabled, key->ingMd_igmpSnoopingEnabled_mask,
                 0x01);
    put32(value + 19, key->ingIpv4_dip & key->ingIpv4_dip_mask);
    put32(mask + 19, key->ingIpv4_dip_mask);
    put_ternary8(value + 23, mask + 23, key->ingMd_protocol, key->ingMd_protocol_mask);
    put_ternary8(value + 24, mask + 24, key->egrMd_vxlanFlood, key->egrMd_vxlanFlood_mask, 0x01);
    put_ternary8(value + 25, mask + 25, key->egrMd_decapType, key->egrMd_decapType_mask, 0x07);
    const __m128i bits = get128(key->ingIpv6_dip_mask);
    put128(value + 26, _mm_and_si128(get128(key->ingIpv6_dip), bits));
    put128(mask + 26, bits);
    put_ternary8(value + 42, mask + 42, key->ingMd_cpuMemberOfIngressVlan,
                 key->ingMd_cpuMemberOfIngressVlan_mask, 0x01);
    put_ternary8(value + 43, mask + 43, key->egrMd_cpuReasonCode, key->egrMd_cpuReasonCode_mask);
    pipe_match_spec match{value, mask, 0, priority, 287, sizeof value, 0};
    Action action(data, sizeof data, 9);
    action.attach(0x4000003, 0);
    return pipe_mgr_mat_ent_add(sess, target, 0x1000040, &match, 0x200000cd, &action.spec, 0, 0, entry);
}

pd_status add_ipv4_short_mask_lpm(pd_sess_hdl sess, pd_dev_target target,
                                  const p4_pd_tessel_switch_ipv4ShortMaskLpm_match_spec_t *key,
                                  const p4_pd_tessel_switch_setNextHop_action_spec_t *parameters,
                                  pd_entry_hdl *entry)
{
    const u32 length = key->ingIpv4_dip_prefix_length;
    const u32 bits = length > 32 ? ~u32{0} : static_cast<u32>(~u64{0} << (32 - length));
    u8 value[5], mask[5], data[4];
    value[0] = key->l3Info_vrfId;
    mask[0] = 0xff;
    put32(value + 1, key->ingIpv4_dip & bits);
    put32(mask + 1, bits);
    pipe_match_spec match{value, mask, 0, length > 32 ? 41 : 32 - length, 40, sizeof value, 0};
    put32(data, parameters->action_nextHop);
    Action action(data, sizeof data, 32);
    return pipe_mgr_mat_ent_add(sess, target, 0x100003d, &match, 0x200000ae, &action.spec, 0, 0, entry);
}

pd_status add_ipv6_short_mask_lpm(pd_sess_hdl sess, pd_dev_target target,
                                  const p4_pd_tessel_switch_ipv6ShortMaskLpm_match_spec_t *key,
                                  const p4_pd_tessel_switch_setNextHop_action_spec_t *parameters,
                                  pd_entry_hdl *entry)
{
    // From 16 bytes of ones that 16 of zero follow, and the byte between them.
    static constexpr u8 whole_bytes[32] = {0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff,
                                           0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff};
    const u32 length = key->ingIpv6_dip_prefix_length;
    u8 value[17], mask[17], data[4];
    value[0] = key->l3Info_vrfId;
    mask[0] = 0xff;
    __m128i bits = _mm_set1_epi8(-1);
    if (length <= 128) {
        const __m128i place =
            _mm_sub_epi8(_mm_set1_epi8(static_cast<char>(length / 8)),
                         _mm_setr_epi8(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15));
        const __m128i edge = _mm_cmpeq_epi8(place, _mm_setzero_si128());
        const __m128i part = _mm_set1_epi8(static_cast<char>(0xff00 >> length % 8));
        bits = _mm_or_si128(get128(whole_bytes + 16 - length / 8), _mm_and_si128(edge, part));
    }
    put128(value + 1, _mm_and_si128(get128(key->ingIpv6_dip), bits));
    put128(mask + 1, bits);
    pipe_match_spec match{value, mask, 0, length > 128 ? 137 : 128 - length, 136, sizeof value, 0};
    put32(data, parameters->action_nextHop);
    Action action(data, sizeof data, 32);
    return pipe_mgr_mat_ent_add(sess, target, 0x1000021, &match, 0x20000060, &action.spec, 0, 0, entry);
}

pd_status add_l2_dmac_classify(pd_sess_hdl sess, pd_dev_target target,
                               const p4_pd_tessel_switch_l2DmacClassify_match_spec_t *key, u32 priority,
                               pd_entry_hdl *entry)
{
    u8 value[8], mask[8], data[1];
    put16(value, key->ig_intr_md_ingress_port);
    put16(mask, 0x01ff);
    put24(value + 2, key->outerEthHdr_dmacOui & key->outerEthHdr_dmacOui_mask);
    put24(mask + 2, key->outerEthHdr_dmacOui_mask);
    put24(value + 5, key->outerEthHdr_dmacStation & key->outerEthHdr_dmacStation_mask);
    put24(mask + 5, key->outerEthHdr_dmacStation_mask);
    pipe_match_spec match{value, mask, 0, priority, 57, sizeof value, 0};
    Action action(data, 0, 0);
    action.attach(0x4000001, 0);
    return pipe_mgr_mat_ent_add(sess, target, 0x1000009, &match, 0x20000008, &action.spec, 0, 0, entry);
}

pd_status add_pdp_classify(pd_sess_hdl sess, pd_dev_target target,
                           const p4_pd_tessel_switch_pdpClassify_match_spec_t *key, u32 priority,
                           const p4_pd_tessel_switch_meterPdpClass_action_spec_t *parameters,
                           pd_entry_hdl *entry)
{
    u8 value[10], mask[10], data[4];
    put_ternary8(value, mask, key->arpHdr_valid, key->arpHdr_valid_mask, 0x01);
    put_ternary8(value + 1, mask + 1, key->tesselCpuHdr_valid, key->tesselCpuHdr_valid_mask, 0x01);
    put_ternary8(value + 2, mask + 2, key->egrMd_cpuReasonCode, key->egrMd_cpuReasonCode_mask);
    put_ternary8(value + 3, mask + 3, key->egrMd_trapToCpu, key->egrMd_trapToCpu_mask, 0x01);
    put_ternary8(value + 4, mask + 4, key->ingMd_bcast, key->ingMd_bcast_mask, 0x01);
    put_ternary8(value + 5, mask + 5, key->ingMd_protocol, key->ingMd_protocol_mask);
    put_ternary16(value + 6, mask + 6, key->ingMd_srcPort, key->ingMd_srcPort_mask);
    put_ternary16(value + 8, mask + 8, key->ingMd_dstPort, key->ingMd_dstPort_mask);
    pipe_match_spec match{value, mask, 0, priority, 52, sizeof value, 0};
    put32(data, parameters->action_pdpClassId);
    Action action(data, sizeof data, 32);
    action.attach(0x5000002, parameters->action_pdpClassId & 0xffff);
    return pipe_mgr_mat_ent_add(sess, target, 0x100006a, &match, 0x20000118, &action.spec, 0, 0, entry);
}

} // namespace best_hand
