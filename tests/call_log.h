// Tests of members, groups and the entries that point at them: every call of driver and store in order, with
// each of them failing in turn.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "capture_driver.h"
#include "capture_services.h"
#include "encoder.h"
#include "pd.h"
#include "random_records.h"
#include "reflection.h"

namespace call_log {

using services::line;
using Lines = std::vector<std::string>;

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

// A call that is to come, and what its failure does.
enum class Failure {
    ends,    // the function returns the status at once
    quits,   // the function returns at once and tells nothing
    tells,   // the function goes on and returns the status
    ignored, // the function goes on
};
struct Step {
    std::string line;
    Failure failure = Failure::ends;
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
    u32 action = 0; // as the driver and the store answer

    void SetUp() override { start(first_state); }

    void start(pd_word state)
    {
        capture::reset();
        services::reset();
        services::next_state = state;
        p4_pd_tessel_switch_init();
        services::events.clear();
        services::keep_calls = true;
    }

    void scramble_arguments()
    {
        sess = random.word();
        target = {random.word(), random.word()};
        device = target.device_id;
        member = random.word();
        group = random.word();
        capture::entry = random.word();
        capture::answer.action = action = random.word();
    }

    // The call alone, its status returned.
    template <typename Function>
    static pd_status run(std::size_t failing_call, pd_status failing_status, const Function &function)
    {
        services::events.clear();
        services::failing_call = failing_call;
        services::failing_status = failing_status;
        const pd_status status = function();
        services::failing_call = 0;
        return status;
    }

    // The steps and no others when nothing fails, then with each of them failing.
    template <typename Function>
    void expect_steps(const std::vector<Step> &steps, const Function &function)
    {
        Lines lines;
        for (const Step &step : steps)
            lines.push_back(step.line);
        EXPECT_EQ(run(0, 0, function), 0u);
        EXPECT_EQ(services::events, lines);
        for (std::size_t i = 0; i < steps.size(); ++i)
            for (const pd_status status : {1u, 0xffffffffu}) {
                SCOPED_TRACE(testing::Message() << "failing call " << i + 1 << " seed " << sweep::seed);
                const Failure failure = steps[i].failure;
                const bool told = failure == Failure::ends || failure == Failure::tells;
                const bool over = failure == Failure::ends || failure == Failure::quits;
                EXPECT_EQ(run(i + 1, status, function), told ? status : 0);
                EXPECT_EQ(services::events, over ? Lines(lines.begin(), lines.begin() + i + 1) : lines);
            }
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

    capture::Call at_target(std::string_view operation, u32 table) const
    {
        return {.operation = operation,
                .sess = sess,
                .device_id = target.device_id,
                .pipe_id = target.pipe_id,
                .table = table};
    }

    capture::Call at_device(std::string_view operation, u32 table) const
    {
        return {.operation = operation, .sess = sess, .device_id = device, .table = table};
    }
};

} // namespace call_log
