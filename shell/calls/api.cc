#include "api.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <map>

#include "functions.h"
#include "reflection.h"
#include "words.h"

namespace shell {

namespace {

Function function_of(std::string_view line)
{
    std::array<std::string_view, 6> parts;
    for (std::string_view &part : parts) {
        part = line.substr(0, line.find('\t'));
        line.remove_prefix(std::min(part.size() + 1, line.size()));
    }
    return {parts[0], parts[1], parts[2], parts[3], parts[4], parts[5]};
}

std::vector<Function> read_functions()
{
    std::vector<Function> all;
    for (std::string_view lines = reflection::function_lines; !lines.empty();) {
        const std::size_t end = lines.find('\n');
        all.push_back(function_of(lines.substr(0, end)));
        lines.remove_prefix(end + 1);
    }
    return all;
}

bool contains(std::string_view text, std::string_view part)
{
    return text.find(part) != std::string_view::npos;
}

// Whether the text ends with "_WORD".
bool ends_with_word(std::string_view text, std::string_view word)
{
    return text.ends_with(word) && text.size() > word.size() && text[text.size() - word.size() - 1] == '_';
}

// Whether the function is about the object, or runs the action.
bool is_about(const Function &function, std::string_view name)
{
    return function.object == name || function.name == name || ends_with_word(function.name, name);
}

bool has_word(const Function &function, std::string_view word)
{
    std::string part{"_"};
    part += word;
    return contains(function.name, part);
}

// Whether this is "PREFIX_NAME" with the ending behind it.
bool is_type(std::string_view type, std::string_view name, std::string_view ending)
{
    return type.ends_with(ending) && ends_with_word(type.substr(0, type.size() - ending.size()), name);
}

struct Parameter {
    std::string_view type; // without the name; with the asterisk of a pointer
    std::string_view name;
};

std::vector<Parameter> parameters_of(const Function &function)
{
    std::vector<Parameter> parameters;
    for (std::string_view rest = function.parameters; !rest.empty() && rest != "void";) {
        const std::string_view part = rest.substr(0, rest.find(", "));
        rest.remove_prefix(std::min(part.size() + 2, rest.size()));
        const std::size_t name = part.find_last_of(" *") + 1;
        parameters.push_back({part.substr(0, part.find_last_not_of(' ', name - 1) + 1), part.substr(name)});
    }
    return parameters;
}

template <typename Members>
std::string members_text(const Members &members, std::string_view prefix)
{
    std::string text;
    const auto append = [&](std::string_view name, unsigned width) {
        text += text.empty() ? "{." : ", .";
        text += prefix;
        text += name;
        text += width > 32 ? " = {0}" : " = 0";
    };
    for (const auto &member : members) {
        append(member.name, member.width);
        if constexpr (requires { member.twin; })
            if (member.match != pd::Match::exact)
                append(member.twin, member.match == pd::Match::lpm ? 16 : member.width);
    }
    return text + '}';
}

// The value of a record of this type: its members by name where the catalogue has them.
std::string initializer(std::string_view type)
{
    for (const reflection::TableFunctions *table : reflection::tables())
        if (!table->row->key.empty() && is_type(type, table->row->name, "_match_spec_t"))
            return members_text(table->row->key, "");
    for (const pd::Action *action : reflection::actions())
        if (!action->parameters.empty() && is_type(type, action->name, "_action_spec_t"))
            return members_text(action->parameters, "action_");
    return "{0}";
}

// A variable for the parameter, if it takes one, and what stands for it in the call.
struct Argument {
    std::string variable;
    std::string value;
};

Argument argument_of(const Parameter &parameter)
{
    const std::string name{parameter.name};
    std::string_view type = parameter.type;
    if (!type.ends_with('*')) {
        if (type.ends_with("_cb"))
            return {"", "NULL"};
        if (type == "pd_dev_target")
            return {"", "(pd_dev_target){0, 0xffff}"};
        const bool is_record = type == "pd_idle_params" || type == "pd_counter_value";
        std::string value = is_record ? "(" : "0";
        if (is_record)
            value.append(type).append("){0}");
        return {"", value};
    }
    type = type.substr(0, type.find_last_not_of(" *") + 1);
    if (type == "const char")
        return {"", "\"\""};
    if (type == "char")
        return {"char " + name + "[4096];", name};
    if (contains(type, "void") || contains(type, "struct "))
        return {"", "NULL"};
    std::string variable{type};
    variable += ' ';
    variable += name;
    variable += " = ";
    variable += initializer(type);
    return {variable += ';', '&' + name};
}

void print(const Function &function)
{
    std::cout << prototype(function) << ";\n    " << function.brief << '\n';
}

void print_families()
{
    std::vector<std::string_view> families;
    std::map<std::string_view, std::size_t> counts;
    for (const Function &function : functions())
        if (++counts[function.family] == 1)
            families.push_back(function.family);
    for (const std::string_view family : families)
        std::cout << counts[family] << ' ' << family << '\n';
}

} // namespace

std::span<const Function> functions()
{
    static const std::vector<Function> all = read_functions();
    return all;
}

std::vector<const Function *> find_functions(std::string_view text)
{
    std::vector<const Function *> about, others;
    for (const Function &function : functions()) {
        if (is_about(function, text))
            about.push_back(&function);
        else if (contains(function.name, text) || contains(function.family, text) ||
                 contains(function.brief, text))
            others.push_back(&function);
    }
    return about.empty() ? others : about;
}

const Function *find_function(std::string_view object, std::span<const std::string_view> words)
{
    const Function *shortest = nullptr;
    for (const Function &function : functions()) {
        const bool has_all =
            std::ranges::all_of(words, [&](std::string_view word) { return has_word(function, word); });
        if (function.object == object && has_all &&
            (!shortest || function.name.size() < shortest->name.size()))
            shortest = &function;
    }
    return shortest;
}

std::string prototype(const Function &function)
{
    std::string text{function.result};
    if (!text.ends_with('*'))
        text += ' ';
    text += function.name;
    text += '(';
    text += function.parameters;
    return text += ')';
}

std::string call_in_c(const Function &function)
{
    std::string variables, values;
    for (const Parameter &parameter : parameters_of(function)) {
        const Argument argument = argument_of(parameter);
        if (!argument.variable.empty())
            variables += "    " + argument.variable + '\n';
        values += (values.empty() ? "" : ", ") + argument.value;
    }
    std::string text = "#include <stddef.h>\n\n#include \"pd.h\"\n\n";
    text += function.result;
    text += text.ends_with('*') ? "example(void)\n{\n" : " example(void)\n{\n";
    text += variables;
    text += function.result == "void" ? "    " : "    return ";
    text += function.name;
    return text += '(' + values + ");\n}\n";
}

int run_api(int argc, char **argv)
{
    constexpr std::string_view usage = "usage: tessel-shell api [TABLE|ACTION|FAMILY|TEXT | TABLE WORD...]";
    const std::vector<std::string_view> words(argv + 1, argv + argc);
    if (words.empty()) {
        print_families();
    } else if (words.front() == "--help" || words.front() == "-h") {
        std::cout << usage << R"(
Prints the prototypes of the library's functions with what they do: those about a table, action, profile or resource,
those of a family, or those that TEXT stands in. Without a word, the families with their numbers of functions. With
further words, such as 'ipv4Host add setNextHop', a function in C that makes the call with the records filled in.

Exit status: 0, 1 when there is no such function.
)";
    } else if (words.size() == 1) {
        const std::vector<const Function *> found = find_functions(words.front());
        for (const Function *function : found)
            print(*function);
        if (found.empty())
            std::cerr << "tessel-shell: no function " << quoted(words.front()) << "; " << usage << '\n';
        return found.empty() ? EXIT_FAILURE : EXIT_SUCCESS;
    } else {
        const Function *function = find_function(words.front(), std::span{words}.subspan(1));
        if (!function) {
            std::cerr << "tessel-shell: no function of " << quoted(words.front())
                      << " has all of these words in its name; " << usage << '\n';
            return EXIT_FAILURE;
        }
        std::cout << call_in_c(*function);
    }
    return EXIT_SUCCESS;
}

} // namespace shell
