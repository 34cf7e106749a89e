// Equality and the comparison with the chip: worked messages, the whole table of references, and every bit of
// every record against the formatter.
#include "text_fixture.h"

namespace {

using reflection::TableFunctions;
using texts::Bytes;
using texts::difference_of;

constexpr char equal[] = "equal 1";

std::string or_equal(const std::string &difference)
{
    return difference.empty() ? equal : difference;
}

class Equality : public texts::Texts {
protected:
    // Each bit of `record` flipped alone, those between the members too, and a few at once.
    template <typename Compare, typename Expected>
    void check_bits(const Bytes &record, const Compare &compare, const Expected &expected)
    {
        const auto check = [&](const Bytes &changed) {
            EXPECT_EQ(difference_of([&](char *msg) { return compare(record.data(), changed.data(), msg); }),
                      or_equal(expected(record.data(), changed.data())));
            EXPECT_EQ(difference_of([&](char *msg) { return compare(changed.data(), record.data(), msg); }),
                      or_equal(expected(changed.data(), record.data())));
        };
        check(Bytes(record));
        for (std::size_t bit = 0; bit < record.size() * 8; ++bit) {
            Bytes changed = record;
            changed[bit / 8] ^= static_cast<u8>(1 << bit % 8);
            check(changed);
        }
        for (int round = 0; round < 20; ++round) {
            Bytes changed = record;
            for (int i = 0; i < 3; ++i)
                changed[random.word() % changed.size()] ^= static_cast<u8>(random.word());
            check(changed);
        }
    }
};

// Two records of zeros but for one member.
struct Example {
    const char *of;
    const char *member;
    u32 left, right;
    const char *text;
};
constexpr Example keys[] = {
    {"reservedNextHop", "l3_nextHop", 0x0a, 0x1a, equal},
    {"reservedNextHop", "l3_nextHop", 0x3f0a, 0x0b, "mspec l3_nextHop differs 0xa vs 0xb"},
    {"ecmpGroup", "l3_nextHop", 0x00ff, 0xffff, equal},
    {"ipv4ShortMaskLpm", "ingIpv4_dip", 0, 0x000fffff, equal},
    {"ipv4ShortMaskLpm", "ingIpv4_dip_prefix_length", 0, 12,
     "mspec ingIpv4_dip_prefix_length differs 0x0 vs 0xc"},
    // Without its mask a value counts all the same.
    {"tunnelTermination", "outerEthHdr_dmacOui", 0x1abcdef, 0,
     "mspec outerEthHdr_dmacOui differs 0xabcdef vs 0x0"},
    {"tunnelTermination", "outerIpv6Hdr_dip", 0, 1, "mspec outerIpv6Hdr_dip differs"},
    {"tunnelTermination", "outerIpv6Hdr_dip_mask", 0x8000, 0, "mspec outerIpv6Hdr_dip_mask differs"},
    {"trapToCpu", "ingIpv6_dip_mask", 0, 1, "mspec ingIpv6_dip_mask differs"},
};
constexpr Example actions[] = {
    {"setPhase0", "switchPort", 0xfe, 0, equal},
    {"setPhase0", "nativeAintf", 0, 0xffff, "aspec action_nativeAintf differs 0x0 vs 0xffff"},
};

TEST_F(Equality, WorkedMessages)
{
    const auto check = [](const Example &example, const auto &row, const auto &compare) {
        Bytes left(row.record_size), right(row.record_size);
        texts::set(left, row, example.member, example.left);
        texts::set(right, row, example.member, example.right);
        EXPECT_EQ(difference_of([&](char *msg) { return compare(left.data(), right.data(), msg); }),
                  example.text);
    };
    for (const Example &example : keys) {
        const auto &table = *reflection::find_table(example.of);
        check(example, *table.row, table.text.match_specs_are_equal);
    }
    each_action([&](const pd::Action &action, const reflection::ActionTextFunctions &text) {
        for (const Example &example : actions)
            if (example.of == std::string_view(action.name))
                check(example, action, text.action_specs_are_equal);
    });
    // Two bytes of this one count.
    PD(trapToCpu_match_spec_t) trap{}, other{};
    other.ingIpv6_dip[2] = other.ingIpv6_dip[15] = other.ingIpv6_dip_mask[2] = 0xff;
    EXPECT_EQ(
        difference_of([&](char *msg) { return PD(trapToCpu_match_specs_are_equal)(&trap, &other, msg); }),
        equal);
}

// Where the members lie in another order than the rows, the first row that differs is told.
TEST_F(Equality, KeysInTheOrderOfTheirRows)
{
    PD(zimIntfToPhysical_match_spec_t) lane{}, no_lane{};
    lane.tesselCpuHdr_lane = 9;
    lane.tesselCpuHdr_port = 8;
    EXPECT_EQ(difference_of([&](char *msg) {
                  return PD(zimIntfToPhysical_match_specs_are_equal)(&lane, &no_lane, msg);
              }),
              "mspec tesselCpuHdr_port differs 0x8 vs 0x0");
}

TEST_F(Equality, EveryBitOfEveryKey)
{
    each_table([&](const TableFunctions &table) {
        ASSERT_EQ(!table.text.match_specs_are_equal, table.row->key.empty());
        if (table.text.match_specs_are_equal)
            check_bits(random.key(*table.row), table.text.match_specs_are_equal,
                       [&](const u8 *left, const u8 *right) {
                           return formatter::key_difference(*table.row, left, right);
                       });
    });
}

TEST_F(Equality, EveryBitOfEveryAction)
{
    each_action([&](const pd::Action &action, const reflection::ActionTextFunctions &text) {
        ASSERT_EQ(!text.action_specs_are_equal, action.parameters.empty());
        if (text.action_specs_are_equal)
            check_bits(random.parameters(action), text.action_specs_are_equal,
                       [&](const u8 *left, const u8 *right) {
                           return formatter::action_difference(action, left, right);
                       });
    });
}

// ---- With the chip ----

class HardwareCompare : public Equality {
protected:
    recorder::Answer placed;
    recorder::Answer &chip = recorder::answer;

    // Both roads: the table's own function, which takes no notice of the handle, and the dispatcher, which
    // takes none of the word before the message.
    std::string compare(const TableFunctions &table)
    {
        recorder::placement = &placed;
        const std::string text = difference_of([&](char *msg) {
            recorder::forget();
            return table.text.plcmt_data_eq_to_hw(5, 6, random.word(), 7, this, msg);
        });
        texts::expect_read(recorder::last(), 5, 6, table.row->handle, 7, 1);
        EXPECT_EQ(text, difference_of([&](char *msg) {
                      recorder::forget();
                      return PD(plcmt_data_eq_to_hw)(5, 6, table.row->handle, 7, this, random.word(), msg);
                  }));
        return text;
    }
};

TEST_F(HardwareCompare, EveryTable)
{
    each_table([&](const TableFunctions &table) {
        const pd::Table &row = *table.row;
        const pd::Binding &first = table.indirect ? table.indirect->profile->row->actions[0] : row.actions[0];
        const auto place_same = [&] { // on both sides
            recorder::reset();
            encoder::answer_key(chip, row, random.key(row).data());
            texts::answer_action(chip, first, random.parameters(*first.action));
            placed = chip;
        };
        place_same();
        placed.priority = ~chip.priority; // takes no part
        EXPECT_EQ(compare(table), equal);

        recorder::failing_status = 9;
        recorder::failing_call = 2; // the placement data are good
        EXPECT_EQ(compare(table), "p4_pd_tessel_switch_" + std::string(row.name) + "_get_entry failed");
        EXPECT_LT(compare(table).size(), 100u);
        recorder::failing_call = 0;

        placed.null_value = true;
        EXPECT_EQ(compare(table), row.key.empty() ? equal : "pd entry is default but not hw");
        chip.null_value = true;
        EXPECT_EQ(compare(table), equal);
        placed.null_value = false; // against the zeroed key of the chip's default entry
        const Bytes zero(row.record_size), ones(row.record_size, 0xff);
        encoder::answer_key(placed, row, ones.data());
        EXPECT_EQ(compare(table),
                  or_equal(formatter::key_difference(row, texts::key_back(row, ones).data(), zero.data())));
        for (const pd::Binding &binding : row.actions) {
            place_same();
            const Bytes left = random.parameters(*binding.action), right = random.parameters(*binding.action);
            texts::answer_action(placed, binding, left);
            char text[64];
            std::snprintf(text, sizeof text, "actions differ 0x%x, vs 0x%x", binding.action->number,
                          first.action->number);
            if (binding.action != first.action) {
                EXPECT_EQ(compare(table), text);
                placed.null_value = chip.null_value = true;
                EXPECT_EQ(compare(table), text);
            }
            texts::answer_action(chip, binding, right);
            const Bytes left_back = texts::parameters_back(*binding.action, left);
            const Bytes right_back = texts::parameters_back(*binding.action, right);
            EXPECT_EQ(compare(table), or_equal(formatter::action_difference(*binding.action, left_back.data(),
                                                                            right_back.data())));
        }
    });
}

// Software first. 2 is a member, 4 a group, 1 neither.
struct References {
    u8 placed, chip;
    u32 placed_handle, chip_handle;
    const char *text;
    const char *of_default; // null for the same
};
constexpr References references[] = {
    {2, 2, 0x1a, 0x1a, equal, nullptr},
    {2, 2, 0x1a, 0, equal, nullptr},
    {2, 2, 0x1a, 0x2b, "mbr_hdl differs: mbr_hdl_pd=0x1a, mbr_hdl_hw=0x2b", nullptr},
    {2, 2, 0, 0x2b, "mbr_hdl differs: mbr_hdl_pd=0x0, mbr_hdl_hw=0x2b", nullptr},
    {2, 4, 0x1a, 0x1a, "no mbr_hdl in hw", nullptr},
    {2, 1, 0x1a, 0, "no mbr_hdl in hw", nullptr},
    {4, 4, 0x1a, 0x1a, equal, nullptr},
    {4, 4, 0x1a, 0x2b, equal, nullptr},
    {4, 2, 0x1a, 0x1a, "pd has group handle but not hw", equal},
    {4, 1, 0x1a, 0, "pd has group handle but not hw", equal},
    {1, 2, 0, 0x2b, "hw has mbr_hdl but not pd", nullptr},
    {1, 2, 0, 0, equal, nullptr},
    {1, 4, 0, 0x2b, "hw has grp_hdl but not pd", nullptr},
    {1, 4, 0, 0, equal, nullptr},
    {1, 1, 0x1a, 0x2b, equal, nullptr},
};

TEST_F(HardwareCompare, EveryPairOfReferences)
{
    each_table([&](const TableFunctions &table) {
        if (!table.indirect)
            return;
        for (const References &pair : references)
            for (const bool is_default : {false, true}) {
                SCOPED_TRACE(testing::Message()
                             << int{pair.placed} << " " << int{pair.chip} << " " << pair.text);
                recorder::reset();
                encoder::answer_key(chip, *table.row, random.key(*table.row).data());
                chip.null_value = is_default;
                placed = chip;
                placed.action_kind = pair.placed;
                placed.member = placed.group = pair.placed_handle;
                chip.action_kind = pair.chip;
                chip.member = chip.group = pair.chip_handle;
                EXPECT_EQ(compare(table), is_default && pair.of_default ? pair.of_default : pair.text);
            }
    });
}

} // namespace
