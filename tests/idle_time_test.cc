// The tables whose entries age.
#include "call_log.h"

namespace {

using namespace call_log;

constexpr Facts ageing[] = {
    {"l2LearningLookup", 0x1000015},      {"ipv6ShortMaskLpm", 0x1000021},
    {"dynamicDnat1", 0x1000022},          {"ipv4Host", 0x1000023},
    {"dynamicDnat2", 0x1000030},          {"dynamicAddrOnlyDnat", 0x1000032},
    {"ipv4Partition0", 0x1000031},        {"ipv4FinalResolve0", 0x100003c},
    {"ipv4ShortMaskLpm", 0x100003d},      {"dynamicSnat1", 0x100003e},
    {"dynamicSnat2", 0x100004a},          {"ipv4McGroupVlan", 0x100004c},
    {"ipv4McSourceGroupVlan", 0x100005e}, {"twiceNatRewrite", 0x1000062},
    {"dynamicAddrOnlySnat", 0x1000064},
};

void idle(u32, u32, pd_entry_hdl, pd_word) {}

class IdleTime : public CallLog {
protected:
    // Runs `check(functions, handle)` for each ageing table.
    template <typename Check>
    void each_table(const Check &check)
    {
        for (const Facts &facts : ageing) {
            SCOPED_TRACE(facts.name);
            const reflection::TableFunctions *table = reflection::find_table(facts.name);
            ASSERT_TRUE(table && table->idle);
            scramble_arguments();
            check(*table->idle, facts.handle);
        }
    }
};

TEST_F(IdleTime, OtherTablesDoNotAge)
{
    const auto tables = reflection::tables();
    EXPECT_EQ(std::count_if(tables.begin(), tables.end(), [](const auto *table) { return table->idle; }),
              static_cast<long>(std::size(ageing)));
}

TEST_F(IdleTime, ParametersAreSetBeforeAgeingIsEnabled)
{
    each_table([&](const reflection::IdleFunctions &table, u32 handle) {
        const pd_idle_params params{11, 12, 13, 14, 15, 0xfffffff0, 0xff};
        expect_steps(
            {{line("pipe_mgr_idle_set_params", sess, device, handle, "{0xb 0xc 0xd 0xe 0xf 0 0xfffffff0 0}")},
             {line("pipe_mgr_idle_tmo_set_enable", sess, device, handle, 1)}},
            [&] { return table.tmo_enable(sess, device, params); });
        expect_steps({{line("pipe_mgr_idle_tmo_set_enable", sess, device, handle, 0)}},
                     [&] { return table.tmo_disable(sess, device); });
    });
}

TEST_F(IdleTime, ParametersAreReadInTheModeThatHasThem)
{
    const pd_idle_params untouched{91, 92, 93, 94, 95, 96, 97};
    const auto expect = [](const pd_idle_params &found, const pd_idle_params &expected) {
        EXPECT_EQ(found.idle_flag, expected.idle_flag);
        EXPECT_EQ(std::memcmp(&found, &expected, offsetof(pd_idle_params, idle_flag)), 0);
    };
    each_table([&](const reflection::IdleFunctions &table, u32 handle) {
        for (const u32 mode : {0u, 1u, 2u, 0xffffffffu}) {
            recorder::answer.idle = {mode, 12, 13, 14, 15, 16, 17, 18};
            expect_steps({{line("pipe_mgr_idle_get_params", sess, device, handle, "{0 0 0 0 0 0 0 0}")}},
                         [&] {
                             pd_idle_params params = untouched;
                             const pd_status status = table.params_get(sess, device, &params);
                             pd_idle_params expected = untouched;
                             if (!status && mode == 1)
                                 expected = {1, 12, 13, 14, 15, 17, 0};
                             else if (!status)
                                 expected.idle_mode = mode;
                             expect(params, expected);
                             return status;
                         });
        }
    });
}

TEST_F(IdleTime, EntriesHaveATimeToLiveAndAHitState)
{
    each_table([&](const reflection::IdleFunctions &table, u32 handle) {
        const u32 ttl = random.word(), answer = random.word();
        recorder::answer.numbers[0] = answer;
        u32 found = 0;
        expect_forwards({
            {line("pipe_mgr_idle_register_tmo_cb", sess, device, handle, word(&idle), cookie),
             [&] { return table.register_tmo_cb(sess, device, idle, cookie); }},
            {line("pipe_mgr_mat_ent_set_idle_ttl", sess, device, handle, member, ttl, 0, 0),
             [&] { return table.set_ttl(sess, device, member, ttl); }},
            {line("pipe_mgr_mat_ent_reset_idle_ttl", sess, device, handle, member),
             [&] { return table.reset_ttl(sess, device, member); }},
            {line("pipe_mgr_idle_time_update_hit_state", sess, device, handle, cookie, ttl),
             [&] { return table.update_hit_state(sess, device, cookie, ttl); }},
            {line("pipe_mgr_mat_ent_get_idle_ttl", sess, device, handle, member),
             [&] { return table.get_ttl(sess, device, member, &found); }},
        });
        EXPECT_EQ(found, answer);
        // Written whether the driver refuses or not.
        expect_steps({{line("pipe_mgr_idle_time_get_hit_state", sess, device, handle, member)}}, [&] {
            found = ~answer;
            const pd_status status = table.get_hit_state(sess, device, member, &found);
            EXPECT_EQ(found, answer);
            return status;
        });
    });
}

} // namespace
