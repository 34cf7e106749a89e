// The shell's commands for counters, meters, registers, ageing and the services beside the tables.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>

#include "shell_fixture.h"

namespace {

class ShellResources : public Shell {
protected:
    // A script and the lines that it prints, beginning with empty tables.
    using Case = std::pair<std::string, std::string>;

    static void expect_outputs(const std::vector<Case> &cases)
    {
        for (const auto &[script, out] : cases) {
            ts_model_reset();
            EXPECT_EQ(output_of(script), out + "\n") << script;
        }
    }
};

const std::string classify =
    "add l2DmacClassify ingressPort=3 dmac=ff:ff:ff:ff:ff:ff priority=10 : setBcast\n"
    "add l2DmacClassify priority=30 ingressPort=3 : setUcast\n";
const std::string storm =
    "add l2LookupMiss ingressPort=3 priority=10 meter=1,2,3,4,aware : l2LookupBcastHit\n";
const std::string station =
    "add l2LearningLookup smac=00:00:5e:00:53:03 ingL2Domain=10 ingL2Aintf=7 ttl=30 : noOp\n"
    "add l2LearningLookup smac=00:00:5e:00:53:04 ingL2Domain=10 ingL2Aintf=8 : noOp\n"
    "idle enable l2LearningLookup\n";

TEST_F(ShellResources, counts_what_is_looked_up)
{
    const std::string traffic =
        classify + "lookup l2DmacClassify ingressPort=3 dmac=ff:ff:ff:ff:ff:ff packets=4 bytes=256\n"
                   "lookup l2DmacClassify ingressPort=3 dmac=ff:ff:ff:ff:ff:ff\n"
                   "lookup l2DmacClassify ingressPort=9 dmac=0 packets=2\n";
    const std::string told =
        "entry 1: setBcast (the lowest priority number of 2 matches, 10 before 30 of entry 2)\n"
        "entry 1: setBcast (the lowest priority number of 2 matches, 10 before 30 of entry 2)\n"
        "miss: the default action runs: onMiss\n";
    expect_outputs(
        {{traffic + "counter read l2DmacClassifyCount 1\ncounter l2DmacClassify --hw",
          told + R"(packets=0 bytes=0
     entry       packets         bytes  key
         1             4           256  ingressPort=3 dmac=ff:ff:ff:ff:ff:ff priority=10
         2             0             0  ingressPort=3 priority=30
   default             2             0)"},
         {traffic + "counter sync l2DmacClassifyCount\ncounter read l2DmacClassifyCount 1\n"
                    "counter read l2DmacClassifyCount default --json\ncounter l2DmacClassify --json",
          told + "packets=4 bytes=256\n"
                 R"({"counter":"l2DmacClassifyCount","entry":2147483647,"packets":2,"bytes":0}
{"counter":"l2DmacClassifyCount","entry":1,"packets":4,"bytes":256,"key":{"ingressPort":3,"dmac":{"value":"ff:ff:ff:ff:ff:ff","mask":"ff:ff:ff:ff:ff:ff"}},"priority":10}
{"counter":"l2DmacClassifyCount","entry":2,"packets":0,"bytes":0,"key":{"ingressPort":3,"dmac":{"value":"00:00:00:00:00:00","mask":"00:00:00:00:00:00"}},"priority":30}
{"counter":"l2DmacClassifyCount","default":true,"packets":2,"bytes":0})"},
         {classify +
              "counter write l2DmacClassifyCount ingressPort=3 priority=30 : bytes=9 packets=0x1ffffffff\n"
              "counter read l2DmacClassifyCount 2\n"
              "counter write pdpClassCount 7 : packets=1\ncounter read pdpClassCount 7 --json",
          "packets=8589934591 bytes=9\n"
          R"({"counter":"pdpClassCount","index":7,"packets":1,"bytes":0})"}});
}

TEST_F(ShellResources, sets_meters_and_registers)
{
    expect_outputs(
        {{storm +
              "meter read stormControlMeter 1\n"
              "meter set stormControlMeter ingressPort=3 priority=10 : type=unaware peak_rate=7 peak_burst=8 "
              "committed_rate=5 committed_burst=6\nmeter read stormControlMeter 1 --json",
          "committed_rate=1 committed_burst=2 peak_rate=3 peak_burst=4 type=aware\n"
          R"({"meter":"stormControlMeter","entry":1,"committed_rate":5,"committed_burst":6,"peak_rate":7,"peak_burst":8,"type":"unaware"})"},
         {R"(meter set pdpMeter 9 : committed_rate=1 committed_burst=2 peak_rate=3 peak_burst=4294967295 type=aware
meter read pdpMeter 9
meter adjust pdpMeter 20
meter adjust pdpMeter
meter adjust pdpMeter --json)",
          R"(committed_rate=1 committed_burst=2 peak_rate=3 peak_burst=4294967295 type=aware
bytes added to each packet: 20
{"meter":"pdpMeter","adjust":20})"},
         {"register write ingStpCheckData 5 1\nregister read ingStpCheckData 4 count=2\n"
          "register fill ingStpCheckData 1\nregister reset ingStpCheckData 4 count=1\n"
          "register read ingStpCheckData 3 count=3 --json\nregister reset ingStpCheckData\n"
          "register read ingStpCheckData 4095 count=9 --hw",
          "4: 0 0 0 0\n5: 1 1 1 1\n"
          R"({"register":"ingStpCheckData","index":3,"values":[1,1,1,1]}
{"register":"ingStpCheckData","index":4,"values":[0,0,0,0]}
{"register":"ingStpCheckData","index":5,"values":[1,1,1,1]})"
          "\n4095: 0 0 0 0"}});
    ts_model_reset();
    const u8 set = 1;
    ts_model_set_hardware_register(0, 0x6000001, 8, 2, &set, 1);
    EXPECT_EQ(output_of("register read ingStpCheckData 8\nregister read ingStpCheckData 8 --hw\n"
                        "register sync ingStpCheckData\nregister read ingStpCheckData 8"),
              "8: 0 0 0 0\n8: 0 0 1 0\n8: 0 0 1 0\n");
}

TEST_F(ShellResources, tells_which_entries_ran_idle)
{
    expect_outputs(
        {{station + "clock 29\nclock 1\nidle show l2LearningLookup\nidle hit l2LearningLookup 1\nclock 29\n"
                    "lookup l2LearningLookup smac=00:00:5e:00:53:03 ingL2Domain=10 ingL2Aintf=7 "
                    "packets=1\nclock 29\n"
                    "idle ttl l2LearningLookup 1\nclock 1 --json",
          "l2LearningLookup: entry 1 ran idle: smac=00:00:5e:00:53:03 ingL2Domain=10 ingL2Aintf=7\n"
          "     entry         ttl  state   key\n"
          "         1          30  idle    smac=00:00:5e:00:53:03 ingL2Domain=10 ingL2Aintf=7\n"
          "         2           0  active  smac=00:00:5e:00:53:04 ingL2Domain=10 ingL2Aintf=8\n"
          "entry 1: noOp (an exact match)\nttl=30, active\n"
          R"({"idle":"l2LearningLookup","entry":1,"key":{"smac":"00:00:5e:00:53:03","ingL2Domain":10,"ingL2Aintf":7}})"},
         {station +
              "idle ttl l2LearningLookup smac=00:00:5e:00:53:04 ingL2Domain=10 ingL2Aintf=8 ttl=5\n"
              "clock 4\nidle restart l2LearningLookup 2\nclock 4\nidle expire l2LearningLookup 2\nclock 5\n"
              "idle ttl l2LearningLookup 2 --json\nidle disable l2LearningLookup\nclock 100",
          R"({"table":"l2LearningLookup","entry":2,"ttl":5,"active":false})"},
         {"idle enable l2LearningLookup param_5=5 param_2=2\nidle params l2LearningLookup --json",
          R"({"table":"l2LearningLookup","mode":1,"param_1":0,"param_2":2,"param_3":0,"param_4":0,"param_5":5})"}});
}

TEST_F(ShellResources, decodes_digests_and_hands_them_back)
{
    const std::string send =
        "digest send macLearningDigest smac=00:11:22:33:44:55 ingL2Domain=0x1234 ingL2Aintf=0x89abcdef : "
        "ingMd_smacOui=0xaabbcc smacStation=1 ingL2Domain=1 ingL2Aintf=2\n";
    const std::string ptp =
        "digest watch ptpDigest\ndigest send ptpDigest ingress_mac_tstamp=0x123456789abc ingL2Aintf=3";
    expect_outputs({{"digest watch macLearningDigest\n" + send + "digest pending macLearningDigest",
                     "  macLearningDigest: smac=00:11:22:33:44:55 ingL2Domain=4660 ingL2Aintf=2309737967\n"
                     "  macLearningDigest: smac=aa:bb:cc:00:00:01 ingL2Domain=1 ingL2Aintf=2\nmessages: 0"},
                    {"digest watch ptpDigest hold\n" + ptp.substr(ptp.find('\n') + 1) +
                         "\ndigest pending ptpDigest\ndigest ack ptpDigest\ndigest pending ptpDigest --json\n"
                         "digest timeout 77\ndigest timeout",
                     "  ptpDigest: ingress_mac_tstamp=20015998343868 ingL2Aintf=3\nmessages: 1\n"
                     R"({"digest":"ptpDigest","messages":0})"
                     "\ntimeout: 77"}});
    ts_model_reset();
    EXPECT_EQ(output_of(ptp, {.json = true}),
              R"({"digest":"ptpDigest","fields":{"ingress_mac_tstamp":20015998343868,"ingL2Aintf":3}})"
              "\n");
    EXPECT_EQ(
        run("digest watch ptpDigest\ndigest watch ptpDigest off\n" + ptp.substr(ptp.find('\n') + 1)).err,
        "t:3:1: the driver refused: no such object (status 4)\n");
}

TEST_F(ShellResources, serves_value_sets_and_hashes)
{
    expect_outputs(
        {{"pvs add vxlan_ports key=4789\npvs add vxlan_ports key=8472&0xfff0 scope=1,2,3\n"
          "pvs add vxlan_ports key=6081\n"
          "pvs modify vxlan_ports 3 key=6082/24\npvs show vxlan_ports\npvs delete vxlan_ports 1\n"
          "pvs find vxlan_ports key=8479&0xfff0 scope=1,2,3\npvs show vxlan_ports scope=1,2,3 --json\n"
          "pvs property vxlan_ports 1 5 argument=2\npvs property vxlan_ports 1 argument=2",
          "     entry  key\n         1  4789\n         3  5888&0xffffff00\nentry 2\n"
          R"({"set":"vxlan_ports","entry":2,"key":{"value":8464,"mask":65520}})"
          "\nproperty 1: 5"},
         // The check values of both algorithms: those of the text 123456789.
         {"hash value hashOuterIpv4Hdr 72:0x313233343536373839\n"
          "hash value egrVlanStpHash 8:0x31 32:0x32333435 32:0x36373839\n"
          "hash value hashOuterIpv4Hdr 4:3 60:0x132333435363738 8:0x39 --json",
          "0xcbf43926\n0xbb3d\n"
          R"({"calculation":"hashOuterIpv4Hdr","value":3421780262})"},
         {"hash show queueCounterHash\nhash input queueCounterHash 0\nhash algorithm queueCounterHash 0\n"
          "hash seed queueCounterHash 7 8\nhash attributes queueCounterHash 1,2,3 4,5,6\n"
          "hash show queueCounterHash\nhash show queueCounterHash --json",
          "input 0, algorithm 0, seed 0 0, attributes: none\n"
          R"(input 0, algorithm 0, seed 7 8, attributes: 1,2,3 4,5,6
{"calculation":"queueCounterHash","input":0,"algorithm":0,"seed":7,"second_seed":8,"attributes":[{"field":1,"type":2,"value":3},{"field":4,"type":5,"value":6}]})"}});
}

TEST_F(ShellResources, captures_look_ups_in_snapshots)
{
    const std::string create = "snapshot create egress first_stage=3 last_stage=4\n";
    const std::string packet = "lookup ipv4ShortMaskLpm vrfId=5 dip=10.1.2.3 packets=1\n";
    const std::string told = "miss: the default action runs: ipv4ShortMaskLpmMiss\n";
    EXPECT_EQ(
        output_of(create + "snapshot show 6\nsnapshot trigger 6\n" + packet +
                      "lookup ipv4ShortMaskLpm vrfId=5 dip=10.1.2.9\n" + packet + packet +
                      "snapshot show 6\nsnapshot show 6 --json\n",
                  {.verbose = true}),
        "snapshot 6\nsnapshot 6: egress, stages 3 to 4, no trigger\n" + told + told + told + told +
            "snapshot 6: egress, stages 3 to 4, armed\n  stage 3: 050a010203\n  stage 4: 050a010203\n"
            R"({"snapshot":6,"direction":"egress","first_stage":3,"last_stage":4,"armed":true,"captured":["050a010203","050a010203"]})"
            "\n");
    EXPECT_EQ(run("snapshot delete 6\nsnapshot show 6").err,
              "t:2:1: the driver refused: no such object (status 4)\n");
    // Fields of four bytes at 0 and of one at 4; at 1, one of two in the other direction.
    ts_model_reset();
    const std::string egress = trace_of("snapshot trigger 6 0=0x01020304/20 4=7&5", create);
    EXPECT_EQ(part(egress, "spec=", "000000"), "0102000005");
    EXPECT_EQ(part(egress, "mask=", "000000"), "fffff00005");
    ts_model_reset();
    const std::string ingress = trace_of("snapshot trigger 4 0=1 1=0x203", "snapshot create ingress");
    EXPECT_EQ(part(ingress, "spec=", "000000"), "010203");
}

TEST_F(ShellResources, saves_meters_and_times_to_live)
{
    const std::string file = testing::TempDir() + "shell_resources_test.tsl";
    output_of(storm + station +
              "meter set stormControlMeter 1 : committed_rate=5 committed_burst=6 peak_rate=7 peak_burst=8 "
              "type=unaware\n"
              "default l2LookupMiss : NoAction meter=9,8,7,6,aware\n"
              "add ipv4McGroupVlan dip=224.0.1.1 ingL3Aintf=2 : NoAction\nidle ttl ipv4McGroupVlan 1 ttl=60\n"
              "save " +
              file + " l2LookupMiss l2LearningLookup ipv4McGroupVlan");
    std::ifstream in{file};
    EXPECT_EQ((std::string{std::istreambuf_iterator<char>{in}, {}}),
              "# Written by save. Load it into empty tables.\n"
              "default l2LookupMiss : NoAction meter=9,8,7,6,aware\n"
              "add l2LookupMiss ingressPort=3 priority=10 : l2LookupBcastHit meter=5,6,7,8,unaware\n"
              "default l2LearningLookup : setL2LearningLookupMiss\n"
              "add l2LearningLookup smac=00:00:5e:00:53:03 ingL2Domain=10 ingL2Aintf=7 : noOp ttl=30\n"
              "add l2LearningLookup smac=00:00:5e:00:53:04 ingL2Domain=10 ingL2Aintf=8 : noOp\n"
              "default ipv4McGroupVlan : NoAction\n"
              "add ipv4McGroupVlan dip=224.0.1.1 ingL3Aintf=2 : NoAction\n"
              "idle ttl ipv4McGroupVlan dip=224.0.1.1 ingL3Aintf=2 ttl=60\n");
    ts_model_reset();
    EXPECT_EQ(output_of("load " + file + "\nmeter read stormControlMeter 1\nidle ttl ipv4McGroupVlan 1"),
              "committed_rate=5 committed_burst=6 peak_rate=7 peak_burst=8 type=unaware\nttl=60, active\n");
    std::remove(file.c_str());
}

TEST_F(ShellResources, explains_bad_lines)
{
    std::istringstream lines{R"(counter@ => missing word: there are read, write, sync
counter @l2SmacCheck => unknown counter or word 'l2SmacCheck': there are l2DmacClassifyCount, ingressPortDropCount, trapToCpuCount, haloCount, finalDropControlCount, egressTcamV6RaclBank1Count, egressTcamRaclBank1Count, egressPortDropCount, read, write, sync
counter read pdpClassCount 1 @a=2 => unknown parameter 'a': pdpClassCount has none
counter read l2DmacClassifyCount ingressPort=3@ => l2DmacClassify has a ternary field: give priority=N
counter write pdpClassCount 1@ => missing ':' and packets=N [bytes=M], with blanks around the colon
counter write pdpClassCount 1 : bytes=3@ => missing packets=N: pdpClassCount has packets, bytes
counter write pdpClassCount 1 : packets=1 @packets=2 => packets is given twice
counter write pdpClassCount 1 : packets=@18446744073709551616 => packets: '18446744073709551616' does not fit into 64 bits: give at most 18446744073709551615 (0xffffffffffffffff)
lookup l2SmacCheck smac=0 bytes=3@ => bytes=N needs packets=N: a look-up without packets counts nothing
meter read @pdpMetr 1 => unknown meter 'pdpMetr': there are stormControlMeter, pdpMeter, ingressMirrorMeter, egressMirrorMeter
meter read stormControlMeter@ => missing entry: a handle, 'default' or a key
meter set pdpMeter 1 : type=@red => unknown type 'red': there are aware, unaware
register read ingStpCheckData 1 @size=3 => unknown name 'size': ingStpCheckData has count
idle enable @l2SmacCheck => l2SmacCheck has entries that do not age
digest watch macLearningDigest @maybe => unknown state 'maybe': there are on, off, hold
digest send macLearningDigest smac=1@ => missing fields of macLearningDigest: ingL2Domain, ingL2Aintf
pvs add vxlan_ports scope=@1,2 => scope: too few parts: write scope=A,B,C
pvs modify vxlan_ports 5 @scope=1,2,3 => scope does not belong here: it stands in pvs add, find and show
hash value hashOuterIpv4Hdr @0:5 => a field has at least 1 bit
hash attributes hashOuterIpv4Hdr @1,2 => '1,2' is no attribute: write FIELD,TYPE,VALUE
snapshot create @sideways => unknown direction 'sideways': there are ingress, egress
snapshot trigger 4 @2=1 => offset 2 lies within the field of 2 bytes at 1
snapshot trigger 4 1=7 @1=8 => offset 1 is given twice
snapshot trigger 4 @1 => '1' is not of the form OFFSET=VALUE
)"};
    for (std::string line; std::getline(lines, line);)
        expect_bad(line.substr(0, line.find(" => ")), line.substr(line.find(" => ") + 4));
}

} // namespace
