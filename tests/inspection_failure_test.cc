// Where the inspection layer ends the process. A driver cannot make it meet an action that a table lacks:
// tables whose actions change their number while one is decoded stand in, so the library's objects are linked
// in.
#include "equality.h"
#include "printing.h"
#include "text_fixture.h"
#include "values.h"

namespace {

using testing::KilledBySignal;

std::string assertion(const std::string &function, const std::string &condition,
                      const std::string &before = "")
{
    return recorder::assertion("pd_tessel", "p4_pd_tessel_switch_" + function, condition, before);
}

constexpr char unknown_action[] = "false && \"unknown action\"";

// What the decoder below gives a new number; none before that many actions have been decoded.
pd::ActionReader action{0x20000000, 0, true, 0, nullptr};
int decodings;

void decode(const pipe_action_data *, const pd_res_ref *, u32, void *)
{
    if (--decodings == 0)
        action.number = 1;
}

class InspectionFailure : public texts::Texts {
protected:
    pd_tessel::TableText table = *pd_tessel::find_table(0x1000001);
    pd::TableReader reader = *table.reader;
    pd_tessel::ProfileText profile = *pd_tessel::find_profile(0x2000037);
    pd::MemberReader members = *profile.reader;
    char text[texts::buffer_bytes];

    void SetUp() override
    {
        Texts::SetUp();
        reader.actions = {&action, 1};
        members.actions = {&action, 1};
        table.reader = &reader;
        profile.reader = &members;
        action = {0x20000000, 0, true, 0, decode};
        decodings = 1;
        recorder::answer.action = action.handle;
        recorder::answer.value = recorder::answer.mask = {1, 0x23};
        recorder::answer.num_bytes = 2;
    }
};

TEST_F(InspectionFailure, ActionThatATableLacks)
{
    ASSERT_STREQ(table.name, "ingressPortMapping");
    EXPECT_EXIT(pd_tessel::table_value(table, 1, 2, 3, 0, text), KilledBySignal(SIGABRT),
                assertion("ingressPortMapping_value", unknown_action));
    EXPECT_EXIT(pd_tessel::plcmt_data_value(table, nullptr, text), KilledBySignal(SIGABRT),
                assertion("ingressPortMapping_plcmt_data_value", unknown_action));
    // The lines of the key are out by then.
    EXPECT_EXIT(
        pd_tessel::plcmt_data_print(table, STDERR_FILENO, 0, nullptr), KilledBySignal(SIGABRT),
        assertion(
            "ingressPortMapping_plcmt_data_print", "NULL",
            "p4_pd_tessel_switch_ingressPortMapping_match_spec_t:\n  ig_intr_md_ingress_port: 0x123\n"));
    decodings = 2; // the same number on both sides
    EXPECT_EXIT(plcmt_data_eq_to_hw(table, 1, 2, 3, nullptr, text), KilledBySignal(SIGABRT),
                assertion("ingressPortMapping_plcmt_data_eq_to_hw", unknown_action));
}

TEST_F(InspectionFailure, ActionThatAProfileLacks)
{
    ASSERT_STREQ(profile.name, "lagPortActionProfile");
    EXPECT_EXIT(pd_tessel::member_plcmt_data_value(profile, nullptr, text), KilledBySignal(SIGABRT),
                assertion("lagPortActionProfile_plcmt_data_value", "NULL"));
    EXPECT_EXIT(pd_tessel::member_plcmt_data_print(profile, STDERR_FILENO, 0, nullptr),
                KilledBySignal(SIGABRT), assertion("lagPortActionProfile_adt_plcmt_data_print", "NULL"));
}

TEST_F(InspectionFailure, PlacementDataThatCannotBeDecoded)
{
    recorder::reset();
    recorder::status = 1;
    for (const std::string name : {"trapToCpu", "queueCounters", "egressMirrorLagGroup"}) {
        SCOPED_TRACE(name);
        const auto &found = *reflection::find_table(name);
        const auto expected = assertion(name + "_plcmt_data_eq_to_hw",
                                        "false && \"Failed to decode plcmt_data in table " + name + "\"");
        EXPECT_EXIT(found.text.plcmt_data_eq_to_hw(1, 2, 0, 3, nullptr, text), KilledBySignal(SIGABRT),
                    expected);
        EXPECT_EXIT(PD(plcmt_data_eq_to_hw)(1, 2, found.row->handle, 3, nullptr, 0, text),
                    KilledBySignal(SIGABRT), expected);
    }
}

TEST_F(InspectionFailure, TableThatDoesNotExist)
{
    for (const u32 handle : {0u, 0x1000000u, 0x100008du, 0x10000a0u, 0x200001du})
        EXPECT_EXIT(PD(plcmt_data_eq_to_hw)(1, 2, handle, 3, nullptr, 0, text), KilledBySignal(SIGABRT),
                    assertion("plcmt_data_eq_to_hw", "false && \"unknown table\""));
}

} // namespace
