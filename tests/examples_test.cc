// One example with literal bytes for each rule of images and records, through the exported functions by name;
// records are initialised by member, so the order of their members is pinned as well. And the facts that hold
// of the catalogue as a whole.
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <map>
#include <sstream>

#include "encoder.h"
#include "pd.h"
#include "reflection.h"

#define PD(name) p4_pd_tessel_switch_##name

namespace {

constexpr pd_sess_hdl sess = 0x51;
constexpr pd_dev_target target{3, 0xffff};
constexpr u32 device = 3;

class Examples : public testing::Test {
protected:
    pd_entry_hdl entry = 0;

    void SetUp() override { recorder::reset(); }

    static void expect_line(const std::string &line) { EXPECT_EQ(recorder::last(), line); }

    static void expect_part(const std::string &part)
    {
        EXPECT_NE(recorder::last().find(part), std::string::npos) << recorder::last() << "\nlacks " << part;
    }

    static void expect_key(const std::string &value, const std::string &mask, const std::string &rest)
    {
        expect_part("{value=" + value + " mask=" + mask + " " + rest + " reserved=0}");
    }

    static void expect_resource(const std::string &resource)
    {
        expect_part("resources=1[{" + resource + "}]}");
    }
};

// ---- Keys -------------------------------------------------------------------------------------------------

TEST_F(Examples, PortMappingIsWritten)
{
    const PD(ingressPortMapping_match_spec_t) key{.ig_intr_md_ingress_port = 0x123};
    const PD(setPhase0_action_spec_t) action{.action_ingVPort = 0xfabc,
                                             .action_nativeAintf = 0x1234,
                                             .action_switchPort = 0xff,
                                             .action_physicalPort = 2};
    recorder::answer.numbers[0] = 0x1234567;
    EXPECT_EQ(PD(ingressPortMapping_table_add_with_setPhase0)(sess, target, &key, &action, &entry), 0u);
    EXPECT_EQ(entry, 0x1234567u);
    const std::string match = "{value=0123 mask=ffff partition=0 priority=0 bits=9 bytes=2 reserved=0}";
    const std::string spec =
        "0x20000000, {kind=1 bits=33 bytes=6 data=fabc1234ff02 member=0 group=0 resources=0[]}";
    expect_line("pipe_mgr_mat_ent_add(0x51, 0x3:0xffff, 0x1000001, " + match + ", " + spec + ", 0, 0)");
    PD(ingressPortMapping_table_modify_with_setPhase0)(sess, device, 0xabcdef01, &action);
    expect_line("pipe_mgr_mat_ent_set_action(0x51, 0x3, 0x1000001, 0xabcdef01, " + spec + ", 0)");
}

TEST_F(Examples, ExactKeysAreNotClipped)
{
    const PD(l2LearningLookup_match_spec_t) key{.ingMd_smacOui = 0xff0180c2,
                                                .ingMd_smacStation = 0x000003,
                                                .ingMd_ingL2Domain = 0xf123,
                                                .ingMd_ingL2Aintf = 0xaafabcde};
    PD(l2LearningLookup_table_add_with_noOp)(sess, target, &key, 30000, &entry);
    expect_key("0180c2000003f123fabcde", "ffffffffffffffffffffff", "partition=0 priority=0 bits=80 bytes=11");
    expect_part("data=- member=0 group=0 resources=0[]}, 0x7530, 0)"); // the time to live
}

TEST_F(Examples, TernaryKeyClipsMasksAfterMaskingValues)
{
    // The port has no mask of its own: clipped, but not masked.
    const PD(l2DmacClassify_match_spec_t) key{.ig_intr_md_ingress_port = 0xffff,
                                              .outerEthHdr_dmacOui = 0x0180c2,
                                              .outerEthHdr_dmacOui_mask = 0xffffff,
                                              .outerEthHdr_dmacStation = 0x000003,
                                              .outerEthHdr_dmacStation_mask = 0xfffff0};
    PD(l2DmacClassify_table_add_with_setUcast)(sess, target, &key, 0xfffffffe, &entry);
    expect_key("ffff0180c2000000", "01fffffffffffff0", "partition=0 priority=0xfffffffe bits=57 bytes=8");
    expect_resource("handle=0x4000001 index=0 tag=1"); // a direct counter
}

TEST_F(Examples, TunnelTerminationTakesItsImageOrderFromTheKey)
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
    expect_key("0a0b0c0d0e0fc0a8010020010db8" + std::string(22, '0') + "0f0dff",
               "ffffffffffffffffff00ffffffff" + std::string(22, '0') + "0f0701",
               "partition=0 priority=0x5 bits=212 bytes=28");
}

TEST_F(Examples, Prefixes)
{
    PD(ipv6ShortMaskLpm_match_spec_t)
    key{.l3Info_vrfId = 7,
        .ingIpv6_dip = {0x20, 1, 0x0d, 0xb8, 0xff, 0xff, 6, 7, 0xff, 9, 10, 11, 12, 13, 14, 15},
        .ingIpv6_dip_prefix_length = 37};
    PD(ipv6ShortMaskLpm_match_spec_to_entry_hdl)(sess, target, &key, &entry);
    expect_key("0720010db8f8" + std::string(22, '0'), "fffffffffff8" + std::string(22, '0'),
               "partition=0 priority=0x5b bits=136 bytes=17");
    key.ingIpv6_dip_prefix_length = 129; // too long
    PD(ipv6ShortMaskLpm_match_spec_to_entry_hdl)(sess, target, &key, &entry);
    expect_key("0720010db8ffff0607ff090a0b0c0d0e0f", std::string(34, 'f'),
               "partition=0 priority=0x89 bits=136 bytes=17");
    // A partition goes to a word of its own.
    const PD(ipv4FinalResolve0_match_spec_t) in_partition{
        .fibV4ResultX_partIdx = 0xfedc, .ingIpv4_dip = 0x0a010203, .ingIpv4_dip_prefix_length = 20};
    PD(ipv4FinalResolve0_match_spec_to_entry_hdl)(sess, target, &in_partition, &entry);
    expect_key("00000a010000", "0000fffff000", "partition=0xfedc priority=0xc bits=48 bytes=6");
}

// ---- Resources --------------------------------------------------------------------------------------------

TEST_F(Examples, MetersOfEntriesAreWidenedWithoutTheirSign)
{
    const PD(l2LookupMiss_match_spec_t) key{};
    const pd_meter_spec meter{.committed_rate = 0x80000001,
                              .committed_burst = 0x80000002,
                              .peak_rate = 0xfffffffe,
                              .peak_burst = 0xffffffff,
                              .requested_meter_type = 1};
    PD(l2LookupMiss_table_add_with_l2LookupBcastHit)(sess, target, &key, 1, &meter, &entry);
    expect_resource("handle=0x5000001 index=0 tag=1 meter={type=0x1 committed=0:0x80000001:0x80000002 "
                    "peak=0:0xfffffffe:0xffffffff}");
    PD(l2LookupMiss_table_modify_with_NoAction)(sess, device, 1, nullptr);
    expect_resource("handle=0x5000001 index=0 tag=0");
    // No spec is fatal in add and leaves the meter alone in modify; here it detaches it.
    PD(l2LookupMiss_set_default_action_NoAction)(sess, target, nullptr, &entry);
    expect_resource("handle=0x5000001 index=0 tag=2");
}

TEST_F(Examples, IndicesAreCutInAddOnlyAndMayBeData)
{
    const PD(pdpClassify_match_spec_t) key{};
    const PD(meterPdpClass_action_spec_t) metered{.action_pdpClassId = 0x12345};
    PD(pdpClassify_table_add_with_meterPdpClass)(sess, target, &key, 1, &metered, &entry);
    expect_part("bits=32 bytes=4 data=00012345 ");
    expect_resource("handle=0x5000002 index=0x2345 tag=1");
    PD(pdpClassify_table_modify_with_meterPdpClass)(sess, device, 1, &metered);
    expect_resource("handle=0x5000002 index=0x12345 tag=1");
    const PD(setPdpClassCount_action_spec_t) counted{.action_counterIndex = 0x10005};
    PD(pdpPolicy_table_modify_with_setPdpClassCount)(sess, device, 1, &counted);
    expect_part("bits=32 bytes=4 data=00000000 ");
    expect_resource("handle=0x4000005 index=0x10005 tag=1");
    PD(pdpPolicy_table_modify_with_NoAction)(sess, device, 1);
    expect_resource("handle=0x4000005 index=0 tag=2");
}

TEST_F(Examples, IndicesComeBackFromTheListOfResources)
{
    constexpr pd_res_ref refs[] = {{0x4000005, 3}, {0x5000004, 4}, {0x4000005, 0x12345}, {0x5000003, 6}};
    u8 bytes[] = {0xde, 0xad, 0xbe, 0xef};
    const pipe_action_data data{.num_valid_bits = 32, .num_bytes = 4, .data = bytes};
    PD(setPdpClassCount_action_spec_t) action{};
    constexpr std::pair<std::pair<u32, u32>, u32> indices[] = {
        {{0, 0}, 65535}, {{1, 1}, 0}, {{0, 2}, 3}, {{0, 4}, 0x12345}};
    for (const auto &[list, index] : indices) { // its first element and its length
        unbuild_action_spec_setPdpClassCount(&data, refs + list.first, list.second, &action);
        EXPECT_EQ(action.action_counterIndex, index);
    }
    PD(meterPdpClass_action_spec_t) metered{}; // an index too, but one that stands in the image
    unbuild_action_spec_meterPdpClass(&data, refs, 4, &metered);
    EXPECT_EQ(metered.action_pdpClassId, 0xdeadbeefu);
}

// Without memory, nothing is written to the list as long as nothing is attached, and nothing is freed.
TEST_F(Examples, ReadingWithoutMemory)
{
    PD(pdpPolicy_match_spec_t) key{};
    PD(setPdpClassCount_action_spec_t) action{};
    u32 number = 0;
    u8 is_default = 0;
    recorder::answer.action = 0x20000145;
    recorder::answer.resource_count = 1;
    recorder::answer.resources[0] = {0x4000005, 9, {}, 2};
    recorder::failing_call = 2;
    recorder::failing_status = 1;
    EXPECT_EQ(PD(pdpPolicy_get_entry)(sess, device, 7, 0, &key, nullptr, &action, &number, &is_default), 0u);
    EXPECT_EQ(action.action_counterIndex, 65535u);
    expect_line("bf_sys_calloc(0x1, 0x8)");
}

// ---- The catalogue ----------------------------------------------------------------------------------------

TEST(ActionEnum, GoesBothWaysAndKnowsWholeNamesOnly)
{
    EXPECT_STREQ(PD(action_enum_to_string)(0), "p4_pd_tessel_switch_setPhase0");
    EXPECT_STREQ(PD(action_enum_to_string)(297), "p4_pd_tessel_switch_needVlanEncap");
    for (const u32 number : {298u, 0xffffffffu})
        EXPECT_EQ(PD(action_enum_to_string)(number), nullptr);
    for (u32 number = 0; number < 298; ++number) {
        const std::string name = std::string("p4_pd_tessel_switch_") + reflection::actions()[number]->name;
        EXPECT_EQ(PD(action_enum_to_string)(number), name);
        EXPECT_EQ(PD(action_name_strings)[number], name);
        EXPECT_EQ(PD(action_string_to_enum)(name.c_str()), number) << name;
    }
    EXPECT_EQ(PD(action_string_to_enum)(nullptr), 298u);
    for (const char *name : {"", "setPhase0", "p4_pd_tessel_switch_", "p4_pd_tessel_switch_setPhase",
                             "p4_pd_tessel_switch_setPhase00", "P4_PD_TESSEL_SWITCH_SETPHASE0"})
        EXPECT_EQ(PD(action_string_to_enum)(name), 298u) << name;
}

// The facts of catalogue_facts.txt that begin with `kind`: name, then the words behind it.
std::map<std::string, recorder::Lines> facts(const std::string &kind)
{
    std::ifstream file(TS_SOURCE_DIR "/tests/catalogue_facts.txt");
    std::map<std::string, recorder::Lines> found;
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        std::string first, name;
        if (words >> first >> name && first == kind)
            found[name] = recorder::Lines(std::istream_iterator<std::string>(words), {});
    }
    return found;
}

TEST(Catalogue, SizesOfImages)
{
    const auto keys = facts("key"), data = facts("data");
    EXPECT_EQ(keys.size(), 141u);
    EXPECT_EQ(data.size(), 156u);
    const auto number = [](const std::string &text) {
        return static_cast<u32>(std::stoul(text, nullptr, 0));
    };
    for (const auto &[name, fact] : keys)
        EXPECT_EQ(encoder::packed(*reflection::find_table(name)->row), number(fact[0])) << name;
    for (const pd::Action *action : reflection::actions())
        EXPECT_EQ(encoder::packed(*action),
                  data.contains(action->name) ? number(data.at(action->name)[0]) : 0)
            << action->name;
}

} // namespace
