#include "browse_data.h"

#include <algorithm>
#include <sstream>

namespace pdgen {

namespace {

// Rows are ASCII without quotation marks and backslashes in what goes here.
std::string quoted(const std::string &text)
{
    return '"' + text + '"';
}

class JsonObject {
public:
    void add(const std::string &name, const std::string &value)
    {
        text += (text.empty() ? "" : ",") + quoted(name) + ":" + value;
    }
    void add_text(const std::string &name, const std::string &value)
    {
        if (!value.empty())
            add(name, quoted(value));
    }
    void add_flag(const std::string &name, bool value)
    {
        if (value)
            add(name, "true");
    }
    void add_texts(const std::string &name, const std::vector<std::string> &values)
    {
        std::string list;
        for (const std::string &value : values)
            list += (list.empty() ? "" : ",") + quoted(value);
        if (!values.empty())
            add(name, "[" + list + "]");
    }
    std::string json() const { return "{" + text + "}"; }

private:
    std::string text;
};

std::string argument_json(const FunctionArgument &argument)
{
    JsonObject json;
    json.add_text("name", argument.name);
    json.add_text("type", argument.type);
    json.add_text("text", argument.text);
    json.add_text("unit", argument.unit);
    json.add_text("when", argument.when);
    json.add_flag("out", argument.out);
    return json.json();
}

std::string family_json(const Family &family)
{
    JsonObject json;
    json.add_text("name", family.name);
    json.add_texts("when", family.when);
    json.add_text("result", family.result);
    json.add_text("brief", family.brief);
    json.add_texts("arguments", family.arguments);
    json.add_text("returns", family.returns);
    return json.json();
}

void add_words(JsonObject &json, const Object &kind, const std::vector<const View *> &scope,
               const Object *owner)
{
    static const Object &action = *find_object("action");
    const auto is_said = [&](const std::string &word) {
        return owner && (lists(owner->words, word) || lists(owner->predicates, word) ||
                         (word != action.word && lists(kind.words, action.word) &&
                          (lists(action.words, word) || lists(action.predicates, word))));
    };
    std::istringstream words(std::string(kind.words) + kind.predicates);
    for (std::string word; words >> word;) {
        if (is_said(word))
            continue;
        const View &value = value_of(word, scope);
        if (value.is_string())
            json.add_text(word, value.string_value());
        else
            json.add_flag(word, value.is_true());
    }
}

void append(std::string &list, const std::string &element)
{
    list += (list.empty() ? "" : ",\n") + element;
}

} // namespace

std::string families_json(const FunctionRows &rows)
{
    JsonObject arguments;
    for (const FunctionArgument &argument : rows.arguments)
        arguments.add(argument.id, argument_json(argument));
    std::string sections;
    for (const Section &section : rows.sections) {
        std::string families;
        for (const Family &family : section.families)
            append(families, family_json(family));
        JsonObject json;
        json.add_text("over", section.over);
        json.add("families", "[" + families + "]");
        append(sections, json.json());
    }
    return R"({"arguments":)" + arguments.json() + R"(,"sections":[)" + sections + "]}";
}

void ObjectWords::add(const View &owner, const std::vector<ObjectPart> &parts)
{
    const auto is_owner = [&](const ObjectPart &part) { return part.objects == std::vector{&owner}; };
    const Object &owner_kind = *find_object(std::ranges::find_if(parts, is_owner)->over);
    JsonObject json;
    add_words(json, owner_kind, {&owner}, nullptr);
    for (const ObjectPart &part : parts) {
        if (is_owner(part))
            continue;
        std::string own;
        for (const View *object : part.objects) {
            JsonObject words;
            add_words(words, *find_object(part.over), {&owner, object}, &owner_kind);
            append(own, words.json());
        }
        if (!own.empty())
            json.add(part.over, "[" + own + "]");
    }
    append(objects[owner_kind.name], json.json());
}

std::string ObjectWords::json() const
{
    JsonObject json;
    for (const auto &[kind, list] : objects)
        json.add(kind, "[" + list + "]");
    return json.json();
}

} // namespace pdgen
