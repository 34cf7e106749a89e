// The shell, in process: scripts go in, output, messages, exit status and the model's trace come out.
#include <algorithm>
#include <cstdio>
#include <random>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <vector>

#include "commands.h"
#include "progress.h"
#include "reflection.h"
#include "shell_fixture.h"

namespace {

// ---- Requests ----

TEST_F(Shell, traces_each_kind_of_request)
{
    const std::string add = "add ingressPortMapping ingressPort=0x123 : setPhase0 ingVPort=1 nativeAintf=0x2 "
                            "action_switchPort=1 physicalPort=3\n";
    const std::string match = "match={value=0123 mask=ffff partition=0 priority=0 bits=9 bytes=2}";
    const std::string table = "dev=0, pipe=0xffff, table=0x1000001 ingressPortMapping, ";
    EXPECT_EQ(trace_of(add),
              "  pipe_mgr_mat_ent_add(sess=0, " + table + match +
                  ", action=0x20000000 setPhase0, spec={kind=1 bits=33 bytes=6 data=000100020103}, "
                  "ttl=0, flags=0) = 0, entry=1\n");
    const std::string key = "ingressPortMapping ig_intr_md_ingress_port=291";
    const std::string action = " : setPhase0 ingVPort=4 nativeAintf=5 switchPort=0 physicalPort=0";
    const std::string entry = "dev=0, table=0x1000001 ingressPortMapping, entry=1";
    const std::string data =
        "action=0x20000000 setPhase0, spec={kind=1 bits=33 bytes=6 data=000400050000}, flags=0";
    const struct {
        std::string line, trace;
    } cases[] = {
        {"modify " + key + action,
         "pipe_mgr_mat_ent_set_action_by_match_spec(sess=0, " + table + match + ", " + data + ") = 0"},
        {"modify ingressPortMapping 1" + action,
         "pipe_mgr_mat_ent_set_action(sess=0, " + entry + ", " + data + ") = 0"},
        {"delete " + key, "pipe_mgr_mat_ent_del_by_match_spec(sess=0, " + table + match + ", flags=0) = 0"},
        {"delete ingressPortMapping 0x1", "pipe_mgr_mat_ent_del(sess=0, " + entry + ", flags=0) = 0"},
    };
    for (const auto &[line, trace] : cases) {
        ts_model_reset();
        EXPECT_EQ(trace_of(line, add), "  " + trace + "\n");
    }
    ts_model_reset();
    EXPECT_EQ(trace_of("find " + key, add), "entry 1\n  pipe_mgr_match_spec_to_ent_hdl(sess=0, " + table +
                                                match + ", flags=0) = 0, entry=1\n");
}

TEST_F(Shell, writes_values_masks_and_prefixes)
{
    const std::string all_ones(32, 'f');
    const std::string dmac_masked = "value=01010180c2000000 mask=01fffffffffffff0 partition=0 priority=7";
    const std::string v4_20 = "value=050a010000 mask=fffffff000 partition=0 priority=12";
    const struct {
        std::string key, images;
    } cases[] = {
        {"l2DmacClassify ingressPort=0x101 dmac=01:80:c2:00:00:03&ff:ff:ff:ff:ff:f0 priority=7 : setUcast",
         dmac_masked},
        {"l2DmacClassify outerEthHdr_dmac=0x0180C2000003/44 ingressPort=257 : setUcast priority=7",
         dmac_masked},
        {"l2DmacClassify outerEthHdr_dmacStation=3&0xfffff0 dmacOui=01:80:C2 ingressPort=257 priority=7 : "
         "setUcast",
         dmac_masked},
        {"l2DmacClassify ingressPort=1 priority=0 : setUcast",
         "value=0001000000000000 mask=01ff000000000000 partition=0 priority=0"},
        {"haloXformIpv4Dip dip=10.1.2.3&255.255.0.255 priority=4294967295 : NoAction",
         "value=0a010003 mask=ffff00ff partition=0 priority=4294967295"},
        {"l2SmacCheck smac=ff:00:00:00:00:01/7 priority=1 : NoAction",
         "value=fe0000000000 mask=fe0000000000 partition=0 priority=1"},
        {"haloXformIpv4Dip dip=10.1.2.3/15 priority=1 : NoAction",
         "value=0a000000 mask=fffe0000 partition=0 priority=1"},
        {"ipv4ShortMaskLpm vrfId=5 dip=10.1.2.3/20 : setNextHop nextHop=1", v4_20},
        {"ipv4ShortMaskLpm ingIpv4_dip=0x0a010203/20 l3Info_vrfId=5 : setNextHop nextHop=1", v4_20},
        {"ipv4ShortMaskLpm vrfId=5 dip=10.1.2.3 : setNextHop nextHop=1",
         "value=050a010203 mask=ffffffffff partition=0 priority=0"},
        {"ipv4ShortMaskLpm vrfId=5 dip=10.1.2.3/0 : setNextHop nextHop=1",
         "value=0500000000 mask=ff00000000 partition=0 priority=32"},
        {"ipv6ShortMaskLpm vrfId=9 dip=2001:db8:ffff::1/33 : setNextHop nextHop=1",
         "value=0920010db8800000000000000000000000 mask=ffffffffff800000000000000000000000 partition=0 "
         "priority=95"},
        {"ipv6ShortMaskLpm vrfId=9 dip=0x20010db800000000000000000000000a : setNextHop nextHop=1",
         "value=0920010db800000000000000000000000a mask=ff" + all_ones + " partition=0 priority=0"},
        {"ipv6ShortMaskLpm vrfId=9 dip=340282366920938463463374607431768211455 : setNextHop nextHop=1",
         "value=09" + all_ones + " mask=ff" + all_ones + " partition=0 priority=0"},
        {"ipv4FinalResolve0 partIdx=300 dip=10.1.2.3/24 : setNextHop0First nextHop=1",
         "value=00000a010200 mask=0000ffffff00 partition=300 priority=8"},
    };
    for (const auto &[key, images] : cases) {
        ts_model_reset();
        EXPECT_EQ(part(trace_of("add " + key), "match={", " bits="), images) << key;
    }
}

TEST_F(Shell, writes_parameters_and_options)
{
    const std::string smac = "l2LearningLookup smac=00:11:22:33:44:55 ingL2Domain=0xabc ingL2Aintf=0x12345 ";
    const struct {
        std::string line, begin, end, part;
    } cases[] = {
        {"add nextHop0 nextHop=1 : setNextHopDetails dmac=00:11:22:33:44:55 domain=0xabc", "data=", "}",
         "0011223344550abc"},
        {"add nextHop0 nextHop=1 : setNextHopDetails action_domain=1 action_dmac=0x1", "data=", "}",
         "0000000000010001"},
        {"add nextHop0 nextHop=1 : setNextHopDetails dmacStation=1 domain=2 action_dmacOui=aa:bb:cc",
         "data=", "}", "aabbcc0000010002"},
        {"add cpuEncapFields egressPort=1 switchPort=0 ingressTagged=0 decapType=0 encapEthHdrValid=1 : "
         "setEncapSmac mac=00:11:22:33:44:55",
         "data=", "}", "001122334455"},
        {"add mirrorPacketEncap egressRid=1 egressPort=2 : setMirrorPacketEncapGreIpv4 srcIp=10.0.0.1 "
         "dstIp=192.168.255.254 ttl=64 dscp=63 greProto=0x88be vlanId=4095 dmac=00:00:00:00:00:01",
         "data=", "}", "0a000001c0a8fffe403f88be0fff000000000001"},
        {"add " + smac + ": noOp ttl=90", "ttl=", ",", "90"},
        {"add " + smac + "ttl=91 : noOp", "ttl=", ",", "91"},
        {"add " + smac + ": noOp", "ttl=", ",", "0"},
        {"add l2LookupMiss priority=1 : NoAction meter=10,20,30,40,unaware", "resources=[", "]",
         "handle=0x5000001 index=0 tag=1 meter={type=1 committed=0:10:20 peak=0:30:40}"},
        {"add pdpPolicy pdpDrop=0 pdpClassId=1 : setPdpClassCount counterIndex=70000", "resources=[", "]",
         "handle=0x4000005 index=4464 tag=1"},
    };
    for (const auto &[line, begin, end, expected] : cases) {
        ts_model_reset();
        EXPECT_EQ(part(trace_of(line), begin, end), expected) << line;
    }
    ts_model_reset();
    const std::string with_meter = "add l2LookupMiss priority=1 : NoAction meter=1,2,3,4,aware";
    EXPECT_EQ(part(trace_of("modify l2LookupMiss 1 : l2LookupBcastHit", with_meter), "resources=[", "]"),
              "handle=0x5000001 index=0 tag=0");
}

// Every field and parameter by one of its names, in every table and action: the images are put together here
// from the rows' widths alone.
class Line {
public:
    explicit Line(std::mt19937_64 &random) : random_(random) {}

    // `names`: one of them is chosen. Returns the digits of the image.
    std::string assign(const std::vector<std::string> &names, unsigned width)
    {
        std::string digits;
        for (unsigned bits = (width + 7) / 8 * 8, left = width; bits > 0; bits -= 4) {
            const unsigned used = left > bits - 4 ? left - (bits - 4) : 0;
            digits += "0123456789abcdef"[random_() & ((1u << used) - 1)];
            left -= used;
        }
        text_ += " " + names[random_() % names.size()] + "=0x" + digits;
        return digits;
    }

    const std::string &text() const { return text_; }

private:
    std::mt19937_64 &random_;
    std::string text_;
};

TEST_F(Shell, reaches_every_field_and_parameter_of_the_catalogue)
{
    constexpr std::uint64_t seed = 2;
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937_64 random{seed};
    unsigned bindings = 0;
    for (const reflection::TableFunctions *table : reflection::tables())
        for (const reflection::ActionFunctions &action : table->actions) {
            if (!action.add)
                continue;
            ++bindings;
            Line key{random}, parameters{random};
            std::string value, data;
            for (const pd::Field &field : table->row->key) {
                const std::string digits = key.assign({field.name, field.display}, field.width);
                value += field.partition_index ? std::string(digits.size(), '0') : digits;
            }
            for (const pd::Parameter &parameter : action.row->action->parameters) {
                const std::string name = parameter.name;
                const std::string digits = parameters.assign({name, "action_" + name}, parameter.width);
                data += parameter.in_image ? digits : std::string(digits.size(), '0');
            }
            std::string line = "add " + std::string{table->row->name} + key.text() + " : " +
                               action.row->action->name + parameters.text();
            line += pd::has_priority(*table->row) ? " priority=3" : "";
            line += table->row->direct_meter ? " meter=1,2,3,4,aware" : "";
            ts_model_reset();
            const std::string trace = trace_of(line);
            EXPECT_EQ(part(trace, "match={value=", " "), value) << line;
            EXPECT_EQ(part(part(trace, "spec={", "}"), " data=", " "), data.empty() ? "-" : data) << line;

            const std::string lookup = "lookup " + std::string{table->row->name} + key.text() + "\n";
            ts_model_reset();
            EXPECT_EQ(output_of(line + "\n" + lookup).substr(0, 8), "entry 1:") << line;
        }
    EXPECT_EQ(bindings, 404u);
}

// ---- Bad lines ----

TEST_F(Shell, refuses_unknown_names)
{
    expect_bad("@ad l2Lookup", "unknown command 'ad': did you mean add?; help lists the commands");
    expect_bad("  @frobnicate", "unknown command 'frobnicate'; help lists the commands");
    expect_bad("count @l2lookup",
               "unknown table 'l2lookup': did you mean l2Lookup, l2LookupMiss?; tables lists them");
    expect_bad("describe@", "missing table name; tables lists them");
    expect_bad("find l2Lookup dmac=1 @domain=3",
               "l2Lookup has no 'domain': it has dmacOui, dmacStation, egrL2Domain");
    expect_bad("add vlanProperties ingL2Domain=1 : @setVlan",
               "unknown action 'setVlan': vlanProperties has setVlanProperties");
    expect_bad("add vlanProperties ingL2Domain=1 :@", "missing action: vlanProperties has setVlanProperties");
    expect_bad("add l2SmacCheck priority=1 : NoAction @port=1", "NoAction has no 'port': it takes none");
    expect_bad("help @ad", "no command 'ad': did you mean add?");
}

TEST_F(Shell, refuses_lines_of_the_wrong_form)
{
    const std::string form = " is not of the form name=value (a lone ':' goes before an action)";
    expect_bad("add vlanProperties ingL2Domain=1 @setVlanProperties vxlan=1", "'setVlanProperties'" + form);
    expect_bad("add vlanProperties ingL2Domain=1@",
               "missing ':' and an action, with blanks around the colon");
    expect_bad("modify vlanProperties 1 @vxlan=1", "expected ':' before the action instead of 'vxlan=1'");
    expect_bad("modify vlanProperties @0x1g : setVlanProperties",
               "entry handle: '0x1g' is no number from 0 to 4294967295");
    expect_bad("delete vlanProperties 1 @2", "unexpected '2': the command ends before it");
    expect_bad("find vlanProperties ingL2Domain=1 @: setVlanProperties",
               "unexpected ':': the command ends before it");
    expect_bad("trace @maybe", "'maybe' is neither 'on' nor 'off'");
    expect_bad("trace@", "missing 'on' or 'off'");
    expect_bad("tables l2 @l3", "unexpected 'l3': the command ends before it");
    expect_bad("add vlanProperties @\x01\x7f : x", R"('\x01\x7f')" + form);
}

TEST_F(Shell, refuses_missing_and_repeated_fields)
{
    expect_bad("add l2Lookup dmacOui=1 @: onMiss", "missing fields of l2Lookup: dmacStation, egrL2Domain");
    expect_bad("find ipv4ShortMaskLpm vrfId=1@", "missing field of ipv4ShortMaskLpm: dip");
    expect_bad("add vlanProperties ingL2Domain=1 : setVlanProperties sviEnabled=1@",
               "missing parameters of setVlanProperties: igmpSnoopingEnabled, vxlan");
    expect_bad("find vlanProperties ingL2Domain=1 @ingMd_ingL2Domain=1", "field ingL2Domain is given twice");
    expect_bad("find l2Lookup dmacOui=1 @dmac=00:00:00:00:00:01", "field dmacOui is given twice");
    expect_bad("add vlanProperties ingL2Domain=1 : setVlanProperties vxlan=0 @vxlan=1",
               "parameter vxlan is given twice");
    expect_bad("lookup l2SmacCheck smacOui=1@", "missing field of l2SmacCheck: smacStation");
}

TEST_F(Shell, refuses_bad_values)
{
    const std::string find = "find vlanProperties ingL2Domain=";
    expect_bad(find + "@4096", "ingL2Domain: '4096' does not fit into 12 bits: give at most 4095 (0xfff)");
    expect_bad(find + "@0x1000",
               "ingL2Domain: '0x1000' does not fit into 12 bits: give at most 4095 (0xfff)");
    expect_bad(find + "@", "ingL2Domain: no value: give a number up to 4095 (0xfff)");
    for (const std::string bad : {"-1", "0x", "12a", "10.0.0.1", "1:2", "0xg"})
        expect_bad(find + "@" + bad,
                   "ingL2Domain: '" + bad + "' is no value: give a number up to 4095 (0xfff)");
    expect_bad("add vlanProperties ingL2Domain=1 : setVlanProperties vxlan=@2",
               "vxlan: '2' does not fit into 1 bit: give at most 1");
    for (const std::string bad :
         {"00:11:22:33:44", "00:11:22:33:44:5g", "0:11:22:33:44:55", "00-11-22-33-44-55"})
        expect_bad(
            "find l2Lookup egrL2Domain=1 dmac=@" + bad,
            "dmac: '" + bad +
                "' is no value: give a number up to 281474976710655 (0xffffffffffff) or a MAC address");
    expect_bad("find l2Lookup dmacOui=@00:11", "dmacOui: '00:11' is no value: give a number up to 16777215 "
                                               "(0xffffff) or three bytes such as 00:11:22");
    for (const std::string bad : {"10.1.2", "10.1.2.256", "1.2.3.4.5"})
        expect_bad("find ipv4ShortMaskLpm vrfId=1 dip=@" + bad,
                   "dip: '" + bad +
                       "' is no value: give a number up to 4294967295 (0xffffffff) or an IPv4 address");
    const std::string v6 = "find ipv6ShortMaskLpm vrfId=1 dip=@";
    const std::string most = "0xffffffffffffffffffffffffffffffff";
    expect_bad(v6 + "2001:db8:::1",
               "dip: '2001:db8:::1' is no value: give a number up to " + most + " or an IPv6 address");
    for (const std::string big :
         {"0x100000000000000000000000000000000", "340282366920938463463374607431768211456"})
        expect_bad(v6 + big, "dip: '" + big + "' does not fit into 128 bits: give at most " + most);
}

TEST_F(Shell, refuses_bad_masks_and_prefixes)
{
    expect_bad("find vlanProperties ingL2Domain=1@/4",
               "ingL2Domain takes no prefix here: give the value alone");
    expect_bad("find vlanProperties ingL2Domain=1@&4",
               "ingL2Domain takes no mask here: give the value alone");
    expect_bad("lookup ipv4ShortMaskLpm vrfId=1 dip=10.0.0.0@/8",
               "dip takes no prefix here: give the value alone");
    expect_bad("find ipv4ShortMaskLpm vrfId=1 dip=10.0.0.0@&255.0.0.0",
               "dip takes no mask: write value/length");
    expect_bad("find ipv4ShortMaskLpm vrfId=1 dip=10.0.0.0/@33",
               "dip prefix length: '33' is no number from 0 to 32");
    expect_bad("find ipv6ShortMaskLpm vrfId=1 dip=::/@129",
               "dip prefix length: '129' is no number from 0 to 128");
    expect_bad("find l2SmacCheck priority=1 smac=0/@49",
               "smac prefix length: '49' is no number from 0 to 48");
    expect_bad("find l2SmacCheck priority=1 smacOui=1&@0x1000000",
               "smacOui mask: '0x1000000' does not fit into 24 bits: give at most 16777215 (0xffffff)");
}

TEST_F(Shell, refuses_options_where_they_do_not_belong)
{
    const std::string priority = "priority does not belong here: it stands with the key of an entry, for a "
                                 "table that has a ternary field";
    expect_bad("find vlanProperties ingL2Domain=1 @priority=1", priority);
    expect_bad("lookup l2SmacCheck smac=1 @priority=1", priority);
    expect_bad("modify l2SmacCheck 1 : NoAction @priority=1", priority);
    expect_bad("add l2SmacCheck : NoAction@", "l2SmacCheck has a ternary field: give priority=N");
    expect_bad("modify l2SmacCheck : NoAction@", "l2SmacCheck has a ternary field: give priority=N");
    expect_bad("delete l2SmacCheck@", "l2SmacCheck has a ternary field: give priority=N");
    expect_bad("add l2SmacCheck priority=1 : NoAction @priority=2", "priority is given twice");
    expect_bad("add l2SmacCheck priority=@4294967296 : NoAction",
               "priority: '4294967296' is no number from 0 to 4294967295");
    const std::string ttl =
        "ttl does not belong here: it stands in add, for a table whose entries take a time to live, "
        "and in idle ttl";
    expect_bad("add l2SmacCheck priority=1 : NoAction @ttl=1", ttl);
    expect_bad("modify l2LearningLookup 1 : noOp @ttl=1", ttl);
    expect_bad("add l2SmacCheck priority=1 : NoAction @meter=1",
               "meter does not belong here: it stands in add and modify, for a table with a direct meter");
    const std::string miss = "add l2LookupMiss priority=1 : NoAction";
    expect_bad(miss + "@", "l2LookupMiss has a direct meter: give meter=CR,CB,PR,PB,TYPE");
    expect_bad(miss + " meter=1,2,3,@4", "meter: too few parts: write meter=CR,CB,PR,PB,TYPE");
    expect_bad(miss + " meter=1,2,@x,4,aware", "peak rate: 'x' is no number from 0 to 4294967295");
    expect_bad(miss + " meter=1,2,3,4,@2", "meter type: '2' is neither 'aware' nor 'unaware'");
}

TEST_F(Shell, refuses_entries_where_there_are_none)
{
    expect_bad("add @queueCounters : countEgressQueue",
               "queueCounters has no key, and so no entries: only its default action runs");
}

TEST_F(Shell, tells_why_the_driver_refused)
{
    const std::string add =
        "add vlanProperties ingL2Domain=1 : setVlanProperties igmpSnoopingEnabled=1 sviEnabled=0 "
        "vxlan=0\n";
    EXPECT_EQ(run(add + add).err, "t:2:1: the driver refused: already exists (status 5)\n");
    EXPECT_EQ(run("delete vlanProperties 77").err, "t:1:1: the driver refused: no such object (status 4)\n");
    EXPECT_EQ(run("find vlanProperties ingL2Domain=9").err,
              "t:1:1: the driver refused: no such object (status 4)\n");
    ts_model_set_capacity(reflection::find_table("vlanProperties")->row->handle, 0);
    EXPECT_EQ(run("  add vlanProperties ingL2Domain=2 : setVlanProperties igmpSnoopingEnabled=1 sviEnabled=0 "
                  "vxlan=0")
                  .err,
              "t:1:1: the driver refused: no space (status 6)\n");
    ts_model_fail_operation("pipe_mgr_mat_ent_add", 99);
    const Outcome traced = run("trace on\n" + add);
    EXPECT_EQ(traced.err, "t:2:1: the driver refused: unknown reason (status 99)\n");
    EXPECT_EQ(part(traced.out, "flags=0", "\n"), ") = 99") << "a refused call is traced";
    EXPECT_EQ(traced.status, 1);
}

// ---- Sessions ----

TEST_F(Shell, stops_at_the_first_bad_line_or_carries_on)
{
    const std::string script = "echo one\nbad\necho two\nworse\n";
    const std::string first = "t:2:1: unknown command 'bad'; help lists the commands\n";
    const std::string second = "t:4:1: unknown command 'worse'; help lists the commands\n";

    const Outcome stopped = run(script);
    EXPECT_EQ(stopped.status, 1);
    EXPECT_EQ(stopped.out, "one\n");
    EXPECT_EQ(stopped.err, first);

    const Outcome whole = run(script, {.keep_going = true});
    EXPECT_EQ(whole.status, 1);
    EXPECT_EQ(whole.out, "one\ntwo\n");
    EXPECT_EQ(whole.err, first + second + "t: 2 bad lines\n");
    EXPECT_EQ(run("bad", {.keep_going = true}).err.substr(first.size()), "t: 1 bad line\n");
    EXPECT_EQ(run("echo fine", {.keep_going = true}).err, "");

    const Outcome person = run(script + "quit\nbad\n", {.interactive = true});
    EXPECT_EQ(person.status, 0);
    EXPECT_EQ(person.out, "one\ntwo\n");
    EXPECT_EQ(person.err, first + second);
}

TEST_F(Shell, reads_comments_continuations_and_line_ends)
{
    EXPECT_EQ(output_of("# echo no\n\n   \t\r\necho a#b  c # d\r\necho\t#\necho last"), "a#b  c\n\nlast\n");
    EXPECT_EQ(output_of("echo a \\\n  # nothing \\\necho b"), "a\nb\n")
        << "a comment ends in no continuation";
    EXPECT_EQ(output_of("echo a \\"), "a\n");
    EXPECT_EQ(run("echo\nfind \\\n  vlanProperties \\  \n   ingL2Domain=4096\n").err,
              "t:4:16: ingL2Domain: '4096' does not fit into 12 bits: give at most 4095 (0xfff)\n");
    EXPECT_EQ(output_of("echo a\nquit\nbad\n"), "a\n");
}

TEST_F(Shell, prints_handles_when_asked_to)
{
    const std::string add = "add l2SmacCheck priority=1 : NoAction\n";
    EXPECT_EQ(run(add).out, "");
    ts_model_reset();
    EXPECT_EQ(run(add, {.verbose = true}).out, "entry 1\n");
    ts_model_reset();
    EXPECT_EQ(run(add, {.interactive = true}).out, "entry 1\n");
}

TEST_F(Shell, turns_the_trace_on_and_off)
{
    const std::string find = "find l2SmacCheck priority=1\n";
    EXPECT_EQ(output_of("add l2SmacCheck priority=1 : NoAction\n" + find + "trace on\ntrace off\n" + find),
              "entry 1\nentry 1\n");
}

TEST_F(Shell, counts_entries)
{
    const std::string script =
        "add l2SmacCheck priority=1 : NoAction\nadd l2SmacCheck priority=2 : NoAction\n"
        "add haloXformIpv4Dip priority=1 : NoAction\n";
    const std::string halo = "       1  haloXformIpv4Dip\n", smac = "       2  l2SmacCheck\n";
    EXPECT_EQ(output_of(script + "count l2SmacCheck\n"), smac);
    const std::string help = output_of("help\n");
    EXPECT_EQ(output_of("help\ncount\n"), help + smac + halo + "       3  in all\n");
}

// ---- Look-up ----

TEST_F(Shell, explains_look_ups)
{
    const std::string v4 = "ipv4ShortMaskLpm vrfId=5 dip=10.1.2.";
    const std::string set = " : setNextHop nextHop=1\n";
    const std::string routes =
        "add " + v4 + "3/24" + set + "add ipv4ShortMaskLpm vrfId=5 dip=10.1.0.0/16" + set;
    EXPECT_EQ(output_of(routes + "lookup " + v4 + "77"),
              "entry 1: setNextHop (the longest of 2 matching prefixes, /24 before /16)\n");
    EXPECT_EQ(output_of("lookup ipv4ShortMaskLpm vrfId=5 dip=10.1.3.1"),
              "entry 2: setNextHop (the only matching prefix, /16)\n");
    EXPECT_EQ(output_of("lookup ipv4ShortMaskLpm vrfId=6 dip=10.1.3.1"), "miss: the default action runs\n");

    const std::string resolve = "ipv4FinalResolve0 partIdx=300 dip=10.1.2.3";
    EXPECT_EQ(output_of("add " + resolve + " : setNextHop1First nextHop=1\nlookup " + resolve),
              "entry 1: setNextHop1First (the only matching prefix, /32)\n");
    EXPECT_EQ(output_of("lookup ipv4FinalResolve0 partIdx=301 dip=10.1.2.3"),
              "miss: the default action runs\n");

    EXPECT_EQ(output_of("add l2Lookup dmac=00:11:22:33:44:55 egrL2Domain=1 : l2LookupDrop\n"
                        "lookup l2Lookup dmac=00:11:22:33:44:55 egrL2Domain=1"),
              "entry 1: l2LookupDrop (an exact match)\n");

    const std::string smac = "lookup l2SmacCheck smac=00:11:22:33:44:55";
    EXPECT_EQ(output_of("add l2SmacCheck priority=20 : NoAction\n" + smac),
              "entry 1: NoAction (the only match, priority 20)\n");
    EXPECT_EQ(output_of("add l2SmacCheck smacOui=00:11:22 priority=10 : setIllegalSmac\n" + smac),
              "entry 2: setIllegalSmac (the lowest priority number of 2 matches, 10 before 20 of entry 1)\n");
    EXPECT_EQ(output_of("add l2SmacCheck smac=00:11:22:33:44:55 priority=10 : NoAction\n" + smac),
              "entry 2: setIllegalSmac (the earliest of 3 matches, priority 10 like entry 3)\n");
}

// ---- What there is ----

TEST_F(Shell, lists_and_describes_the_whole_catalogue)
{
    std::string script;
    for (const reflection::TableFunctions *table : reflection::tables())
        script += "describe " + std::string{table->row->name} + "\n";
    const std::string described = output_of(script);
    const std::string listed = output_of("tables");
    for (const reflection::TableFunctions *table : reflection::tables()) {
        EXPECT_NE(listed.find(std::string{table->row->name} + " "), std::string::npos) << table->row->name;
        EXPECT_NE(described.find(std::string{table->row->name} + ": " + table->row->brief),
                  std::string::npos);
        for (const pd::Field &field : table->row->key)
            EXPECT_NE(described.find(field.name), std::string::npos) << field.name;
    }
    EXPECT_EQ(std::count(listed.begin(), listed.end(), '\n'), 158);

    const std::string brief = reflection::find_table("ipv4FinalResolve0")->row->brief;
    EXPECT_EQ(output_of("tables FinalRes"), "ipv4FinalResolve0            lpm            0  " + brief + "\n");
    EXPECT_EQ(output_of("describe ipv4FinalResolve0"), "ipv4FinalResolve0: " + brief + R"(
handle 0x100003c, lpm, entries: 0
key:
  partIdx  fibV4ResultX_partIdx   16 bits  exact, the partition index
  dip      ingIpv4_dip            32 bits  lpm
actions:
  setDefaultVrf     (default too)
  setNextHop0First  nextHop:32
  setNextHop1First  nextHop:32
  setNextHop2First  nextHop:32
  setNextHop3First  nextHop:32
idle time
)");
}

TEST_F(Shell, helps_with_every_command)
{
    const std::string listed = output_of("help");
    for (const shell::Command &command : shell::commands()) {
        EXPECT_NE(("\n" + listed).find("\n  " + std::string{command.name} + " "), std::string::npos)
            << command.name;
        EXPECT_TRUE(output_of("help " + std::string{command.name}).starts_with(command.name));
    }
}

TEST(Progress, draws_each_percent_once_and_leaves_no_bar)
{
    std::ostringstream terminal;
    {
        shell::Progress progress{terminal, 10000};
        for (int i = 0; i < 99; ++i)
            progress.advance();
        EXPECT_EQ(terminal.str(), "");
        for (int i = 99; i < 5000; ++i)
            progress.advance();
    }
    const std::string text = terminal.str();
    EXPECT_EQ(std::count(text.begin(), text.end(), '%'), 50);
    EXPECT_NE(text.find("\r[#########################                         ] 50%\r\033[K"),
              std::string::npos);
    EXPECT_TRUE(text.ends_with("50%\r\033[K"));
}

// ---- The program ----

// Runs tessel-shell with `arguments` in a shell; both outputs, then the exit status.
std::string program(const std::string &arguments)
{
    FILE *pipe = popen((TS_BIN_DIR "/tessel-shell " + arguments).c_str(), "r");
    if (!pipe)
        return "cannot be run";
    std::string output;
    for (int c; (c = std::fgetc(pipe)) != EOF;)
        output += static_cast<char>(c);
    return output + std::to_string(WEXITSTATUS(pclose(pipe)));
}

TEST(ShellProgram, reads_files_and_standard_input)
{
    EXPECT_EQ(program("</dev/null"), "0");
    EXPECT_EQ(program("- <<'.'\necho a\n.\n"), "a\n0");
    EXPECT_EQ(program("2>&1 <<'.'\necho a\nbad\n.\n"),
              "a\n<stdin>:2:1: unknown command 'bad'; help lists the commands\n1");
    EXPECT_EQ(
        program("-k -v /dev/stdin 2>&1 <<'.'\nbad\nadd l2SmacCheck priority=1 : NoAction\n.\n"),
        "/dev/stdin:1:1: unknown command 'bad'; help lists the commands\nentry 1\n/dev/stdin: 1 bad line\n1");
}

TEST(ShellProgram, tells_about_bad_command_lines_and_files)
{
    const std::string usage = "; usage: tessel-shell [--keep-going] [--verbose] [--json] [FILE | -]\n2";
    EXPECT_EQ(program("--nonsense 2>&1"), "tessel-shell: bad option --nonsense" + usage);
    EXPECT_EQ(program("-kx 2>&1"), "tessel-shell: bad option -x" + usage);
    EXPECT_EQ(program("a b 2>&1"), "tessel-shell: more than one file" + usage);
    EXPECT_EQ(program("/nonexistent/file 2>&1"), "tessel-shell: /nonexistent/file: cannot be opened\n1");
    EXPECT_EQ(program("/ 2>&1"), "tessel-shell: /: is a directory\n1");
    EXPECT_EQ(program("- 2>&1 >/dev/full <<'.'\necho a\n.\n"),
              "tessel-shell: the output cannot be written\n1");
    EXPECT_TRUE(program("--help").starts_with("usage: tessel-shell "));
    EXPECT_TRUE(program("--version").ends_with("\n0"));
}

} // namespace
