// What TAB offers.
#include <gtest/gtest.h>

#include "commands.h"
#include "complete.h"

namespace {

TEST(Completion, FollowsTheUsageOfEachCommand)
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
        {"show --", {"--columns", "--hw", "--json", "--limit", "--sort"}},
        {"show --limit 3 l2Smac", {"l2SmacCheck"}},
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
