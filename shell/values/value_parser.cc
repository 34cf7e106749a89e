#include "value_parser.h"

#include <algorithm>
#include <stdexcept>

#include "words.h"

namespace shell {

namespace {

constexpr unsigned wide = 128;

u16 offset_of(const pd::Table &table, std::string_view member)
{
    for (const pd::Field &field : table.key) {
        if (member == field.name)
            return field.offset;
        if (field.twin && member == field.twin)
            return field.twin_offset;
    }
    throw std::logic_error{std::string{table.name} + " has no member " + std::string{member}};
}

u16 offset_of(const pd::Action &action, std::string_view parameter)
{
    for (const pd::Parameter &row : action.parameters)
        if (parameter == row.name)
            return row.offset;
    throw std::logic_error{std::string{action.name} + " has no parameter " + std::string{parameter}};
}

const pd::Action &action_row(std::string_view name)
{
    for (const pd::Action *action : reflection::actions())
        if (name == action->name)
            return *action;
    throw std::logic_error{"there is no action " + std::string{name}};
}

// The priority is printed as a signed number.
constexpr u64 largest_priority = 0x7fffffff;

} // namespace

ValueParser::ValueParser(const reflection::TableFunctions &table) : table_(table.row)
{
    const Schema schema = parse_table_schema(schema_text(table));
    indirect_ = schema.indirect;
    for (const SchemaField &field : schema.key)
        key_.push_back({field.name, field.width, field.width == wide ? ones(wide) : field.mask,
                        offset_of(*table_, field.name)});
    if (!indirect_)
        add_actions(schema);
}

ValueParser::ValueParser(const reflection::ProfileFunctions &profile)
{
    add_actions(parse_profile_schema(schema_text(profile)));
}

void ValueParser::add_actions(const Schema &schema)
{
    for (const SchemaAction &action : schema.actions) {
        Action &added = actions_.emplace_back(Action{&action_row(action.name), {}});
        for (const SchemaParameter &parameter : action.parameters)
            added.parameters.push_back({parameter.name, parameter.width, ones(parameter.width),
                                        offset_of(*added.row, parameter.name)});
    }
}

ParsedValue ValueParser::parse(std::string_view whole) const
{
    TextCursor text{whole};
    ParsedValue value;
    if (!table_ || text.at("('")) {
        take_body(text, value);
    } else if (text.at("(((")) {
        text.expect("((");
        take_key(text, value);
        take_body(text, value);
        text.expect("),(");
        value.priority = take_priority(text);
        text.expect(",True))");
    } else if (text.at("((")) {
        text.expect("(");
        take_key(text, value);
        take_body(text, value);
        text.expect(")");
    } else {
        take_key(text, value);
    }
    text.expect_end();
    return value;
}

void ValueParser::take_key(TextCursor &text, ParsedValue &value) const
{
    value.is_default = key_.empty() || text.at("()");
    if (value.is_default)
        return text.expect("(),");
    text.expect("( ");
    value.key = take_members(text, key_, table_->record_size);
    text.expect("),");
}

void ValueParser::take_body(TextCursor &text, ParsedValue &value) const
{
    if (!indirect_)
        take_action(text, value);
    else if (!text.at(")")) // else the entry points at nothing
        take_reference(text, value);
}

void ValueParser::take_action(TextCursor &text, ParsedValue &value) const
{
    text.expect("('");
    const std::string_view name = text.take_name("an action");
    const auto found = std::ranges::find(
        actions_, name, [](const Action &action) { return std::string_view{action.row->name}; });
    if (found == actions_.end()) {
        std::vector<std::string_view> names;
        for (const Action &action : actions_)
            names.push_back(action.row->name);
        text.fail(name, "one of " + listed(names));
    }
    value.action = found->row;
    text.expect("',(");
    value.parameters = take_members(text, found->parameters, found->row->record_size);
    text.expect(")),");
}

void ValueParser::take_reference(TextCursor &text, ParsedValue &value) const
{
    if (text.skip("('setMbrHdl',("))
        value.reference.kind = Kind::member;
    else if (text.skip("('setGrpHdl',("))
        value.reference.kind = Kind::group;
    else
        text.fail("('setMbrHdl',( or ('setGrpHdl',(");
    const std::string_view number = text.rest();
    const Value handle = text.take_hex("a handle");
    if (handle.high != 0 || handle.low >> 32 != 0)
        text.fail(number, "a handle of 32 bits");
    value.reference.handle = static_cast<u32>(handle.low);
    text.expect(",))");
}

u32 ValueParser::take_priority(TextCursor &text) const
{
    const std::string_view number = text.rest();
    const bool negative = text.skip("-");
    const u64 magnitude = text.take_decimal(largest_priority + negative, "a priority");
    if (magnitude == 0 && negative)
        text.fail(number, "0 without a sign");
    if (magnitude != 0 && !pd::has_priority(*table_))
        text.fail(number, std::string{"priority 0, as "} + table_->name + " has none,");
    return static_cast<u32>(negative ? -magnitude : magnitude);
}

std::vector<u64> ValueParser::take_members(TextCursor &text, const std::vector<Member> &members,
                                           u16 record_size)
{
    std::vector<u64> record(record_size / sizeof(u64) + 1); // aligned for every member
    for (const Member &member : members) {
        store(take_value(text, member), member.width,
              reinterpret_cast<std::byte *>(record.data()) + member.offset);
        text.expect(",");
    }
    return record;
}

Value ValueParser::take_value(TextCursor &text, const Member &member)
{
    const std::string_view number = text.rest();
    const auto digits = member.width == wide ? TextCursor::Digits::upper : TextCursor::Digits::lower;
    const Value value = text.take_hex(member.name, (member.width + 3) / 4, digits);
    if ((value.high & ~member.mask.high) != 0 || (value.low & ~member.mask.low) != 0)
        text.fail(number, "no bit of " + member.name + " outside " + to_text(member.mask));
    return value;
}

} // namespace shell
