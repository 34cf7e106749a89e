// The state of members and groups after a restart: what the driver gets to call back, and what a call tells
// the store.
#include "call_log.h"
#include "pd_ms.h"

namespace {

using namespace call_log;

class Restore : public CallLog {
protected:
    u32 given = 0; // the action that comes with a call
    u32 resources = 0;

    void SetUp() override
    {
        CallLog::SetUp();
        EXPECT_EQ(p4_pd_tessel_switch_restore_virtual_dev_state(1, 2, 3, 4, 5), 0u);
        ASSERT_NE(recorder::restore, nullptr);
    }

    pd_status restore(u32 table)
    {
        recorder::restore(sess, device, table, given, group, member, resources);
        return 0;
    }

    // The store's answers are ignored, but for the one that the next call needs.
    std::vector<Step> steps_of_branch(pd_word state) const
    {
        if (member && group)
            return {{line("p4_pd_ms_add_mbr_to_grp", sess, state, device, member, group), Failure::ignored},
                    {line("p4_pd_ms_get_mbr_act", state, device, member), Failure::quits},
                    {line("p4_pd_ms_set_grp_act", state, device, group, action), Failure::ignored}};
        if (member)
            return {{line("p4_pd_ms_new_mbr", sess, state, device, member), Failure::ignored},
                    {line("p4_pd_ms_set_mbr_act", state, device, member, given), Failure::ignored}};
        if (group)
            return {{line("p4_pd_ms_new_grp", sess, state, device, group), Failure::ignored}};
        return {};
    }

    void expect_call(const ProfileFacts &facts, pd_word state, bool updates_groups)
    {
        std::vector<Step> steps = steps_of_branch(state);
        if (updates_groups)
            steps.push_back({line("p4_pd_ms_mbr_apply_to_grps", state, device, member,
                                  word(&p4_pd_ms_grp_update_res), state),
                             Failure::ignored});
        expect_steps(steps, [&] { return restore(facts.table); });
    }
};

TEST_F(Restore, WordsAreHandedOnWithTheCallback)
{
    const pd_word first = ~pd_word{1};
    const pipe_restore_state_cb callback = recorder::restore;
    expect_steps({{line("pipe_mgr_hitless_ha_restore_virtual_dev_state", first, first - 1, first - 2,
                        first - 3, first - 4, "own")}},
                 [&] {
                     recorder::restore = nullptr;
                     return p4_pd_tessel_switch_restore_virtual_dev_state(first, first - 1, first - 2,
                                                                          first - 3, first - 4);
                 });
    EXPECT_EQ(recorder::restore, callback);
}

// Member, group, both and neither, with each action and the handles around them, with resources and without.
TEST_F(Restore, EachBranchTellsTheStore)
{
    each_profile([&](const reflection::ProfileFunctions &, const ProfileFacts &facts, pd_word state) {
        std::vector<u32> own;
        for (const ActionFacts &its : facts.actions)
            own.push_back(its.handle);
        std::vector<u32> handles = own;
        handles.insert(handles.end(), {0, std::ranges::min(own) - 1, std::ranges::max(own) + 1, ~0u});
        for (const u32 handle : handles)
            for (const u32 which : {0u, 1u, 2u, 3u})
                for (const u32 with : {0u, 1u, 0x80000000u}) {
                    scramble_arguments();
                    SCOPED_TRACE(testing::Message()
                                 << "action " << handle << " which " << which << " resources " << with);
                    given = handle;
                    member *= which & 1;
                    group *= which >> 1;
                    resources = with;
                    expect_call(facts, state, with != 0 && std::ranges::count(own, handle) != 0);
                }
    });
}

TEST_F(Restore, OtherTablesAreNotLookedAt)
{
    scramble_arguments();
    given = profiles[0].actions[0].handle;
    resources = 1;
    for (const ProfileFacts &facts : profiles)
        for (const u32 table : {0u, facts.table + 1, facts.table - 1, facts.selector}) {
            recorder::forget();
            restore(table);
            EXPECT_EQ(recorder::calls(), 0u) << table;
        }
}

} // namespace
