// The lookup command: which entry a packet would hit, and why; behind a group, which member it gets.
#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "commands.h"
#include "driver.h"
#include "entry_reader.h"
#include "lines.h"
#include "member_reader.h"
#include "model.h"
#include "options.h"
#include "records.h"
#include "shown_reference.h"
#include "verb_arguments.h"

namespace shell {

namespace {

struct PacketKey {
    std::vector<u8> image;
    u32 partition_index = 0;
};

PacketKey packet_key(const pd::Table &table, const Record &record)
{
    PacketKey key{std::vector<u8>(pd::image_size(table.key).bytes), 0};
    const auto *members = static_cast<const u8 *>(record.data());
    for (std::size_t i = 0; i < table.key.size(); ++i) {
        const pd::Field &field = table.key[i];
        const Value value = load(field.width, members + field.offset);
        if (field.partition_index)
            key.partition_index = static_cast<u32>(value.low);
        else
            write_image(value, field.width, key.image.data() + pd::image_offset(table.key, i));
    }
    return key;
}

// The priority of an LPM entry counts the bits behind its prefix.
std::string prefix(const pd::Table &table, u32 priority)
{
    const auto field = std::ranges::find(table.key, pd::Match::lpm, &pd::Field::match);
    std::string text = "/";
    return text += std::to_string(field->width - priority);
}

std::string why_longest_prefix(const pd::Table &table, const ts_model_hit &hit)
{
    if (hit.candidates == 1)
        return "the only matching prefix, " + prefix(table, hit.priority);
    return "the longest of " + std::to_string(hit.candidates) + " matching prefixes, " +
           prefix(table, hit.priority) + " before " + prefix(table, hit.runner_up_priority);
}

std::string why_lowest_priority(const ts_model_hit &hit)
{
    const std::string own = "priority " + std::to_string(hit.priority);
    if (hit.candidates == 1)
        return "the only match, " + own;
    const std::string of = " of " + std::to_string(hit.candidates) + " matches, ";
    const std::string next = "entry " + std::to_string(hit.runner_up);
    if (hit.runner_up_priority == hit.priority)
        return "the earliest" + of + own + " like " + next;
    return "the lowest priority number" + of + std::to_string(hit.priority) + " before " +
           std::to_string(hit.runner_up_priority) + " of " + next;
}

std::string why(const pd::Table &table, const ts_model_hit &hit)
{
    switch (pd::key_kind(table)) {
    case pd::Match::lpm:
        return why_longest_prefix(table, hit);
    case pd::Match::ternary:
        return why_lowest_priority(hit);
    default:
        return "an exact match";
    }
}

// What a packet gets from an entry that points at a member or group.
class Selection {
public:
    // Of the entry that was read last. Throws BadLine when the driver refuses.
    Selection(const EntryReader &entry, const reflection::ProfileFunctions &profile, bool from_hardware,
              FlowHash hash);

    // "group web, member nh1: setEcmpNextHop nextHop=7"
    std::string text() const;
    void tell(Result &to) const;

private:
    void select_from_group(pd_grp_hdl group, FlowHash hash);

    const reflection::ProfileFunctions &profile_;
    const ProfileNames &names_;
    const Object reference_;
    MemberReader reader_;
    pd_mbr_hdl member_ = 0; // 0 for none
    bool fallback_ = false;
};

Selection::Selection(const EntryReader &entry, const reflection::ProfileFunctions &profile,
                     bool from_hardware, FlowHash hash)
    : profile_(profile), names_(*entry.names()), reference_(entry.reference()),
      reader_(profile, from_hardware)
{
    if (reference_.kind == Kind::group)
        select_from_group(reference_.handle, hash);
    else
        member_ = reference_.handle;
    if (member_ != 0)
        reader_.read(member_);
}

void Selection::select_from_group(pd_grp_hdl group, FlowHash hash)
{
    u32 active = 0;
    expect_success(profile_.get_word_llp_active_member_count(driver_session, device, group,
                                                             reinterpret_cast<pd_word>(&active)));
    fallback_ = active == 0;
    if (fallback_ && fallback_of(profile_) == 0)
        return;
    expect_success(profile_.group_member_get_from_hash(driver_session, device.device_id, group, hash.first,
                                                       hash.second, reinterpret_cast<pd_word>(&member_)));
}

std::string Selection::text() const
{
    std::string text = names_.text_of(reference_);
    if (fallback_)
        text += ", none active";
    if (reference_.kind == Kind::group)
        text +=
            ", " + (member_ == 0 ? "no fallback"
                                 : (fallback_ ? "fallback " : "") + names_.text_of({Kind::member, member_}));
    if (member_ != 0) {
        text += ": ";
        reader_.action().append_text(text);
    }
    return text;
}

void Selection::tell(Result &to) const
{
    to.json([&](Json &json) {
        if (reference_.kind == Kind::group) {
            append_json(json, names_, reference_);
            json.key("fallback").flag(fallback_);
        }
        append_json(json, names_, {Kind::member, member_});
    });
    if (member_ != 0)
        reader_.action().tell(to);
    to.shown("selection", text());
}

struct Answer {
    ts_model_hit hit{};
    EntryReader entry;                   // that was hit, or the default entry
    bool missing;                        // the hardware lacks the default entry that would be it
    std::optional<Selection> selection;  // where entries point at members and groups
    std::vector<std::string_view> zeros; // fields that were not given
};

void tell(Result &to, const Answer &answer)
{
    to.text("table", answer.entry.table().name).flag("hit", answer.hit.hit);
    if (answer.hit.hit)
        to.number("entry", answer.hit.entry);
    if (answer.missing)
        to.text("missing", "hardware");
    else if (answer.selection)
        answer.selection->tell(to);
    else
        answer.entry.action().tell(to);
    if (answer.hit.hit)
        to.number("candidates", answer.hit.candidates).text("why", why(answer.entry.table(), answer.hit));
    if (answer.zeros.empty())
        return;
    to.shown("zeros", listed(answer.zeros)).json([&](Json &json) {
        json.key("taken_as_zero").open_array();
        for (const std::string_view field : answer.zeros)
            json.text(field);
        json.close_array();
    });
}

std::string sentence_of(const Answer &answer)
{
    const std::string body = answer.selection ? "{selection}" : "{action} {parameters}";
    std::string sentence;
    if (answer.hit.hit)
        sentence.append("entry {entry}: ").append(body).append(" ({why})");
    else if (answer.missing)
        sentence = "miss: the default entry is not in {missing}";
    else
        sentence =
            (answer.selection ? "miss: the default entry points at " : "miss: the default action runs: ") +
            body;
    return answer.zeros.empty() ? sentence : sentence + ", taken as 0: {zeros}";
}

void print(Session &session, const Answer &answer)
{
    Result result{session.json()};
    tell(result, answer);
    session.print(result.line(sentence_of(answer)));
}

// With packets, as the chip does it for them.
ts_model_hit look_up(const pd::Table &table, const PacketKey &key, const Options &options, bool from_hardware)
{
    const auto bytes = static_cast<u32>(key.image.size());
    ts_model_hit hit{};
    if (options.packets) {
        expect_success(ts_model_counted_lookup(device.device_id, table.handle, key.image.data(), bytes,
                                               key.partition_index, *options.packets,
                                               options.bytes.value_or(0), &hit));
    } else {
        const auto ask = from_hardware ? ts_model_hardware_lookup : ts_model_lookup;
        expect_success(
            ask(device.device_id, table.handle, key.image.data(), bytes, key.partition_index, &hit));
    }
    return hit;
}

void expect_consistent(const Options &options, bool from_hardware, std::string_view where)
{
    if (options.bytes && !options.packets)
        throw BadLine{where, "bytes=N needs packets=N: a look-up without packets counts nothing"};
    if (options.packets && from_hardware)
        throw BadLine{where, "packets=N goes by the driver's memory: leave --hw out"};
}

// The key of a packet, and what a look-up with it counts.
struct Packet {
    struct Value {
        Record key;
        Options options;
        std::string_view end; // of the line
    };
    static void describe(Usage &usage)
    {
        usage.add({"KEY"});
        describe_options(usage, {"hash", "packets", "bytes"});
    }
    static Value read(Reading &reading)
    {
        Options options;
        options.takes_hash = reading.table->indirect != nullptr;
        options.takes_packets = true;
        Record packet{*reading.table->row, KeyOf::packet};
        take_assignments(reading.words, packet, reading.owner, options);
        return {std::move(packet), options, reading.words.rest()};
    }
};

void lookup(Session &session, const reflection::TableFunctions &functions, const Packet::Value &packet)
{
    const pd::Table &table = *functions.row;
    const bool from_hardware = session.from_hardware();
    expect_consistent(packet.options, from_hardware, packet.end);
    if (packet.options.packets)
        session.expect_changes_allowed();

    Answer answer{look_up(table, packet_key(table, packet.key), packet.options, from_hardware),
                  EntryReader{functions, from_hardware, session.names(functions)},
                  false,
                  {},
                  packet.key.missing()};
    answer.missing =
        !answer.entry.read_if_there(answer.hit.hit ? answer.hit.entry : default_entry_of(functions));
    if (functions.indirect && !answer.missing)
        answer.selection.emplace(answer.entry, *functions.indirect->profile, from_hardware,
                                 packet.options.hash.value_or(FlowHash{}));
    print(session, answer);
}

// Packets of which each line of a file has the key.
void lookup_file(Session &session, const reflection::TableFunctions &table, const FileName &file)
{
    u64 number = 0;
    std::string line;
    try {
        FileLines lines{file.name, nullptr};
        while (lines.next(line)) {
            ++number;
            expect_no_stop_signal();
            Words words{line};
            if (words.empty() || words.peek().starts_with('#'))
                continue;
            Reading reading{session, words, table.row->name};
            reading.table = &table;
            const Packet::Value packet = Packet::read(reading);
            words.expect_end();
            lookup(session, table, packet);
        }
    } catch (const std::runtime_error &error) {
        throw BadLine{file.where, shell::quoted(file.name) + ' ' + error.what()};
    } catch (const BadLine &error) {
        const auto column = error.where.data() ? error.where.data() - line.data() + 1 : 1;
        throw BadLine{file.where, file.name + ':' + std::to_string(number) + ':' + std::to_string(column) +
                                      ": " + error.what};
    }
}

constexpr std::string_view text =
    R"(  Every field takes a plain value, as a packet has it: no masks, no prefixes, no priority. A field that is left
  out, or 'any', is 0, and the answer names it. Asked is the driver's memory; with --hw what the hardware holds,
  where an entry may be missing or have another key.
  Where the entry points at a group, hash=A,B gives the two words by which it picks a member (0,0 without).
  With packets=N, and bytes=N, the look-up counts as so many packets: in counters, for ageing and for armed
  snapshots.
)";

constexpr Verb verbs[] = {
    verb<lookup, arg::KeyedTable, Packet>("lookup",
                                          "tells which entry a packet with this key would hit, and why")
        .may_change(),
    verb<lookup_file, arg::KeyedTable, arg::File>("lookup file", "tells it of the key in each line of a file")
        .may_change()
        .not_in_console("files are read by the client"),
};

} // namespace

const Command lookup_command{verbs, text, read_options, "which entry a packet would hit, and why"};

} // namespace shell
