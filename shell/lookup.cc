// The lookup command: which entry a packet would hit, and why.
#include <algorithm>

#include "commands.h"
#include "driver.h"
#include "json.h"
#include "model.h"
#include "options.h"
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

// The name of the entry's action; empty where entries name no action.
std::string action_of_entry(const pd::Table &table, pd_entry_hdl handle)
{
    ts_model_entry entry{};
    ts_model_get_entry(device.device_id, table.handle, handle, &entry);
    const auto binding = std::ranges::find(table.actions, entry.action, &pd::Binding::handle);
    return binding == table.actions.end() ? "" : binding->action->name;
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

std::string hit_text(const pd::Table &table, const ts_model_hit &hit)
{
    if (!hit.hit)
        return "miss: the default action runs";
    std::string text = "entry ";
    text += std::to_string(hit.entry);
    if (const std::string action = action_of_entry(table, hit.entry); !action.empty())
        text += ": " + action;
    return text + " (" + why(table, hit) + ')';
}

std::string hit_json(const pd::Table &table, const ts_model_hit &hit)
{
    std::string line;
    Json json{line};
    json.open_object().key("table").text(table.name).key("hit").flag(hit.hit);
    if (hit.hit) {
        json.key("entry").number(hit.entry);
        if (const std::string action = action_of_entry(table, hit.entry); !action.empty())
            json.key("action").text(action);
        json.key("candidates").number(hit.candidates).key("why").text(why(table, hit));
    }
    json.close_object();
    return line;
}

Record take_packet(Words &words, const pd::Table &table)
{
    Record record{table, KeyOf::packet};
    Options none;
    take_assignments(words, record, table.name, none);
    words.expect_end();
    return record;
}

} // namespace

void run_lookup(Session &session, Words &words)
{
    const pd::Table &table = *take_keyed_table(words).row;
    const PacketKey key = packet_key(table, take_packet(words, table));
    ts_model_hit hit{};
    expect_success(ts_model_lookup(device.device_id, table.handle, key.image.data(),
                                   static_cast<u32>(key.image.size()), key.partition_index, &hit));
    session.print(session.json() ? hit_json(table, hit) : hit_text(table, hit));
}

} // namespace shell
