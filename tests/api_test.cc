// What the shell tells of the library's functions: every call that it writes compiles.
#include "api.h"

#include <cstdlib>
#include <fstream>

#include <gtest/gtest.h>

namespace {

TEST(Api, EveryCallCompiles)
{
    const std::string file = testing::TempDir() + "calls.c";
    std::ofstream out{file};
    int number = 0;
    for (const shell::Function &function : shell::functions()) {
        std::string text = shell::call_in_c(function);
        const std::size_t name = text.find("example(");
        ASSERT_NE(name, std::string::npos) << text;
        text.insert(name + std::string_view{"example"}.size(), std::to_string(++number));
        out << text;
    }
    EXPECT_EQ(number, 7811);
    out.close();
    const std::string command = TS_CC " " TS_C_FLAGS " -std=c11 -Wall -Werror -fsyntax-only -I" TS_SOURCE_DIR
                                      "/bf_tessel_switch_nat_static/include -I" TS_GENERATED_DIR "/include ";
    EXPECT_EQ(std::system((command + file).c_str()), 0);
}

TEST(Api, FindsByObjectActionFamilyAndText)
{
    EXPECT_EQ(shell::find_functions("setNextHop").size(), 11u);
    EXPECT_EQ(shell::find_functions("ipv4Host").size(), 54u);
    EXPECT_EQ(shell::find_functions("match_spec_to_entry_hdl").size(), 141u);
    EXPECT_EQ(shell::find_functions("with this key and priority run").size(), 163u);
    EXPECT_TRUE(shell::find_functions("no such thing").empty());
    const std::vector<std::string_view> words{"modify", "setNextHop"};
    const shell::Function *function = shell::find_function("ipv4Host", words);
    ASSERT_NE(function, nullptr);
    EXPECT_EQ(shell::prototype(*function),
              "pd_status p4_pd_tessel_switch_ipv4Host_table_modify_with_setNextHop(pd_sess_hdl sess, "
              "uint32_t dev_id, "
              "pd_entry_hdl entry_hdl, const p4_pd_tessel_switch_setNextHop_action_spec_t *action_spec)");
    EXPECT_EQ(shell::find_function("ipv4Host", std::vector<std::string_view>{"add", "onHit"}), nullptr);
}

} // namespace
