// Value texts and walks: worked texts, and every table, action and profile against the formatter.
#include "text_fixture.h"

namespace {

using reflection::ProfileFunctions;
using reflection::TableFunctions;
using texts::Bytes;
using texts::text_of;

constexpr int rounds = 3;
constexpr u8 member = 2, group = 4, neither = 1; // kinds of an answer

class Value : public texts::Texts {
protected:
    Bytes key, parameters;
    pd_sess_hdl sess = 0;
    u8 device = 0, from_hw = 0;
    pd_entry_hdl entry = 0;

    // An entry of the table as placed, with this action.
    void prepare(const pd::Table &table, const pd::Binding &binding)
    {
        recorder::reset();
        sess = random.word();
        device = static_cast<u8>(random.word());
        from_hw = static_cast<u8>(random.word());
        entry = random.word();
        key = random.key(table);
        parameters = random.parameters(*binding.action);
        texts::answer_key(recorder::answer, table, key);
        texts::answer_action(recorder::answer, binding, parameters);
        recorder::answer.priority = random.word();
    }

    // Both roads to an entry: its own function and the dispatcher.
    std::string value(const TableFunctions &table)
    {
        const std::string text =
            text_of([&](char *buf) { return table.text.value(sess, device, entry, from_hw, buf); });
        texts::expect_read(sess, device, table.row->handle, entry, from_hw);
        EXPECT_EQ(text, text_of([&](char *buf) {
                      return PD(entry_value)(sess, device, table.row->handle, entry, from_hw, buf);
                  }));
        return text;
    }

    std::string plcmt_data_value(const TableFunctions &table)
    {
        const std::string text = text_of([&](char *buf) { return table.text.plcmt_data_value(this, buf); });
        EXPECT_TRUE(recorder::last().starts_with("pipe_mgr_plcmt_mat_data_get_entry(" +
                                                 recorder::text_of(recorder::word(this)) + ", "));
        EXPECT_EQ(text,
                  text_of([&](char *buf) { return PD(plcmt_data_value)(table.row->handle, this, buf); }));
        return text;
    }

    static std::string adt_plcmt_data_value(const ProfileFunctions &profile)
    {
        const std::string text = text_of([&](char *buf) { return profile.plcmt_data_value(nullptr, buf); });
        EXPECT_EQ(text, text_of([&](char *buf) {
                      return PD(adt_plcmt_data_value)(profile.row->action_table, nullptr, buf);
                  }));
        return text;
    }

    static std::string entry_text(const pd::Table &table, const std::string &inner)
    {
        const int priority = texts::is_ternary(table) ? static_cast<int>(recorder::answer.priority) : 0;
        return "((" + inner + "),(" + std::to_string(priority) + ",True))";
    }
};

// A key or action of zeros but for one member.
struct Example {
    const char *of;
    const char *member;
    u32 value;
    const char *text;
};
constexpr Example keys[] = {
    {"ingressPortMapping", "ig_intr_md_ingress_port", 1, "( 0x001,),"},
    // A mask that is not whole keeps the digits of the width.
    {"reservedNextHop", "l3_nextHop", 0x3ffa, "( 0x000a,),"},
    {"haloCounters", "haloResultRow1_bestResult", ~0u, "( 0x00007fff,),"},
    {"ipv4ShortMaskLpm", "ingIpv4_dip", 0x0a1fffff, "( 0x00,0x0a100000,0x0000,),"},
    {"ipv4ShortMaskLpm", "ingIpv4_dip_prefix_length", 33, "( 0x00,0x00000000,0x0021,),"},
};
constexpr Example actions[] = {
    {"setPhase0", "ingVPort", 0xc001, "('setPhase0',(0x0001,0x0000,0x0,0x0,)),"},
    {"setPhase0", "switchPort", 0xfe, "('setPhase0',(0x0000,0x0000,0x0,0x0,)),"},
};

TEST_F(Value, WorkedKeysAndActions)
{
    for (const Example &example : keys) {
        const auto &table = *reflection::find_table(example.of);
        Bytes record(table.row->record_size);
        texts::set(record, *table.row, example.member, example.value);
        EXPECT_EQ(text_of([&](char *buf) { return table.text.match_spec_value(record.data(), buf); }),
                  example.text);
    }
    each_action([&](const pd::Action &action, const reflection::ActionTextFunctions &text) {
        for (const Example &example : actions)
            if (example.of == std::string_view(action.name)) {
                Bytes record(action.record_size);
                texts::set(record, action, example.member, example.value);
                EXPECT_EQ(text_of([&](char *buf) { return text.value(record.data(), buf); }), example.text);
            }
    });
    EXPECT_EQ(text_of([](char *buf) { return PD(nop_value)(buf); }), "('nop',()),");

    // A wide field shows in upper case and whole, even where few of its bits count.
    PD(trapToCpu_match_spec_t) trap{};
    for (u8 i = 0; i < 16; ++i)
        trap.ingIpv6_dip[i] = static_cast<u8>(0xab + i);
    trap.ingIpv4_dip = 0xabcdef01;
    const std::string text = text_of([&](char *buf) { return PD(trapToCpu_match_spec_value)(&trap, buf); });
    EXPECT_NE(text.find(",0xABACADAEAFB0B1B2B3B4B5B6B7B8B9BA,0x00000000000000000000000000000000,"),
              std::string::npos);
    EXPECT_NE(text.find(",0xabcdef01,0x00000000,"), std::string::npos);
}

struct Answered {
    const char *table;
    u32 action;
    u8 kind;
    u32 priority;
    const char *value;
    const char *plcmt_data;
};
constexpr Answered answers[] = {
    {"ingressPortMapping", 0x20000000, 1, 9, "((( 0x001,),('setPhase0',(0x0001,0x0002,0x1,0x0,)),),(0,True))",
     "(( 0x001,),('setPhase0',(0x0001,0x0002,0x1,0x0,)),)"},
    {"queueCounters", 0x20000148, 1, 9, "(((),('countEgressQueue',()),),(0,True))",
     "((),('countEgressQueue',()),)"},
    // The priority is signed here.
    {"l2DmacClassify", 0x2000000b, 1, 0xfedcba98,
     "((( 0x001,0x000000,0x000000,0x000000,0x000000,),('onMiss',()),),(-19088744,True))",
     "(( 0x001,0x000000,0x000000,0x000000,0x000000,),('onMiss',()),)"},
    {"ecmpGroup", 0, member, 9, "((( 0x0001,),('setMbrHdl',(0xab1,))),(0,True))",
     "(( 0x0001,),('setMbrHdl',(0xab1,)))"},
    {"ecmpGroup", 0, group, 9, "((( 0x0001,),('setGrpHdl',(0xcd2,))),(0,True))",
     "(( 0x0001,),('setGrpHdl',(0xcd2,)))"},
    {"ecmpGroup", 0, neither, 9, "((( 0x0001,),),(0,True))", "(( 0x0001,),)"},
};

TEST_F(Value, WorkedEntries)
{
    for (const Answered &answered : answers) {
        SCOPED_TRACE(answered.value);
        const auto &table = *reflection::find_table(answered.table);
        recorder::reset();
        if (!table.row->key.empty())
            recorder::answer.value = recorder::answer.mask = {0, 1};
        recorder::answer.num_bytes = static_cast<u16>(recorder::answer.value.size());
        recorder::answer.action_kind = answered.kind;
        recorder::answer.action = answered.action;
        recorder::answer.data = {0, 1, 0, 2, 1, 0};
        recorder::answer.member = 0xab1;
        recorder::answer.group = 0xcd2;
        recorder::answer.priority = answered.priority;
        EXPECT_EQ(value(table), answered.value);
        EXPECT_EQ(plcmt_data_value(table), answered.plcmt_data);
    }
    recorder::answer.null_value = true; // the last one, as a default entry
    EXPECT_EQ(value(*reflection::find_table("ecmpGroup")), "(((),),(0,True))");
    EXPECT_EQ(plcmt_data_value(*reflection::find_table("ecmpGroup")), "((),)");
}

TEST_F(Value, EveryKeyAndAction)
{
    each_table([&](const TableFunctions &table) {
        ASSERT_EQ(!table.text.match_spec_value, table.row->key.empty());
        for (int round = 0; round < 4 * rounds && table.text.match_spec_value; ++round) {
            key = random.key(*table.row);
            EXPECT_EQ(text_of([&](char *buf) { return table.text.match_spec_value(key.data(), buf); }),
                      formatter::key_value(*table.row, key.data()));
        }
    });
    each_action([&](const pd::Action &action, const reflection::ActionTextFunctions &text) {
        for (int round = 0; round < 4 * rounds; ++round) {
            parameters = random.parameters(action);
            EXPECT_EQ(text_of([&](char *buf) { return text.value(parameters.data(), buf); }),
                      formatter::action_value(action, parameters.data()));
        }
    });
}

TEST_F(Value, EveryEntry)
{
    each_table([&](const TableFunctions &table) {
        const std::string empty = "(),";
        // As the driver answers by now; what stands behind the key is `reference`.
        const auto check = [&](const std::string &reference) {
            const Bytes back = texts::key_back(*table.row, key);
            const bool keyless = table.row->key.empty();
            const std::string shown = keyless ? empty : formatter::key_value(*table.row, back.data());
            EXPECT_EQ(value(table), entry_text(*table.row, shown + reference));
            EXPECT_EQ(plcmt_data_value(table), std::string("(").append(shown).append(reference).append(")"));
            recorder::answer.null_value = true;
            EXPECT_EQ(value(table), entry_text(*table.row, empty + reference));
            EXPECT_EQ(plcmt_data_value(table), std::string("(").append(empty).append(reference).append(")"));
            recorder::status = random.word() | 1;
            EXPECT_EQ(value(table) + plcmt_data_value(table), "");
            recorder::status = 0;
        };
        for (const pd::Binding &binding : table.row->actions)
            for (int round = 0; round < rounds; ++round) {
                prepare(*table.row, binding);
                const Bytes back = texts::parameters_back(*binding.action, parameters);
                check(formatter::action_value(*binding.action, back.data()));
                recorder::answer.action = 0x2fffffff; // no action of the table
                EXPECT_EQ(value(table) + plcmt_data_value(table), "");
            }
        if (!table.indirect)
            return;
        prepare(*table.row, table.indirect->profile->row->actions[0]);
        recorder::answer.action_kind = group;
        recorder::answer.group = 0xcd2;
        check("('setGrpHdl',(0xcd2,))");
    });
}

TEST_F(Value, EveryMember)
{
    for (const ProfileFunctions *profile : reflection::profiles())
        for (const pd::Binding &binding : profile->row->actions) {
            SCOPED_TRACE(testing::Message() << profile->row->name << " seed " << sweep::seed);
            recorder::reset();
            parameters = random.parameters(*binding.action);
            texts::answer_action(recorder::answer, binding, parameters);
            const Bytes back = texts::parameters_back(*binding.action, parameters);
            EXPECT_EQ(adt_plcmt_data_value(*profile), formatter::action_value(*binding.action, back.data()));
            recorder::status = 3;
            EXPECT_EQ(adt_plcmt_data_value(*profile), "");
            recorder::status = 0;
            recorder::answer.action = 0x2fffffff;
            EXPECT_EQ(adt_plcmt_data_value(*profile), "");
        }
}

// ---- By handle ----

// Of tables, and of profiles: the other kind is unknown, too.
constexpr u32 unknown[] = {0, 0x1000000, 0x100008d, 0x10000a0, 0x2000000, 0x3000001, 0xffffffff};

TEST_F(Value, UnknownHandles)
{
    for (const u32 handle : unknown) {
        EXPECT_EQ(text_of([&](char *buf) { return PD(entry_value)(1, 2, handle, 3, 1, buf); }), "");
        EXPECT_EQ(text_of([&](char *buf) { return PD(plcmt_data_value)(handle, nullptr, buf); }), "");
        EXPECT_EQ(text_of([&](char *buf) { return PD(adt_plcmt_data_value)(handle, nullptr, buf); }), "");
    }
    EXPECT_EQ(text_of([](char *buf) { return PD(entry_value)(1, 2, 0x200001d, 3, 1, buf); }), "");
    EXPECT_EQ(text_of([](char *buf) { return PD(adt_plcmt_data_value)(0x1000001, nullptr, buf); }), "");
    EXPECT_EQ(recorder::calls(), 0u);
}

// The five walks with handle `of`; `entry` and `count` where they take one.
struct Walk {
    const char *operation;
    bool of_members;
    bool goes_on;
    pd_status (*run)(u32 of, u32 *out);
};
constexpr pd_dev_target target{2, 3};
constexpr Walk walks[] = {
    {"pipe_mgr_get_first_entry_handle", false, false,
     [](u32 of, u32 *out) { return PD(entry_hdl_first)(1, target, of, out); }},
    {"pipe_mgr_get_next_entry_handles", false, true,
     [](u32 of, u32 *out) { return PD(entry_hdl_next)(1, target, of, 4, 2, out); }},
    {"pipe_mgr_table_get_default_entry_handle", false, false,
     [](u32 of, u32 *out) { return PD(entry_hdl_default)(1, target, of, out); }},
    {"pipe_mgr_get_first_entry_handle", true, false,
     [](u32 of, u32 *out) { return PD(member_hdl_first)(1, target, of, out); }},
    {"pipe_mgr_get_next_entry_handles", true, true,
     [](u32 of, u32 *out) { return PD(member_hdl_next)(1, target, of, 4, 2, out); }},
};

TEST_F(Value, Walks)
{
    std::vector<u32> tables, profiles;
    for (const TableFunctions *table : reflection::tables())
        tables.push_back(table->row->handle);
    for (const ProfileFunctions *profile : reflection::profiles())
        profiles.push_back(profile->row->action_table);
    for (const Walk &walk : walks) {
        SCOPED_TRACE(walk.operation);
        for (const u32 of : walk.of_members ? profiles : tables) {
            recorder::reset();
            recorder::status = of % 3;
            recorder::answer.entry = 0x77;
            recorder::answer.numbers = {0x77, 0x78, 0x79};
            u32 out[] = {0xa5, 0xa5, 0xa5};
            EXPECT_EQ(walk.run(of, out), of % 3);
            std::string expected = recorder::line(walk.operation, 1, target, of); // of a default entry
            if (!std::string_view(walk.operation).starts_with("pipe_mgr_table"))
                expected = walk.goes_on ? recorder::line(walk.operation, 1, of, target, 4, 2)
                                        : recorder::line(walk.operation, 1, of, target);
            EXPECT_EQ(recorder::last(), expected);
            EXPECT_EQ(out[0], 0x77u);
            EXPECT_EQ(out[1], walk.goes_on ? 0x78u : 0xa5u);
            EXPECT_EQ(out[2], 0xa5u);
        }
        // No call, one handle that is none; the two kinds differ in their status.
        recorder::reset();
        std::vector<u32> handles(std::begin(unknown), std::end(unknown));
        handles.push_back(walk.of_members ? tables[0] : profiles[0]);
        for (const u32 of : handles) {
            u32 out[] = {0xa5, 0xa5};
            EXPECT_EQ(walk.run(of, out), walk.of_members ? 0xffffffff : 0) << of;
            EXPECT_EQ(out[0], 0xffffffff) << of;
            EXPECT_EQ(out[1], 0xa5u) << of;
        }
        EXPECT_EQ(recorder::calls(), 0u);
    }
}

} // namespace
