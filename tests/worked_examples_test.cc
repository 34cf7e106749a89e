// One example with literal bytes for each rule of images and records, through the exported functions by name.
// Records are initialised by member, so the order of their members is pinned as well.
#include <gtest/gtest.h>

#include "capture_driver.h"
#include "capture_services.h"
#include "pd.h"

#define PD(name) p4_pd_tessel_switch_##name

namespace {

constexpr pd_sess_hdl sess = 0x51;
constexpr pd_dev_target target{3, 0xffff};
constexpr u32 device = 3;

class WorkedExamples : public testing::Test {
protected:
    pd_entry_hdl entry = 0;

    void SetUp() override
    {
        services::reset();
        capture::reset();
    }

    static void expect_match(const char *value, const char *mask, u32 packed, u32 priority, u32 partition = 0)
    {
        EXPECT_EQ(hex(capture::last.value), value);
        EXPECT_EQ(hex(capture::last.mask), mask);
        EXPECT_EQ(capture::last.packed, packed);
        EXPECT_EQ(capture::last.priority, priority);
        EXPECT_EQ(capture::last.partition_index, partition);
    }

    static void expect_data(const char *data, u32 packed)
    {
        const pipe_action_spec spec = capture::spec_of(capture::last);
        EXPECT_EQ(hex(capture::last.data), data);
        EXPECT_FALSE(capture::last.data_is_null);
        EXPECT_EQ(spec.action_kind, 1);
        EXPECT_EQ(u32{spec.action_data.num_bytes} << 16 | spec.action_data.num_valid_bits, packed);
    }

    static void expect_resource(u32 handle, u32 index, u32 tag)
    {
        const pipe_action_spec spec = capture::spec_of(capture::last);
        EXPECT_EQ(spec.resource_count, 1);
        EXPECT_EQ(spec.resources[0].res_handle, handle);
        EXPECT_EQ(spec.resources[0].res_index, index);
        EXPECT_EQ(spec.resources[0].res_tag, tag);
    }
};

// ---- Calls ----------------------------------------------------------------------------------------------

TEST_F(WorkedExamples, PortMappingThroughAllSixFamilies)
{
    const PD(ingressPortMapping_match_spec_t) key{.ig_intr_md_ingress_port = 0x123};
    const PD(setPhase0_action_spec_t) action{.action_ingVPort = 0xfabc,
                                             .action_nativeAintf = 0x1234,
                                             .action_switchPort = 0xff,
                                             .action_physicalPort = 2};
    capture::entry = 0x1234567;
    EXPECT_EQ(PD(ingressPortMapping_table_add_with_setPhase0)(sess, target, &key, &action, &entry), 0u);
    EXPECT_EQ(entry, 0x1234567u);
    EXPECT_EQ(capture::last.operation, "pipe_mgr_mat_ent_add");
    EXPECT_EQ(capture::last.table, 0x1000001u);
    EXPECT_EQ(capture::last.action, 0x20000000u);
    EXPECT_EQ(capture::last.device_id, 3u);
    EXPECT_EQ(capture::last.pipe_id, 0xffffu);
    expect_match("01 23", "ff ff", 0x20009, 0);
    expect_data("fa bc 12 34 ff 02", 0x60021);
    EXPECT_EQ(capture::spec_of(capture::last).resource_count, 0);

    PD(ingressPortMapping_table_modify_with_setPhase0)(sess, device, 0xabcdef01, &action);
    EXPECT_EQ(capture::last.operation, "pipe_mgr_mat_ent_set_action");
    EXPECT_EQ(capture::last.entry, 0xabcdef01u);
    expect_data("fa bc 12 34 ff 02", 0x60021);

    PD(ingressPortMapping_table_modify_with_setPhase0_by_match_spec)(sess, target, &key, &action);
    EXPECT_EQ(capture::last.operation, "pipe_mgr_mat_ent_set_action_by_match_spec");
    expect_match("01 23", "ff ff", 0x20009, 0);
    expect_data("fa bc 12 34 ff 02", 0x60021);

    PD(ingressPortMapping_table_delete)(sess, device, 0xabcdef01);
    EXPECT_EQ(capture::last.operation, "pipe_mgr_mat_ent_del");
    EXPECT_EQ(capture::last.entry, 0xabcdef01u);

    const PD(ingressPortMapping_match_spec_t) all_ones{.ig_intr_md_ingress_port = 0xffff};
    PD(ingressPortMapping_table_delete_by_match_spec)(sess, target, &all_ones);
    EXPECT_EQ(capture::last.operation, "pipe_mgr_mat_ent_del_by_match_spec");
    expect_match("ff ff", "ff ff", 0x20009, 0);

    PD(ingressPortMapping_match_spec_to_entry_hdl)(sess, target, &key, nullptr);
    EXPECT_EQ(capture::last.operation, "pipe_mgr_match_spec_to_ent_hdl");
    EXPECT_EQ(capture::last.result, nullptr);
    EXPECT_EQ(capture::calls, 6u);
}

TEST_F(WorkedExamples, TimeToLiveOfLearnedStations)
{
    const PD(l2LearningLookup_match_spec_t) key{.ingMd_smacOui = 0xff0180c2,
                                                .ingMd_smacStation = 0x000003,
                                                .ingMd_ingL2Domain = 0xf123,
                                                .ingMd_ingL2Aintf = 0xaafabcde};
    PD(l2LearningLookup_table_add_with_noOp)(sess, target, &key, 30000, &entry);
    EXPECT_EQ(capture::last.ttl, 30000u);
    // Three bytes of 24 and of 20 bits; nothing is clipped in an exact key.
    expect_match("01 80 c2 00 00 03 f1 23 fa bc de", "ff ff ff ff ff ff ff ff ff ff ff", 0xb0050, 0);
    expect_data("", 0);
    PD(l2LearningLookup_table_add_with_setL2LearningLookupMiss)(sess, target, &key, 0xffffffff, &entry);
    EXPECT_EQ(capture::last.ttl, 0xffffffffu);
}

// ---- Keys -----------------------------------------------------------------------------------------------

TEST_F(WorkedExamples, ExactKeysAreNotClipped)
{
    const PD(ptpIngress_match_spec_t) key{.ig_intr_md_ingress_port = 0x3ff, .ptpHdr_messageType = 0xff};
    PD(ptpIngress_match_spec_to_entry_hdl)(sess, target, &key, &entry);
    expect_match("03 ff ff", "ff ff ff", 0x3000d, 0);
}

TEST_F(WorkedExamples, TernaryKeyClipsMasksAfterMaskingValues)
{
    // The port has no mask of its own: clipped, but not masked.
    PD(l2DmacClassify_match_spec_t)
    key{.ig_intr_md_ingress_port = 0x101,
        .outerEthHdr_dmacOui = 0x0180c2,
        .outerEthHdr_dmacOui_mask = 0xffffff,
        .outerEthHdr_dmacStation = 0x000003,
        .outerEthHdr_dmacStation_mask = 0xfffff0};
    PD(l2DmacClassify_table_add_with_setUcast)(sess, target, &key, 0xfffffffe, &entry);
    expect_match("01 01 01 80 c2 00 00 00", "01 ff ff ff ff ff ff f0", 0x80039, 0xfffffffe);
    EXPECT_EQ(capture::last.table, 0x1000009u);
    expect_data("", 0);
    expect_resource(0x4000001, 0, 1);

    // A key is the same however it reaches the driver.
    const capture::Image value = capture::last.value, mask = capture::last.mask;
    PD(l2DmacClassify_table_delete_by_match_spec)(sess, target, &key, 0xfffffffe);
    EXPECT_EQ(capture::last.value, value);
    EXPECT_EQ(capture::last.mask, mask);
    EXPECT_EQ(capture::last.priority, 0xfffffffeu);

    key.ig_intr_md_ingress_port = 0xffff;
    key.outerEthHdr_dmacOui_mask = key.outerEthHdr_dmacStation_mask = 0;
    PD(l2DmacClassify_match_spec_to_entry_hdl)(sess, target, &key, 0, &entry);
    expect_match("ff ff 00 00 00 00 00 00", "01 ff 00 00 00 00 00 00", 0x80039, 0);
}

TEST_F(WorkedExamples, TernaryNineBits)
{
    const PD(l2LookupMiss_match_spec_t) key{.egrMd_dmacOui = 0x010203,
                                            .egrMd_dmacOui_mask = 0xff00ff,
                                            .egrMd_dmacStation = 0x040506,
                                            .egrMd_dmacStation_mask = 0x00ff00,
                                            .ig_intr_md_ingress_port = 0x3ff,
                                            .ig_intr_md_ingress_port_mask = 0x3ff};
    PD(l2LookupMiss_match_spec_to_entry_hdl)(sess, target, &key, 1, &entry);
    expect_match("03 ff 01 00 03 00 05 00", "01 ff ff 00 ff 00 ff 00", 0x80039, 1);
}

TEST_F(WorkedExamples, TernaryOneTwoThreeAndTwentyBits)
{
    const PD(mcastPrune_match_spec_t) key{.egrMd_decapType = 0xff,
                                          .egrMd_decapType_mask = 0x0f,
                                          .egrMd_egrL2AintfUnresolved = 0xaaabcdef,
                                          .egrMd_egrL2AintfUnresolved_mask = 0xffffff0f,
                                          .egrMd_routed = 0xff,
                                          .egrMd_routed_mask = 0xff,
                                          .ig_intr_md_for_tm_mcast_grp_a = 0x1234,
                                          .ig_intr_md_for_tm_mcast_grp_a_mask = 0xf000,
                                          .natFlow_eValid = 1,
                                          .natFlow_eValid_mask = 0,
                                          .phase0_portType = 0xff,
                                          .phase0_portType_mask = 0xfe};
    PD(mcastPrune_match_spec_to_entry_hdl)(sess, target, &key, 7, &entry);
    expect_match("0f ff fe ab cd 0f 00 10 00", "07 01 02 0f ff 0f 00 f0 00", 0x9002b, 7);
}

TEST_F(WorkedExamples, TunnelTerminationTakesItsImageOrderFromTheKey)
{
    const PD(tunnelTermination_match_spec_t)
        key{.ingMd_tunnelType = 0x0d,
            .ingMd_tunnelType_mask = 0xff,
            .outerEthHdr_dmacOui = 0x0a0b0c,
            .outerEthHdr_dmacOui_mask = 0xffffff,
            .outerEthHdr_dmacStation = 0x0d0e0f,
            .outerEthHdr_dmacStation_mask = 0xffffff,
            .outerIpv4Hdr_dip = 0xc0a80164,
            .outerIpv4Hdr_dip_mask = 0xffffff00,
            .outerIpv6Hdr_valid = 0xff,
            .outerIpv6Hdr_dip = {0x20, 1, 0xd, 0xb8, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15},
            .outerIpv6Hdr_dip_mask = {0xff, 0xff, 0xff, 0xff, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x0f}};
    PD(tunnelTermination_table_add_with_setTunnelTerminationTypeIpIp)(sess, target, &key, 5, &entry);
    expect_match("0a 0b 0c 0d 0e 0f c0 a8 01 00 20 01 0d b8 00 00 00 00 00 00 00 00 00 00 00 0f 0d ff",
                 "ff ff ff ff ff ff ff ff ff 00 ff ff ff ff 00 00 00 00 00 00 00 00 00 00 00 0f 07 01",
                 0x1c00d4, 5);
}

TEST_F(WorkedExamples, TrapToCpuIsTheWidestKey)
{
    PD(trapToCpu_match_spec_t)
    key{.ingMd_etherType = 0x0102,
        .ingMd_etherType_mask = 0xffff,
        .ingMd_bcast = 3,
        .ingMd_bcast_mask = 0xff,
        .ingMd_mcast = 4,
        .ingMd_mcast_mask = 0xff,
        .ingMd_l4Attr = 5,
        .ingMd_l4Attr_mask = 0xff,
        .ingMd_srcPort = 0x0607,
        .ingMd_srcPort_mask = 0xffff,
        .ingMd_dstPort = 0x0809,
        .ingMd_dstPort_mask = 0xffff,
        .phase0_ingVPort = 0x0a0b,
        .phase0_ingVPort_mask = 0xffff,
        .ingMd_ingL3Aintf = 0x0c0d,
        .ingMd_ingL3Aintf_mask = 0xffff,
        .l3Info_ingL3DmacValid = 0x0e,
        .l3Info_ingL3DmacValid_mask = 0xff,
        .ingMd_ttl = 0x0f,
        .ingMd_ttl_mask = 0xff,
        .arpHdr_valid = 0x10,
        .arpHdr_valid_mask = 0xff,
        .arpHdr_opcode = 0x1112,
        .arpHdr_opcode_mask = 0xffff,
        .ingIpv6_dip = {0xc0, 0xc1, 0xc2, 0xc3, 0xc4, 0xc5, 0xc6, 0xc7, 0xc8, 0xc9, 0xca, 0xcb, 0xcc, 0xcd,
                        0xce, 0xcf},
        .ingIpv6_dip_mask = {0xff, 0xff},
        .ingMd_igmpSnoopingEnabled = 0x13,
        .ingMd_igmpSnoopingEnabled_mask = 0xff,
        .ingIpv4_dip = 0x14151617,
        .ingIpv4_dip_mask = 0xffffffff,
        .ingMd_protocol = 0x18,
        .ingMd_protocol_mask = 0xff,
        .egrMd_vxlanFlood = 0x19,
        .egrMd_vxlanFlood_mask = 0xff,
        .egrMd_decapType = 0x1a,
        .egrMd_decapType_mask = 0xff,
        .ingMd_cpuMemberOfIngressVlan = 0x1b,
        .ingMd_cpuMemberOfIngressVlan_mask = 0xff,
        .egrMd_cpuReasonCode = 0x1c,
        .egrMd_cpuReasonCode_mask = 0xff};
    PD(trapToCpu_table_add_with_noOp)(sess, target, &key, 9, &entry);
    expect_match("01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 11 12 13 14 15 16 17 18 19 1a "
                 "c0 c1 00 00 00 00 00 00 00 00 00 00 00 00 00 00 1b 1c",
                 "ff ff 01 01 07 ff ff ff ff 3f ff 0f ff 01 ff 01 ff ff 01 ff ff ff ff ff 01 07 "
                 "ff ff 00 00 00 00 00 00 00 00 00 00 00 00 00 00 01 ff",
                 0x2c011f, 9);
    expect_resource(0x4000003, 0, 1);
}

TEST_F(WorkedExamples, Ipv4Prefixes)
{
    PD(ipv4ShortMaskLpm_match_spec_t)
    key{.l3Info_vrfId = 5, .ingIpv4_dip = 0x0a010203, .ingIpv4_dip_prefix_length = 0};
    const auto find = [&](u16 length) {
        key.ingIpv4_dip_prefix_length = length;
        PD(ipv4ShortMaskLpm_match_spec_to_entry_hdl)(sess, target, &key, &entry);
    };
    find(20);
    expect_match("05 0a 01 00 00", "ff ff ff f0 00", 0x50028, 12);
    find(0);
    expect_match("05 00 00 00 00", "ff 00 00 00 00", 0x50028, 32);
    find(32);
    expect_match("05 0a 01 02 03", "ff ff ff ff ff", 0x50028, 0);
    for (const u16 too_long : {33, 65535}) {
        find(too_long);
        expect_match("05 0a 01 02 03", "ff ff ff ff ff", 0x50028, 41);
    }
}

TEST_F(WorkedExamples, Ipv6Prefixes)
{
    PD(ipv6ShortMaskLpm_match_spec_t)
    key{.l3Info_vrfId = 7,
        .ingIpv6_dip = {0x20, 1, 0x0d, 0xb8, 0xff, 0xff, 6, 7, 0xff, 9, 10, 11, 12, 13, 14, 15},
        .ingIpv6_dip_prefix_length = 0};
    const auto find = [&](u16 length) {
        key.ingIpv6_dip_prefix_length = length;
        PD(ipv6ShortMaskLpm_match_spec_to_entry_hdl)(sess, target, &key, &entry);
    };
    find(37);
    expect_match("07 20 01 0d b8 f8 00 00 00 00 00 00 00 00 00 00 00",
                 "ff ff ff ff ff f8 00 00 00 00 00 00 00 00 00 00 00", 0x110088, 91);
    find(65);
    expect_match("07 20 01 0d b8 ff ff 06 07 80 00 00 00 00 00 00 00",
                 "ff ff ff ff ff ff ff ff ff 80 00 00 00 00 00 00 00", 0x110088, 63);
    find(0);
    expect_match("07 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00",
                 "ff 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00", 0x110088, 128);
    find(129);
    expect_match("07 20 01 0d b8 ff ff 06 07 ff 09 0a 0b 0c 0d 0e 0f",
                 "ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff", 0x110088, 137);
}

TEST_F(WorkedExamples, PartitionGoesToAWordOfItsOwn)
{
    PD(ipv4FinalResolve0_match_spec_t)
    key{.fibV4ResultX_partIdx = 0xfedc, .ingIpv4_dip = 0x0a010203, .ingIpv4_dip_prefix_length = 0};
    const auto find = [&](u16 length) {
        key.ingIpv4_dip_prefix_length = length;
        PD(ipv4FinalResolve0_match_spec_to_entry_hdl)(sess, target, &key, &entry);
    };
    find(20);
    expect_match("00 00 0a 01 00 00", "00 00 ff ff f0 00", 0x60030, 12, 0xfedc);
    find(32);
    expect_match("00 00 0a 01 02 03", "00 00 ff ff ff ff", 0x60030, 0, 0xfedc);
    find(33);
    expect_match("00 00 0a 01 02 03", "ff ff ff ff ff ff", 0x60030, 49, 0xfedc);
}

// ---- Actions and resources ------------------------------------------------------------------------------

TEST_F(WorkedExamples, DirectCountersHangOnEveryEntry)
{
    const PD(ingressPortDropCheck_match_spec_t) ingress{};
    PD(ingressPortDropCheck_table_add_with_setDrop)(sess, target, &ingress, 1, &entry);
    expect_resource(0x4000002, 0, 1);
    const PD(haloCounters_match_spec_t) halo{.haloResultRow1_bestResult = 0x12345678};
    PD(haloCounters_table_add_with_onMiss)(sess, target, &halo, &entry);
    expect_match("12 34 56 78", "ff ff ff ff", 0x40020, 0);
    expect_resource(0x4000004, 0, 1);
    PD(finalDropControl_table_modify_with_finalDrop)(sess, device, 1);
    expect_resource(0x4000006, 0, 1);
    PD(egressTcamV6RaclBank1_table_modify_with_NoAction)(sess, device, 1);
    expect_resource(0x4000008, 0, 1);
    PD(egressTcamRaclBank1_table_modify_with_NoAction)(sess, device, 1);
    expect_resource(0x4000009, 0, 1);
    const PD(egressPortDropCheck_match_spec_t) egress{};
    PD(egressPortDropCheck_table_modify_with_onMiss_by_match_spec)(sess, target, &egress, 1);
    expect_resource(0x400000a, 0, 1);
}

TEST_F(WorkedExamples, DirectMeterIsAlwaysNamedAndWrittenWhenGiven)
{
    const PD(l2LookupMiss_match_spec_t) key{};
    const auto rates = [] { return capture::spec_of(capture::last).resources[0].res_data.meter; };
    PD(l2LookupMiss_table_modify_with_NoAction)(sess, device, 1, nullptr);
    expect_resource(0x5000001, 0, 0);
    PD(l2LookupMiss_table_modify_with_NoAction_by_match_spec)(sess, target, &key, 1, nullptr);
    expect_resource(0x5000001, 0, 0);
    EXPECT_EQ(rates().committed_rate, 0u);

    pd_meter_spec meter{.committed_rate = 0x80000001,
                        .committed_burst = 0x80000002,
                        .peak_rate = 0xfffffffe,
                        .peak_burst = 0xffffffff,
                        .requested_meter_type = 1};
    PD(l2LookupMiss_table_add_with_l2LookupBcastHit)(sess, target, &key, 1, &meter, &entry);
    expect_resource(0x5000001, 0, 1);
    // Widened without their sign.
    EXPECT_EQ(rates().meter_type, 1u);
    EXPECT_EQ(rates().committed_rate, 0x80000001ull);
    EXPECT_EQ(rates().committed_burst, 0x80000002ull);
    EXPECT_EQ(rates().peak_rate, 0xfffffffeull);
    EXPECT_EQ(rates().peak_burst, 0xffffffffull);
    if constexpr (sizeof(void *) == 4) {
        EXPECT_EQ(capture::hex(capture::last.spec.data(), 76),
                  "01 01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 " // kind to group
                  "01 00 00 05 00 00 00 00 "                                     // handle, index
                  "01 00 00 00 00 00 00 00 01 00 00 80 00 00 00 00 02 00 00 80 00 00 00 00 "
                  "00 00 00 00 fe ff ff ff 00 00 00 00 ff ff ff ff 00 00 00 00 01 00 00 00");
    }

    meter.requested_meter_type = 0;
    PD(l2LookupMiss_table_modify_with_l2LookupBcastHit)(sess, device, 1, &meter);
    expect_resource(0x5000001, 0, 1);
    EXPECT_EQ(rates().meter_type, 0u);
    meter.requested_meter_type = 2;
    PD(l2LookupMiss_table_modify_with_l2LookupBcastHit)(sess, device, 1, &meter);
    EXPECT_EQ(rates().meter_type, 0u);
}

TEST_F(WorkedExamples, PolicingClassIsIndexAndData)
{
    const PD(pdpClassify_match_spec_t) key{};
    const PD(meterPdpClass_action_spec_t) metered{.action_pdpClassId = 0x12345};
    PD(pdpClassify_table_add_with_meterPdpClass)(sess, target, &key, 1, &metered, &entry);
    expect_data("00 01 23 45", 0x40020);
    expect_resource(0x5000002, 0x2345, 1);
    PD(pdpClassify_table_modify_with_meterPdpClass)(sess, device, 1, &metered);
    expect_data("00 01 23 45", 0x40020);
    expect_resource(0x5000002, 0x12345, 1);
    PD(pdpClassify_table_modify_with_meterPdpClass_by_match_spec)(sess, target, &key, 1, &metered);
    expect_resource(0x5000002, 0x12345, 1);

    const PD(setPdpClass_action_spec_t) plain{.action_pdpClassId = 0xff};
    PD(pdpClassify_table_add_with_setPdpClass)(sess, target, &key, 1, &plain, &entry);
    expect_data("ff", 0x10005);
    expect_resource(0x5000002, 0, 2);
}

TEST_F(WorkedExamples, CounterIndexIsNoData)
{
    const PD(pdpPolicy_match_spec_t) key{.qosMd_pdpDrop = 1, .qosMd_pdpClassId = 0x1f};
    const PD(setPdpClassCount_action_spec_t) action{.action_counterIndex = 0x10005};
    PD(pdpPolicy_table_add_with_setPdpClassCount)(sess, target, &key, &action, &entry);
    expect_match("01 1f", "ff ff", 0x20006, 0);
    expect_data("00 00 00 00", 0x40020);
    expect_resource(0x4000005, 5, 1);
    PD(pdpPolicy_table_modify_with_setPdpClassCount)(sess, device, 1, &action);
    expect_data("00 00 00 00", 0x40020);
    expect_resource(0x4000005, 0x10005, 1);
    PD(pdpPolicy_table_modify_with_NoAction)(sess, device, 1);
    expect_data("", 0);
    expect_resource(0x4000005, 0, 2);
}

TEST_F(WorkedExamples, MirrorMeterIndexIsNoData)
{
    const PD(ingressMirrorRate_match_spec_t) ingress{.ingMirrorMd_mirrorBufId = 0x155};
    const PD(setIngressMirrorColor_action_spec_t) ingress_color{.action_meterIndex = 0xffff1234};
    PD(ingressMirrorRate_table_add_with_setIngressMirrorColor)
    (sess, target, &ingress, &ingress_color, &entry);
    expect_data("00 00 00 00", 0x40020);
    expect_resource(0x5000003, 0x1234, 1);
    PD(ingressMirrorRate_table_add_with_setIngressMirrorColorRed)(sess, target, &ingress, &entry);
    expect_data("", 0);
    expect_resource(0x5000003, 0, 2);

    const PD(setEgressMirrorColor_action_spec_t) egress_color{.action_meterIndex = 0xffff1234};
    PD(egressMirrorRate_table_modify_with_setEgressMirrorColor)(sess, device, 1, &egress_color);
    expect_data("00 00 00 00", 0x40020);
    expect_resource(0x5000004, 0xffff1234, 1);
    PD(egressMirrorRate_table_modify_with_setEgressMirrorColorRed)(sess, device, 1);
    expect_resource(0x5000004, 0, 2);
}

} // namespace
