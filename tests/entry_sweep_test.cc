// Every entry function of every table, called with random records; all that reaches the driver is compared
// with what the encoder works out bit by bit.
#include <gtest/gtest.h>

#include <cstring>
#include <set>

#include "capture_services.h"
#include "encoder.h"
#include "random_records.h"
#include "reflection.h"

namespace {

using reflection::ActionFunctions;
using reflection::EntryArguments;
using reflection::TableFunctions;
using sweep::Bytes;
using sweep::seed;
using sweep::statuses;

constexpr int rounds = 8;

class EntrySweep : public testing::Test {
protected:
    sweep::Random random;
    u32 turn = 0;

    pd_sess_hdl sess = 0;
    pd_dev_target target{};
    pd_entry_hdl entry = 0;
    Bytes key;
    Bytes parameters;
    pd_meter_spec meter{};
    EntryArguments with;

    void SetUp() override { services::reset(); }

    void scramble_arguments(const pd::Table &table)
    {
        sess = random.word();
        target = {random.word(), random.word()};
        entry = random.word();
        key = random.key(table);
        meter = {random.word(), random.word(), random.word(), random.word(), random.word() % 4};
        with = {};
        with.key = key.data();
        with.priority = random.word();
        with.ttl = random.word();
        with.meter = &meter;
    }

    capture::Call expect(std::string_view operation, const pd::Table &table) const
    {
        return {.operation = operation,
                .sess = sess,
                .device_id = target.device_id,
                .pipe_id = target.pipe_id,
                .table = table.handle};
    }

    void encode_key(capture::Call &call, const pd::Table &table) const
    {
        encoder::encode_key(call, table, key.data(), with.priority);
    }

    void encode_action(capture::Call &call, const pd::Table &table, const pd::Binding &binding,
                       encoder::Family family) const
    {
        call.action = binding.handle;
        encoder::encode_action(call, table, *binding.action, parameters.data(), with.meter, family);
    }

    // Makes the call and compares: one driver call, as expected, its status returned, no argument changed.
    template <typename Function>
    void check(const capture::Call &expected, const Function &function)
    {
        const Bytes key_before = key;
        const Bytes parameters_before = parameters;
        const pd_meter_spec meter_before = meter;
        capture::reset();
        capture::status = statuses[turn++ % std::size(statuses)];
        capture::entry = random.word();
        EXPECT_EQ(function(), capture::status);
        EXPECT_EQ(capture::calls, 1u);
        EXPECT_EQ(capture::last, expected);
        EXPECT_EQ(key, key_before);
        EXPECT_EQ(parameters, parameters_before);
        EXPECT_EQ(std::memcmp(&meter, &meter_before, sizeof meter), 0);
    }

    void check_add(const pd::Table &table, const ActionFunctions &action)
    {
        capture::Call expected = expect("pipe_mgr_mat_ent_add", table);
        encode_key(expected, table);
        encode_action(expected, table, *action.row, encoder::Family::add);
        expected.ttl = encoder::takes_ttl(table) ? with.ttl : 0;
        pd_entry_hdl result = ~0u;
        expected.result = &result;
        check(expected, [&] { return action.add(sess, target, with, &result); });
        EXPECT_EQ(result, capture::entry);
    }

    void check_modify(const pd::Table &table, const ActionFunctions &action)
    {
        with.meter = random.word() % 2 ? &meter : nullptr;
        capture::Call expected = expect("pipe_mgr_mat_ent_set_action", table);
        expected.pipe_id = 0;
        expected.entry = entry;
        encode_action(expected, table, *action.row, encoder::Family::modify);
        check(expected, [&] { return action.modify(sess, target.device_id, entry, with); });

        expected = expect("pipe_mgr_mat_ent_set_action_by_match_spec", table);
        encode_key(expected, table);
        encode_action(expected, table, *action.row, encoder::Family::modify);
        check(expected, [&] { return action.modify_by_match_spec(sess, target, with); });
    }

    void check_set_default(const pd::Table &table, const ActionFunctions &action)
    {
        with.meter = random.word() % 2 ? &meter : nullptr;
        capture::Call expected = expect("pipe_mgr_mat_default_entry_set", table);
        encode_action(expected, table, *action.row, encoder::Family::set_default);
        pd_entry_hdl result = ~0u;
        expected.result = &result;
        check(expected, [&] { return action.set_default_action(sess, target, with, &result); });
        EXPECT_EQ(result, capture::entry);
    }

    void check_delete(const TableFunctions &table)
    {
        capture::Call expected = expect("pipe_mgr_mat_ent_del", *table.row);
        expected.pipe_id = 0;
        expected.entry = entry;
        check(expected, [&] { return table.table_delete(sess, target.device_id, entry); });

        expected = expect("pipe_mgr_mat_ent_del_by_match_spec", *table.row);
        encode_key(expected, *table.row);
        check(expected, [&] { return table.table_delete_by_match_spec(sess, target, with); });
    }

    void check_search(const TableFunctions &table)
    {
        capture::Call expected = expect("pipe_mgr_match_spec_to_ent_hdl", *table.row);
        encode_key(expected, *table.row);
        pd_entry_hdl result = ~0u;
        expected.result = &result;
        check(expected, [&] { return table.match_spec_to_entry_hdl(sess, target, with, &result); });
        EXPECT_EQ(result, capture::entry);
    }
};

TEST_F(EntrySweep, EveryBindingWritesWhatTheRulesSay)
{
    int bindings = 0;
    for (const TableFunctions *table : reflection::tables())
        for (const ActionFunctions &action : table->actions) {
            if (!action.row->entry) {
                EXPECT_TRUE(!action.add && !action.modify && !action.modify_by_match_spec)
                    << table->row->name;
                continue;
            }
            ++bindings;
            for (int round = 0; round < rounds; ++round) {
                SCOPED_TRACE(testing::Message() << table->row->name << " " << action.row->action->name
                                                << " round " << round << " seed " << seed);
                scramble_arguments(*table->row);
                parameters = random.parameters(*action.row->action);
                with.action = parameters.empty() ? nullptr : parameters.data();
                check_add(*table->row, action);
                check_modify(*table->row, action);
                if (HasFailure())
                    return;
            }
        }
    EXPECT_EQ(bindings, 404);
}

TEST_F(EntrySweep, EveryDefaultActionIsWrittenAsAnEntryIs)
{
    int bindings = 0;
    for (const TableFunctions *table : reflection::tables())
        for (const ActionFunctions &action : table->actions) {
            EXPECT_EQ(action.set_default_action != nullptr, action.row->default_action) << table->row->name;
            if (!action.row->default_action)
                continue;
            ++bindings;
            for (int round = 0; round < rounds; ++round) {
                SCOPED_TRACE(testing::Message() << table->row->name << " " << action.row->action->name
                                                << " round " << round << " seed " << seed);
                scramble_arguments(*table->row);
                parameters = random.parameters(*action.row->action);
                with.action = parameters.empty() ? nullptr : parameters.data();
                check_set_default(*table->row, action);
                if (HasFailure())
                    return;
            }
        }
    EXPECT_EQ(bindings, 172);
}

TEST_F(EntrySweep, EveryKeyDeletesAndFindsByTheSameImages)
{
    int keys = 0;
    for (const TableFunctions *table : reflection::tables()) {
        if (table->row->key.empty()) {
            EXPECT_TRUE(!table->table_delete && !table->table_delete_by_match_spec &&
                        !table->match_spec_to_entry_hdl)
                << table->row->name;
            continue;
        }
        ++keys;
        for (int round = 0; round < rounds; ++round) {
            SCOPED_TRACE(testing::Message() << table->row->name << " round " << round << " seed " << seed);
            scramble_arguments(*table->row);
            check_delete(*table);
            check_search(*table);
            if (HasFailure())
                return;
        }
    }
    EXPECT_EQ(keys, 141);
}

TEST_F(EntrySweep, EveryPrefixLength)
{
    int tables = 0;
    for (const TableFunctions *table : reflection::tables())
        for (const pd::Field &field : table->row->key) {
            if (field.match != pd::Match::lpm)
                continue;
            ++tables;
            for (u32 length = 0; length <= 65535; length += length <= field.width ? 1 : 97) {
                SCOPED_TRACE(testing::Message() << table->row->name << " /" << length << " seed " << seed);
                scramble_arguments(*table->row);
                sweep::set_prefix_length(key, field, length);
                check_search(*table);
                if (HasFailure())
                    return;
            }
        }
    EXPECT_EQ(tables, 4);
}

TEST(Handles, AreUniquePerTableAndPerBinding)
{
    std::set<u32> tables;
    std::set<u32> actions;
    std::size_t bindings = 0;
    for (const TableFunctions *table : reflection::tables()) {
        EXPECT_TRUE(tables.insert(table->row->handle).second) << table->row->name;
        for (const pd::Binding &binding : table->row->actions)
            EXPECT_TRUE(actions.insert(binding.handle).second)
                << table->row->name << " " << binding.action->name;
        bindings += table->row->actions.size();
    }
    EXPECT_EQ(tables.size(), 158u);
    EXPECT_EQ(actions.size(), bindings);
}

} // namespace
