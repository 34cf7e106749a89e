#include "checker.h"

namespace pdgen {

void Checker::check_functions()
{
    std::set<std::string> ids, records;
    for (const FunctionArgument &argument : catalogue.functions.arguments) {
        if (!argument.id.empty() && !ids.insert(argument.id).second)
            wrong(argument.place, argument.id, "there is another argument of this id");
        check_function_argument(argument);
    }
    for (const ArgumentRecord &record : catalogue.functions.records) {
        check_identifier(record.place, record.name, record.name);
        if (!records.insert(record.name).second)
            wrong(record.place, record.name, "there is another record of this name");
    }
    for (const Section &section : catalogue.functions.sections)
        check_section(section);
}

void Checker::check_function_argument(const FunctionArgument &argument)
{
    check_identifier(argument.place, argument.id, argument.id);
    for (const std::string *text : {&argument.type, &argument.text, &argument.unit, &argument.generic})
        if (!is_plain(*text))
            wrong(argument.place, argument.id, not_plain);
    if (!argument.record.empty() && !catalogue.functions.find_record(argument.record))
        wrong(argument.place, argument.id, "there is no record \"", argument.record, "\"");
    if (argument.record.empty() != argument.member.empty())
        wrong(argument.place, argument.id, "a record and its member go together");
}

void Checker::check_section(const Section &section)
{
    const Object *object = find_object(section.over);
    if (!object)
        return wrong(section.place, "section.over", "there are no functions over \"", section.over, "\"");
    static const std::set<std::string> files = {"program", "inspection", "resources", "services"};
    if (section.over == "program" ? !files.contains(section.file) : !section.file.empty())
        wrong(section.place, section.over + ".file",
              "functions over the program, and only those, name one of program, inspection, resources and "
              "services");
    if (!section.slots.empty() && !lists(object->slots, section.slots))
        wrong(section.place, section.over + ".slots", "\"", section.slots,
              "\" is no record of the reflection for a ", section.over);
    if (!is_plain(section.title))
        wrong(section.place, section.over + ".title", not_plain);
    for (const Family &family : section.families)
        check_family(*object, family);
}

void Checker::check_family(const Object &object, const Family &family)
{
    for (const std::string *text : {&family.name, &family.result, &family.brief, &family.returns}) {
        check_words(object, family.place, family.name, *text);
        if (!is_plain(*text))
            wrong(family.place, family.name, not_plain);
    }
    for (const auto *constants : {&family.templates, &family.constants})
        for (const std::string &constant : *constants)
            check_words(object, family.place, family.name, constant);
    for (const std::string &predicate : family.when)
        check_predicate(object, family.place, family.name, predicate);
    for (const std::string &id : family.arguments)
        check_family_argument(object, family, id);
}

void Checker::check_family_argument(const Object &object, const Family &family, const std::string &id)
{
    const FunctionArgument *argument = catalogue.functions.find_argument(id);
    if (!argument) {
        if (!id.empty()) // reported where it was read
            wrong(family.place, family.name, "there is no argument \"", id, "\"");
        return;
    }
    const std::string subject = family.name + "." + id;
    for (const std::string *text : {&argument->name, &argument->type, &argument->text, &argument->through})
        check_words(object, family.place, subject, *text);
    if (!argument->when.empty())
        check_predicate(object, family.place, subject, argument->when);
}

void Checker::check_words(const Object &object, const Place &place, const std::string &subject,
                          const std::string &text)
{
    std::size_t close = 0;
    for (std::size_t open; (open = text.find('{', close)) != std::string::npos;) {
        close = text.find('}', open);
        if (close == std::string::npos)
            return wrong(place, subject, "a brace is not closed");
        const std::string word = text.substr(open + 1, close - open - 1);
        if (word != "prefix" && !lists(object.words, word))
            wrong(place, subject, "a ", object.name, " has no \"", word, "\"");
    }
}

void Checker::check_predicate(const Object &object, const Place &place, const std::string &subject,
                              const std::string &predicate)
{
    if (!predicate.empty() && !lists(object.predicates, predicate))
        wrong(place, subject, "a ", object.name, " does not tell \"", predicate, "\"");
}

} // namespace pdgen
