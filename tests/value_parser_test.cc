// What the library writes as value text is read back into the records that it was written from, for every
// table, action and profile.
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <random>

#include "driver.h"
#include "model.h"
#include "pd.h"
#include "placement.h"
#include "text_buffer.h"
#include "value_parser.h"
#include "words.h"

namespace {

using namespace shell;
using reflection::ProfileFunctions;
using reflection::TableFunctions;
using Bytes = std::vector<u64>; // of a record, aligned

constexpr u32 seed = 20240607;
constexpr pd_meter_spec meter{1, 2, 3, 4, PD_METER_TYPE_COLOR_AWARE};

Value both(Value a, Value b)
{
    return {a.high & b.high, a.low & b.low};
}

// Records as they are written, and beside them what their texts can show.
class Random {
public:
    struct Records {
        Bytes written, shown;
    };

    u32 word() { return static_cast<u32>(numbers()); }

    Records key(const pd::Table &table)
    {
        Records records = empty(table.record_size);
        for (const pd::Field &field : table.key) {
            const Value bits = field.width == 128 ? ones(128) : Value{field.mask.high, field.mask.low};
            Value mask = ones(field.width);
            if (field.match == pd::Match::ternary) {
                mask = value(field.width);
                put(records, mask, bits, field.twin_offset, field.width);
            } else if (field.match == pd::Match::lpm) {
                const u32 length = word() % (field.width + 1u);
                mask = leading_ones(length, field.width);
                put(records, {0, length}, ones(16), field.twin_offset, 16);
            }
            put(records, both(value(field.width), mask), bits, field.offset, field.width);
        }
        return records;
    }

    Records parameters(const pd::Action &action)
    {
        Records records = empty(action.record_size);
        for (const pd::Parameter &parameter : action.parameters) {
            const unsigned bits = parameter.in_image ? parameter.width : 16; // as much as an index keeps
            put(records, both(value(parameter.width), ones(bits)), ones(bits), parameter.offset,
                parameter.width);
        }
        return records;
    }

private:
    static Records empty(u16 size) { return {Bytes(size / sizeof(u64) + 1), Bytes(size / sizeof(u64) + 1)}; }

    static void put(Records &to, Value value, Value shown, u16 offset, unsigned width)
    {
        store(value, width, reinterpret_cast<u8 *>(to.written.data()) + offset);
        store(both(value, shown), width, reinterpret_cast<u8 *>(to.shown.data()) + offset);
    }

    Value value(unsigned width)
    {
        const Value any{u64{word()} << 32 | word(), u64{word()} << 32 | word()};
        const u32 kind = word() % 6;
        return kind == 0 ? Value{} : both(kind == 1 ? ones(128) : any, ones(width));
    }

    std::mt19937 numbers{seed};
};

class Catalogue : public testing::Test {
protected:
    Catalogue() { p4_pd_tessel_switch_init(); }
    ~Catalogue() override { p4_pd_tessel_switch_cleanup(); }

    using Write = std::function<pd_status(const reflection::EntryArguments &, pd_entry_hdl *)>;

    // Reads the text of the entry back, and that of its placement, which has no priority.
    static void read_back(const TableFunctions &table, pd_entry_hdl entry, ParsedValue expected)
    {
        const ValueParser parser{table};
        const Placement placement{table.get_plcmt_data, entry};
        std::string text =
            text_of([&](char *to) { return table.text.value(driver_session, 0, entry, 0, to); });
        EXPECT_EQ(parser.parse(text), expected) << text;
        text = text_of([&](char *to) { return table.text.plcmt_data_value(placement.data(), to); });
        expected.priority = std::nullopt;
        EXPECT_EQ(parser.parse(text), expected) << text;
    }

    // Writes an entry and the default entry, as far as the table has such.
    void write_and_read_back(const TableFunctions &table, const void *action, ParsedValue expected,
                             const Write &add, const Write &set_default)
    {
        SCOPED_TRACE(testing::Message() << table.row->name << " seed " << seed);
        const auto [key, shown_key] = random.key(*table.row);
        const u32 priority = pd::has_priority(*table.row) ? random.word() : 0;
        const reflection::EntryArguments given{key.data(), priority, action, 0, &meter};
        pd_entry_hdl entry = 0;
        if (add) {
            ASSERT_EQ(add(given, &entry), 0u);
            expected.key = shown_key;
            expected.priority = priority;
            read_back(table, entry, expected);
            ASSERT_EQ(table.table_delete(driver_session, 0, entry), 0u);
        }
        if (set_default) {
            ASSERT_EQ(set_default(given, &entry), 0u);
            expected.key.clear();
            expected.is_default = true;
            expected.priority = 0;
            read_back(table, entry, expected);
        }
    }

    // A member of the profile with this action, alone in a group.
    void check_references(const TableFunctions &table, const reflection::MemberFunctions &action)
    {
        const ProfileFunctions &profile = *table.indirect->profile;
        const auto [parameters, shown] = random.parameters(*action.row->action);
        pd_mbr_hdl member = 0;
        pd_grp_hdl group = 0;
        ASSERT_EQ(action.add(driver_session, device, parameters.data(), &member), 0u);
        ASSERT_EQ(profile.create_group(driver_session, device, 8, &group), 0u);
        ASSERT_EQ(profile.add_member_to_group(driver_session, 0, group, member), 0u);

        const Placement placement{profile.get_plcmt_data, member};
        const std::string text =
            text_of([&](char *to) { return profile.plcmt_data_value(placement.data(), to); });
        EXPECT_EQ(ValueParser{profile}.parse(text),
                  (ParsedValue{{}, false, action.row->action, shown, {Kind::member, 0}, {}}))
            << text;

        for (const Object to : {Object{Kind::member, member}, Object{Kind::group, group}}) {
            const auto &functions = to.kind == Kind::member ? table.indirect->member : table.indirect->group;
            write_and_read_back(
                table, nullptr, {{}, false, nullptr, {}, to, {}},
                [&](const auto &given, auto *entry) {
                    return functions.add(driver_session, device, given, to.handle, entry);
                },
                [&](const auto &, auto *entry) {
                    return functions.set_default_entry(driver_session, device, to.handle, entry);
                });
        }
    }

    Random random;
};

TEST_F(Catalogue, reads_back_whatever_is_written)
{
    const auto through = [](auto *write) {
        return write ? Write{std::bind_front(write, driver_session, device)} : Write{};
    };
    for (const TableFunctions *table : reflection::tables()) {
        for (const reflection::ActionFunctions &action : table->actions) {
            const auto [parameters, shown] = random.parameters(*action.row->action);
            write_and_read_back(*table, parameters.data(),
                                ParsedValue{{}, false, action.row->action, shown, {Kind::member, 0}, {}},
                                through(action.add), through(action.set_default_action));
        }
        if (table->indirect) {
            read_back(*table, TS_MODEL_DEFAULT_ENTRY, {{}, true, nullptr, {}, {Kind::member, 0}, 0});
            for (const reflection::MemberFunctions &action : table->indirect->profile->actions)
                check_references(*table, action);
        }
        ASSERT_FALSE(HasFailure());
    }
}

TEST(ValueParser, tells_where_a_text_departs_and_what_was_expected)
{
    const struct {
        const char *table;
        std::string text, message;
    } cases[] = {
        {"queueCounters", "( 0x1,),", "character 2: expected '),' instead of ' 0x1,),'"},
        {"haloCounters", "( 0x0000g",
         "character 9: expected 0x and 8 lower-case hex digits for "
         "haloResultRow1_bestResult instead of 'g'"},
        {"haloCounters", "( 0x00008000,),",
         "character 3: expected no bit of haloResultRow1_bestResult outside "
         "32767 (0x7fff) instead of '0x00008000,)'"},
        {"haloCounters", "( 0x00000000,),x", "character 16: expected the end of the text instead of 'x'"},
        {"haloCounters", "('nop',()),", "character 3: expected one of onMiss instead of 'nop',()),'"},
        {"haloCounters", "(((),('onMiss',()),),(1,True))",
         "character 23: expected priority 0, as haloCounters has none, instead of '1,True))'"},
        {"l2SmacCheck", "(((),('NoAction',()),),(-0,True))",
         "character 25: expected 0 without a sign instead of '-0,True))'"},
        {"ipv6ShortMaskLpm", "( 0x05,0x20010dB8",
         "character 15: expected 0x and 32 upper-case hex digits for ingIpv6_dip instead of 'dB8'"},
        {"lagGroup", "('setMbrHdl',(0x01,))",
         "character 17: expected 0x and up to 32 lower-case hex digits without "
         "leading zeros for a handle instead of '01,))'"},
        {"lagGroup", "('setGrpHdl',(0x100000000,))",
         "character 15: expected a handle of 32 bits instead of '0x100000000,'"},
    };
    for (const auto &[table, text, message] : cases) {
        try {
            ValueParser{*reflection::find_table(table)}.parse(text);
            ADD_FAILURE() << "taken: " << text;
        } catch (const BadLine &error) {
            EXPECT_EQ(error.what, message) << text;
        }
    }
}

} // namespace
