// Every function that reads, of every table and action: the driver answers with the images of random records,
// and what the caller gets is compared with what the decoder works out. All that a call must leave alone is
// filled with a canary before it.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>

#include "decoder.h"
#include "encoder.h"
#include "random_records.h"
#include "recorder.h"
#include "reflection.h"

namespace {

using recorder::line;
using reflection::TableFunctions;
using sweep::Bytes;
using sweep::seed;

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

// How an entry is come by.
enum class Road { by_handle, placed, by_default };

struct Outcome {
    pd_status status = 0;
    bool reads_key = true;
    bool is_default = false;
    bool reads_list = true;
    bool reads_action = true;
    bool frees_list = true;
    std::string function = ""; // that stands in the log, behind the table's name
    const char *logged = "\"((void *)0)\" (NULL)";

    static Outcome refused(pd_status status) { return {status, false, false, false, false}; }
};

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
    bool wants_names = true;
    u32 turn = 0; // among the reads of one action

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
        encoder::answer_key(recorder::answer, table, key.data());
        recorder::answer.priority = random.word();
        recorder::answer.action = binding.handle;
        for (u8 &byte : recorder::answer.data) // behind the image there may be anything
            byte = static_cast<u8>(random.word());
        std::ranges::copy(encoder::encode_data(*binding.action, parameters.data()),
                          recorder::answer.data.begin());
        scramble_resources(table.name);
    }

    // ---- Calls -----------------------------------------------------------------------------------------

    reflection::EntryResults results()
    {
        return {found.key,         &found.priority,
                &found.is_default, wants_names ? found.name : nullptr,
                found.action,      wants_names ? &found.number : nullptr};
    }

    pd_status read(Road road, const TableFunctions &table)
    {
        if (road == Road::by_handle)
            return table.get_entry(sess, device, entry, from_hw, results());
        if (road == Road::placed)
            return table.get_entry_from_plcmt_data(this, results(), found.out());
        return table.get_default_entry(sess, {device, entry}, from_hw, found.out());
    }

    // The records as the driver must have got them: zeroed, the buffers beside them.
    std::string call(Road road, const pd::Table &table) const
    {
        const u32 packed = road == Road::placed ? 0 : encoder::packed(table);
        const std::size_t size = recorder::answer.value.size();
        const std::string image = size ? std::string(2 * size, '0') : "null";
        const std::string match = "{value=" + image + " mask=" + image +
                                  " partition=0 priority=0 bits=" + std::to_string(packed & 0xffff) +
                                  " bytes=" + std::to_string(packed >> 16) + " reserved=0}";
        const std::string spec = std::string("{kind=0 bits=0 bytes=") + (road == Road::placed ? "0" : "28") +
                                 " data=" + std::string(56, '0') + " member=0 group=0 resources=0[]}";
        if (road == Road::by_handle)
            return line("pipe_mgr_get_entry", sess, table.handle, pd_dev_target{device, 0xffff}, entry, match,
                        spec, from_hw, 1, 0);
        if (road == Road::placed)
            return line("pipe_mgr_plcmt_mat_data_get_entry", recorder::word(this), match, spec);
        return line("pipe_mgr_table_get_default_entry", sess, pd_dev_target{device, entry}, table.handle,
                    spec, from_hw, 1, 0);
    }

    // ---- Expectations ----------------------------------------------------------------------------------

    void expect_key(Road road, const pd::Table &table, bool is_default)
    {
        if (road == Road::by_default)
            return;
        if (table.key.empty()) {
            if (road == Road::placed)
                expected.is_default = 1;
            return;
        }
        std::memset(expected.key, 0, table.record_size);
        if (!is_default)
            decoder::read_back_key(expected.key, table, key.data());
        expected.is_default = is_default;
        if (encoder::is_ternary(table))
            expected.priority = recorder::answer.priority;
    }

    void expect_action(Road road, const pd::Action &action)
    {
        u8 *const to = road == Road::by_handle ? expected.action : expected.out()->parameters.bytes;
        std::memset(to, 0, action.record_size);
        decoder::read_back_parameters(to, action, parameters.data(), list);
        if (road != Road::by_handle)
            expected.out()->action_number = action.number;
        else if (wants_names) {
            expected.number = action.number;
            std::strcpy(expected.name, (std::string("p4_pd_tessel_switch_") + action.name).c_str());
        }
    }

    static void expect_log(const std::string &condition, const std::string &function)
    {
        ASSERT_EQ(recorder::log.size(), 1u);
        const recorder::LogLine &logged = recorder::log[0];
        EXPECT_EQ(logged.module, 0);
        EXPECT_EQ(logged.level, 2);
        const std::string begin =
            "ASSERTION FAILED: " + condition + " from p4_pd_tessel_switch_" + function + ":";
        ASSERT_EQ(logged.text.substr(0, begin.size()), begin);
        EXPECT_GT(std::stoi(logged.text.substr(begin.size())), 0);
    }

    // One read of an entry with this action, with whatever `change` makes of the driver's answer. The driver
    // is called once; memory is taken when there is a resource to list, and nothing else is allocated.
    template <typename Change>
    void check(Road road, const TableFunctions &table, const pd::Binding &binding, const Outcome &outcome,
               const Change &change)
    {
        SCOPED_TRACE(testing::Message() << binding.action->name << " road " << static_cast<int>(road));
        prepare(*table.row, binding);
        change();
        const u64 before = recorder::allocations;
        EXPECT_EQ(read(road, table), outcome.status);
        const u64 allocated = recorder::allocations - before;
        const u32 resources = outcome.reads_list ? recorder::answer.resource_count : 0;
        EXPECT_TRUE(turn == 0 || !recorder::log.empty() || allocated == (resources != 0));
        if (outcome.reads_key)
            expect_key(road, *table.row, outcome.is_default);
        if (outcome.reads_action)
            expect_action(road, *binding.action);
        expect_same(found, expected);
        recorder::Lines lines{call(road, *table.row)};
        if (resources)
            lines.push_back(line("bf_sys_calloc", resources, sizeof(pd_res_ref)));
        EXPECT_EQ(recorder::lines(), lines);
        EXPECT_EQ(recorder::live_blocks(), resources && !outcome.frees_list);
        if (outcome.function.empty())
            EXPECT_TRUE(recorder::log.empty());
        else
            expect_log(outcome.logged, table.row->name + outcome.function);
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

    // Each road to each action of each table, several times.
    void check_actions(Road road,
                       const std::function<Outcome(const TableFunctions &, const pd::Binding &)> &of,
                       const std::function<void()> &change)
    {
        each_direct_table([&](const TableFunctions &table) {
            for (const pd::Binding &binding : table.row->actions)
                for (turn = 0; turn < rounds; ++turn) {
                    wants_names = random.word() % 2;
                    check(road, table, binding, of(table, binding), change);
                }
        });
    }
};

constexpr Road roads[] = {Road::by_handle, Road::placed, Road::by_default};

TEST_F(ReadingSweep, EveryActionReadsBack)
{
    const auto good = [](const TableFunctions &, const pd::Binding &) { return Outcome{}; };
    check_actions(Road::by_handle, good, [] {});
    check_actions(Road::placed, good, [&] { // nobody looks at the kind
        recorder::answer.action_kind = static_cast<u8>(random.word() % 5);
    });
    // An action that entries alone may have is as unknown here as one of another table.
    const auto of_default = [](const TableFunctions &table, const pd::Binding &binding) {
        const bool known =
            binding.default_action || table.row->name == std::string_view("ingressPortMapping");
        return known ? Outcome{} : Outcome{.status = 15, .reads_action = false, .frees_list = false};
    };
    check_actions(Road::by_default, of_default, [] {});
}

TEST_F(ReadingSweep, RefusalsOfTheDriverPassThroughAndLeaveEverythingAlone)
{
    each_direct_table([&](const TableFunctions &table) {
        for (const pd_status status : sweep::statuses)
            for (const Road road : roads)
                if (status != 0)
                    check(road, table, table.row->actions[0], Outcome::refused(status),
                          [&] { recorder::status = status; });
    });
}

TEST_F(ReadingSweep, EntriesOfAnotherKindCannotBeRead)
{
    each_direct_table([&](const TableFunctions &table) {
        for (const u8 kind : {0, 2, 3, 4, 255})
            for (const Road road : {Road::by_handle, Road::by_default}) {
                Outcome outcome = Outcome::refused(15);
                outcome.function = road == Road::by_handle ? "_get_entry" : "";
                outcome.logged = "\"0\" (0)";
                check(road, table, table.row->actions[0], outcome,
                      [&] { recorder::answer.action_kind = kind; });
            }
    });
}

TEST_F(ReadingSweep, UnknownActions)
{
    each_direct_table([&](const TableFunctions &table) {
        const auto all = reflection::tables();
        const TableFunctions &other = *all[&table == all[0] ? 1 : 0];
        for (const u32 handle : {0u, ~0u, other.row->actions[0].handle}) {
            const auto change = [&] { recorder::answer.action = handle; };
            const pd::Binding &binding = table.row->actions[0];
            Outcome outcome{.status = 15, .reads_action = false, .function = "_get_entry"};
            check(Road::by_handle, table, binding, outcome, change);
            outcome = {.status = 15, .reads_action = false, .frees_list = false};
            check(Road::by_default, table, binding, outcome, change);
            outcome = {.status = 3, .reads_action = false, .function = "_get_entry_from_plcmt_data"};
            outcome.reads_list = false;
            check(Road::placed, table, binding, outcome, change);
        }
    });
}

// No value image, or an empty one.
TEST_F(ReadingSweep, DefaultEntryAmongEntries)
{
    each_direct_table([&](const TableFunctions &table) {
        for (const u32 how : {1, 2, 3})
            for (const Road road : {Road::by_handle, Road::placed})
                check(road, table, table.row->actions[0], {.is_default = true}, [&] {
                    recorder::answer.null_value = how & 1;
                    if (how & 2)
                        recorder::answer.num_bytes = 0;
                });
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

} // namespace
