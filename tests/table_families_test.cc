// The small families that every table has (default handles, counts, walks, placement, properties, update
// callbacks, handles, priorities) and the widths of key fields.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "capture_driver.h"
#include "random_records.h"
#include "reflection.h"

namespace {

using reflection::TableFunctions;
using sweep::Bytes;

void update(u32, u32, const void *, pd_word) {}

bool ranks_entries(const pd::Table &table)
{
    return std::ranges::any_of(table.key,
                               [](const pd::Field &field) { return field.match == pd::Match::ternary; });
}

class SmallFamilies : public testing::Test {
protected:
    sweep::Random random;
    pd_sess_hdl sess = 0;
    u32 device = 0;
    pd_entry_hdl entry = 0;
    pd_dev_target target{};

    // One driver call with these arguments, its status returned.
    template <typename Function>
    void check(capture::Call call, const TableFunctions &table, const Function &function)
    {
        call.table = table.row->handle;
        for (const pd_status status : sweep::statuses) {
            SCOPED_TRACE(testing::Message() << table.row->name << " " << call.operation);
            capture::reset();
            capture::status = status;
            capture::entry = random.word();
            EXPECT_EQ(function(), status);
            EXPECT_EQ(capture::calls, 1u);
            EXPECT_EQ(capture::last, call);
            EXPECT_EQ(capture::steps(), call.operation);
        }
    }

    capture::Call at_target(std::string_view operation) const
    {
        return {
            .operation = operation, .sess = sess, .device_id = target.device_id, .pipe_id = target.pipe_id};
    }

    capture::Call at_device(std::string_view operation) const
    {
        return {.operation = operation, .sess = sess, .device_id = device};
    }
};

TEST_F(SmallFamilies, OfEveryTableForward)
{
    for (const TableFunctions *table : reflection::tables()) {
        sess = random.word();
        device = random.word();
        entry = random.word();
        target = {random.word(), random.word()};
        const u32 words[] = {random.word(), random.word(), random.word()};
        u32 result = 0;
        capture::Call call = at_target("pipe_mgr_table_get_default_entry_handle");
        call.result = &result;
        check(call, *table, [&] { return table->get_default_entry_handle(sess, target, &result); });
        EXPECT_EQ(result, capture::entry);
        check(at_target("pipe_mgr_mat_tbl_default_entry_reset"), *table,
              [&] { return table->reset_default_entry(sess, target); });

        call = at_target("pipe_mgr_get_entry_count");
        call.result = &result;
        check(call, *table, [&] { return table->get_entry_count(sess, target, &result); });
        EXPECT_EQ(result, capture::entry);
        call = at_target("pipe_mgr_get_first_entry_handle");
        call.result = &result;
        check(call, *table, [&] { return table->get_first_entry_handle(sess, target, &result); });
        EXPECT_EQ(result, capture::entry);
        call = at_target("pipe_mgr_get_next_entry_handles");
        for (const u32 count : {0u, 1u, 3u}) {
            u32 handles[4] = {~0u, ~0u, ~0u, ~0u};
            call.entry = entry;
            call.words = {count};
            call.result = handles;
            check(call, *table,
                  [&] { return table->get_next_entry_handles(sess, target, entry, count, handles); });
            EXPECT_EQ(handles[3], ~0u);
            EXPECT_EQ(std::ranges::count(handles, 0u), count);
        }

        call = {.operation = "pipe_mgr_plcmt_mat_data_get", .words = {words[0], words[1]}};
        check(call, *table, [&] { return table->get_plcmt_data(words[0], words[1]); });
        call = at_device("pipe_mgr_tbl_set_property");
        call.words = {words[0], words[1], words[2]};
        check(call, *table, [&] { return table->set_property(sess, device, words[0], words[1], words[2]); });
        for (const pd_mat_update_cb callback : {pd_mat_update_cb{update}, pd_mat_update_cb{nullptr}}) {
            call = at_device("pipe_register_mat_update_cb");
            call.words = {reinterpret_cast<pd_word>(callback), words[0]};
            check(call, *table,
                  [&] { return table->register_mat_update_cb(sess, device, callback, words[0]); });
        }
        if (HasFailure())
            return;
    }
}

TEST_F(SmallFamilies, PropertiesAreAllOnesWhenTheDriverRefuses)
{
    for (const TableFunctions *table : reflection::tables())
        for (const pd_status status : sweep::statuses) {
            SCOPED_TRACE(table->row->name);
            capture::reset();
            capture::status = status;
            capture::answer.numbers = {0x12345678, 0x9abcdef0};
            u32 values[] = {1, 2};
            EXPECT_EQ(table->get_property(7, 8, 0xfedcba98, &values[0], &values[1]), status);
            EXPECT_EQ(values[0], status ? 0xffffffff : 0x12345678);
            EXPECT_EQ(values[1], status ? 0xffffffff : 0x9abcdef0);
            EXPECT_EQ(capture::last, (capture::Call{.operation = "pipe_mgr_tbl_get_property",
                                                    .sess = 7,
                                                    .device_id = 8,
                                                    .table = table->row->handle,
                                                    .words = {0xfedcba98}}));
        }
}

TEST_F(SmallFamilies, HandlesAndPrioritiesNeedNoDriver)
{
    u32 with_priority = 0;
    capture::reset();
    for (const TableFunctions *table : reflection::tables()) {
        u32 handle = 0;
        EXPECT_EQ(table->get_mat_table_handle(&handle), 0u);
        EXPECT_EQ(handle, table->row->handle);
        EXPECT_EQ(table->get_mat_table_handle(nullptr), 0u);
        EXPECT_EQ(table->supports_entry_priority(), ranks_entries(*table->row)) << table->row->name;
        with_priority += table->supports_entry_priority();
    }
    EXPECT_EQ(with_priority, 47u);
    EXPECT_EQ(capture::calls, 0u);
}

// A priority is passed on exactly where the table says that it takes one.
TEST_F(SmallFamilies, PrioritiesAreTakenWhereTheyAreSupported)
{
    for (const TableFunctions *table : reflection::tables()) {
        if (table->row->key.empty() || pd::key_kind(*table->row) == pd::Match::lpm)
            continue;
        const Bytes zeroes(256);
        reflection::EntryArguments with;
        with.key = zeroes.data();
        with.priority = 0x51423;
        capture::reset();
        table->table_delete_by_match_spec(1, {}, with);
        EXPECT_EQ(capture::last.priority, table->supports_entry_priority() ? 0x51423u : 0)
            << table->row->name;
    }
}

TEST(Widths, AreThoseOfTheRowsUnderTheNamesOfTheirFields)
{
    using Width = u32();
    const auto find = [](const std::string &name) {
        return reinterpret_cast<Width *>(dlsym(RTLD_DEFAULT, (name + "_width").c_str()));
    };
    u32 functions = 0;
    for (const TableFunctions *table : reflection::tables())
        for (const pd::Field &field : table->row->key) {
            const std::string prefix = std::string("p4_pd_tessel_switch_") + table->row->name + "_";
            std::string name = field.name;
            for (const char *twin : {"_mask", "_prefix_length"})
                EXPECT_FALSE(find(prefix + name + twin)) << prefix << name << twin;
            if (name.ends_with("_valid")) {
                EXPECT_FALSE(find(prefix + name)) << prefix << name;
                EXPECT_EQ(field.width, 1);
                name.resize(name.size() - std::strlen("_valid"));
            }
            const auto width = find(prefix + name);
            ASSERT_TRUE(width) << prefix << name;
            EXPECT_EQ(width(), field.width) << prefix << name;
            ++functions;
        }
    EXPECT_EQ(functions, 519u);
}

} // namespace
