// Printing to a descriptor, and addresses in words: worked lines, and every table, action and profile against
// the formatter.
#include "text_fixture.h"

namespace {

using reflection::ProfileFunctions;
using reflection::TableFunctions;
using texts::Bytes;
using texts::Printed;
using texts::printed_by;
using texts::text_of;

constexpr int indents[] = {0, 1, 4};
const std::string prefix = "p4_pd_tessel_switch_";

class Printing : public texts::Texts {
protected:
    Bytes parameters;

    static Printed plcmt_data(const TableFunctions &table, int indent)
    {
        const Printed printed =
            printed_by([&](int fd) { return table.text.plcmt_data_print(fd, indent, nullptr); });
        EXPECT_EQ(printed, printed_by([&](int fd) {
                      return PD(plcmt_data_print)(fd, indent, table.row->handle, nullptr);
                  }));
        return printed;
    }

    static Printed member(const ProfileFunctions &profile, int indent)
    {
        const Printed printed =
            printed_by([&](int fd) { return profile.adt_plcmt_data_print(fd, indent, nullptr); });
        EXPECT_EQ(printed, printed_by([&](int fd) {
                      return PD(adt_plcmt_data_print)(fd, indent, profile.row->action_table, nullptr);
                  }));
        return printed;
    }

    // The driver answers with this action; what is printed of it.
    std::string answer(const pd::Binding &binding, int indent)
    {
        parameters = random.parameters(*binding.action);
        texts::answer_action(recorder::answer, binding, parameters);
        const Bytes back = texts::parameters_back(*binding.action, parameters);
        return std::string(indent, ' ') + prefix + binding.action->name + ":\n" +
               formatter::joined(formatter::action_lines(*binding.action, indent, back.data()));
    }
};

// What the last line was is what is returned.
Printed with_last_line(const std::string &before, const std::string &last)
{
    return {before + last, static_cast<u32>(last.size())};
}

// A key of zeros but for one member; the mask is told where it is not whole, of a wide field never.
struct Example {
    const char *table;
    const char *member;
    u32 value;
    const char *line;
};
constexpr Example examples[] = {
    {"ingressPortMapping", "ig_intr_md_ingress_port", 1, "\n  ig_intr_md_ingress_port: 0x001\n"},
    {"nextHop0", "l3_nextHop", 0xfffa, "\n  l3_nextHop: 0x3ffa\n"},
    {"reservedNextHop", "l3_nextHop", 0x3ffa, "\n  l3_nextHop mask 0xf: 0x000a\n"},
    {"haloCounters", "haloResultRow1_bestResult", ~0u,
     "\n  haloResultRow1_bestResult mask 0x7fff: 0x00007fff\n"},
    {"ipv4ShortMaskLpm", "ingIpv4_dip", 0x0a1fffff, "\n  ingIpv4_dip mask 0xfff00000: 0x0a100000\n"},
    {"ipv4ShortMaskLpm", "ingIpv4_dip_prefix_length", 12, "\n  ingIpv4_dip_prefix_length: 0x000c\n"},
    {"ingressSflowSample", "ingMd_rand_mask", ~0u, "\n  ingMd_rand_mask mask 0xffffff: 0x00ffffff\n"},
    {"trapToCpu", "ingIpv6_dip", 0xabcd, "\n  ingIpv6_dip: 0xABCD0000000000000000000000000000\n"},
    {"trapToCpu", "ingIpv6_dip_mask", 0xef01, "\n  ingIpv6_dip_mask: 0xEF010000000000000000000000000000\n"},
};

TEST_F(Printing, WorkedLines)
{
    for (const Example &example : examples) {
        const auto &table = *reflection::find_table(example.table);
        Bytes key(table.row->record_size);
        texts::set(key, *table.row, example.member, example.value);
        const std::string text =
            printed_by([&](int fd) { return table.text.match_spec_print(fd, 0, key.data()); }).first;
        EXPECT_TRUE(text.starts_with(prefix + example.table + "_match_spec_t:\n")) << text;
        EXPECT_NE(text.find(example.line), std::string::npos) << text << example.line;
    }
    // A member stands deeper than its head at every indentation.
    const PD(ingressPortMapping_match_spec_t) port{1};
    EXPECT_EQ(printed_by([&](int fd) { return PD(ingressPortMapping_match_spec_print)(fd, 4, &port); }),
              with_last_line("    p4_pd_tessel_switch_ingressPortMapping_match_spec_t:\n",
                             "     ig_intr_md_ingress_port: 0x001\n"));
    const PD(setPhase0_action_spec_t) phase0{0xc001, 2, 0xff, 0};
    EXPECT_EQ(
        printed_by([&](int fd) { return PD(setPhase0_print)(fd, 0, &phase0); }),
        with_last_line("  action_ingVPort: 0x0001\n  action_nativeAintf: 0x0002\n  action_switchPort: 0x1\n",
                       "  action_physicalPort: 0x0\n"));
    recorder::answer.action = 0x20000148;
    EXPECT_EQ(
        plcmt_data(*reflection::find_table("queueCounters"), 2),
        (Printed{"  p4_pd_tessel_switch_queueCounters:\n  p4_pd_tessel_switch_countEgressQueue:\n", 0}));
}

TEST_F(Printing, EveryKeyAndAction)
{
    const auto expect = [](const std::vector<std::string> &lines, const auto &print) {
        EXPECT_EQ(printed_by(print),
                  (Printed{formatter::joined(lines), static_cast<u32>(lines.back().size())}));
    };
    for (const int indent : indents) {
        each_table([&](const TableFunctions &table) {
            ASSERT_EQ(!table.text.match_spec_print, table.row->key.empty());
            const Bytes key = random.key(*table.row);
            if (table.text.match_spec_print)
                expect(formatter::key_lines(*table.row, indent, key.data()),
                       [&](int fd) { return table.text.match_spec_print(fd, indent, key.data()); });
        });
        each_action([&](const pd::Action &action, const reflection::ActionTextFunctions &text) {
            ASSERT_EQ(!text.print, action.parameters.empty());
            parameters = random.parameters(action);
            if (text.print)
                expect(formatter::action_lines(action, indent, parameters.data()),
                       [&](int fd) { return text.print(fd, indent, parameters.data()); });
        });
    }
}

TEST_F(Printing, EveryEntry)
{
    each_table([&](const TableFunctions &table) {
        const pd::Table &row = *table.row;
        const std::string refused =
            "cannot decode plcmt_data for p4_pd_tessel_switch_" + std::string(row.name) + "\n";
        // `action`: what an entry points at is not printed.
        const auto check = [&](int indent, const std::string &action) {
            const Bytes key = random.key(row), back = texts::key_back(row, key);
            texts::answer_key(recorder::answer, row, key);
            const std::string keyless = std::string(indent, ' ') + prefix + row.name + ":\n";
            const std::string lines = formatter::joined(formatter::key_lines(row, indent, back.data()));
            EXPECT_EQ(plcmt_data(table, indent), (Printed{(row.key.empty() ? keyless : lines) + action, 0}));
            recorder::answer.null_value = true;
            EXPECT_EQ(plcmt_data(table, indent), (Printed{(row.key.empty() ? keyless : "") + action, 0}));
            recorder::status = 7;
            EXPECT_EQ(plcmt_data(table, indent), (Printed{refused, 7}));
            recorder::reset();
        };
        for (const int indent : indents)
            for (const pd::Binding &binding : row.actions)
                check(indent, answer(binding, indent));
        if (table.indirect) {
            recorder::answer.action_kind = 2;
            check(4, "");
            return;
        }
        recorder::answer.action = 0x2fffffff; // no action of the table
        EXPECT_EQ(plcmt_data(table, 4), (Printed{refused, 3}));
    });
}

TEST_F(Printing, EveryMember)
{
    for (const ProfileFunctions *profile : reflection::profiles())
        for (const pd::Binding &binding : profile->row->actions)
            for (const int indent : indents) {
                SCOPED_TRACE(testing::Message() << profile->row->name << " seed " << sweep::seed);
                const std::string lines = answer(binding, indent);
                EXPECT_EQ(member(*profile, indent), (Printed{lines, 0}));
                const std::string refused = "cannot decode plcmt_data for p4_pd_tessel_switch_" +
                                            std::string(profile->row->name) + "_adt_plcmt_data_print\n";
                recorder::status = 7;
                EXPECT_EQ(member(*profile, indent), (Printed{refused, 7}));
                recorder::status = 0;
                recorder::answer.action = 0x2fffffff;
                EXPECT_EQ(member(*profile, indent), (Printed{refused, 15}));
            }
}

TEST_F(Printing, UnknownHandles)
{
    const auto table = [](u32 handle) {
        return printed_by([&](int fd) { return PD(plcmt_data_print)(fd, 4, handle, nullptr); });
    };
    const auto profile = [](u32 handle) {
        return printed_by([&](int fd) { return PD(adt_plcmt_data_print)(fd, 4, handle, nullptr); });
    };
    EXPECT_EQ(table(0x100008d), with_last_line("", "0x0100008d table not found\n"));
    EXPECT_EQ(table(0x10000a0), with_last_line("", "0x010000a0 table not found\n"));
    EXPECT_EQ(table(0x200001d), with_last_line("", "0x0200001d table not found\n"));
    EXPECT_EQ(profile(0x1000001), with_last_line("", "0x01000001 table not found\n"));
    EXPECT_EQ(profile(0), with_last_line("", "0x00000000 table not found\n"));
    EXPECT_EQ(recorder::calls(), 0u);
}

// ---- Addresses ----

TEST_F(Printing, V4AndMacAddresses)
{
    EXPECT_EQ(text_of([](char *b) { return PD(_print_v4addr_exact)(b, "dip", 0x0a0b0cff); }),
              "dip 10.11.12.255 ");
    EXPECT_EQ(text_of([](char *b) { return PD(_print_v4addr_lpm)(b, "", 0x80000001, 65535); }),
              " 128.0.0.1/65535 ");
    for (const auto &[mask, text] : {std::pair{0xffffffffu, "sip 10.11.12.13/32 "},
                                     {0xff00ff00u, "sip 10.11.12.13/8 "},
                                     {0x7fffffffu, "sip 10.11.12.13/0 "},
                                     {0u, ""}})
        EXPECT_EQ(text_of([&](char *b) { return PD(_print_v4addr_ternary)(b, "sip", 0x0a0b0c0d, mask); }),
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

TEST_F(Printing, V6Addresses)
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
