#include "functions_view.h"

#include <algorithm>
#include <set>
#include <stdexcept>

namespace pdgen {

const View &value_of(const std::string &word, const std::vector<const View *> &scope)
{
    for (auto view = scope.rbegin(); view != scope.rend(); ++view)
        if (const View *value = (*view)->get(word))
            return *value;
    throw std::runtime_error("functions.toml: \"" + word + "\" has no value here");
}

namespace {

bool holds(const std::string &predicate, const std::vector<const View *> &scope)
{
    return predicate.empty() || value_of(predicate, scope).is_true();
}

bool all_hold(const std::vector<std::string> &predicates, const std::vector<const View *> &scope)
{
    return std::ranges::all_of(predicates,
                               [&](const std::string &predicate) { return holds(predicate, scope); });
}

std::string joined(const std::vector<std::string> &parts)
{
    std::string text;
    for (const std::string &part : parts)
        text += (text.empty() ? "" : ", ") + part;
    return text;
}

bool contains(const std::vector<std::string> &texts, const std::string &text)
{
    return std::ranges::find(texts, text) != texts.end();
}

// What callers that know no table call an argument, whose name may differ from object to object.
std::string generic_name(const FunctionArgument &argument)
{
    return argument.name.find('{') == std::string::npos ? argument.name : argument.id;
}

// A declaration's type and name with no blank behind an asterisk.
std::string declared(const std::string &type, const std::string &name)
{
    return type + (type.ends_with('*') || type.ends_with('&') || name.empty() ? "" : " ") + name;
}

} // namespace

std::string FunctionViews::fill(const std::string &text, const Scope &scope) const
{
    std::string filled;
    std::size_t at = 0;
    for (std::size_t open; (open = text.find('{', at)) != std::string::npos;) {
        const std::size_t close = text.find('}', open);
        const std::string word = text.substr(open + 1, close - open - 1);
        filled += text.substr(at, open - at);
        filled += word == "prefix" ? catalogue.prefix : value_of(word, scope).string_value();
        at = close + 1;
    }
    return filled + text.substr(at);
}

std::vector<const FunctionArgument *> FunctionViews::arguments_of(const Family &family) const
{
    std::vector<const FunctionArgument *> arguments;
    for (const std::string &id : family.arguments)
        arguments.push_back(catalogue.functions.find_argument(id));
    return arguments;
}

// ---- Declarations and definitions -------------------------------------------------------------------------

std::string FunctionViews::parameters(const Family &family, const Scope &scope, bool definition) const
{
    std::vector<std::string> parts;
    for (const FunctionArgument *argument : arguments_of(family))
        if (holds(argument->when, scope))
            parts.push_back(declared(fill(argument->type, scope),
                                     definition && argument->ignored ? "" : fill(argument->name, scope)));
    return parts.empty() && !definition ? "void" : joined(parts);
}

// "{ .key = match_spec, .priority = priority }", in the order of the rows of the arguments.
std::string FunctionViews::record(const std::string &name, const Family &family, const Scope &scope) const
{
    std::vector<std::string> members;
    for (const FunctionArgument &argument : catalogue.functions.arguments)
        if (argument.record == name && contains(family.arguments, argument.id) && holds(argument.when, scope))
            members.push_back("." + argument.member + " = " + fill(argument.name, scope));
    return members.empty() ? "{}" : "{ " + joined(members) + " }";
}

std::string FunctionViews::call(const Family &family, const Scope &scope) const
{
    std::vector<std::string> templates, values;
    for (const std::string &constant : family.templates)
        templates.push_back(fill(constant, scope));
    for (const std::string &constant : family.constants)
        values.push_back(fill(constant, scope));
    std::vector<std::string> records;
    for (const FunctionArgument *argument : arguments_of(family)) {
        if (!argument->record.empty()) {
            if (!contains(records, argument->record))
                values.push_back(record(argument->record, family, scope));
            records.push_back(argument->record);
        } else if (!argument->ignored && holds(argument->when, scope)) {
            const std::string name = fill(argument->name, scope);
            values.push_back(argument->through.empty() ? name
                                                       : fill(argument->through, scope) + "(" + name + ")");
        }
    }
    return family.function + (templates.empty() ? "" : "<" + joined(templates) + ">") + "(" + joined(values) +
           ")";
}

View FunctionViews::function_view(const Section &section, const Family &family, const Scope &scope)
{
    View view;
    const std::string result = fill(family.result, scope);
    const std::string name = fill(family.name, scope);
    view.set("function", name);
    view.set("family", family.name);
    view.set("over", section.over);
    view.set("object", value_of(find_object(section.over)->word, scope).string_value());
    view.set("is_first", View(exported.empty()));
    exported.emplace_back(name, &family);
    view.set("result_type", result);
    view.set("result", result + (result.ends_with('*') ? "" : " "));
    view.set("parameters", parameters(family, scope, false));
    view.set("named_parameters", parameters(family, scope, true));
    view.set("has_call", View(!family.function.empty()));
    view.set("call", family.function.empty() ? "" : call(family, scope));
    view.set("is_inspection", View(section.inspection));
    view.set("is_hot", View(family.hot));
    view.set("brief", fill(family.brief, scope));
    view.set("returns", fill(family.returns, scope));
    view.set("has_returns", View(!family.returns.empty()));
    std::size_t widest = 0;
    for (const FunctionArgument *argument : arguments_of(family))
        if (holds(argument->when, scope))
            widest = std::max(widest, fill(argument->name, scope).size());
    Views arguments;
    std::string json; // in one piece, since a list is copied slowly
    for (const FunctionArgument *argument : arguments_of(family)) {
        if (!holds(argument->when, scope))
            continue;
        View row;
        const std::string word = fill(argument->name, scope), text = fill(argument->text, scope);
        row.set("padded", word + std::string(widest - word.size(), ' '));
        row.set("text", text);
        arguments.push_back(row);
        json += std::string(json.empty() ? "" : ", ") + R"({"name": ")" + word + R"(", "type": ")" +
                fill(argument->type, scope) + R"(", "direction": ")" + (argument->out ? "out" : "in") +
                R"(", "unit": ")" + argument->unit + R"(", "text": ")" + text + "\"}";
    }
    view.set("has_arguments", View(!arguments.empty()));
    view.set("arguments", arguments);
    view.set("arguments_json", json);
    return view;
}

void FunctionViews::set_list(View &owner, const Views &functions)
{
    const std::string key = std::to_string(lists.size());
    lists.emplace(key, functions);
    owner.set("functions", key);
    for (const View &function : functions)
        all.push_back(function);
}

void FunctionViews::set_functions(View &owner, const std::vector<ObjectPart> &parts)
{
    Views views;
    for (const Section &section : catalogue.functions.sections)
        for (const ObjectPart &part : parts) {
            if (section.over != part.over)
                continue;
            for (const View *object : part.objects)
                for (const Family &family : section.families)
                    if (const Scope scope{&owner, object}; all_hold(family.when, scope))
                        views.push_back(function_view(section, family, scope));
        }
    set_list(owner, views);
}

Views FunctionViews::program_functions(const std::string &file, const View &root)
{
    Views views;
    for (const Section &section : catalogue.functions.sections) {
        if (section.file != file)
            continue;
        View view;
        view.set("title", section.title);
        Views functions;
        for (const Family &family : section.families)
            functions.push_back(function_view(section, family, {&root}));
        set_list(view, functions);
        views.push_back(view);
    }
    return views;
}

// ---- The reflection ---------------------------------------------------------------------------------------

// How callers that know no table hand the arguments over. Without a scope, as the slot is declared; what the
// object's function does not take has no name.
std::string FunctionViews::generic_parameters(const Family &family, const Scope *scope) const
{
    std::vector<std::string> parts;
    std::vector<std::string> seen;
    for (const FunctionArgument *argument : arguments_of(family)) {
        const ArgumentRecord *record = catalogue.functions.find_record(argument->record);
        if (record && !record->type.empty()) {
            if (!contains(seen, record->generic))
                parts.push_back((scope ? "[[maybe_unused]] " : "") + declared(record->type, record->generic));
            seen.push_back(record->generic);
            continue;
        }
        const std::string &type = argument->generic.empty() ? argument->type : argument->generic;
        const bool is_taken = !scope || holds(argument->when, *scope);
        parts.push_back(declared(type, is_taken ? generic_name(*argument) : ""));
    }
    return joined(parts);
}

std::string FunctionViews::generic_call(const Family &family, const Scope &scope) const
{
    std::vector<std::string> values;
    for (const FunctionArgument *argument : arguments_of(family)) {
        if (!holds(argument->when, scope))
            continue;
        const ArgumentRecord *record = catalogue.functions.find_record(argument->record);
        std::string value = generic_name(*argument);
        if (record && !record->type.empty())
            value = (record->by_address ? "&" : "") + record->generic + "." + argument->member;
        values.push_back(
            argument->generic.empty() ? value : "as<" + fill(argument->type, scope) + ">(" + value + ")");
    }
    return fill(family.name, scope) + "(" + joined(values) + ")";
}

// Whether a caller that knows no table cannot call the function as it is.
bool FunctionViews::is_generic(const Family &family, const Scope &scope) const
{
    return std::ranges::any_of(arguments_of(family), [&](const FunctionArgument *argument) {
        const ArgumentRecord *record = catalogue.functions.find_record(argument->record);
        return (record && !record->type.empty()) || !argument->generic.empty() ||
               !holds(argument->when, scope);
    });
}

View FunctionViews::slot_view(const Family &family, const Scope &scope) const
{
    View view;
    view.set("slot", family.slot);
    view.set("is_generic", View(is_generic(family, scope)));
    view.set("function", fill(family.name, scope));
    view.set("generic_parameters", generic_parameters(family, &scope));
    view.set("generic_call", generic_call(family, scope));
    return view;
}

void FunctionViews::set_slots(View &object, const char *over, const View *owner) const
{
    std::map<std::string, Views> slots;
    const Scope scope = owner ? Scope{owner, &object} : Scope{&object};
    for (const Section &section : catalogue.functions.sections) {
        if (section.over != over || section.slots.empty())
            continue;
        Views &views = slots[section.slots];
        for (const Family &family : section.families)
            if (all_hold(family.when, scope))
                views.push_back(slot_view(family, scope));
    }
    for (const auto &[name, views] : slots)
        object.set(slots.size() == 1 ? "slots" : name + "_slots", views);
}

Views FunctionViews::slot_types(const std::string &slots) const
{
    Views types;
    for (const Section &section : catalogue.functions.sections) {
        if (section.slots != slots)
            continue;
        for (const Family &family : section.families) {
            View type;
            type.set("slot_type", declared(family.result, "(*" + family.slot + ")(") +
                                      generic_parameters(family, nullptr) + ") = nullptr");
            types.push_back(type);
        }
    }
    return types;
}

void FunctionViews::set_families(View &root)
{
    std::map<const Family *, std::size_t> counts;
    for (const auto &[name, family] : exported)
        ++counts[family];
    std::set<std::string> records;
    Views families;
    for (const Section &section : catalogue.functions.sections) {
        if (!section.slots.empty() && records.insert(section.slots).second)
            root.set(section.slots + "_slot_types", slot_types(section.slots));
        for (const Family &family : section.families) {
            View view;
            view.set("family", family.name);
            view.set("over", section.over);
            view.set("count", std::to_string(counts[&family]));
            families.push_back(view);
        }
    }
    root.set("families", families);
    root.set("function_count", std::to_string(exported.size()));
    root.set("functions", std::string("all"));
    lists.emplace("all", std::move(all));
}

} // namespace pdgen
