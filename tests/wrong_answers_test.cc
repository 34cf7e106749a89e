// A driver that answers beyond what it was given room for: the library keeps to its buffers, and to those of
// the caller. What a sanitizer would tell, canaries tell as well. And one that looks who has called it.
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <execinfo.h>
#include <string_view>

#include "bf_snapshot.h"
#include "bf_sys.h"
#include "pd.h"
#include "pd_ms.h"
#include "pipe_mgr.h"
#include "pipe_stful.h"

#define PD(name) p4_pd_tessel_switch_##name

namespace {

constexpr u32 far = 1000; // more than any room
u32 room, told, stage_bytes, handed_on;
std::array<void *, 64> frames;
int frame_count;

// Where backtrace() gets to from within the driver.
pd_status look_back()
{
    frame_count = backtrace(frames.data(), static_cast<int>(frames.size()));
    return 0;
}

} // namespace

extern "C" {

void *bf_sys_calloc(size_t count, size_t size)
{
    return std::calloc(count, size);
}

void bf_sys_free(void *block)
{
    std::free(block);
}

pd_status pipe_mgr_mat_ent_add(pd_sess_hdl, pd_dev_target, u32, pipe_match_spec *, u32, pipe_action_spec *,
                               u32, u32, pd_entry_hdl *)
{
    return look_back();
}

pd_status pipe_mgr_mat_ent_set_action_by_match_spec(pd_sess_hdl, pd_dev_target, u32, pipe_match_spec *, u32,
                                                    pipe_action_spec *, u32)
{
    return look_back();
}

pd_status pipe_stful_query_get_sizes(pd_sess_hdl, u32, u32, u32 *count)
{
    *count = room;
    return 0;
}

pd_status pipe_stful_ent_query(pd_sess_hdl, pd_dev_target, u32, u32, pipe_stful_query *query, u32)
{
    query->count = told;
    return 0;
}

pd_status pipe_stful_ent_query_range(pd_sess_hdl, pd_dev_target, u32, u32, u32 count,
                                     pipe_stful_query *queries, u32 *indices_read, u32)
{
    for (u32 i = 0; i < count; ++i)
        queries[i].count = told;
    *indices_read = told;
    return 0;
}

pd_status pipe_mgr_hash_calc_input_get(pd_sess_hdl, u32, u32, u32 *input)
{
    *input = 0;
    return 0;
}

pd_status pipe_mgr_hash_calc_input_field_attribute_get(pd_sess_hdl, u32, u32, u32, u32,
                                                       pipe_hash_calc_input_field_attribute *, u32 *count)
{
    *count = told;
    return 0;
}

pd_status pipe_mgr_get_sel_grp_mbr_count(pd_sess_hdl, u32, u32, pd_grp_hdl, u32 *count)
{
    *count = room;
    return 0;
}

pd_status pipe_mgr_sel_grp_mbrs_get(pd_sess_hdl, u32, u32, pd_grp_hdl, u32, pd_mbr_hdl *, u8 *, u32 *written,
                                    u32)
{
    *written = told;
    return 0;
}

pd_status pipe_mgr_sel_grp_del(pd_sess_hdl, u32, u32, pd_grp_hdl, u32)
{
    return 0;
}

pd_status p4_pd_ms_del_grp(pd_sess_hdl, pd_word, u32, pd_grp_hdl, u32 count, pd_mbr_hdl *)
{
    handed_on = count;
    return 0;
}

pd_status bf_snapshot_capture_phv_fields_dict_size(u32, u32 *total_bytes, u32 *stage)
{
    *total_bytes = told;
    *stage = stage_bytes;
    return 0;
}

pd_status bf_snapshot_capture_get(u32, pd_word, void *, pd_word, u32 *)
{
    return 9;
}

// An entry of pdpPolicy that counts, with more resources than a record holds.
pd_status pipe_mgr_get_entry(pd_sess_hdl, u32, pd_dev_target, pd_entry_hdl, pipe_match_spec *match,
                             pipe_action_spec *spec, u32 *action, u8, u32, u32)
{
    match->num_bytes = 0;
    match->match_value = nullptr;
    spec->action_kind = PIPE_ACTION_DATA;
    spec->resource_count = 255;
    for (pipe_res_spec &resource : spec->resources) {
        resource.res_tag = PIPE_RES_ATTACH;
        resource.res_handle = 0x4000005;
        resource.res_index = 77;
    }
    *action = 0x20000145;
    return 0;
}

} // extern "C"

namespace {

class WrongAnswers : public testing::Test {
protected:
    WrongAnswers() { std::memset(values, canary, sizeof values); }

    std::size_t written() const
    {
        std::size_t end = sizeof values;
        while (end > 0 && values[end - 1] == canary)
            --end;
        return end;
    }

    static constexpr u8 canary = 0xa5;
    u8 values[20 * sizeof(pd_snapshot_phv)];
    u32 count = 0;
};

TEST_F(WrongAnswers, RegistersKeepToTheirRoom)
{
    room = 4;
    told = far;
    EXPECT_EQ(PD(register_read_ingStpCheckData)(0, {}, 0, 0, values, &count), 0u);
    EXPECT_EQ(count, 4u);
    EXPECT_EQ(written(), 4u);
    u32 indices = 0;
    EXPECT_EQ(PD(register_range_read_ingStpCheckData)(0, {}, 0, 2, 0, &indices, values, &count), 0u);
    EXPECT_EQ(indices, 2u);
    EXPECT_EQ(count, 8u);
    EXPECT_EQ(written(), 8u);
    room = 0x40000001; // four times this is four
    EXPECT_EQ(PD(register_range_read_ingStpCheckData)(0, {}, 0, 4, 0, &indices, values, &count), 2u);
    EXPECT_EQ(written(), 8u);
}

TEST_F(WrongAnswers, AttributesKeepToTheirList)
{
    told = far;
    hash_input_field_attribute attributes[3] = {{}, {}, {7, 7, 7}};
    EXPECT_EQ(PD(hash_calc_hashInnerEthHdr_input_field_attribute_get)(0, 0, 0, 2, attributes, &count), 0u);
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(attributes[2].input_field, 7u);
}

TEST_F(WrongAnswers, MembersOfAGroupKeepToTheirList)
{
    room = 2;
    told = far;
    EXPECT_EQ(PD(lagPortActionProfile_del_group)(0, 0, 1), 0u);
    EXPECT_EQ(handed_on, 2u);
}

TEST_F(WrongAnswers, SnapshotsNeedWholeStages)
{
    auto *capture = reinterpret_cast<pd_snapshot_phv *>(values);
    for (const auto &[total, stage] : {std::pair{0u, 0u}, {2836u, 0u}, {2836u, 708u}}) {
        told = total;
        stage_bytes = stage;
        const pd_status status = PD(snapshot_capture_data_get)(0, 0, capture, 0, &count);
        EXPECT_TRUE(status == 9 || (total == 0 && status == PD_STATUS_NO_MEMORY));
        EXPECT_EQ(written(), 0u) << stage;
    }
}

TEST_F(WrongAnswers, ResourcesKeepToTheRecord)
{
    PD(pdpPolicy_match_spec_t) key{};
    PD(setPdpClassCount_action_spec_t) parameters{};
    u32 action = 0;
    u8 is_default = 0;
    EXPECT_EQ(PD(pdpPolicy_get_entry)(0, 0, 1, 0, &key, nullptr, &parameters, &action, &is_default), 0u);
    EXPECT_EQ(parameters.action_counterIndex, 77u);
}

TEST_F(WrongAnswers, DigestsWithoutANameHaveNoSize)
{
    EXPECT_EQ(PD(get_digest_entry_size)(nullptr), 0u);
}

// Whether the last backtrace has a frame of the library, and behind it one of this program.
bool went_through_the_library()
{
    bool in_library = false;
    for (int i = 0; i < frame_count; ++i) {
        Dl_info place{};
        dladdr(frames[static_cast<std::size_t>(i)], &place);
        const std::string_view file{place.dli_fname ? place.dli_fname : ""};
        if (in_library && file.ends_with("wrong_answers_test"))
            return true;
        in_library = in_library || file.find("libts_bf_pd_nat_static") != std::string_view::npos;
    }
    return false;
}

TEST_F(WrongAnswers, BacktracesOfTheDriverGoThroughTheLibrary)
{
    const PD(ipv4Host_match_spec_t) key{};
    const PD(setNextHop_action_spec_t) action{};
    pd_entry_hdl entry = 0;
    EXPECT_EQ(PD(ipv4Host_table_add_with_setNextHop)(0, {0, 0xffff}, &key, &action, &entry), 0u);
    EXPECT_TRUE(went_through_the_library());
    frame_count = 0;
    EXPECT_EQ(PD(ipv4Host_table_modify_with_setNextHop_by_match_spec)(0, {0, 0xffff}, &key, &action), 0u);
    EXPECT_TRUE(went_through_the_library());
}

} // namespace
