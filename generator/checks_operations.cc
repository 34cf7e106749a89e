#include <regex>

#include "checker.h"

namespace pdgen {

namespace {

bool is_number(const Operation &operation, const std::string &name, const char *direction)
{
    const auto at = operation.position(name);
    return at && operation.arguments[*at].kind == "number" && operation.arguments[*at].direction == direction;
}

} // namespace

void Checker::check_operations()
{
    static const std::regex file("[a-z][a-z0-9_]*\\.h");
    std::set<std::string> files;
    for (const DriverHeader &header : catalogue.driver) {
        if (!header.name.empty() && !std::regex_match(header.name, file))
            wrong(header.place, header.name, "is no name of a header such as \"pipe_mgr_match.h\"");
        if (!header.name.empty() && !files.insert(header.name).second)
            wrong(header.place, header.name, "there is another header of this name");
        if (!is_plain(header.brief) || !is_plain(header.text))
            wrong(header.place, header.name, not_plain);
        for (const Operation &operation : header.operations)
            check_operation(operation);
    }
}

void Checker::check_operation(const Operation &operation)
{
    check_name("operation", operation.name, operation.place);
    if (!result_type(operation.returns))
        wrong(operation.place, operation.name + ".returns", "nothing returns \"", operation.returns, "\"");
    for (const std::string *text : {&operation.section, &operation.note, &operation.brief})
        if (!is_plain(*text))
            wrong(operation.place, operation.name, not_plain);
    std::set<std::string> taken;
    for (const Argument &argument : operation.arguments) {
        const std::string subject = operation.name + "." + argument.name;
        if (check_identifier(argument.place, subject, argument.name) && !argument.name.empty() &&
            !taken.insert(argument.name).second)
            wrong(argument.place, subject, "there is another argument of this name");
        check_identifier(argument.place, subject + ".type", argument.type);
        check_argument(operation, argument, subject);
    }
}

void Checker::check_argument(const Operation &operation, const Argument &argument, const std::string &subject)
{
    if (argument.kind.empty())
        return; // reported where it was read
    const Kind *kind = find_kind(argument.kind);
    if (!kind)
        return wrong(argument.place, subject, "there is no kind \"", argument.kind, "\"");
    const bool out = argument.direction == "out";
    if (!out && argument.direction != "in")
        wrong(argument.place, subject, "\"", argument.direction, "\" is no direction: those are in and out");
    if (out && (kind->form == Form::pointer || kind->form == Form::callback))
        wrong(argument.place, subject, "an argument of kind ", argument.kind, " cannot be out");
    if (kind->form == Form::callback && argument.type.empty())
        wrong(argument.place, subject, "a callback needs its type");
    if (kind->form != Form::callback && !argument.type.empty())
        wrong(argument.place, subject, "only a callback has a type of its own");
    if (argument.optional && !is_pointer(argument))
        wrong(argument.place, subject, "only a pointer is optional");
    if (argument.kind == "format" && &argument != &operation.arguments.back())
        wrong(argument.place, subject, "a format comes last: what it asks for stands behind it");
    if (kind->form == Form::list)
        check_list(operation, argument, subject);
    else if (!argument.count.empty() || !argument.written.empty() || argument.size)
        wrong(argument.place, subject, "only a list has a count, a size or a written number");
}

void Checker::check_list(const Operation &operation, const Argument &argument, const std::string &subject)
{
    if (argument.count.empty() && !argument.size)
        wrong(argument.place, subject, "a list needs a count or a size");
    if (!argument.count.empty() && argument.size)
        wrong(argument.place, subject, "has both a count and a size");
    if (!argument.count.empty() && !is_number(operation, argument.count, "in"))
        wrong(argument.place, subject, "\"", argument.count, "\" is no number that comes in with the call");
    if (!argument.written.empty() && argument.direction != "out")
        wrong(argument.place, subject, "only an out list has a written number");
    if (!argument.written.empty() && !is_number(operation, argument.written, "out"))
        wrong(argument.place, subject, "\"", argument.written, "\" is no number that goes out");
}

} // namespace pdgen
