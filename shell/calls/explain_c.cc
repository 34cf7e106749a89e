#include "explain_c.h"

#include <algorithm>
#include <cstdio>

#include "explain_c_forms.h"
#include "explain_records.h"
#include "profiles.h"
#include "resources.h"
#include "services.h"
#include "values.h"

namespace shell {

namespace {

using reflection::TableFunctions;

constexpr char beginning[] = R"(/* Made by tessel-shell explain --as c. */
#include <stdio.h>

#include "pd.h"

static int failures;

void synced(uint32_t device, pd_word cookie)
{
    (void)device;
    (void)cookie;
}

static inline void expect(pd_status status, int line)
{
    if (status == PD_STATUS_SUCCESS)
        return;
    fprintf(stderr, __FILE__ ":%d: status %u\n", line, (unsigned)status);
    ++failures;
}

int main(void)
{
    p4_pd_tessel_switch_init();
)";

constexpr char ending[] = R"(    return p4_pd_tessel_switch_cleanup() != PD_STATUS_SUCCESS || failures != 0;
}
)";

// As a constant of C that is wide enough without a warning.
std::string decimal(u64 number)
{
    return std::to_string(number) + (number >> 63 ? "u" : "");
}

std::string hexadecimal(u64 number)
{
    char text[20];
    std::snprintf(text, sizeof text, "0x%llx", static_cast<unsigned long long>(number));
    return text;
}

std::string target_text(u32 device, u32 pipe)
{
    std::string text = "(pd_dev_target){" + std::to_string(device) + ", ";
    text += hexadecimal(pipe);
    return text + '}';
}

std::string counts_text(const pipe_stat_data &counts)
{
    std::string text = "(pd_counter_value){" + decimal(counts.first_count) + ", ";
    text += decimal(counts.second_count);
    return text + '}';
}

// The bytes of a wide member, the number in others.
std::string literal(unsigned width, const void *member)
{
    const Value value = load(width, member);
    if (width <= 32)
        return std::to_string(value.low);
    std::vector<u8> bytes(pd::bytes_of(width));
    write_image(value, width, bytes.data());
    std::string text;
    for (const u8 byte : bytes) {
        text += text.empty() ? "{" : ", ";
        text += hexadecimal(byte);
    }
    return text + '}';
}

// ".name = VALUE, "
void append_member(std::string &to, const std::string &name, const std::string &value)
{
    to += '.';
    to += name;
    to += " = ";
    to += value;
    to += ", ";
}

// "const TYPE NAME = {MEMBERS};"
std::string declared(const std::string &type, const char *name, std::string members)
{
    members.resize(members.size() - 2);
    return "        const " + type + ' ' + name + " = {" + members + "};\n";
}

template <typename Functions>
std::string name_in(std::span<const Functions> all, u32 handle)
{
    const auto found = std::ranges::find(all, handle, [](const Functions &one) { return one.row->handle; });
    return found != all.end() ? found->row->name : "";
}

} // namespace

const char *CProgram::begin()
{
    return beginning;
}

const char *CProgram::end()
{
    return ending;
}

// No comment begins or ends within it.
std::string CProgram::comment(const std::string &text)
{
    std::string inside = text;
    for (std::size_t at = 1; at < inside.size(); ++at)
        if ((inside[at - 1] == '/' && inside[at] == '*') || (inside[at - 1] == '*' && inside[at] == '/'))
            inside[at] = ' ';
    return "    /* " + inside + " */\n";
}

// ---- Records ----------------------------------------------------------------------------------------------

std::string CProgram::key()
{
    const pd::Table &row = *table().row;
    const CallerRecord record = key_record(table(), call_->match);
    const auto *const bytes = reinterpret_cast<const std::byte *>(record.data());
    std::string members;
    for (const pd::Field &field : row.key) {
        append_member(members, field.name, literal(field.width, bytes + field.offset));
        if (field.match != pd::Match::exact)
            append_member(
                members, field.twin,
                literal(field.match == pd::Match::lpm ? 16 : field.width, bytes + field.twin_offset));
    }
    records_ += declared(std::string{"p4_pd_tessel_switch_"} + row.name + "_match_spec_t", "key", members);
    return pd::has_priority(row) ? "&key, " + std::to_string(call_->match.priority) : "&key";
}

std::string CProgram::parameters()
{
    const pd::Action &action = this->action();
    if (action.parameters.empty())
        return {};
    const CallerRecord record = parameter_record(action, call_->action);
    const auto *const bytes = reinterpret_cast<const std::byte *>(record.data());
    std::string members;
    for (const pd::Parameter &parameter : action.parameters)
        append_member(members, std::string{"action_"} + parameter.name,
                      literal(parameter.width, bytes + parameter.offset));
    records_ +=
        declared(std::string{"p4_pd_tessel_switch_"} + action.name + "_action_spec_t", "action", members);
    return ", &action";
}

std::string CProgram::meter(const pipe_meter_spec &spec)
{
    std::string members;
    append_member(members, "committed_rate", std::to_string(spec.committed_rate));
    append_member(members, "committed_burst", std::to_string(spec.committed_burst));
    append_member(members, "peak_rate", std::to_string(spec.peak_rate));
    append_member(members, "peak_burst", std::to_string(spec.peak_burst));
    append_member(members, "requested_meter_type", std::to_string(spec.meter_type & 1));
    records_ += declared("pd_meter_spec", "meter", members);
    return "&meter";
}

// Null where the entry gets none; nothing for a table without meters.
std::string CProgram::entry_meter()
{
    if (table().row->direct_meter == 0)
        return {};
    const pipe_meter_spec *const spec = meter_of(table(), call_->action);
    return ", " + (spec ? meter(*spec) : std::string{"NULL"});
}

std::string CProgram::ttl() const
{
    return table().row->ttl_on_add ? ", " + decimal(call_->number("ttl")) : std::string{};
}

std::string CProgram::attributes()
{
    if (call_->attributes.empty())
        return "0, NULL";
    std::string elements;
    for (const pipe_hash_calc_input_field_attribute &attribute : call_->attributes) {
        elements += '{';
        for (const u32 number : {attribute.input_field, attribute.attr_type})
            elements += std::to_string(number) + ", ";
        elements += std::to_string(attribute.attr_value) + "}, ";
    }
    records_ += declared("hash_input_field_attribute", "attributes[]", elements);
    return std::to_string(call_->attributes.size()) + ", attributes";
}

std::string CProgram::register_value()
{
    records_ += declared("uint8_t", "value[]", std::to_string(call_->value.bytes[0] & 1) + ", ");
    return "value";
}

std::string CProgram::idle_params() const
{
    const auto known = idle_params_.find(call_->word("table"));
    if (known == idle_params_.end())
        return "(pd_idle_params){.idle_mode = 1}";
    const pipe_idle_params &params = known->second;
    std::string text = "(pd_idle_params){";
    for (const u32 number : {params.idle_mode, params.idle_param_1, params.idle_param_2, params.idle_param_3,
                             params.idle_param_4, params.idle_param_5})
        text += std::to_string(number) + ", ";
    return text + "0}";
}

// ---- Handles ----------------------------------------------------------------------------------------------

const TableFunctions &CProgram::table() const
{
    return *reflection::find_table(call_->word("table"));
}

const reflection::ProfileFunctions &CProgram::profile() const
{
    return *profile_by_table(call_->word("table"));
}

const pd::Action &CProgram::action() const
{
    const TableFunctions *const of_entries = reflection::find_table(call_->word("table"));
    const auto actions = of_entries ? of_entries->row->actions : profile().row->actions;
    return *std::ranges::find(actions, call_->word("action"), &pd::Binding::handle)->action;
}

// "ipv4Host_entry_1"; the number where there is no such table.
std::string CProgram::variable(const char *kind, u32 handle) const
{
    const u32 table = call_->word("table");
    std::string name = name_in(reflection::value_sets(), call_->word("set"));
    if (const TableFunctions *found = reflection::find_table(table);
        found && std::string_view{kind} == "entry")
        name = found->row->name;
    else if (const reflection::ProfileFunctions *profile = profile_by_table(table))
        name = profile->row->name;
    return name.empty() ? std::to_string(handle) : name + '_' + kind + '_' + std::to_string(handle);
}

std::string CProgram::handle(const char *kind, u32 handle) const
{
    std::string name = variable(kind, handle);
    return variables_.contains(name) ? name : std::to_string(handle);
}

bool CProgram::points_at_group() const
{
    return call_->action.action_kind == PIPE_ACTION_GROUP;
}

std::string CProgram::pointed() const
{
    return points_at_group() ? handle("group", call_->action.group_hdl)
                             : handle("member", call_->action.member_hdl);
}

std::string CProgram::made(const char *kind)
{
    const std::string name = variable(kind, call_->word(kind));
    if (variables_.insert(name).second)
        handles_ += "    uint32_t " + name + " = 0;\n";
    return '&' + name;
}

// ---- Statements ------------------------------------------------------------------------------------------

std::string CProgram::value_of(std::string_view place)
{
    using Make = std::string (*)(CProgram & program);
    static constexpr std::pair<std::string_view, Make> values[] = {
        {"TABLE", [](CProgram &program) -> std::string { return program.table().row->name; }},
        {"PROFILE", [](CProgram &program) -> std::string { return program.profile().row->name; }},
        {"ACTION", [](CProgram &program) -> std::string { return program.action().name; }},
        {"COUNTER",
         [](CProgram &program) -> std::string {
             return name_in(reflection::counters(), program.call_->word("counter"));
         }},
        {"ENTRY COUNTER",
         [](CProgram &program) -> std::string {
             return name_in(reflection::counters(), program.call_->word("table"));
         }},
        {"METER",
         [](CProgram &program) -> std::string {
             return name_in(reflection::meters(), program.call_->word("meter"));
         }},
        {"ENTRY METER NAME",
         [](CProgram &program) -> std::string {
             return name_in(reflection::meters(), program.call_->resources.front().res_handle);
         }},
        {"REGISTER",
         [](CProgram &program) -> std::string {
             return name_in(reflection::registers(), program.call_->word("table"));
         }},
        {"SET",
         [](CProgram &program) -> std::string {
             return name_in(reflection::value_sets(), program.call_->word("set"));
         }},
        {"HASH",
         [](CProgram &program) -> std::string {
             return name_in(reflection::hashes(), program.call_->word("calculation"));
         }},
        {"TARGET",
         [](CProgram &program) -> std::string {
             return target_text(program.call_->target.device_id, program.call_->target.pipe_id);
         }},
        {"DEVICE",
         [](CProgram &program) -> std::string {
             return target_text(program.call_->word("device_id"), PIPE_ALL_PIPES);
         }},
        {"KEY", [](CProgram &program) -> std::string { return program.key(); }},
        {"PARAMETERS", [](CProgram &program) -> std::string { return program.parameters(); }},
        {"TTL", [](CProgram &program) -> std::string { return program.ttl(); }},
        {"ENTRY METER", [](CProgram &program) -> std::string { return program.entry_meter(); }},
        {"RESOURCE METER",
         [](CProgram &program) -> std::string {
             return program.meter(program.call_->resources.front().res_data.meter);
         }},
        {"SPEC", [](CProgram &program) -> std::string { return program.meter(program.call_->meter); }},
        {"VALUE", [](CProgram &program) -> std::string { return program.register_value(); }},
        {"IDLE", [](CProgram &program) -> std::string { return program.idle_params(); }},
        {"ATTRIBUTES", [](CProgram &program) -> std::string { return program.attributes(); }},
        {"COUNTS", [](CProgram &program) -> std::string { return counts_text(program.call_->counts); }},
        {"PROPERTY VALUE",
         [](CProgram &program) -> std::string { return decimal(program.call_->property.value); }},
        {"PROPERTY ARGUMENT",
         [](CProgram &program) -> std::string { return decimal(program.call_->property_args.argument); }},
        {"SUFFIX",
         [](CProgram &program) -> std::string { return program.points_at_group() ? "_with_selector" : ""; }},
        {"POINTED", [](CProgram &program) -> std::string { return program.pointed(); }},
        {"ENTRY",
         [](CProgram &program)
             -> std::string { return program.handle("entry", program.call_->word("entry")); }},
        {"FIRST",
         [](CProgram &program)
             -> std::string { return program.handle("entry", program.call_->word("first")); }},
        {"MEMBER",
         [](CProgram &program)
             -> std::string { return program.handle("member", program.call_->word("member")); }},
        {"GROUP",
         [](CProgram &program)
             -> std::string { return program.handle("group", program.call_->word("group")); }},
        {"NEW ENTRY", [](CProgram &program) -> std::string { return program.made("entry"); }},
        {"NEW MEMBER", [](CProgram &program) -> std::string { return program.made("member"); }},
        {"NEW GROUP", [](CProgram &program) -> std::string { return program.made("group"); }},
    };
    const auto found = std::ranges::find(values, place, &std::pair<std::string_view, Make>::first);
    return found != std::end(values) ? found->second(*this) : decimal(call_->number(place));
}

std::string CProgram::filled(std::string_view form)
{
    std::string text;
    while (!form.empty()) {
        const std::size_t end = form.find('}');
        const std::size_t begin = form.rfind('{', end);
        if (end == std::string_view::npos || begin == std::string_view::npos)
            return text.append(form);
        text.append(form.substr(0, begin));
        text += value_of(form.substr(begin + 1, end - begin - 1));
        form.remove_prefix(end + 1);
    }
    return text;
}

void CProgram::keep(const tap::RecordedCall &call)
{
    if (call.operation().name != std::string_view{"pipe_mgr_idle_set_params"} || call.header.result != 0)
        return;
    const tap::Arguments arguments{call};
    idle_params_[arguments.word("table")] = arguments.idle;
}

std::string CProgram::statement(const tap::RecordedCall &call)
{
    const tap::Arguments arguments{call};
    call_ = &arguments;
    const CForm *const form = find_c_form(call.operation().name, arguments);
    if (!form)
        return {};
    records_.clear();
    handles_.clear();
    std::string text = "expect(p4_pd_tessel_switch_" + filled(form->call) + ", __LINE__);\n";
    if (records_.empty())
        return handles_ + "    " + text;
    return handles_ + "    {\n" + records_ + "        " + text + "    }\n";
}

} // namespace shell
