// The small families that every table has (default handles, counts, walks, placement, properties, update
// callbacks, handles, priorities) and the widths of key fields.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "encoder.h"
#include "random_records.h"
#include "reflection.h"

namespace {

using recorder::line;
using reflection::TableFunctions;
using sweep::Bytes;

void update(u32, u32, const void *, pd_word) {}

class SmallFamilies : public testing::Test {
protected:
    sweep::Random random;
    pd_sess_hdl sess = 0;
    u32 device = 0;
    pd_entry_hdl entry = 0;
    pd_dev_target target{};

    // One driver call with these arguments, its status returned.
    template <typename Function>
    void check(const std::string &expected, const Function &function)
    {
        for (const pd_status status : sweep::statuses) {
            recorder::reset();
            recorder::status = status;
            recorder::answer.numbers[0] = random.word();
            const u64 allocated = recorder::allocations;
            const pd_status found = function();
            EXPECT_TRUE(status == 0 || recorder::allocations == allocated); // 0 is the first
            EXPECT_EQ(found, status);
            EXPECT_EQ(recorder::lines(), recorder::Lines{expected});
        }
    }

    // The same of a function that gives a word.
    template <typename Function>
    void check_result(const std::string &expected, const Function &function)
    {
        u32 result = 0;
        check(expected, [&] { return function(&result); });
        EXPECT_EQ(result, recorder::answer.numbers[0]);
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
        const u32 handle = table->row->handle;
        SCOPED_TRACE(table->row->name);
        check_result(line("pipe_mgr_table_get_default_entry_handle", sess, target, handle),
                     [&](u32 *to) { return table->get_default_entry_handle(sess, target, to); });
        check(line("pipe_mgr_mat_tbl_default_entry_reset", sess, target, handle, 0),
              [&] { return table->reset_default_entry(sess, target); });
        check_result(line("pipe_mgr_get_entry_count", sess, target, handle, 0),
                     [&](u32 *to) { return table->get_entry_count(sess, target, to); });
        check_result(line("pipe_mgr_get_first_entry_handle", sess, handle, target),
                     [&](u32 *to) { return table->get_first_entry_handle(sess, target, to); });
        for (const u32 count : {0u, 1u, 3u}) {
            u32 handles[4] = {~0u, ~0u, ~0u, ~0u};
            check(line("pipe_mgr_get_next_entry_handles", sess, handle, target, entry, count),
                  [&] { return table->get_next_entry_handles(sess, target, entry, count, handles); });
            EXPECT_EQ(std::ranges::count(handles, ~0u), 4 - count);
        }
        check(line("pipe_mgr_plcmt_mat_data_get", words[0], words[1], handle),
              [&] { return table->get_plcmt_data(words[0], words[1]); });
        check(line("pipe_mgr_tbl_set_property", sess, device, handle, words[0], words[1], words[2], 0),
              [&] { return table->set_property(sess, device, words[0], words[1], words[2]); });
        for (const pd_mat_update_cb callback : {pd_mat_update_cb{update}, pd_mat_update_cb{nullptr}})
            check(
                line("pipe_register_mat_update_cb", sess, device, handle, recorder::word(callback), words[0]),
                [&] { return table->register_mat_update_cb(sess, device, callback, words[0]); });
        if (HasFailure())
            return;
    }
}

TEST_F(SmallFamilies, PropertiesAreAllOnesWhenTheDriverRefuses)
{
    for (const TableFunctions *table : reflection::tables()) {
        u32 values[2];
        check(line("pipe_mgr_tbl_get_property", 7, 8, table->row->handle, 0xfedcba98), [&] {
            recorder::answer.numbers = {0x12345678, 0x9abcdef0};
            const pd_status status = table->get_property(7, 8, 0xfedcba98, &values[0], &values[1]);
            EXPECT_EQ(values[0], status ? 0xffffffff : 0x12345678) << table->row->name;
            EXPECT_EQ(values[1], status ? 0xffffffff : 0x9abcdef0) << table->row->name;
            return status;
        });
    }
}

TEST_F(SmallFamilies, HandlesAndPrioritiesNeedNoDriver)
{
    u32 with_priority = 0;
    recorder::reset();
    for (const TableFunctions *table : reflection::tables()) {
        u32 handle = 0;
        EXPECT_EQ(table->get_mat_table_handle(&handle), 0u);
        EXPECT_EQ(handle, table->row->handle);
        EXPECT_EQ(table->get_mat_table_handle(nullptr), 0u);
        EXPECT_EQ(table->supports_entry_priority(), encoder::is_ternary(*table->row)) << table->row->name;
        with_priority += table->supports_entry_priority();
    }
    EXPECT_EQ(with_priority, 47u);
    EXPECT_EQ(recorder::calls(), 0u);
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
