// The members and groups of each profile: what driver and store are told, in which order, and what comes of
// it when one of them refuses.
#include <functional>

#include "call_log.h"
#include "decoder.h"

namespace {

using namespace call_log;
using reflection::MemberFunctions;
using reflection::ProfileFunctions;
using sweep::Bytes;

void update(u32, u32, const void *, pd_word) {}

constexpr u8 canary = 0xa5;

// Where a member is read into, with room behind the record.
struct Output {
    std::array<u8, sizeof(pd_action_out) + 16> bytes;

    Output() { bytes.fill(canary); }
    pd_action_out *record() { return reinterpret_cast<pd_action_out *>(bytes.data()); }
};

const std::string zeroes = " data=" + std::string(56, '0');

class Profiles : public CallLog {
protected:
    Bytes parameters;

    std::string encode(const MemberFunctions &functions, const ActionFacts &facts) const
    {
        EXPECT_EQ(encoder::packed(*functions.row->action), facts.packed);
        return encoder::member_text(*functions.row->action, parameters.data());
    }

    // The driver answers with this action and data. What comes back of it:
    Output expect_output(const MemberFunctions &functions, const ActionFacts &facts)
    {
        parameters = random.parameters(*functions.row->action);
        for (u8 &byte : recorder::answer.data) // behind the image there may be anything
            byte = static_cast<u8>(random.word());
        std::ranges::copy(encoder::encode_data(*functions.row->action, parameters.data()),
                          recorder::answer.data.begin());
        recorder::answer.action = facts.handle;
        Output expected;
        expected.record()->action_number = facts.number;
        u8 *const to = expected.record()->parameters.bytes;
        std::memset(to, 0, parameters.size());
        decoder::read_back_parameters(to, *functions.row->action, parameters.data(), {});
        return expected;
    }

    // Runs `check(functions, facts)` for each action of a profile.
    template <typename Check>
    void each_action(const ProfileFunctions &profile, const ProfileFacts &facts, const Check &check)
    {
        for (const ActionFacts &action : facts.actions) {
            SCOPED_TRACE(action.name);
            const MemberFunctions *functions = reflection::find_action(profile, action.name);
            ASSERT_NE(functions, nullptr);
            EXPECT_EQ(functions->row->action->parameters.empty(), action.packed == 0);
            for (int round = 0; round < 4; ++round) {
                scramble_arguments();
                parameters = random.parameters(*functions->row->action);
                check(*functions, action);
            }
        }
    }
};

// ---- Members -------------------------------------------------------------------------------------------

TEST_F(Profiles, AddTellsTheDriverThenTheStore)
{
    each_profile([&](const ProfileFunctions &profile, const ProfileFacts &facts, pd_word state) {
        each_action(profile, facts, [&](const MemberFunctions &functions, const ActionFacts &action) {
            pd_mbr_hdl added = 0;
            expect_steps(
                {{line("pipe_mgr_adt_ent_add", sess, target, facts.table, action.handle, 0,
                       encode(functions, action), 0)},
                 {line("p4_pd_ms_new_mbr", sess, state, device, recorder::answer.numbers[0]),
                  Failure::ignored},
                 {line("p4_pd_ms_set_mbr_act", state, device, recorder::answer.numbers[0], action.handle),
                  Failure::ignored}},
                [&] { return functions.add(sess, target, {.action = parameters.data()}, &added); });
            EXPECT_EQ(added, recorder::answer.numbers[0]);
        });
    });
}

TEST_F(Profiles, ModifyNeedsTheActionThatTheStoreHas)
{
    each_profile([&](const ProfileFunctions &profile, const ProfileFacts &facts, pd_word state) {
        each_action(profile, facts, [&](const MemberFunctions &functions, const ActionFacts &action) {
            const auto modify = [&] {
                return functions.modify(sess, device, member, {.action = parameters.data()});
            };
            const std::string question = line("p4_pd_ms_get_mbr_act", state, device, member);
            recorder::answer.action = action.handle;
            expect_steps({{question},
                          {line("pipe_mgr_adt_ent_set", sess, device, facts.table, member, action.handle,
                                encode(functions, action), 0)}},
                         modify);
            for (const u32 other : {0u, action.handle - 1, action.handle + 1, ~0u}) {
                recorder::answer.action = other;
                EXPECT_EQ(run(0, 0, modify), 0xffffffff);
                EXPECT_EQ(recorder::lines(), Lines{question});
            }
        });
    });
}

// The image, the call, what the store is asked besides, and what a failure leaves of it all.
TEST_F(Profiles, MembersAreReadBack)
{
    each_profile([&](const ProfileFunctions &profile, const ProfileFacts &facts, pd_word state) {
        each_action(profile, facts, [&](const MemberFunctions &functions, const ActionFacts &action) {
            const Output expected = expect_output(functions, action);
            Output found;
            const u8 from_hw = static_cast<u8>(random.word());
            std::vector<Step> steps{
                {line("pipe_mgr_get_action_data_entry", facts.table, pd_dev_target{device, 0xffff}, member,
                      "bits=0 bytes=28" + zeroes, from_hw)}};
            const Step resources{line("p4_pd_ms_mbr_get_res", state, device, member), Failure::ignored};
            if (action.packed)
                steps.push_back(resources);
            expect_steps(steps, [&] {
                found = {};
                const pd_status status = profile.get_member(sess, device, member, from_hw, found.record());
                EXPECT_EQ(found.bytes, (status ? Output() : expected).bytes);
                return status;
            });

            // Whatever the status is, the answer is read.
            steps = {{line("pipe_mgr_plcmt_adt_data_get_entry", word(this), "bits=0 bytes=0" + zeroes),
                      Failure::tells}};
            expect_steps(steps, [&] {
                found = {};
                const pd_status status = profile.get_member_from_plcmt_data(this, found.record());
                EXPECT_EQ(found.bytes, expected.bytes);
                return status;
            });
            if (action.packed)
                steps.push_back(
                    {line("p4_pd_ms_mbr_get_res", state, device % 256, member), Failure::ignored});
            expect_steps(steps, [&] {
                found = {};
                const pd_status status =
                    profile.get_full_member_info_from_plcmt_data(device, member, this, found.record());
                EXPECT_EQ(found.bytes, expected.bytes);
                return status;
            });
        });
    });
}

TEST_F(Profiles, StoreWithoutAStateIsNotAskedForResources)
{
    each_profile([&](const ProfileFunctions &profile, const ProfileFacts &facts, pd_word state) {
        start(first_state - state); // 0 for this profile
        recorder::answer.action = facts.actions[0].handle;
        Output found;
        EXPECT_EQ(profile.get_full_member_info_from_plcmt_data(1, 2, this, found.record()), 0u);
        EXPECT_EQ(recorder::calls(), 1u);
        EXPECT_EQ(profile.get_member(0, 1, 2, 0, found.record()), 0u);
        EXPECT_EQ(recorder::last(), "p4_pd_ms_mbr_get_res(0, 0x1, 0x2)");
    });
}

// Any other action, those of the other profiles included, gets a line in the log and 15, the driver's status
// or not.
TEST_F(Profiles, ActionsOfOthersCannotBeRead)
{
    each_profile([&](const ProfileFunctions &profile, const ProfileFacts &facts, pd_word) {
        using Read = std::pair<std::string, std::function<pd_status(Output &)>>;
        const Read reads[] = {
            {"get_member", [&](Output &to) { return profile.get_member(1, 2, 3, 0, to.record()); }},
            {"get_member_from_plcmt_data",
             [&](Output &to) { return profile.get_member_from_plcmt_data(this, to.record()); }},
            {"get_full_member_info_from_plcmt_data",
             [&](Output &to) {
                 return profile.get_full_member_info_from_plcmt_data(2, 3, this, to.record());
             }},
        };
        const auto check = [&](u32 handle, const Read &read, std::size_t failing_call) {
            recorder::answer.action = handle;
            recorder::log.clear();
            Output found;
            EXPECT_EQ(run(failing_call, 4, [&] { return read.second(found); }), 15u);
            EXPECT_EQ(found.bytes, Output().bytes);
            EXPECT_EQ(recorder::calls(), 1u);
            ASSERT_EQ(recorder::log.size(), 1u);
            EXPECT_EQ(recorder::log[0].module, 0);
            EXPECT_EQ(recorder::log[0].level, 2);
            EXPECT_TRUE(recorder::log[0].text.starts_with(
                "ASSERTION FAILED: \"((void *)0)\" (NULL) from p4_pd_tessel_switch_" +
                std::string(facts.name) + "_" + read.first + ":"))
                << recorder::log[0].text;
        };
        std::vector<u32> handles{0, 1, ~0u};
        for (const ProfileFacts &other : profiles)
            if (other.name != facts.name)
                for (const ActionFacts &action : other.actions)
                    handles.push_back(action.handle);
        for (const u32 handle : handles)
            for (const Read &read : reads)
                check(handle, read, 0);
        check(0, reads[1], 1);
        check(0, reads[2], 1);
    });
}

// ---- Groups --------------------------------------------------------------------------------------------

TEST_F(Profiles, ChangesTellTheDriverThenTheStore)
{
    each_profile([&](const ProfileFunctions &profile, const ProfileFacts &facts, pd_word state) {
        scramble_arguments();
        const u32 sel = facts.selector, size = random.word();
        pd_grp_hdl created = 0;
        expect_steps({{line("pipe_mgr_adt_ent_del", sess, device, facts.table, member, 0u)},
                      {line("p4_pd_ms_del_mbr", sess, state, device, member), Failure::ignored}},
                     [&] { return profile.del_member(sess, device, member); });
        expect_steps(
            {{line("pipe_mgr_sel_grp_add", sess, target, sel, 0u, size, 0xdeadbeef, 0u)},
             {line("p4_pd_ms_new_grp", sess, state, device, recorder::answer.numbers[0]), Failure::ignored}},
            [&] { return profile.create_group(sess, target, size, &created); });
        EXPECT_EQ(created, recorder::answer.numbers[0]);
        expect_steps({{line("p4_pd_ms_get_mbr_act", state, device, member)},
                      {line("pipe_mgr_sel_grp_mbr_add", sess, device, sel, group, action, member, 0u)},
                      {line("p4_pd_ms_add_mbr_to_grp", sess, state, device, member, group), Failure::ignored},
                      {line("p4_pd_ms_set_grp_act", state, device, group, action), Failure::ignored}},
                     [&] { return profile.add_member_to_group(sess, device, group, member); });
        expect_steps(
            {{line("pipe_mgr_sel_grp_mbr_del", sess, device, sel, group, member, 0u)},
             {line("p4_pd_ms_del_mbr_from_grp", sess, state, device, member, group), Failure::ignored}},
            [&] { return profile.del_member_from_group(sess, device, group, member); });
        expect_steps({{line("pipe_mgr_sel_grp_mbr_enable", sess, device, sel, group, member, 0u)}},
                     [&] { return profile.group_member_state_set(sess, device, group, member, 0); });
        expect_steps({{line("pipe_mgr_sel_grp_mbr_disable", sess, device, sel, group, member, 0u)}},
                     [&] { return profile.group_member_state_set(sess, device, group, member, 1); });
        expect_steps({{line("pipe_mgr_sel_fallback_mbr_set", sess, target, sel, member, 0u)}},
                     [&] { return profile.set_fallback_member(sess, target, member); });
        expect_steps({{line("pipe_mgr_sel_fallback_mbr_reset", sess, target, sel, 0u)}},
                     [&] { return profile.reset_fallback_member(sess, target); });
    });
}

// Members in the driver, members that it lists.
TEST_F(Profiles, GroupsAreDeletedWithTheirMembers)
{
    struct Case {
        u32 count;
        u32 written;
        const char *list;
    };
    each_profile([&](const ProfileFunctions &profile, const ProfileFacts &facts, pd_word state) {
        for (const Case &with :
             {Case{0, 9, "null"}, {1, 1, "[0x65]"}, {3, 3, "[0x65 0x66 0x67]"}, {3, 2, "[0x65 0x66]"}}) {
            SCOPED_TRACE(with.list);
            scramble_arguments();
            recorder::answer.numbers = {with.count, with.written};
            const u32 sel = facts.selector;
            std::vector<Step> steps{{line("pipe_mgr_get_sel_grp_mbr_count", sess, device, sel, group)}};
            if (with.count)
                steps.insert(steps.end(),
                             {{line("bf_sys_calloc", with.count, sizeof(u32))},
                              {line("bf_sys_calloc", with.count, sizeof(u8))},
                              {line("pipe_mgr_sel_grp_mbrs_get", sess, device, sel, group, with.count, 0u)}});
            steps.push_back({line("pipe_mgr_sel_grp_del", sess, device, sel, group, 0u)});
            steps.push_back({line("p4_pd_ms_del_grp", sess, state, device, group,
                                  with.count ? with.written : 0, with.list)});
            expect_steps(steps, [&] { return profile.del_group(sess, device, group); });
        }
    });
}

TEST_F(Profiles, StatesOfMembersAreRead)
{
    each_profile([&](const ProfileFunctions &profile, const ProfileFacts &facts, pd_word) {
        for (const u32 state : {0u, 1u, 2u, ~0u}) {
            scramble_arguments();
            recorder::answer.numbers[0] = state;
            expect_steps(
                {{line("pipe_mgr_sel_grp_mbr_state_get", sess, device, facts.selector, group, member)}}, [&] {
                    u32 found = 0x77;
                    const pd_status status =
                        profile.group_member_state_get(sess, device, group, member, &found);
                    EXPECT_EQ(found, status == 0 && state <= 1 ? state : 0x77);
                    return status;
                });
        }
    });
}

// ---- What is handed on ---------------------------------------------------------------------------------

TEST_F(Profiles, TheRestIsHandedOn)
{
    each_profile([&](const ProfileFunctions &profile, const ProfileFacts &facts, pd_word) {
        scramble_arguments();
        // As wide as they come.
        const pd_word a = ~pd_word{random.word()}, b = ~pd_word{random.word()}, c = ~pd_word{random.word()};
        const u32 sel = facts.selector;
        const pd_word callback = word(&update);
        u32 result = 0, list[4] = {};
        // What counts and walks for entries does so for members and groups.
        const auto expect_walk = [&](u32 table, const auto &count, const auto &first, const auto &next) {
            expect_forwards({{line("pipe_mgr_get_entry_count", sess, target, table, 0),
                              [&] { return count(sess, target, &result); }},
                             {line("pipe_mgr_get_first_entry_handle", sess, table, target),
                              [&] { return first(sess, target, &result); }},
                             {line("pipe_mgr_get_next_entry_handles", sess, table, target, member, 3), [&] {
                                  recorder::answer.numbers = {7, 8, 9, 10};
                                  list[0] = 0;
                                  const pd_status status = next(sess, target, member, 3, list);
                                  EXPECT_EQ(list[0], 7u);
                                  return status;
                              }}});
        };
        expect_walk(facts.table, profile.get_act_prof_entry_count, profile.get_first_member,
                    profile.get_next_members);
        expect_walk(sel, profile.get_selector_group_count, profile.get_first_group, profile.get_next_groups);

        const std::vector<std::pair<std::string, std::function<pd_status()>>> forwards = {
            {line("pipe_register_adt_update_cb", sess, device, facts.table, callback, a),
             [&] { return profile.register_adt_update_cb(sess, device, update, a); }},
            {line("pipe_mgr_plcmt_adt_data_get", a, b, facts.table),
             [&] { return profile.get_plcmt_data(a, b); }},
            {line("pipe_mgr_sel_grp_mbr_get_from_hash", sess, device, sel, group, a, b, c),
             [&] { return profile.group_member_get_from_hash(sess, device, group, a, b, c); }},
            {line("pipe_mgr_sel_tbl_register_cb", 0u, device, sel, callback, a),
             [&] { return profile.sel_track_updates(device, update, a); }},
            {line("pipe_mgr_sel_tbl_register_cb", sess, device, sel, callback, a),
             [&] { return profile.register_callback(sess, device, update, a); }},
            {line("pipe_register_sel_update_cb", sess, device, sel, callback, a),
             [&] { return profile.register_sel_update_cb(sess, device, update, a); }},
            {line("pipe_mgr_get_sel_grp_mbr_count", sess, device, sel, group),
             [&] { return profile.get_selector_group_member_count(sess, device, group, &result); }},
            {line("pipe_mgr_get_first_group_member", sess, sel, device, group),
             [&] { return profile.get_first_group_member(sess, device, group, &result); }},
            {line("pipe_mgr_get_next_group_members", sess, sel, device, group, member, 3u),
             [&] { return profile.get_next_group_members(sess, device, group, member, 3, list); }},
            {line("pipe_mgr_get_word_llp_active_member_count", sess, target, sel, a, b),
             [&] { return profile.get_word_llp_active_member_count(sess, target, a, b); }},
            {line("pipe_mgr_get_word_llp_active_members", sess, target, sel, a, b, c),
             [&] { return profile.get_word_llp_active_members(sess, target, a, b, c); }},
            {line("pipe_mgr_plcmt_sel_data_get", a, b, sel),
             [&] { return profile.sel_get_plcmt_data(a, b); }},
        };
        list[0] = 0;
        expect_forwards(forwards);
        EXPECT_EQ(result, recorder::answer.numbers[0]);
        EXPECT_EQ(list[0], 7u);

        for (const auto &[get, handle] : {std::pair{profile.get_adt_table_handle, facts.table},
                                          std::pair{profile.get_sel_table_handle, sel}}) {
            EXPECT_EQ(run(0, 0, [&, get = get] { return get(&result); }), 0u);
            EXPECT_EQ(result, handle);
            EXPECT_EQ(get(nullptr), 0u);
            EXPECT_EQ(recorder::calls(), 0u);
        }
    });
}

// The exported functions themselves: whatever is easily swapped, as its callers write it.
TEST_F(Profiles, ExportedFunctionsTakeTheirArgumentsInThisOrder)
{
    recorder::answer.action = 9;
    recorder::answer.numbers[0] = 8;
    const p4_pd_tessel_switch_setEcmpNextHop_action_spec_t next_hop{.action_nextHopTable = 0xfe,
                                                                    .action_nextHop = 0x12345678};
    pd_mbr_hdl added = 0, next[6];
    p4_pd_tessel_switch_lagPortActionProfile_member_action_t read;
    p4_pd_tessel_switch_ecmpMemberActionProfile_add_member_with_setEcmpNextHop(1, {2, 3}, &next_hop, &added);
    EXPECT_NE(recorder::lines()[0].find("data=fe12345678 "), std::string::npos);
    recorder::forget();
    p4_pd_tessel_switch_lagPortActionProfile_add_member_to_group(1, 2, 4, 5);
    p4_pd_tessel_switch_lagPortActionProfile_del_member_from_group(1, 2, 4, 5);
    p4_pd_tessel_switch_lagPortActionProfile_group_member_state_set(1, 2, 4, 5, 0);
    p4_pd_tessel_switch_lagPortActionProfile_group_member_state_get(1, 2, 4, 5, &added);
    p4_pd_tessel_switch_lagPortActionProfile_get_next_group_members(1, 2, 4, 5, 6, next);
    p4_pd_tessel_switch_lagPortActionProfile_group_member_get_from_hash(1, 2, 4, 5, 6, 7);
    p4_pd_tessel_switch_lagPortActionProfile_set_dynamic_action_selection_fallback_member(1, {2, 3}, 5);
    p4_pd_tessel_switch_lagPortActionProfile_reset_dynamic_action_selection_fallback_member(1, {2, 3});
    p4_pd_tessel_switch_lagPortActionProfile_get_full_member_info_from_plcmt_data(2, 5, nullptr, &read);
    p4_pd_tessel_switch_lagPortActionProfile_modify_member_with_setTunnelInfo(1, 2, 5);
    p4_pd_tessel_switch_lagPortActionProfile_del_member(1, 2, 5);
    EXPECT_EQ(
        recorder::lines(),
        (Lines{"p4_pd_ms_get_mbr_act(0x54, 0x2, 0x5)",
               "pipe_mgr_sel_grp_mbr_add(0x1, 0x2, 0x3000003, 0x4, 0x9, 0x5, 0)",
               "p4_pd_ms_add_mbr_to_grp(0x1, 0x54, 0x2, 0x5, 0x4)",
               "p4_pd_ms_set_grp_act(0x54, 0x2, 0x4, 0x9)",
               "pipe_mgr_sel_grp_mbr_del(0x1, 0x2, 0x3000003, 0x4, 0x5, 0)",
               "p4_pd_ms_del_mbr_from_grp(0x1, 0x54, 0x2, 0x5, 0x4)",
               "pipe_mgr_sel_grp_mbr_enable(0x1, 0x2, 0x3000003, 0x4, 0x5, 0)",
               "pipe_mgr_sel_grp_mbr_state_get(0x1, 0x2, 0x3000003, 0x4, 0x5)",
               "pipe_mgr_get_next_group_members(0x1, 0x3000003, 0x2, 0x4, 0x5, 0x6)",
               "pipe_mgr_sel_grp_mbr_get_from_hash(0x1, 0x2, 0x3000003, 0x4, 0x5, 0x6, 0x7)",
               "pipe_mgr_sel_fallback_mbr_set(0x1, 0x2:0x3, 0x3000003, 0x5, 0)",
               "pipe_mgr_sel_fallback_mbr_reset(0x1, 0x2:0x3, 0x3000003, 0)",
               line("pipe_mgr_plcmt_adt_data_get_entry", 0u, "bits=0 bytes=0" + zeroes),
               "p4_pd_ms_get_mbr_act(0x54, 0x2, 0x5)", "pipe_mgr_adt_ent_del(0x1, 0x2, 0x2000037, 0x5, 0)",
               "p4_pd_ms_del_mbr(0x1, 0x54, 0x2, 0x5)"}));
}

} // namespace
