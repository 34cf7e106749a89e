// Recorded calls as commands: loaded again they leave the same state, and explain as themselves.
#include "explain.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "driver.h"
#include "random_records.h"
#include "shell_fixture.h"
#include "values.h"

namespace {

namespace fs = std::filesystem;

class Explained : public Shell {
protected:
    Explained()
    {
        char name[] = "/tmp/explain-test-XXXXXX";
        EXPECT_NE(mkdtemp(name), nullptr);
        folder_ = name;
    }
    ~Explained() override { fs::remove_all(folder_); }

    // The commands that explain the calls that `use` makes.
    template <typename Use>
    std::string recorded(Use use)
    {
        const std::string path = folder_ / std::to_string(++records_);
        EXPECT_EQ(ts_tap_record(path.c_str(), 0), 0);
        use();
        EXPECT_EQ(ts_tap_record(nullptr, 0), 0);
        std::string error, commands;
        const auto record = tap::RecordReader::open(path, error);
        EXPECT_TRUE(record && record->dropped() == 0 && !record->gap_at_end()) << error;
        shell::Explainer explainer;
        for (const tap::RecordedCall &call : record->calls())
            if (const std::string command = explainer.command(call); !command.empty())
                commands += command + '\n';
        return commands;
    }

    // What is there after `commands`, which explain themselves.
    void expect_again(const std::string &commands, const std::string &state)
    {
        ts_model_reset();
        std::string again;
        EXPECT_EQ(recorded([&] { again = output_of(commands + "save -"); }), commands);
        EXPECT_EQ(again, state);
    }

private:
    fs::path folder_;
    int records_ = 0;
};

// Random, but no larger than their fields.
template <typename Fields>
sweep::Bytes clipped(sweep::Bytes record, const Fields &fields)
{
    for (const auto &field : fields) {
        const shell::Value value = shell::load(field.width, &record[field.offset]),
                           most = shell::ones(field.width);
        shell::store({value.high & most.high, value.low & most.low}, field.width, &record[field.offset]);
    }
    return record;
}

// Of one action: an entry with its default, then another action for it by handle, and for some of them their
// end.
void write(const reflection::TableFunctions &table, const reflection::ActionFunctions &action,
           sweep::Random &random)
{
    const pd_dev_target device = shell::device;
    const auto parameters_of = [&](const pd::Action &action) {
        return clipped(random.parameters(action), action.parameters);
    };
    const sweep::Bytes parameters = parameters_of(*action.row->action);
    const pd_meter_spec meter{random.word(), random.word(), random.word(), random.word(), random.word() % 2};
    sweep::Bytes key = clipped(random.key(*table.row), table.row->key);
    for (const pd::Field &field : table.row->key)
        if (field.match == pd::Match::lpm)
            sweep::set_prefix_length(key, field, random.word() % (field.width + 1));
    reflection::EntryArguments arguments{};
    arguments.key = key.data();
    arguments.priority = random.word();
    arguments.action = parameters.data();
    arguments.meter = &meter;
    arguments.ttl = random.word() % 100;
    pd_entry_hdl entry = 0;
    if (action.set_default_action)
        action.set_default_action(1, device, arguments, &entry);
    if (!action.add || action.add(1, device, arguments, &entry) != 0)
        return;
    for (const reflection::ActionFunctions &other : table.actions)
        if (other.modify && random.word() % 2) {
            const sweep::Bytes others = parameters_of(*other.row->action);
            arguments.action = others.data();
            other.modify(1, device.device_id, entry, arguments);
        }
    if (random.word() % 4 == 0)
        table.table_delete(1, device.device_id, entry);
}

TEST_F(Explained, EveryTableAndAction)
{
    sweep::Random random;
    const std::string commands = recorded([&] {
        for (int round = 0; round < 3; ++round)
            for (const reflection::TableFunctions *table : reflection::tables())
                for (const reflection::ActionFunctions &action : table->actions)
                    write(*table, action, random);
    });
    expect_again(commands, output_of("save -"));
}

TEST_F(Explained, WhatHasNoTableOfItsOwn)
{
    std::string state;
    const std::string commands = recorded([&] {
        state = output_of(
            "member add lagPortActionProfile m1 : setLagPort egrL2AintfPort=7\n"
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
            "register reset ingVlanCheckData 2 count=2\nreset l2SmacCheck\nsave -");
    });
    EXPECT_EQ(std::ranges::count(commands, '\n'), 34) << commands; // two members join in two calls
    expect_again(commands, state);
}

} // namespace
