// The functions that the library exports, as rows: what they take, and the families of functions by section.
// functions.toml holds the rows; catalogue/README.md tells of them.
#pragma once

#include <string>
#include <vector>

#include "diagnostics.h"

namespace pdgen {

class RowReader;

// A kind of thing that a family has a function for each of.
struct Object {
    const char *name;
    const char *word;       // that its own name stands in, or that of what it belongs to
    const char *words;      // that stand in braces in texts, beside "prefix", each with a blank behind it
    const char *predicates; // that tell whether there is a function, or an argument of it, likewise
    const char *slots;      // the records of the reflection that its functions can stand in, likewise
};

// Whether the word stands in one of these lists.
bool lists(const char *words, const std::string &word);

// Null when there is no such kind.
const Object *find_object(const std::string &name);

// What a function takes.
struct FunctionArgument {
    Place place;
    std::string id; // by which families name it
    std::string name;
    std::string type;
    std::string text;
    std::string unit;
    std::string when;    // a predicate; empty when each function of the family takes it
    std::string record;  // the record that it goes to the library's function in, if any
    std::string member;  // of that record
    std::string generic; // its type for callers that know no table; empty when that is the same
    std::string through; // the function that makes it what the library's function takes, if any
    bool out = false;
    bool ignored = false; // not handed on
};

// A record that the library's functions, or the callers of the reflection, take in place of its members.
struct ArgumentRecord {
    Place place;
    std::string name;
    std::string generic; // what it is called in the reflection
    std::string type;    // there; empty when the members stand by themselves there
    bool by_address = false;
};

struct Family {
    Place place;
    std::string name;
    std::vector<std::string> when; // predicates
    std::string result;
    std::string brief;
    std::vector<std::string> arguments;
    std::string returns;
    std::string function; // of the library, that does the work; empty when that is the exported one
    std::vector<std::string> templates; // constants that it is made for
    std::vector<std::string> constants; // that it gets in front of the arguments
    std::string slot;                   // in the reflection; empty for none
    bool hot = false;                   // called often, and so begins where the processor fetches
};

struct Section {
    Place place;
    std::string over; // an object
    std::string file; // of the program's own functions: the header, without "pd_" and ".h"
    std::string title;
    std::string slots; // which record of the reflection they stand in; empty for none
    bool inspection = false;
    std::vector<Family> families;
};

struct FunctionRows {
    std::vector<FunctionArgument> arguments;
    std::vector<ArgumentRecord> records;
    std::vector<Section> sections;

    const FunctionArgument *find_argument(const std::string &id) const;
    const ArgumentRecord *find_record(const std::string &name) const;
};

FunctionArgument read_function_argument(RowReader &row);
ArgumentRecord read_argument_record(RowReader &row);
Section read_section(RowReader &row);

} // namespace pdgen
