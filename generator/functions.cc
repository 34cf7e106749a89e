#include "functions.h"

#include <algorithm>

#include "row_reader.h"

namespace pdgen {

namespace {

#define TABLE_WORDS "table table_handle key_type key_text mask_text profile priority_digit "
#define TABLE_PREDICATES                                                                                     \
    "has_key has_priority has_mask has_meter has_labels has_idle_time is_direct is_indirect "
#define ACTION_WORDS "action action_type image_bytes image_bits index_note "

constexpr Object objects[] = {
    {"program", "program", "", "", ""},
    {"action", "action", ACTION_WORDS "number ", "has_parameters ", "action_text "},
    {"table", "table", TABLE_WORDS, TABLE_PREDICATES, "table indirect idle table_text "},
    {"binding", "table", TABLE_WORDS ACTION_WORDS "action_handle meter ",
     TABLE_PREDICATES "has_parameters has_ttl_on_add default_action ", "action "},
    {"field", "table", TABLE_WORDS "field width width_name ", TABLE_PREDICATES, ""},
    {"reference", "table", TABLE_WORDS "suffix target target_type target_kind target_text ", TABLE_PREDICATES,
     "reference "},
    {"profile", "profile", "profile action_table selector ", "", "profile "},
    {"member", "profile", ACTION_WORDS "profile action_handle ", "has_parameters ", "member "},
    {"counter", "name", "name handle cell cell_text ", "", "counter "},
    {"meter", "name", "name handle cell cell_text ", "", "meter "},
    {"register", "name", "name handle ", "", "register "},
    {"digest", "name", "name handle ", "", "digest "},
    {"value_set", "name", "name handle ", "", "value_set "},
    {"hash", "name", "name handle ", "", "hash "},
};

#undef TABLE_WORDS
#undef TABLE_PREDICATES
#undef ACTION_WORDS

template <typename Row>
const Row *find(const std::vector<Row> &rows, std::string Row::*column, const std::string &name)
{
    const auto found = std::ranges::find(rows, name, column);
    return found == rows.end() ? nullptr : &*found;
}

// What a section says holds for each of its families: conditions add up, and a family that names constants
// names all of its own.
Family read_family(RowReader &row, const Section &section, const Family &common)
{
    Family family;
    family.place = row.place();
    family.name = row.text("name");
    row.set_subject(family.name);
    family.when = common.when;
    std::ranges::copy(row.texts_or_none("when"), std::back_inserter(family.when));
    family.result = row.text_or("result", "pd_status");
    family.brief = row.text("brief");
    family.arguments = row.texts_or_none("arguments");
    family.hot = row.flag_or("hot", false);
    family.returns = row.text_or("returns", family.result == "pd_status" ? "the driver's status" : "");
    family.function = row.text_or("function", "");
    family.slot = section.slots.empty() ? "" : row.text_or("slot", family.function);
    family.templates = row.texts_or_none("template");
    family.constants = row.texts_or_none("constants");
    if (family.templates.empty() && family.constants.empty()) {
        family.templates = common.templates;
        family.constants = common.constants;
    }
    return family;
}

} // namespace

bool lists(const char *words, const std::string &word)
{
    return (" " + std::string(words)).find(" " + word + " ") != std::string::npos;
}

const Object *find_object(const std::string &name)
{
    const auto found =
        std::ranges::find_if(objects, [&](const Object &object) { return name == object.name; });
    return found == std::end(objects) ? nullptr : found;
}

const FunctionArgument *FunctionRows::find_argument(const std::string &id) const
{
    return find(arguments, &FunctionArgument::id, id);
}

const ArgumentRecord *FunctionRows::find_record(const std::string &name) const
{
    return find(records, &ArgumentRecord::name, name);
}

FunctionArgument read_function_argument(RowReader &row)
{
    FunctionArgument argument;
    argument.place = row.place();
    argument.id = row.text("id");
    row.set_subject(argument.id);
    argument.name = row.text_or("name", argument.id);
    argument.type = row.text("type");
    argument.text = row.text("text");
    argument.unit = row.text_or("unit", "");
    argument.when = row.text_or("when", "");
    argument.record = row.text_or("record", "");
    argument.member = row.text_or("member", "");
    argument.generic = row.text_or("generic", "");
    argument.through = row.text_or("through", "");
    argument.out = row.flag_or("out", false);
    argument.ignored = row.flag_or("ignored", false);
    return argument;
}

ArgumentRecord read_argument_record(RowReader &row)
{
    ArgumentRecord record;
    record.place = row.place();
    record.name = row.text("name");
    row.set_subject(record.name);
    record.generic = row.text_or("generic", record.name);
    record.type = row.text_or("type", "");
    record.by_address = row.flag_or("by_address", false);
    return record;
}

Section read_section(RowReader &row)
{
    Section section;
    section.place = row.place();
    section.over = row.text("over");
    row.set_subject(section.over);
    section.file = row.text_or("file", "");
    section.title = row.text_or("title", "");
    section.slots = row.text_or("slots", "");
    section.inspection = row.flag_or("inspection", false);
    Family common;
    common.when = row.texts_or_none("when");
    common.templates = row.texts_or_none("template");
    common.constants = row.texts_or_none("constants");
    row.rows("family", true, "family",
             [&](RowReader &family) { section.families.push_back(read_family(family, section, common)); });
    return section;
}

} // namespace pdgen
