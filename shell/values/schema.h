// The library's description of a key and of actions, taken apart: what a front end knows of a table that has
// its schema text and nothing else.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "reflection.h"
#include "values.h"

namespace shell {

struct SchemaField { // a mask and a prefix length are fields of their own
    std::string display;
    std::string name;
    unsigned width;
    Value mask;
    std::string format; // empty for none
};

struct SchemaParameter {
    std::string name;
    std::string format;
    unsigned width;
};

struct SchemaAction {
    std::string name;
    std::vector<SchemaParameter> parameters;
};

struct Schema {
    bool indirect = false; // the actions set references instead
    std::vector<SchemaField> key;
    std::vector<SchemaAction> actions;
};

// Each throws BadLine for a text of another form.
Schema parse_table_schema(std::string_view text);
Schema parse_profile_schema(std::string_view text);
SchemaAction parse_action_schema(std::string_view text);

std::string schema_text(const reflection::TableFunctions &table);
std::string schema_text(const reflection::ProfileFunctions &profile);

} // namespace shell
