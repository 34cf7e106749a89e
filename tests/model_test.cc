// The model driver by itself: what it takes, what it refuses, what it finds, and what it tells of its calls.
#include "model.h"

#include <cjson/cJSON.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "bf_drv.h"
#include "bf_sys.h"
#include "model_tables.h"
#include "pd_ms.h"
#include "pipe_mgr.h"

namespace {

constexpr Table ternary{0x1000009, 57, 8, 0x20000008, 0}; // l2DmacClassify, setUcast
constexpr pd_dev_target target{0, PIPE_ALL_PIPES};

// The records of one entry together with the images that they point at.
struct Request {
    Request(const Table &table, Bytes key, Bytes key_mask, u32 priority = 0, u32 partition = 0)
        : value{std::move(key)}, mask{std::move(key_mask)}, data(std::max<u16>(table.data_bytes, 1))
    {
        match = {value.data(), mask.data(), partition, priority, table.bits, table.bytes, 0};
        spec.action_kind = PIPE_ACTION_DATA;
        spec.action_data = {0, table.data_bytes, data.data()};
    }

    Bytes value;
    Bytes mask;
    Bytes data;
    pipe_match_spec match{};
    pipe_action_spec spec{};
};

Request exact_request(u16 port)
{
    return {exact, {static_cast<u8>(port >> 8), static_cast<u8>(port)}, {0xff, 0xff}};
}

pd_status add(const Table &table, Request &request, pd_entry_hdl *entry)
{
    return pipe_mgr_mat_ent_add(1, target, table.handle, &request.match, table.action, &request.spec, 0, 0,
                                entry);
}

// The handle of a new entry, 0 when it was refused.
pd_entry_hdl must_add(const Table &table, Request request)
{
    pd_entry_hdl entry = 0;
    EXPECT_EQ(add(table, request, &entry), TS_MODEL_OK);
    return entry;
}

ts_model_hit look_up(const Table &table, const Bytes &key, u32 partition = 0)
{
    ts_model_hit hit{};
    EXPECT_EQ(ts_model_lookup(0, table.handle, key.data(), static_cast<u32>(key.size()), partition, &hit),
              TS_MODEL_OK);
    return hit;
}

class Model : public testing::Test {
protected:
    Model() { ts_model_reset(); }
    ~Model() override { ts_model_reset(); }

    void trace()
    {
        ts_model_set_trace(
            [](const char *line, void *cookie) { static_cast<Lines *>(cookie)->push_back(line); }, &lines);
    }

    Lines lines;
};

// ---- Entries --------------------------------------------------------------------------------------------

TEST_F(Model, HandlesAscendAndAreNeverUsedAgain)
{
    EXPECT_EQ(must_add(exact, exact_request(1)), 1u);
    EXPECT_EQ(must_add(exact, exact_request(2)), 2u);
    EXPECT_EQ(pipe_mgr_mat_ent_del(1, 0, exact.handle, 2, 0), TS_MODEL_OK);
    EXPECT_EQ(pipe_mgr_mat_ent_del(1, 0, exact.handle, 2, 0), TS_MODEL_UNKNOWN_OBJECT);
    EXPECT_EQ(must_add(exact, exact_request(2)), 3u);
    EXPECT_EQ(ts_model_next_entry(0, exact.handle, 1), 3u);
    EXPECT_EQ(ts_model_next_entry(0, exact.handle, 3), 0u);
    EXPECT_EQ(ts_model_entry_count(0, exact.handle), 2u);
    EXPECT_EQ(ts_model_entry_count(1, exact.handle), 0u);
}

TEST_F(Model, AnEntryIsReadBackAsItWasGiven)
{
    Request request{lpm, {7, 10, 0xff, 0xff, 0xff}, {0xff, 0xff, 0xff, 0, 0}, 16};
    request.data = {1, 2, 3, 4};
    request.spec.action_data.data = request.data.data();
    pd_entry_hdl entry = 0;
    ASSERT_EQ(
        pipe_mgr_mat_ent_add(1, target, lpm.handle, &request.match, lpm.action, &request.spec, 99, 0, &entry),
        TS_MODEL_OK);

    ts_model_entry read{};
    ASSERT_EQ(ts_model_get_entry(0, lpm.handle, entry, &read), TS_MODEL_OK);
    EXPECT_EQ(Bytes(read.value, read.value + read.key_bytes), request.value);
    EXPECT_EQ(Bytes(read.mask, read.mask + read.key_bytes), request.mask);
    EXPECT_EQ(Bytes(read.data, read.data + read.data_bytes), request.data);
    EXPECT_EQ(read.priority, 16u);
    EXPECT_EQ(read.action, lpm.action);
    EXPECT_EQ(read.ttl, 99u);
    EXPECT_EQ(ts_model_get_entry(0, lpm.handle, entry + 1, &read), TS_MODEL_UNKNOWN_OBJECT);
}

TEST_F(Model, AnIdentityIsPartitionMaskMaskedValueAndPriority)
{
    pd_entry_hdl entry = 0;
    const Bytes key{0, 1, 2, 3, 4, 5, 6, 7};
    const Bytes oui{0, 0xff, 0xff, 0xff, 0xff, 0, 0, 0};
    must_add(ternary, {ternary, key, oui, 5});
    Request same_under_mask{ternary, {9, 1, 2, 3, 4, 9, 9, 9}, oui, 5};
    EXPECT_EQ(add(ternary, same_under_mask, &entry), TS_MODEL_ALREADY_EXISTS);
    must_add(ternary, {ternary, key, oui, 6});
    must_add(ternary, {ternary, key, Bytes(8, 0xff), 5});

    must_add(partitioned, {partitioned, {0, 0, 10, 0, 0, 0}, {0, 0, 0xff, 0, 0, 0}, 24, 1});
    must_add(partitioned, {partitioned, {0, 0, 10, 0, 0, 0}, {0, 0, 0xff, 0, 0, 0}, 24, 2});
    Request again{partitioned, {0, 0, 10, 0, 0, 0}, {0, 0, 0xff, 0, 0, 0}, 24, 2};
    EXPECT_EQ(add(partitioned, again, &entry), TS_MODEL_ALREADY_EXISTS);

    must_add(exact, exact_request(3));
    Request twice = exact_request(3);
    EXPECT_EQ(add(exact, twice, &entry), TS_MODEL_ALREADY_EXISTS);
    EXPECT_EQ(ts_model_entry_count(0, ternary.handle), 3u);
}

TEST_F(Model, EntriesAreFoundAndChangedByTheirKey)
{
    const pd_entry_hdl first = must_add(exact, exact_request(7));
    Request key = exact_request(7);
    pd_entry_hdl found = 0;
    EXPECT_EQ(pipe_mgr_match_spec_to_ent_hdl(1, target, exact.handle, &key.match, &found, 0), TS_MODEL_OK);
    EXPECT_EQ(found, first);

    key.data[5] = 9;
    EXPECT_EQ(pipe_mgr_mat_ent_set_action_by_match_spec(1, target, exact.handle, &key.match, exact.action,
                                                        &key.spec, 0),
              TS_MODEL_OK);
    ts_model_entry read{};
    ASSERT_EQ(ts_model_get_entry(0, exact.handle, first, &read), TS_MODEL_OK);
    EXPECT_EQ(read.data[5], 9);

    key.data[5] = 8;
    EXPECT_EQ(pipe_mgr_mat_ent_set_action(1, 0, exact.handle, first, exact.action, &key.spec, 0),
              TS_MODEL_OK);
    ASSERT_EQ(ts_model_get_entry(0, exact.handle, first, &read), TS_MODEL_OK);
    EXPECT_EQ(read.data[5], 8);

    EXPECT_EQ(pipe_mgr_mat_ent_del_by_match_spec(1, target, exact.handle, &key.match, 0), TS_MODEL_OK);
    EXPECT_EQ(pipe_mgr_mat_ent_del_by_match_spec(1, target, exact.handle, &key.match, 0),
              TS_MODEL_UNKNOWN_OBJECT);
    EXPECT_EQ(pipe_mgr_match_spec_to_ent_hdl(1, target, exact.handle, &key.match, &found, 0),
              TS_MODEL_UNKNOWN_OBJECT);
    EXPECT_EQ(pipe_mgr_mat_ent_set_action(1, 0, exact.handle, first, exact.action, &key.spec, 0),
              TS_MODEL_UNKNOWN_OBJECT);
}

TEST_F(Model, AFullTableTakesNoMore)
{
    ASSERT_EQ(ts_model_set_capacity(exact.handle, 2), TS_MODEL_OK);
    EXPECT_EQ(ts_model_set_capacity(0x1ffffff, 2), TS_MODEL_UNKNOWN_OBJECT);
    must_add(exact, exact_request(1));
    must_add(exact, exact_request(2));
    pd_entry_hdl entry = 0;
    Request third = exact_request(3);
    EXPECT_EQ(add(exact, third, &entry), TS_MODEL_NO_SPACE);
    Request second = exact_request(2);
    EXPECT_EQ(add(exact, second, &entry), TS_MODEL_ALREADY_EXISTS);
    EXPECT_EQ(pipe_mgr_mat_ent_del(1, 0, exact.handle, 1, 0), TS_MODEL_OK);
    EXPECT_EQ(add(exact, third, &entry), TS_MODEL_OK);
}

TEST_F(Model, RefusesWhatTheProgramDoesNotHave)
{
    struct Case {
        const char *what;
        pd_status status;
        const Table &table;
        void (*spoil)(Request &);
        u32 action;
    };
    const Case cases[] = {
        {"unknown table", TS_MODEL_UNKNOWN_OBJECT, {0x1ffffff, 9, 2, 0, 0}, [](Request &) {}, 0},
        {"short image", TS_MODEL_BAD_ARGUMENT, exact, [](Request &r) { r.match.num_bytes = 1; },
         exact.action},
        {"wrong bits", TS_MODEL_BAD_ARGUMENT, exact, [](Request &r) { r.match.num_valid_bits = 8; },
         exact.action},
        {"no value", TS_MODEL_BAD_ARGUMENT, exact, [](Request &r) { r.match.match_value = nullptr; },
         exact.action},
        {"no mask", TS_MODEL_BAD_ARGUMENT, exact, [](Request &r) { r.match.match_mask = nullptr; },
         exact.action},
        {"masked exact key", TS_MODEL_BAD_ARGUMENT, exact, [](Request &r) { r.mask[0] = 1; }, exact.action},
        {"foreign action", TS_MODEL_BAD_ARGUMENT, exact, [](Request &) {}, ternary.action},
        {"short data", TS_MODEL_BAD_ARGUMENT, exact, [](Request &r) { r.spec.action_data.num_bytes = 5; },
         exact.action},
        {"no data", TS_MODEL_BAD_ARGUMENT, exact, [](Request &r) { r.spec.action_data.data = nullptr; },
         exact.action},
        {"no kind", TS_MODEL_BAD_ARGUMENT, exact, [](Request &r) { r.spec.action_kind = 0; }, exact.action},
        {"member in a direct table", TS_MODEL_BAD_ARGUMENT, exact, [](Request &r) { r.spec.action_kind = 2; },
         exact.action},
        {"resource that the table lacks", TS_MODEL_BAD_ARGUMENT, exact,
         [](Request &r) { r.spec.resource_count = 1; }, exact.action},
    };
    for (const Case &one : cases) {
        Request request = exact_request(1);
        one.spoil(request);
        pd_entry_hdl entry = 0;
        EXPECT_EQ(pipe_mgr_mat_ent_add(1, target, one.table.handle, &request.match, one.action, &request.spec,
                                       0, 0, &entry),
                  one.status)
            << one.what;
    }
    Request data_in_indirect{indirect, {0, 1}, {0xff, 0xff}};
    pd_entry_hdl entry = 0;
    EXPECT_EQ(add(indirect, data_in_indirect, &entry), TS_MODEL_BAD_ARGUMENT);
    EXPECT_EQ(pipe_mgr_mat_ent_add(1, target, exact.handle, nullptr, exact.action, nullptr, 0, 0, nullptr),
              TS_MODEL_BAD_ARGUMENT);
    EXPECT_EQ(pipe_mgr_mat_ent_del(1, 0x12345, exact.handle, 1, 0), TS_MODEL_UNKNOWN_OBJECT);
    EXPECT_EQ(ts_model_entry_count(0, exact.handle), 0u);
}

TEST_F(Model, IndirectEntriesKeepMemberOrGroup)
{
    fill_profile(7, 8);
    Request request{indirect, {0x12, 0x34}, {0xff, 0xff}};
    request.spec = {};
    request.spec.action_kind = PIPE_ACTION_MEMBER;
    request.spec.member_hdl = 7;
    pd_entry_hdl entry = 0;
    ASSERT_EQ(add(indirect, request, &entry), TS_MODEL_OK);
    ts_model_entry read{};
    ASSERT_EQ(ts_model_get_entry(0, indirect.handle, entry, &read), TS_MODEL_OK);
    EXPECT_EQ(read.handle_of_member_or_group, 7u);

    request.spec.action_kind = PIPE_ACTION_GROUP;
    request.spec.group_hdl = 8;
    ASSERT_EQ(pipe_mgr_mat_ent_set_action(1, 0, indirect.handle, entry, indirect.action, &request.spec, 0),
              TS_MODEL_OK);
    ASSERT_EQ(ts_model_get_entry(0, indirect.handle, entry, &read), TS_MODEL_OK);
    EXPECT_EQ(read.action_kind, u32{PIPE_ACTION_GROUP});
    EXPECT_EQ(read.handle_of_member_or_group, 8u);
}

TEST_F(Model, AResourceIsKeptOrReplaced)
{
    Request request{metered, Bytes(8, 1), Bytes(8, 0xff), 1};
    request.spec.resource_count = 1;
    request.spec.resources[0].res_handle = 0x5000001;
    request.spec.resources[0].res_tag = PIPE_RES_ATTACH;
    pd_entry_hdl entry = 0;
    ASSERT_EQ(add(metered, request, &entry), TS_MODEL_OK);

    ts_model_entry read{};
    for (const u32 tag : {PIPE_RES_KEEP, PIPE_RES_DETACH}) {
        request.spec.resources[0].res_tag = tag;
        ASSERT_EQ(pipe_mgr_mat_ent_set_action(1, 0, metered.handle, entry, metered.action, &request.spec, 0),
                  TS_MODEL_OK);
        ASSERT_EQ(ts_model_get_entry(0, metered.handle, entry, &read), TS_MODEL_OK);
        EXPECT_EQ(read.res_tag, tag == PIPE_RES_KEEP ? u32{PIPE_RES_ATTACH} : tag);
    }
    EXPECT_EQ(read.res_count, 1u);
    EXPECT_EQ(read.res_handle, 0x5000001u);
}

// ---- Look-up --------------------------------------------------------------------------------------------

TEST_F(Model, TernaryLookUpPrefersTheLowestPriority)
{
    const Bytes key{0, 1, 2, 3, 4, 5, 6, 7};
    const Bytes oui{0, 0, 0xff, 0xff, 0xff, 0, 0, 0};
    const pd_entry_hdl any = must_add(ternary, {ternary, Bytes(8, 0), Bytes(8, 0), 20});
    const pd_entry_hdl vendor = must_add(ternary, {ternary, key, oui, 10});
    const pd_entry_hdl station = must_add(ternary, {ternary, key, Bytes(8, 0xff), 10});
    must_add(ternary, {ternary, Bytes(8, 9), Bytes(8, 0xff), 1});

    ts_model_hit hit = look_up(ternary, key);
    EXPECT_EQ(hit.entry, vendor) << "the earlier among equals";
    EXPECT_EQ(hit.candidates, 3u);
    EXPECT_EQ(hit.runner_up, station);
    EXPECT_EQ(hit.runner_up_priority, 10u);

    ASSERT_EQ(pipe_mgr_mat_ent_del(1, 0, ternary.handle, vendor, 0), TS_MODEL_OK);
    hit = look_up(ternary, key);
    EXPECT_EQ(hit.entry, station);
    EXPECT_EQ(hit.runner_up, any);
    EXPECT_EQ(look_up(ternary, {0, 1, 2, 3, 4, 0, 0, 0}).entry, any);
}

TEST_F(Model, EntriesOfOneValueSurviveEachOthersDeletion)
{
    const Bytes key(8, 3);
    for (u32 priority = 1; priority <= 3; ++priority)
        must_add(ternary, {ternary, key, Bytes(8, 0xff), priority});
    for (const pd_entry_hdl gone : {1u, 3u}) {
        ASSERT_EQ(pipe_mgr_mat_ent_del(1, 0, ternary.handle, gone, 0), TS_MODEL_OK);
        EXPECT_EQ(look_up(ternary, key).entry, 2u);
    }
    ASSERT_EQ(pipe_mgr_mat_ent_del(1, 0, ternary.handle, 2, 0), TS_MODEL_OK);
    EXPECT_EQ(look_up(ternary, key).hit, 0);
}

TEST_F(Model, LpmLookUpPrefersTheLongestPrefixOfThePartition)
{
    const pd_entry_hdl eight = must_add(lpm, {lpm, {1, 10, 0, 0, 0}, {0xff, 0xff, 0, 0, 0}, 24});
    const pd_entry_hdl sixteen = must_add(lpm, {lpm, {1, 10, 20, 0, 0}, {0xff, 0xff, 0xff, 0, 0}, 16});
    EXPECT_EQ(look_up(lpm, {1, 10, 20, 1, 1}).entry, sixteen);
    EXPECT_EQ(look_up(lpm, {1, 10, 20, 1, 1}).runner_up, eight);
    EXPECT_EQ(look_up(lpm, {1, 10, 21, 1, 1}).entry, eight);
    EXPECT_EQ(look_up(lpm, {2, 10, 20, 1, 1}).hit, 0);

    must_add(partitioned, {partitioned, {0, 0, 10, 0, 0, 0}, {0, 0, 0xff, 0, 0, 0}, 24, 1});
    EXPECT_EQ(look_up(partitioned, {0, 0, 10, 1, 1, 1}, 1).hit, 1);
    EXPECT_EQ(look_up(partitioned, {0, 0, 10, 1, 1, 1}, 2).hit, 0);
}

TEST_F(Model, ExactLookUpTakesTheWholeKey)
{
    for (u16 port = 0; port < 1000; ++port)
        ASSERT_EQ(must_add(exact, exact_request(port)), port + 1u);
    for (u16 port = 0; port < 1000; ++port)
        ASSERT_EQ(look_up(exact, exact_request(port).value).entry, port + 1u);
    EXPECT_EQ(look_up(exact, {0x80, 1}).hit, 0);
    ts_model_hit hit{};
    const u8 key[3]{};
    EXPECT_EQ(ts_model_lookup(0, exact.handle, key, 3, 0, &hit), TS_MODEL_BAD_ARGUMENT);
    EXPECT_EQ(ts_model_lookup(0, 0x1ffffff, key, 2, 0, &hit), TS_MODEL_UNKNOWN_OBJECT);
}

// A slow table to compare with: a list that is searched from end to end.
struct SlowEntry {
    Bytes value;
    Bytes mask;
    u32 priority;
    pd_entry_hdl handle;

    bool matches(const Bytes &key) const
    {
        for (std::size_t at = 0; at < key.size(); ++at)
            if ((key[at] & mask[at]) != (value[at] & mask[at]))
                return false;
        return true;
    }
};

TEST_F(Model, AddsDeletionsAndLookUpsAgreeWithASlowTable)
{
    constexpr u32 seed = 20240611;
    SCOPED_TRACE(seed);
    std::mt19937 random{seed};
    std::vector<SlowEntry> slow;
    const auto image = [&](u8 bits) {
        Bytes made(8, 0);
        made[0] = static_cast<u8>(random() & bits);
        made[7] = static_cast<u8>(random() & bits);
        return made;
    };
    for (int step = 0; step < 20000; ++step) {
        const bool full = slow.size() > 200;
        if (!slow.empty() && (full || random() % 3 == 0)) {
            const auto victim = slow.begin() + static_cast<std::ptrdiff_t>(random() % slow.size());
            ASSERT_EQ(pipe_mgr_mat_ent_del(1, 0, ternary.handle, victim->handle, 0), TS_MODEL_OK) << step;
            slow.erase(victim);
        } else {
            SlowEntry made{image(7), image(7), static_cast<u32>(random() % 4), 0};
            Request request{ternary, made.value, made.mask, made.priority};
            const bool known = std::ranges::any_of(slow, [&](const SlowEntry &other) {
                return other.mask == made.mask && other.priority == made.priority &&
                       other.matches(made.value);
            });
            ASSERT_EQ(add(ternary, request, &made.handle), known ? TS_MODEL_ALREADY_EXISTS : TS_MODEL_OK)
                << step;
            if (!known)
                slow.push_back(made);
        }
        const Bytes key = image(7);
        std::vector<std::pair<u32, pd_entry_hdl>> hits;
        for (const SlowEntry &entry : slow)
            if (entry.matches(key))
                hits.emplace_back(entry.priority, entry.handle);
        std::ranges::sort(hits);
        const ts_model_hit hit = look_up(ternary, key);
        ASSERT_EQ(hit.candidates, hits.size()) << step;
        ASSERT_EQ(hit.entry, hits.empty() ? 0 : hits[0].second) << step;
        ASSERT_EQ(hit.runner_up, hits.size() < 2 ? 0 : hits[1].second) << step;
    }
}

// ---- Trace ----------------------------------------------------------------------------------------------

TEST_F(Model, TraceShowsEveryArgumentOfTheEntryOperations)
{
    trace();
    Request request = exact_request(0x123);
    request.spec.action_data.num_valid_bits = 33;
    request.data = {0, 1, 0, 2, 0, 3};
    request.spec.action_data.data = request.data.data();
    pd_entry_hdl entry = 0;
    add(exact, request, &entry);
    add(exact, request, &entry);
    pipe_mgr_match_spec_to_ent_hdl(1, target, exact.handle, &request.match, &entry, 0);
    pipe_mgr_mat_ent_set_action(1, 0, exact.handle, 1, exact.action, &request.spec, 0);
    pipe_mgr_mat_ent_set_action_by_match_spec(1, {0, 3}, exact.handle, &request.match, 0x2fffffff, nullptr,
                                              0);
    request.match.match_reserved = 5;
    pipe_mgr_mat_ent_del_by_match_spec(2, target, exact.handle, &request.match, 0);
    pipe_mgr_mat_ent_del(1, 0, 0x1ffffff, 1, 0);

    const std::string match = "{value=0123 mask=ffff partition=0 priority=0 bits=9 bytes=2}";
    const std::string spec = "{kind=1 bits=33 bytes=6 data=000100020003}";
    const std::string begin =
        "sess=1, dev=0, pipe=0xffff, table=0x1000001 ingressPortMapping, match=" + match;
    const std::string added = "pipe_mgr_mat_ent_add(" + begin +
                              ", action=0x20000000 setPhase0, spec=" + spec + ", ttl=0, flags=0) = ";
    const Lines expected{
        added + "0, entry=1",
        added + "5",
        "pipe_mgr_match_spec_to_ent_hdl(" + begin + ", flags=0) = 0, entry=1",
        "pipe_mgr_mat_ent_set_action(sess=1, dev=0, table=0x1000001 ingressPortMapping, entry=1, "
        "action=0x20000000 setPhase0, spec=" +
            spec + ", flags=0) = 0",
        "pipe_mgr_mat_ent_set_action_by_match_spec(sess=1, dev=0, pipe=0x3, table=0x1000001 "
        "ingressPortMapping, "
        "match=" +
            match + ", action=0x2fffffff, spec=null, flags=0) = 3",
        "pipe_mgr_mat_ent_del_by_match_spec(sess=2, dev=0, pipe=0xffff, table=0x1000001 ingressPortMapping, "
        "match={value=0123 mask=ffff partition=0 priority=0 bits=9 bytes=2 reserved=5}, flags=0) = 0",
        "pipe_mgr_mat_ent_del(sess=1, dev=0, table=0x1ffffff, entry=1, flags=0) = 4",
    };
    EXPECT_EQ(lines, expected);

    ts_model_set_trace(nullptr, nullptr);
    add(exact, request, &entry);
    EXPECT_EQ(lines.size(), expected.size());
}

TEST_F(Model, TraceShowsMembersGroupsAndResources)
{
    trace();
    Request request{indirect, {0, 1}, {0xff, 0xff}};
    pd_entry_hdl entry = 0;
    const auto spec_of_last = [&] {
        const std::string &line = lines.back();
        const auto from = line.find("spec=");
        return line.substr(from, line.find(", ttl=") - from);
    };
    request.spec = {};
    request.spec.action_kind = PIPE_ACTION_MEMBER;
    request.spec.member_hdl = 7;
    add(indirect, request, &entry);
    EXPECT_EQ(spec_of_last(), "spec={kind=2 bits=0 bytes=0 data=null member=7}");
    request.spec.action_kind = PIPE_ACTION_GROUP;
    request.spec.group_hdl = 8;
    add(indirect, request, &entry);
    EXPECT_EQ(spec_of_last(), "spec={kind=4 bits=0 bytes=0 data=null group=8}");

    u8 scratch = 0;
    request.spec.action_kind = PIPE_ACTION_DATA;
    request.spec.action_data.data = &scratch;
    request.spec.resource_count = 3;
    request.spec.resources[0] = {0x4000001, 0, {}, 1};
    request.spec.resources[1] = {0x5000001, 2, {}, 1};
    request.spec.resources[1].res_data.meter = {0, 0, 1000, 2000, 1, 3000, 4000};
    request.spec.resources[2] = {0x6000001, 0, {}, 1};
    request.spec.resources[2].res_data.stful.bytes[15] = 0xa5;
    add(indirect, request, &entry);
    EXPECT_EQ(spec_of_last(), "spec={kind=1 bits=0 bytes=0 data=- resources=[handle=0x4000001 index=0 tag=1; "
                              "handle=0x5000001 index=2 tag=1 meter={type=0 committed=0:1000:2000 "
                              "peak=1:3000:4000}; handle=0x6000001 index=0 tag=1 "
                              "data=000000000000000000000000000000a5]}");
}

// ---- Faults and system services -------------------------------------------------------------------------

TEST_F(Model, AFailedCallHasNoEffectAndIsTraced)
{
    trace();
    pd_entry_hdl entry = 0;
    Request request = exact_request(1);
    ts_model_fail_call(2, 77);
    EXPECT_EQ(p4_pd_ms_init(), TS_MODEL_OK);
    EXPECT_EQ(add(exact, request, &entry), 77u);
    EXPECT_EQ(ts_model_entry_count(0, exact.handle), 0u);
    EXPECT_TRUE(lines.back().ends_with(" = 77")) << lines.back();
    EXPECT_EQ(add(exact, request, &entry), TS_MODEL_OK);

    ts_model_fail_call(1, 77);
    ts_model_fail_call(0, 0);
    EXPECT_EQ(p4_pd_ms_init(), TS_MODEL_OK);

    ts_model_fail_operation("pipe_mgr_mat_ent_del", 78);
    for (int time = 0; time < 2; ++time)
        EXPECT_EQ(pipe_mgr_mat_ent_del(1, 0, exact.handle, entry, 0), 78u);
    EXPECT_EQ(pipe_mgr_mat_ent_set_action(1, 0, exact.handle, entry, exact.action, &request.spec, 0),
              TS_MODEL_OK);
    ts_model_fail_operation("pipe_mgr_mat_ent_del", 0);
    EXPECT_EQ(pipe_mgr_mat_ent_del(1, 0, exact.handle, entry, 0), TS_MODEL_OK);
}

TEST_F(Model, AllocationsAreCountedAndCanFail)
{
    ts_model_fail_call(1, 77);
    ts_model_fail_allocation(2);
    void *first = bf_sys_calloc(3, 4);
    ASSERT_NE(first, nullptr);
    EXPECT_TRUE(
        std::all_of(static_cast<u8 *>(first), static_cast<u8 *>(first) + 12, [](u8 b) { return b == 0; }));
    EXPECT_EQ(bf_sys_calloc(1, 1), nullptr);
    void *third = bf_sys_calloc(1, 1);
    EXPECT_NE(third, nullptr);
    bf_sys_free(first);
    bf_sys_free(nullptr);
    u64 given = 0;
    u64 freed = 0;
    ts_model_allocations(&given, &freed);
    EXPECT_EQ(given, 2u);
    EXPECT_EQ(freed, 1u);
    bf_sys_free(third);
    EXPECT_EQ(p4_pd_ms_init(), 77u) << "system services are no driver calls";
}

TEST_F(Model, TheSystemLogGoesToItsSink)
{
    ts_model_set_log(
        [](int module, int level, const char *line, void *cookie) {
            static_cast<Lines *>(cookie)->push_back(std::to_string(module) + std::to_string(level) + line);
        },
        &lines);
    const std::string longer_than_any_buffer(5000, 'x');
    bf_sys_log_and_trace(0, 2, "%s:%d", longer_than_any_buffer.c_str(), 7);
    EXPECT_EQ(lines, Lines{"02" + longer_than_any_buffer + ":7"});

    EXPECT_EQ(bf_sys_dbg_mode(), 0);
    ts_model_set_debug_mode(5);
    EXPECT_EQ(bf_sys_dbg_mode(), 1);
}

// ---- Registry -------------------------------------------------------------------------------------------

TEST_F(Model, TheClientHearsOfItsDevice)
{
    trace();
    static Lines heard;
    heard.clear();
    pd_drv_client_callbacks callbacks{};
    callbacks.device_remove = [](u32 device) -> pd_status {
        heard.push_back("remove " + std::to_string(device));
        return 0;
    };
    callbacks.device_log = [](u32, cJSON *root) -> pd_status {
        cJSON_AddStringToObject(root, "name", "logged");
        return 0;
    };
    callbacks.device_restore = [](u32, cJSON *root) -> pd_status {
        heard.push_back(cJSON_GetObjectItem(root, "name")->valuestring);
        return 9;
    };
    ts_model_remove_device(0);
    EXPECT_EQ(ts_model_log_state(0), nullptr);
    EXPECT_EQ(ts_model_restore_state(0, "{}"), TS_MODEL_UNKNOWN_OBJECT);

    u32 handle = 0;
    EXPECT_EQ(bf_drv_register("client", &handle), TS_MODEL_OK);
    EXPECT_EQ(bf_drv_client_register_callbacks(handle, &callbacks, 2), TS_MODEL_OK);
    EXPECT_EQ(bf_drv_client_register_callbacks(handle + 1, &callbacks, 2), TS_MODEL_UNKNOWN_OBJECT);
    must_add(exact, exact_request(1));
    ts_model_remove_device(0);
    EXPECT_EQ(ts_model_entry_count(0, exact.handle), 0u);
    const std::unique_ptr<char, decltype(&free)> logged{ts_model_log_state(0), free};
    ASSERT_NE(logged, nullptr);
    EXPECT_EQ(ts_model_restore_state(0, logged.get()), 9u);
    EXPECT_EQ(ts_model_restore_state(0, "{not json"), TS_MODEL_BAD_ARGUMENT);
    EXPECT_EQ(heard, (Lines{"remove 0", "logged"}));
    EXPECT_EQ(bf_drv_deregister(handle), TS_MODEL_OK);
    EXPECT_EQ(bf_drv_deregister(handle), TS_MODEL_UNKNOWN_OBJECT);

    EXPECT_EQ(lines.front(), "bf_drv_register(client=\"client\") = 0, handle=1");
    EXPECT_EQ(lines[1],
              "bf_drv_client_register_callbacks(handle=1, callbacks={remove log restore}, kind=2) = 0");
    EXPECT_EQ(lines.back(), "bf_drv_deregister(handle=1) = 4");
}

// ---- Member-selection store -----------------------------------------------------------------------------

std::string document_of(pd_word state)
{
    const std::unique_ptr<cJSON, decltype(&cJSON_Delete)> root{cJSON_CreateObject(), cJSON_Delete};
    EXPECT_EQ(p4_pd_ms_log_state(0, state, root.get()), TS_MODEL_OK);
    const std::unique_ptr<char, decltype(&free)> text{cJSON_PrintUnformatted(root.get()), free};
    return text.get();
}

pd_status restore(pd_word state, const std::string &text)
{
    const std::unique_ptr<cJSON, decltype(&cJSON_Delete)> root{cJSON_Parse(text.c_str()), cJSON_Delete};
    EXPECT_NE(root, nullptr) << text;
    return p4_pd_ms_restore_state(0, state, root.get());
}

TEST_F(Model, TheStoreKnowsMembersGroupsAndActions)
{
    const pd_word state = p4_pd_ms_init_state();
    u32 action = 0;
    EXPECT_EQ(p4_pd_ms_new_mbr(1, state, 0, 7), TS_MODEL_OK);
    EXPECT_EQ(p4_pd_ms_new_mbr(1, state, 0, 7), TS_MODEL_ALREADY_EXISTS);
    EXPECT_EQ(p4_pd_ms_get_mbr_act(state, 0, 7, &action), TS_MODEL_UNKNOWN_OBJECT) << "no action yet";
    EXPECT_EQ(p4_pd_ms_set_mbr_act(state, 0, 7, 0x200000bd), TS_MODEL_OK);
    EXPECT_EQ(p4_pd_ms_get_mbr_act(state, 0, 7, &action), TS_MODEL_OK);
    EXPECT_EQ(action, 0x200000bdu);
    EXPECT_EQ(p4_pd_ms_get_mbr_act(state, 1, 7, &action), TS_MODEL_UNKNOWN_OBJECT) << "another device";
    EXPECT_EQ(p4_pd_ms_get_mbr_act(state + 1, 0, 7, &action), TS_MODEL_UNKNOWN_OBJECT) << "another state";

    EXPECT_EQ(p4_pd_ms_add_mbr_to_grp(1, state, 0, 7, 3), TS_MODEL_UNKNOWN_OBJECT);
    EXPECT_EQ(p4_pd_ms_new_grp(1, state, 0, 3), TS_MODEL_OK);
    EXPECT_EQ(p4_pd_ms_add_mbr_to_grp(1, state, 0, 8, 3), TS_MODEL_UNKNOWN_OBJECT);
    EXPECT_EQ(p4_pd_ms_add_mbr_to_grp(1, state, 0, 7, 3), TS_MODEL_OK);
    EXPECT_EQ(p4_pd_ms_add_mbr_to_grp(1, state, 0, 7, 3), TS_MODEL_ALREADY_EXISTS);
    EXPECT_EQ(p4_pd_ms_get_grp_act(state, 0, 3, &action), TS_MODEL_UNKNOWN_OBJECT);
    EXPECT_EQ(p4_pd_ms_set_grp_act(state, 0, 3, 0x200000be), TS_MODEL_OK);
    EXPECT_EQ(p4_pd_ms_get_grp_act(state, 0, 3, &action), TS_MODEL_OK);
    EXPECT_EQ(action, 0x200000beu);

    pd_word resources = 1;
    pd_word count = 1;
    EXPECT_EQ(p4_pd_ms_mbr_get_res(state, 0, 7, &resources, &count), TS_MODEL_OK);
    EXPECT_EQ(resources + count, 0u);
    EXPECT_EQ(p4_pd_ms_grp_get_res(state, 0, 4, &resources, &count), TS_MODEL_UNKNOWN_OBJECT);

    trace();
    EXPECT_EQ(p4_pd_ms_mbr_apply_to_grps(state, 0, 7, p4_pd_ms_grp_update_res, state), TS_MODEL_OK);
    pd_mbr_hdl members[] = {7};
    EXPECT_EQ(p4_pd_ms_del_grp(1, state, 0, 3, 1, nullptr), TS_MODEL_BAD_ARGUMENT);
    EXPECT_EQ(p4_pd_ms_del_grp(1, state, 0, 3, 1, members), TS_MODEL_OK);
    EXPECT_EQ(p4_pd_ms_set_mbr_act(state, 0, 7, 0x200000be), TS_MODEL_OK);
    EXPECT_EQ(p4_pd_ms_destroy_state_for_dev(state, 0), TS_MODEL_OK);
    EXPECT_EQ(lines, (Lines{
                         "p4_pd_ms_grp_update_res(dev=0, group=3, state=1) = 0",
                         "p4_pd_ms_mbr_apply_to_grps(state=1, dev=0, member=7, cookie=0x1) = 0",
                         "p4_pd_ms_del_grp(sess=1, state=1, dev=0, group=3, count=1, members=null) = 3",
                         "p4_pd_ms_del_grp(sess=1, state=1, dev=0, group=3, count=1, members=[7]) = 0",
                         "p4_pd_ms_set_mbr_act(state=1, dev=0, member=7, action=0x200000be NoAction) = 0",
                         "p4_pd_ms_destroy_state_for_dev(state=1, dev=0) = 0",
                     }));
    EXPECT_EQ(p4_pd_ms_get_mbr_act(state, 0, 7, &action), TS_MODEL_UNKNOWN_OBJECT);
}

TEST_F(Model, TheStoreIsTheSameAfterLogAndRestore)
{
    const pd_word state = p4_pd_ms_init_state();
    for (const pd_mbr_hdl member : {1u, 2u, 3u})
        p4_pd_ms_new_mbr(1, state, 0, member);
    p4_pd_ms_set_mbr_act(state, 0, 1, 0x200000bd);
    p4_pd_ms_set_mbr_act(state, 0, 3, 0xffffffff);
    p4_pd_ms_new_grp(1, state, 0, 5);
    p4_pd_ms_add_mbr_to_grp(1, state, 0, 3, 5);
    p4_pd_ms_add_mbr_to_grp(1, state, 0, 1, 5);
    p4_pd_ms_set_grp_act(state, 0, 5, 0x200000bd);
    p4_pd_ms_new_grp(1, state, 0, 6);

    const std::string logged = document_of(state);
    EXPECT_EQ(logged, "{\"members\":[{\"handle\":1,\"action\":536871101},{\"handle\":2,\"action\":0},"
                      "{\"handle\":3,\"action\":4294967295}],"
                      "\"groups\":[{\"handle\":5,\"action\":536871101,\"members\":[3,1]},"
                      "{\"handle\":6,\"action\":0,\"members\":[]}]}");
    const pd_word other = p4_pd_ms_init_state();
    p4_pd_ms_new_mbr(1, other, 0, 99);
    EXPECT_EQ(restore(other, logged), TS_MODEL_OK);
    EXPECT_EQ(document_of(other), logged);

    const std::string empty = "{\"groups\":[],\"members\":[]}";
    EXPECT_EQ(restore(state, empty), TS_MODEL_OK);
    EXPECT_EQ(document_of(state), "{\"members\":[],\"groups\":[]}");
    for (const char *bad : {"{}", "{\"members\":[]}", "{\"members\":[{\"handle\":1}],\"groups\":[]}",
                            "{\"members\":[{\"handle\":-1,\"action\":0}],\"groups\":[]}",
                            "{\"members\":[{\"handle\":1.5,\"action\":0}],\"groups\":[]}",
                            "{\"members\":[],\"groups\":[{\"handle\":1,\"action\":0,\"members\":[9]}]}"}) {
        EXPECT_EQ(restore(other, bad), TS_MODEL_BAD_ARGUMENT) << bad;
        EXPECT_EQ(document_of(other), logged) << bad;
    }
}

// ---- Threads --------------------------------------------------------------------------------------------

TEST_F(Model, ThreadsMayAddToOneTable)
{
    constexpr u16 thread_count = 4;
    constexpr u16 per_thread = 2000;
    static std::atomic<u32> traced;
    traced = 0;
    ts_model_set_trace([](const char *, void *) { ++traced; }, nullptr);
    std::vector<std::thread> threads;
    for (u16 thread = 0; thread < thread_count; ++thread)
        threads.emplace_back([thread] {
            for (u16 at = 0; at < per_thread; ++at)
                must_add(exact, exact_request(static_cast<u16>(thread * per_thread + at)));
        });
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(ts_model_entry_count(0, exact.handle), u32{thread_count} * per_thread);
    EXPECT_EQ(traced, u32{thread_count} * per_thread);
    u32 walked = 0;
    for (pd_entry_hdl at = 0; (at = ts_model_next_entry(0, exact.handle, at)) != 0;)
        ++walked;
    EXPECT_EQ(walked, u32{thread_count} * per_thread);
}

} // namespace
