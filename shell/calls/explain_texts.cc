#include "explain_texts.h"

#include <algorithm>
#include <vector>

#include "explain_records.h"
#include "images.h"
#include "meters.h"
#include "profiles.h"
#include "resources.h"
#include "shown.h"

namespace shell {

using reflection::ProfileFunctions;
using reflection::TableFunctions;

namespace {

// Whether each value fits its field: the library hands on what does not, but no command takes it.
template <typename Fields>
bool all_fit(const Fields &fields, const void *record)
{
    return std::ranges::all_of(fields, [&](const auto &field) {
        const Value value = load(field.width, static_cast<const std::byte *>(record) + field.offset);
        const Value most = ones(field.width);
        return (value.high & ~most.high) == 0 && (value.low & ~most.low) == 0;
    });
}

// Whether this key is what the images say: those of a prefix longer than its field are of no key that a
// command takes.
bool has_images(const pd::Table &table, const void *key, const pipe_match_spec &match)
{
    const KeyImages images = key_images(table, key);
    const std::vector<u8> counted = full_mask(table);
    for (std::size_t at = 0; at < counted.size(); ++at)
        if (((images.value[at] ^ match.match_value[at]) | (images.mask[at] ^ match.match_mask[at])) &
            counted[at])
            return false;
    return true;
}

} // namespace

std::string key_text(const TableFunctions &table, const pipe_match_spec &match)
{
    if (match.num_bytes != pd::image_size(table.row->key).bytes || !match.match_value || !match.match_mask)
        return {};
    const CallerRecord key = key_record(table, match);
    if (!all_fit(table.row->key, key.data()) || !has_images(*table.row, key.data(), match))
        return {};
    std::string text = assignments(shown_fields(*table.row), key.data());
    if (pd::has_priority(*table.row))
        text += (text.empty() ? "priority=" : " priority=") + std::to_string(match.priority);
    return text;
}

std::string action_text(std::span<const pd::Binding> actions, u32 handle, const pipe_action_spec &spec)
{
    const auto found = std::ranges::find(actions, handle, &pd::Binding::handle);
    if (found == actions.end())
        return {};
    const pd::Action &action = *found->action;
    if (spec.action_data.num_bytes != pd::image_size(action.parameters).bytes)
        return {};
    std::string text = action.name;
    if (action.parameters.empty())
        return text;
    if (!spec.action_data.data)
        return {};
    const CallerRecord parameters = parameter_record(action, spec);
    if (!all_fit(action.parameters, parameters.data()))
        return {};
    append_assignments(text, shown_fields(action), parameters.data());
    return text;
}

std::string meter_text(const TableFunctions &table, const pipe_action_spec &spec)
{
    const pipe_meter_spec *const meter = meter_of(table, spec);
    if (!meter)
        return {};
    return ' ' + meter_option(meter->committed_rate, meter->committed_burst, meter->peak_rate,
                              meter->peak_burst, meter->meter_type & 1);
}

std::string joined(const char *command, const char *name, const std::string &rest)
{
    std::string text = std::string{command} + ' ' + name;
    return rest.empty() ? text : text + ' ' + rest;
}

std::string table_command(const char *command, const tap::Arguments &call, const std::string &rest)
{
    const TableFunctions *table = reflection::find_table(call.word("table"));
    return table ? joined(command, table->row->name, rest) : std::string{};
}

std::string profile_command(const char *command, const tap::Arguments &call, const std::string &rest)
{
    const ProfileFunctions *profile = profile_by_table(call.word("table"));
    return profile ? joined(command, profile->row->name, rest) : std::string{};
}

std::string meter_command(u32 handle, const std::string &cell, const pipe_meter_spec &meter)
{
    return named_command("meter set", reflection::meters(), handle,
                         cell + " : committed_rate=" + std::to_string(meter.committed_rate) +
                             " committed_burst=" + std::to_string(meter.committed_burst) +
                             " peak_rate=" + std::to_string(meter.peak_rate) +
                             " peak_burst=" + std::to_string(meter.peak_burst) +
                             " type=" + std::string{meter_types[meter.meter_type & 1]});
}

std::string counts_text(const pipe_stat_data &counts)
{
    return " : packets=" + std::to_string(counts.first_count) +
           " bytes=" + std::to_string(counts.second_count);
}

} // namespace shell
