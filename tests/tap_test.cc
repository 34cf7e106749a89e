// The tap between calls of every operation and a driver that is told what to do.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <thread>

#include "callbacks.h"
#include "cjson/cJSON.h"
#include "pipe_mgr_match.h"
#include "pipe_mgr_records.h"
#include "record_reader.h"
#include "tap.h"
#include "tap_test_driver.h"

namespace {

using tap::Direction;
using tap::Kind;
using tap::Returns;
using tap::Value;

constexpr u32 list_length = 2;

// Arguments for a call of any operation. Every number differs from those beside it; every record is filled.
class Arguments {
public:
    explicit Arguments(const tap::OperationRow &operation) : operation_(operation)
    {
        for (const tap::ArgumentRow &row : operation.arguments)
            values.push_back(make(row));
    }
    ~Arguments() { cJSON_Delete(document_); }

    std::vector<Value> values;

    // What the driver would write to all that goes out.
    void answer_outs()
    {
        for (std::size_t at = 0; at < values.size(); ++at)
            if (operation_.arguments[at].direction == Direction::out)
                write(operation_.arguments[at], values[at].as<u8 *>());
    }

    // All memory that an out value lies in.
    std::string outs() const { return {reinterpret_cast<const char *>(numbers_), sizeof numbers_}; }

private:
    const tap::OperationRow &operation_;
    u64 next_ = 1;
    u64 numbers_[16] = {};
    std::size_t used_ = 0;
    u8 value_[709], mask_[709], data_[6] = {1, 2, 3, 4, 5, 6};
    pd_dev_target target_{3, PIPE_ALL_PIPES};
    pipe_idle_params idle_{1, 2, 3, 4, 5, 0, 6, 0};
    pipe_pvs_property_value property_{8, 0};
    pipe_pvs_property_args property_args_{9, 0, 0};
    pipe_match_spec match_{value_, mask_, 1, 20, 13, 2, 0};
    pipe_action_spec spec_{PIPE_ACTION_MEMBER, 2, {33, 6, data_}, 0x10, 0, {}};
    pipe_action_data image_{33, 6, data_};
    pipe_meter_spec meter_{1, 0, 1000, 10, 1, u64{1} << 40, 20};
    pipe_wred_spec wred_{{4, 3, 2, 1}};
    pipe_stful_value elements_[2 * list_length] = {{{1}}, {{0, 2}}, {{3}}, {{4}}};
    pipe_stful_query queries_[list_length] = {{2, elements_}, {2, elements_ + 2}};
    pipe_stat_data counts_[list_length] = {{11, 10}, {13, 12}};
    pipe_stat_data *cells_[list_length] = {counts_, nullptr};
    pd_drv_client_callbacks client_{{}, nullptr, [](u32, cJSON *) { return pd_status{0}; }, nullptr, {}};
    u32 list_[list_length] = {70, 80};
    pipe_res_spec resources_[list_length] = {{0x5000001, 6, {}, PIPE_RES_ATTACH},
                                             {0x4000001, 7, {}, PIPE_RES_DETACH}};
    pipe_hash_calc_input_field_attribute attributes_[list_length] = {{1, 0, 0, 2, 3, 0xff},
                                                                     {4, 0, 0, 5, 6, 7}};
    cJSON *document_ = cJSON_Parse("{\"members\":[1,2]}");

    template <typename T>
    static Value place(const T *first)
    {
        return Value::of(first);
    }

    Value make(const tap::ArgumentRow &row)
    {
        std::fill(std::begin(value_), std::end(value_), 0xab);
        std::fill(std::begin(mask_), std::end(mask_), 0xf0);
        resources_[0].res_data.meter = meter_;
        std::copy(std::begin(resources_), std::end(resources_), spec_.resources);
        const std::pair<Kind, Value> made[] = {
            {Kind::target, Value::of(target_)},
            {Kind::property_value, Value::of(property_)},
            {Kind::property_args, Value::of(property_args_)},
            {Kind::match, Value::of(&match_)},
            {Kind::action_spec, Value::of(&spec_)},
            {Kind::action_data, Value::of(&image_)},
            {Kind::meter_spec, Value::of(&meter_)},
            {Kind::wred_spec, Value::of(&wred_)},
            {Kind::register_value, place(elements_)},
            {Kind::query, place(queries_)},
            {Kind::queries, place(queries_)},
            {Kind::counts, place(counts_)},
            {Kind::counts_list, place(cells_)},
            {Kind::client, Value::of(&client_)},
            {Kind::document, Value::of(document_)},
            {Kind::numbers, place(list_)},
            {Kind::members, place(list_)},
            {Kind::bytes, place(row.name == std::string("mask") ? mask_ : value_)},
            {Kind::resources, place(resources_)},
            {Kind::attributes, place(attributes_)},
            {Kind::idle_params, Value::of(idle_)},
            {Kind::text, place("a 100% text")},
            {Kind::format, place("a 100% text")},
            {Kind::opaque, Value{0x1230}},
            {Kind::callback, Value{0x4560}}};
        for (const auto &[kind, value] : made)
            if (kind == row.kind)
                return value;
        if (row.kind == Kind::table)
            return number(row, 0x1000001);
        if (row.kind == Kind::action)
            return number(row, 0x20000000);
        const bool byte = row.kind == Kind::device_byte || row.kind == Kind::byte;
        return number(row, counts_a_list(row) ? list_length : (byte ? 40 : 0x100) + next_++);
    }

    bool counts_a_list(const tap::ArgumentRow &row) const
    {
        const auto at = &row - operation_.arguments.data();
        return std::ranges::any_of(operation_.arguments,
                                   [at](const tap::ArgumentRow &list) { return list.count == at; });
    }

    Value number(const tap::ArgumentRow &row, u64 value)
    {
        return row.direction == Direction::in ? Value{value} : Value::of(&numbers_[used_++]);
    }

    void write(const tap::ArgumentRow &row, u8 *place)
    {
        if (place < reinterpret_cast<u8 *>(numbers_) || place >= reinterpret_cast<u8 *>(numbers_ + 16))
            return; // a record, which is filled already
        *place = row.kind == Kind::number ? 1 : 9;
    }
};

// What comes by value is another copy behind the tap.
bool same(const tap::ArgumentRow &row, Value a, Value b)
{
    constexpr std::pair<Kind, std::size_t> copied[] = {
        {Kind::target, sizeof(pd_dev_target)},
        {Kind::idle_params, sizeof(pipe_idle_params)},
        {Kind::property_value, sizeof(pipe_pvs_property_value)},
        {Kind::property_args, sizeof(pipe_pvs_property_args)},
        {Kind::format, sizeof "a 100% text"}};
    for (const auto &[kind, size] : copied)
        if (kind == row.kind && row.direction == Direction::in)
            return std::memcmp(a.as<void *>(), b.as<void *>(), size) == 0;
    return a.number() == b.number();
}

// What the driver saw of a call, and what it does.
struct Seen {
    unsigned calls = 0;
    unsigned operation = 0;
    std::vector<std::string> differing; // arguments
    Arguments *arguments = nullptr;
    u64 result = 0;
} seen;

u64 see(unsigned operation, const Value *values)
{
    ++seen.calls;
    seen.operation = operation;
    if (seen.arguments == nullptr)
        return seen.result;
    const auto rows = tap::operations()[operation].arguments;
    for (std::size_t at = 0; at < rows.size(); ++at)
        if (!same(rows[at], values[at], seen.arguments->values[at]))
            seen.differing.push_back(rows[at].name);
    seen.arguments->answer_outs();
    return seen.result;
}

pd_status add_entry(u32 index)
{
    u8 image[2] = {static_cast<u8>(index >> 8), static_cast<u8>(index)};
    pipe_match_spec match{image, image, 0, index, 16, 2, 0};
    pipe_action_spec spec{};
    pd_entry_hdl entry;
    return pipe_mgr_mat_ent_add(1, {0, 1}, 0x1000001, &match, 0x20000000, &spec, index, 0, &entry);
}

class Tap : public testing::Test {
protected:
    void SetUp() override
    {
        answer = see;
        seen = {};
        path_ = (std::filesystem::temp_directory_path() / "tap_test_XXXXXX").string();
        const int file = mkstemp(path_.data());
        ASSERT_GE(file, 0);
        close(file);
    }

    void TearDown() override
    {
        EXPECT_EQ(ts_tap_set("", nullptr, 0), 0);
        unlink(path_.c_str());
    }

    tap::RecordReader read() const
    {
        std::string error;
        auto reader = tap::RecordReader::open(path_, error);
        EXPECT_TRUE(reader) << error;
        return *std::move(reader);
    }

    static std::string file_text(const std::string &path)
    {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::string path_;
};

TEST_F(Tap, EveryOperationGoesThroughAndIsToldAndRecorded)
{
    std::vector<std::string> lines;
    ASSERT_EQ(ts_tap_record(path_.c_str(), 1 << 20), 0);
    const auto keep = [](const char *line, void *out) {
        static_cast<std::vector<std::string> *>(out)->push_back(line);
    };
    ASSERT_EQ(ts_tap_trace(keep, &lines), 0);
    for (unsigned at = 0; at < tap::operation_count; ++at) {
        const tap::OperationRow &operation = tap::operations()[at];
        SCOPED_TRACE(operation.name);
        Arguments arguments(operation);
        seen = {};
        seen.arguments = &arguments;
        seen.result = operation.returns == Returns::status    ? 0
                      : operation.returns == Returns::nothing ? 0
                                                              : 5;
        EXPECT_EQ(tap::call(at, arguments.values.data()), seen.result);
        EXPECT_EQ(seen.calls, 1u);
        EXPECT_EQ(seen.operation, at);
        EXPECT_EQ(seen.differing, std::vector<std::string>{});
        if (operation.returns == Returns::status) {
            seen.result = 6;
            EXPECT_EQ(tap::call(at, arguments.values.data()), 6u);
        }
    }
    std::string text;
    for (const std::string &line : lines)
        text += line + "\n";
    const std::string golden = TS_SOURCE_DIR "/tests/goldens/tap_lines.txt";
    if (std::getenv("TS_RENEW") != nullptr)
        std::ofstream(golden, std::ios::binary) << text;
    EXPECT_EQ(text, file_text(golden));

    const tap::RecordReader reader = read();
    ASSERT_EQ(reader.calls().size(), lines.size());
    u64 before = 0;
    for (std::size_t at = 0; at < lines.size(); ++at) {
        const tap::RecordedCall &call = reader.calls()[at];
        EXPECT_EQ(tap::line_of(call), lines[at]);
        EXPECT_EQ(call.header.thread, static_cast<u32>(gettid()));
        EXPECT_GE(call.header.start, before);
        EXPECT_FALSE(call.gap_before || call.refused());
        before = call.header.start + call.header.duration;
    }
    EXPECT_FALSE(reader.lost_at());
    EXPECT_EQ(reader.process(), static_cast<u32>(getpid()));
}

TEST_F(Tap, RefusedCallsReachNoDriverAndLeaveOutValuesAlone)
{
    ASSERT_EQ(ts_tap_record(path_.c_str(), 1 << 20), 0);
    ts_tap_fault all{.operation = nullptr, .nth = 0, .probability = 0, .seed = 0, .status = 7};
    ASSERT_EQ(ts_tap_fail(&all), 0);
    all.operation = "bf_sys_calloc";
    ASSERT_EQ(ts_tap_fail(&all), 0);
    unsigned refused = 0;
    for (unsigned at = 0; at < tap::operation_count; ++at) {
        const Returns returns = tap::operations()[at].returns;
        SCOPED_TRACE(tap::operations()[at].name);
        Arguments arguments(tap::operations()[at]);
        const std::string outs = arguments.outs();
        seen = {};
        seen.result = 5;
        const bool fails = returns == Returns::status || returns == Returns::memory;
        const u64 expected = returns == Returns::status ? 7 : fails || returns == Returns::nothing ? 0 : 5;
        EXPECT_EQ(tap::call(at, arguments.values.data()), expected);
        EXPECT_EQ(seen.calls, fails ? 0u : 1u);
        EXPECT_EQ(arguments.outs(), outs);
        refused += fails;
    }
    const tap::RecordReader reader = read();
    EXPECT_EQ(std::ranges::count_if(reader.calls(), &tap::RecordedCall::refused), refused);
}

TEST_F(Tap, FaultsChooseTheNthCallOrAShareOfThem)
{
    const auto pattern = [](const char *settings) {
        char error[200] = "";
        EXPECT_EQ(ts_tap_set(settings, error, sizeof error), 0) << error;
        std::string told;
        for (u32 at = 0; at < 12; ++at)
            told += static_cast<char>('0' + add_entry(at));
        return told;
    };
    EXPECT_EQ(pattern("fail,nth=3,status=4"), "004000000000");
    EXPECT_EQ(pattern("fail:pipe_mgr_mat_ent_add,nth=2,status=4,fail,nth=5,status=6"), "040060000000");
    EXPECT_EQ(pattern("fail:pipe_mgr_mat_ent_del,status=4"), "000000000000");
    EXPECT_EQ(pattern("fail,probability=1,status=4"), "444444444444");
    const std::string chance = pattern("fail,probability=0.5,seed=3,status=4");
    EXPECT_EQ(chance, pattern("fail,probability=0.5,seed=3,status=4"));
    EXPECT_NE(chance, pattern("fail,probability=0.5,seed=4,status=4"));
    EXPECT_GT(std::ranges::count(chance, '4'), 2);
    EXPECT_GT(std::ranges::count(chance, '0'), 2);
}

TEST_F(Tap, SettingsThatAreWrongChangeNothingAndSayWhy)
{
    const std::pair<const char *, const char *> cases[] = {
        {"trace,recrod:/no/such/folder",
         R"("recrod:/no/such/folder": is neither trace, record nor fail, nor an option such as size=64M)"},
        {"trace:", R"("trace:": names no file; plain trace goes to standard error)"},
        {"record", R"("record": names no file)"},
        {"size=64M", R"("size=64M": belongs behind record)"},
        {"record:/no/such/folder,size=64X",
         R"("size=64X": must be a number of at least 64K, with K, M or G behind it if wanted)"},
        {"record:/no/such/folder,size=16384G",
         R"("size=16384G": must be a number of at least 64K, with K, M or G behind it if wanted)"},
        {"record:/no/such/folder,sise=64M",
         R"("sise=64M": is no option: those are size, nth, status, probability and seed)"},
        {"record:/no/such/folder,nth=4", R"("nth=4": belongs behind fail)"},
        {"fail:pipe_mgr", R"("fail:pipe_mgr": there is no operation of this name)"},
        {"fail,nth=0", R"("nth=0": must be a number from 1 on)"},
        {"fail,status=-1", R"("status=-1": must be a status other than 0)"},
        {"fail,probability=1.5", R"("probability=1.5": must lie between 0 and 1)"},
        {"fail,nth=4", R"("fail": lacks its status, such as status=5)"},
        {"fail:bf_sys_free,status=4", R"("fail:bf_sys_free": this operation has no way to fail)"},
        {"fail,status=4,nth=1,probability=0.5", R"("fail": cannot have both nth and probability)"}};
    ASSERT_EQ(ts_tap_trace([](const char *, void *calls) { ++*static_cast<int *>(calls); }, &seen.calls), 0);
    for (const auto &[settings, expected] : cases) {
        char error[200] = "";
        EXPECT_EQ(ts_tap_set(settings, error, sizeof error), EINVAL) << settings;
        EXPECT_STREQ(error, expected);
    }
    add_entry(1);
    EXPECT_EQ(seen.calls, 2u) << "once for the driver, once for the trace";
    char error[200] = "";
    EXPECT_EQ(ts_tap_set("record:/no/such/folder", error, sizeof error), ENOENT);
    EXPECT_STREQ(error, "/no/such/folder: No such file or directory");
}

TEST_F(Tap, FaultsThatMakeNoSenseOrHaveNoRoom)
{
    const ts_tap_fault sound{nullptr, 1, 0, 0, 4};
    for (const ts_tap_fault &wrong : {ts_tap_fault{nullptr, 1, 0, 0, 0}, ts_tap_fault{"no_such", 1, 0, 0, 4},
                                      ts_tap_fault{"bf_sys_free", 1, 0, 0, 4},
                                      ts_tap_fault{nullptr, 1, 0.5, 0, 4}, ts_tap_fault{nullptr, 0, 2, 0, 4}})
        EXPECT_EQ(ts_tap_fail(&wrong), EINVAL);
    for (int room = 0; room < 16; ++room)
        EXPECT_EQ(ts_tap_fail(&sound), 0);
    EXPECT_EQ(ts_tap_fail(&sound), ENOSPC);
    EXPECT_EQ(ts_tap_fail_nothing(), 0);
}

TEST_F(Tap, RecordsCallsOfUpToAQuarterOfTheRing)
{
    std::vector<pd_entry_hdl> entries(5000, ~0u); // five bytes each
    ASSERT_EQ(ts_tap_record(path_.c_str(), 65537), 0);
    for (const u32 count : {3000u, 5000u})
        pipe_mgr_get_next_entry_handles(0, 0x1000001, {0, 0xffff}, 0, count, entries.data());
    const tap::RecordReader reader = read();
    EXPECT_EQ(reader.calls().size(), 1u);
    EXPECT_EQ(reader.dropped(), 1u);
    EXPECT_EQ(std::filesystem::file_size(path_), 4096u + 69632) << "whole pages";
}

TEST_F(Tap, RingKeepsTheLastCalls)
{
    constexpr u32 calls = 5000;
    ASSERT_EQ(ts_tap_record(path_.c_str(), 65536), 0);
    for (u32 at = 0; at < calls; ++at)
        add_entry(at);
    const tap::RecordReader reader = read();
    ASSERT_GT(reader.calls().size(), 300u);
    EXPECT_TRUE(reader.calls().front().gap_before);
    EXPECT_FALSE(reader.lost_at());
    u32 expected = calls - static_cast<u32>(reader.calls().size());
    for (const tap::RecordedCall &call : reader.calls()) {
        EXPECT_NE(tap::line_of(call).find("ttl=" + std::to_string(expected++) + ","), std::string::npos);
        EXPECT_EQ(call.gap_before, &call == &reader.calls().front());
    }
}

TEST_F(Tap, CutAndDamagedRecordsGiveTheirWholeCalls)
{
    constexpr u32 calls = 40;
    ASSERT_EQ(ts_tap_record(path_.c_str(), 65536), 0);
    for (u32 at = 0; at < calls; ++at)
        add_entry(at);
    ASSERT_EQ(ts_tap_record(nullptr, 0), 0);
    const std::string whole = file_text(path_);
    const auto rewrite = [&](const std::string &text) { std::ofstream(path_, std::ios::binary) << text; };
    std::vector<u64> ends;
    const tap::RecordReader all = read();
    for (const tap::RecordedCall &call : all.calls())
        ends.push_back(tap::file_header_bytes + call.header.position + call.header.length);
    ASSERT_EQ(ends.size(), calls);
    for (u64 length = tap::file_header_bytes; length < ends.back() + 64; length += 13) {
        rewrite(whole.substr(0, length));
        const tap::RecordReader reader = read();
        const auto expected = std::ranges::count_if(ends, [&](u64 end) { return end <= length; });
        EXPECT_EQ(reader.calls().size(), static_cast<std::size_t>(expected)) << length;
        const u64 end = expected == 0 ? tap::file_header_bytes : ends[expected - 1];
        EXPECT_EQ(reader.lost_at(), expected == calls ? std::nullopt : std::optional{end}) << length;
    }
    for (u64 at = ends[3]; at < ends[4]; ++at) {
        std::string damaged = whole;
        damaged[at] = static_cast<char>(damaged[at] ^ 0x10);
        rewrite(damaged);
        const tap::RecordReader reader = read();
        ASSERT_EQ(reader.calls().size(), calls - 1) << at;
        EXPECT_TRUE(reader.calls()[4].gap_before);
        EXPECT_EQ(reader.lost_at(), ends[3]);
    }
    const auto refusal = [&](const std::string &text) {
        rewrite(text);
        std::string error;
        EXPECT_FALSE(tap::RecordReader::open(path_, error));
        return error.substr(path_.size());
    };
    std::string other = whole;
    EXPECT_EQ(refusal(""), ": is no record of the tap");
    EXPECT_EQ(refusal(whole.substr(0, 100)), ": was cut short at byte 100, within its first page");
    other[8] = 9;
    EXPECT_EQ(refusal(other), ": has at byte 8 version 9 of the format; this program reads version 1");
    other = whole;
    other[16] = 1;
    EXPECT_EQ(refusal(other), ": is damaged at byte 16");
    other = whole;
    other[24] = static_cast<char>(~other[24]);
    EXPECT_EQ(refusal(other), ": was made by a tap with other operations, as byte 24 tells");
}

TEST_F(Tap, TwoThreadsAndAForkedProcessShareARecord)
{
    constexpr u32 calls = 1500;
    answer = [](unsigned, const Value *) { return u64{0}; };
    ASSERT_EQ(ts_tap_record(path_.c_str(), 4 << 20), 0);
    const auto make_calls = [] {
        for (u32 at = 0; at < calls; ++at)
            add_entry(at);
    };
    std::thread first(make_calls), second(make_calls);
    const pid_t child = fork(); // while both may be in the midst of a call
    if (child == 0) {
        make_calls();
        _exit(ts_tap_fail_nothing());
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    first.join();
    second.join();
    std::map<u32, u32> next;
    const tap::RecordReader reader = read();
    for (const tap::RecordedCall &call : reader.calls()) {
        const std::string ttl = "ttl=" + std::to_string(next[call.header.thread]++) + ",";
        EXPECT_NE(tap::line_of(call).find(ttl), std::string::npos);
    }
    EXPECT_EQ(next.size(), 3u);
    for (const auto &[thread, made] : next)
        EXPECT_EQ(made, calls) << thread;
    EXPECT_TRUE(next.contains(static_cast<u32>(child)));
}

// A call from within the driver and one from a signal while a trace function runs.
TEST_F(Tap, CallsWithinCalls)
{
    ASSERT_EQ(ts_tap_record(path_.c_str(), 65536), 0);
    answer = [](unsigned, const Value *) {
        answer = see;
        return u64{add_entry(1)};
    };
    EXPECT_EQ(add_entry(0), 0u);
    const tap::RecordReader nested = read();
    ASSERT_EQ(nested.calls().size(), 2u);
    EXPECT_EQ(nested.calls()[0].header.depth, 1);
    EXPECT_EQ(nested.calls()[1].header.depth, 0);

    static int changed;
    const auto call_again = [](const char *, void *) {
        add_entry(3);
        changed = ts_tap_trace(nullptr, nullptr);
    };
    ASSERT_EQ(ts_tap_trace(call_again, nullptr), 0);
    EXPECT_EQ(add_entry(2), 0u);
    EXPECT_EQ(changed, EDEADLK);
    EXPECT_EQ(seen.calls, 3u);
    EXPECT_EQ(read().calls().size(), 3u) << "that of the trace function is handed on and no more";
}

} // namespace
