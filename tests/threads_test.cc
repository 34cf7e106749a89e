// Threads in the library and the model at once: writing, reading, walking, texts, members and groups,
// callbacks, properties and syncs. The thread sanitizer judges; the counts at the end show that nothing was
// lost.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "model.h"
#include "pd.h"
#include "pipe_mgr.h"

#define PD(name) p4_pd_tessel_switch_##name

namespace {

constexpr u16 thread_count = 4, per_thread = 200;
constexpr pd_dev_target target{0, 0xffff};
std::atomic<u32> added[thread_count], synced;

void count_up(u32, u32, const void *update, pd_word cookie)
{
    added[cookie] += static_cast<const ts_model_update *>(update)->kind == TS_MODEL_ENTRY_ADDED;
}

void use_entries(u16 thread, u16 at)
{
    const PD(l2DmacClassify_match_spec_t) key{.ig_intr_md_ingress_port = thread,
                                              .outerEthHdr_dmacOui = at,
                                              .outerEthHdr_dmacOui_mask = 0xffffff,
                                              .outerEthHdr_dmacStation = 0,
                                              .outerEthHdr_dmacStation_mask = 0xffffff};
    pd_entry_hdl entry = 0, next[3];
    ASSERT_EQ(PD(l2DmacClassify_table_add_with_onMiss)(thread, target, &key, at, &entry), 0u);
    PD(l2DmacClassify_get_next_entry_handles)(thread, target, entry, 3, next);
    char text[4096];
    ASSERT_NE(PD(entry_value)(thread, 0, 0x1000009, entry, 0, text), 0u);
    ASSERT_NE(PD(l2DmacClassify_match_spec_value)(&key, text), 0u);
    pd_counter_value value{};
    PD(counter_read_l2DmacClassifyCount)(thread, target, entry, 1, &value);
    PD(counter_hw_sync_l2DmacClassifyCount)
    (
        thread, target, [](u32, pd_word) { ++synced; }, 0);
    ts_model_remove_hardware_entry(0, 0x1000009, entry);
    PD(l2DmacClassify_set_property)(thread, 0, thread, at, 0);
    PD(l2DmacClassify_table_reset_default_entry)(thread, target);
}

void use_members(u16 thread)
{
    pd_mbr_hdl member = 0;
    pd_grp_hdl group = 0;
    const PD(setLagPort_action_spec_t) port{.action_egrL2AintfPort = thread};
    ASSERT_EQ(PD(lagPortActionProfile_add_member_with_setLagPort)(thread, target, &port, &member), 0u);
    ASSERT_EQ(PD(lagPortActionProfile_create_group)(thread, target, 4, &group), 0u);
    ASSERT_EQ(PD(lagPortActionProfile_add_member_to_group)(thread, 0, group, member), 0u);
    ASSERT_EQ(PD(lagPortActionProfile_del_member_from_group)(thread, 0, group, member), 0u);
    ASSERT_EQ(PD(lagPortActionProfile_del_group)(thread, 0, group), 0u);
    ASSERT_EQ(PD(lagPortActionProfile_del_member)(thread, 0, member), 0u);
}

TEST(Threads, UseTheLibraryAtOnce)
{
    ts_model_reset();
    ts_model_set_sync_thread(1);
    PD(init)();
    std::vector<std::thread> threads;
    for (u16 thread = 0; thread < thread_count; ++thread)
        threads.emplace_back([thread] {
            PD(l2DmacClassify_register_mat_update_cb)(thread, 0, count_up, thread);
            for (u16 at = 0; at < per_thread; ++at) {
                use_entries(thread, at);
                use_members(thread);
            }
        });
    for (std::thread &thread : threads)
        thread.join();
    ts_model_wait_for_syncs();
    EXPECT_EQ(synced, u32{thread_count} * per_thread);
    for (const std::atomic<u32> &count : added) {
        EXPECT_GE(count, per_thread);
        EXPECT_LE(count, thread_count * per_thread);
    }
    EXPECT_EQ(ts_model_entry_count(0, 0x1000009), u32{thread_count} * per_thread);
    u32 members = 9;
    EXPECT_EQ(PD(lagPortActionProfile_get_act_prof_entry_count)(0, target, &members), 0u);
    EXPECT_EQ(members, 0u);
    PD(cleanup)();
    ts_model_set_sync_thread(0);
    ts_model_reset();
}

} // namespace
