// Every entry function of every table, called with random records; all that reaches the driver is compared
// with what the encoder works out bit by bit, and nothing may be allocated on the way.
#include <gtest/gtest.h>

#include "encoder.h"
#include "random_records.h"
#include "reflection.h"

namespace {

using encoder::Family;
using recorder::line;
using reflection::ActionFunctions;
using reflection::EntryArguments;
using reflection::TableFunctions;
using sweep::Bytes;
using sweep::seed;

constexpr int rounds = 8;

class EntrySweep : public testing::Test {
protected:
    sweep::Random random;
    u32 turn = 0;
    int round = 0;

    pd_sess_hdl sess = 0;
    pd_dev_target target{};
    pd_entry_hdl entry = 0;
    Bytes key;
    Bytes parameters;
    pd_meter_spec meter{};
    EntryArguments with;

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

    void scramble_action(const pd::Action &action)
    {
        parameters = random.parameters(action);
        with.action = parameters.empty() ? nullptr : parameters.data();
    }

    std::string key_text(const pd::Table &table) const
    {
        return encoder::match_text(table, key.data(), with.priority);
    }

    std::string action_text(const pd::Table &table, const ActionFunctions &action, Family family) const
    {
        return encoder::action_text(table, *action.row->action, parameters.data(), with.meter, family);
    }

    // Makes the call, from its second time on without an allocation, and compares: one driver call, as
    // expected, its status returned, no argument changed.
    template <typename Function>
    void check(const std::string &expected, const Function &function)
    {
        const Bytes key_before = key;
        const Bytes parameters_before = parameters;
        const pd_meter_spec meter_before = meter;
        recorder::reset();
        recorder::status = sweep::statuses[turn++ % std::size(sweep::statuses)];
        recorder::answer.numbers[0] = random.word();
        const u64 allocated = recorder::allocations;
        const pd_status status = function();
        EXPECT_TRUE(round == 0 || !recorder::log.empty() || recorder::allocations == allocated);
        EXPECT_EQ(status, recorder::status);
        EXPECT_EQ(recorder::lines(), recorder::Lines{expected});
        EXPECT_EQ(key, key_before);
        EXPECT_EQ(parameters, parameters_before);
        EXPECT_EQ(std::memcmp(&meter, &meter_before, sizeof meter), 0);
    }

    // The same of a function that gives a handle.
    template <typename Function>
    void check_handle(const std::string &expected, const Function &function)
    {
        pd_entry_hdl result = ~0u;
        check(expected, [&] { return function(&result); });
        EXPECT_EQ(result, recorder::answer.numbers[0]);
    }

    void check_add(const pd::Table &table, const ActionFunctions &action)
    {
        check_handle(line("pipe_mgr_mat_ent_add", sess, target, table.handle, key_text(table),
                          action.row->handle, action_text(table, action, Family::add),
                          encoder::takes_ttl(table) ? with.ttl : 0, 0),
                     [&](u32 *to) { return action.add(sess, target, with, to); });
    }

    void check_modify(const pd::Table &table, const ActionFunctions &action)
    {
        with.meter = random.word() % 2 ? &meter : nullptr;
        const std::string text = action_text(table, action, Family::modify);
        check(line("pipe_mgr_mat_ent_set_action", sess, target.device_id, table.handle, entry,
                   action.row->handle, text, 0),
              [&] { return action.modify(sess, target.device_id, entry, with); });
        check(line("pipe_mgr_mat_ent_set_action_by_match_spec", sess, target, table.handle, key_text(table),
                   action.row->handle, text, 0),
              [&] { return action.modify_by_match_spec(sess, target, with); });
    }

    void check_set_default(const pd::Table &table, const ActionFunctions &action)
    {
        with.meter = random.word() % 2 ? &meter : nullptr;
        check_handle(line("pipe_mgr_mat_default_entry_set", sess, target, table.handle, action.row->handle,
                          action_text(table, action, Family::set_default), 0),
                     [&](u32 *to) { return action.set_default_action(sess, target, with, to); });
    }

    void check_delete(const TableFunctions &table)
    {
        const u32 handle = table.row->handle;
        check(line("pipe_mgr_mat_ent_del", sess, target.device_id, handle, entry, 0),
              [&] { return table.table_delete(sess, target.device_id, entry); });
        check(line("pipe_mgr_mat_ent_del_by_match_spec", sess, target, handle, key_text(*table.row), 0),
              [&] { return table.table_delete_by_match_spec(sess, target, with); });
    }

    void check_search(const TableFunctions &table)
    {
        check_handle(
            line("pipe_mgr_match_spec_to_ent_hdl", sess, target, table.row->handle, key_text(*table.row), 0),
            [&](u32 *to) { return table.match_spec_to_entry_hdl(sess, target, with, to); });
    }

    // Runs `check()` several times for each action of each table that `counts(action)`; how many there are.
    template <typename Counts, typename Check>
    int each_action(const Counts &counts, const Check &check)
    {
        int actions = 0;
        for (const TableFunctions *table : reflection::tables())
            for (const ActionFunctions &action : table->actions) {
                SCOPED_TRACE(testing::Message()
                             << table->row->name << " " << action.row->action->name << " seed " << seed);
                if (!counts(action))
                    continue;
                ++actions;
                for (round = 0; round < rounds && !HasFailure(); ++round) {
                    scramble_arguments(*table->row);
                    scramble_action(*action.row->action);
                    check(*table->row, action);
                }
            }
        return actions;
    }
};

TEST_F(EntrySweep, EveryBindingWritesWhatTheRulesSay)
{
    const auto counts = [](const ActionFunctions &action) {
        EXPECT_EQ(action.add && action.modify && action.modify_by_match_spec, action.row->entry);
        EXPECT_EQ(action.add || action.modify || action.modify_by_match_spec, action.row->entry);
        return action.row->entry;
    };
    EXPECT_EQ(each_action(counts,
                          [&](const pd::Table &table, const ActionFunctions &action) {
                              check_add(table, action);
                              check_modify(table, action);
                          }),
              404);
}

TEST_F(EntrySweep, EveryDefaultActionIsWrittenAsAnEntryIs)
{
    const auto counts = [](const ActionFunctions &action) {
        EXPECT_EQ(action.set_default_action != nullptr, action.row->default_action);
        return action.row->default_action;
    };
    EXPECT_EQ(each_action(counts, [&](const pd::Table &table,
                                      const ActionFunctions &action) { check_set_default(table, action); }),
              172);
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
        for (round = 0; round < rounds; ++round) {
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

} // namespace
