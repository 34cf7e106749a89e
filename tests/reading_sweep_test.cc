// Every function that reads, of every table and action: the driver answers with the images of random records,
// and what the caller gets is compared with what the decoder works out. All that a call must leave alone is
// filled with a canary before it.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "decoder.h"
#include "encoder.h"
#include "random_records.h"
#include "recorder.h"
#include "reflection.h"

namespace {

using reflection::TableFunctions;
using sweep::Bytes;
using sweep::seed;
using recorder::line;

constexpr int rounds = 4;
constexpr u8 canary = 0xa5;
constexpr std::size_t guard = 16; // canaries behind a record

// Every place that an entry is read into.
struct Outputs {
    Outputs() { std::memset(static_cast<void *>(this), canary, sizeof *this); }

    alignas(16) u8 key[256];
    alignas(8) u8 action[sizeof(pd_action_out::parameters) + guard];
    alignas(8) u8 numbered[sizeof(pd_action_out) + guard]; // a pd_action_out
    char name[128];
    u32 priority;
    u32 number;
    u8 is_default;
    u8 behind[7];

    pd_action_out *out() { return reinterpret_cast<pd_action_out *>(numbered); }
};

void expect_same(const Outputs &found, const Outputs &expected)
{
    if (std::memcmp(&found, &expected, sizeof found) == 0)
        return;
    const auto part = [](const auto &bytes) {
        return recorder::hex({reinterpret_cast<const u8 *>(&bytes), sizeof bytes});
    };
    EXPECT_EQ(part(found.key), part(expected.key));
    EXPECT_EQ(part(found.action), part(expected.action));
    EXPECT_EQ(part(found.numbered), part(expected.numbered));
    EXPECT_EQ(part(found.name), part(expected.name));
    EXPECT_EQ(part(found.priority), part(expected.priority)); // and what stands behind it
    ADD_FAILURE() << part(found) << "\n" << part(expected);
}

std::string full_name(const pd::Action &action)
{
    return std::string("p4_pd_tessel_switch_") + action.name;
}

bool is_ternary(const pd::Table &table)
{
    return std::ranges::any_of(table.key,
                               [](const pd::Field &field) { return field.match == pd::Match::ternary; });
}

class ReadingSweep : public testing::Test {
protected:
    sweep::Random random;
    Bytes key; // as it was once written
    Bytes parameters;
    std::vector<pd_res_ref> list; // what is attached to the entry
    Outputs found;
    Outputs expected;

    pd_sess_hdl sess = 0;
    u32 device = 0;
    pd_entry_hdl entry = 0;
    u8 from_hw = 0;
    u32 turn = 0;      // among the reads of one action
    u64 allocated = 0; // by the last read

    // ---- The driver's answer ---------------------------------------------------------------------------

    void scramble_resources(const std::string_view table)
    {
        static constexpr u32 handles[] = {0x5000003, 0x5000004, 0x4000005, 0x5000002};
        recorder::answer.resource_count = static_cast<u8>(random.word() % 5);
        list.clear();
        for (u32 i = 0; i < 4; ++i) {
            pipe_res_spec &resource = recorder::answer.resources[i];
            random.scramble(reinterpret_cast<u8 *>(&resource), sizeof resource);
            resource.res_handle = table == "pdpPolicy" ? 0x4000005 : handles[random.word() % 4];
            resource.res_index = random.word();
            resource.res_tag = random.word() % 2 ? 1 : random.word() % 4;
            if (i < recorder::answer.resource_count && resource.res_tag == 1)
                list.push_back({resource.res_handle, resource.res_index});
        }
    }

    // Fresh canaries, and a driver that answers with this action and a random entry.
    void prepare(const pd::Table &table, const pd::Binding &binding)
    {
        recorder::reset();
        found = expected = {};
        sess = random.word();
        device = random.word();
        entry = random.word();
        from_hw = static_cast<u8>(random.word());
        key = random.key(table);
        parameters = random.parameters(*binding.action);
        const encoder::Key written = encoder::encode_key(table, key.data(), random.word());
        recorder::answer.value = written.value;
        recorder::answer.mask = written.mask;
        recorder::answer.num_bytes = static_cast<u16>(written.value.size());
        recorder::answer.partition_index = written.partition_index;
        recorder::answer.priority = random.word();
        recorder::answer.action = binding.handle;
        for (u8 &byte : recorder::answer.data) // behind the image there may be anything
            byte = static_cast<u8>(random.word());
        std::ranges::copy(encoder::encode_data(*binding.action, parameters.data()), recorder::answer.data.begin());
        scramble_resources(table.name);
    }

    // ---- Expectations ----------------------------------------------------------------------------------

    void expect_key(const pd::Table &table)
    {
        if (table.key.empty())
            return;
        std::memset(expected.key, 0, table.record_size);
        decoder::read_back_key(expected.key, table, key.data());
        expected.is_default = 0;
        if (is_ternary(table))
            expected.priority = recorder::answer.priority;
    }

    void expect_default_key(const pd::Table &table)
    {
        if (table.key.empty())
            return;
        std::memset(expected.key, 0, table.record_size);
        expected.is_default = 1;
        if (is_ternary(table))
            expected.priority = recorder::answer.priority;
    }

    void expect_parameters(u8 *to, const pd::Action &action) const
    {
        std::memset(to, 0, action.record_size);
        decoder::read_back_parameters(to, action, parameters.data(), list);
    }

    void expect_numbered_action(const pd::Action &action)
    {
        expected.out()->action_number = action.number;
        expect_parameters(expected.out()->parameters.bytes, action);
    }

    // The driver call, and memory taken only when there is a resource. Nothing else is allocated.
    void expect_steps(const std::string &call, bool reads_list = true, bool frees = true) const
    {
        const u32 resources = reads_list ? recorder::answer.resource_count : 0;
        recorder::Lines lines{call};
        if (resources)
            lines.push_back(line("bf_sys_calloc", resources, sizeof(pd_res_ref)));
        EXPECT_EQ(recorder::lines(), lines);
        EXPECT_EQ(recorder::live_blocks(), resources && !frees);
        EXPECT_TRUE(turn == 0 || !recorder::log.empty() || allocated == (resources != 0));
    }

    static void expect_log(const std::string &condition, const std::string &shown,
                           const std::string &function)
    {
        ASSERT_EQ(recorder::log.size(), 1u);
        const recorder::LogLine &logged = recorder::log[0];
        EXPECT_EQ(logged.module, 0);
        EXPECT_EQ(logged.level, 2);
        const std::string message = "ASSERTION FAILED: \"" + condition + "\" (" + shown + ") from ";
        EXPECT_EQ(logged.format, message + "%s:%d");
        const std::string begin = message + "p4_pd_tessel_switch_" + function + ":";
        ASSERT_EQ(logged.text.substr(0, begin.size()), begin);
        EXPECT_GT(std::stoi(logged.text.substr(begin.size())), 0);
    }

    // ---- Calls -----------------------------------------------------------------------------------------

    // Counts the allocations.
    template <typename Function>
    pd_status read(const Function &function)
    {
        const u64 before = recorder::allocations;
        const pd_status status = function();
        allocated = recorder::allocations - before;
        return status;
    }

    pd_status get_entry(const TableFunctions &table, bool wants_names = true)
    {
        reflection::EntryResults to = results();
        if (!wants_names) {
            to.action_name = nullptr;
            to.action_number = nullptr;
        }
        return read([&] { return table.get_entry(sess, device, entry, from_hw, to); });
    }

    pd_status get_entry_from_plcmt_data(const TableFunctions &table)
    {
        return read([&] { return table.get_entry_from_plcmt_data(this, results(), found.out()); });
    }

    pd_status get_default_entry(const TableFunctions &table)
    {
        return read([&] { return table.get_default_entry(sess, {device, entry}, from_hw, found.out()); });
    }

    reflection::EntryResults results()
    {
        return {found.key, &found.priority, &found.is_default, found.name, found.action, &found.number};
    }

    // The records as the driver must have got them: zeroed, the buffers beside them.
    static std::string spec_text(u16 num_bytes)
    {
        return "{kind=0 bits=0 bytes=" + std::to_string(num_bytes) + " data=" + std::string(56, '0') +
               " member=0 group=0 resources=0[]}";
    }

    static std::string match_text(u32 packed)
    {
        const std::size_t size = recorder::answer.value.size();
        const std::string image = size ? std::string(2 * size, '0') : "null";
        return "{value=" + image + " mask=" + image + " partition=0 priority=0 bits=" +
               std::to_string(packed & 0xffff) + " bytes=" + std::to_string(packed >> 16) + " reserved=0}";
    }

    std::string entry_call(const pd::Table &table) const
    {
        return line("pipe_mgr_get_entry", sess, table.handle, pd_dev_target{device, 0xffff}, entry,
                    match_text(encoder::packed(table)), spec_text(28), from_hw, 1, 0);
    }

    std::string placement_call() const
    {
        return line("pipe_mgr_plcmt_mat_data_get_entry", recorder::word(this), match_text(0), spec_text(0));
    }

    std::string default_call(const pd::Table &table) const
    {
        return line("pipe_mgr_table_get_default_entry", sess, pd_dev_target{device, entry}, table.handle,
                    spec_text(28), from_hw, 1, 0);
    }

    // ---- One table or action ---------------------------------------------------------------------------

    void check_entry(const TableFunctions &table, const pd::Binding &binding)
    {
        const bool wants_names = random.word() % 2;
        prepare(*table.row, binding);
        EXPECT_EQ(get_entry(table, wants_names), 0u);
        expect_key(*table.row);
        expect_parameters(expected.action, *binding.action);
        if (wants_names) {
            expected.number = binding.action->number;
            std::strcpy(expected.name, full_name(*binding.action).c_str());
        }
        expect_same(found, expected);
        expect_steps(entry_call(*table.row));
    }

    void check_placement(const TableFunctions &table, const pd::Binding &binding)
    {
        prepare(*table.row, binding);
        recorder::answer.action_kind = static_cast<u8>(random.word() % 5); // nobody looks at it
        EXPECT_EQ(get_entry_from_plcmt_data(table), 0u);
        expect_key(*table.row);
        if (table.row->key.empty())
            expected.is_default = 1;
        expect_numbered_action(*binding.action);
        expect_same(found, expected);
        expect_steps(placement_call());
    }

    // An action that entries alone may have is as unknown here as one of another table.
    void check_default(const TableFunctions &table, const pd::Binding &binding)
    {
        const bool known =
            binding.default_action || table.row->name == std::string_view("ingressPortMapping");
        prepare(*table.row, binding);
        EXPECT_EQ(get_default_entry(table), known ? 0u : 15u);
        if (known)
            expect_numbered_action(*binding.action);
        expect_same(found, expected);
        expect_steps(default_call(*table.row), true, known);
    }

    // All three, with whatever `change` makes of the driver's answer; nothing may be written or allocated.
    template <typename Change>
    void check_untouched(const TableFunctions &table, pd_status status, const Change &change, bool placement)
    {
        const pd::Binding &binding = table.row->actions[0];
        prepare(*table.row, binding);
        change();
        EXPECT_EQ(get_entry(table), status);
        expect_same(found, expected);
        expect_steps(entry_call(*table.row), false);
        prepare(*table.row, binding);
        change();
        EXPECT_EQ(get_default_entry(table), status);
        expect_same(found, expected);
        expect_steps(default_call(*table.row), false);
        EXPECT_TRUE(recorder::log.empty());
        if (!placement)
            return;
        prepare(*table.row, binding);
        change();
        EXPECT_EQ(get_entry_from_plcmt_data(table), status);
        expect_same(found, expected);
        expect_steps(placement_call(), false);
        EXPECT_TRUE(recorder::log.empty());
    }

    void check_unknown_action(const TableFunctions &table, u32 handle)
    {
        const std::string name = table.row->name;
        prepare(*table.row, table.row->actions[0]);
        recorder::answer.action = handle;
        EXPECT_EQ(get_entry(table), 15u);
        expect_key(*table.row);
        expect_same(found, expected);
        expect_steps(entry_call(*table.row));
        expect_log("((void *)0)", "NULL", name + "_get_entry");

        prepare(*table.row, table.row->actions[0]);
        recorder::answer.action = handle;
        EXPECT_EQ(get_entry_from_plcmt_data(table), 3u);
        expect_key(*table.row);
        if (table.row->key.empty())
            expected.is_default = 1;
        expect_same(found, expected);
        expect_steps(placement_call(), false);
        expect_log("((void *)0)", "NULL", name + "_get_entry_from_plcmt_data");

        prepare(*table.row, table.row->actions[0]);
        recorder::answer.action = handle;
        EXPECT_EQ(get_default_entry(table), 15u);
        expect_same(found, expected);
        expect_steps(default_call(*table.row), true, false);
        EXPECT_TRUE(recorder::log.empty());
    }

    // The default entry among the entries: no value image, or an empty one.
    void check_default_among_entries(const TableFunctions &table, bool null_value, bool no_bytes)
    {
        const pd::Binding &binding = table.row->actions[0];
        const auto change = [&] {
            recorder::answer.null_value = null_value;
            if (no_bytes)
                recorder::answer.num_bytes = 0;
        };
        prepare(*table.row, binding);
        change();
        EXPECT_EQ(get_entry(table), 0u);
        expect_default_key(*table.row);
        expect_parameters(expected.action, *binding.action);
        expected.number = binding.action->number;
        std::strcpy(expected.name, full_name(*binding.action).c_str());
        expect_same(found, expected);

        prepare(*table.row, binding);
        change();
        EXPECT_EQ(get_entry_from_plcmt_data(table), 0u);
        expect_default_key(*table.row);
        expected.is_default = 1; // of a keyless table, too
        expect_numbered_action(*binding.action);
        expect_same(found, expected);
    }

    // Runs `check(table)` for every table whose entries carry their action.
    template <typename Check>
    void each_direct_table(const Check &check)
    {
        u32 tables = 0;
        for (const TableFunctions *table : reflection::tables()) {
            EXPECT_EQ(!table->get_entry, table->row->actions.empty());
            if (!table->get_entry)
                continue;
            ++tables;
            SCOPED_TRACE(testing::Message() << table->row->name << " seed " << seed);
            check(*table);
            if (HasFailure())
                return;
        }
        EXPECT_EQ(tables, 154u);
    }

    template <typename Check>
    void each_action(const Check &check)
    {
        each_direct_table([&](const TableFunctions &table) {
            for (const pd::Binding &binding : table.row->actions)
                for (turn = 0; turn < rounds; ++turn) {
                    SCOPED_TRACE(testing::Message() << binding.action->name << " round " << turn);
                    check(table, binding);
                }
        });
    }
};

TEST_F(ReadingSweep, EveryActionReadsBackByHandle)
{
    each_action(
        [&](const TableFunctions &table, const pd::Binding &binding) { check_entry(table, binding); });
}

TEST_F(ReadingSweep, EveryActionReadsBackFromPlacementData)
{
    each_action(
        [&](const TableFunctions &table, const pd::Binding &binding) { check_placement(table, binding); });
}

TEST_F(ReadingSweep, EveryDefaultActionReadsBack)
{
    each_action(
        [&](const TableFunctions &table, const pd::Binding &binding) { check_default(table, binding); });
}

TEST_F(ReadingSweep, RefusalsOfTheDriverPassThroughAndLeaveEverythingAlone)
{
    each_direct_table([&](const TableFunctions &table) {
        for (const pd_status status : sweep::statuses)
            if (status != 0)
                check_untouched(
                    table, status, [&] { recorder::status = status; }, true);
    });
}

// Placement data is read all the same; check_placement shows it.
TEST_F(ReadingSweep, EntriesOfAnotherKindCannotBeRead)
{
    each_direct_table([&](const TableFunctions &table) {
        for (const u8 kind : {0, 2, 3, 4, 255})
            check_untouched(
                table, 15, [&] { recorder::answer.action_kind = kind; }, false);
    });
}

TEST_F(ReadingSweep, UnknownActions)
{
    each_direct_table([&](const TableFunctions &table) {
        const auto all = reflection::tables();
        const TableFunctions &other = *all[&table == all[0] ? 1 : 0];
        for (const u32 handle : {0u, ~0u, other.row->actions[0].handle})
            check_unknown_action(table, handle);
    });
}

TEST_F(ReadingSweep, DefaultEntryAmongEntries)
{
    each_direct_table([&](const TableFunctions &table) {
        check_default_among_entries(table, true, false);
        check_default_among_entries(table, false, true);
        check_default_among_entries(table, true, true);
    });
}

// ---- Decoding alone --------------------------------------------------------------------------------------

// Images that no record gives as well: holes in prefixes, values outside of their masks.
TEST_F(ReadingSweep, EveryKeyDecodesAnyImages)
{
    u32 keys = 0, masks = 0;
    for (const TableFunctions *table : reflection::tables()) {
        EXPECT_EQ(!table->unbuild_key, table->row->key.empty());
        EXPECT_EQ(!table->unbuild_mask, pd::key_kind(*table->row) == pd::Match::exact);
        keys += table->unbuild_key != nullptr;
        masks += table->unbuild_mask != nullptr;
        for (int round = 0; table->unbuild_key && round < 8 * rounds; ++round) {
            SCOPED_TRACE(testing::Message() << table->row->name << " round " << round << " seed " << seed);
            Bytes value(encoder::packed(*table->row) >> 16), mask(value.size());
            random.scramble(value.data(), value.size());
            random.scramble(mask.data(), mask.size());
            if (round % 2) // a single bit, so that every prefix length has its turn
                std::fill(mask.begin(), mask.end(), u8{0});
            mask[random.word() % mask.size()] |= static_cast<u8>(1 << random.word() % 8);
            const pipe_match_spec match{.match_value = value.data(),
                                        .match_mask = mask.data(),
                                        .partition_index = random.word(),
                                        .priority = random.word(),
                                        .num_valid_bits = 0,
                                        .num_bytes = 0,
                                        .match_reserved = 0};

            Outputs key, expected_key;
            table->unbuild_key(&match, key.key);
            std::memset(expected_key.key, 0, table->row->record_size);
            decoder::decode_values(expected_key.key, *table->row, value.data(), match.partition_index);
            expect_same(key, expected_key);
            if (!table->unbuild_mask)
                continue;
            key = expected_key = {};
            table->unbuild_mask(&match, key.key);
            decoder::decode_masks(expected_key.key, *table->row, mask.data());
            expect_same(key, expected_key);
            if (HasFailure())
                return;
        }
    }
    EXPECT_EQ(keys, 141u);
    EXPECT_EQ(masks, 51u);
}

// Actions of profiles are in no table.
TEST_F(ReadingSweep, EveryActionDecodesAnyData)
{
    u32 functions = 0;
    for (const pd::Action *action : reflection::actions()) {
        const auto unbuild = reflection::action_texts()[action->number].unbuild;
        ASSERT_EQ(unbuild != nullptr, !action->parameters.empty()) << action->name;
        functions += unbuild != nullptr;
        for (int round = 0; unbuild && round < 2 * rounds; ++round) {
            SCOPED_TRACE(testing::Message() << action->name << " round " << round << " seed " << seed);
            found = expected = {};
            parameters = random.parameters(*action);
            Bytes image = encoder::encode_data(*action, parameters.data());
            scramble_resources(action->name == std::string_view("setPdpClassCount") ? "pdpPolicy" : "");
            const pipe_action_data data{.num_valid_bits = 0, .num_bytes = 0, .data = image.data()};
            unbuild(&data, list.empty() ? nullptr : list.data(), static_cast<u32>(list.size()), found.action);
            expect_parameters(expected.action, *action);
            expect_same(found, expected);
        }
    }
    EXPECT_EQ(functions, 156u);
}

} // namespace
