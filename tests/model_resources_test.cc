// The model driver's counters, meters, registers and idle time.
#include <gtest/gtest.h>

#include <cstring>
#include <thread>

#include "model.h"
#include "model_tables.h"
#include "pipe_mgr.h"
#include "pipe_stful.h"

namespace {

constexpr Table counted{0x1000009, 57, 8, 0x20000008, 0}; // l2DmacClassify, setUcast
constexpr Table policy{0x1000070, 6, 2, 0x20000145, 4};   // pdpPolicy, setPdpClassCount
constexpr u32 class_count = 0x4000005, storm_meter = 0x5000001, pdp_meter = 0x5000002, flags = 0x6000002;
constexpr pd_dev_target target{0, PIPE_ALL_PIPES};
constexpr pd_entry_hdl on_miss = TS_MODEL_DEFAULT_ENTRY;

pd_entry_hdl must_add(const Table &table, u32 resource, u32 index = 0, u32 ttl = 0)
{
    static u8 serial = 0;
    Bytes value(table.bytes), mask(table.bytes, 0xff), data(table.data_bytes + 1u);
    value.back() = ++serial;
    pipe_match_spec match{value.data(), mask.data(), 0, 0, table.bits, table.bytes, 0};
    const pipe_action_data image{0, table.data_bytes, data.data()};
    const pipe_res_spec attached{resource, index, {}, PIPE_RES_ATTACH};
    pipe_action_spec action{PIPE_ACTION_DATA, resource != 0, image, 0, 0, {attached}};
    pd_entry_hdl entry = 0;
    pipe_mgr_mat_ent_add(1, target, table.handle, &match, table.action, &action, ttl, 0, &entry);
    return entry;
}

struct Resources : testing::Test {
    Resources() { ts_model_reset(); }
    ~Resources() override { ts_model_reset(); }
};

TEST_F(Resources, HitsCountInTheHardwareUntilASyncOrAWrite)
{
    using Counts = std::pair<u64, u64>;
    pipe_stat_data data{}, *place = &data;
    for (const bool direct : {true, false}) {
        const Table &table = direct ? counted : policy;
        const u32 entry = direct ? must_add(table, 0) : must_add(table, class_count, 0xffff);
        const u32 counter = direct ? table.handle : class_count;
        u32 cell = direct ? entry : 0xffff;
        const auto counts = [&] {
            direct ? pipe_mgr_mat_ent_direct_stat_query(1, 0, counter, cell, &data)
                   : pipe_mgr_stat_ent_query(1, target, counter, &cell, 1, &place);
            return Counts{data.first_count, data.second_count};
        };
        const auto sync = direct ? pipe_mgr_direct_stat_ent_database_sync : pipe_mgr_stat_ent_database_sync;
        const auto sync_all = direct ? pipe_mgr_direct_stat_database_sync : pipe_mgr_stat_database_sync;
        EXPECT_EQ(ts_model_count(0, table.handle, entry, 3, 200), 0u);
        EXPECT_EQ(counts(), Counts(0, 0));
        EXPECT_EQ(sync(1, target, counter, cell), 0u);
        EXPECT_EQ(ts_model_count(0, table.handle, entry, 1, u64{1} << 40), 0u);
        EXPECT_EQ(counts(), Counts(3, 200));
        EXPECT_EQ(sync_all(1, target, counter, nullptr, 0), 0u);
        EXPECT_EQ(counts(), Counts(4, 200 + (u64{1} << 40)));
        data = {7, 5}; // second, first
        direct ? pipe_mgr_mat_ent_direct_stat_set(1, 0, counter, cell, &data)
               : pipe_mgr_stat_ent_set(1, target, counter, cell, &data);
        EXPECT_EQ(sync(1, target, counter, cell), 0u);
        EXPECT_EQ(counts(), Counts(5, 7)) << "in both copies";
        EXPECT_EQ(pipe_mgr_mat_ent_del(1, 0, table.handle, entry, 0), 0u);
        EXPECT_EQ(sync(1, target, counter, cell), direct ? TS_MODEL_UNKNOWN_OBJECT : TS_MODEL_OK);
    }
    ts_model_hit hit{};
    const Bytes key(counted.bytes, 0xee);
    EXPECT_EQ(ts_model_counted_lookup(0, counted.handle, key.data(), counted.bytes, 0, 1, 64, &hit), 0u);
    pipe_mgr_direct_stat_database_sync(1, target, counted.handle, nullptr, 0);
    EXPECT_EQ(pipe_mgr_mat_ent_direct_stat_query(1, 0, counted.handle, on_miss, &data), 0u);
    EXPECT_EQ(data.second_count, 64u) << "of the miss";
}

TEST_F(Resources, SyncsAreToldOnTheThreadThatWasAskedFor)
{
    using Told = std::vector<std::pair<u32, std::thread::id>>;
    const auto hear = [](u32 device, pd_word cookie) {
        reinterpret_cast<Told *>(cookie)->emplace_back(device, std::this_thread::get_id());
        EXPECT_EQ(ts_model_count(device, counted.handle, on_miss, 1, 1), 0u) << "needs the device's lock";
    };
    for (const bool own_thread : {false, true, false}) {
        Told told;
        const auto cookie = reinterpret_cast<pd_word>(&told);
        ts_model_set_sync_thread(own_thread);
        for (const auto sync : {pipe_mgr_direct_stat_database_sync, pipe_stful_direct_database_sync})
            EXPECT_EQ(sync(1, {3, PIPE_ALL_PIPES}, counted.handle, hear, cookie), 0u);
        EXPECT_EQ(pipe_stful_database_sync(1, target, 0x6000003, hear, cookie), TS_MODEL_UNKNOWN_OBJECT);
        ts_model_wait_for_syncs();
        ASSERT_EQ(told.size(), 2u);
        EXPECT_EQ(told[1].first, 3u);
        EXPECT_EQ(told[1].second != std::this_thread::get_id(), own_thread);
    }
}

TEST_F(Resources, RegistersHaveAValuePerPipeAndTwoCopies)
{
    pipe_stful_value one{{1, 0xa5}}, values[8];
    pipe_stful_query queries[]{{4, values}, {4, values + 4}};
    u32 count = 0;
    const auto read = [&](u32 pipe, u32 from_hw) {
        queries[0].count = 4;
        EXPECT_EQ(pipe_stful_ent_query_range(1, {0, pipe}, flags, 4095, 2, queries, &count, from_hw), 0u);
        EXPECT_EQ(count, 1u) << "4095 is the last one";
        Bytes read;
        for (u32 at = 0; at < queries[0].count; ++at)
            read.push_back(values[at].bytes[0] | values[at].bytes[1]);
        return read;
    };
    EXPECT_EQ(pipe_stful_ent_set(1, {0, 1}, flags, 4095, &one, 0), 0u);
    EXPECT_EQ(ts_model_set_hardware_register(0, flags, 4095, 3, one.bytes + 1, 1), 0u);
    EXPECT_EQ(read(PIPE_ALL_PIPES, 0), (Bytes{0, 1, 0, 0}));
    EXPECT_EQ(read(PIPE_ALL_PIPES, 1), (Bytes{0, 1, 0, 0xa5}));
    EXPECT_EQ(pipe_stful_database_sync(1, target, flags, nullptr, 0), 0u);
    EXPECT_EQ(read(3, 0), Bytes{0xa5});
    EXPECT_EQ(pipe_stful_table_reset(1, target, flags, &one), 0u);
    EXPECT_EQ(pipe_stful_table_reset_range(1, {0, 2}, flags, 4094, 2, nullptr), 0u);
    EXPECT_EQ(read(PIPE_ALL_PIPES, 1), (Bytes{1, 1, 0, 1}));
    EXPECT_EQ(pipe_stful_table_reset_range(1, target, flags, 4095, 2, &one), TS_MODEL_UNKNOWN_OBJECT);
    EXPECT_EQ(pipe_stful_ent_set(1, {0, TS_MODEL_PIPES}, flags, 0, &one, 0), TS_MODEL_UNKNOWN_OBJECT);
}

TEST_F(Resources, EntriesBecomeIdleOnceAndActiveByAHit)
{
    const auto hear = [](u32 device, u32 table, pd_entry_hdl entry, pd_word cookie) {
        u32 state = 1; // reading it needs the device's lock
        pipe_mgr_idle_time_get_hit_state(1, device, table, entry, &state);
        reinterpret_cast<Lines *>(cookie)->push_back(std::to_string(entry) + (state == 0 ? " idle" : ""));
    };
    Lines told;
    const u32 table = lpm.handle, first = must_add(lpm, 0, 0, 5), second = must_add(lpm, 0);
    pipe_mgr_idle_register_tmo_cb(1, 0, table, hear, reinterpret_cast<pd_word>(&told));
    ts_model_advance_clock(0, 9); // still off
    pipe_mgr_idle_tmo_set_enable(1, 0, table, 1);
    pipe_mgr_mat_ent_set_idle_ttl(1, 0, table, second, 6, 0, 0);
    pipe_mgr_mat_ent_del(1, 0, table, must_add(lpm, 0, 0, 1), 0);
    ts_model_advance_clock(0, 4);
    ts_model_count(0, table, first, 1, 64);
    ts_model_advance_clock(0, 4);
    ts_model_advance_clock(0, 100);
    pipe_mgr_mat_ent_reset_idle_ttl(1, 0, table, first);
    pipe_mgr_idle_time_update_hit_state(1, 0, table, second, 1);
    ts_model_advance_clock(0, 6);
    EXPECT_EQ(told, (Lines{"2 idle", "1 idle", "1 idle", "2 idle"})) << "once each time, by handle";
}

TEST_F(Resources, WhatWasSetIsReadBack)
{
    const u32 entry = must_add(metered, storm_meter);
    u32 words[4]{};
    pipe_wred_spec wred{{1, 2, 3, 4}};
    pipe_meter_spec spec{1, 0, 8, 9, 0, ~u64{0}, 7}, read{};
    pipe_res_spec both[]{{storm_meter, 77, {spec}, 1}, {metered.handle, 77, {}, 1}};
    both[1].res_data.stful = {{0xab}};
    pipe_stful_value values[4]{};
    pipe_stful_query query{4, values};
    const auto words_of = [](const pipe_meter_spec &m) {
        return std::vector<u64>{m.meter_type, m.committed_unit, m.committed_rate, m.committed_burst,
                                m.peak_unit,  m.peak_rate,      m.peak_burst};
    };
    EXPECT_EQ(pipe_mgr_mat_ent_set_resource(1, 0, metered.handle, entry, both, 2, 0), 0u);
    EXPECT_EQ(pipe_mgr_wred_ent_set(1, target, 0x7000001, 2, &wred, 0), 0u);
    EXPECT_EQ(pipe_stful_direct_ent_query(1, 0, metered.handle, entry, &query, 1), 0u);
    EXPECT_EQ(values[3].bytes[0], 0xab);
    EXPECT_EQ(ts_model_get_wred(0, 0x7000001, 2, words), 0u);
    EXPECT_EQ(words[3], 4u);
    EXPECT_EQ(pipe_mgr_meter_read_entry(1, target, metered.handle, entry, &read), 0u);
    EXPECT_EQ(words_of(read), words_of(spec));
    ts_model_entry contents{};
    EXPECT_EQ(ts_model_get_entry(0, metered.handle, entry, &contents), 0u);
    EXPECT_EQ(contents.res_index, 0u) << "a direct meter has none";
    for (const u32 tag : {PIPE_RES_KEEP, PIPE_RES_DETACH}) {
        both[0].res_tag = tag;
        EXPECT_EQ(pipe_mgr_mat_ent_set_resource(1, 0, metered.handle, entry, both, 1, 0), 0u);
        EXPECT_EQ(pipe_mgr_meter_read_entry(1, target, metered.handle, entry, &read) == 0,
                  tag == PIPE_RES_KEEP);
    }
    both[0].res_handle = pdp_meter;
    EXPECT_EQ(pipe_mgr_mat_ent_set_resource(1, 0, metered.handle, entry, both, 1, 0), TS_MODEL_BAD_ARGUMENT);
}

} // namespace
