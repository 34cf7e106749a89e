// Schemas: worked texts, the totals of the whole catalogue, and every text against the formatter.
#include <map>
#include <set>

#include "text_fixture.h"

namespace {

using formatter::Slot;
using texts::text_of;
using Formats = std::map<std::string, std::set<std::string>>;

class Schema : public texts::Texts {
protected:
    Formats formats; // the names that each stands with

    static std::string schema(const std::string &table)
    {
        return text_of(reflection::find_table(table)->text.schema);
    }

    static std::string cli_schema(u32 handle)
    {
        return text_of([&](char *buf) { return PD(cli_schema)(handle, buf); });
    }

    void note_format(const Slot &slot)
    {
        if (slot.format != "None")
            formats[slot.format].insert(slot.name);
    }
};

constexpr char references[] =
    "( ('setMbrHdl',(('mbrHdl',None,32,None),)),( 'setGrpHdl', ( ( 'grpHdl', None, 32, None ), ) ) ))";

TEST_F(Schema, WorkedTexts)
{
    EXPECT_STREQ(PD(nop_schema)(), "( ('nop'),())");
    EXPECT_STREQ(PD(setPhase0_schema)(),
                 "( ('setPhase0'),(('ingVPort',None,14,None),('nativeAintf',None,16,None),"
                 "('switchPort',None,1,None),('physicalPort',None,2,None),))");
    EXPECT_STREQ(PD(ingressPortMapping_match_spec_schema)(),
                 "(( 'ingressPort','ig_intr_md_ingress_port',9,0x1ff,None,None,None),)");
    EXPECT_STREQ(PD(ipv4ShortMaskLpm_match_spec_schema)(),
                 "(( 'vrfId','l3Info_vrfId',8,0xff,None,None,None),"
                 "( 'dip','ingIpv4_dip',32,0xfff00000,'v4addr',None,None),"
                 "( 'dipPrefixLength','ingIpv4_dip_prefix_length',16,0xffff,None,None,None),)");
    const std::string wide = "128,0xffff0000000000000000000000000000";
    EXPECT_NE(std::string(PD(trapToCpu_match_spec_schema)())
                  .find("( 'ingIpv6Dip','ingIpv6_dip'," + wide + ",'v6addr',None,None)," +
                        "( 'ingIpv6DipMask','ingIpv6_dip_mask'," + wide + ",None,None,None),"),
              std::string::npos);
    EXPECT_EQ(schema("ingressPortMapping"),
              "( ('ingressPortMapping','mat',(False,)),(( "
              "'ingressPort','ig_intr_md_ingress_port',9,0x1ff,None,None,"
              "None),),(( "
              "('setPhase0'),(('ingVPort',None,14,None),('nativeAintf',None,16,None),('switchPort',None,1,"
              "None),('physicalPort',None,2,None),)),))");
    EXPECT_EQ(schema("queueCounters"),
              "( ('queueCounters','mat',(False,)),(),(( ('countEgressQueue'),()),))");
    EXPECT_EQ(schema("ecmpGroup"),
              std::string("( ('ecmpGroup','mat',(True,)),(( 'nextHop','l3_nextHop',14,0xff,None,"
                          "None,None),),") +
                  references);
    EXPECT_EQ(cli_schema(0x2000037),
              "(( ('fixL2SubintfAlignment'),()),( ('invalidateUcastEgressPort'),()),( ('setLagPort'),"
              "(('egrL2AintfPort','port',9,None),)),( ('setPhysicalPort'),()),( ('setTunnelInfo'),()),)");
    // By name, upper case first; not by number.
    EXPECT_TRUE(cli_schema(0x200001d).starts_with("(( ('NoAction'),()),( ('setEcmpNextHop'),(("));
    const std::string learning = schema("l2LearningLookup");
    EXPECT_LT(learning.find("'noOp'"), learning.find("'setL2LearningLookupMiss'"));
}

TEST_F(Schema, Actions)
{
    std::size_t longest = 0, empty = 0;
    each_action([&](const pd::Action &action, const reflection::ActionTextFunctions &text) {
        EXPECT_EQ(text.schema(), formatter::action_schema(action));
        longest = std::max(longest, std::string(text.schema()).size());
        empty += action.parameters.empty();
        std::ranges::for_each(formatter::slots_of(action), [&](const Slot &slot) { note_format(slot); });
    });
    EXPECT_EQ(empty, 142u);
    EXPECT_EQ(longest, 238u);
    EXPECT_EQ(std::string(PD(setMirrorPacketEncapGreIpv4_schema)()).size(), longest);
    EXPECT_EQ(
        formats,
        (Formats{{"'v4addr'", {"dip", "sip", "dipMask", "sipMask", "srcIp", "dstIp"}},
                 {"'mac'", {"dmacOui", "dmacStation", "routerMacOui", "routerMacStation", "oui", "station"}},
                 {"'port'", {"cpuPort", "egrL2AintfPort"}},
                 {"'dec'", {"partIdx"}}}));
}

TEST_F(Schema, Tables)
{
    std::map<std::size_t, std::string> by_size;
    std::size_t keys = 0, tuples = 0, partial = 0, longest = 0;
    each_table([&](const reflection::TableFunctions &table) {
        const std::string schema = text_of(table.text.schema);
        EXPECT_EQ(schema, formatter::table_schema(*table.row));
        EXPECT_EQ(schema, cli_schema(table.row->handle));
        by_size[schema.size()] = table.row->name;
        ASSERT_EQ(!table.text.match_spec_schema, table.row->key.empty());
        if (table.row->key.empty())
            return;
        EXPECT_EQ(table.text.match_spec_schema(), formatter::key_schema(*table.row));
        longest = std::max(longest, std::string(table.text.match_spec_schema()).size());
        ++keys;
        for (const Slot &slot : formatter::slots_of(*table.row)) {
            ++tuples;
            partial += formatter::is_partial(slot);
            note_format(slot);
        }
    });
    EXPECT_EQ(keys, 141u);
    EXPECT_EQ(tuples, 775u);
    EXPECT_EQ(partial, 56u);
    EXPECT_EQ(longest, 3084u);
    EXPECT_EQ(std::string(PD(finalDropControl_match_spec_schema)()).size(), longest);
    EXPECT_EQ(by_size.rbegin()->first, 3289u);
    EXPECT_EQ(by_size.rbegin()->second, "finalDropControl");
    EXPECT_EQ(std::next(by_size.rbegin())->first, 2719u);
    EXPECT_EQ(std::next(by_size.rbegin())->second, "trapToCpu");
    EXPECT_EQ(formats,
              (Formats{{"'v4addr'", {"outerIpv4Hdr_dip", "outerIpv4Hdr_sip", "ingIpv4_dip", "ingIpv4_sip"}},
                       {"'v6addr'", {"outerIpv6Hdr_dip", "outerIpv6Hdr_sip", "ingIpv6_dip", "ingIpv6_sip"}},
                       {"'mac'",
                        {"outerEthHdr_dmacOui", "outerEthHdr_dmacStation", "outerEthHdr_smacOui",
                         "outerEthHdr_smacStation", "ingMd_dmacOui", "ingMd_dmacStation", "ingMd_smacOui",
                         "ingMd_smacStation", "egrMd_dmacOui", "egrMd_dmacStation"}},
                       {"'port'", {"ig_intr_md_ingress_port", "eg_intr_md_egress_port"}},
                       {"'vport'", {"phase0_ingVPort"}},
                       {"'dec'", {"fibV4ResultX_partIdx"}}}));
}

TEST_F(Schema, ProfilesAndUnknownHandles)
{
    for (const reflection::ProfileFunctions *profile : reflection::profiles()) {
        EXPECT_EQ(text_of(profile->schema), formatter::profile_schema(*profile->row));
        EXPECT_EQ(text_of(profile->schema), cli_schema(profile->row->action_table));
    }
    for (const u32 handle : {0u, 0x1000000u, 0x100008du, 0x10000a0u, 0x2000000u, 0x200001cu, 0x3000001u, ~0u})
        EXPECT_EQ(cli_schema(handle), "()") << handle;
}

} // namespace
