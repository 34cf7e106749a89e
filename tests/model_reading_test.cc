// The reading half of the model driver: default entries, read-back from both copies, walks, placement data,
// properties and update callbacks.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "model.h"
#include "model_tables.h"
#include "pipe_mgr.h"
#include "reflection.h"

namespace {

using Handles = std::vector<pd_entry_hdl>;

constexpr Table counted{0x1000009, 57, 8, 0x2000000a, 2}; // l2DmacClassify, classifyL2ControlFrame
constexpr u32 unknown_table = 0x1ffffff;
constexpr u32 counter = 0x4000001; // of l2DmacClassify
constexpr u32 meter = 0x5000001;   // of l2LookupMiss
constexpr pd_dev_target target{0, PIPE_ALL_PIPES};
constexpr u8 canary = 0xa5;
constexpr u32 canary_word = 0xa5a5a5a5;

// The records of one entry together with the images that they point at.
struct Request {
    Request(const Table &table, Bytes key, Bytes key_mask, Bytes parameters = {})
        : value{std::move(key)}, mask{std::move(key_mask)}, data{std::move(parameters)}
    {
        data.resize(std::max<u16>(table.data_bytes, 1));
        match = {value.data(), mask.data(), 0, 0, table.bits, table.bytes, 0};
        spec.action_kind = PIPE_ACTION_DATA;
        spec.action_data = {0, table.data_bytes, data.data()};
    }

    Request(const Request &) = delete;

    Request &attach(u32 resource, u32 tag = PIPE_RES_ATTACH)
    {
        spec.resource_count = 1;
        spec.resources[0].res_handle = resource;
        spec.resources[0].res_tag = tag;
        return *this;
    }

    Bytes value;
    Bytes mask;
    Bytes data;
    pipe_match_spec match{};
    pipe_action_spec spec{};
};

pd_entry_hdl must_add(const Table &table, Request &request)
{
    pd_entry_hdl entry = 0;
    EXPECT_EQ(pipe_mgr_mat_ent_add(1, target, table.handle, &request.match, table.action, &request.spec, 0, 0,
                                   &entry),
              TS_MODEL_OK);
    return entry;
}

pd_entry_hdl must_add_port(u16 port, const Bytes &data = {})
{
    Request request{exact, {static_cast<u8>(port >> 8), static_cast<u8>(port)}, {0xff, 0xff}, data};
    return must_add(exact, request);
}

// What the driver answers into, full of canaries.
struct Answer {
    explicit Answer(u16 key_room = 64, u16 data_room = 28)
    {
        std::memset(&match, canary, sizeof match);
        std::memset(&spec, canary, sizeof spec);
        match.match_value = value.data();
        match.match_mask = mask.data();
        match.num_bytes = key_room;
        spec.action_data.data = data.data();
        spec.action_data.num_bytes = data_room;
        untouched_match = match;
        untouched_spec = spec;
    }

    Answer(const Answer &) = delete;

    Bytes value_read() const { return {value.begin(), value.begin() + match.num_bytes}; }
    Bytes mask_read() const { return {mask.begin(), mask.begin() + match.num_bytes}; }
    Bytes data_read() const { return {data.begin(), data.begin() + spec.action_data.num_bytes}; }

    bool untouched() const
    {
        const Bytes buffer(64, canary);
        return value == buffer && mask == buffer && data == buffer && action == canary_word &&
               std::memcmp(&match, &untouched_match, sizeof match) == 0 &&
               std::memcmp(&spec, &untouched_spec, sizeof spec) == 0;
    }

    Bytes value = Bytes(64, canary);
    Bytes mask = Bytes(64, canary);
    Bytes data = Bytes(64, canary);
    pipe_match_spec match;
    pipe_action_spec spec;
    u32 action = canary_word;

private:
    pipe_match_spec untouched_match;
    pipe_action_spec untouched_spec;
};

pd_status read(u32 table, pd_entry_hdl entry, Answer &answer, u8 from_hw = 0)
{
    return pipe_mgr_get_entry(1, table, target, entry, &answer.match, &answer.spec, &answer.action, from_hw,
                              1, 0);
}

pd_status read_default(u32 table, Answer &answer, u8 from_hw = 0)
{
    return pipe_mgr_table_get_default_entry(1, target, table, &answer.spec, &answer.action, from_hw, 1, 0);
}

pd_status set_default(u32 table, u32 action, pipe_action_spec &spec)
{
    pd_entry_hdl entry = canary_word;
    const pd_status status = pipe_mgr_mat_default_entry_set(1, target, table, action, &spec, 0, &entry);
    EXPECT_EQ(entry, status == TS_MODEL_OK ? u32{TS_MODEL_DEFAULT_ENTRY} : canary_word);
    return status;
}

Handles next_handles(u32 table, pd_entry_hdl after, u32 count)
{
    Handles next(count + 1, canary_word);
    EXPECT_EQ(pipe_mgr_get_next_entry_handles(1, table, target, after, count, next.data()), TS_MODEL_OK);
    EXPECT_EQ(next.back(), canary_word) << "behind the array";
    next.pop_back();
    return next;
}

class Reading : public testing::Test {
protected:
    Reading() { ts_model_reset(); }
    ~Reading() override { ts_model_reset(); }

    void trace()
    {
        ts_model_set_trace(
            [](const char *line, void *cookie) { static_cast<Lines *>(cookie)->push_back(line); }, &lines);
    }

    Lines lines;
};

// ---- Default entries ------------------------------------------------------------------------------------

// The default that the rows of a direct table give.
const pd::Binding &expected_default(const pd::Table &row)
{
    const pd::Binding *first = nullptr;
    for (const pd::Binding &binding : row.actions) {
        const bool eligible = binding.default_action || !pd::has_default_action(row.actions);
        if (eligible && (first == nullptr || std::strcmp(binding.action->name, first->action->name) < 0))
            first = &binding;
    }
    return *first;
}

void expect_programs_default(const pd::Table &row)
{
    Answer answer;
    ASSERT_EQ(read_default(row.handle, answer), TS_MODEL_OK);
    if (row.profile != nullptr) {
        EXPECT_EQ(answer.spec.action_kind, PIPE_ACTION_NONE);
        EXPECT_EQ(answer.action, 0u);
        EXPECT_EQ(answer.spec.resource_count, 0);
        return;
    }
    const pd::Binding &binding = expected_default(row);
    const pd::ImageSize size = pd::image_size(binding.action->parameters);
    EXPECT_EQ(answer.action, binding.handle);
    EXPECT_EQ(answer.spec.action_kind, PIPE_ACTION_DATA);
    EXPECT_EQ(answer.spec.action_data.num_valid_bits, size.bits);
    EXPECT_EQ(answer.data_read(), Bytes(size.bytes, 0));
    const u32 resource = row.direct_counter + row.direct_meter + row.indexed_resource;
    ASSERT_EQ(answer.spec.resource_count, resource != 0);
    if (resource == 0)
        return;
    EXPECT_EQ(answer.spec.resources[0].res_handle, resource);
    EXPECT_EQ(answer.spec.resources[0].res_tag,
              u32{row.direct_counter != 0 ? PIPE_RES_ATTACH : PIPE_RES_DETACH});
}

TEST_F(Reading, EveryTableStartsWithTheProgramsDefault)
{
    for (const reflection::TableFunctions *table : reflection::tables()) {
        SCOPED_TRACE(table->row->name);
        expect_programs_default(*table->row);
        Answer answer;
        ASSERT_EQ(read(table->row->handle, TS_MODEL_DEFAULT_ENTRY, answer, 1), TS_MODEL_OK);
        EXPECT_EQ(answer.match.match_value, nullptr);
        EXPECT_EQ(answer.match.num_bytes, 0);
        EXPECT_EQ(answer.match.num_valid_bits, 0);
        EXPECT_EQ(answer.match.priority, 0u);
        pd_entry_hdl handle = 0;
        EXPECT_EQ(table->get_default_entry_handle(1, target, &handle), TS_MODEL_OK);
        EXPECT_EQ(handle, u32{TS_MODEL_DEFAULT_ENTRY});
    }
    Answer six_to_choose_from; // normalizeDscp, NoAction
    EXPECT_EQ(read_default(reflection::find_table("normalizeDscp")->row->handle, six_to_choose_from),
              TS_MODEL_OK);
    EXPECT_EQ(six_to_choose_from.action, 0x200000a7u);
    Answer none_to_choose_from;
    EXPECT_EQ(read_default(exact.handle, none_to_choose_from), TS_MODEL_OK);
    EXPECT_EQ(none_to_choose_from.action, 0x20000000u);
    EXPECT_EQ(none_to_choose_from.spec.action_data.num_valid_bits, 33);
}

TEST_F(Reading, ExactlyTheProgramsDefaultActionsCanBeSet)
{
    constexpr u32 seed = 20240923;
    SCOPED_TRACE(seed);
    std::mt19937 random{seed};
    u32 taken = 0;
    for (const reflection::TableFunctions *table : reflection::tables())
        for (const pd::Binding &binding : table->row->actions) {
            SCOPED_TRACE(std::string{table->row->name} + " " + binding.action->name);
            const pd::ImageSize size = pd::image_size(binding.action->parameters);
            Bytes data(std::max<u16>(size.bytes, 1));
            std::ranges::generate(data, [&] { return static_cast<u8>(random() | 1); });
            pipe_action_spec spec{};
            spec.action_kind = PIPE_ACTION_DATA;
            spec.action_data = {size.bits, size.bytes, data.data()};
            if (!binding.default_action) {
                EXPECT_EQ(set_default(table->row->handle, binding.handle, spec), TS_MODEL_BAD_ARGUMENT);
                expect_programs_default(*table->row);
                continue;
            }
            ++taken;
            ASSERT_EQ(set_default(table->row->handle, binding.handle, spec), TS_MODEL_OK);
            data.resize(size.bytes);
            for (const u8 from_hw : {0, 1}) {
                Answer answer;
                ASSERT_EQ(read_default(table->row->handle, answer, from_hw), TS_MODEL_OK);
                EXPECT_EQ(answer.action, binding.handle);
                EXPECT_EQ(answer.spec.action_data.num_valid_bits, size.bits);
                EXPECT_EQ(answer.data_read(), data);
            }
            ASSERT_EQ(pipe_mgr_mat_tbl_default_entry_reset(1, target, table->row->handle, 0), TS_MODEL_OK);
            expect_programs_default(*table->row);
        }
    EXPECT_EQ(taken, 172u);
}

TEST_F(Reading, TheDefaultOfAnIndirectTableIsAMemberOrAGroup)
{
    u8 scratch = 0;
    pipe_action_spec spec{};
    spec.action_kind = PIPE_ACTION_DATA;
    spec.action_data.data = &scratch;
    EXPECT_EQ(set_default(indirect.handle, indirect.action, spec), TS_MODEL_BAD_ARGUMENT);

    fill_profile(7, 8);
    spec = {};
    spec.member_hdl = 7;
    spec.group_hdl = 8;
    for (const u8 kind : {PIPE_ACTION_MEMBER, PIPE_ACTION_GROUP}) {
        spec.action_kind = kind;
        ASSERT_EQ(set_default(indirect.handle, indirect.action, spec), TS_MODEL_OK);
        Answer answer;
        ASSERT_EQ(read_default(indirect.handle, answer), TS_MODEL_OK);
        EXPECT_EQ(answer.spec.action_kind, kind);
        EXPECT_EQ(answer.spec.member_hdl, kind == PIPE_ACTION_MEMBER ? 7u : 0u);
        EXPECT_EQ(answer.spec.group_hdl, kind == PIPE_ACTION_GROUP ? 8u : 0u);
        EXPECT_EQ(answer.action, indirect.action);
        EXPECT_EQ(answer.spec.action_data.num_bytes, 0);
    }
    spec.action_kind = PIPE_ACTION_MEMBER;
    EXPECT_EQ(set_default(exact.handle, exact.action, spec), TS_MODEL_BAD_ARGUMENT);
}

TEST_F(Reading, TheDefaultEntryIsModifiedByItsHandleButIsNoEntryLikeOthers)
{
    const u32 default_action = expected_default(*reflection::find_table(metered.handle)->row).handle;
    u8 scratch = 0;
    pipe_action_spec spec{};
    spec.action_kind = PIPE_ACTION_DATA;
    spec.action_data.data = &scratch;
    spec.resource_count = 1;
    spec.resources[0] = {meter, 0, {}, PIPE_RES_ATTACH};
    for (const u32 tag : {PIPE_RES_ATTACH, PIPE_RES_KEEP}) {
        spec.resources[0].res_tag = tag;
        spec.resources[0].res_data.meter.committed_rate = tag == PIPE_RES_ATTACH ? 1000 : 2000;
        EXPECT_EQ(pipe_mgr_mat_ent_set_action(1, 0, metered.handle, TS_MODEL_DEFAULT_ENTRY, default_action,
                                              &spec, 0),
                  TS_MODEL_OK);
        Answer answer;
        EXPECT_EQ(read_default(metered.handle, answer), TS_MODEL_OK);
        EXPECT_EQ(answer.spec.resources[0].res_tag, u32{PIPE_RES_ATTACH});
        EXPECT_EQ(answer.spec.resources[0].res_data.meter.committed_rate, 1000u);
    }
    EXPECT_EQ(
        pipe_mgr_mat_ent_set_action(1, 0, metered.handle, TS_MODEL_DEFAULT_ENTRY, metered.action, &spec, 0),
        TS_MODEL_BAD_ARGUMENT)
        << "no default action";
    EXPECT_EQ(pipe_mgr_mat_ent_del(1, 0, metered.handle, TS_MODEL_DEFAULT_ENTRY, 0), TS_MODEL_UNKNOWN_OBJECT);

    u32 count = canary_word;
    EXPECT_EQ(pipe_mgr_get_entry_count(1, target, metered.handle, 0, &count), TS_MODEL_OK);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(next_handles(metered.handle, 0, 2), (Handles{0, 0}));
    ts_model_entry contents{};
    EXPECT_EQ(ts_model_get_entry(0, metered.handle, TS_MODEL_DEFAULT_ENTRY, &contents), TS_MODEL_OK);
    EXPECT_EQ(contents.value, nullptr);
    EXPECT_EQ(contents.key_bytes, 0u);
    EXPECT_EQ(contents.action, default_action);
}

// ---- Read-back ------------------------------------------------------------------------------------------

TEST_F(Reading, AnEntryComesBackWithAllThatWasWritten)
{
    Request request{counted, {0, 1, 2, 3, 4, 5, 6, 7}, {1, 0xff, 0xff, 0xff, 0xff, 0, 0, 0xff}, {1, 0x23}};
    request.match.priority = 77;
    const pd_entry_hdl entry = must_add(counted, request.attach(counter));
    Answer answer;
    ASSERT_EQ(read(counted.handle, entry, answer), TS_MODEL_OK);
    EXPECT_EQ(answer.value_read(), request.value);
    EXPECT_EQ(answer.mask_read(), request.mask);
    EXPECT_EQ(answer.match.num_valid_bits, 57);
    EXPECT_EQ(answer.match.num_bytes, 8);
    EXPECT_EQ(answer.match.priority, 77u);
    EXPECT_EQ(answer.match.partition_index, 0u);
    EXPECT_EQ(answer.action, counted.action);
    EXPECT_EQ(answer.data_read(), (Bytes{1, 0x23}));
    EXPECT_EQ(answer.spec.action_data.num_valid_bits, 9);
    EXPECT_EQ(answer.spec.resource_count, 1);
    EXPECT_EQ(answer.spec.resources[0].res_handle, counter);
    EXPECT_EQ(answer.spec.resources[0].res_tag, u32{PIPE_RES_ATTACH});
    EXPECT_EQ(answer.value[8], canary);
    EXPECT_EQ(answer.data[2], canary);

    Request of_partition{partitioned, {0, 0, 10, 0, 0, 0}, {0, 0, 0xff, 0, 0, 0}, {1, 2, 3, 4}};
    of_partition.match.partition_index = 3;
    of_partition.match.priority = 24;
    Answer second;
    ASSERT_EQ(read(partitioned.handle, must_add(partitioned, of_partition), second), TS_MODEL_OK);
    EXPECT_EQ(second.match.partition_index, 3u);
    EXPECT_EQ(second.match.priority, 24u);
    EXPECT_EQ(second.mask_read(), (Bytes{0, 0, 0xff, 0, 0, 0}));
    EXPECT_EQ(second.spec.resource_count, 0);

    fill_profile(0, 9);
    Request of_group{indirect, {0x12, 0x34}, {0xff, 0xff}};
    of_group.spec = {};
    of_group.spec.action_kind = PIPE_ACTION_GROUP;
    of_group.spec.group_hdl = 9;
    Answer third{2, 0};
    ASSERT_EQ(read(indirect.handle, must_add(indirect, of_group), third), TS_MODEL_OK);
    EXPECT_EQ(third.spec.action_kind, PIPE_ACTION_GROUP);
    EXPECT_EQ(third.spec.group_hdl, 9u);
    EXPECT_EQ(third.spec.member_hdl, 0u);
}

TEST_F(Reading, ARefusedReadWritesNothing)
{
    const pd_entry_hdl entry = must_add_port(1);
    struct Case {
        const char *what;
        pd_status status;
        std::function<pd_status(Answer &)> read;
        u16 key_room = 2;
        u16 data_room = 6;
    };
    const auto entry_into = [&](Answer &answer) { return read(exact.handle, entry, answer); };
    const Case cases[] = {
        {"short key buffer", TS_MODEL_BAD_ARGUMENT, entry_into, 1, 6},
        {"short data buffer", TS_MODEL_BAD_ARGUMENT, entry_into, 2, 5},
        {"short data buffer for the default", TS_MODEL_BAD_ARGUMENT,
         [](Answer &answer) { return read_default(exact.handle, answer); }, 2, 5},
        {"unknown table", TS_MODEL_UNKNOWN_OBJECT,
         [&](Answer &answer) { return read(unknown_table, entry, answer); }},
        {"unknown entry", TS_MODEL_UNKNOWN_OBJECT,
         [&](Answer &answer) { return read(exact.handle, entry + 1, answer); }},
        {"unknown device", TS_MODEL_UNKNOWN_OBJECT,
         [&](Answer &answer) {
             return pipe_mgr_get_entry(1, exact.handle, {256, 0}, entry, &answer.match, &answer.spec,
                                       &answer.action, 0, 1, 0);
         }},
        {"no match record", TS_MODEL_BAD_ARGUMENT,
         [&](Answer &answer) {
             return pipe_mgr_get_entry(1, exact.handle, target, entry, nullptr, &answer.spec, &answer.action,
                                       0, 1, 0);
         }},
        {"no action record", TS_MODEL_BAD_ARGUMENT,
         [&](Answer &answer) {
             return pipe_mgr_get_entry(1, exact.handle, target, entry, &answer.match, nullptr, &answer.action,
                                       0, 1, 0);
         }},
        {"no action word", TS_MODEL_BAD_ARGUMENT,
         [&](Answer &answer) {
             return pipe_mgr_get_entry(1, exact.handle, target, entry, &answer.match, &answer.spec, nullptr,
                                       0, 1, 0);
         }},
        {"no action word for the default", TS_MODEL_BAD_ARGUMENT,
         [&](Answer &answer) {
             return pipe_mgr_table_get_default_entry(1, target, exact.handle, &answer.spec, nullptr, 0, 1, 0);
         }},
    };
    for (const Case &one : cases) {
        Answer answer{one.key_room, one.data_room};
        EXPECT_EQ(one.read(answer), one.status) << one.what;
        EXPECT_TRUE(answer.untouched()) << one.what;
    }
    Answer just_enough{2, 6};
    EXPECT_EQ(entry_into(just_enough), TS_MODEL_OK);

    Answer no_buffers;
    no_buffers.match.match_mask = nullptr;
    EXPECT_EQ(entry_into(no_buffers), TS_MODEL_BAD_ARGUMENT);
    no_buffers.match.match_mask = no_buffers.mask.data();
    no_buffers.spec.action_data.data = nullptr;
    EXPECT_EQ(entry_into(no_buffers), TS_MODEL_BAD_ARGUMENT);
    EXPECT_EQ(pipe_mgr_table_get_default_entry_handle(1, target, exact.handle, nullptr),
              TS_MODEL_BAD_ARGUMENT);
    EXPECT_EQ(pipe_mgr_get_entry_count(1, target, exact.handle, 0, nullptr), TS_MODEL_BAD_ARGUMENT);
    EXPECT_EQ(pipe_mgr_get_first_entry_handle(1, exact.handle, target, nullptr), TS_MODEL_BAD_ARGUMENT);
    EXPECT_EQ(pipe_mgr_get_next_entry_handles(1, exact.handle, target, 0, 1, nullptr), TS_MODEL_BAD_ARGUMENT);
}

// ---- Software copy and hardware copy --------------------------------------------------------------------

TEST_F(Reading, TheHardwareShowsWhatItWasMadeToShowUntilTheNextWrite)
{
    Request request{counted, Bytes(8, 1), Bytes(8, 0xff), {0, 5}};
    const pd_entry_hdl entry = must_add(counted, request);
    const pd_entry_hdl other = must_add_port(1, {1, 2, 3, 4, 5, 6});
    const Bytes data{1, 9};
    ASSERT_EQ(ts_model_set_hardware_action(0, counted.handle, entry, counted.action, data.data(), 2),
              TS_MODEL_OK);
    const Bytes value(8, 2);
    const Bytes mask(8, 0xf0);
    ASSERT_EQ(ts_model_set_hardware_key(0, counted.handle, entry, value.data(), mask.data(), 8), TS_MODEL_OK);
    Answer software, hardware, untouched_entry;
    ASSERT_EQ(read(counted.handle, entry, software, 0), TS_MODEL_OK);
    EXPECT_EQ(software.value_read(), request.value);
    EXPECT_EQ(software.data_read(), request.data);
    ASSERT_EQ(read(counted.handle, entry, hardware, 1), TS_MODEL_OK);
    EXPECT_EQ(hardware.value_read(), value);
    EXPECT_EQ(hardware.mask_read(), mask);
    EXPECT_EQ(hardware.data_read(), data);
    ASSERT_EQ(read(exact.handle, other, untouched_entry, 1), TS_MODEL_OK);
    EXPECT_EQ(untouched_entry.data_read(), (Bytes{1, 2, 3, 4, 5, 6}));

    constexpr u32 set_ucast = 0x20000008; // without parameters
    ASSERT_EQ(ts_model_set_hardware_action(0, counted.handle, entry, set_ucast, nullptr, 0), TS_MODEL_OK);
    Answer shorter;
    ASSERT_EQ(read(counted.handle, entry, shorter, 1), TS_MODEL_OK);
    EXPECT_EQ(shorter.action, set_ucast);
    EXPECT_EQ(shorter.spec.action_data.num_bytes, 0);
    EXPECT_EQ(shorter.spec.action_data.num_valid_bits, 0);
    EXPECT_EQ(shorter.value_read(), value) << "the key still differs";

    ASSERT_EQ(ts_model_remove_hardware_entry(0, counted.handle, entry), TS_MODEL_OK);
    Answer absent, present, again;
    EXPECT_EQ(read(counted.handle, entry, absent, 1), TS_MODEL_UNKNOWN_OBJECT);
    EXPECT_TRUE(absent.untouched());
    EXPECT_EQ(read(counted.handle, entry, present, 0), TS_MODEL_OK);
    EXPECT_EQ(ts_model_remove_hardware_entry(0, counted.handle, entry), TS_MODEL_UNKNOWN_OBJECT);
    EXPECT_EQ(ts_model_set_hardware_action(0, counted.handle, entry, counted.action, data.data(), 2),
              TS_MODEL_UNKNOWN_OBJECT);

    ASSERT_EQ(pipe_mgr_mat_ent_set_action(1, 0, counted.handle, entry, counted.action, &request.spec, 0),
              TS_MODEL_OK);
    ASSERT_EQ(read(counted.handle, entry, again, 1), TS_MODEL_OK);
    EXPECT_EQ(again.value_read(), request.value);
    EXPECT_EQ(again.data_read(), request.data);
}

TEST_F(Reading, TheHardwaresDefaultDiffersUntilItIsSetOrReset)
{
    const Bytes data{1, 2, 3, 4, 5, 6};
    const auto spoil = [&] {
        ASSERT_EQ(ts_model_set_hardware_action(0, exact.handle, TS_MODEL_DEFAULT_ENTRY, exact.action,
                                               data.data(), 6),
                  TS_MODEL_OK);
        Answer software, hardware;
        ASSERT_EQ(read_default(exact.handle, software, 0), TS_MODEL_OK);
        EXPECT_EQ(software.data_read(), Bytes(6, 0));
        ASSERT_EQ(read_default(exact.handle, hardware, 1), TS_MODEL_OK);
        EXPECT_EQ(hardware.data_read(), data);
    };
    spoil();
    ASSERT_EQ(pipe_mgr_mat_tbl_default_entry_reset(1, target, exact.handle, 0), TS_MODEL_OK);
    Answer reset;
    ASSERT_EQ(read_default(exact.handle, reset, 1), TS_MODEL_OK);
    EXPECT_EQ(reset.data_read(), Bytes(6, 0));

    ASSERT_EQ(ts_model_remove_hardware_entry(0, metered.handle, TS_MODEL_DEFAULT_ENTRY), TS_MODEL_OK);
    Answer absent;
    EXPECT_EQ(read_default(metered.handle, absent, 1), TS_MODEL_UNKNOWN_OBJECT);
    EXPECT_TRUE(absent.untouched());
    u8 scratch = 0;
    pipe_action_spec spec{};
    spec.action_kind = PIPE_ACTION_DATA;
    spec.action_data.data = &scratch;
    const u32 action = expected_default(*reflection::find_table(metered.handle)->row).handle;
    ASSERT_EQ(set_default(metered.handle, action, spec), TS_MODEL_OK);
    EXPECT_EQ(read_default(metered.handle, absent, 1), TS_MODEL_OK);
}

TEST_F(Reading, TheHardwareIsNotMadeToShowWhatItCannotHold)
{
    const pd_entry_hdl entry = must_add_port(1);
    const u8 bytes[6]{1, 2, 3, 4, 5, 6};
    const u32 table = exact.handle;
    EXPECT_EQ(ts_model_set_hardware_action(0, table, entry, exact.action, bytes, 5), TS_MODEL_BAD_ARGUMENT);
    EXPECT_EQ(ts_model_set_hardware_action(0, table, entry, exact.action, nullptr, 6), TS_MODEL_BAD_ARGUMENT);
    EXPECT_EQ(ts_model_set_hardware_action(0, table, entry, counted.action, bytes, 2), TS_MODEL_BAD_ARGUMENT);
    EXPECT_EQ(ts_model_set_hardware_action(0, table, entry + 1, exact.action, bytes, 6),
              TS_MODEL_UNKNOWN_OBJECT);
    EXPECT_EQ(ts_model_set_hardware_action(0, unknown_table, entry, exact.action, bytes, 6),
              TS_MODEL_UNKNOWN_OBJECT);
    EXPECT_EQ(
        ts_model_set_hardware_action(0, indirect.handle, TS_MODEL_DEFAULT_ENTRY, indirect.action, bytes, 5),
        TS_MODEL_BAD_ARGUMENT);
    EXPECT_EQ(ts_model_set_hardware_key(0, table, entry, bytes, bytes, 3), TS_MODEL_BAD_ARGUMENT);
    EXPECT_EQ(ts_model_set_hardware_key(0, table, entry, bytes, nullptr, 2), TS_MODEL_BAD_ARGUMENT);
    EXPECT_EQ(ts_model_set_hardware_key(0, table, TS_MODEL_DEFAULT_ENTRY, bytes, bytes, 2),
              TS_MODEL_BAD_ARGUMENT);
    EXPECT_EQ(ts_model_remove_hardware_entry(0, table, entry + 1), TS_MODEL_UNKNOWN_OBJECT);
    Answer answer;
    ASSERT_EQ(read(table, entry, answer, 1), TS_MODEL_OK);
    EXPECT_EQ(answer.data_read(), Bytes(6, 0));
    EXPECT_EQ(answer.value_read(), (Bytes{0, 1}));

    ASSERT_EQ(ts_model_remove_hardware_entry(0, table, entry), TS_MODEL_OK);
    ASSERT_EQ(pipe_mgr_mat_ent_del(1, 0, table, entry, 0), TS_MODEL_OK);
    EXPECT_EQ(read(table, must_add_port(1), answer, 1), TS_MODEL_OK) << "a new entry is in step";
}

// ---- Walks ----------------------------------------------------------------------------------------------

TEST_F(Reading, WalksOverNoneOneAndManyEntries)
{
    const auto first = [] {
        pd_entry_hdl handle = canary_word;
        EXPECT_EQ(pipe_mgr_get_first_entry_handle(1, exact.handle, target, &handle), TS_MODEL_OK);
        return handle;
    };
    EXPECT_EQ(first(), 0u);
    EXPECT_EQ(next_handles(exact.handle, 0, 3), (Handles{0, 0, 0}));
    must_add_port(1);
    EXPECT_EQ(first(), 1u);
    EXPECT_EQ(next_handles(exact.handle, 1, 2), (Handles{0, 0}));
    for (u16 port = 2; port <= 6; ++port)
        must_add_port(port);
    EXPECT_EQ(next_handles(exact.handle, 1, 3), (Handles{2, 3, 4}));
    EXPECT_EQ(next_handles(exact.handle, 4, 3), (Handles{5, 6, 0}));
    EXPECT_EQ(next_handles(exact.handle, 4, 0), Handles{});

    for (const pd_entry_hdl gone : {1, 3, 4})
        ASSERT_EQ(pipe_mgr_mat_ent_del(1, 0, exact.handle, gone, 0), TS_MODEL_OK);
    EXPECT_EQ(first(), 2u);
    EXPECT_EQ(next_handles(exact.handle, 3, 3), (Handles{5, 6, 0})) << "from a handle that is gone";
    EXPECT_EQ(next_handles(exact.handle, 1000, 1), Handles{0});
    EXPECT_EQ(next_handles(exact.handle, TS_MODEL_DEFAULT_ENTRY, 1), Handles{0});
    EXPECT_EQ(next_handles(exact.handle, 0xffffffff, 1), Handles{0});
    u32 count = 0;
    EXPECT_EQ(pipe_mgr_get_entry_count(1, target, exact.handle, 0, &count), TS_MODEL_OK);
    EXPECT_EQ(count, 3u);

    Handles next(2, canary_word);
    EXPECT_EQ(pipe_mgr_get_next_entry_handles(1, unknown_table, target, 0, 2, next.data()),
              TS_MODEL_UNKNOWN_OBJECT);
    EXPECT_EQ(next, Handles(2, canary_word));
}

TEST_F(Reading, ALargeTableIsWalkedInRunsAndReadFromEndToEnd)
{
    constexpr u32 entries = 200'000;
    for (u32 at = 0; at < entries; ++at) {
        Request request{lpm,
                        {1, static_cast<u8>(at >> 24), static_cast<u8>(at >> 16), static_cast<u8>(at >> 8),
                         static_cast<u8>(at)},
                        Bytes(5, 0xff)};
        ASSERT_EQ(must_add(lpm, request), at + 1);
    }
    u32 walked = 0;
    pd_entry_hdl after = 0;
    for (bool more = true; more;) {
        for (const pd_entry_hdl handle : next_handles(lpm.handle, after, 1000)) {
            more = handle != 0;
            if (!more)
                break;
            ASSERT_EQ(handle, ++walked);
            Answer answer;
            ASSERT_EQ(read(lpm.handle, handle, answer), TS_MODEL_OK);
            ASSERT_EQ(answer.value[4], static_cast<u8>(handle - 1));
            after = handle;
        }
    }
    EXPECT_EQ(walked, entries);
}

// ---- Placement data -------------------------------------------------------------------------------------

pd_status placement(u32 table, ts_model_plcmt_request &request, pd_word second = 0)
{
    return pipe_mgr_plcmt_mat_data_get(reinterpret_cast<pd_word>(&request), second, table);
}

using Blob = std::unique_ptr<void, decltype(&ts_model_free_plcmt_data)>;

Blob must_place(u32 table, pd_entry_hdl entry)
{
    ts_model_plcmt_request request{0, entry, nullptr};
    EXPECT_EQ(placement(table, request), TS_MODEL_OK);
    return {request.data, ts_model_free_plcmt_data};
}

TEST_F(Reading, PlacementDataHoldsTheSoftwaresEntryAsItWas)
{
    const pd_entry_hdl entry = must_add_port(0x123, {1, 2, 3, 4, 5, 6});
    ASSERT_EQ(ts_model_remove_hardware_entry(0, exact.handle, entry), TS_MODEL_OK);
    const Blob of_entry = must_place(exact.handle, entry);
    const Blob of_default = must_place(exact.handle, TS_MODEL_DEFAULT_ENTRY);
    ASSERT_EQ(pipe_mgr_mat_ent_del(1, 0, exact.handle, entry, 0), TS_MODEL_OK);

    Answer answer{0, 0};
    ASSERT_EQ(pipe_mgr_plcmt_mat_data_get_entry(of_entry.get(), &answer.match, &answer.spec, &answer.action),
              TS_MODEL_OK);
    EXPECT_EQ(answer.value_read(), (Bytes{1, 0x23}));
    EXPECT_EQ(answer.mask_read(), (Bytes{0xff, 0xff}));
    EXPECT_EQ(answer.data_read(), (Bytes{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(answer.match.num_valid_bits, 9);
    EXPECT_EQ(answer.spec.action_data.num_valid_bits, 33);
    EXPECT_EQ(answer.action, exact.action);
    Answer second{0, 0};
    ASSERT_EQ(
        pipe_mgr_plcmt_mat_data_get_entry(of_default.get(), &second.match, &second.spec, &second.action),
        TS_MODEL_OK);
    EXPECT_EQ(second.match.match_value, nullptr);
    EXPECT_EQ(second.match.num_bytes, 0);
    EXPECT_EQ(second.data_read(), Bytes(6, 0));

    Answer refused;
    EXPECT_EQ(pipe_mgr_plcmt_mat_data_get_entry(nullptr, &refused.match, &refused.spec, &refused.action),
              TS_MODEL_BAD_ARGUMENT);
    EXPECT_EQ(pipe_mgr_plcmt_mat_data_get_entry(of_entry.get(), nullptr, &refused.spec, &refused.action),
              TS_MODEL_BAD_ARGUMENT);
    EXPECT_EQ(pipe_mgr_plcmt_mat_data_get_entry(of_entry.get(), &refused.match, &refused.spec, nullptr),
              TS_MODEL_BAD_ARGUMENT);
    EXPECT_TRUE(refused.untouched());
    ts_model_free_plcmt_data(nullptr);
}

TEST_F(Reading, PlacementDataIsAskedForByARequest)
{
    const pd_entry_hdl entry = must_add_port(1);
    void *const nothing = &lines;
    ts_model_plcmt_request request{0, entry + 1, nothing};
    EXPECT_EQ(placement(exact.handle, request), TS_MODEL_UNKNOWN_OBJECT);
    request.entry = entry;
    EXPECT_EQ(placement(exact.handle, request, 1), TS_MODEL_BAD_ARGUMENT);
    EXPECT_EQ(placement(unknown_table, request), TS_MODEL_UNKNOWN_OBJECT);
    EXPECT_EQ(pipe_mgr_plcmt_mat_data_get(0, 0, exact.handle), TS_MODEL_BAD_ARGUMENT);
    request.device_id = 1;
    EXPECT_EQ(placement(exact.handle, request), TS_MODEL_UNKNOWN_OBJECT);
    EXPECT_EQ(request.data, nothing);
}

// ---- Properties -----------------------------------------------------------------------------------------

TEST_F(Reading, APropertyIsKnownOnceItIsSet)
{
    u32 value = canary_word;
    u32 second = canary_word;
    const auto get = [&](u32 device, u32 table, u32 property) {
        return pipe_mgr_tbl_get_property(1, device, table, property, &value, &second);
    };
    ASSERT_EQ(pipe_mgr_tbl_set_property(1, 0, exact.handle, 3, 10, 11, 0), TS_MODEL_OK);
    EXPECT_EQ(get(0, exact.handle, 4), TS_MODEL_UNKNOWN_OBJECT);
    EXPECT_EQ(get(0, lpm.handle, 3), TS_MODEL_UNKNOWN_OBJECT);
    EXPECT_EQ(get(1, exact.handle, 3), TS_MODEL_UNKNOWN_OBJECT);
    EXPECT_EQ(get(0, unknown_table, 3), TS_MODEL_UNKNOWN_OBJECT);
    EXPECT_EQ(pipe_mgr_tbl_get_property(1, 0, exact.handle, 3, &value, nullptr), TS_MODEL_BAD_ARGUMENT);
    EXPECT_EQ(value, canary_word);
    EXPECT_EQ(second, canary_word);
    EXPECT_EQ(get(0, exact.handle, 3), TS_MODEL_OK);
    EXPECT_EQ(value, 10u);
    EXPECT_EQ(second, 11u);
    ASSERT_EQ(pipe_mgr_tbl_set_property(1, 0, exact.handle, 3, 20, 21, 0), TS_MODEL_OK);
    EXPECT_EQ(get(0, exact.handle, 3), TS_MODEL_OK);
    EXPECT_EQ(value, 20u);
    EXPECT_EQ(second, 21u);
    EXPECT_EQ(pipe_mgr_tbl_set_property(1, 0, unknown_table, 3, 1, 1, 0), TS_MODEL_UNKNOWN_OBJECT);
}

// ---- Update callbacks -----------------------------------------------------------------------------------

std::string hex(const u8 *bytes, u32 count)
{
    std::string text;
    for (u32 at = 0; at < count; ++at) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", bytes[at]);
        text += digits;
    }
    return text;
}

// Notes "table kind entry action=... key data".
void note(u32 device_id, u32 table, const void *update, pd_word cookie)
{
    const auto &told = *static_cast<const ts_model_update *>(update);
    const ts_model_entry &contents = told.contents;
    const std::string handle = told.entry == TS_MODEL_DEFAULT_ENTRY ? "default" : std::to_string(told.entry);
    char text[200];
    std::snprintf(text, sizeof text, "%u %#x %u %s %#x [%s] [%s]", device_id, table, told.kind,
                  handle.c_str(), told.action, hex(contents.value, contents.key_bytes).c_str(),
                  hex(contents.data, contents.data_bytes).c_str());
    reinterpret_cast<Lines *>(cookie)->push_back(text);
}

pd_status listen(const Table &table, pd_mat_update_cb callback, void *cookie, pd_sess_hdl sess = 1)
{
    return pipe_register_mat_update_cb(sess, 0, table.handle, callback, reinterpret_cast<pd_word>(cookie));
}

// Changes `exact` by every operation that can change a table, and in ways that are refused.
void change_in_every_way()
{
    Request request{exact, {1, 2}, {0xff, 0xff}, {0, 0, 0, 0, 0, 1}};
    const pd_entry_hdl entry = must_add(exact, request);
    pd_entry_hdl none = 0;
    pipe_mgr_mat_ent_add(1, target, exact.handle, &request.match, exact.action, &request.spec, 0, 0, &none);
    request.data[5] = 2;
    pipe_mgr_mat_ent_set_action(1, 0, exact.handle, entry, exact.action, &request.spec, 0);
    pipe_mgr_mat_ent_set_action(1, 0, exact.handle, entry + 1, exact.action, &request.spec, 0);
    request.data[5] = 3;
    pipe_mgr_mat_ent_set_action_by_match_spec(1, target, exact.handle, &request.match, exact.action,
                                              &request.spec, 0);
    pipe_mgr_mat_ent_del(1, 0, exact.handle, entry, 0);
    pipe_mgr_mat_ent_del(1, 0, exact.handle, entry, 0);
    must_add(exact, request);
    pipe_mgr_mat_ent_del_by_match_spec(1, target, exact.handle, &request.match, 0);
    pipe_mgr_mat_default_entry_set(1, target, exact.handle, exact.action, &request.spec, 0, &none);
    pipe_mgr_mat_tbl_default_entry_reset(1, target, exact.handle, 0);
}

TEST_F(Reading, EveryChangeIsToldOnceAndARefusedOneNever)
{
    Lines heard;
    ASSERT_EQ(listen(exact, note, &heard), TS_MODEL_OK);
    change_in_every_way();
    EXPECT_EQ(heard, (Lines{
                         "0 0x1000001 1 1 0x20000000 [0102] [000000000001]",
                         "0 0x1000001 2 1 0x20000000 [0102] [000000000002]",
                         "0 0x1000001 2 1 0x20000000 [0102] [000000000003]",
                         "0 0x1000001 3 1 0x20000000 [0102] [000000000003]",
                         "0 0x1000001 1 2 0x20000000 [0102] [000000000003]",
                         "0 0x1000001 3 2 0x20000000 [0102] [000000000003]",
                         "0 0x1000001 5 default 0x20000000 [] [000000000000]",
                     }));

    Request of_indirect{indirect, {0, 1}, {0xff, 0xff}};
    of_indirect.spec = {};
    of_indirect.spec.action_kind = PIPE_ACTION_MEMBER;
    of_indirect.spec.member_hdl = 1;
    fill_profile(1, 0);
    ASSERT_EQ(listen(indirect, note, &heard), TS_MODEL_OK);
    heard.clear();
    ASSERT_EQ(set_default(indirect.handle, indirect.action, of_indirect.spec), TS_MODEL_OK);
    ASSERT_EQ(pipe_mgr_mat_ent_set_action(1, 0, indirect.handle, TS_MODEL_DEFAULT_ENTRY, indirect.action,
                                          &of_indirect.spec, 0),
              TS_MODEL_OK);
    EXPECT_EQ(heard, Lines(2, "0 0x1000047 4 default 0x200000bd [] []"));

    heard.clear();
    for (const char *operation : {"pipe_mgr_mat_ent_add", "pipe_mgr_mat_tbl_default_entry_reset"})
        ts_model_fail_operation(operation, 77);
    Request request{exact, {3, 4}, {0xff, 0xff}};
    pd_entry_hdl entry = 0;
    EXPECT_EQ(pipe_mgr_mat_ent_add(1, target, exact.handle, &request.match, exact.action, &request.spec, 0, 0,
                                   &entry),
              77u);
    EXPECT_EQ(pipe_mgr_mat_tbl_default_entry_reset(1, target, exact.handle, 0), 77u);
    EXPECT_EQ(heard, Lines{}) << "an injected failure";
}

TEST_F(Reading, CallbacksOfATableRunInOrderUntilTheirSessionTakesThemBack)
{
    Lines order;
    const pd_mat_update_cb first = [](u32, u32, const void *, pd_word cookie) {
        reinterpret_cast<Lines *>(cookie)->push_back("first");
    };
    const pd_mat_update_cb second = [](u32, u32, const void *, pd_word cookie) {
        reinterpret_cast<Lines *>(cookie)->push_back("second");
    };
    listen(exact, first, &order, 1);
    listen(exact, second, &order, 2);
    listen(exact, first, &order, 1);
    listen(lpm, second, &order, 1);
    must_add_port(1);
    EXPECT_EQ(order, (Lines{"first", "second", "first"}));
    order.clear();
    listen(exact, nullptr, nullptr, 1);
    must_add_port(2);
    EXPECT_EQ(order, Lines{"second"});
    EXPECT_EQ(pipe_register_mat_update_cb(1, 0, unknown_table, first, 0), TS_MODEL_UNKNOWN_OBJECT);
    EXPECT_EQ(pipe_register_mat_update_cb(1, 256, exact.handle, first, 0), TS_MODEL_UNKNOWN_OBJECT);
}

TEST_F(Reading, ACallbackRunsBehindTheTraceLineAndMayCallTheDriver)
{
    const pd_mat_update_cb modify_and_leave = [](u32 device_id, u32 table, const void *update, pd_word) {
        const auto &told = *static_cast<const ts_model_update *>(update);
        Answer answer;
        EXPECT_EQ(read(table, told.entry, answer), TS_MODEL_OK);
        pipe_register_mat_update_cb(1, device_id, table, nullptr, 0);
        EXPECT_EQ(pipe_mgr_mat_ent_del(1, device_id, table, told.entry, 0), TS_MODEL_OK);
    };
    listen(exact, modify_and_leave, nullptr);
    trace();
    must_add_port(1);
    Lines operations;
    for (const std::string &line : lines)
        operations.push_back(line.substr(0, line.find('(')));
    EXPECT_EQ(operations, (Lines{"pipe_mgr_mat_ent_add", "pipe_mgr_get_entry", "pipe_register_mat_update_cb",
                                 "pipe_mgr_mat_ent_del"}));
    EXPECT_EQ(ts_model_entry_count(0, exact.handle), 0u);
}

TEST_F(Reading, ThreadsMayRegisterReadAndChangeOneTable)
{
    constexpr u16 thread_count = 4;
    constexpr u16 per_thread = 500;
    static std::atomic<u32> told[thread_count];
    for (std::atomic<u32> &count : told)
        count = 0;
    const pd_mat_update_cb count_up = [](u32, u32, const void *update, pd_word cookie) {
        if (static_cast<const ts_model_update *>(update)->kind == TS_MODEL_ENTRY_ADDED)
            ++told[cookie];
    };
    std::vector<std::thread> threads;
    for (u16 thread = 0; thread < thread_count; ++thread)
        threads.emplace_back([=] {
            pipe_register_mat_update_cb(thread, 0, exact.handle, count_up, thread);
            for (u16 at = 0; at < per_thread; ++at) {
                const pd_entry_hdl entry = must_add_port(static_cast<u16>(thread * per_thread + at));
                ts_model_remove_hardware_entry(0, exact.handle, entry);
                Answer answer;
                EXPECT_EQ(read(exact.handle, entry, answer), TS_MODEL_OK);
                next_handles(exact.handle, entry, 3);
                pipe_mgr_tbl_set_property(1, 0, exact.handle, thread, at, 0, 0);
                pipe_mgr_mat_tbl_default_entry_reset(1, target, exact.handle, 0);
            }
        });
    for (std::thread &thread : threads)
        thread.join();
    for (const std::atomic<u32> &count : told) {
        EXPECT_GE(count, per_thread);
        EXPECT_LE(count, thread_count * per_thread);
    }
    const u32 before = told[0];
    must_add_port(0xffff);
    EXPECT_EQ(told[0], before + 1);
}

// ---- Trace, faults and reset ----------------------------------------------------------------------------

struct Operation {
    const char *name;
    std::function<pd_status()> call;
};

// One call of each operation, all of them on the table `counted`, whose first entry is 1.
struct Operations {
    Answer answer;
    u8 scratch = 0;
    pipe_action_spec spec{};
    u32 words[2]{canary_word, canary_word};
    ts_model_plcmt_request request{0, 1, nullptr};
    Blob blob{nullptr, ts_model_free_plcmt_data};

    Operations()
    {
        spec.action_kind = PIPE_ACTION_DATA;
        spec.action_data.data = &scratch;
    }

    std::vector<Operation> all()
    {
        constexpr u32 on_miss = 0x2000000b;
        const u32 table = counted.handle;
        return {
            {"pipe_mgr_mat_default_entry_set",
             [=, this] {
                 return pipe_mgr_mat_default_entry_set(1, target, table, on_miss, &spec, 0, words);
             }},
            {"pipe_mgr_table_get_default_entry_handle",
             [=, this] { return pipe_mgr_table_get_default_entry_handle(1, target, table, words); }},
            {"pipe_mgr_table_get_default_entry",
             [=, this] {
                 return pipe_mgr_table_get_default_entry(1, target, table, &answer.spec, &answer.action, 1, 1,
                                                         0);
             }},
            {"pipe_mgr_mat_tbl_default_entry_reset",
             [=] { return pipe_mgr_mat_tbl_default_entry_reset(1, target, table, 0); }},
            {"pipe_mgr_get_entry",
             [=, this] {
                 answer.spec.action_data.num_bytes = 28; // the default has left its own length
                 return pipe_mgr_get_entry(1, table, target, 1, &answer.match, &answer.spec, &answer.action,
                                           0, 1, 0);
             }},
            {"pipe_mgr_get_entry_count",
             [=, this] { return pipe_mgr_get_entry_count(1, target, table, 0, words); }},
            {"pipe_mgr_get_first_entry_handle",
             [=, this] { return pipe_mgr_get_first_entry_handle(1, table, target, words); }},
            {"pipe_mgr_get_next_entry_handles",
             [=, this] { return pipe_mgr_get_next_entry_handles(1, table, target, 0, 2, words); }},
            {"pipe_mgr_tbl_set_property", [=] { return pipe_mgr_tbl_set_property(1, 0, table, 3, 4, 5, 0); }},
            {"pipe_mgr_tbl_get_property",
             [=, this] { return pipe_mgr_tbl_get_property(1, 0, table, 3, words, words + 1); }},
            {"pipe_register_mat_update_cb",
             [=] { return pipe_register_mat_update_cb(1, 0, table, nullptr, 6); }},
            {"pipe_mgr_plcmt_mat_data_get",
             [=, this] {
                 const pd_status status = placement(table, request);
                 blob.reset(request.data);
                 return status;
             }},
            {"pipe_mgr_plcmt_mat_data_get_entry",
             [this] {
                 return pipe_mgr_plcmt_mat_data_get_entry(blob.get(), &answer.match, &answer.spec,
                                                          &answer.action);
             }},
        };
    }
};

void add_first_entry()
{
    Request request{counted, Bytes(8, 1), Bytes(8, 0xff), {1, 0x23}};
    request.match.priority = 7;
    ASSERT_EQ(must_add(counted, request.attach(counter)), 1u);
}

TEST_F(Reading, TraceShowsTheArgumentsAndWhatCameBack)
{
    add_first_entry();
    trace();
    Operations operations;
    for (const Operation &operation : operations.all())
        EXPECT_EQ(operation.call(), TS_MODEL_OK) << operation.name;
    pipe_mgr_get_entry(1, counted.handle, target, 9, nullptr, nullptr, nullptr, 1, 1, 0);
    pipe_mgr_plcmt_mat_data_get_entry(nullptr, nullptr, nullptr, nullptr);
    pipe_mgr_plcmt_mat_data_get(0, 5, counted.handle);

    const std::string table = "table=0x1000009 l2DmacClassify";
    const std::string on_target = "sess=1, dev=0, pipe=0xffff, " + table;
    const std::string of_table = "sess=1, " + table + ", dev=0, pipe=0xffff";
    const std::string on_miss = "action=0x2000000b onMiss, spec={kind=1 bits=0 bytes=0 data=-";
    const std::string attached = " resources=[handle=0x4000001 index=0 tag=1]}";
    const std::string contents =
        "match={value=0101010101010101 mask=ffffffffffffffff partition=0 priority=7 bits=57 bytes=8}, "
        "action=0x2000000a classifyL2ControlFrame, spec={kind=1 bits=9 bytes=2 data=0123" +
        attached;
    const std::string default_entry = "entry=" + std::to_string(TS_MODEL_DEFAULT_ENTRY);
    const Lines expected{
        "pipe_mgr_mat_default_entry_set(" + on_target + ", " + on_miss + "}, flags=0) = 0, " + default_entry,
        "pipe_mgr_table_get_default_entry_handle(" + on_target + ") = 0, " + default_entry,
        "pipe_mgr_table_get_default_entry(" + on_target + ", from_hw=1, resources=1, flags=0) = 0, " +
            on_miss + attached,
        "pipe_mgr_mat_tbl_default_entry_reset(" + on_target + ", flags=0) = 0",
        "pipe_mgr_get_entry(" + of_table + ", entry=1, from_hw=0, resources=1, flags=0) = 0, " + contents,
        "pipe_mgr_get_entry_count(" + on_target + ", from_hw=0) = 0, count=1",
        "pipe_mgr_get_first_entry_handle(" + of_table + ") = 0, first=1",
        "pipe_mgr_get_next_entry_handles(" + of_table + ", after=0, count=2) = 0, next=[1 0]",
        "pipe_mgr_tbl_set_property(sess=1, dev=0, " + table +
            ", property=3, value=4, second_value=5, flags=0) = 0",
        "pipe_mgr_tbl_get_property(sess=1, dev=0, " + table + ", property=3) = 0, value=4, second_value=5",
        "pipe_register_mat_update_cb(sess=1, dev=0, " + table + ", callback=null, cookie=0x6) = 0",
        "pipe_mgr_plcmt_mat_data_get(request={dev=0 entry=1}, second=0, " + table + ") = 0",
        "pipe_mgr_plcmt_mat_data_get_entry(" + table + ", entry=1) = 0, " + contents,
        "pipe_mgr_get_entry(" + of_table + ", entry=9, from_hw=1, resources=1, flags=0) = 4",
        "pipe_mgr_plcmt_mat_data_get_entry(plcmt_data=null) = 3",
        "pipe_mgr_plcmt_mat_data_get(request=null, second=5, " + table + ") = 3",
    };
    EXPECT_EQ(lines, expected);
}

TEST_F(Reading, AnOperationThatIsMadeToFailHasNoEffect)
{
    add_first_entry();
    Operations operations;
    for (const Operation &operation : operations.all()) {
        ts_model_fail_operation(operation.name, 77);
        EXPECT_EQ(operation.call(), 77u) << operation.name;
        ts_model_fail_operation(operation.name, 0);
        EXPECT_TRUE(operations.answer.untouched()) << operation.name;
        EXPECT_EQ(operations.words[0], canary_word) << operation.name;
        EXPECT_EQ(operations.request.data, nullptr) << operation.name;
    }
    u32 value = 0;
    EXPECT_EQ(pipe_mgr_tbl_get_property(1, 0, counted.handle, 3, &value, &value), TS_MODEL_UNKNOWN_OBJECT);
}

TEST_F(Reading, ResetLeavesOnlyTheProgramsDefaults)
{
    Lines heard;
    add_first_entry();
    listen(counted, note, &heard);
    pipe_mgr_tbl_set_property(1, 0, counted.handle, 3, 4, 5, 0);
    constexpr u32 on_miss = 0x2000000b;
    ASSERT_EQ(ts_model_set_hardware_action(0, counted.handle, TS_MODEL_DEFAULT_ENTRY, on_miss, nullptr, 0),
              TS_MODEL_OK);
    ASSERT_EQ(ts_model_remove_hardware_entry(0, counted.handle, 1), TS_MODEL_OK);
    ts_model_reset();
    u32 value = 0;
    EXPECT_EQ(pipe_mgr_tbl_get_property(1, 0, counted.handle, 3, &value, &value), TS_MODEL_UNKNOWN_OBJECT);
    add_first_entry();
    EXPECT_EQ(heard, Lines{});
    Answer answer;
    EXPECT_EQ(read(counted.handle, 1, answer, 1), TS_MODEL_OK) << "both copies of a new first entry agree";
}

} // namespace
