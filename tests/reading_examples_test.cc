// One example with literal bytes for each rule of reading back, through the exported functions by name.
#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include "capture_driver.h"
#include "capture_services.h"
#include "pd.h"

#define PD(name) p4_pd_tessel_switch_##name

namespace {

constexpr pd_sess_hdl sess = 0x51;
constexpr pd_dev_target target{3, 0xffff};
constexpr u32 device = 3;

capture::Image image(std::initializer_list<u8> bytes)
{
    capture::Image image{.size = static_cast<u32>(bytes.size())};
    std::copy(bytes.begin(), bytes.end(), image.bytes.begin());
    return image;
}

class ReadingExamples : public testing::Test {
protected:
    char name[128] = "";
    u32 number = 0;
    u32 priority = 0;
    u8 is_default = 0xa5;
    pd_action_out out{};
    pd_entry_hdl entry = 0;

    void SetUp() override
    {
        services::reset();
        capture::reset();
    }

    static void answer_key(std::initializer_list<u8> value, std::initializer_list<u8> mask)
    {
        capture::answer.value = image(value);
        capture::answer.mask = image(mask);
        capture::answer.num_bytes = static_cast<u16>(value.size());
    }

    static void answer_action(u32 handle, std::initializer_list<u8> data = {})
    {
        capture::answer.action = handle;
        std::copy(data.begin(), data.end(), capture::answer.data.begin());
    }

    static void answer_resources(std::initializer_list<pipe_res_spec> resources)
    {
        capture::answer.resource_count = static_cast<u8>(resources.size());
        std::copy(resources.begin(), resources.end(), capture::answer.resources.begin());
    }

    static pipe_res_spec resource(u32 handle, u32 index, u32 tag)
    {
        pipe_res_spec resource{};
        resource.res_handle = handle;
        resource.res_index = index;
        resource.res_tag = tag;
        return resource;
    }
};

// ---- Keys ------------------------------------------------------------------------------------------------

TEST_F(ReadingExamples, PortMapping)
{
    PD(ingressPortMapping_match_spec_t) key{};
    PD(setPhase0_action_spec_t) action{};
    answer_key({0x01, 0x23}, {0xff, 0xff});
    answer_action(0x20000000, {0xfa, 0xbc, 0x12, 0x34, 0xff, 0x02});
    EXPECT_EQ(PD(ingressPortMapping_get_entry)(sess, device, 7, 1, &key, name, &action, &number, &is_default),
              0u);
    EXPECT_EQ(capture::last.packed, 0x20009u);
    EXPECT_EQ(key.ig_intr_md_ingress_port, 0x123);
    EXPECT_EQ(action.action_ingVPort, 0xfabc);
    EXPECT_EQ(action.action_nativeAintf, 0x1234);
    EXPECT_EQ(action.action_switchPort, 0xff);
    EXPECT_EQ(action.action_physicalPort, 2);
    EXPECT_STREQ(name, "p4_pd_tessel_switch_setPhase0");
    EXPECT_EQ(number, 0u);
    EXPECT_EQ(is_default, 0);
}

TEST_F(ReadingExamples, TernaryKeyWithItsMasksAndPriority)
{
    PD(l2DmacClassify_match_spec_t) key{};
    answer_key({0x01, 0x01, 0x01, 0x80, 0xc2, 0x00, 0x00, 0x00},
               {0x01, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xf0});
    answer_action(0x2000000b);
    answer_resources({resource(0x4000001, 0, 1)});
    capture::answer.priority = 0xfedcba98;
    EXPECT_EQ(PD(l2DmacClassify_get_entry)(sess, device, 7, 0, &key, &priority, name, nullptr, &number,
                                           &is_default),
              0u);
    EXPECT_EQ(capture::last.packed, 0x80039u);
    EXPECT_EQ(key.ig_intr_md_ingress_port, 0x101);
    EXPECT_EQ(key.outerEthHdr_dmacOui, 0x0180c2u);
    EXPECT_EQ(key.outerEthHdr_dmacOui_mask, 0xffffffu);
    EXPECT_EQ(key.outerEthHdr_dmacStation, 0u);
    EXPECT_EQ(key.outerEthHdr_dmacStation_mask, 0xfffff0u);
    EXPECT_EQ(priority, 0xfedcba98u);
    EXPECT_STREQ(name, "p4_pd_tessel_switch_onMiss");
    EXPECT_EQ(number, 13u);
    EXPECT_EQ(capture::steps(), "pipe_mgr_get_entry bf_sys_calloc bf_sys_free");
}

// The lowest set bit decides; holes above it are not seen.
TEST_F(ReadingExamples, PrefixLengths)
{
    const struct {
        std::initializer_list<u8> mask;
        u16 length;
    } examples[] = {
        {{0xff, 0xff, 0xff, 0xf0, 0x00}, 20}, {{0xff, 0xff, 0x00, 0xff, 0x00}, 24},
        {{0xff, 0xff, 0xff, 0xff, 0xff}, 32}, {{0xff, 0xff, 0xff, 0xff, 0xfe}, 31},
        {{0xff, 0x80, 0x00, 0x00, 0x00}, 1},  {{0xff, 0x00, 0x00, 0x00, 0x00}, 0},
        {{0x00, 0x00, 0x01, 0x00, 0x00}, 16},
    };
    for (const auto &example : examples) {
        PD(ipv4ShortMaskLpm_match_spec_t) key{};
        answer_key({0x05, 0x0a, 0x01, 0x02, 0x03}, example.mask);
        answer_action(0x200000b1);
        capture::answer.priority = 12;
        EXPECT_EQ(
            PD(ipv4ShortMaskLpm_get_entry)(sess, device, 7, 0, &key, name, nullptr, &number, &is_default),
            0u);
        EXPECT_EQ(key.l3Info_vrfId, 5);
        EXPECT_EQ(key.ingIpv4_dip, 0x0a010203u);
        EXPECT_EQ(key.ingIpv4_dip_prefix_length, example.length);
    }
}

TEST_F(ReadingExamples, PartitionComesFromTheLowHalfOfItsWord)
{
    PD(ipv4FinalResolve0_match_spec_t) key{};
    answer_key({0x77, 0x88, 0x0a, 0x01, 0x00, 0x00}, {0x00, 0x00, 0xff, 0xff, 0xf0, 0x00});
    answer_action(0x200000b6);
    capture::answer.partition_index = 0xabcd1234;
    EXPECT_EQ(PD(ipv4FinalResolve0_get_entry)(sess, device, 7, 0, &key, name, nullptr, &number, &is_default),
              0u);
    EXPECT_EQ(capture::last.packed, 0x60030u);
    EXPECT_EQ(key.fibV4ResultX_partIdx, 0x1234);
    EXPECT_EQ(key.ingIpv4_dip, 0x0a010000u);
    EXPECT_EQ(key.ingIpv4_dip_prefix_length, 20);
}

TEST_F(ReadingExamples, KeylessTablesHaveTheirDefaultEntryOnly)
{
    answer_action(0x20000148);
    EXPECT_EQ(PD(queueCounters_get_entry)(sess, device, 7, 0, name, nullptr, &number), 0u);
    EXPECT_EQ(capture::last.packed, 0u);
    EXPECT_STREQ(name, "p4_pd_tessel_switch_countEgressQueue");
    EXPECT_EQ(number, 1u);
    capture::answer.action = 0;
    EXPECT_EQ(PD(queueCounters_get_entry_from_plcmt_data)(nullptr, &out, &is_default), 3u);
    EXPECT_EQ(is_default, 1);
}

// ---- Index parameters ------------------------------------------------------------------------------------

TEST_F(ReadingExamples, CounterIndexComesFromTheList)
{
    constexpr pd_res_ref refs[] = {{0x4000005, 3}, {0x5000004, 4}, {0x4000005, 0x12345}, {0x5000003, 6}};
    u8 bytes[] = {0xde, 0xad, 0xbe, 0xef};
    const pipe_action_data data{.num_valid_bits = 32, .num_bytes = 4, .data = bytes};
    PD(setPdpClassCount_action_spec_t) action{};
    unbuild_action_spec_setPdpClassCount(&data, nullptr, 0, &action);
    EXPECT_EQ(action.action_counterIndex, 65535u);
    unbuild_action_spec_setPdpClassCount(&data, refs + 1, 1, &action);
    EXPECT_EQ(action.action_counterIndex, 0u);
    unbuild_action_spec_setPdpClassCount(&data, refs, 2, &action);
    EXPECT_EQ(action.action_counterIndex, 3u);
    unbuild_action_spec_setPdpClassCount(&data, refs, 4, &action);
    EXPECT_EQ(action.action_counterIndex, 0x12345u);

    PD(setEgressMirrorColor_action_spec_t) egress{};
    unbuild_action_spec_setEgressMirrorColor(&data, refs, 4, &egress);
    EXPECT_EQ(egress.action_meterIndex, 4u);
    PD(setIngressMirrorColor_action_spec_t) ingress{};
    unbuild_action_spec_setIngressMirrorColor(&data, refs, 4, &ingress);
    EXPECT_EQ(ingress.action_meterIndex, 6u);

    // An index too, but one that stands in the image.
    PD(meterPdpClass_action_spec_t) metered{};
    unbuild_action_spec_meterPdpClass(&data, refs, 4, &metered);
    EXPECT_EQ(metered.action_pdpClassId, 0xdeadbeefu);
}

// The list has room for every resource, and what is attached stands first.
TEST_F(ReadingExamples, OnlyAttachedResourcesCount)
{
    PD(pdpPolicy_match_spec_t) key{};
    PD(setPdpClassCount_action_spec_t) action{};
    answer_key({0x01, 0x1f}, {0xff, 0xff});
    answer_action(0x20000145);
    const auto read = [&](std::initializer_list<pipe_res_spec> resources) {
        answer_resources(resources);
        EXPECT_EQ(PD(pdpPolicy_get_entry)(sess, device, 7, 0, &key, name, &action, &number, &is_default), 0u);
        return action.action_counterIndex;
    };
    EXPECT_EQ(read({}), 65535u);
    EXPECT_EQ(capture::allocation.count, 0u);
    EXPECT_EQ(read({resource(0x4000005, 9, 2)}), 65535u); // detached
    EXPECT_EQ(capture::allocation.count, 1u);
    EXPECT_EQ(read({resource(0x4000005, 9, 0)}), 65535u);
    EXPECT_EQ(read({resource(0x4000005, 9, 2), resource(0x4000005, 8, 1), resource(0x4000005, 7, 0)}), 8u);
    EXPECT_EQ(capture::allocation.count, 3u);
    EXPECT_EQ(capture::allocation.size, 8u);

    // Without memory, nothing is written to the list as long as nothing is attached, and nothing is freed.
    capture::reset();
    answer_key({0x01, 0x1f}, {0xff, 0xff});
    answer_action(0x20000145);
    capture::out_of_memory = true;
    EXPECT_EQ(read({resource(0x4000005, 9, 2)}), 65535u);
    EXPECT_EQ(capture::steps(), "pipe_mgr_get_entry bf_sys_calloc");
}

// ---- Default entries -------------------------------------------------------------------------------------

TEST_F(ReadingExamples, DefaultEntriesAreNumbered)
{
    answer_action(0x20000000, {0x3f, 0xff, 0x12, 0x34, 0x01, 0x02});
    EXPECT_EQ(PD(ingressPortMapping_table_get_default_entry)(sess, target, 1, &out), 0u);
    EXPECT_EQ(out.action_number, 0u);
    const auto *action = reinterpret_cast<const PD(setPhase0_action_spec_t) *>(&out.parameters);
    EXPECT_EQ(action->action_ingVPort, 0x3fff);
    EXPECT_EQ(action->action_physicalPort, 2);

    constexpr u32 numbers[] = {127, 128, 129, 130, 131, 3};
    for (u32 i = 0; i < std::size(numbers); ++i) {
        answer_action(0x200000a2 + i);
        EXPECT_EQ(PD(normalizeDscp_table_get_default_entry)(sess, target, 0, &out), 0u);
        EXPECT_EQ(out.action_number, numbers[i]);
    }
}

TEST_F(ReadingExamples, DefaultActionOfTheStormControlMeter)
{
    // No spec is fatal in add and leaves the meter alone in modify; here it detaches it.
    EXPECT_EQ(PD(l2LookupMiss_set_default_action_NoAction)(sess, target, nullptr, &entry), 0u);
    EXPECT_EQ(capture::steps(), "pipe_mgr_mat_default_entry_set");
    EXPECT_EQ(capture::last.action, 0x200000efu);
    pipe_action_spec spec = capture::spec_of(capture::last);
    EXPECT_EQ(spec.action_kind, 1);
    EXPECT_EQ(spec.resource_count, 1);
    EXPECT_EQ(spec.resources[0].res_handle, 0x5000001u);
    EXPECT_EQ(spec.resources[0].res_tag, 2u);
    EXPECT_EQ(spec.resources[0].res_data.meter.committed_rate, 0u);

    const pd_meter_spec meter{1, 2, 3, 4, PD_METER_TYPE_COLOR_UNAWARE};
    PD(l2LookupMiss_set_default_action_NoAction)(sess, target, &meter, &entry);
    spec = capture::spec_of(capture::last);
    EXPECT_EQ(spec.resources[0].res_tag, 1u);
    EXPECT_EQ(spec.resources[0].res_data.meter.meter_type, 1u);
    EXPECT_EQ(spec.resources[0].res_data.meter.peak_burst, 4u);
    EXPECT_TRUE(services::log.empty());
}

TEST_F(ReadingExamples, DefaultActionsDetachTheIndexedResource)
{
    const auto expect_resource = [](u32 handle, u32 tag) {
        const pipe_res_spec resource = capture::spec_of(capture::last).resources[0];
        EXPECT_EQ(resource.res_handle, handle);
        EXPECT_EQ(resource.res_index, 0u);
        EXPECT_EQ(resource.res_tag, tag);
    };
    PD(egressMirrorRate_set_default_action_setEgressMirrorColorRed)(sess, target, &entry);
    expect_resource(0x5000004, 2);
    PD(ingressMirrorRate_set_default_action_setIngressMirrorColorRed)(sess, target, &entry);
    expect_resource(0x5000003, 2);
    PD(pdpPolicy_set_default_action_NoAction)(sess, target, &entry);
    expect_resource(0x4000005, 2);
    PD(l2DmacClassify_set_default_action_onMiss)(sess, target, &entry);
    expect_resource(0x4000001, 1);
}

// ---- The action enum -------------------------------------------------------------------------------------

TEST(ActionEnum, GoesBothWays)
{
    EXPECT_STREQ(PD(action_enum_to_string)(0), "p4_pd_tessel_switch_setPhase0");
    EXPECT_STREQ(PD(action_enum_to_string)(297), "p4_pd_tessel_switch_needVlanEncap");
    EXPECT_EQ(PD(action_enum_to_string)(298), nullptr);
    EXPECT_EQ(PD(action_enum_to_string)(0xffffffff), nullptr);
    for (u32 number = 0; number < 298; ++number) {
        const char *name = PD(action_enum_to_string)(number);
        EXPECT_EQ(name, PD(action_name_strings)[number]);
        EXPECT_EQ(PD(action_string_to_enum)(std::string(name).c_str()), number) << name;
    }
}

TEST(ActionEnum, KnowsWholeNamesOnly)
{
    EXPECT_EQ(PD(action_string_to_enum)(nullptr), 298u);
    for (const char *name : {"", "setPhase0", "p4_pd_tessel_switch_", "p4_pd_tessel_switch_setPhase",
                             "p4_pd_tessel_switch_setPhase00", "P4_PD_TESSEL_SWITCH_SETPHASE0"})
        EXPECT_EQ(PD(action_string_to_enum)(name), 298u) << name;
}

TEST(Widths, AreDeclaredByName)
{
    EXPECT_EQ(PD(ipv4Host_ingIpv4_dip_width)(), 32u);
    EXPECT_EQ(PD(ecmpGroup_l3_nextHop_width)(), 14u);
    EXPECT_EQ(PD(haloCounters_haloResultRow1_bestResult_width)(), 32u);
    EXPECT_EQ(PD(tunnelTermination_outerIpv6Hdr_dip_width)(), 128u);
    EXPECT_EQ(PD(tunnelTermination_outerIpv6Hdr_width)(), 1u);
    EXPECT_EQ(PD(l2DomainLookup_vlanHdr_0__width)(), 1u);
    EXPECT_EQ(PD(l2DomainLookup_vlanHdr_0__vlanId_width)(), 12u);
}

} // namespace
