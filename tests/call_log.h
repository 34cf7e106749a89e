// Tests of calls: every call of the driver, the store and the system's memory in order, with each of them
// failing in turn; the rows of profiles and resources as the chip has them.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "encoder.h"
#include "pd.h"
#include "random_records.h"
#include "recorder.h"
#include "reflection.h"

namespace call_log {

using recorder::assertion;
using recorder::line;
using recorder::Lines;
using recorder::word;

struct ActionFacts {
    std::string_view name;
    u32 handle;
    u32 number;
    u32 packed; // bytes of the image in the high half, valid bits in the low half
};

struct ProfileFacts {
    std::string_view name;
    u32 table;
    u32 selector;
    std::vector<ActionFacts> actions;
    std::string_view user; // the match table
};

// In the order in which their states are made.
inline const std::vector<ProfileFacts> profiles{
    {"egrMirrorLagPortActionProfile",
     0x200003c,
     0x3000004,
     {{"setEgrLagMemberSelector", 0x20000159, 111, 0x2000a}, {"NoAction", 0x2000015a, 3, 0}},
     "egressMirrorLagGroup"},
    {"ecmpMemberActionProfile",
     0x200001d,
     0x3000001,
     {{"setEcmpNextHop", 0x200000bd, 166, 0x50028}, {"NoAction", 0x200000be, 3, 0}},
     "ecmpGroup"},
    {"mirrorLagPortActionProfile",
     0x2000028,
     0x3000002,
     {{"setLagMemberSelector", 0x200000da, 192, 0x2000a}, {"NoAction", 0x200000db, 3, 0}},
     "ingressMirrorLagGroup"},
    {"lagPortActionProfile",
     0x2000037,
     0x3000003,
     {{"setLagPort", 0x2000012d, 278, 0x20009},
      {"setPhysicalPort", 0x2000012e, 279, 0},
      {"setTunnelInfo", 0x2000012f, 280, 0},
      {"invalidateUcastEgressPort", 0x20000130, 281, 0},
      {"fixL2SubintfAlignment", 0x20000131, 282, 0}},
     "lagGroup"},
};

inline constexpr pd_word first_state = 0x51;

// As wide as they come; only ever compared.
inline constexpr pd_word cookie = ~pd_word{0} - 0x1234;

// A call that is to come, and what its failure does.
enum class Failure {
    ends,    // the function returns the status at once; without memory it returns 2
    quits,   // the function returns at once and tells nothing
    tells,   // the function goes on and returns the status
    ignored, // the function goes on
    untested
};
struct Step {
    std::string line;
    Failure failure = Failure::ends;

    bool takes_memory() const { return line.starts_with("bf_sys_calloc("); }
};

inline Lines without_memory(Lines lines)
{
    std::erase_if(lines, [](const std::string &line) { return Step{line}.takes_memory(); });
    return lines;
}

// A resource as the chip has it.
struct Facts {
    const char *name;
    u32 handle;
    bool direct = false;
};

// A started library with states from first_state on, and random arguments.
class CallLog : public testing::Test {
protected:
    sweep::Random random;
    pd_sess_hdl sess = 0;
    pd_dev_target target{};
    u32 device = 0;
    u32 member = 0;
    u32 group = 0;
    u32 cell = 0;
    u32 action = 0;                 // as the driver and the store answer
    bool counts_allocations = true; // false where the function of a test makes some itself

    void SetUp() override { start(first_state); }

    void start(pd_word state)
    {
        recorder::reset();
        recorder::next_state = state;
        p4_pd_tessel_switch_init();
        recorder::forget();
    }

    void scramble_arguments()
    {
        sess = random.word();
        target = {random.word(), random.word()};
        device = target.device_id;
        member = random.word();
        group = random.word();
        cell = random.word();
        recorder::answer.numbers[0] = random.word();
        recorder::answer.action = action = random.word();
    }

    // The call alone, its status returned.
    template <typename Function>
    static pd_status run(std::size_t failing_call, pd_status failing_status, const Function &function)
    {
        recorder::forget();
        recorder::failing_call = failing_call;
        recorder::failing_status = failing_status;
        const pd_status status = function();
        recorder::failing_call = 0;
        return status;
    }

    // The steps and no others when nothing fails, then with each of them failing. Nothing but what the steps
    // say is allocated, and nothing stays so.
    template <typename Function>
    void expect_steps(const std::vector<Step> &steps, const Function &function)
    {
        Lines lines;
        for (const Step &step : steps)
            lines.push_back(step.line);
        EXPECT_EQ(run(0, 0, function), 0u);
        EXPECT_EQ(recorder::lines(), lines);
        EXPECT_EQ(recorder::live_blocks(), 0u);
        const u64 before = recorder::allocations; // the first run may have had to find functions
        run(0, 0, function);
        EXPECT_TRUE(!counts_allocations || !recorder::log.empty() ||
                    recorder::allocations - before ==
                        static_cast<u64>(std::ranges::count_if(steps, &Step::takes_memory)));
        for (std::size_t i = 0; i < steps.size(); ++i)
            for (const pd_status status : {1u, 0xffffffffu})
                if (steps[i].failure != Failure::untested) {
                    SCOPED_TRACE(testing::Message() << "failing call " << i + 1 << " seed " << sweep::seed);
                    expect_failure(steps[i], lines, i, status, run(i + 1, status, function));
                }
    }

    // One call of the driver each.
    void expect_forwards(const std::vector<std::pair<std::string, std::function<pd_status()>>> &forwards)
    {
        for (const auto &[expected, function] : forwards)
            expect_steps({{expected}}, function);
    }

    // Runs `check(profile, facts, state)` for each profile.
    template <typename Check>
    void each_profile(const Check &check)
    {
        ASSERT_EQ(reflection::profiles().size(), profiles.size());
        pd_word state = first_state;
        for (const ProfileFacts &facts : profiles) {
            SCOPED_TRACE(facts.name);
            const reflection::ProfileFunctions *profile = reflection::find_profile(facts.name);
            ASSERT_NE(profile, nullptr);
            ASSERT_EQ(profile->actions.size(), facts.actions.size());
            check(*profile, facts, state++);
        }
    }

    // Runs `check(functions, facts)` with random arguments for each row, and there are no others.
    template <typename Functions, typename Row, std::size_t size, typename Check>
    void each(std::span<const Functions> all, const Row (&rows)[size], const Check &check)
    {
        ASSERT_EQ(all.size(), size);
        for (const Row &row : rows) {
            SCOPED_TRACE(row.name);
            const auto found = std::find_if(all.begin(), all.end(), [&](const Functions &functions) {
                return std::string_view(functions.row->name) == row.name;
            });
            ASSERT_NE(found, all.end());
            scramble_arguments();
            check(*found, row);
        }
    }

private:
    static void expect_failure(const Step &failing, const Lines &lines, std::size_t at, pd_status status,
                               pd_status result)
    {
        const bool over = failing.failure == Failure::ends || failing.failure == Failure::quits;
        const bool told = failing.failure == Failure::ends || failing.failure == Failure::tells;
        const Lines expected = over ? Lines(lines.begin(), lines.begin() + at + 1) : lines;
        if (failing.takes_memory()) { // when the next allocation is made before this one is looked at
            EXPECT_EQ(result, 2u);
            EXPECT_EQ(without_memory(recorder::lines()), without_memory(expected));
        } else {
            EXPECT_EQ(result, told ? status : 0);
            EXPECT_EQ(recorder::lines(), expected);
        }
        EXPECT_EQ(recorder::live_blocks(), 0u);
    }
};

} // namespace call_log
