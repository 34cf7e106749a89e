#include "hand_written_reads.h"

#include <bit>
#include <cstdlib>
#include <cstring>

#include "bf_sys.h"
#include "pipe_mgr_match.h"

namespace hand_written {

namespace {

constexpr pd_status unreadable = 15;

u16 get16(const u8 *from)
{
    return static_cast<u16>(from[0] << 8 | from[1]);
}

u32 get24(const u8 *from)
{
    return u32{from[0]} << 16 | u32{from[1]} << 8 | from[2];
}

u32 get32(const u8 *from)
{
    return u32{from[0]} << 24 | u32{from[1]} << 16 | u32{from[2]} << 8 | from[3];
}

u16 prefix_length32(const u8 *mask)
{
    const u32 bits = get32(mask);
    return bits == 0 ? u16{0} : static_cast<u16>(32 - std::countr_zero(bits));
}

u16 prefix_length128(const u8 *mask)
{
    for (int word = 3; word >= 0; word--)
        if (const u32 bits = get32(mask + 4 * word))
            return static_cast<u16>(32 * word + 32 - std::countr_zero(bits));
    return 0;
}

// The driver answers into these.
template <u16 key_bytes>
struct Answer {
    u8 value[key_bytes] = {};
    u8 mask[key_bytes] = {};
    u8 data[28] = {};
    pipe_match_spec match = {};
    pipe_action_spec spec = {};
    u32 action = 0;

    explicit Answer(u16 key_bits)
    {
        match.match_value = value;
        match.match_mask = mask;
        match.num_valid_bits = key_bits;
        match.num_bytes = key_bytes;
        spec.action_data.data = data;
        spec.action_data.num_bytes = sizeof data;
    }

    Answer(const Answer &) = delete;

    // A null image or an empty one is how the default entry shows.
    bool has_key() const { return match.match_value != nullptr && match.num_bytes != 0; }
};

// The resources that hang on an entry, for as long as its parameters are read.
class Resources {
public:
    explicit Resources(const pipe_action_spec &spec)
    {
        if (spec.resource_count == 0)
            return;
        list = static_cast<pd_res_ref *>(bf_sys_calloc(spec.resource_count, sizeof(pd_res_ref)));
        u32 count = 0;
        for (u32 i = 0; i < spec.resource_count; i++)
            if (spec.resources[i].res_tag == PIPE_RES_ATTACH)
                list[count++] = {spec.resources[i].res_handle, spec.resources[i].res_index};
    }

    Resources(const Resources &) = delete;

    ~Resources()
    {
        if (list != nullptr)
            bf_sys_free(list);
    }

private:
    pd_res_ref *list = nullptr;
};

[[gnu::cold, gnu::noinline]] pd_status fail(const char *format, const char *function, int line)
{
    if (bf_sys_dbg_mode())
        std::abort();
    bf_sys_log_and_trace(0, 2, format, function, line);
    return unreadable;
}

pd_status unexpected_kind(const char *function, int line)
{
    return fail("ASSERTION FAILED: \"0\" (0) from %s:%d", function, line);
}

pd_status unknown_action(const char *function, int line)
{
    return fail("ASSERTION FAILED: \"((void *)0)\" (NULL) from %s:%d", function, line);
}

void tell_action(u32 action_number, char *name, u32 *number)
{
    if (name != nullptr)
        std::strcpy(name, p4_pd_tessel_switch_action_name_strings[action_number]);
    if (number != nullptr)
        *number = action_number;
}

} // namespace

pd_status get_l2_forward_params(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry, u8 from_hw,
                                p4_pd_tessel_switch_l2ForwardParams_match_spec_t *key, char *name,
                                void *parameters, u32 *number, u8 *is_default)
{
    Answer<1> answer(1);
    pd_status status = pipe_mgr_get_entry(sess, 0x100002a, {dev_id, PIPE_ALL_PIPES}, entry, &answer.match,
                                          &answer.spec, &answer.action, from_hw, 1, 0);
    if (status != 0)
        return status;
    if (answer.spec.action_kind != PIPE_ACTION_DATA)
        return unexpected_kind(__func__, __LINE__);

    const Resources resources(answer.spec);
    switch (answer.action) {
    case 0x2000005e: {
        tell_action(104, name, number);
        auto *to = static_cast<p4_pd_tessel_switch_l2ForwardParamsSet_action_spec_t *>(parameters);
        *to = {};
        to->action_port = get24(answer.spec.action_data.data);
        break;
    }
    default:
        status = unknown_action(__func__, __LINE__);
    }

    *key = {};
    *is_default = !answer.has_key();
    if (answer.has_key())
        key->outerEthHdr_valid = answer.match.match_value[0];
    return status;
}

pd_status get_halo_row1_stage2(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry, u8 from_hw,
                               p4_pd_tessel_switch_haloRow1Stage2_match_spec_t *key, char *name,
                               void *parameters, u32 *number, u8 *is_default)
{
    Answer<14> answer(103);
    pd_status status = pipe_mgr_get_entry(sess, 0x1000037, {dev_id, PIPE_ALL_PIPES}, entry, &answer.match,
                                          &answer.spec, &answer.action, from_hw, 1, 0);
    if (status != 0)
        return status;
    if (answer.spec.action_kind != PIPE_ACTION_DATA)
        return unexpected_kind(__func__, __LINE__);

    const Resources resources(answer.spec);
    switch (answer.action) {
    case 0x20000048: {
        tell_action(125, name, number);
        auto *to = static_cast<p4_pd_tessel_switch_haloSetBestResultRow1_action_spec_t *>(parameters);
        *to = {};
        to->action_res = get32(answer.spec.action_data.data);
        break;
    }
    case 0x20000049:
        tell_action(124, name, number);
        break;
    default:
        status = unknown_action(__func__, __LINE__);
    }

    *key = {};
    *is_default = !answer.has_key();
    if (answer.has_key()) {
        const u8 *value = answer.match.match_value;
        key->haloKeyOrig_crlId = value[0];
        key->haloKeyMaskedRow1_sip = get16(value + 1);
        key->haloKeyMaskedRow1_dip = get16(value + 3);
        key->haloKeyMaskedRow1_srcPort = get16(value + 5);
        key->haloKeyMaskedRow1_dstPort = get16(value + 7);
        key->haloKeyMaskedRow1_proto = value[9];
        key->haloKeyMaskedRow1_dscp = value[10];
        key->haloKeyMaskedRow1_ttl = value[11];
        key->haloKeyMaskedRow1_flags = value[12];
        key->haloKeyMaskedRow1_isFrag = value[13];
    }
    return status;
}

pd_status get_trap_to_cpu(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry, u8 from_hw,
                          p4_pd_tessel_switch_trapToCpu_match_spec_t *key, u32 *priority, char *name,
                          void *parameters, u32 *number, u8 *is_default)
{
    Answer<44> answer(287);
    pd_status status = pipe_mgr_get_entry(sess, 0x1000040, {dev_id, PIPE_ALL_PIPES}, entry, &answer.match,
                                          &answer.spec, &answer.action, from_hw, 1, 0);
    if (status != 0)
        return status;
    if (answer.spec.action_kind != PIPE_ACTION_DATA)
        return unexpected_kind(__func__, __LINE__);

    const Resources resources(answer.spec);
    switch (answer.action) {
    case 0x200000d0:
        tell_action(3, name, number);
        break;
    case 0x200000cd: {
        tell_action(151, name, number);
        auto *to = static_cast<p4_pd_tessel_switch_copyPacket_action_spec_t *>(parameters);
        *to = {};
        to->action_cpuReasonCode = answer.spec.action_data.data[0];
        to->action_llm = answer.spec.action_data.data[1];
        break;
    }
    case 0x200000cf:
        tell_action(44, name, number);
        break;
    case 0x200000ce:
        tell_action(152, name, number);
        break;
    case 0x200000cc: {
        tell_action(150, name, number);
        auto *to = static_cast<p4_pd_tessel_switch_trapPacket_action_spec_t *>(parameters);
        *to = {};
        to->action_cpuReasonCode = answer.spec.action_data.data[0];
        break;
    }
    default:
        status = unknown_action(__func__, __LINE__);
    }

    *key = {};
    *is_default = !answer.has_key();
    *priority = answer.match.priority;
    if (answer.has_key()) {
        const u8 *value = answer.match.match_value;
        key->ingMd_etherType = get16(value);
        key->ingMd_bcast = value[2];
        key->ingMd_mcast = value[3];
        key->ingMd_l4Attr = value[4];
        key->ingMd_srcPort = get16(value + 5);
        key->ingMd_dstPort = get16(value + 7);
        key->phase0_ingVPort = get16(value + 9);
        key->ingMd_ingL3Aintf = get16(value + 11);
        key->l3Info_ingL3DmacValid = value[13];
        key->ingMd_ttl = value[14];
        key->arpHdr_valid = value[15];
        key->arpHdr_opcode = get16(value + 16);
        key->ingMd_igmpSnoopingEnabled = value[18];
        key->ingIpv4_dip = get32(value + 19);
        key->ingMd_protocol = value[23];
        key->egrMd_vxlanFlood = value[24];
        key->egrMd_decapType = value[25];
        std::memcpy(key->ingIpv6_dip, value + 26, 16);
        key->ingMd_cpuMemberOfIngressVlan = value[42];
        key->egrMd_cpuReasonCode = value[43];

        const u8 *mask = answer.match.match_mask;
        key->ingMd_etherType_mask = get16(mask);
        key->ingMd_bcast_mask = mask[2];
        key->ingMd_mcast_mask = mask[3];
        key->ingMd_l4Attr_mask = mask[4];
        key->ingMd_srcPort_mask = get16(mask + 5);
        key->ingMd_dstPort_mask = get16(mask + 7);
        key->phase0_ingVPort_mask = get16(mask + 9);
        key->ingMd_ingL3Aintf_mask = get16(mask + 11);
        key->l3Info_ingL3DmacValid_mask = mask[13];
        key->ingMd_ttl_mask = mask[14];
        key->arpHdr_valid_mask = mask[15];
        key->arpHdr_opcode_mask = get16(mask + 16);
        key->ingMd_igmpSnoopingEnabled_mask = mask[18];
        key->ingIpv4_dip_mask = get32(mask + 19);
        key->ingMd_protocol_mask = mask[23];
        key->egrMd_vxlanFlood_mask = mask[24];
        key->egrMd_decapType_mask = mask[25];
        std::memcpy(key->ingIpv6_dip_mask, mask + 26, 16);
        key->ingMd_cpuMemberOfIngressVlan_mask = mask[42];
        key->egrMd_cpuReasonCode_mask = mask[43];
    }
    return status;
}

pd_status get_ipv4_short_mask_lpm(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry, u8 from_hw,
                                  p4_pd_tessel_switch_ipv4ShortMaskLpm_match_spec_t *key, char *name,
                                  void *parameters, u32 *number, u8 *is_default)
{
    Answer<5> answer(40);
    pd_status status = pipe_mgr_get_entry(sess, 0x100003d, {dev_id, PIPE_ALL_PIPES}, entry, &answer.match,
                                          &answer.spec, &answer.action, from_hw, 1, 0);
    if (status != 0)
        return status;
    if (answer.spec.action_kind != PIPE_ACTION_DATA)
        return unexpected_kind(__func__, __LINE__);

    const Resources resources(answer.spec);
    switch (answer.action) {
    case 0x200000b1:
        tell_action(147, name, number);
        break;
    case 0x200000ad: {
        tell_action(73, name, number);
        auto *to = static_cast<p4_pd_tessel_switch_setEcmp_action_spec_t *>(parameters);
        *to = {};
        to->action_ecmpGroup = get32(answer.spec.action_data.data);
        break;
    }
    case 0x200000ae: {
        tell_action(74, name, number);
        auto *to = static_cast<p4_pd_tessel_switch_setNextHop_action_spec_t *>(parameters);
        *to = {};
        to->action_nextHop = get32(answer.spec.action_data.data);
        break;
    }
    case 0x200000af: {
        tell_action(75, name, number);
        auto *to = static_cast<p4_pd_tessel_switch_setNextHop2_action_spec_t *>(parameters);
        *to = {};
        to->action_nextHop = get32(answer.spec.action_data.data);
        break;
    }
    case 0x200000b0: {
        tell_action(76, name, number);
        auto *to = static_cast<p4_pd_tessel_switch_setNextHop3_action_spec_t *>(parameters);
        *to = {};
        to->action_nextHop = get32(answer.spec.action_data.data);
        break;
    }
    default:
        status = unknown_action(__func__, __LINE__);
    }

    *key = {};
    *is_default = !answer.has_key();
    if (answer.has_key()) {
        key->l3Info_vrfId = answer.match.match_value[0];
        key->ingIpv4_dip = get32(answer.match.match_value + 1);
        key->ingIpv4_dip_prefix_length = prefix_length32(answer.match.match_mask + 1);
    }
    return status;
}

pd_status get_ipv6_short_mask_lpm(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry, u8 from_hw,
                                  p4_pd_tessel_switch_ipv6ShortMaskLpm_match_spec_t *key, char *name,
                                  void *parameters, u32 *number, u8 *is_default)
{
    Answer<17> answer(136);
    pd_status status = pipe_mgr_get_entry(sess, 0x1000021, {dev_id, PIPE_ALL_PIPES}, entry, &answer.match,
                                          &answer.spec, &answer.action, from_hw, 1, 0);
    if (status != 0)
        return status;
    if (answer.spec.action_kind != PIPE_ACTION_DATA)
        return unexpected_kind(__func__, __LINE__);

    const Resources resources(answer.spec);
    switch (answer.action) {
    case 0x2000005f: {
        tell_action(73, name, number);
        auto *to = static_cast<p4_pd_tessel_switch_setEcmp_action_spec_t *>(parameters);
        *to = {};
        to->action_ecmpGroup = get32(answer.spec.action_data.data);
        break;
    }
    case 0x20000063:
        tell_action(72, name, number);
        break;
    case 0x20000060: {
        tell_action(74, name, number);
        auto *to = static_cast<p4_pd_tessel_switch_setNextHop_action_spec_t *>(parameters);
        *to = {};
        to->action_nextHop = get32(answer.spec.action_data.data);
        break;
    }
    case 0x20000061: {
        tell_action(75, name, number);
        auto *to = static_cast<p4_pd_tessel_switch_setNextHop2_action_spec_t *>(parameters);
        *to = {};
        to->action_nextHop = get32(answer.spec.action_data.data);
        break;
    }
    case 0x20000062: {
        tell_action(76, name, number);
        auto *to = static_cast<p4_pd_tessel_switch_setNextHop3_action_spec_t *>(parameters);
        *to = {};
        to->action_nextHop = get32(answer.spec.action_data.data);
        break;
    }
    default:
        status = unknown_action(__func__, __LINE__);
    }

    *key = {};
    *is_default = !answer.has_key();
    if (answer.has_key()) {
        key->l3Info_vrfId = answer.match.match_value[0];
        std::memcpy(key->ingIpv6_dip, answer.match.match_value + 1, 16);
        key->ingIpv6_dip_prefix_length = prefix_length128(answer.match.match_mask + 1);
    }
    return status;
}

pd_status get_l2_dmac_classify(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry, u8 from_hw,
                               p4_pd_tessel_switch_l2DmacClassify_match_spec_t *key, u32 *priority,
                               char *name, void *parameters, u32 *number, u8 *is_default)
{
    Answer<8> answer(57);
    pd_status status = pipe_mgr_get_entry(sess, 0x1000009, {dev_id, PIPE_ALL_PIPES}, entry, &answer.match,
                                          &answer.spec, &answer.action, from_hw, 1, 0);
    if (status != 0)
        return status;
    if (answer.spec.action_kind != PIPE_ACTION_DATA)
        return unexpected_kind(__func__, __LINE__);

    const Resources resources(answer.spec);
    switch (answer.action) {
    case 0x2000000a: {
        tell_action(25, name, number);
        auto *to = static_cast<p4_pd_tessel_switch_classifyL2ControlFrame_action_spec_t *>(parameters);
        *to = {};
        to->action_cpuReasonCode = answer.spec.action_data.data[0];
        to->action_highPriority = answer.spec.action_data.data[1];
        break;
    }
    case 0x2000000b:
        tell_action(13, name, number);
        break;
    case 0x20000007:
        tell_action(23, name, number);
        break;
    case 0x20000005:
        tell_action(21, name, number);
        break;
    case 0x20000009:
        tell_action(24, name, number);
        break;
    case 0x20000004: {
        tell_action(20, name, number);
        auto *to = static_cast<p4_pd_tessel_switch_setL2ControlFrame_action_spec_t *>(parameters);
        *to = {};
        to->action_cpuReasonCode = answer.spec.action_data.data[0];
        to->action_highPriority = answer.spec.action_data.data[1];
        break;
    }
    case 0x20000006:
        tell_action(22, name, number);
        break;
    case 0x20000008:
        tell_action(19, name, number);
        break;
    default:
        status = unknown_action(__func__, __LINE__);
    }

    *key = {};
    *is_default = !answer.has_key();
    *priority = answer.match.priority;
    if (answer.has_key()) {
        const u8 *value = answer.match.match_value;
        const u8 *mask = answer.match.match_mask;
        key->ig_intr_md_ingress_port = get16(value);
        key->outerEthHdr_dmacOui = get24(value + 2);
        key->outerEthHdr_dmacStation = get24(value + 5);
        key->outerEthHdr_dmacOui_mask = get24(mask + 2);
        key->outerEthHdr_dmacStation_mask = get24(mask + 5);
    }
    return status;
}

pd_status get_pdp_classify(pd_sess_hdl sess, u32 dev_id, pd_entry_hdl entry, u8 from_hw,
                           p4_pd_tessel_switch_pdpClassify_match_spec_t *key, u32 *priority, char *name,
                           void *parameters, u32 *number, u8 *is_default)
{
    Answer<10> answer(52);
    pd_status status = pipe_mgr_get_entry(sess, 0x100006a, {dev_id, PIPE_ALL_PIPES}, entry, &answer.match,
                                          &answer.spec, &answer.action, from_hw, 1, 0);
    if (status != 0)
        return status;
    if (answer.spec.action_kind != PIPE_ACTION_DATA)
        return unexpected_kind(__func__, __LINE__);

    const Resources resources(answer.spec);
    switch (answer.action) {
    case 0x20000118: {
        tell_action(243, name, number);
        auto *to = static_cast<p4_pd_tessel_switch_meterPdpClass_action_spec_t *>(parameters);
        *to = {};
        to->action_pdpClassId = get32(answer.spec.action_data.data);
        break;
    }
    case 0x20000117: {
        tell_action(242, name, number);
        auto *to = static_cast<p4_pd_tessel_switch_setPdpClass_action_spec_t *>(parameters);
        *to = {};
        to->action_pdpClassId = answer.spec.action_data.data[0];
        break;
    }
    default:
        status = unknown_action(__func__, __LINE__);
    }

    *key = {};
    *is_default = !answer.has_key();
    *priority = answer.match.priority;
    if (answer.has_key()) {
        const u8 *value = answer.match.match_value;
        key->arpHdr_valid = value[0];
        key->tesselCpuHdr_valid = value[1];
        key->egrMd_cpuReasonCode = value[2];
        key->egrMd_trapToCpu = value[3];
        key->ingMd_bcast = value[4];
        key->ingMd_protocol = value[5];
        key->ingMd_srcPort = get16(value + 6);
        key->ingMd_dstPort = get16(value + 8);

        const u8 *mask = answer.match.match_mask;
        key->arpHdr_valid_mask = mask[0];
        key->tesselCpuHdr_valid_mask = mask[1];
        key->egrMd_cpuReasonCode_mask = mask[2];
        key->egrMd_trapToCpu_mask = mask[3];
        key->ingMd_bcast_mask = mask[4];
        key->ingMd_protocol_mask = mask[5];
        key->ingMd_srcPort_mask = get16(mask + 6);
        key->ingMd_dstPort_mask = get16(mask + 8);
    }
    return status;
}

} // namespace hand_written
