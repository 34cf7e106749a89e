// Start and end of the library, and the three callbacks that the driver gets from it.
#include <cjson/cJSON.h>
#include <gtest/gtest.h>

#include <cstring>
#include <memory>

#include "pd.h"
#include "recorder.h"

namespace {

using Events = std::vector<std::string>;

const u32 handle_before_start = bf_drv_hdl;

struct DeleteDocument {
    void operator()(cJSON *document) const { cJSON_Delete(document); }
};
using Document = std::unique_ptr<cJSON, DeleteDocument>;

Document parse(const char *text)
{
    return Document(cJSON_Parse(text));
}

// A started library; what the start did is forgotten, the states are 1 to 4.
class Lifecycle : public testing::Test {
protected:
    void SetUp() override
    {
        recorder::reset();
        recorder::answer.numbers[0] = 0x77; // the client
        p4_pd_tessel_switch_init();
        started = recorder::lines();
        recorder::forget();
    }

    Events restore(const char *text)
    {
        recorder::forget();
        const Document document = parse(text);
        EXPECT_EQ(recorder::callbacks.device_restore(9, document.get()), 0u);
        return recorder::lines();
    }

    Events started;
};

TEST_F(Lifecycle, StartRegistersInOrder)
{
    EXPECT_EQ(handle_before_start, 0u);
    EXPECT_EQ(started, (Events{"p4_pd_ms_init()", "p4_pd_ms_init_state()", "p4_pd_ms_init_state()",
                               "p4_pd_ms_init_state()", "p4_pd_ms_init_state()",
                               "bf_drv_register(p4_pd_tessel_switch_pd)",
                               "bf_drv_client_register_callbacks(0x77, client, 0x2)"}));
    EXPECT_EQ(bf_drv_hdl, 0x77u);

    pd_word words[31];
    static_assert(sizeof words == sizeof recorder::callbacks);
    std::memcpy(words, &recorder::callbacks, sizeof words);
    for (std::size_t i = 0; i < std::size(words); ++i)
        EXPECT_EQ(words[i] != 0, i >= 3 && i <= 5) << "word " << i;
}

TEST_F(Lifecycle, StartLooksAtTheRegistrationOnly)
{
    for (std::size_t call = 1; call <= started.size(); ++call)
        if (!started[call - 1].starts_with("bf_drv_register(")) {
            recorder::reset();
            recorder::answer.numbers[0] = 0x77;
            recorder::failing_call = call;
            recorder::failing_status = 0xffffffff;
            p4_pd_tessel_switch_init();
            EXPECT_EQ(recorder::lines(), started);
        }
}

TEST_F(Lifecycle, SecondStartTakesFreshStates)
{
    recorder::answer.numbers[0] = 0x78;
    p4_pd_tessel_switch_init();
    EXPECT_EQ(bf_drv_hdl, 0x78u);
    recorder::forget();
    recorder::callbacks.device_remove(3);
    EXPECT_EQ(recorder::lines(),
              (Events{"p4_pd_ms_destroy_state_for_dev(0x5, 0x3)", "p4_pd_ms_destroy_state_for_dev(0x6, 0x3)",
                      "p4_pd_ms_destroy_state_for_dev(0x7, 0x3)", "p4_pd_ms_destroy_state_for_dev(0x8, 0x3)",
                      "p4_pd_ms_destroy_txn_state_for_dev(0x3)"}));
}

TEST_F(Lifecycle, EndPassesTheStatusOnAndKeepsTheStates)
{
    for (const pd_status status : {0u, 5u, 0xffffffffu}) {
        recorder::forget();
        recorder::status = status;
        EXPECT_EQ(p4_pd_tessel_switch_cleanup(), status);
        EXPECT_EQ(recorder::lines(), Events{"bf_drv_deregister(0x77)"});
    }
    EXPECT_EQ(bf_drv_hdl, 0x77u);
    recorder::forget();
    p4_pd_tessel_switch_device_state_cleanup();
    EXPECT_EQ(recorder::calls(), 0u);
}

TEST_F(Lifecycle, RemovalDropsEveryStateWhateverTheStoreSays)
{
    for (const pd_status status : {0u, 1u, 0xffffffffu}) {
        recorder::forget();
        recorder::status = status;
        EXPECT_EQ(recorder::callbacks.device_remove(7), 0u);
        EXPECT_EQ(
            recorder::lines(),
            (Events{"p4_pd_ms_destroy_state_for_dev(0x1, 0x7)", "p4_pd_ms_destroy_state_for_dev(0x2, 0x7)",
                    "p4_pd_ms_destroy_state_for_dev(0x3, 0x7)", "p4_pd_ms_destroy_state_for_dev(0x4, 0x7)",
                    "p4_pd_ms_destroy_txn_state_for_dev(0x7)"}));
    }
}

TEST_F(Lifecycle, LogWritesTheDocumentAndRestoreReadsIt)
{
    recorder::status = 4;
    const Document document(cJSON_CreateObject());
    EXPECT_EQ(recorder::callbacks.device_log(7, document.get()), 0u);
    EXPECT_EQ(recorder::lines(), (Events{"p4_pd_ms_log_state(0x7, 0x1, egrMirrorLagPortActionProfile)",
                                         "p4_pd_ms_log_state(0x7, 0x2, ecmpMemberActionProfile)",
                                         "p4_pd_ms_log_state(0x7, 0x3, mirrorLagPortActionProfile)",
                                         "p4_pd_ms_log_state(0x7, 0x4, lagPortActionProfile)"}));
    const std::unique_ptr<char, decltype(&cJSON_free)> text(cJSON_PrintUnformatted(document.get()),
                                                            cJSON_free);
    EXPECT_STREQ(text.get(), R"({"name":"tessel_switch","act_profs":[)"
                             R"({"name":"egrMirrorLagPortActionProfile","state":1},)"
                             R"({"name":"ecmpMemberActionProfile","state":2},)"
                             R"({"name":"mirrorLagPortActionProfile","state":3},)"
                             R"({"name":"lagPortActionProfile","state":4}]})");

    EXPECT_EQ(restore(text.get()), (Events{"p4_pd_ms_restore_state(0x9, 0x1, egrMirrorLagPortActionProfile)",
                                           "p4_pd_ms_restore_state(0x9, 0x2, ecmpMemberActionProfile)",
                                           "p4_pd_ms_restore_state(0x9, 0x3, mirrorLagPortActionProfile)",
                                           "p4_pd_ms_restore_state(0x9, 0x4, lagPortActionProfile)"}));
}

TEST_F(Lifecycle, RestoreTakesAnyOrderAndSkipsWhatItDoesNotKnow)
{
    EXPECT_EQ(restore(R"({"act_profs":[]})"), Events{});
    // Reverse order, without a name of the root.
    EXPECT_EQ(restore(R"({"act_profs":[{"name":"lagPortActionProfile"},{"name":"mirrorLagPortActionProfile"},
                         {"name":"ecmpMemberActionProfile"},{"name":"egrMirrorLagPortActionProfile"}]})"),
              (Events{"p4_pd_ms_restore_state(0x9, 0x4, lagPortActionProfile)",
                      "p4_pd_ms_restore_state(0x9, 0x3, mirrorLagPortActionProfile)",
                      "p4_pd_ms_restore_state(0x9, 0x2, ecmpMemberActionProfile)",
                      "p4_pd_ms_restore_state(0x9, 0x1, egrMirrorLagPortActionProfile)"}));
    // Another program's log; unknown names, other case and longer names among known ones; one of them twice.
    EXPECT_EQ(restore(R"({"name":"other","act_profs":[{"name":"unknown"},{"name":"ecmpMemberActionProfile"},
                         {"name":"LagPortActionProfile"},{"name":"lagPortActionProfile2"},{"name":""},
                         {"name":"lagPortActionProfile"},{"name":"ecmpMemberActionProfile"}]})"),
              (Events{"p4_pd_ms_restore_state(0x9, 0x2, ecmpMemberActionProfile)",
                      "p4_pd_ms_restore_state(0x9, 0x4, lagPortActionProfile)",
                      "p4_pd_ms_restore_state(0x9, 0x2, ecmpMemberActionProfile)"}));
}

} // namespace
