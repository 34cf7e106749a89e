// The model driver's packet-side services: digests, parser value sets, hash calculations, snapshots.
#include "model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "bf_snapshot.h"
#include "model_tables.h"
#include "pipe_mgr.h"
#include "tap.h"

namespace {

using Words = std::vector<pd_word>;

class Services : public testing::Test {
protected:
    Services() { ts_tap_trace(note, &told_); }
    ~Services() override
    {
        ts_tap_trace(nullptr, nullptr);
        ts_model_reset();
    }

    // Of each driver call since the last time, its status and what it gave back.
    std::string outcomes() { return std::exchange(told_, {}); }

    u32 out[5] = {9, 9, 9, 9, 9};

private:
    static void note(const char *line, void *cookie)
    {
        *static_cast<std::string *>(cookie) += std::strstr(line, ") = ") + 3 + std::string{";"};
    }

    std::string told_;
};

// The words of the call and of the message, the message itself, and its entries.
using Received = std::vector<std::pair<Words, Bytes>>;

// Driver calls work in here: the answer tells how many messages are pending.
pd_status receive(pd_sess_hdl sess, void *message, pd_word cookie)
{
    const auto &[device, digest, count, bytes, entries] = *static_cast<ts_model_digest_message *>(message);
    reinterpret_cast<Received *>(cookie)->push_back(
        {{sess, device, digest, count, bytes, reinterpret_cast<pd_word>(message)},
         Bytes(entries, entries + count * bytes)});
    return ts_model_pending_digests(device, digest) + 100;
}

TEST_F(Services, DigestsAreDeliveredAndAcknowledged)
{
    constexpr u32 ptp = 0x9000001;
    Received received;
    const auto cookie = reinterpret_cast<pd_word>(&received);
    const Bytes entries{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20};
    const auto send = [&](u32 dev, u32 count) { return ts_model_digest(dev, ptp, entries.data(), count); };
    pipe_mgr_lrn_digest_notification_register(7, 1, ptp, nullptr, 0);
    for (const auto &[sess, digest] : {std::pair{7u, ptp + 1}, {7u, ptp}, {8u, ptp}, {7u, ptp}})
        pipe_mgr_lrn_digest_notification_register(sess, 1, digest, receive, cookie);
    EXPECT_EQ(outcomes(), " 3; 4; 0; 5; 0;");
    EXPECT_EQ((Words{send(1, 0), send(0, 2), send(1, 2), send(1, 1)}), (Words{3, 4, 101, 102}));
    ASSERT_EQ(received.size(), 2u);
    const pd_word message = received[0].first.back();
    EXPECT_EQ(received[0], (std::pair{Words{7, 1, ptp, 2, 10, message}, entries}));
    pipe_mgr_lrn_digest_notification_deregister(8, 1, ptp);
    pipe_mgr_lrn_digest_notification_deregister(7, 1, ptp);
    EXPECT_EQ(send(1, 1), TS_MODEL_UNKNOWN_OBJECT);
    for (const auto &[sess, digest] : {std::pair{7u, ptp - 1}, {8u, ptp}, {7u, ptp}, {7u, ptp}})
        pipe_mgr_flow_lrn_notify_ack(sess, digest, message);
    pipe_mgr_flow_lrn_notify_ack(7, ptp, cookie);
    EXPECT_EQ(outcomes(), " 4; 0; 4; 4; 0; 4; 4;");
    EXPECT_EQ(ts_model_pending_digests(1, ptp), 1u);
    ts_model_reset();
    EXPECT_EQ(ts_model_pending_digests(1, ptp), 0u);
}

TEST_F(Services, ValueSetsKeepEntriesByScope)
{
    constexpr u32 set = 511;
    const u32 adds[][3] = {{set, 3, 0x12}, {set, 3, 0x912}, {set, 3, 0x14}, {505, 3, 0x12},
                           {504, 3, 0x12}, {set, 4, 0x12},  {set, 3, 0x13}};
    for (const auto &[to, scope, key] : adds)
        pipe_mgr_pvs_entry_add(7, 0, to, 1, 2, u8(scope), key, 0xff, out);
    EXPECT_EQ(outcomes(), " 0, entry=1; 5; 0, entry=2; 0, entry=1; 4; 0, entry=3; 0, entry=4;");
    pipe_mgr_pvs_entry_delete(7, 0, set, 2);
    pipe_mgr_pvs_entry_delete(7, 0, set, 2);
    pipe_mgr_pvs_entry_add(7, 0, set, 1, 2, 3, 0x12, 0xfff, out);
    pipe_mgr_pvs_entry_get_first(7, 0, set, 1, 2, 3, out);
    pipe_mgr_pvs_entry_get_first(7, 0, set, 1, 2, 5, out);
    pipe_mgr_pvs_entry_get_next(7, 0, set, 1, 2, 3, 2, 3, out);
    pipe_mgr_pvs_entry_get_count(7, 0, set, 1, 2, 3, 1, out);
    EXPECT_EQ(outcomes(), " 0; 4; 0, entry=5; 0, first=1; 0, first=0; 0, next=[4 5 0]; 0, count=3;");
    u8 scope_c = 0;
    pipe_mgr_pvs_entry_modify(7, 0, set, 4, 0x12, 0xff);
    pipe_mgr_pvs_entry_modify(7, 0, set, 4, 0x113, 0xff); // no other key than before
    pipe_mgr_pvs_entry_get(7, 0, set, 4, out, out + 1, out + 2, out + 3, &scope_c);
    pipe_mgr_pvs_entry_get(7, 0, set, 1, out, out + 1, nullptr, nullptr, nullptr);
    pipe_mgr_pvs_entry_handle_get(7, 0, set, 1, 2, 3, 0x213, 0xff, out);
    pipe_mgr_pvs_entry_handle_get(7, 0, set, 1, 2, 4, 0x213, 0xff, out);
    EXPECT_EQ(outcomes(), " 5; 0; 0, key=0x113, key_mask=0xff, scope_a=1, scope_b=2, scope_c=3; 0, key=0x12, "
                          "key_mask=0xff; 0, entry=4; 4;");
    EXPECT_EQ((Words{out[2], out[3], scope_c}), (Words{1, 2, 3}));
    pipe_mgr_pvs_set_property(7, 0, set, 1, {5, 0}, {6, 0, 99});
    pipe_mgr_pvs_get_property(7, 0, set, 1, out, {6, 0, 0});
    pipe_mgr_pvs_get_property(7, 0, set, 1, out, {7, 0, 0});
    EXPECT_EQ(outcomes(), " 0; 0, value=5; 4;");
}

TEST_F(Services, HashesAreCrcsByTheirSettings)
{
    constexpr u32 crc_16 = 0x8000000, crc_32 = 0x8000008, input = 0x21000008;
    const auto hash = [&](u32 calculation, u32 algorithm, pd_word seed, u32 size) {
        Bytes stream{'1', '2', '3', '4', '5', '6', '7', '8', '9'}, result(size, 0xee);
        pipe_mgr_hash_calc_algorithm_set(7, 0, calculation, algorithm, 0, 0, 0);
        pipe_mgr_hash_calc_seed_set(7, 0, calculation, seed, 0x99);
        pipe_mgr_hash_calc_calculate_hash_value(7, 0, calculation, stream.data(), 9, result.data(), size);
        return outcomes();
    };
    EXPECT_EQ(hash(crc_16, TS_MODEL_CRC_16, 0, 2), " 0; 0; 0, hash=bb3d;");
    EXPECT_EQ(hash(crc_16, TS_MODEL_CRC_16, 0x1d0f, 4), " 0; 0; 0, hash=0000f860;");
    EXPECT_EQ(hash(crc_16, TS_MODEL_CRC_32, 0, 2), " 0; 0; 0, hash=3926;");
    EXPECT_EQ(hash(crc_32, 0, 0, 4), " 4; 0; 0, hash=cbf43926;");
    EXPECT_EQ(hash(crc_32, TS_MODEL_CRC_32, 0x12345678, 5), " 0; 0; 0, hash=000f8b7431;");
    pipe_mgr_hash_calc_algorithm_get(7, 0, crc_32, out, 0, 0);
    pipe_mgr_hash_calc_input_set(7, 0, crc_32, 0);
    pipe_mgr_hash_calc_input_set(7, 0, crc_32, input);
    pipe_mgr_hash_calc_input_get(7, 0, crc_32, out);
    EXPECT_EQ(outcomes(), " 0, algorithm=0x23000001; 4; 0; 0, input=0x21000008;");
    pipe_hash_calc_input_field_attribute attributes[] = {{3, 0, 0, 4, 1, 0x55}, {9, 0, 0, 10, 2, 0x66}};
    for (const auto &[handle, count] : {std::pair{0u, 2u}, {input, 2u}, {input, 0u}}) {
        pipe_mgr_hash_calc_input_field_attribute_set(7, 0, crc_32, handle, count, attributes);
        pipe_mgr_hash_calc_input_field_attribute_count_get(7, 0, crc_32, input, out);
        pipe_mgr_hash_calc_input_field_attribute_get(7, 0, crc_32, input, 1, attributes + 1, out);
    }
    ts_model_hash_seed seed{};
    pipe_mgr_hash_calc_seed_get(7, 0, crc_32, &seed);
    EXPECT_EQ(outcomes(),
              " 4; 0, count=0; 0, attributes=[], count=0; 0; 0, count=2; 0, attributes=[3:1=0x55], count=1;"
              " 0; 0, count=0; 0, attributes=[], count=0; 0;");
    EXPECT_EQ((Words{seed.first, seed.second}), (Words{0x12345678, 0x99}));
}

TEST_F(Services, SnapshotsCaptureStageByStage)
{
    constexpr u32 bytes = 709; // of a stage
    const u32 places[][3] = {{3, 2, 0}, {0, 20, 0}, {0, 0, 2}, {0, 19, 0}, {4, 6, 1}};
    for (const auto &[first, last, direction] : places)
        bf_snapshot_create(1, 2, u8(first), u8(last), direction, reinterpret_cast<pd_word>(out));
    EXPECT_EQ(outcomes(), " 3; 3; 3; 0; 0;");
    EXPECT_EQ(out[0], 0x100000au) << "after 0x1000004";
    const u32 snapshot = out[0];
    Bytes spec(bytes, 0x5a), mask(bytes, 0xa5), buffer(3 * bytes, 0xee), expected(3 * bytes);
    const auto capture = [&](u32 at, u32 n) { return ts_model_capture(snapshot, at, spec.data(), n); };
    EXPECT_EQ(capture(4, 3), TS_MODEL_UNKNOWN_OBJECT) << "not armed";
    bf_snapshot_capture_trigger_set(snapshot, spec.data(), mask.data());
    EXPECT_EQ((Words{capture(3, 3), capture(7, 3), capture(4, bytes + 1), capture(4, bytes), capture(4, 3)}),
              (Words{3, 3, 3, 0, 0}));
    ts_model_hit hit{};
    for (const u8 port : {1, 2, 3}) // the last one finds all stages taken
        ts_model_counted_lookup(1, exact.handle, Bytes{0, port}.data(), 2, 0, 1, 64, &hit);
    std::fill_n(expected.begin(), 3, u8{0x5a});
    expected[bytes + 1] = 1;
    expected[2 * bytes + 1] = 2;
    bf_snapshot_capture_get(snapshot, 0, buffer.data(), 0, out);
    EXPECT_EQ(buffer, expected);
    ts_model_snapshot read{};
    bf_snapshot_capture_trigger_set(snapshot, spec.data(), mask.data());
    ASSERT_EQ(ts_model_get_snapshot(snapshot, &read), TS_MODEL_OK);
    EXPECT_EQ((Words{read.pipe, read.first_stage, read.direction, read.captured}), (Words{2, 4, 1, 0}));
    EXPECT_EQ(Bytes(read.spec, read.spec + bytes), spec);
    EXPECT_EQ(Bytes(read.mask, read.mask + bytes), mask);
    bf_snapshot_delete(snapshot);
    bf_snapshot_capture_phv_fields_dict_size(snapshot, out + 2, out + 3); // tells no sizes
    bf_snapshot_delete(snapshot);
    EXPECT_EQ(outcomes(), " 0; 0, count=3; 0; 0; 4; 4;");
    EXPECT_EQ(Words(out, out + 4), (Words{3, 9, 9, 9}));
    ts_model_reset();
    EXPECT_EQ(ts_model_get_snapshot(0x1000004, &read), TS_MODEL_UNKNOWN_OBJECT);
}

} // namespace
