// The shell's commands around the library's own texts, the comparison with the hardware and completion.
#include <gtest/gtest.h>

#include "commands.h"
#include "complete.h"
#include "shell_fixture.h"

namespace {

const std::string port =
    "add ingressPortMapping ingressPort=1 : setPhase0 ingVPort=1 nativeAintf=2 switchPort=1 "
    "physicalPort=0\n";
const std::string port_value = "((( 0x001,),('setPhase0',(0x0001,0x0002,0x1,0x0,)),),(0,True))";
const std::string routes = "add ipv4ShortMaskLpm vrfId=5 dip=10.16.0.0/12 : setNextHop nextHop=7\n"
                           "add ipv4ShortMaskLpm vrfId=6 dip=10.32.0.0/12 : setNextHop nextHop=8\n";
const std::string smac = "add l2SmacCheck smac=01:80:c2:00:00:00/44 priority=10 : setIllegalSmac\n";
const std::string lag = "member add lagPortActionProfile port24 : setLagPort egrL2AintfPort=24\n"
                        "group create lagPortActionProfile channel\n"
                        "group add lagPortActionProfile channel port24\n"
                        "add lagGroup egrL2AintfUnresolved=0x10001 priority=10 : group channel\n";

TEST_F(Shell, shows_schemas_and_values)
{
    const std::string schema =
        "( ('ingressPortMapping','mat',(False,)),(( "
        "'ingressPort','ig_intr_md_ingress_port',9,0x1ff,None,None,"
        "None),),(( ('setPhase0'),(('ingVPort',None,14,None),('nativeAintf',None,16,None),"
        "('switchPort',None,1,None),('physicalPort',None,2,None),)),))";
    const struct {
        std::string before, line, output;
    } cases[] = {
        {"", "schema setLagPort --json",
         R"({"action":"setLagPort","parameters":[{"parameter":"egrL2AintfPort","width":9,"format":"port"}]})"},
        {"", "schema lagGroup --json",
         R"({"table":"lagGroup","indirect":true,"key":[{"field":"egrL2AintfUnresolved",)"
         R"("member":"egrMd_egrL2AintfUnresolved","width":20,"mask":"0xfffff"},)"
         R"({"field":"egrL2AintfUnresolvedMask",)"
         R"("member":"egrMd_egrL2AintfUnresolved_mask","width":20,"mask":"0xfffff"}],)"
         R"("actions":[{"action":"setMbrHdl","parameters":[{"parameter":"mbrHdl",)"
         R"("width":32}]},{"action":"setGrpHdl","parameters":[{"parameter":"grpHdl",)"
         R"("width":32}]}]})"},
        {port, "value ingressPortMapping 1", port_value},
        {port, "value --hw ingressPortMapping ingressPort=1", port_value},
        {port, "value --json ingressPortMapping default",
         R"j({"table":"ingressPortMapping","value":"(((),('setPhase0',(0x0000,0x0000,0x0,0x0,)),),(0,True))"})j"},
        {lag, "value lagGroup 1", "((( 0x10001,0xfffff,),('setGrpHdl',(0x1,))),(10,True))"},
        {lag, "value --json lagPortActionProfile port24",
         R"({"profile":"lagPortActionProfile","member":1,"value":"('setLagPort',(0x018,)),"})"},
        {"", "value parse ingressPortMapping " + port_value,
         "ingressPort=1 : setPhase0 ingVPort=1 nativeAintf=2 switchPort=1 physicalPort=0"},
        {"", "value parse ipv4ShortMaskLpm ( 0x05,0x0a100000,0x000c,),", "vrfId=5 dip=10.16.0.0/12"},
        {"",
         "value parse --json l2SmacCheck ((( "
         "0x0180c2,0xffffff,0x000000,0xfffff0,),('NoAction',()),),(-1,True))",
         R"({"table":"l2SmacCheck","key":{"smac":{"value":"01:80:c2:00:00:00","mask":"ff:ff:ff:ff:ff:f0"}},)"
         R"("priority":4294967295,"action":"NoAction","parameters":{}})"},
        {"", "value parse lagGroup (((),),(0,True))", "default entry: nothing"},
        {"", "value parse lagGroup ('setMbrHdl',(0xa,))", "member 10"},
        {port, "print ingressPortMapping 1",
         "p4_pd_tessel_switch_ingressPortMapping_match_spec_t:\n  ig_intr_md_ingress_port: 0x001\n"
         "p4_pd_tessel_switch_setPhase0:\n  action_ingVPort: 0x0001\n  action_nativeAintf: 0x0002\n"
         "  action_switchPort: 0x1\n  action_physicalPort: 0x0"},
        {lag, "print --json lagPortActionProfile 1",
         R"({"profile":"lagPortActionProfile","member":1,"text":"p4_pd_tessel_switch_setLagPort:\u000a)"
         R"(  action_egrL2AintfPort: 0x018"})"},
        {"add l2DmacClassify ingressPort=0x85 dmac=01:80:c2:00:00:0e priority=1 : onMiss\n",
         "label l2DmacClassify 1", "Ingress Port 0x05 dmac 0180.c200.000e "},
        {"", "label l2DmacClassify default --json",
         R"({"table":"l2DmacClassify","label":"Ingress Port 0x00 "})"},
        {"", "label egressTcamRaclBank1 default", "nothing to tell"},
        {"", "decode match ingressPortMapping 0123", "ingressPort=291"},
        {"", "decode match ipv4FinalResolve0 00000a010200 0000ffffff00 partition=300",
         "partIdx=300 dip=10.1.2.0/24"},
        {"", "decode match --json l2SmacCheck 0180C2000000 fffffffffff0",
         R"({"table":"l2SmacCheck","key":{"smac":{"value":"01:80:c2:00:00:00","mask":"ff:ff:ff:ff:ff:f0"}}})"},
        {"", "decode action setPhase0 000100020103",
         "setPhase0 ingVPort=1 nativeAintf=2 switchPort=1 physicalPort=3"},
    };
    EXPECT_EQ(output_of("schema ingressPortMapping"), schema + "\n");
    for (const auto &[before, line, output] : cases) {
        ts_model_reset();
        EXPECT_EQ(output_of(before + line), output + "\n") << line;
    }
}

TEST_F(Shell, tells_every_difference_from_the_hardware)
{
    const std::string left_out = "not compared without --all-bits: 20 of 32 bits of ingIpv4_dip\n";
    const std::string same = "3 compared, the default entry among them, 0 different\n" + left_out;
    const std::string one = "3 compared, the default entry among them, 1 different\n" + left_out;
    const struct {
        std::string line, output;
    } cases[] = {
        {"", same},
        {"corrupt ipv4ShortMaskLpm 1 : key vrfId=6 dip=10.64.0.0/10",
         "entry 1: l3Info_vrfId: 5 in software, 6 in hardware\n"
         "entry 1: ingIpv4_dip: 10.16.0.0 in software, 10.64.0.0 in hardware\n"
         "entry 1: ingIpv4_dip_prefix_length: 12 in software, 10 in hardware\n" +
             one},
        {"corrupt ipv4ShortMaskLpm vrfId=6 dip=10.32.0.0/12 : setNextHop nextHop=9",
         "entry 2: action_nextHop: 8 in software, 9 in hardware\n" + one},
        {"corrupt ipv4ShortMaskLpm 2 : missing",
         "entry 2: not in hardware: the driver refused: no such object (status 4)\n" + one},
        {"corrupt ipv4ShortMaskLpm 1 : setNextHop nextHop=9\nmodify ipv4ShortMaskLpm 1 : setNextHop "
         "nextHop=1",
         same},
    };
    for (const auto &[line, output] : cases) {
        ts_model_reset();
        EXPECT_EQ(output_of(routes + line + "\ndiff ipv4ShortMaskLpm"), output) << line;
    }
    ts_model_reset();
    EXPECT_EQ(
        output_of(smac + "corrupt l2SmacCheck 1 : key smac=01:80:c2:00:00:00/45\ndiff --json l2SmacCheck\n"
                         "corrupt l2SmacCheck default : setIllegalSmac\ncorrupt l2SmacCheck 1 : missing\n"
                         "diff l2SmacCheck --json"),
        R"j({"table":"l2SmacCheck","entry":1,"difference":"outerEthHdr_smacStation_mask","software":"ff:ff:f0","hardware":"ff:ff:f8"}
{"table":"l2SmacCheck","compared":2,"different":1}
{"table":"l2SmacCheck","entry":1,"missing":"hardware","why":"the driver refused: no such object (status 4)"}
{"table":"l2SmacCheck","difference":"action","software":"NoAction","hardware":"setIllegalSmac"}
{"table":"l2SmacCheck","compared":2,"different":2}
)j");
    ts_model_reset();
    EXPECT_EQ(output_of(lag + "corrupt lagGroup 1 : key egrL2AintfUnresolved=1\ndiff lagGroup"),
              "entry 1: egrMd_egrL2AintfUnresolved: 65537 in software, 1 in hardware\n"
              "2 compared, the default entry among them, 1 different\n");
}

TEST_F(Shell, compares_every_table_as_the_library_does)
{
    const std::string same = "1 compared, the default entry among them, 0 different\n";
    for (const reflection::TableFunctions *table : reflection::tables()) {
        const std::string name = table->row->name;
        EXPECT_EQ(output_of("diff " + name).substr(0, same.size()), same) << name;
        EXPECT_EQ(output_of("diff --all-bits " + name), same);
    }
}

TEST_F(Shell, refuses_bad_inspections)
{
    const struct {
        std::string line, message;
    } cases[] = {
        {"schema @l2SmacChek",
         "unknown table, action profile or action 'l2SmacChek': did you mean l2SmacCheck?"},
        {"value ingressPortMapping@", "missing entry: a handle, 'default' or a key"},
        {"value parse ingressPortMapping@", "missing value text, such as 'value' prints"},
        {"value parse ingressPortMapping ( 0x0@g1,),",
         "character 6: expected 0x and 3 lower-case hex digits for "
         "ig_intr_md_ingress_port instead of 'g1,),'"},
        {"label @l2SmacCheck", "l2SmacCheck has no labels, these have: l2DmacClassify, ingressPortDropCheck, "
                               "trapToCpu, haloCounters, finalDropControl, egressTcamV6RaclBank1, "
                               "egressTcamRaclBank1, egressPortDropCheck"},
        {"corrupt lagGroup 1 : @nop", "unknown word 'nop': there are member, group, key, missing"},
        {"decode @key", "unknown word 'key': there are match, action"},
        {"decode match ingressPortMapping @012",
         "'012' has 3 digits: give the value image of 2 bytes, 4 hex digits"},
        {"decode match ingressPortMapping 0123 01@x3",
         "'x' is no hex digit: give the mask image of 2 bytes, 4 hex digits"},
        {"decode action setPhase0@", "missing the image of 6 bytes, 12 hex digits"},
    };
    for (const auto &[line, message] : cases)
        expect_bad(line, message);
    EXPECT_EQ(run("value l2SmacCheck 7").err, "t:1:1: the driver refused: no such object (status 4)\n");
}

TEST(Completion, follows_the_usage_of_each_command)
{
    using Words = std::vector<std::string>;
    const struct {
        std::string line;
        Words words;
    } cases[] = {
        {"dec", {"decode"}},
        {"  res", {"reset", "restart"}},
        {"nothing ", {}},
        {"describe ingressPortM", {"ingressPortMapping"}},
        {"describe lagPort", {"lagPortActionProfile"}},
        {"schema setPha", {"setPhase0"}},
        {"watch l2SmacCheck ", {"off", "on"}},
        {"save file l2Sm", {"l2SmacCheck"}},
        {"save file l2SmacCheck ipv4Sh", {"ipv4ShortMaskLpm"}},
        {"member sh", {"show"}},
        {"member show egrM", {"egrMirrorLagPortActionProfile"}},
        {"decode action setPha", {"setPhase0"}},
        {"show --", {"--hw", "--json"}},
        {"add ipv4ShortMaskLpm ", {"dip=", "vrfId="}},
        {"add ipv4ShortMaskLpm vrfId=5 d", {"dip="}},
        {"add ipv4ShortMaskLpm vrfId=5 dip=10.1.0.0/16 ", {":"}},
        {"add l2SmacCheck smac=1 ", {":", "priority="}},
        {"add ipv4ShortMaskLpm vrfId=5 dip=10.1.0.0/16 : setN", {"setNextHop", "setNextHop2", "setNextHop3"}},
        {"add ipv4ShortMaskLpm vrfId=5 dip=10.1.0.0/16 : setNextHop ", {"nextHop="}},
        {"add lagGroup egrL2AintfUnresolved=1 priority=1 : ", {"group", "member"}},
        {"member add lagPortActionProfile port24 : setL", {"setLagPort"}},
        {"value l2SmacCheck ", {"default", "smac="}},
        {"counter read ingressPortDropC", {"ingressPortDropCount"}},
        {"counter read l2DmacClassifyCount ", {"default", "dmac=", "ingressPort="}},
        {"counter read l2DmacClassifyCount dmac=1 ", {"ingressPort=", "priority="}},
        {"counter read pdpClassCount ", {}},
        {"add ipv4ShortMaskLpm dip=", {}},
        {"group add lagPortActionProfile ", {"web"}},
        {"group add lagPortActionProfile web ", {"p1", "p2"}},
        {"group add lagPortActionProfile web p1 ", {"p1", "p2"}},
        {"group state lagPortActionProfile web p1 ", {"active", "inactive"}},
        {"group fallback lagPortActionProfile ", {"none", "p1", "p2"}},
        {"member delete lagPortActionProfile p", {"p1", "p2"}},
        {"add lagGroup priority=1 : group ", {"web"}},
        {"corrupt lagGroup 1 : ", {"group", "key", "member", "missing"}},
        {"corrupt l2SmacCheck 1 : key ", {"smac="}},
        {"corrupt l2SmacCheck 1 : missing ", {}},
        {"idle enable l2LearningLookup ",
         {"mode=", "param_1=", "param_2=", "param_3=", "param_4=", "param_5="}},
        {"idle enable l2LearningLookup mode=1 param_2=3 ", {"param_1=", "param_3=", "param_4=", "param_5="}},
        {"meter set stormControlMeter ", {"default", "dmac=", "ingressPort="}},
        {"meter set pdpMeter 1 : peak_rate=1 peak", {"peak_burst="}},
        {"meter set pdpMeter 1 : type=", {"type=aware", "type=unaware"}},
        {"digest watch macLearningDigest ", {"hold", "off", "on"}},
        {"digest send macLearningDigest smac=1 ", {":", "ingL2Aintf=", "ingL2Domain="}},
        {"digest send macLearningDigest smac=1 : ", {"ingL2Aintf=", "ingL2Domain=", "smac="}},
        {"hash value hashOuterIpv4Hdr ", {}},
        {"hash attributes hashOuterIpv4Hdr ", {}},
        {"snapshot trigger 1 ", {}},
        {"default l2SmacCheck ", {":"}},
        {"default l2SmacCheck : ", {"NoAction"}},
        {"default lagGroup : member ", {"p1", "p2"}},
        {"entry l2SmacCheck smac=1 ", {"priority="}},
        {"show --json l2SmacC", {"l2SmacCheck"}},
        {"lookup --hw lagGroup egrL2AintfUnresolved=1 ", {"bytes=", "hash=", "packets="}},
        {"lookup l2SmacCheck smac=1 packets=1 ", {"bytes="}},
        {"add l2LearningLookup smac=1 : noOp ", {"ttl="}},
        {"add lagGroup egrL2AintfUnresolved=1 : group web ", {"priority="}},
        {"idle ttl l2LearningLookup 1 ", {"ttl="}},
        {"corrupt l2SmacCheck 1 : ", {"NoAction", "key", "missing", "setIllegalSmac"}},
        {"corrupt lagGroup 1 : missing ", {}},
        {"corrupt lagGroup 1 : key ", {"egrL2AintfUnresolved="}},
        {"hash algorithm hashInnerI", {"hashInnerIpAndL4Hdr", "hashInnerIpv4Hdr", "hashInnerIpv6Hdr"}},
    };
    const shell::ObjectNames names = [](const auto &, shell::Kind kind) {
        return kind == shell::Kind::member ? Words{"p1", "p2"} : Words{"web"};
    };
    for (const auto &[line, words] : cases)
        EXPECT_EQ(shell::complete(line, names), words) << line;
    EXPECT_EQ(shell::complete("").size(), shell::commands().size());
    EXPECT_TRUE(shell::completes_a_file("load exa") && !shell::completes_a_file("load") &&
                !shell::completes_a_file("show l2"));
}

} // namespace
