// The lookup command: which entry a packet would hit, and why; behind a group, which member it gets.
#include <algorithm>
#include <optional>

#include "commands.h"
#include "driver.h"
#include "entry_reader.h"
#include "json.h"
#include "member_reader.h"
#include "model.h"
#include "options.h"
#include "profiles.h"
#include "records.h"
#include "tables.h"

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

const char *action_of_entry(const pd::Table &table, pd_entry_hdl handle)
{
    ts_model_entry entry{};
    ts_model_get_entry(device.device_id, table.handle, handle, &entry);
    return std::ranges::find(table.actions, entry.action, &pd::Binding::handle)->action->name;
}

// The priority of an LPM entry counts the bits behind its prefix.
std::string prefix(const pd::Table &table, u32 priority)
{
    const auto field = std::ranges::find(table.key, pd::Match::lpm, &pd::Field::match);
    return std::string{"/"} + std::to_string(field->width - priority);
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
    Selection(Session &session, const reflection::TableFunctions &table);

    // Throws BadLine when the driver refuses.
    void select(const ts_model_hit &hit, FlowHash hash);

    // "group web, member nh1: setEcmpNextHop nextHop=7"
    std::string text() const;
    void append_json(Json &to) const;

private:
    void select_from_group(pd_grp_hdl group, FlowHash hash);

    const reflection::ProfileFunctions &profile_;
    const ProfileNames &names_;
    EntryReader entry_;
    MemberReader reader_;
    pd_mbr_hdl member_ = 0; // 0 for none
    bool fallback_ = false;
};

Selection::Selection(Session &session, const reflection::TableFunctions &table)
    : profile_(*table.indirect->profile), names_(session.names(profile_)), entry_(table, false, &names_),
      reader_(profile_, false)
{
}

void Selection::select(const ts_model_hit &hit, FlowHash hash)
{
    if (hit.hit)
        entry_.read(hit.entry);
    else
        entry_.read_default();
    const Object reference = entry_.reference();
    if (reference.kind == Kind::group)
        select_from_group(reference.handle, hash);
    else
        member_ = reference.handle;
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
    const Object reference = entry_.reference();
    std::string text = names_.text_of(reference);
    if (fallback_)
        text += ", none active";
    if (reference.kind == Kind::group)
        text +=
            ", " + (member_ == 0 ? "no fallback"
                                 : (fallback_ ? "fallback " : "") + names_.text_of({Kind::member, member_}));
    if (member_ != 0) {
        text += ": ";
        reader_.action().append_text(text);
    }
    return text;
}

void Selection::append_json(Json &to) const
{
    const Object reference = entry_.reference();
    if (reference.kind == Kind::group) {
        shell::append_json(to, names_, reference);
        to.key("fallback").flag(fallback_);
    }
    shell::append_json(to, names_, {Kind::member, member_});
    if (member_ != 0)
        reader_.action().append_json(to);
}

// `selection` is null for a table whose entries carry their action.
std::string hit_text(const pd::Table &table, const ts_model_hit &hit, const Selection *selection)
{
    if (!hit.hit)
        return selection ? "miss: the default entry points at " + selection->text()
                         : "miss: the default action runs";
    return "entry " + std::to_string(hit.entry) + ": " +
           (selection ? selection->text() : action_of_entry(table, hit.entry)) + " (" + why(table, hit) + ')';
}

std::string hit_json(const pd::Table &table, const ts_model_hit &hit, const Selection *selection)
{
    std::string line;
    Json json{line};
    json.open_object().key("table").text(table.name).key("hit").flag(hit.hit);
    if (hit.hit)
        json.key("entry").number(hit.entry);
    if (selection)
        selection->append_json(json);
    else if (hit.hit)
        json.key("action").text(action_of_entry(table, hit.entry));
    if (hit.hit)
        json.key("candidates").number(hit.candidates).key("why").text(why(table, hit));
    json.close_object();
    return line;
}

Record take_packet(Words &words, const pd::Table &table, Options &options)
{
    Record record{table, KeyOf::packet};
    take_assignments(words, record, table.name, options);
    words.expect_end();
    return record;
}

// With packets, as the chip does it for them.
pd_status look_up(const pd::Table &table, const PacketKey &key, const Options &options, ts_model_hit &hit)
{
    const auto bytes = static_cast<u32>(key.image.size());
    if (!options.packets)
        return ts_model_lookup(device.device_id, table.handle, key.image.data(), bytes, key.partition_index,
                               &hit);
    return ts_model_counted_lookup(device.device_id, table.handle, key.image.data(), bytes,
                                   key.partition_index, *options.packets, options.bytes.value_or(0), &hit);
}

} // namespace

void run_lookup(Session &session, Words &words)
{
    const reflection::TableFunctions &functions = take_keyed_table(words);
    const pd::Table &table = *functions.row;
    Options options;
    options.takes_hash = functions.indirect != nullptr;
    options.takes_packets = true;
    const PacketKey key = packet_key(table, take_packet(words, table, options));
    if (options.bytes && !options.packets)
        throw BadLine{words.rest(), "bytes=N needs packets=N: a look-up without packets counts nothing"};
    ts_model_hit hit{};
    expect_success(look_up(table, key, options, hit));
    std::optional<Selection> selection;
    if (functions.indirect)
        selection.emplace(session, functions).select(hit, options.hash.value_or(FlowHash{}));
    const auto tell = session.json() ? hit_json : hit_text;
    session.print(tell(table, hit, selection ? &*selection : nullptr));
}

} // namespace shell
