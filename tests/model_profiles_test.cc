// The model's action profiles by themselves: members, groups, entries that point at them.
#include "model.h"

#include <gtest/gtest.h>

#include <functional>

#include "model_tables.h"

namespace {

constexpr pd_dev_target target{0, PIPE_ALL_PIPES};
constexpr u32 adt = 0x200001d, sel = 0x3000001; // of ecmpMemberActionProfile
constexpr u32 next_hop = 0x200000bd, no_action = 0x200000be;
constexpr u32 set_physical_port = 0x2000012e; // of lagPortActionProfile
constexpr u8 of_member = PIPE_ACTION_MEMBER, of_group = PIPE_ACTION_GROUP;
using Handles = std::vector<u32>;

template <typename T>
pd_word word(T *address)
{
    return reinterpret_cast<pd_word>(address);
}

pd_status add(u32 action, u16 bytes = 5, u16 bits = 40, u32 table = adt, u8 kind = 0)
{
    u8 data[] = {7, 0, 0, 1, 7};
    pipe_action_spec spec{kind, 0, {bits, bytes, data}, 0, 0, {}};
    pd_mbr_hdl made = 0;
    return pipe_mgr_adt_ent_add(1, target, table, action, 0, &spec, &made, 0);
}

pd_status set(pd_mbr_hdl member, u32 action)
{
    u8 data[] = {9, 0, 0, 1, 9};
    const u16 bytes = action == next_hop ? 5 : 0;
    pipe_action_spec spec{0, 0, {u16(bytes * 8), bytes, data}, 0, 0, {}};
    return pipe_mgr_adt_ent_set(1, 0, adt, member, action, &spec, 0);
}

pd_status add_group(u32 max_size)
{
    pd_grp_hdl made = 0;
    return pipe_mgr_sel_grp_add(1, target, sel, 0, max_size, 0xdeadbeef, &made, 0);
}

pd_status join(pd_grp_hdl group, pd_mbr_hdl member, u32 action = next_hop)
{
    return pipe_mgr_sel_grp_mbr_add(1, 0, sel, group, action, member, 0);
}

// The operations on a group's member, on members and on groups, but for what is the same in all calls.
template <auto operation>
pd_status on_member(pd_grp_hdl group, pd_mbr_hdl member)
{
    return operation(1, 0, sel, group, member, 0);
}

constexpr auto leave = on_member<pipe_mgr_sel_grp_mbr_del>;
constexpr auto enable = on_member<pipe_mgr_sel_grp_mbr_enable>;
constexpr auto disable = on_member<pipe_mgr_sel_grp_mbr_disable>;
constexpr auto fall_back = [](u32 member) {
    return pipe_mgr_sel_fallback_mbr_set(1, target, sel, member, 0);
};
constexpr auto no_fallback = [] { return pipe_mgr_sel_fallback_mbr_reset(1, target, sel, 0); };
constexpr auto del_member = [](u32 member) { return pipe_mgr_adt_ent_del(1, 0, adt, member, 0); };
constexpr auto del_group = [](u32 group) { return pipe_mgr_sel_grp_del(1, 0, sel, group, 0); };

// Hands the key of an entry, what it points at and a place for a handle to `write`.
template <typename Write>
pd_status point(u8 key, u8 kind, u32 handle, Write write)
{
    u8 value[] = {0, key}, mask[] = {0xff, 0xff};
    pipe_match_spec match{value, mask, 0, 0, 14, 2, 0};
    pipe_action_spec spec{kind, 0, {}, kind == of_member ? handle : 0, kind == of_group ? handle : 0, {}};
    pd_entry_hdl entry = 0;
    return write(&match, &spec, &entry);
}

pd_status add_entry(u8 key, u8 kind, u32 handle, u32 action = next_hop)
{
    return point(key, kind, handle, [&](auto match, auto spec, auto entry) {
        return pipe_mgr_mat_ent_add(1, target, indirect.handle, match, action, spec, 0, 0, entry);
    });
}

pd_status set_default(u8 kind, u32 handle, u32 action = next_hop)
{
    return point(0, kind, handle, [&](auto, auto spec, auto entry) {
        return pipe_mgr_mat_default_entry_set(1, target, indirect.handle, action, spec, 0, entry);
    });
}

std::string text(const Handles &handles)
{
    std::string all;
    for (const u32 handle : handles)
        all += std::to_string(handle) + " ";
    return all;
}

Handles walk(u32 table)
{
    u32 count = 0;
    pipe_mgr_get_entry_count(1, target, table, 0, &count);
    Handles all(count + 2, 99);
    pipe_mgr_get_first_entry_handle(1, table, target, &all[0]);
    pipe_mgr_get_next_entry_handles(1, table, target, all[0], count + 1, &all[1]);
    EXPECT_EQ(Handles(all.begin() + count, all.end()), Handles(2)) << "behind the last";
    all.resize(count);
    return all;
}

// Its members in order and their states, by each way to read them.
std::string members_of(pd_grp_hdl group)
{
    u32 count = 0, written = 99;
    pipe_mgr_get_sel_grp_mbr_count(1, 0, sel, group, &count);
    Handles listed(count + 1), walked(count + 1, 99), told(count);
    Bytes states(count + 1);
    pipe_mgr_sel_grp_mbrs_get(1, 0, sel, group, count + 1, listed.data(), states.data(), &written, 0);
    EXPECT_EQ(written, count);
    pipe_mgr_get_first_group_member(1, sel, 0, group, &walked[0]);
    pipe_mgr_get_next_group_members(1, sel, 0, group, walked[0], count, &walked[1]);
    EXPECT_EQ(walked, listed);
    for (u32 at = 0; at < count; ++at)
        pipe_mgr_sel_grp_mbr_state_get(1, 0, sel, group, listed[at], &told[at]);
    EXPECT_EQ(told, Handles(states.begin(), states.begin() + count));
    return text(listed) + text(told);
}

std::string data_of(pd_mbr_hdl member, u8 from_hw)
{
    Bytes image(28);
    pipe_action_data data{0, 28, image.data()};
    u32 action = 0;
    EXPECT_EQ(pipe_mgr_get_action_data_entry(adt, target, member, &data, &action, from_hw), TS_MODEL_OK);
    return text({action, data.num_valid_bits}) + text({image.begin(), image.begin() + data.num_bytes});
}

// All that can be told of the profile and its table.
std::string state()
{
    std::string all = text({ts_model_fallback_member(0, sel), ts_model_entry_count(0, indirect.handle)});
    for (const u32 member : walk(adt))
        all += "\nmember " + text({member, ts_model_references(0, adt, member)}) + data_of(member, 0);
    for (const u32 group : walk(sel))
        all += "\ngroup " + text({group, ts_model_references(0, sel, group)}) + members_of(group);
    return all;
}

class Profiles : public testing::Test {
protected:
    // Members 1 to 4, of which 2 has no data; group 1 of at most two, with member 1; group 2, empty, that an
    // entry points at; member 3 the default; member 4 the fallback.
    Profiles()
    {
        ts_model_reset();
        EXPECT_EQ(add(next_hop) + add(no_action, 0, 0) + add(next_hop) + add(next_hop), TS_MODEL_OK);
        EXPECT_EQ(add_group(2) + add_group(8) + join(1, 1) + fall_back(4), TS_MODEL_OK);
        EXPECT_EQ(add_entry(1, of_group, 2) + set_default(of_member, 3), TS_MODEL_OK);
    }
    ~Profiles() override { ts_model_reset(); }
};

struct Call {
    const char *what;
    std::function<pd_status()> call;
};

TEST_F(Profiles, WhatIsWrongIsRefusedAndChangesNothing)
{
    u32 out = 0;
    const std::pair<pd_status, std::vector<Call>> refused[] = {
        {TS_MODEL_BAD_ARGUMENT,
         {{"action of another profile", [] { return add(set_physical_port, 0, 0); }},
          {"short image", [] { return add(next_hop, 4); }},
          {"wrong width", [] { return add(next_hop, 5, 39); }},
          {"kind", [] { return add(next_hop, 5, 40, adt, 1); }},
          {"set with another action", [] { return set(1, no_action); }},
          {"join with another's action", [] { return join(1, 3, no_action); }},
          {"entry with another's action", [] { return add_entry(2, of_member, 1, no_action); }},
          {"no out word", [] { return pipe_mgr_get_sel_grp_mbr_count(1, 0, sel, 1, nullptr); }}}},
        {TS_MODEL_UNKNOWN_OBJECT,
         {{"member of a selector", [] { return add(next_hop, 5, 40, sel); }},
          {"set", [] { return set(5, next_hop); }},
          {"delete member", [] { return del_member(5); }},
          {"delete group", [] { return del_group(3); }},
          {"join no group", [] { return join(3, 1); }},
          {"no member joins", [] { return join(1, 5); }},
          {"leave", [] { return leave(1, 3); }},
          {"enable", [] { return enable(1, 3); }},
          {"disable", [] { return disable(2, 1); }},
          {"fallback", [] { return fall_back(5); }},
          {"entry of no member", [] { return add_entry(2, of_member, 5); }},
          {"entry of no group", [] { return add_entry(2, of_group, 3); }},
          {"default of no member", [] { return set_default(of_member, 0); }},
          {"walk", [&] { return pipe_mgr_get_next_group_members(1, sel, 0, 1, 3, 1, &out); }},
          {"pick", [&] { return pipe_mgr_sel_grp_mbr_get_from_hash(1, 0, sel, 3, 0, 0, word(&out)); }},
          {"device", [&] { return pipe_mgr_get_sel_grp_mbr_count(1, 256, sel, 1, &out); }}}},
        {TS_MODEL_IN_USE,
         {{"a group has it", [] { return del_member(1); }},
          {"the default has it", [] { return del_member(3); }},
          {"the fallback", [] { return del_member(4); }},
          {"an entry has the group", [] { return del_group(2); }}}},
        {TS_MODEL_ALREADY_EXISTS, {{"join twice", [] { return join(1, 1); }}}},
    };
    const std::string before = state();
    for (const auto &[status, calls] : refused)
        for (const Call &one : calls) {
            EXPECT_EQ(one.call(), status) << one.what;
            EXPECT_EQ(state(), before) << one.what;
        }
    EXPECT_EQ(join(1, 3), TS_MODEL_OK);
    EXPECT_EQ(join(1, 4), TS_MODEL_NO_SPACE);
}

TEST_F(Profiles, EachChangeFailsWithoutEffectOrIsTold)
{
    Lines heard;
    const auto note = [](u32, u32 table, const void *update, pd_word cookie) {
        const auto &told = *static_cast<const ts_model_profile_update *>(update);
        walk(table); // a callback may make driver calls
        reinterpret_cast<Lines *>(cookie)->push_back(
            text({told.kind, told.group, told.member, told.action & 0xff, told.data_bytes}));
    };
    pipe_register_adt_update_cb(1, 0, adt, note, word(&heard));
    pipe_register_sel_update_cb(1, 0, sel, note, word(&heard));
    for (const auto callback : {+note, pipe_sel_tbl_cb{nullptr}, +note})
        pipe_mgr_sel_tbl_register_cb(1, 0, sel, callback, word(&heard));
    const Call calls[] = {
        {"pipe_mgr_adt_ent_add", [] { return add(next_hop); }},
        {"pipe_mgr_adt_ent_set", [] { return set(5, next_hop); }},
        {"pipe_mgr_sel_grp_add", [] { return add_group(1); }},
        {"pipe_mgr_sel_grp_mbr_add", [] { return join(1, 5); }},
        {"pipe_mgr_sel_grp_mbr_disable", [] { return disable(1, 5); }},
        {"pipe_mgr_sel_grp_mbr_enable", [] { return enable(1, 5); }},
        {"pipe_mgr_sel_grp_mbr_del", [] { return leave(1, 1); }},
        {"pipe_mgr_sel_fallback_mbr_set", [] { return fall_back(2); }},
        {"pipe_mgr_sel_fallback_mbr_reset", no_fallback},
        {"pipe_mgr_sel_grp_del", [] { return del_group(1); }},
        {"pipe_mgr_adt_ent_del", [] { return del_member(5); }},
        {"pipe_mgr_mat_default_entry_set", [] { return set_default(of_group, 2, no_action); }},
        {"pipe_mgr_mat_ent_add", [] { return add_entry(2, of_member, 1); }},
    };
    for (const Call &one : calls) {
        const std::string before = state();
        EXPECT_EQ(one.call(), TS_MODEL_OK) << one.what;
        EXPECT_NE(state(), before) << one.what;
    }
    Lines expected{"1 0 5 189 5 ", "2 0 5 189 5 "};
    for (const char *twice : {"4 3 0 0 0 ", "6 1 5 189 5 ", "9 1 5 189 5 ", "8 1 5 189 5 ", "7 1 1 189 5 ",
                              "10 0 2 190 0 ", "11 0 0 0 0 ", "5 1 0 0 0 "})
        expected.insert(expected.end(), 2, twice);
    expected.push_back("3 0 5 189 5 ");
    EXPECT_EQ(heard, expected);
}

TEST_F(Profiles, HardwareCopyAndPlacement)
{
    EXPECT_EQ(data_of(2, 1), "536871102 0 ");
    EXPECT_EQ(ts_model_set_hardware_member(0, adt, 1, no_action, nullptr, 0), TS_MODEL_OK);
    EXPECT_EQ(ts_model_set_hardware_member(0, adt, 1, next_hop, nullptr, 5), TS_MODEL_BAD_ARGUMENT);
    EXPECT_EQ(data_of(1, 0) + data_of(1, 1), "536871101 40 7 0 0 1 7 536871102 0 ");

    ts_model_plcmt_request one{0, 1, nullptr}, group{0, 1, nullptr};
    ASSERT_EQ(pipe_mgr_plcmt_adt_data_get(word(&one), 0, adt), TS_MODEL_OK);
    ASSERT_EQ(pipe_mgr_plcmt_sel_data_get(word(&group), 0, sel), TS_MODEL_OK);
    set(1, next_hop);
    EXPECT_EQ(data_of(1, 1), "536871101 40 9 0 0 1 9 ") << "in step again";
    Bytes image(5);
    pipe_action_data data{0, 0, image.data()};
    u32 action = 0, member = 0;
    EXPECT_EQ(pipe_mgr_plcmt_adt_data_get_entry(group.data, &data, &action), TS_MODEL_BAD_ARGUMENT);
    EXPECT_EQ(pipe_mgr_plcmt_adt_data_get_entry(one.data, &data, &action), TS_MODEL_OK);
    EXPECT_EQ(text({action, data.num_valid_bits, data.num_bytes, image[0]}), "536871101 40 5 7 ");
    EXPECT_EQ(ts_model_plcmt_group(group.data, &member, 1), 1u);
    EXPECT_EQ(member, 1u);
    ts_model_free_plcmt_data(one.data);
    ts_model_free_plcmt_data(group.data);
}

} // namespace
