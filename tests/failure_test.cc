// What ends the process, what is logged, and what is said on the way. Private functions are tested too, so
// the library's objects are linked in.
#include <gtest/gtest.h>

#include "capture_driver.h"
#include "capture_services.h"
#include "meter.h"
#include "pd.h"

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

// One line of standard error, as the C library writes it; nothing before it.
std::string assertion(const std::string &function, const std::string &condition)
{
    return "^[^\n]*bf_tessel_switch_nat_static/src/pd:[0-9]+: " + function + ": Assertion `" + condition +
           "' failed\\.\n";
}

class Failure : public testing::Test {
protected:
    void SetUp() override
    {
        services::reset();
        services::announce = true; // a death test must see any line before the assertion
        capture::reset();
        backtraces = 0;
        frames = 2;
        has_symbols = true;
    }
};

TEST_F(Failure, RegistrationRefused)
{
    for (const bool debug_mode : {false, true}) {
        services::debug_mode = debug_mode;
        services::register_status = 1;
        EXPECT_EXIT(p4_pd_tessel_switch_init(), KilledBySignal(SIGABRT),
                    "^p4_pd_ms_init\n(p4_pd_ms_init_state\n){4}bf_drv_register\n[^\n]*"
                    "bf_tessel_switch_nat_static/src/pd:[0-9]+: p4_pd_tessel_switch_init: "
                    "Assertion `r == BF_SUCCESS' failed\\.\n");
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
            services::debug_mode = debug_mode;
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
    const char *format;    // of the log line with debug mode off, null for none
    const char *condition; // of the assertion with debug mode on
};

constexpr char bad_type[] = "ASSERTION FAILED: \"0\" (0) from %s:%d";
constexpr char no_color[] = "ASSERTION FAILED: \"has_pre_color == 1\" (has_pre_color == true) from %s:%d";

constexpr MeterCase meter_cases[] = {
    {0, 1, 0, nullptr, nullptr},
    {1, 1, 1, nullptr, nullptr},
    {1, 0, 1, nullptr, nullptr},
    {2, 1, 0, bad_type, "0"},
    {0xffffffff, 1, 0, bad_type, "0"},
    {2, 0, 1, bad_type, "0"},
    {0, 0, 1, no_color, "has_pre_color == 1"},
};

TEST_F(Failure, MeterTypeWithDebugModeOffLogsOneLineAndGoesOn)
{
    for (const MeterCase &meter : meter_cases) {
        SCOPED_TRACE(testing::Message() << meter.requested << " " << int{meter.has_pre_color});
        services::log.clear();
        EXPECT_EQ(pd::get_bytes_meter_type(meter.requested, meter.has_pre_color), meter.type);
        ASSERT_EQ(services::log.size(), meter.format ? 1u : 0u);
        if (!meter.format)
            continue;
        const services::LogLine &line = services::log[0];
        EXPECT_EQ(line.module, 0);
        EXPECT_EQ(line.level, 2);
        EXPECT_EQ(line.format, meter.format);
        // The name of the function and a line number stand in place of %s:%d.
        const std::string begin = line.format.substr(0, line.format.find('%')) + "get_bytes_meter_type:";
        ASSERT_EQ(line.text.substr(0, begin.size()), begin);
        EXPECT_GT(std::stoi(line.text.substr(begin.size())), 0);
    }
    EXPECT_EQ(backtraces, 0);
}

TEST_F(Failure, MeterTypeWithDebugModeOnEndsBehindABacktrace)
{
    services::debug_mode = true;
    for (const MeterCase &meter : meter_cases) {
        SCOPED_TRACE(testing::Message() << meter.requested << " " << int{meter.has_pre_color});
        const auto call = [&] { return pd::get_bytes_meter_type(meter.requested, meter.has_pre_color); };
        if (!meter.condition) {
            EXPECT_EQ(call(), meter.type);
            continue;
        }
        const std::string ending = assertion("get_bytes_meter_type", meter.condition);
        EXPECT_EXIT(call(), KilledBySignal(SIGABRT),
                    "^log 0 2 \\[%s\\] frame one %d\nlog 0 2 \\[%s\\] frame two\n" + ending.substr(1));
        // Neither lines nor symbols: nothing is logged, and the assertion still fires.
        frames = 0;
        EXPECT_EXIT(call(), KilledBySignal(SIGABRT), ending);
        frames = 2;
        has_symbols = false;
        EXPECT_EXIT(call(), KilledBySignal(SIGABRT), ending);
        has_symbols = true;
    }
    EXPECT_TRUE(services::log.empty());
}

// The path of a bad request through an exported function.
TEST_F(Failure, BadMeterTypeInAnAddIsLoggedAndCountsAsColourAware)
{
    const p4_pd_tessel_switch_l2LookupMiss_match_spec_t key{};
    const pd_meter_spec meter{1, 2, 3, 4, 2};
    pd_entry_hdl entry = 0;
    EXPECT_EQ(p4_pd_tessel_switch_l2LookupMiss_table_add_with_NoAction(1, {}, &key, 0, &meter, &entry), 0u);
    EXPECT_EQ(services::log.size(), 1u);
    EXPECT_EQ(capture::calls, 1u);
    EXPECT_EQ(capture::spec_of(capture::last).resources[0].res_data.meter.meter_type, 0u);

    services::debug_mode = true;
    EXPECT_EXIT(p4_pd_tessel_switch_l2LookupMiss_table_modify_with_NoAction(1, 0, 1, &meter),
                KilledBySignal(SIGABRT), "get_bytes_meter_type: Assertion `0' failed");
}

} // namespace
