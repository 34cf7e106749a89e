// Counters, meters and registers: each function's calls, what it writes, and what is left when one of them
// fails.
#include "call_log.h"
#include "resources.h"

namespace {

using namespace call_log;
using testing::KilledBySignal;

void synced(u32, pd_word) {}

const pd_word callback = word(&synced);

using Resources = CallLog;

// ---- Counters ---------------------------------------------------------------------------------------------

constexpr Facts counters[] = {
    {"egressPortQueueCount", 0x4000007, false},    {"pdpClassCount", 0x4000005, false},
    {"l2DmacClassifyCount", 0x1000009, true},      {"ingressPortDropCount", 0x1000011, true},
    {"trapToCpuCount", 0x1000040, true},           {"egressTcamV6RaclBank1Count", 0x1000092, true},
    {"egressTcamRaclBank1Count", 0x100009c, true}, {"haloCount", 0x100006f, true},
    {"finalDropControlCount", 0x1000075, true},    {"egressPortDropCount", 0x100009e, true},
};

TEST_F(Resources, CountersAreReadWrittenAndSynced)
{
    recorder::answer.counts = {.second_count = 2, .first_count = 0x8000000000000001};
    each(reflection::counters(), counters, [&](const auto &counter, const Facts &facts) {
        const std::string direct = facts.direct ? "pipe_mgr_direct_stat_" : "pipe_mgr_stat_";
        const Step sync{line(direct + "ent_database_sync", sess, target, facts.handle, cell)};
        const Step query{
            facts.direct
                ? line("pipe_mgr_mat_ent_direct_stat_query", sess, device, facts.handle, cell)
                : line("pipe_mgr_stat_ent_query", sess, target, facts.handle, std::vector{cell}, 1, "{0 0}")};
        for (const u8 flags : {0, 2, 0xfe, 1, 0xff}) {
            std::vector<Step> steps{query};
            if (flags % 2)
                steps.insert(steps.begin(), sync);
            expect_steps(steps, [&] {
                pd_counter_value value{7, 8};
                const pd_status status = counter.read(sess, target, cell, flags, &value);
                EXPECT_EQ(value.first_count, status ? 7 : 0x8000000000000001);
                EXPECT_EQ(value.second_count, status ? 8u : 2u);
                return status;
            });
        }
        const char *words = "{0x2 0x8000000000000001}";
        expect_steps(
            {{facts.direct ? line("pipe_mgr_mat_ent_direct_stat_set", sess, device, facts.handle, cell, words)
                           : line("pipe_mgr_stat_ent_set", sess, target, facts.handle, cell, words)}},
            [&] {
                return counter.write(sess, target, cell, {0x8000000000000001, 2});
            });
        expect_steps({{line(direct + "database_sync", sess, target, facts.handle, callback, cookie)}},
                     [&] { return counter.hw_sync(sess, target, synced, cookie); });
    });
}

// ---- Meters -----------------------------------------------------------------------------------------------

constexpr Facts meters[] = {{"egressMirrorMeter", 0x5000004, false},
                            {"stormControlMeter", 0x5000001, true},
                            {"pdpMeter", 0x5000002, false},
                            {"ingressMirrorMeter", 0x5000003, false}};
constexpr u32 storm_control_table = 0x100005b;
constexpr char no_meter[] = "{type=0 committed=0:0:0 peak=0:0:0}";

pd_meter_spec requested(u32 type)
{
    return {0xffffffff, 2, 0x80000000, 4, type};
}

// What the driver gets for it, all of the high halves 0.
std::string written(u32 type, u32 unit)
{
    const std::string of_unit = "=" + std::to_string(unit);
    return "{type=" + recorder::text_of(u64{type}) + " committed" + of_unit + ":0xffffffff:0x2 peak" +
           of_unit + ":0x80000000:0x4}";
}

// Reads a meter whose high halves are not 0: they are dropped.
template <typename Read>
pd_status expect_meter(const Read &read)
{
    recorder::answer.meter = {.meter_type = 1,
                              .committed_unit = 1,
                              .committed_rate = 0x1ffffffff,
                              .committed_burst = 0x200000002,
                              .peak_unit = 1,
                              .peak_rate = 0xffffffff80000000,
                              .peak_burst = 0x400000004};
    pd_meter_spec spec{9, 9, 9, 9, 9};
    const pd_status status = read(&spec);
    const pd_meter_spec expected = status ? pd_meter_spec{9, 9, 9, 9, 9} : requested(1);
    EXPECT_EQ(std::memcmp(&spec, &expected, sizeof spec), 0);
    return status;
}

TEST_F(Resources, MetersAreSetReadAndAdjusted)
{
    each(reflection::meters(), meters, [&](const auto &meter, const Facts &facts) {
        for (const u32 type : {0u, 1u, 2u, 0xffffffffu}) {
            recorder::log.clear();
            const pd_meter_spec spec = requested(type);
            const std::string record = written(type == 1, 0);
            expect_steps(
                {{facts.direct
                      ? line("pipe_mgr_mat_ent_set_resource", sess, device, storm_control_table, cell,
                             "[{handle=0x5000001 index=0 tag=1 meter=" + record + "}]", 1, 0)
                      : line("pipe_mgr_meter_ent_set", sess, target, facts.handle, cell, record, 0)}},
                [&] { return meter.set(sess, target, cell, &spec); });
            EXPECT_EQ(recorder::log.size(), type > 1); // of the last run
            for (const recorder::LogLine &logged : recorder::log)
                EXPECT_TRUE(logged.text.starts_with("ASSERTION FAILED: \"0\" (0) from get_bytes_meter_type:"))
                    << logged.text;
        }
        expect_steps(
            {{facts.direct
                  ? line("pipe_mgr_meter_read_entry", sess, target, storm_control_table, cell, no_meter)
                  : line("pipe_mgr_meter_read_entry_idx", sess, target, facts.handle, cell, no_meter, 0)}},
            [&] { return expect_meter([&](auto *spec) { return meter.read(sess, target, cell, spec); }); });
        expect_steps({{line("pipe_mgr_meter_set_bytecount_adjust", sess, target, facts.handle, member)}},
                     [&] { return meter.bytecount_adjust_set(sess, target, member); });
        u32 adjust = 0;
        recorder::answer.numbers[0] = group;
        expect_steps({{line("pipe_mgr_meter_get_bytecount_adjust", sess, target, facts.handle)}},
                     [&] { return meter.bytecount_adjust_get(sess, target, &adjust); });
        EXPECT_EQ(adjust, group);

        recorder::debug_mode = true;
        const pd_meter_spec spec = requested(2);
        EXPECT_EXIT(meter.set(sess, target, cell, &spec), KilledBySignal(SIGABRT),
                    assertion("pd", "get_bytes_meter_type", "0"));
        recorder::debug_mode = false;
    });
}

TEST_F(Resources, MetersAreSetAndReadByHandle)
{
    struct Functions {
        decltype(p4_pd_tessel_switch_bytes_meter_set) *set;
        decltype(p4_pd_tessel_switch_bytes_meter_read) *read;
        u32 unit;
        const char *rule;
    };
    const Functions kinds[] = {
        {p4_pd_tessel_switch_bytes_meter_set, p4_pd_tessel_switch_bytes_meter_read, 0,
         "get_bytes_meter_type"},
        {p4_pd_tessel_switch_packets_meter_set, p4_pd_tessel_switch_packets_meter_read, 1,
         "get_packets_meter_type"},
    };
    const std::string no_color = "has_pre_color == true";
    const std::string no_type = "requested_meter_type == PD_METER_TYPE_COLOR_AWARE \\|\\| "
                                "requested_meter_type == PD_METER_TYPE_COLOR_UNAWARE";
    struct Request {
        u32 type;
        u8 has_pre_color;
        const std::string *condition = nullptr; // of the assertion that it ends in
    };
    const Request requests[] = {{0, 1},
                                {0, 0x80},
                                {1, 0},
                                {1, 1},
                                {0, 0, &no_color},
                                {2, 0, &no_type},
                                {2, 1, &no_type},
                                {0xffffffff, 1, &no_type}};
    for (const Functions &kind : kinds) {
        SCOPED_TRACE(kind.rule);
        scramble_arguments();
        const u32 meter = random.word();
        for (const auto &[type, has_pre_color, condition] : requests) {
            const pd_meter_spec spec = requested(type);
            const auto set = [&, pre_color = has_pre_color] {
                return kind.set(sess, target, meter, cell, &spec, pre_color);
            };
            const std::string call =
                line("pipe_mgr_meter_ent_set", sess, target, meter, cell, written(type, kind.unit), 0);
            for (const bool debug_mode : {false, true}) {
                recorder::debug_mode = debug_mode;
                if (condition) {
                    EXPECT_EXIT(set(), KilledBySignal(SIGABRT),
                                assertion("pd_tessel", kind.rule, *condition));
                } else {
                    expect_steps({{call}}, set);
                }
            }
        }
        expect_steps({{line("pipe_mgr_meter_read_entry_idx", sess, target, meter, cell, no_meter, 0)}}, [&] {
            return expect_meter([&](auto *spec) { return kind.read(sess, target, meter, cell, spec); });
        });
    }
    const pd_wred_spec wred{{0xffffffff, 2, 3, 4}};
    expect_steps({{line("pipe_mgr_wred_ent_set", sess, target, group, cell, "{0xffffffff 0x2 0x3 0x4}", 0)}},
                 [&] { return p4_pd_tessel_switch_wred_set(sess, target, group, cell, &wred); });
}

// ---- Registers --------------------------------------------------------------------------------------------

constexpr Facts registers[] = {{"ingStpCheckData", 0x6000001},
                               {"ingVlanCheckData", 0x6000002},
                               {"egrStpCheckData", 0x6000007},
                               {"egrVlanCheckData", 0x6000008}};
const std::string zeroes(30, '0');

// Where values are read to, and their count.
struct Values {
    u8 bytes[8] = {0xa5, 0xa5, 0xa5, 0xa5, 0xa5, 0xa5, 0xa5, 0xa5};
    u32 count = 77;

    void expect(const std::vector<u8> &expected) const
    {
        EXPECT_EQ(count, expected.size());
        expect_bytes(expected);
    }
    void expect_untouched() const
    {
        EXPECT_EQ(count, 77u);
        expect_bytes({});
    }

private:
    void expect_bytes(std::vector<u8> expected) const
    {
        expected.resize(sizeof bytes, 0xa5);
        EXPECT_EQ(std::vector<u8>(std::begin(bytes), std::end(bytes)), expected);
    }
};

TEST_F(Resources, RegistersAreWrittenResetAndSynced)
{
    each(reflection::registers(), registers, [&](const auto &functions, const Facts &facts) {
        const u32 handle = facts.handle;
        for (const u8 value : {0, 1, 0x80, 0xff}) {
            const std::string element = (value ? "01" : "00") + zeroes;
            expect_steps({{line("pipe_stful_ent_set", sess, target, handle, cell, element, 0)}},
                         [&] { return functions.write(sess, target, cell, &value); });
            expect_steps({{line("pipe_stful_table_reset", sess, target, handle, element)}},
                         [&] { return functions.write_all(sess, target, &value); });
        }
        expect_forwards({{line("pipe_stful_table_reset", sess, target, handle, "null"),
                          [&] { return functions.reset_all(sess, target); }},
                         {line("pipe_stful_table_reset_range", sess, target, handle, cell, member, "null"),
                          [&] { return functions.range_reset(sess, target, cell, member); }},
                         {line("pipe_stful_database_sync", sess, target, handle, callback, cookie),
                          [&] { return functions.hw_sync(sess, target, synced, cookie); }}});
    });
}

TEST_F(Resources, RegistersAreRead)
{
    counts_allocations = false;
    each(reflection::registers(), registers, [&](const auto &functions, const Facts &facts) {
        const u32 handle = facts.handle;
        // All that there is room for, and a count that the driver has lowered.
        for (const std::vector<u8> &flags : {std::vector<u8>{1, 0, 0x80, 0xff}, {1, 7}, {}}) {
            recorder::answer.flags = {flags};
            recorder::answer.numbers[0] = 4;
            const int bits = static_cast<int>(random.word());
            expect_steps({{line("pipe_stful_query_get_sizes", sess, device, handle)},
                          {line("bf_sys_calloc", 4, 16)},
                          {line("pipe_stful_ent_query", sess, target, handle, cell, "4@0", bits & 1)}},
                         [&] {
                             Values values;
                             const pd_status status =
                                 functions.read(sess, target, cell, bits, values.bytes, &values.count);
                             status ? values.expect_untouched() : values.expect(flags);
                             return status;
                         });
        }
    });
}

TEST_F(Resources, RangesOfRegistersAreReadIndexByIndex)
{
    counts_allocations = false;
    struct Case {
        std::vector<std::vector<u8>> flags; // of each index
        std::vector<u8> values;
    };
    const Case cases[] = {{{{1, 0}, {0x80, 3}, {4, 5}}, {1, 0, 0x80, 3, 4, 5}},
                          {{{1, 2}, {}, {3}}, {1, 2, 3}},
                          {{{9}}, {9}},
                          {{}, {}}};
    each(reflection::registers(), registers, [&](const auto &functions, const Facts &facts) {
        const u32 handle = facts.handle;
        for (const Case &with : cases) {
            recorder::answer.flags = with.flags;
            recorder::answer.numbers[0] = 2;
            const int bits = static_cast<int>(random.word());
            expect_steps({{line("pipe_stful_query_get_sizes", sess, device, handle)},
                          {line("bf_sys_calloc", 3, sizeof(pipe_stful_query))},
                          {line("bf_sys_calloc", 6, 16)},
                          {line("pipe_stful_ent_query_range", sess, target, handle, cell, 3, "2@0 2@2 2@4",
                                bits & 1)}},
                         [&] {
                             Values values;
                             u32 read = 88;
                             const pd_status status = functions.range_read(sess, target, cell, 3, bits, &read,
                                                                           values.bytes, &values.count);
                             status ? values.expect_untouched() : values.expect(with.values);
                             EXPECT_TRUE(status || read == with.flags.size());
                             return status;
                         });
        }
    });
}

TEST_F(Resources, RegistersByHandleAreHandedOn)
{
    pipe_stful_value elements[2] = {{{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}}, {}};
    const std::string element = "0102030405060708090a0b0c0d0e0f10";
    pipe_stful_query query{2, elements + 1};
    scramble_arguments();
    const u32 table = random.word();
    for (const int flags : {0, 1, 2, 3, -1}) {
        expect_steps(
            {{line("pipe_stful_direct_ent_query", sess, device, table, cell, "2@0", flags & 1)}}, [&] {
                return p4_pd_tessel_switch_register_read_direct(sess, target, table, cell, flags, &query);
            });
        expect_steps({{line("pipe_stful_ent_query", sess, target, table, cell, "2@0", flags & 1)}}, [&] {
            return p4_pd_tessel_switch_register_read_indirect(sess, target, table, cell, flags, &query);
        });
    }
    recorder::answer.flags = {{0x42}};
    p4_pd_tessel_switch_register_read_indirect(sess, target, table, cell, 0, &query);
    EXPECT_EQ(query.count, 1u);
    EXPECT_EQ(elements[1].bytes[0], 0x42);

    pipe_res_spec resource{table, 0, {}, 1};
    resource.res_data.stful = elements[0];
    expect_forwards({
        {line("pipe_stful_ent_set", sess, target, table, cell, element, 0),
         [&] { return p4_pd_tessel_switch_register_write_indirect(sess, target, table, cell, elements); }},
        {line("pipe_stful_direct_database_sync", sess, target, table, callback, cookie),
         [&] { return p4_pd_tessel_switch_register_hw_sync_direct(sess, target, table, synced, cookie); }},
        {line("pipe_stful_database_sync", sess, target, table, callback, cookie),
         [&] { return p4_pd_tessel_switch_register_hw_sync_indirect(sess, target, table, synced, cookie); }},
        {line("pipe_stful_table_reset", sess, target, table, "null"),
         [&] { return p4_pd_tessel_switch_register_reset_all_indirect(sess, target, table); }},
        {line("pipe_stful_table_reset_range", sess, target, table, cell, member, "null"),
         [&] {
             return p4_pd_tessel_switch_register_range_reset_indirect(sess, target, table, cell, member);
         }},
        {line("pipe_stful_table_reset", sess, target, table, element),
         [&] { return p4_pd_tessel_switch_register_write_all_indirect(sess, target, table, elements); }},
        // Of the device eight bits, and the one word for both.
        {line("pipe_mgr_mat_ent_set_resource", sess, 0x34, table, cell, std::vector{resource}, 1, 0),
         [&] { return p4_pd_tessel_switch_register_write_direct(sess, 0x1234, table, cell, elements); }},
    });
}

} // namespace
