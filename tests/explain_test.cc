// Recorded calls as commands, and played again: either leaves the same state, and explains as itself.
#include "explain.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>

#include "folder.h"
#include "pd.h"
#include "random_entries.h"
#include "replay.h"
#include "shell_fixture.h"

namespace {

namespace fs = std::filesystem;

class Explained : public Shell {
protected:
    // The calls of `use` leave the same state when their commands are loaded, which explain as themselves,
    // and when they are played where all handles are one higher. Returns the commands.
    template <typename Use>
    std::string expect_again(Use use)
    {
        const std::string commands = recorded(use), state = output_of("save -");
        EXPECT_NE(commands, "");
        ts_model_reset();
        EXPECT_EQ(recorded([&] { output_of(commands); }), commands);
        EXPECT_EQ(output_of("save -"), state);

        ts_model_reset();
        use_first_handles();
        const tap::RecordReader first = record(1);
        shell::Replay replay;
        EXPECT_EQ(recorded([&] { EXPECT_FALSE(replay.play(first)); }), renamed(commands));
        EXPECT_EQ(replay.played() + replay.left_out(), first.calls().size());
        EXPECT_EQ(record(3).calls().size(), replay.played());
        EXPECT_EQ(output_of("save -"), renamed(state));
        expect_in_c(commands);
        return commands;
    }

private:
    // The commands that explain the calls that `use` makes.
    template <typename Use>
    std::string recorded(Use use)
    {
        const std::string path = folder_.path / std::to_string(++records_);
        EXPECT_EQ(ts_tap_record(path.c_str(), 1 << 22), 0);
        use();
        EXPECT_EQ(ts_tap_record(nullptr, 0), 0);
        return explained();
    }

    // The last record.
    std::string explained() const
    {
        std::string commands;
        shell::Explainer explainer;
        const tap::RecordReader made = record(records_);
        for (const tap::RecordedCall &call : made.calls())
            if (const std::string command = explainer.command(call); !command.empty())
                commands += command + '\n';
        return commands;
    }

    // The first record's program in C makes the same calls.
    void expect_in_c(const std::string &commands)
    {
        const std::string in = "cd " + folder_.path.string() + " && ";
        const auto run = [&](const std::string &command) {
            EXPECT_EQ(std::system((in + command).c_str()), 0);
        };
        run(TS_BIN_DIR "/tessel-shell explain --as c 1 > calls.c");
        run(TS_CC " " TS_C_FLAGS " -Wall -Werror calls.c -I" TS_SOURCE_DIR
                  "/bf_tessel_switch_nat_static/include -I" TS_GENERATED_DIR "/include -L" TS_LIB_DIR
                  " -Wl,-rpath," TS_LIB_DIR
                  " -Wl,--no-as-needed -lts_bf_pd_nat_static -ltessel_tap -ltessel_model");
        run("TESSEL_TAP=record:" + std::to_string(++records_) + " ./a.out");
        EXPECT_EQ(explained(), commands);
    }

    tap::RecordReader record(int number) const
    {
        std::string error;
        auto record = tap::RecordReader::open(folder_.path / std::to_string(number), error);
        EXPECT_TRUE(record && record->dropped() == 0 && !record->lost_at()) << error;
        return *std::move(record);
    }

    // Of each table, and of the members and groups of each profile.
    static void use_first_handles()
    {
        const pd_dev_target device = shell::device;
        const std::vector<u64> zeros(64);
        const pd_meter_spec meter{};
        reflection::EntryArguments arguments{};
        arguments.key = arguments.action = zeros.data();
        arguments.meter = &meter;
        u32 entry = 0, member = 0, group = 0;
        p4_pd_tessel_switch_init();
        for (const reflection::ProfileFunctions *profile : reflection::profiles()) {
            EXPECT_EQ(profile->actions.front().add(1, device, {.action = zeros.data()}, &member), 0u);
            EXPECT_EQ(profile->create_group(1, device, 1, &group), 0u);
        }
        for (const reflection::TableFunctions *table : reflection::tables()) {
            if (!table->table_delete)
                continue;
            const auto action = std::ranges::find_if(table->actions, &reflection::ActionFunctions::add);
            if (action != table->actions.end())
                action->add(1, device, arguments, &entry);
            else if (table->indirect)
                table->indirect->member.add(1, device, arguments, 1, &entry);
            table->table_delete(1, device.device_id, 1);
        }
        for (const reflection::ProfileFunctions *profile : reflection::profiles()) {
            EXPECT_EQ(profile->del_member(1, device.device_id, 1), 0u);
            EXPECT_EQ(profile->del_group(1, device.device_id, 1), 0u);
        }
        p4_pd_tessel_switch_cleanup();
        for (const reflection::ValueSetFunctions &set : reflection::value_sets()) {
            EXPECT_EQ(set.entry_add(1, device.device_id, 0, 0, 0, 0, 0, &entry), 0u);
            EXPECT_EQ(set.entry_delete(1, device.device_id, entry), 0u);
        }
    }

    // Where members and groups have the next handles, and so the names; and no call is made that calls back.
    static std::string renamed(std::string text)
    {
        text = std::regex_replace(text, std::regex{"\\w+ sync .*\n"}, "");
        std::string out;
        for (std::size_t at = 0; at < text.size(); ++at) {
            out += text[at];
            if (at == 0 || text[at - 1] != ' ' || (text[at] != 'm' && text[at] != 'g') ||
                !std::isdigit(text[at + 1]))
                continue;
            std::size_t digits = 0;
            out += std::to_string(std::stoul(text.substr(at + 1), &digits) + 1);
            at += digits;
        }
        return out;
    }

    const Folder folder_;
    int records_ = 0;
};

TEST_F(Explained, EveryTableAndAction)
{
    sweep::Random random;
    expect_again([&] { sweep::write_everything(random); });
}

class ExplainedExample : public Explained, public testing::WithParamInterface<const char *> {};

TEST_P(ExplainedExample, IsTheSameAgain)
{
    std::ifstream file{std::string{TS_SOURCE_DIR "/examples/"} + GetParam() + ".tsl"};
    const std::string script{std::istreambuf_iterator<char>(file), {}};
    expect_again([&] { output_of(script); });
}

INSTANTIATE_TEST_SUITE_P(, ExplainedExample, testing::Values("ecmp_lag", "edge_switch", "mac_learning"));

TEST_F(Explained, WhatHasNoTableOfItsOwn)
{
    const std::string commands = expect_again([&] {
        output_of("member add lagPortActionProfile m1 : setLagPort egrL2AintfPort=7\n"
                  "member add lagPortActionProfile m2 : setPhysicalPort\n"
                  "member add lagPortActionProfile m3 : setTunnelInfo\n"
                  "member delete lagPortActionProfile m3\n"
                  "member modify lagPortActionProfile m1 : setLagPort egrL2AintfPort=8\n"
                  "group create lagPortActionProfile g1 size=4\n"
                  "group create lagPortActionProfile g2 size=4\n"
                  "group add lagPortActionProfile g1 m1 m2\ngroup add lagPortActionProfile g2 m2\n"
                  "group remove lagPortActionProfile g2 m2\ngroup delete lagPortActionProfile g2\n"
                  "group state lagPortActionProfile g1 m1 inactive\n"
                  "group state lagPortActionProfile g1 m2 inactive\n"
                  "group state lagPortActionProfile g1 m2 active\n"
                  "group fallback lagPortActionProfile m2\n"
                  "add lagGroup egrL2AintfUnresolved=5 priority=3 : group g1\n"
                  "add lagGroup egrL2AintfUnresolved=6 priority=4 : member m2\n"
                  "modify lagGroup egrL2AintfUnresolved=6 priority=4 : member m1\n"
                  "default lagGroup : member m1\n"
                  "property ipv4Host 3 4 5\n"
                  "counter write pdpClassCount 3 : packets=5 bytes=6\n"
                  "meter set pdpMeter 2 : committed_rate=1 committed_burst=2 peak_rate=3 peak_burst=4 "
                  "type=unaware\n"
                  "add l2LookupMiss priority=1 : l2LookupBcastHit meter=1,2,3,4,aware\n"
                  "meter set stormControlMeter priority=1 : committed_rate=9 committed_burst=2 peak_rate=3 "
                  "peak_burst=4 type=aware\n"
                  "idle enable l2LearningLookup mode=1 param_1=2\n"
                  "add l2LearningLookup smac=00:11:22:33:44:55 ingL2Domain=1 ingL2Aintf=1 ttl=9 : noOp\n"
                  "idle expire l2LearningLookup smac=00:11:22:33:44:55 ingL2Domain=1 ingL2Aintf=1\n"
                  "idle restart l2LearningLookup smac=00:11:22:33:44:55 ingL2Domain=1 ingL2Aintf=1\n"
                  "idle ttl l2LearningLookup smac=00:11:22:33:44:55 ingL2Domain=1 ingL2Aintf=1 ttl=8\n"
                  "register write ingStpCheckData 3 1\nregister fill ingVlanCheckData 1\n"
                  "register reset ingVlanCheckData 2 count=2\nreset l2SmacCheck\n"
                  "meter adjust pdpMeter 20\ncounter sync pdpClassCount\ncounter sync l2DmacClassifyCount\n"
                  "register sync ingStpCheckData\ndigest timeout 7\n"
                  "pvs add vxlan_ports key=4789 scope=1,2,3\npvs add vxlan_ports key=8472&0xfff8\n"
                  "pvs delete vxlan_ports 1\npvs modify vxlan_ports 2 key=9\npvs property vxlan_ports 1 5 "
                  "argument=2\n"
                  "hash input hashOuterIpv4Hdr 0\nhash algorithm hashOuterIpv4Hdr 0\nhash seed "
                  "hashOuterIpv4Hdr 7 8\n"
                  "hash attributes hashOuterIpv4Hdr 1,2,3 4,5,6\nhash attributes hashOuterIpv4Hdr\n");
    });
    EXPECT_EQ(std::ranges::count(commands, '\n'), 49) << commands; // two members join in two calls
}

} // namespace
