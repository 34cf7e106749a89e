// The shell where a test has to reach past it: hardware that differs, refusals, and every table and profile.
#include <gtest/gtest.h>

#include "reflection.h"
#include "shell_fixture.h"

namespace {

TEST_F(Shell, ReadsFromTheHardwareWhenToldSo)
{
    output_of("member add lagPortActionProfile : setLagPort egrL2AintfPort=11");
    const u8 port[] = {0, 99};
    const reflection::ProfileFunctions &profile = *reflection::find_profile("lagPortActionProfile");
    const u32 action = reflection::find_action(profile, "setLagPort")->row->handle;
    ASSERT_EQ(ts_model_set_hardware_member(0, profile.row->action_table, 1, action, port, sizeof port), 0u);
    const std::string show = "member show lagPortActionProfile 1";
    EXPECT_NE(output_of(show + " --hw").find(" egrL2AintfPort=99 "), std::string::npos);
    EXPECT_NE(output_of(show).find(" egrL2AintfPort=11 "), std::string::npos);
    const u8 set = 1;
    ts_model_set_hardware_register(0, 0x6000001, 8, 2, &set, 1);
    EXPECT_EQ(output_of("register read ingStpCheckData 8\nregister read ingStpCheckData 8 --hw\n"
                        "register sync ingStpCheckData\nregister read ingStpCheckData 8"),
              "8: 0 0 0 0\n8: 0 0 1 0\n8: 0 0 1 0\n");
}

TEST_F(Shell, RefusedRestartLeavesTheState)
{
    while_refused("pipe_mgr_hitless_ha_restore_virtual_dev_state", TS_MODEL_UNKNOWN_OBJECT, [] {
        const Outcome refused =
            run("member add lagPortActionProfile p1 : setLagPort egrL2AintfPort=11\nrestart\n"
                "add lagGroup priority=1 : member p1",
                {.keep_going = true});
        EXPECT_EQ(refused.err, "t:2:1: the driver refused: no such object (status 4)\nt: 1 bad line\n")
            << "an entry finds its member, so the state is there again";
    });
}

} // namespace
