// The shell's commands for action profiles: members, groups, the entries that point at them, and restarts.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <unistd.h>

#include "reflection.h"
#include "shell_fixture.h"

namespace {

using ShellProfiles = Shell;

// Three ports in a group of four, one that is in none; the second member has no name.
const std::string setup = "member add lagPortActionProfile p1 : setLagPort egrL2AintfPort=11\n"
                          "member add lagPortActionProfile : setLagPort egrL2AintfPort=12\n"
                          "member add lagPortActionProfile p3 : setTunnelInfo\n"
                          "member add lagPortActionProfile spare : setLagPort egrL2AintfPort=14\n"
                          "group create lagPortActionProfile lag size=4\n"
                          "group add lagPortActionProfile lag p1 2 p3\n"
                          "add lagGroup egrL2AintfUnresolved=0x10001&0xf00ff priority=3 : group lag\n"
                          "add lagGroup priority=9 : member spare\n";

const std::string listing = "    member  name   action                     parameters           entries\n"
                            "         1  p1     setLagPort                 egrL2AintfPort=11    none\n"
                            "         2         setLagPort                 egrL2AintfPort=12    none\n"
                            "         3  p3     setTunnelInfo                                   none\n"
                            "         4  spare  setLagPort                 egrL2AintfPort=14    2, default\n"
                            "group 1 (lag): 3 members, 2 active; entries: 1\n"
                            "  p1  active\n"
                            "  2   inactive\n"
                            "  p3  active\n"
                            "fallback: member spare\n";

const std::string more = "group state lagPortActionProfile lag 2 inactive\n"
                         "group fallback lagPortActionProfile spare\n"
                         "default lagGroup : member spare\n";

TEST_F(ShellProfiles, lists_what_a_profile_holds_and_who_points_at_it)
{
    EXPECT_EQ(output_of(setup + more + "show lagPortActionProfile"), listing);
    ts_model_reset();
    EXPECT_EQ(
        output_of(setup + more + "show lagPortActionProfile --json\nmember show lagPortActionProfile p3",
                  {.verbose = true, .json = true}),
        R"({"profile":"lagPortActionProfile","member":1,"member_name":"p1"}
{"profile":"lagPortActionProfile","member":2}
{"profile":"lagPortActionProfile","member":3,"member_name":"p3"}
{"profile":"lagPortActionProfile","member":4,"member_name":"spare"}
{"profile":"lagPortActionProfile","group":1,"group_name":"lag"}
{"table":"lagGroup","entry":1}
{"table":"lagGroup","entry":2}
{"profile":"lagPortActionProfile","member":1,"member_name":"p1","action":"setLagPort","parameters":{"egrL2AintfPort":11},"entries":[],"default":false}
{"profile":"lagPortActionProfile","member":2,"action":"setLagPort","parameters":{"egrL2AintfPort":12},"entries":[],"default":false}
{"profile":"lagPortActionProfile","member":3,"member_name":"p3","action":"setTunnelInfo","parameters":{},"entries":[],"default":false}
{"profile":"lagPortActionProfile","member":4,"member_name":"spare","action":"setLagPort","parameters":{"egrL2AintfPort":14},"entries":[2],"default":true}
{"profile":"lagPortActionProfile","group":1,"group_name":"lag","members":[{"member":1,"member_name":"p1","active":true},{"member":2,"active":false},{"member":3,"member_name":"p3","active":true}],"entries":[1],"default":false}
{"profile":"lagPortActionProfile","fallback":{"member":4,"member_name":"spare"}}
{"profile":"lagPortActionProfile","member":3,"member_name":"p3","action":"setTunnelInfo","parameters":{},"entries":[],"default":false}
)");
}

TEST_F(ShellProfiles, changes_and_deletes)
{
    EXPECT_EQ(output_of(setup + "member modify lagPortActionProfile p1 : setLagPort egrL2AintfPort=21\n"
                                "group add lagPortActionProfile lag spare\n"
                                "group remove lagPortActionProfile lag 2 p3\n"
                                "member delete lagPortActionProfile p3\n"
                                "member add lagPortActionProfile p3 : setPhysicalPort\n"
                                "modify lagGroup 1 : member p1\n"
                                "modify lagGroup priority=9 : group lag\n"
                                "delete lagGroup 1\n"
                                "group fallback lagPortActionProfile p3\n"
                                "group fallback lagPortActionProfile none\n"
                                "show lagPortActionProfile\nshow lagGroup"),
              "    member  name   action                     parameters           entries\n"
              "         1  p1     setLagPort                 egrL2AintfPort=21    none\n"
              "         2         setLagPort                 egrL2AintfPort=12    none\n"
              "         4  spare  setLagPort                 egrL2AintfPort=14    none\n"
              "         5  p3     setPhysicalPort                                 none\n"
              "group 1 (lag): 2 members, 2 active; entries: 2\n"
              "  p1     active\n"
              "  spare  active\n"
              "fallback: none\n"
              "     entry  egrL2AintfUnresolved    priority  points at\n"
              "         2  *                              9  group lag\n");
}

TEST_F(ShellProfiles, reads_members_from_the_hardware_when_told_so)
{
    output_of(setup);
    const u8 port[] = {0, 99};
    const reflection::ProfileFunctions &profile = *reflection::find_profile("lagPortActionProfile");
    const u32 action = reflection::find_action(profile, "setLagPort")->row->handle;
    ASSERT_EQ(ts_model_set_hardware_member(0, profile.row->action_table, 1, action, port, sizeof port), 0u);
    const std::string show = "member show lagPortActionProfile 1";
    EXPECT_NE(output_of(show + " --hw").find(" egrL2AintfPort=99 "), std::string::npos);
    EXPECT_NE(output_of(show).find(" egrL2AintfPort=11 "), std::string::npos);
}

// What a script writes is what is read back.
TEST_F(ShellProfiles, writes_and_reads_the_entries_of_each_profile)
{
    for (const reflection::TableFunctions *functions : reflection::tables())
        for (const std::string to : {"member m", "group g"}) {
            if (!functions->indirect)
                continue;
            ts_model_reset();
            const pd::Table &table = *functions->row;
            const std::string t = table.name, p = table.profile;
            const std::string key = t + ' ' + table.key[0].display + "=77";
            const std::string priority = pd::has_priority(table) ? " priority=4" : "";
            const std::string action = functions->indirect->profile->row->actions.front().action->name;
            const std::string lines = output_of(
                "member add " + p + " m : " + action + "\ngroup create " + p + " g\ngroup add " + p +
                " g m\nadd " + key + " : " + (to == "group g" ? "member m" : "group g") + priority +
                "\ndefault " + t + "\nmodify " + key + priority + " : " + to + "\nwatch " + t + "\ndefault " +
                t + " : " + to + "\nfind " + key + priority + "\nentry " + t + " 1\ndefault " + t);
            EXPECT_TRUE(lines.starts_with("nothing\n  " + t + ": default entry set: " + to +
                                          "\nentry 1\nentry 1 of " + t + "\n"))
                << lines;
            EXPECT_TRUE(lines.ends_with("  " + to + '\n' + to + '\n')) << lines;
            EXPECT_NE(lines.find("  77\n"), std::string::npos) << lines;
        }
}

// The CRC-32 of 7,2 is 0xc5ee1efb and that of 7,3 is 0x7d52799e: 2 and 0 modulo 3, 1 and 0 modulo 2.
TEST_F(ShellProfiles, follows_a_group_to_the_member_of_a_flow)
{
    const std::string key = "lookup lagGroup egrL2AintfUnresolved=0x1ff01 hash=7,";
    const std::string looks = key + "2\n" + key + "3\n";
    const std::string state = "group state lagPortActionProfile lag ";
    const auto hit = [](const std::string &member) {
        return "entry 1: group lag, " + member +
               " (the lowest priority number of 2 matches, 3 before 9 of entry 2)\n";
    };
    const std::string p1 = hit("member p1: setLagPort egrL2AintfPort=11");
    const std::string p2 = hit("member 2: setLagPort egrL2AintfPort=12");
    const std::string p3 = hit("member p3: setTunnelInfo");
    const std::string spare = hit("none active, fallback member spare: setLagPort egrL2AintfPort=14");
    EXPECT_EQ(output_of(setup + looks + state + "p1 inactive\n" + looks + state + "2 inactive\n" + looks +
                        state + "p3 inactive\n" + key + "2\ngroup fallback lagPortActionProfile spare\n" +
                        looks + state + "p1 active\n" + key + "2\n" + state + "2 active\n" + state +
                        "p3 active\n" + looks),
              p3 + p1 + p3 + p2 + p3 + p3 + hit("none active, no fallback") + spare + spare + p1 + p3 + p1);
    EXPECT_EQ(output_of("lookup ecmpGroup nextHop=1\nlookup ecmpGroup nextHop=1 --json"),
              "miss: the default entry points at nothing\n{\"table\":\"ecmpGroup\",\"hit\":false}\n");
}

TEST_F(ShellProfiles, saves_and_loads_members_groups_and_entries)
{
    const std::string first = testing::TempDir() + "/first." + std::to_string(getpid());
    const std::string second = testing::TempDir() + "/second." + std::to_string(getpid());
    const auto read = [](const std::string &file) {
        std::ifstream in{file};
        return std::string{std::istreambuf_iterator<char>{in}, {}};
    };
    // A handle that is gone, names that made ones must not meet, an empty group with an entry.
    output_of(setup + more +
              "member add lagPortActionProfile : setPhysicalPort\nmember delete lagPortActionProfile 5\n"
              "member add lagPortActionProfile m2 : setPhysicalPort\n"
              "member add lagPortActionProfile m0 : invalidateUcastEgressPort\n"
              "group create lagPortActionProfile\ngroup add lagPortActionProfile 2 p1\n"
              "add lagGroup egrL2AintfUnresolved=7 priority=1 : group 2\n"
              "group remove lagPortActionProfile 2 p1\nsave " +
              first);
    const std::string text = read(first);
    EXPECT_NE(text.find(" m2_ : setLagPort egrL2AintfPort=12\n"), std::string::npos) << text;
    EXPECT_NE(text.find("group create lagPortActionProfile lag size=4\n"), std::string::npos) << text;
    ts_model_reset();
    const std::string show = "\nshow lagPortActionProfile\nshow lagGroup\ndefault lagGroup\nrestart";
    const std::string loaded = output_of("load " + first + "\nsave " + second + show);
    EXPECT_EQ(read(second), text);
    EXPECT_NE(loaded.find("  m2_  inactive\n  p3   active\ngroup 2 (g2): 0 members"), std::string::npos);
    EXPECT_NE(loaded.find("  group g2\nmember spare\nthe member-selection state came back different"),
              std::string::npos);
    std::filesystem::remove(first);
    std::filesystem::remove(second);
}

TEST_F(ShellProfiles, restarts_and_tells_the_first_difference)
{
    // Without its members, the driver cannot tell the group's action.
    EXPECT_EQ(output_of(setup + more +
                        "restart\nrestart --json\n"
                        "lookup lagGroup egrL2AintfUnresolved=0x10001 hash=7,3 --json\n"
                        "group remove lagPortActionProfile lag p1 2 p3\nrestart"),
              R"(the member-selection state came back the same, members: 4, groups: 1
{"same":true}
{"table":"lagGroup","hit":true,"entry":1,"group":1,"group_name":"lag","fallback":false,"member":1,"member_name":"p1","action":"setLagPort","parameters":{"egrL2AintfPort":11},"candidates":2,"why":"the lowest priority number of 2 matches, 3 before 9 of entry 2"}
the member-selection state came back different, first at act_profs[lagPortActionProfile].groups[1].action: 536871215 before, 0 after
)");
    ts_model_reset();
    while_refused("pipe_mgr_hitless_ha_restore_virtual_dev_state", TS_MODEL_UNKNOWN_OBJECT, [] {
        const Outcome refused =
            run(setup + "restart\nadd lagGroup priority=1 : member p1", {.keep_going = true});
        EXPECT_EQ(refused.err, "t:9:1: the driver refused: no such object (status 4)\nt: 1 bad line\n")
            << "an entry finds its member, so the state is there again";
    });
}

TEST_F(ShellProfiles, refuses_bad_lines)
{
    const std::string P = "lagPortActionProfile";
    const std::pair<std::string, std::string> lines[] = {
        {"member@", "missing word: there are add, modify, delete, show"},
        {"group @list " + P,
         "unknown word 'list': there are create, delete, add, remove, state, fallback, show"},
        {"member add @lagGroup : NoAction", "unknown action profile 'lagGroup': there are "
                                            "egrMirrorLagPortActionProfile, ecmpMemberActionProfile, "
                                            "mirrorLagPortActionProfile, lagPortActionProfile"},
        {"member add " + P + "@", "missing ':' and an action, with blanks around the colon"},
        {"member add " + P + " : @NoAction", "unknown action 'NoAction': lagPortActionProfile has "
                                             "fixL2SubintfAlignment, invalidateUcastEgressPort, "
                                             "setLagPort, setPhysicalPort, setTunnelInfo"},
        {"member add " + P + " a : setLagPort@", "missing parameter of setLagPort: egrL2AintfPort"},
        {"member add " + P + " @1a : setLagPort",
         "'1a' is no name: give a letter, then letters, digits and any of _-./"},
        {"member delete " + P + "@", "missing member: its handle or name"},
        {"group create " + P + " a @b",
         "'b' is not of the form name=value (a lone ':' goes before an action)"},
        {"group add " + P + " 1 2 3 @2", "member 2 is named twice"},
        {"group state " + P + " 1 2 @up", "unknown state 'up': there are active, inactive"},
        {"add lagGroup priority=1 : @setLagPort", "unknown word 'setLagPort': there are member, group"},
        {"add lagGroup priority=1 : group 1 @port=3", "unknown parameter 'port': group has priority"},
        {"lookup ecmpGroup nextHop=1 hash=1,@x",
         "second word of the hash: 'x' is no number from 0 to 4294967295"},
        {"lookup l2SmacCheck smac=1 @hash=1",
         "hash does not belong here: it stands in lookup, for a table of an action profile"},
    };
    for (const auto &[line, message] : lines)
        expect_bad(line, message);
}

TEST_F(ShellProfiles, tells_why_the_driver_refused_and_leaves_nothing_half_done)
{
    const std::string in_use = "the driver refused: still in use (status 7)";
    const std::string unknown = "the driver refused: no such object (status 4)";
    const std::pair<std::string, std::string> lines[] = {
        {"@member delete lagPortActionProfile p1", in_use},
        {"@group delete lagPortActionProfile lag", in_use},
        {"member modify lagPortActionProfile p1 : @setTunnelInfo",
         "member p1 has the action setLagPort, and a member keeps its action"},
        {"member add lagPortActionProfile @p1 : setTunnelInfo", "'p1' already names member 1"},
        {"member delete lagPortActionProfile @p2",
         "unknown member name 'p2': lagPortActionProfile has p1, p3, spare"},
        {"group add lagPortActionProfile lag spare @9", unknown},
        {"group remove lagPortActionProfile lag p1 @spare", unknown},
        {"@add lagGroup priority=7 : group 8", unknown},
    };
    for (auto [line, message] : lines) {
        const std::size_t column = line.find('@');
        line.erase(column, 1);
        ts_model_reset();
        const Outcome outcome =
            run(setup + more + line + "\nshow lagPortActionProfile", {.keep_going = true});
        EXPECT_EQ(outcome.err, "t:12:" + std::to_string(column + 1) + ": " + message + "\nt: 1 bad line\n");
        EXPECT_EQ(outcome.out, listing) << line;
    }
}

} // namespace
