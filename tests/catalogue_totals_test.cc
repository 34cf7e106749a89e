// The catalogue as a whole: its totals, and sizes of images picked from all over it.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "encoder.h"
#include "pd.h"
#include "reflection.h"
#include "rows_profiles.h"

namespace {

template <typename Test>
long count_tables(const Test &test)
{
    return std::ranges::count_if(reflection::tables(),
                                 [&](const reflection::TableFunctions *table) { return test(*table->row); });
}

long count_keys(pd::Match kind)
{
    return count_tables([&](const pd::Table &table) {
        return !table.key.empty() && std::ranges::max(table.key, {}, &pd::Field::match).match == kind;
    });
}

TEST(Catalogue, Tables)
{
    EXPECT_EQ(reflection::tables().size(), 158u);
    EXPECT_EQ(count_tables([](const pd::Table &table) { return !table.key.empty(); }), 141);
    EXPECT_EQ(count_keys(pd::Match::exact), 90);
    EXPECT_EQ(count_keys(pd::Match::ternary), 47);
    EXPECT_EQ(count_keys(pd::Match::lpm), 4);
    EXPECT_EQ(count_tables([](const pd::Table &table) { return table.idle_time; }), 15);
    EXPECT_EQ(count_tables([](const pd::Table &table) { return table.ttl_on_add; }), 1);
    EXPECT_EQ(count_tables([](const pd::Table &table) { return table.direct_counter != 0; }), 8);
    EXPECT_EQ(count_tables([](const pd::Table &table) { return table.direct_meter != 0; }), 1);
    EXPECT_EQ(count_tables([](const pd::Table &table) { return table.indexed_resource != 0; }), 4);
}

TEST(Catalogue, FieldsAndBindings)
{
    long fields = 0, validity_bits = 0, bindings = 0, entry = 0, default_action = 0;
    for (const reflection::TableFunctions *table : reflection::tables()) {
        fields += static_cast<long>(table->row->key.size());
        for (const pd::Field &field : table->row->key)
            validity_bits += std::string_view(field.name).ends_with("_valid");
        bindings += static_cast<long>(table->row->actions.size());
        for (const pd::Binding &binding : table->row->actions) {
            entry += binding.entry;
            default_action += binding.default_action;
        }
    }
    EXPECT_EQ(fields, 519);
    EXPECT_EQ(fields - validity_bits, 477);
    EXPECT_EQ(bindings, 421);
    EXPECT_EQ(entry, 404);
    EXPECT_EQ(default_action, 172);
}

TEST(Catalogue, ActionsAreNamedByNumber)
{
    const auto actions = reflection::actions();
    ASSERT_EQ(actions.size(), 298u);
    EXPECT_EQ(
        std::ranges::count_if(actions, [](const pd::Action *action) { return !action->parameters.empty(); }),
        156);
    EXPECT_STREQ(p4_pd_tessel_switch_action_name_strings[0], "p4_pd_tessel_switch_setPhase0");
    EXPECT_STREQ(p4_pd_tessel_switch_action_name_strings[297], "p4_pd_tessel_switch_needVlanEncap");
    for (u32 number = 0; number < 298; ++number) {
        EXPECT_EQ(actions[number]->number, number);
        EXPECT_EQ(p4_pd_tessel_switch_action_name_strings[number],
                  std::string("p4_pd_tessel_switch_") + actions[number]->name);
    }
}

TEST(Catalogue, Profiles)
{
    std::size_t bindings = 0;
    for (const pd::Profile *profile : pd::profiles::all)
        bindings += profile->actions.size();
    EXPECT_EQ(std::size(pd::profiles::all), 4u);
    EXPECT_EQ(bindings, 11u);
}

TEST(Catalogue, ImageSizes)
{
    const std::pair<const char *, u32> keys[] = {
        {"ingressPortMapping", 0x20009},    {"egressMirrorResult", 0x10001}, {"l2DmacClassify", 0x80039},
        {"l2LookupMiss", 0x80039},          {"l2LearningLookup", 0xb0050},   {"ipv4ShortMaskLpm", 0x50028},
        {"ipv4Partition0", 0x50028},        {"ipv4FinalResolve0", 0x60030},  {"ipv6ShortMaskLpm", 0x110088},
        {"tunnelTermination", 0x1c00d4},    {"trapToCpu", 0x2c011f},         {"mcastPrune", 0x9002b},
        {"ingressMirrorSession", 0x120079}, {"pdpClassify", 0xa0034},
    };
    for (const auto &[name, packed] : keys)
        EXPECT_EQ(encoder::packed(*reflection::find_table(name)->row), packed) << name;

    const std::pair<std::string_view, u32> data[] = {
        {"setPhase0", 0x60021},   {"NoAction", 0x0},       {"setEgressMirrorColor", 0x40020},
        {"setPdpClass", 0x10005}, {"copyPacket", 0x20009}, {"setMirrorPacketEncapGreIpv4", 0x14009a},
    };
    for (const auto &[name, packed] : data) {
        const auto action = std::ranges::find(reflection::actions(), name, &pd::Action::name);
        ASSERT_NE(action, reflection::actions().end()) << name;
        EXPECT_EQ(encoder::packed(**action), packed) << name;
    }
}

} // namespace
