// Schemas, value texts and what is printed to a descriptor: worked texts for each rule, and every table,
// action, entry, member and profile against the formatter; the walks by any handle.
#include "text_fixture.h"

namespace {

using formatter::Slot;
using reflection::ProfileFunctions;
using reflection::TableFunctions;
using texts::Bytes;
using texts::Printed;
using texts::printed_by;
using texts::text_of;

constexpr int indents[] = {0, 1, 4};
constexpr u8 member = 2, group = 4, neither = 1; // kinds of an answer
constexpr u32 unknown_action = 0x2fffffff;
const std::string prefix = "p4_pd_tessel_switch_";

// An entry or member by its own functions and by those that take any handle, which tell the same. Its
// action's parameters are printed with the last indentation.
class Telling : public texts::Texts {
protected:
    Bytes key, parameters;
    pd_sess_hdl sess = 0;
    u8 device = 0, from_hw = 0;
    pd_entry_hdl entry = 0;
    int indent = 0;

    template <typename Own, typename General>
    static std::string text_of_both(const Own &own, const General &general)
    {
        const std::string text = text_of(own);
        EXPECT_EQ(text, text_of(general));
        return text;
    }

    template <typename Own, typename General>
    static Printed printed_by_both(const Own &own, const General &general)
    {
        const Printed printed = printed_by(own);
        EXPECT_EQ(printed, printed_by(general));
        return printed;
    }

    static std::string schema(const TableFunctions &table)
    {
        return text_of_both(table.text.schema,
                            [&](char *buf) { return PD(cli_schema)(table.row->handle, buf); });
    }

    std::string value(const TableFunctions &table)
    {
        const u32 handle = table.row->handle;
        recorder::forget();
        const std::string text = text_of_both(
            [&](char *buf) { return table.text.value(sess, device, entry, from_hw, buf); },
            [&](char *buf) { return PD(entry_value)(sess, device, handle, entry, from_hw, buf); });
        for (const std::string &line : recorder::lines())
            if (!line.starts_with("bf_sys"))
                texts::expect_read(line, sess, device, handle, entry, from_hw);
        return text;
    }

    std::string placed_value(const TableFunctions &table)
    {
        const std::string text =
            text_of_both([&](char *buf) { return table.text.plcmt_data_value(this, buf); },
                         [&](char *buf) { return PD(plcmt_data_value)(table.row->handle, this, buf); });
        EXPECT_TRUE(recorder::last().starts_with("pipe_mgr_plcmt_mat_data_get_entry(" +
                                                 recorder::text_of(recorder::word(this)) + ", "));
        return text;
    }

    Printed printed(const TableFunctions &table) const
    {
        return printed_by_both(
            [&](int fd) { return table.text.plcmt_data_print(fd, indent, nullptr); },
            [&](int fd) { return PD(plcmt_data_print)(fd, indent, table.row->handle, nullptr); });
    }

    static std::string value(const ProfileFunctions &profile)
    {
        return text_of_both(
            [&](char *buf) { return profile.plcmt_data_value(nullptr, buf); },
            [&](char *buf) { return PD(adt_plcmt_data_value)(profile.row->action_table, nullptr, buf); });
    }

    Printed printed(const ProfileFunctions &profile) const
    {
        return printed_by_both(
            [&](int fd) { return profile.adt_plcmt_data_print(fd, indent, nullptr); },
            [&](int fd) { return PD(adt_plcmt_data_print)(fd, indent, profile.row->action_table, nullptr); });
    }

    // The driver answers with a random entry of the table; with this action of random parameters.
    void answer_entry(const pd::Table &table)
    {
        recorder::reset();
        sess = random.word();
        device = static_cast<u8>(random.word());
        from_hw = static_cast<u8>(random.word());
        entry = random.word();
        key = random.key(table);
        encoder::answer_key(recorder::answer, table, key.data());
        recorder::answer.priority = random.word();
    }

    struct Told {
        std::string value, lines;
    };
    Told answer_action(const pd::Binding &binding)
    {
        parameters = random.parameters(*binding.action);
        texts::answer_action(recorder::answer, binding, parameters);
        const Bytes back = texts::parameters_back(*binding.action, parameters);
        return {formatter::action_value(*binding.action, back.data()),
                std::string(indent, ' ') + prefix + binding.action->name + ":\n" +
                    formatter::joined(formatter::action_lines(*binding.action, indent, back.data()))};
    }

    // As the driver answers by now, then as a default entry, then refused. `what`: behind the key.
    void check_entry(const TableFunctions &table, const Told &what)
    {
        const pd::Table &row = *table.row;
        const bool keyless = row.key.empty();
        const Bytes back = texts::key_back(row, key);
        const std::string name = std::string(indent, ' ') + prefix + row.name + ":\n";
        const int priority = encoder::is_ternary(row) ? static_cast<int>(recorder::answer.priority) : 0;
        const auto check = [&](const std::string &shown, const std::string &lines) {
            EXPECT_EQ(value(table), "((" + shown + what.value + "),(" + std::to_string(priority) + ",True))");
            EXPECT_EQ(placed_value(table), "(" + shown + what.value + ")");
            EXPECT_EQ(printed(table), (Printed{lines + what.lines, 0}));
        };
        check(keyless ? "()," : formatter::key_value(row, back.data()),
              keyless ? name : formatter::joined(formatter::key_lines(row, indent, back.data())));
        recorder::answer.null_value = true;
        check("(),", keyless ? name : "");
        check_refused(table, 7, 7);
    }

    void check_refused(const TableFunctions &table, pd_status status, pd_status told)
    {
        recorder::status = status;
        EXPECT_EQ(value(table) + placed_value(table), "");
        EXPECT_EQ(printed(table),
                  (Printed{"cannot decode plcmt_data for " + prefix + table.row->name + "\n", told}));
        recorder::status = 0;
    }
};

// ---- Worked texts -----------------------------------------------------------------------------------------

TEST_F(Telling, WorkedSchemas)
{
    EXPECT_STREQ(PD(nop_schema)(), "( ('nop'),())");
    EXPECT_STREQ(PD(ipv4ShortMaskLpm_match_spec_schema)(),
                 "(( 'vrfId','l3Info_vrfId',8,0xff,None,None,None),"
                 "( 'dip','ingIpv4_dip',32,0xfff00000,'v4addr',None,None),"
                 "( 'dipPrefixLength','ingIpv4_dip_prefix_length',16,0xffff,None,None,None),)");
    // By name, upper case first; not by number.
    EXPECT_TRUE(text_of([](char *buf) {
                    return PD(cli_schema)(0x200001d, buf);
                }).starts_with("(( ('NoAction'),()),( ('setEcmpNextHop'),(("));
}

// A key of zeros but for one member, as a value and as a printed line: the mask is told where it is not
// whole, of a wide field never.
struct Example {
    const char *table;
    const char *member;
    u32 number;
    const char *value;
    const char *line;
};
constexpr Example examples[] = {
    {"ingressPortMapping", "ig_intr_md_ingress_port", 1, "( 0x001,),",
     "\n  ig_intr_md_ingress_port: 0x001\n"},
    {"nextHop0", "l3_nextHop", 0xfffa, "( 0x3ffa,),", "\n  l3_nextHop: 0x3ffa\n"},
    // A mask that is not whole keeps the digits of the width.
    {"reservedNextHop", "l3_nextHop", 0x3ffa, "( 0x000a,),", "\n  l3_nextHop mask 0xf: 0x000a\n"},
    {"haloCounters", "haloResultRow1_bestResult", ~0u, "( 0x00007fff,),",
     "\n  haloResultRow1_bestResult mask 0x7fff: 0x00007fff\n"},
    {"ipv4ShortMaskLpm", "ingIpv4_dip", 0x0a1fffff, "( 0x00,0x0a100000,0x0000,),",
     "\n  ingIpv4_dip mask 0xfff00000: 0x0a100000\n"},
    {"ipv4ShortMaskLpm", "ingIpv4_dip_prefix_length", 33, "( 0x00,0x00000000,0x0021,),",
     "\n  ingIpv4_dip_prefix_length: 0x0021\n"},
    // A wide field shows in upper case and whole, even where few of its bits count.
    {"trapToCpu", "ingIpv6_dip", 0xabcd, ",0xABCD0000000000000000000000000000,",
     "\n  ingIpv6_dip: 0xABCD0000000000000000000000000000\n"},
    {"trapToCpu", "ingIpv6_dip_mask", 0xef01, ",0xEF010000000000000000000000000000,",
     "\n  ingIpv6_dip_mask: 0xEF010000000000000000000000000000\n"},
};

TEST_F(Telling, WorkedKeys)
{
    for (const Example &example : examples) {
        const auto &table = *reflection::find_table(example.table);
        Bytes record(table.row->record_size);
        texts::set(record, *table.row, example.member, example.number);
        const std::string text =
            text_of([&](char *buf) { return table.text.match_spec_value(record.data(), buf); });
        EXPECT_NE(text.find(example.value), std::string::npos) << text << example.value;
        const std::string lines =
            printed_by([&](int fd) { return table.text.match_spec_print(fd, 0, record.data()); }).first;
        EXPECT_TRUE(lines.starts_with(prefix + example.table + "_match_spec_t:\n")) << lines;
        EXPECT_NE(lines.find(example.line), std::string::npos) << lines << example.line;
    }
}

// ---- Everything -------------------------------------------------------------------------------------------

TEST_F(Telling, EveryKey)
{
    std::size_t keys = 0, tuples = 0, partial = 0, longest = 0;
    each_table([&](const TableFunctions &table) {
        const pd::Table &row = *table.row;
        EXPECT_EQ(schema(table), formatter::table_schema(row));
        longest = std::max(longest, schema(table).size());
        const auto &functions = table.text;
        ASSERT_EQ(!functions.match_spec_schema, row.key.empty());
        ASSERT_EQ(!functions.match_spec_value, row.key.empty());
        ASSERT_EQ(!functions.match_spec_print, row.key.empty());
        if (row.key.empty())
            return;
        EXPECT_EQ(functions.match_spec_schema(), formatter::key_schema(row));
        ++keys;
        for (const Slot &slot : formatter::slots_of(row)) {
            ++tuples;
            partial += formatter::is_partial(slot);
        }
        for (int round = 0; round < 12; ++round) {
            key = random.key(row);
            EXPECT_EQ(text_of([&](char *buf) { return functions.match_spec_value(key.data(), buf); }),
                      formatter::key_value(row, key.data()));
            const auto lines = formatter::key_lines(row, indents[round % 3], key.data());
            EXPECT_EQ(printed_by([&](int fd) {
                          return functions.match_spec_print(fd, indents[round % 3], key.data());
                      }),
                      (Printed{formatter::joined(lines), static_cast<u32>(lines.back().size())}));
        }
    });
    EXPECT_EQ(keys, 141u);
    EXPECT_EQ(tuples, 775u);
    EXPECT_EQ(partial, 56u);
    EXPECT_EQ(longest, 3289u);
}

TEST_F(Telling, EveryAction)
{
    std::size_t longest = 0;
    each_action([&](const pd::Action &action, const reflection::ActionTextFunctions &text) {
        EXPECT_EQ(text.schema(), formatter::action_schema(action));
        longest = std::max(longest, std::string(text.schema()).size());
        ASSERT_EQ(!text.print, action.parameters.empty());
        for (int round = 0; round < 12; ++round) {
            parameters = random.parameters(action);
            EXPECT_EQ(text_of([&](char *buf) { return text.value(parameters.data(), buf); }),
                      formatter::action_value(action, parameters.data()));
            if (!text.print)
                continue;
            const auto lines = formatter::action_lines(action, indents[round % 3], parameters.data());
            EXPECT_EQ(
                printed_by([&](int fd) { return text.print(fd, indents[round % 3], parameters.data()); }),
                (Printed{formatter::joined(lines), static_cast<u32>(lines.back().size())}));
        }
    });
    EXPECT_EQ(longest, 238u);
}

TEST_F(Telling, EveryEntry)
{
    each_table([&](const TableFunctions &table) {
        for (const pd::Binding &binding : table.row->actions)
            for (const int depth : indents) {
                indent = depth;
                answer_entry(*table.row);
                check_entry(table, answer_action(binding));
                recorder::answer.action = unknown_action;
                check_refused(table, 0, 3);
            }
        if (!table.indirect)
            return;
        // What an entry points at is not printed.
        for (const auto &[kind, value] : {std::pair{member, "('setMbrHdl',(0xab1,))"},
                                          {group, "('setGrpHdl',(0xcd2,))"},
                                          {neither, ""}}) {
            answer_entry(*table.row);
            recorder::answer.action_kind = kind;
            recorder::answer.member = 0xab1;
            recorder::answer.group = 0xcd2;
            check_entry(table, {value, ""});
        }
    });
}

TEST_F(Telling, EveryMember)
{
    for (const ProfileFunctions *profile : reflection::profiles()) {
        SCOPED_TRACE(testing::Message() << profile->row->name << " seed " << sweep::seed);
        const u32 handle = profile->row->action_table;
        EXPECT_EQ(text_of_both(profile->schema, [&](char *buf) { return PD(cli_schema)(handle, buf); }),
                  formatter::profile_schema(*profile->row));
        for (const pd::Binding &binding : profile->row->actions)
            for (const int depth : indents) {
                indent = depth;
                recorder::reset();
                const Told told = answer_action(binding);
                EXPECT_EQ(value(*profile), told.value);
                EXPECT_EQ(printed(*profile), (Printed{told.lines, 0}));
                const std::string refused =
                    "cannot decode plcmt_data for " + prefix + profile->row->name + "_adt_plcmt_data_print\n";
                for (const pd_status status : {7u, 0u}) {
                    recorder::status = status;
                    recorder::answer.action = status ? binding.handle : unknown_action;
                    EXPECT_EQ(value(*profile), "");
                    EXPECT_EQ(printed(*profile), (Printed{refused, status ? status : 15}));
                }
            }
    }
}

// ---- By handle --------------------------------------------------------------------------------------------

// Of tables, and of profiles: the other kind is unknown, too.
constexpr u32 unknown[] = {0, 0x1000000, 0x100008d, 0x10000a0, 0x2000000, 0x3000001, 0xffffffff};

TEST_F(Telling, UnknownHandles)
{
    const auto not_found = [](u32 handle) {
        char line[40];
        std::snprintf(line, sizeof line, "0x%08x table not found\n", handle);
        return Printed{line, static_cast<u32>(std::strlen(line))};
    };
    const auto expect_no_table = [&](u32 handle) {
        EXPECT_EQ(text_of([&](char *buf) { return PD(entry_value)(1, 2, handle, 3, 1, buf); }), "");
        EXPECT_EQ(text_of([&](char *buf) { return PD(plcmt_data_value)(handle, nullptr, buf); }), "");
        EXPECT_EQ(printed_by([&](int fd) { return PD(plcmt_data_print)(fd, 4, handle, nullptr); }),
                  not_found(handle));
    };
    const auto expect_no_profile = [&](u32 handle) {
        EXPECT_EQ(text_of([&](char *buf) { return PD(adt_plcmt_data_value)(handle, nullptr, buf); }), "");
        EXPECT_EQ(printed_by([&](int fd) { return PD(adt_plcmt_data_print)(fd, 4, handle, nullptr); }),
                  not_found(handle));
    };
    for (const u32 handle : unknown) {
        expect_no_table(handle);
        expect_no_profile(handle);
        EXPECT_EQ(text_of([&](char *buf) { return PD(cli_schema)(handle, buf); }), "()");
    }
    expect_no_table(0x200001d);
    expect_no_profile(0x1000001);
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

TEST_F(Telling, Walks)
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
            recorder::answer.numbers[0] = 0x77;
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

// ---- Addresses --------------------------------------------------------------------------------------------

TEST_F(Telling, V4AndMacAddresses)
{
    EXPECT_EQ(text_of([](char *b) { return PD(_print_v4addr_exact)(b, "dip", 0x0a0b0cff); }),
              "dip 10.11.12.255 ");
    EXPECT_EQ(text_of([](char *b) { return PD(_print_v4addr_lpm)(b, "", 0x80000001, 65535); }),
              " 128.0.0.1/65535 ");
    for (const auto &[mask, text] : {std::pair{0xffffffffu, "sip 10.11.12.13/32 "},
                                     {0xff00ff00u, "sip 10.11.12.13/8 "},
                                     {0x7fffffffu, "sip 10.11.12.13/0 "},
                                     {0u, ""}})
        EXPECT_EQ(
            text_of([mask = mask](char *b) { return PD(_print_v4addr_ternary)(b, "sip", 0x0a0b0c0d, mask); }),
            text);

    EXPECT_EQ(text_of([](char *b) { return PD(_print_mac_exact)(b, "dmac", 0xff0180c2, 0xff00000e); }),
              "dmac 0180.c200.000e ");
    const struct {
        u32 upper_mask, lower_mask;
        const char *text;
    } masks[] = {
        {0xffffff, 0xffffffff, "dmac 0180.c200.000e "},
        {0xff000000, 0, ""},
        {0xffffff, 0, "dmac 0180.c200.000e/ffff.ff00.0000 "},
        {0x123456, 0xff789abc, "dmac 0180.c200.000e/1234.5678.9abc "},
    };
    for (const auto &mask : masks)
        EXPECT_EQ(text_of([&](char *b) {
                      return PD(_print_mac_ternary)(b, "dmac", 0xff0180c2, mask.upper_mask, 0xe,
                                                    mask.lower_mask);
                  }),
                  mask.text);
}

TEST_F(Telling, V6Addresses)
{
    const u8 address[16] = {0x20, 1, 0x0d, 0xb8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xab};
    const u8 holes[16] = {0xff, 0, 0xff, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
    const u8 mapped[16] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xff, 0xff, 10, 0, 0, 1}, zero[16] = {};
    const auto ternary = [&](const u8 *value, const u8 *mask) {
        return text_of([&](char *b) { return PD(_print_v6addr_ternary)(b, "dip", value, mask); });
    };
    EXPECT_EQ(text_of([&](char *b) { return PD(_print_v6addr_exact)(b, "dip", address); }),
              "dip 2001:db8::ab");
    EXPECT_EQ(text_of([&](char *b) { return PD(_print_v6addr_exact)(b, "dip", mapped); }),
              "dip ::ffff:10.0.0.1");
    EXPECT_EQ(text_of([&](char *b) { return PD(_print_v6addr_lpm)(b, "dip", address, 129); }),
              "dip 2001:db8::ab/129 ");
    EXPECT_EQ(ternary(address, holes), "dip 2001:db8::ab/ff00:ff00::1 ");
    EXPECT_EQ(ternary(zero, address), "dip ::/2001:db8::ab ");
    EXPECT_EQ(ternary(address, zero), "");
}

} // namespace
