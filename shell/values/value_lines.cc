#include "value_lines.h"

#include "profiles.h"
#include "result.h"

namespace shell {

namespace {

// What was read, and of it the sentence.
std::string tell(Result &to, const pd::Table *table, const ParsedValue &value)
{
    std::string key, body;
    if (value.is_default)
        to.flag("default", true);
    if (!value.key.empty()) {
        to.fields("key", shown_fields(*table), value.key.data());
        if (value.priority && pd::has_priority(*table))
            to.number("priority", *value.priority, "key");
        key = "{key}";
    }
    if (value.action) {
        to.text("action", value.action->name);
        to.fields("parameters", shown_fields(*value.action), value.parameters.data());
        body = "{action} {parameters}";
    }
    if (value.reference.handle != 0) {
        const char *const kind = kind_name(value.reference.kind);
        to.number(kind, value.reference.handle);
        body = std::string{kind} + " {" + kind + '}';
    } else if (value.is_default && !value.action && table && table->profile) {
        body = "nothing";
    }
    if (value.is_default)
        return "default entry" + (body.empty() ? "" : ": " + body);
    return key + (key.empty() || body.empty() ? "" : " : ") + body;
}

} // namespace

void print_value(Session &session, const char *kind, const char *name, const pd::Table *table,
                 const ParsedValue &value)
{
    Result result{session.json()};
    if (kind)
        result.text(kind, name);
    const std::string sentence = tell(result, table, value);
    session.print(result.line(sentence));
}

} // namespace shell
