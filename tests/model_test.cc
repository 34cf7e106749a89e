// The model driver by itself: its match tables, system services, registry and member-selection store.
#include "model.h"

#include <cjson/cJSON.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "bf_sys.h"
#include "model_tables.h"
#include "pd_ms.h"
#include "pipe_mgr.h"
#include "reflection.h"

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

// Reads an entry: "value mask priority action bits data kind", or its status alone.
std::string read(u32 table, pd_entry_hdl entry, u8 from_hw = 0, u16 key_room = 8, u16 data_room = 28)
{
    u8 value[8], mask[8], data[28];
    pipe_match_spec match{value, mask, 0, 0, 0, key_room, 0};
    pipe_action_spec spec{};
    spec.action_data = {0, data_room, data};
    u32 action = 0;
    const pd_status status =
        pipe_mgr_get_entry(1, table, target, entry, &match, &spec, &action, from_hw, 1, 0);
    if (status)
        return std::to_string(status);
    EXPECT_EQ(match.match_value == nullptr, entry == TS_MODEL_DEFAULT_ENTRY);
    const auto image = [](const u8 *bytes, u32 count) { return hex(Bytes(bytes, bytes + count)); };
    return image(value, match.num_bytes) + " " + image(mask, match.num_bytes) + " " +
           std::to_string(match.priority) + " " + std::to_string(action & 0xff) + " " +
           std::to_string(spec.action_data.num_valid_bits) + " " + image(data, spec.action_data.num_bytes) +
           " " + std::to_string(spec.action_kind);
}

class Model : public testing::Test {
protected:
    Model() { ts_model_reset(); }
    ~Model() override { ts_model_reset(); }

    Lines lines;
};

// ---- Entries --------------------------------------------------------------------------------------------

// Handles come in blocks of 1,024, which go when none of them is in use.
TEST_F(Model, WalksPassOverHandlesThatAreGone)
{
    const auto remove = [](pd_entry_hdl entry) {
        EXPECT_EQ(pipe_mgr_mat_ent_del(1, 0, exact.handle, entry, 0), TS_MODEL_OK);
    };
    for (u16 port = 1; port <= 3000; ++port)
        must_add(exact, exact_request(port));
    for (pd_entry_hdl entry = 1; entry < 3000; ++entry)
        if (entry != 1030)
            remove(entry);
    EXPECT_EQ(ts_model_next_entry(0, exact.handle, 0), 1030u);
    EXPECT_EQ(ts_model_next_entry(0, exact.handle, 1030), 3000u);
    remove(3000);
    EXPECT_EQ(ts_model_next_entry(0, exact.handle, 1030), 0u);
}

TEST_F(Model, RefusesWhatTheProgramDoesNotHave)
{
    struct Case {
        const char *what;
        void (*spoil)(Request &);
        u32 action = exact.action;
    };
    const Case cases[] = {
        {"short image", [](Request &r) { r.match.num_bytes = 1; }},
        {"wrong bits", [](Request &r) { r.match.num_valid_bits = 8; }},
        {"no value", [](Request &r) { r.match.match_value = nullptr; }},
        {"no mask", [](Request &r) { r.match.match_mask = nullptr; }},
        {"masked exact key", [](Request &r) { r.mask[0] = 1; }},
        {"foreign action", [](Request &) {}, ternary.action},
        {"short data", [](Request &r) { r.spec.action_data.num_bytes = 5; }},
        {"no data", [](Request &r) { r.spec.action_data.data = nullptr; }},
        {"no kind", [](Request &r) { r.spec.action_kind = PIPE_ACTION_NONE; }},
        {"member in a direct table", [](Request &r) { r.spec.action_kind = PIPE_ACTION_MEMBER; }},
        {"group in a direct table", [](Request &r) { r.spec.action_kind = PIPE_ACTION_GROUP; }},
        {"resource that the table lacks", [](Request &r) { r.spec.resource_count = 1; }},
    };
    pd_entry_hdl entry = 0;
    for (const Case &one : cases) {
        Request request = exact_request(1);
        one.spoil(request);
        EXPECT_EQ(pipe_mgr_mat_ent_add(1, target, exact.handle, &request.match, one.action, &request.spec, 0,
                                       0, &entry),
                  TS_MODEL_BAD_ARGUMENT)
            << one.what;
    }
    EXPECT_EQ(ts_model_entry_count(0, exact.handle), 0u);
    Request data_in_indirect{indirect, {0, 1}, {0xff, 0xff}};
    EXPECT_EQ(add(indirect, data_in_indirect, &entry), TS_MODEL_BAD_ARGUMENT);
    Request tagged{metered, Bytes(8, 1), Bytes(8, 0xff)};
    tagged.spec.resource_count = 1;
    tagged.spec.resources[0] = {0x5000001, 0, {}, PIPE_RES_DETACH + 1};
    EXPECT_EQ(add(metered, tagged, &entry), TS_MODEL_BAD_ARGUMENT);
    tagged.spec.resources[0].res_tag = PIPE_RES_DETACH;
    EXPECT_EQ(add(metered, tagged, &entry), TS_MODEL_OK);
    // Nor images that have no room, or a key of another length to look up.
    must_add(exact, exact_request(1));
    EXPECT_EQ(read(exact.handle, 1, 0, 2, 6), "0001 ffff 0 0 33 000000000000 1");
    EXPECT_EQ(read(exact.handle, 1, 0, 1, 6), "3");
    EXPECT_EQ(read(exact.handle, 1, 0, 2, 5), "3");
    ts_model_hit hit{};
    EXPECT_EQ(ts_model_lookup(0, exact.handle, tagged.value.data(), 3, 0, &hit), TS_MODEL_BAD_ARGUMENT);
}

TEST_F(Model, TakesOfActionsWhatTheProgramHas)
{
    constexpr u32 on_miss = 0x2000000b; // which alone may be the default
    Request request{ternary, Bytes(8), Bytes(8)};
    pd_entry_hdl entry = 0;
    for (const u32 action : {ternary.action, exact.action, on_miss})
        EXPECT_EQ(pipe_mgr_mat_default_entry_set(1, target, ternary.handle, action, &request.spec, 0, &entry),
                  action == on_miss ? TS_MODEL_OK : TS_MODEL_BAD_ARGUMENT);
    EXPECT_EQ(entry, u32{TS_MODEL_DEFAULT_ENTRY});
    // The program's default: the first by name among those that may be it; with none that may, the only
    // action.
    EXPECT_EQ(read(reflection::find_table("normalizeDscp")->row->handle, TS_MODEL_DEFAULT_ENTRY),
              "  0 167 0  1");
    EXPECT_EQ(read(exact.handle, TS_MODEL_DEFAULT_ENTRY), "  0 0 33 000000000000 1");
    EXPECT_EQ(read(indirect.handle, TS_MODEL_DEFAULT_ENTRY), "  0 0 0  0");
}

// ---- Look-up --------------------------------------------------------------------------------------------

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

// ---- Faults and system services -------------------------------------------------------------------------

TEST_F(Model, AllocationsFailByNumber)
{
    ts_model_fail_allocation(2);
    void *first = bf_sys_calloc(3, 4);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(static_cast<u8 *>(first)[11], 0);
    EXPECT_EQ(bf_sys_calloc(1, 1), nullptr);
    void *third = bf_sys_calloc(1, 1);
    bf_sys_free(first);
    bf_sys_free(nullptr);
    u64 given = 0, freed = 0;
    ts_model_allocations(&given, &freed);
    EXPECT_EQ(given, 2u);
    EXPECT_EQ(freed, 1u);
    bf_sys_free(third);
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
    pd_mbr_hdl members[] = {7};
    pd_word words[2];
    const auto get = [&](pd_word of, u32 device) { return p4_pd_ms_get_mbr_act(of, device, 7, &action); };
    EXPECT_EQ(p4_pd_ms_new_mbr(1, state, 0, 7), TS_MODEL_OK);
    EXPECT_EQ(p4_pd_ms_new_mbr(1, state, 0, 7), TS_MODEL_ALREADY_EXISTS);
    EXPECT_EQ(get(state, 0), TS_MODEL_UNKNOWN_OBJECT) << "no action yet";
    EXPECT_EQ(p4_pd_ms_set_mbr_act(state, 0, 7, 0x200000bd), TS_MODEL_OK);
    EXPECT_EQ(get(state, 0), TS_MODEL_OK);
    EXPECT_EQ(action, 0x200000bdu);
    EXPECT_EQ(get(state, 1), TS_MODEL_UNKNOWN_OBJECT) << "another device";
    EXPECT_EQ(get(state + 1, 0), TS_MODEL_UNKNOWN_OBJECT) << "another state";
    EXPECT_EQ(p4_pd_ms_mbr_get_res(state, 0, 7, &words[0], &words[1]), TS_MODEL_OK);
    EXPECT_EQ(words[0] + words[1], 0u);

    EXPECT_EQ(p4_pd_ms_add_mbr_to_grp(1, state, 0, 7, 3), TS_MODEL_UNKNOWN_OBJECT);
    EXPECT_EQ(p4_pd_ms_new_grp(1, state, 0, 3), TS_MODEL_OK);
    EXPECT_EQ(p4_pd_ms_add_mbr_to_grp(1, state, 0, 8, 3), TS_MODEL_UNKNOWN_OBJECT);
    EXPECT_EQ(p4_pd_ms_add_mbr_to_grp(1, state, 0, 7, 3), TS_MODEL_OK);
    EXPECT_EQ(p4_pd_ms_add_mbr_to_grp(1, state, 0, 7, 3), TS_MODEL_ALREADY_EXISTS);
    EXPECT_EQ(p4_pd_ms_get_grp_act(state, 0, 3, &action), TS_MODEL_UNKNOWN_OBJECT);
    EXPECT_EQ(p4_pd_ms_set_grp_act(state, 0, 3, 0x200000be), TS_MODEL_OK);
    EXPECT_EQ(p4_pd_ms_get_grp_act(state, 0, 3, &action), TS_MODEL_OK);
    EXPECT_EQ(action, 0x200000beu);
    EXPECT_EQ(p4_pd_ms_grp_get_res(state, 0, 4, &words[0], &words[1]), TS_MODEL_UNKNOWN_OBJECT);

    const p4_pd_ms_grp_cb note = [](u32 device_id, pd_grp_hdl group, pd_word to) {
        reinterpret_cast<Lines *>(to)->push_back(std::to_string(device_id) + " " + std::to_string(group));
        return p4_pd_ms_grp_update_res(device_id, group, 1);
    };
    EXPECT_EQ(p4_pd_ms_mbr_apply_to_grps(state, 0, 7, note, reinterpret_cast<pd_word>(&lines)), TS_MODEL_OK);
    EXPECT_EQ(lines, Lines{"0 3"});
    EXPECT_EQ(p4_pd_ms_del_mbr(1, state, 0, 7), TS_MODEL_OK); // leaves its group
    EXPECT_EQ(document_of(state),
              "{\"members\":[],\"groups\":[{\"handle\":3,\"action\":536871102,\"members\":[]}]}");
    EXPECT_EQ(p4_pd_ms_del_grp(1, state, 0, 3, 1, members), TS_MODEL_OK);
    EXPECT_EQ(p4_pd_ms_destroy_state_for_dev(state, 0), TS_MODEL_OK);
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
                            "{\"members\":[{\"handle\":4294967296,\"action\":0}],\"groups\":[]}",
                            "{\"members\":[],\"groups\":[{\"handle\":1,\"action\":0,\"members\":[9]}]}"}) {
        EXPECT_EQ(restore(other, bad), TS_MODEL_BAD_ARGUMENT) << bad;
        EXPECT_EQ(document_of(other), logged) << bad;
    }
}

} // namespace
