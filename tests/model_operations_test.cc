// One operation for each way in which the model driver comes by an object: what is refused, and that it
// works.
#include <gtest/gtest.h>

#include <functional>

#include "bf_snapshot.h"
#include "model.h"
#include "model_tables.h"
#include "pd_ms.h"
#include "pipe_stful.h"

namespace {

constexpr u32 adt = 0x200001d, sel = 0x3000001; // of ecmpMemberActionProfile
constexpr u32 class_count = 0x4000005, pdp_meter = 0x5000002, flags = 0x6000002;
constexpr u32 on_miss = 0x2000000b, classify = 0x1000009; // an action, l2DmacClassify
constexpr u32 crc_32 = 0x8000008, input = 0x21000008, digest = 0x9000001, set = 511;
constexpr u32 unknown = 0x1ffffff, no_device = 256;

template <typename T>
pd_word word(T *address)
{
    return reinterpret_cast<pd_word>(address);
}

pd_status receive(pd_sess_hdl, void *, pd_word)
{
    return 0;
}

// A call on a device and a table, or whatever its handle is of.
struct Operation {
    const char *name;
    u32 table;
    std::function<pd_status(u32, u32)> call;
    bool has_device = true; // one that can be unknown
};

// Something of everything: entry 1 of each table and its default, members 1 and 2, group 1 with member 1,
// empty group 2.
class World {
public:
    World()
    {
        ts_model_reset();
        add_entry(exact, 1);
        add_entry(lpm, 1);
        add_entry(metered, 1, 0x5000001);
        fill_profile(2, 2);
        pipe_mgr_sel_grp_mbr_add(1, 0, sel, 1, indirect.action, 1, 0);
        pipe_mgr_tbl_set_property(1, 0, exact.handle, 3, 4, 5, 0);
        pipe_mgr_pvs_entry_add(1, 0, set, 1, 2, 3, 4, 0xff, words);
        pipe_mgr_pvs_set_property(1, 0, set, 1, {5, 0}, {6, 0, 0});
        bf_snapshot_create(0, 0, 0, 1, 0, word(&snapshot));
        EXPECT_NE(snapshot, 0u);
    }
    ~World()
    {
        ts_model_free_plcmt_data(request.data);
        ts_model_reset();
    }

    std::vector<Operation> all();
    std::vector<Operation> with_null();

private:
    u8 bytes[2048] = {0, 2, 3, 4, 5, 6}, image_mask[64]{};
    u32 words[8]{}, snapshot = 0;
    pipe_stat_data counts{}, *counts_place = &counts;
    pipe_meter_spec meter{};

    pipe_stful_value value{};
    pipe_idle_params idle{1, 2, 3, 4, 5, 0, 6, 0};
    pipe_res_spec resource{0x5000001, 0, {}, PIPE_RES_ATTACH};
    pipe_action_spec spec{};
    pipe_match_spec match{};
    pipe_action_data data{};
    ts_model_plcmt_request request{};

    // The records of an entry of the table; as large where they are read into.
    pipe_match_spec *key_of(const Table &table, u8 last)
    {
        std::fill_n(image_mask, table.bytes, u8{0xff});
        bytes[table.bytes - 1] = last;
        match = {bytes, image_mask, 0, 0, table.bits, table.bytes, 0};
        return &match;
    }
    pipe_action_spec *action_of(const Table &table)
    {
        spec = {};
        spec.action_kind = PIPE_ACTION_DATA;
        spec.action_data = {0, table.data_bytes, bytes + 100};
        return &spec;
    }
    pipe_action_spec *member_data()
    {
        spec = {};
        spec.action_data = {40, indirect.data_bytes, bytes + 100};
        return &spec;
    }
    void add_entry(const Table &table, u8 last, u32 attached = 0)
    {
        action_of(table)->resource_count = attached != 0;
        spec.resources[0] = resource;
        EXPECT_EQ(pipe_mgr_mat_ent_add(1, {0, PIPE_ALL_PIPES}, table.handle, key_of(table, last),
                                       table.action, &spec, 9, 0, words),
                  TS_MODEL_OK);
    }
    pd_word request_of(u32 device)
    {
        ts_model_free_plcmt_data(request.data);
        request = {device, 1, nullptr};
        return word(&request);
    }
};

#define CALL(...)                                                                                            \
    [this](u32 device, u32 table) -> pd_status {                                                             \
        [[maybe_unused]] const pd_dev_target at{device, PIPE_ALL_PIPES};                                     \
        (void)this, (void)table;                                                                             \
        return __VA_ARGS__;                                                                                  \
    }
#define OF(name, table, ...)                                                                                 \
    {                                                                                                        \
#name, table, CALL(name(__VA_ARGS__))                                                                \
    }
#define ANYWHERE(name, table, ...)                                                                           \
    {                                                                                                        \
#name, table, CALL(name(__VA_ARGS__)), false                                                         \
    }

// clang-format off
std::vector<Operation> World::all()
{
    return {
        OF(pipe_mgr_mat_ent_add, exact.handle, 1, at, table, key_of(exact, 2), exact.action, action_of(exact), 0, 0, words),
        OF(pipe_mgr_mat_ent_set_action, exact.handle, 1, device, table, 1, exact.action, action_of(exact), 0),
        OF(pipe_mgr_match_spec_to_ent_hdl, exact.handle, 1, at, table, key_of(exact, 1), words, 0),
        OF(pipe_mgr_mat_ent_set_resource, metered.handle, 1, device, table, 1, &resource, 1, 0),
        OF(pipe_mgr_mat_default_entry_set, classify, 1, at, table, on_miss, action_of(metered), 0, words),
        OF(pipe_mgr_get_entry, exact.handle, 1, table, at, 1, key_of(exact, 0), action_of(exact), words, 0, 1, 0),
        OF(pipe_mgr_get_first_entry_handle, exact.handle, 1, table, at, words),
        OF(pipe_mgr_tbl_get_property, exact.handle, 1, device, table, 3, words, words + 1),
        OF(pipe_register_mat_update_cb, exact.handle, 1, device, table, nullptr, 0),
        {"pipe_mgr_plcmt_mat_data_get", exact.handle, CALL(pipe_mgr_plcmt_mat_data_get(request_of(device), 0, table))},
        OF(pipe_mgr_adt_ent_set, adt, 1, device, table, 1, indirect.action, member_data(), 0),
        OF(pipe_mgr_get_action_data_entry, adt, table, at, 1, &(data = {0, 28, bytes}), words, 0),
        OF(pipe_register_adt_update_cb, adt, 1, device, table, nullptr, 0),
        OF(pipe_mgr_plcmt_adt_data_get, adt, request_of(device), 0, table),
        OF(pipe_mgr_sel_grp_del, sel, 1, device, table, 1, 0),
        OF(pipe_mgr_get_sel_grp_mbr_count, sel, 1, device, table, 1, words),
        OF(pipe_mgr_sel_grp_mbr_get_from_hash, sel, 1, device, table, 1, 0, 0, word(words)),
        OF(pipe_mgr_sel_tbl_register_cb, sel, 1, device, table, nullptr, 0),
        OF(pipe_register_sel_update_cb, sel, 1, device, table, nullptr, 0),
        OF(pipe_mgr_get_word_llp_active_members, sel, 1, at, table, 1, 2, word(words)),
        OF(pipe_mgr_plcmt_sel_data_get, sel, request_of(device), 0, table),
        OF(pipe_mgr_stat_ent_query, class_count, 1, at, table, words + 7, 1, &counts_place),
        OF(pipe_mgr_stat_database_sync, class_count, 1, at, table, nullptr, 0),
        OF(pipe_mgr_mat_ent_direct_stat_set, classify, 1, device, table, TS_MODEL_DEFAULT_ENTRY, &counts),
        OF(pipe_mgr_direct_stat_database_sync, classify, 1, at, table, nullptr, 0),
        OF(pipe_mgr_meter_ent_set, pdp_meter, 1, at, table, 0, &meter, 0),
        OF(pipe_mgr_meter_read_entry, metered.handle, 1, at, table, 1, &meter),
        OF(pipe_mgr_meter_get_bytecount_adjust, pdp_meter, 1, at, table, words),
        OF(pipe_stful_ent_set, flags, 1, at, table, 0, &value, 0),
        OF(pipe_stful_database_sync, flags, 1, at, table, nullptr, 0),
        OF(pipe_mgr_idle_get_params, lpm.handle, 1, device, table, &idle),
        OF(pipe_mgr_mat_ent_get_idle_ttl, lpm.handle, 1, device, table, 1, words),
        ANYWHERE(pipe_mgr_lrn_digest_notification_register, digest, 1, u8(device), table, receive, 0),
        OF(pipe_mgr_pvs_get_property, set, 1, device, table, 1, words, {6, 0, 0}),
        OF(pipe_mgr_pvs_entry_get_count, set, 1, device, table, 1, 2, 3, 1, words),
        OF(pipe_mgr_hash_calc_input_get, crc_32, 1, device, table, words),
        OF(pipe_mgr_hash_calc_input_field_attribute_count_get, crc_32, 1, device, table, input, words),
        ANYWHERE(bf_snapshot_delete, snapshot, table),
    };
}

// The same with a place that is missing.
std::vector<Operation> World::with_null()
{
    pipe_mgr_plcmt_mat_data_get(request_of(0), 0, exact.handle);
    return {
        OF(pipe_mgr_mat_ent_add, exact.handle, 1, at, table, key_of(exact, 2), exact.action, action_of(exact), 0, 0, nullptr),
        OF(pipe_mgr_get_entry, exact.handle, 1, table, at, 1, nullptr, action_of(exact), words, 0, 1, 0),
        OF(pipe_mgr_plcmt_mat_data_get, exact.handle, 0, 0, table),
        OF(pipe_mgr_plcmt_mat_data_get, exact.handle, request_of(device), 1, table),
        OF(pipe_mgr_plcmt_mat_data_get_entry, 0, nullptr, &match, &spec, words),
        OF(p4_pd_ms_del_grp, 0, 1, p4_pd_ms_init_state(), device, 1, 1, nullptr),
    };
}
// clang-format on

TEST(Operations, RefuseWhatIsUnknownAndWork)
{
    const std::size_t count = World{}.all().size();
    for (std::size_t i = 0; i < count; ++i) {
        World world;
        const Operation operation = world.all()[i];
        SCOPED_TRACE(operation.name);
        EXPECT_EQ(operation.call(0, unknown), TS_MODEL_UNKNOWN_OBJECT);
        if (operation.has_device) {
            EXPECT_EQ(operation.call(no_device, operation.table), TS_MODEL_UNKNOWN_OBJECT);
        }
        EXPECT_EQ(operation.call(0, operation.table), TS_MODEL_OK);
    }
}

TEST(Operations, RefuseToDoWithoutAPlace)
{
    const std::size_t count = World{}.with_null().size();
    for (std::size_t i = 0; i < count; ++i) {
        World world;
        const Operation operation = world.with_null()[i];
        EXPECT_EQ(operation.call(0, operation.table), TS_MODEL_BAD_ARGUMENT) << i << " " << operation.name;
    }
}

} // namespace
