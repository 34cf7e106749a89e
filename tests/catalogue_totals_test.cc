// The catalogue as a whole: its totals, the sizes of all images, the layout of all key records.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

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

// The facts of catalogue_facts.txt that begin with `kind`: the words behind it.
std::vector<std::vector<std::string>> facts(const std::string &kind)
{
    std::ifstream file(TS_SOURCE_DIR "/tests/catalogue_facts.txt");
    std::vector<std::vector<std::string>> found;
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        std::string first;
        if (words >> first && first == kind)
            found.emplace_back(std::istream_iterator<std::string>(words),
                               std::istream_iterator<std::string>());
    }
    return found;
}

u32 number(const std::string &text)
{
    return static_cast<u32>(std::stoul(text, nullptr, 0));
}

TEST(Catalogue, ImageSizes)
{
    const auto keys = facts("key"), data = facts("data");
    EXPECT_EQ(keys.size(), 141u);
    EXPECT_EQ(data.size(), 156u);
    for (const auto &fact : keys)
        EXPECT_EQ(encoder::packed(*reflection::find_table(fact[0])->row), number(fact[1])) << fact[0];
    for (const auto &fact : data) {
        const auto action = std::ranges::find(reflection::actions(), fact[0], &pd::Action::name);
        ASSERT_NE(action, reflection::actions().end()) << fact[0];
        EXPECT_EQ(encoder::packed(**action), number(fact[1])) << fact[0];
    }
}

// Places the members of a record one after the other, each aligned to its size.
class Layout {
public:
    u16 place(u32 size, u32 count = 1)
    {
        end = (end + size - 1) / size * size;
        alignment = std::max(alignment, size);
        const u32 at = end;
        end += size * count;
        return static_cast<u16>(at);
    }
    u16 place_width(u32 width)
    {
        return width == 128 ? place(1, 16) : place(width <= 8 ? 1 : width <= 16 ? 2 : 4);
    }
    u32 size() const { return (end + alignment - 1) / alignment * alignment; }

private:
    u32 end = 0;
    u32 alignment = 1;
};

TEST(Catalogue, MembersOfKeyRecordsStandInTheirOrder)
{
    std::map<std::string, std::vector<std::string>> orders;
    for (auto fact : facts("order"))
        orders.emplace(fact[0], std::vector(fact.begin() + 1, fact.end()));
    for (const reflection::TableFunctions *table : reflection::tables()) {
        const pd::Table &row = *table->row;
        SCOPED_TRACE(row.name);
        std::vector<std::string> names;
        for (const pd::Field &field : row.key)
            names.emplace_back(field.name);
        const auto order = orders.contains(row.name) ? orders.at(row.name) : names;
        ASSERT_EQ(order.size(), row.key.size());
        Layout layout;
        for (const std::string &name : order) {
            const pd::Field &field = *std::ranges::find(row.key, name, &pd::Field::name);
            EXPECT_EQ(field.offset, layout.place_width(field.width)) << name;
            if (field.match == pd::Match::exact)
                continue;
            const u32 twin_width = field.match == pd::Match::lpm ? 16 : field.width;
            EXPECT_EQ(field.twin_offset, layout.place_width(twin_width)) << name;
        }
        EXPECT_EQ(row.record_size, row.key.empty() ? 0 : layout.size());
    }
}

} // namespace
