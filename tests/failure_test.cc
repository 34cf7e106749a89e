// What ends the process, what is logged, and what is said on the way. Private functions are tested too, so
// the library's objects are linked in.
#include <gtest/gtest.h>

#include "meter.h"
#include "pd.h"
#include "recorder.h"

namespace {

int backtraces;
int frames;
bool has_symbols;

} // namespace

// In place of the C library's, so that the frames are known.
extern "C" [[gnu::visibility("default")]] int backtrace(void **, int size)
{
    ++backtraces;
    return size == 128 ? frames : 0;
}

extern "C" [[gnu::visibility("default")]] char **backtrace_symbols(void *const *, int)
{
    static char first[] = "frame one %d";
    static char second[] = "frame two";
    static char *symbols[] = {first, second};
    return has_symbols ? symbols : nullptr;
}

namespace {

using testing::KilledBySignal;

std::string assertion(const std::string &function, const std::string &condition,
                      const std::string &before = "")
{
    return recorder::assertion("pd", function, condition, before);
}

constexpr char backtrace_lines[] = "log 0 2 frame one %d\nlog 0 2 frame two\n";

class Failure : public testing::Test {
protected:
    void SetUp() override
    {
        recorder::reset();
        recorder::announce = true; // a death test must see any line before the assertion
        backtraces = 0;
        frames = 2;
        has_symbols = true;
    }
};

TEST_F(Failure, RegistrationRefused)
{
    for (const bool debug_mode : {false, true}) {
        recorder::debug_mode = debug_mode;
        recorder::failing_call = 6;
        recorder::failing_status = 1;
        EXPECT_EXIT(
            p4_pd_tessel_switch_init(), KilledBySignal(SIGABRT),
            assertion("p4_pd_tessel_switch_init", "r == BF_SUCCESS",
                      "p4_pd_ms_init\\(\\)\n(p4_pd_ms_init_state\\(\\)\n){4}bf_drv_register[^\n]*\n"));
    }
}

TEST_F(Failure, AddWithoutTheDirectMeter)
{
    const p4_pd_tessel_switch_l2LookupMiss_match_spec_t key{};
    using Add = decltype(p4_pd_tessel_switch_l2LookupMiss_table_add_with_NoAction);
    const std::pair<const char *, Add *> adds[] = {
        {"NoAction", p4_pd_tessel_switch_l2LookupMiss_table_add_with_NoAction},
        {"l2LookupBcastHit", p4_pd_tessel_switch_l2LookupMiss_table_add_with_l2LookupBcastHit},
        {"l2LookupUnknownMcastAction",
         p4_pd_tessel_switch_l2LookupMiss_table_add_with_l2LookupUnknownMcastAction},
        {"l2LookupUnknownUcastAction",
         p4_pd_tessel_switch_l2LookupMiss_table_add_with_l2LookupUnknownUcastAction},
    };
    for (const auto &[action, add] : adds)
        for (const bool debug_mode : {false, true}) {
            recorder::debug_mode = debug_mode;
            pd_entry_hdl entry = 0;
            EXPECT_EXIT(add(1, {}, &key, 0, nullptr, &entry), KilledBySignal(SIGABRT),
                        assertion(std::string("p4_pd_tessel_switch_l2LookupMiss_table_add_with_") + action,
                                  "stormControlMeter_spec && \"direct resource has no spec\""));
        }
}

struct MeterCase {
    u32 requested;
    u8 has_pre_color;
    u32 type;
    const char *message;   // of the log line with debug mode off, null for none
    const char *condition; // of the assertion with debug mode on
};

constexpr char bad_type[] = "ASSERTION FAILED: \"0\" (0) from ";
constexpr char no_color[] = "ASSERTION FAILED: \"has_pre_color == 1\" (has_pre_color == true) from ";

constexpr MeterCase meter_cases[] = {
    {0, 1, 0, nullptr, nullptr},
    {1, 1, 1, nullptr, nullptr},
    {1, 0, 1, nullptr, nullptr},
    {2, 1, 0, bad_type, "0"},
    {0xffffffff, 1, 0, bad_type, "0"},
    {2, 0, 1, bad_type, "0"},
    {0, 0, 1, no_color, "has_pre_color == 1"},
};

TEST_F(Failure, MeterTypeIsLoggedOrEndsBehindABacktraceInDebugMode)
{
    for (const MeterCase &meter : meter_cases) {
        SCOPED_TRACE(testing::Message() << meter.requested << " " << int{meter.has_pre_color});
        const auto call = [&] { return pd::get_bytes_meter_type(meter.requested, meter.has_pre_color); };
        recorder::debug_mode = false;
        recorder::forget();
        EXPECT_EQ(call(), meter.type);
        ASSERT_EQ(recorder::log.size(), meter.message ? 1u : 0u);
        recorder::debug_mode = true;
        if (!meter.message) {
            EXPECT_EQ(call(), meter.type);
            continue;
        }
        const recorder::LogLine &line = recorder::log[0];
        EXPECT_EQ(line.module, 0);
        EXPECT_EQ(line.level, 2);
        const std::string begin = std::string{meter.message} + "get_bytes_meter_type:";
        ASSERT_EQ(line.text.substr(0, begin.size()), begin);
        EXPECT_GT(std::stoi(line.text.substr(begin.size())), 0);

        const std::string ending = assertion("get_bytes_meter_type", meter.condition);
        EXPECT_EXIT(call(), KilledBySignal(SIGABRT),
                    assertion("get_bytes_meter_type", meter.condition, backtrace_lines));
        // Neither lines nor symbols: nothing is logged, and the assertion still fires.
        frames = 0;
        EXPECT_EXIT(call(), KilledBySignal(SIGABRT), ending);
        frames = 2;
        has_symbols = false;
        EXPECT_EXIT(call(), KilledBySignal(SIGABRT), ending);
        has_symbols = true;
    }
    EXPECT_EQ(backtraces, 0);
}

// ---- Answers that cannot be read ------------------------------------------------------------------------

// A read of pdpPolicy, of the keyless queueCounters or of a member: what it does with debug mode off the
// sweeps tell.
struct Read {
    const char *function;
    pd_status (*read)();
    u8 kind;
    u32 action; // none of the table's where the kind is good
    pd_status status;
};

p4_pd_tessel_switch_pdpPolicy_match_spec_t key;
p4_pd_tessel_switch_ecmpMemberActionProfile_member_action_t member_action;
pd_action_out out;
u8 is_default;
u32 number;

pd_status get_entry()
{
    return p4_pd_tessel_switch_pdpPolicy_get_entry(1, 2, 3, 0, &key, nullptr, &out.parameters, &number,
                                                   &is_default);
}

pd_status get_entry_of_keyless_table()
{
    return p4_pd_tessel_switch_queueCounters_get_entry(1, 2, 3, 0, nullptr, nullptr, nullptr);
}

const Read reads[] = {
    {"pdpPolicy_get_entry", get_entry, 2, 0x20000145, 15},
    {"pdpPolicy_get_entry", get_entry, 1, 0x20000148, 15},
    {"queueCounters_get_entry", get_entry_of_keyless_table, 2, 0x20000148, 15},
    {"queueCounters_get_entry", get_entry_of_keyless_table, 1, 0x20000145, 15},
    {"pdpPolicy_get_entry_from_plcmt_data",
     [] { return p4_pd_tessel_switch_pdpPolicy_get_entry_from_plcmt_data(nullptr, &key, &out, &is_default); },
     1, 0x20000148, 3},
    {"ecmpMemberActionProfile_get_member",
     [] { return p4_pd_tessel_switch_ecmpMemberActionProfile_get_member(1, 2, 3, 0, &member_action); }, 1,
     0x2000015a, 15},
    {"ecmpMemberActionProfile_get_member_from_plcmt_data",
     [] {
         return p4_pd_tessel_switch_ecmpMemberActionProfile_get_member_from_plcmt_data(nullptr,
                                                                                       &member_action);
     },
     1, 0x2000015a, 15},
    {"ecmpMemberActionProfile_get_full_member_info_from_plcmt_data",
     [] {
         return p4_pd_tessel_switch_ecmpMemberActionProfile_get_full_member_info_from_plcmt_data(
             2, 3, nullptr, &member_action);
     },
     1, 0x2000015a, 15},
};

// The flag is read at each failure, so it may change between two of them.
TEST_F(Failure, ReadsEndBehindABacktraceInDebugModeOnly)
{
    for (const Read &read : reads) {
        SCOPED_TRACE(read.function);
        recorder::answer.action_kind = read.kind;
        recorder::answer.action = read.action;
        const std::string calls = "([a-z_0-9]+\\([^\n]*\n)*"; // of driver and memory
        const auto end_with = [&](const std::string &lines) {
            const std::string condition = read.kind == 2 ? "0" : "\\(\\(void \\*\\)0\\)";
            return assertion(std::string("p4_pd_tessel_switch_") + read.function, condition, calls + lines);
        };
        recorder::debug_mode = false;
        EXPECT_EQ(read.read(), read.status);
        recorder::debug_mode = true;
        EXPECT_EXIT(read.read(), KilledBySignal(SIGABRT), end_with(backtrace_lines));
        has_symbols = false; // neither symbols nor lines: the assertion alone
        EXPECT_EXIT(read.read(), KilledBySignal(SIGABRT), end_with(""));
        has_symbols = true;
    }
    EXPECT_EQ(backtraces, 0);
}

// Not a word, in either mode.
TEST_F(Failure, DefaultEntriesFailSilently)
{
    recorder::debug_mode = true;
    for (const auto &[kind, action] : {std::pair<u8, u32>{2, 0x20000146}, {1, 0x20000145}}) {
        recorder::answer.action_kind = kind;
        recorder::answer.action = action;
        EXPECT_EQ(p4_pd_tessel_switch_pdpPolicy_table_get_default_entry(1, {}, 0, &out), 15u);
    }
    EXPECT_TRUE(recorder::log.empty());
    EXPECT_EQ(backtraces, 0);
}

// ---- Members and groups --------------------------------------------------------------------------------

TEST_F(Failure, StateOfAMemberIsNeitherOfTheTwo)
{
    using Set = decltype(p4_pd_tessel_switch_lagPortActionProfile_group_member_state_set);
    const std::pair<const char *, Set *> sets[] = {
        {"egrMirrorLagPort", p4_pd_tessel_switch_egrMirrorLagPortActionProfile_group_member_state_set},
        {"ecmpMember", p4_pd_tessel_switch_ecmpMemberActionProfile_group_member_state_set},
        {"mirrorLagPort", p4_pd_tessel_switch_mirrorLagPortActionProfile_group_member_state_set},
        {"lagPort", p4_pd_tessel_switch_lagPortActionProfile_group_member_state_set},
    };
    for (const auto &[profile, set] : sets)
        for (const bool debug_mode : {false, true})
            for (const u32 state : {2u, 0xffffffffu}) {
                recorder::debug_mode = debug_mode;
                EXPECT_EXIT(set(1, 2, 3, 4, state), KilledBySignal(SIGABRT),
                            assertion(std::string("p4_pd_tessel_switch_") + profile +
                                          "ActionProfile_group_member_state_set",
                                      "mbr_state == P4_PD_GRP_MBR_STATE_INACTIVE"));
            }
}

} // namespace
