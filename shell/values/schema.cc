#include "schema.h"

#include "text_buffer.h"
#include "text_cursor.h"

namespace shell {

namespace {

// What tables whose entries point at members and groups have in place of actions.
constexpr std::string_view references =
    "( ('setMbrHdl',(('mbrHdl',None,32,None),)),( 'setGrpHdl', ( ( 'grpHdl', None, 32, None ), ) ) ))";

unsigned take_width(TextCursor &text)
{
    return static_cast<unsigned>(text.take_decimal(128, "a width"));
}

std::string take_quoted(TextCursor &text, std::string_view what)
{
    text.expect("'");
    std::string name{text.take_name(what)};
    text.expect("'");
    return name;
}

std::string take_format(TextCursor &text)
{
    return text.skip("None") ? std::string{} : take_quoted(text, "a format");
}

bool take_truth(TextCursor &text)
{
    const bool truth = text.skip("True");
    if (!truth && !text.skip("False"))
        text.fail("True or False");
    return truth;
}

SchemaField take_field(TextCursor &text)
{
    SchemaField field;
    text.expect("( ");
    field.display = take_quoted(text, "a display name");
    text.expect(",");
    field.name = take_quoted(text, "a field name");
    text.expect(",");
    field.width = take_width(text);
    text.expect(",");
    field.mask = text.take_hex("a mask");
    text.expect(",");
    field.format = take_format(text);
    text.expect(",None,None)");
    return field;
}

SchemaParameter take_parameter(TextCursor &text)
{
    SchemaParameter parameter;
    text.expect("(");
    parameter.name = take_quoted(text, "a parameter name");
    text.expect(",");
    parameter.format = take_format(text);
    text.expect(",");
    parameter.width = take_width(text);
    text.expect(",None)");
    return parameter;
}

// "(", elements with a comma behind each, ")".
template <typename Element>
std::vector<Element> take_list(TextCursor &text, Element (*take)(TextCursor &))
{
    std::vector<Element> list;
    text.expect("(");
    while (!text.skip(")")) {
        list.push_back(take(text));
        text.expect(",");
    }
    return list;
}

SchemaAction take_action(TextCursor &text)
{
    SchemaAction action;
    text.expect("( (");
    action.name = take_quoted(text, "an action name");
    text.expect("),");
    action.parameters = take_list(text, take_parameter);
    text.expect(")");
    return action;
}

} // namespace

Schema parse_table_schema(std::string_view whole)
{
    TextCursor text{whole};
    Schema schema;
    text.expect("( (");
    take_quoted(text, "a table name");
    text.expect(",'mat',(");
    schema.indirect = take_truth(text);
    text.expect(",)),");
    schema.key = take_list(text, take_field);
    text.expect(",");
    if (schema.indirect) {
        text.expect(references);
        schema.actions = {{"setMbrHdl", {{"mbrHdl", {}, 32}}}, {"setGrpHdl", {{"grpHdl", {}, 32}}}};
    } else {
        schema.actions = take_list(text, take_action);
        text.expect(")");
    }
    text.expect_end();
    return schema;
}

Schema parse_profile_schema(std::string_view whole)
{
    TextCursor text{whole};
    Schema schema;
    schema.actions = take_list(text, take_action);
    text.expect_end();
    return schema;
}

SchemaAction parse_action_schema(std::string_view whole)
{
    TextCursor text{whole};
    SchemaAction action = take_action(text);
    text.expect_end();
    return action;
}

std::string schema_text(const reflection::TableFunctions &table)
{
    return text_of(table.text.schema);
}

std::string schema_text(const reflection::ProfileFunctions &profile)
{
    return text_of(profile.schema);
}

} // namespace shell
