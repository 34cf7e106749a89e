// A console in a process that has neither the model nor the tap, before a driver whose operations all succeed
// and give nothing.
#include <gtest/gtest.h>

#include "console.h"
#include "tap_test_driver.h"

namespace {

TEST(ConsoleAlone, TellsWhatNeedsTheModelAndCarriesOutTheRest)
{
    answer = [](unsigned, const tap::Value *) { return u64{0}; };
    ts_console *console = nullptr;
    ASSERT_EQ(ts_console_open(nullptr, &console), 0);
    const auto run = [&](const char *command) {
        ts_console_answer given{};
        EXPECT_EQ(ts_console_run(console, command, 0, &given), 0);
        return std::string{given.output} + given.messages;
    };
    for (const char *command :
         {"lookup ipv4Host vrfId=1 dip=1.2.3.4", "lookup ipv4Host vrfId=1 dip=1.2.3.4 --hw",
          "lookup ipv4Host vrfId=1 dip=1.2.3.4 packets=1", "clock 1", "capacity ipv4Host 3", "restart",
          "diff ipv4Host", "print ipv4Host 1", "corrupt ipv4Host 1 : missing",
          "corrupt ipv4Host 1 : key vrfId=1 dip=1.2.3.4", "corrupt ipv4Host 1 : setNextHop nextHop=1",
          "corrupt lagGroup 1 : member 1", "digest pending ptpDigest",
          "digest send ptpDigest ingress_mac_tstamp=1 ingL2Aintf=1", "digest timeout", "snapshot show 1"})
        EXPECT_EQ(run(command), "column 1: this needs the model, which is not in this process\n") << command;
    EXPECT_EQ(run("trace on"), "column 1: this needs the tap, which is not in this process\n");
    EXPECT_EQ(run("count ipv4Host"), "       0  ipv4Host\n");
    EXPECT_EQ(run("add ipv4Host vrfId=1 dip=1.2.3.4 : setNextHop nextHop=7"), "");
    EXPECT_NE(run("show lagPortActionProfile").find("fallback: unknown without the model\n"),
              std::string::npos);
    const std::string saved = run("save - lagGroup");
    EXPECT_NE(saved.find("# Not known: the fallback of lagPortActionProfile\n"), std::string::npos);
    EXPECT_EQ(saved.find("group fallback"), std::string::npos);
    ts_console_close(console);
}

} // namespace
