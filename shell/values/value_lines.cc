#include "value_lines.h"

#include "json.h"
#include "profiles.h"
#include "shown.h"

namespace shell {

namespace {

void append_separated(std::string &to, std::string_view separator, std::string_view text)
{
    if (!to.empty() && !text.empty())
        to += separator;
    to += text;
}

std::string body_text(const ParsedValue &value, bool indirect)
{
    if (value.action) {
        std::string text = value.action->name;
        append_assignments(text, shown_fields(*value.action), value.parameters.data());
        return text;
    }
    if (value.reference.handle != 0)
        return kind_name(value.reference.kind) + (' ' + std::to_string(value.reference.handle));
    return value.is_default && indirect ? "nothing" : "";
}

std::string value_text(const pd::Table *table, const ParsedValue &value)
{
    std::string text;
    if (!value.key.empty())
        text = assignments(shown_fields(*table), value.key.data());
    if (!value.key.empty() && value.priority && pd::has_priority(*table))
        append_separated(text, " ", "priority=" + std::to_string(*value.priority));
    const std::string body = body_text(value, table && table->profile);
    if (value.is_default)
        return "default entry" + (body.empty() ? "" : ": " + body);
    append_separated(text, " : ", body);
    return text;
}

void append_json(Json &to, const pd::Table *table, const ParsedValue &value)
{
    if (value.is_default)
        to.key("default").flag(true);
    if (!value.key.empty())
        append_json(to.key("key"), shown_fields(*table), value.key.data());
    if (!value.key.empty() && value.priority && pd::has_priority(*table))
        to.key("priority").number(*value.priority);
    if (value.action) {
        to.key("action").text(value.action->name).key("parameters");
        append_json(to, shown_fields(*value.action), value.parameters.data());
    }
    if (value.reference.handle != 0)
        to.key(kind_name(value.reference.kind)).number(value.reference.handle);
}

} // namespace

void print_value(Session &session, const char *kind, const char *name, const pd::Table *table,
                 const ParsedValue &value)
{
    if (!session.json())
        return session.print(value_text(table, value));
    std::string line;
    Json json{line};
    json.open_object();
    if (kind)
        json.key(kind).text(name);
    append_json(json, table, value);
    json.close_object();
    session.print(line);
}

} // namespace shell
