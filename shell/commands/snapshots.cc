// The snapshot command.
#include <algorithm>
#include <array>
#include <set>

#include "commands.h"
#include "driver.h"
#include "model.h"
#include "pd_services.h"
#include "records.h"
#include "result.h"
#include "rows_services.h"
#include "settings.h"
#include "verb_arguments.h"

namespace shell {

namespace {

// By their numbers.
constexpr std::string_view directions[] = {"ingress", "egress"};
static_assert(TS_MODEL_INGRESS == 0 && TS_MODEL_EGRESS == 1);

// Tells the layout of a snapshot's records.
constexpr u32 egress_bit = 2;

using Snapshot = arg::Number<"SNAPSHOT", "snapshot handle">;
constexpr Setting settings[] = {
    {"first_stage", 8, 0}, {"last_stage", 8, TS_MODEL_STAGES - 1}, {"pipe", 32, 0}};

void create(Session &session, u32 direction, const std::vector<u64> &given)
{
    u32 snapshot = 0;
    expect_success(p4_pd_tessel_switch_snapshot_create(device.device_id, static_cast<pd_word>(given[2]),
                                                       static_cast<u8>(given[0]), static_cast<u8>(given[1]),
                                                       direction, reinterpret_cast<pd_word>(&snapshot)));
    if (!session.verbose())
        return;
    Result result{session.json()};
    result.number("snapshot", snapshot);
    session.print(result.line("snapshot {snapshot}"));
}

struct Trigger {
    pd_snapshot_phv spec{};
    pd_snapshot_phv mask{};
};

// The field that begins at `offset`, in bytes: of two or four where the layout has such a field, else of one.
u32 field_bytes(const pd::SnapshotLayout &layout, u32 offset, std::string_view where)
{
    for (const auto &[places, bytes] : {std::pair{layout.two_bytes, 2u}, std::pair{layout.four_bytes, 4u}})
        for (const u16 place : places)
            if (offset == place)
                return bytes;
            else if (offset > place && offset < place + bytes)
                throw BadLine{where, "offset " + std::to_string(offset) + " lies within the field of " +
                                         std::to_string(bytes) + " bytes at " + std::to_string(place)};
    return 1;
}

// `word`: OFFSET=VALUE, with a mask or prefix like a ternary field.
u32 add_to_trigger(Trigger &trigger, std::string_view word, const pd::SnapshotLayout &layout)
{
    const std::string_view name = word.substr(0, word.find('='));
    if (name.size() == word.size())
        throw BadLine{word, quoted(word) + " is not of the form OFFSET=VALUE"};
    const u32 offset = parse_u32(name, sizeof trigger.spec.bytes - 1, "offset");
    const u32 bytes = field_bytes(layout, offset, name);
    const std::string text{name};
    const pd::Field field{
        text.c_str(),       text.c_str(),     "", 0,    sizeof(u32), static_cast<u8>(bytes * 8),
        pd::Match::ternary, pd::Format::none, {}, false};
    pd::Table row{};
    row.name = "trigger";
    row.key = {&field, 1};
    row.record_size = 2 * sizeof(u32);
    Record record{row, KeyOf::entry};
    record.assign(name, word.substr(name.size() + 1));
    const auto *members = static_cast<const u8 *>(record.data());
    for (u32 i = 0; i < bytes; ++i) {
        trigger.mask.bytes[offset + i] = members[sizeof(u32) + i];
        trigger.spec.bytes[offset + i] = members[i] & members[sizeof(u32) + i];
    }
    return offset;
}

// A snapshot, and what its fields are to be.
struct Armed {
    using Value = std::pair<u32, Trigger>;
    static void describe(Usage &usage)
    {
        Snapshot::describe(usage);
        usage.places.push_back({.alternatives = {"OFFSET=VALUE"}, .optional = true, .repeated = true});
    }
    static Value read(Reading &reading);
};

Armed::Value Armed::read(Reading &reading)
{
    const u32 snapshot = Snapshot::read(reading);
    Words &words = reading.words;
    const pd::SnapshotLayout &layout = snapshot & egress_bit ? pd::snapshots::B : pd::snapshots::A;
    Trigger trigger;
    std::set<u32> given;
    while (!words.empty()) {
        const std::string_view word = words.take();
        const u32 offset = add_to_trigger(trigger, word, layout);
        if (!given.insert(offset).second)
            throw BadLine{word, "offset " + std::to_string(offset) + " is given twice"};
    }
    return {snapshot, trigger};
}

void set_trigger(Session &, Armed::Value &armed)
{
    auto &[snapshot, trigger] = armed;
    expect_success(p4_pd_tessel_switch_snapshot_capture_trigger_set(snapshot, &trigger.spec, &trigger.mask));
}

// Without the zeros at the end.
std::string hex(const pd_snapshot_phv &record)
{
    static constexpr char digits[] = "0123456789abcdef";
    std::size_t bytes = sizeof record.bytes;
    while (bytes > 1 && record.bytes[bytes - 1] == 0)
        --bytes;
    std::string text;
    for (std::size_t i = 0; i < bytes; ++i)
        text += {digits[record.bytes[i] >> 4], digits[record.bytes[i] & 0xf]};
    return text;
}

using Capture = std::span<const pd_snapshot_phv>;

std::string stages_text(Capture stages, u32 first)
{
    std::string text;
    for (std::size_t i = 0; i < stages.size(); ++i)
        text += "\n  stage " + std::to_string(first + i) + ": " + hex(stages[i]);
    return text;
}

void show(Session &session, u32 handle)
{
    ts_model_snapshot snapshot{};
    expect_success(ts_model_get_snapshot(handle, &snapshot));
    std::array<pd_snapshot_phv, TS_MODEL_STAGES> stages{};
    u32 count = 0;
    expect_success(p4_pd_tessel_switch_snapshot_capture_data_get(handle, 0, stages.data(), 0, &count));
    const Capture captured{stages.data(), std::min<std::size_t>(count, stages.size())};

    Result result{session.json()};
    result.number("snapshot", handle).text("direction", directions[snapshot.direction]);
    result.number("first_stage", snapshot.first_stage).number("last_stage", snapshot.last_stage);
    result.flag("armed", snapshot.spec != nullptr).shown("trigger", snapshot.spec ? "armed" : "no trigger");
    result.json([&](Json &json) {
        json.key("captured").open_array();
        for (const pd_snapshot_phv &stage : captured)
            json.text(hex(stage));
        json.close_array();
    });
    result.shown("captured", stages_text(captured, snapshot.first_stage));
    session.print(result.line(
        "snapshot {snapshot}: {direction}, stages {first_stage} to {last_stage}, {trigger}{captured}"));
}

void remove(Session &, u32 snapshot)
{
    expect_success(p4_pd_tessel_switch_snapshot_delete(snapshot));
}

constexpr std::string_view text =
    R"(  SNAPSHOT is the handle that create prints like add. 'lookup' with packets=N is what an armed one captures.
)";

constexpr Verb verbs[] = {
    verb<create, arg::Choice<"direction", directions>, arg::Settings<settings>>("snapshot create",
                                                                                "makes a snapshot"),
    verb<set_trigger, Armed>(
        "snapshot trigger", "arms it: fields by the offset of their first byte, values as of ternary fields"),
    verb<show, Snapshot>("snapshot show", "what each stage has captured, in hex without the zeros at the end")
        .reads(),
    verb<remove, Snapshot>("snapshot delete", "deletes it"),
};

} // namespace

const Command snapshot_command{verbs, text, json_option, "what packets look like in the stages of a pipe"};

} // namespace shell
