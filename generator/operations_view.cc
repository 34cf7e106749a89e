#include "operations_view.h"

#include <algorithm>
#include <map>
#include <set>

#include "names.h"
#include "operations.h"

namespace pdgen {

namespace {

using kainjow::mustache::data;
using kainjow::mustache::list;

// The type of an argument as a parameter has it, ready for the name to follow.
std::string parameter_type(const Argument &argument)
{
    const Kind &kind = *find_kind(argument.kind);
    if (kind.form == Form::callback)
        return argument.type + " ";
    const std::string type = kind.type;
    const bool by_pointer = is_pointer(argument) && kind.form != Form::pointer;
    return type + (type.ends_with('*') ? "" : " ") + (by_pointer ? "*" : "");
}

bool is_variadic(const Operation &operation)
{
    return !operation.arguments.empty() && operation.arguments.back().kind == "format";
}

std::string parameters(const Operation &operation)
{
    std::string text;
    for (const Argument &argument : operation.arguments)
        text += (text.empty() ? "" : ", ") + parameter_type(argument) + argument.name;
    if (is_variadic(operation))
        text += ", ...";
    return text;
}

std::string position_of(const Operation &operation, const std::string &argument)
{
    const auto at = operation.position(argument);
    return at ? std::to_string(*at) : "-1";
}

data argument_view(const Operation &operation, const Argument &argument)
{
    std::string type = parameter_type(argument);
    if (type.ends_with(' '))
        type.pop_back();
    data view;
    view.set("argument", argument.name);
    view.set("type", type);
    view.set("kind", argument.kind);
    view.set("direction", argument.direction);
    view.set("meaning", std::string(find_kind(argument.kind)->meaning));
    view.set("position", position_of(operation, argument.name));
    view.set("count", position_of(operation, argument.count));
    view.set("written", position_of(operation, argument.written));
    view.set("is_counted", data(!argument.count.empty()));
    view.set("count_name", argument.count);
    view.set("is_written", data(!argument.written.empty()));
    view.set("written_name", argument.written);
    view.set("is_sized", data(argument.size.has_value()));
    view.set("is_format", data(argument.kind == "format"));
    view.set("size", std::to_string(argument.size.value_or(0)));
    view.set("is_required", data(is_pointer(argument) && !argument.optional));
    view.set("is_optional", data(argument.optional));
    view.set("last", data(&argument == &operation.arguments.back()));
    return view;
}

data operation_view(const Operation &operation, std::size_t index)
{
    const std::string type = result_type(operation.returns);
    data view;
    view.set("operation", operation.name);
    view.set("index", std::to_string(index));
    view.set("section", operation.section);
    view.set("has_section", data(!operation.section.empty()));
    view.set("note", operation.note);
    view.set("has_note", data(!operation.note.empty()));
    view.set("brief", operation.brief);
    view.set("returns", operation.returns);
    view.set("local", operation.local ? "true" : "false");
    view.set("result_type", type);
    view.set("result", type + (type.ends_with('*') ? "" : " "));
    view.set("returns_status", data(operation.returns == "status"));
    view.set("has_result", data(operation.returns != "nothing"));
    view.set("parameters", parameters(operation));
    view.set("has_arguments", data(!operation.arguments.empty()));
    view.set("is_variadic", data(is_variadic(operation)));
    view.set("format_position", std::to_string(operation.arguments.size()));
    view.set("first_of_format", std::to_string(operation.arguments.size() + 1));
    list arguments;
    for (const Argument &argument : operation.arguments)
        arguments.push_back(argument_view(operation, argument));
    view.set("arguments", arguments);
    return view;
}

list includes_of(const DriverHeader &header)
{
    std::set<std::string> files;
    for (const Operation &operation : header.operations) {
        if (operation.returns == "status" || operation.returns == "selection")
            files.insert("pd_types.h");
        for (const Argument &argument : operation.arguments)
            files.insert(find_kind(argument.kind)->header);
    }
    files.erase(""); // of a type that C has by itself
    list includes;
    for (const std::string &file : files) {
        data view;
        view.set("include", file == "stddef.h" ? "<" + file + ">" : "\"" + file + "\"");
        includes.push_back(view);
    }
    return includes;
}

data header_view(const DriverHeader &header, std::size_t &index)
{
    data view;
    view.set("header", header.name);
    view.set("guard", "PD_DRIVER_" + upper(header.name));
    view.set("brief", header.brief);
    view.set("text", header.text);
    view.set("has_text", data(!header.text.empty()));
    view.set("includes", includes_of(header));
    list operations;
    for (const Operation &operation : header.operations)
        operations.push_back(operation_view(operation, index++));
    view.set("operations", operations);
    return view;
}

// The names of handles, in order, and of the kinds of argument that they come in.
using HandleNames = std::map<std::pair<std::uint32_t, std::string>, std::string>;

template <typename Rows>
void add_names(HandleNames &handles, const char *kind, const Rows &rows)
{
    for (const auto &row : rows)
        handles.insert({{row.handle, kind}, row.name});
}

HandleNames handle_names(const Catalogue &catalogue)
{
    HandleNames handles;
    for (const Group &group : catalogue.groups) {
        add_names(handles, "table", group.tables);
        for (const Table &table : group.tables)
            add_names(handles, "action", table.actions);
    }
    for (const Profile &profile : catalogue.profiles) {
        handles.insert({{profile.action_table, "table"}, profile.name});
        handles.insert({{profile.selector, "table"}, profile.name});
        add_names(handles, "action", profile.actions);
    }
    add_names(handles, "counter", catalogue.counters);
    add_names(handles, "meter", catalogue.meters);
    add_names(handles, "register_table", catalogue.registers);
    add_names(handles, "digest", catalogue.digests);
    add_names(handles, "value_set", catalogue.value_sets);
    add_names(handles, "calculation", catalogue.hashes);
    return handles;
}

} // namespace

void set_operations(data &root, const Catalogue &catalogue)
{
    list headers, operations, handles;
    std::size_t index = 0;
    for (const DriverHeader &header : catalogue.driver) {
        data view = header_view(header, index);
        for (const data &operation : view.get("operations")->list_value())
            operations.push_back(operation);
        headers.push_back(view);
    }
    for (const auto &[handle, name] : handle_names(catalogue)) {
        data view;
        view.set("kind", handle.second);
        view.set("handle", hex(handle.first));
        view.set("name", name);
        handles.push_back(view);
    }
    root.set("driver_headers", headers);
    root.set("operations", operations);
    root.set("operation_count", std::to_string(index));
    root.set("handle_names", handles);
}

} // namespace pdgen
