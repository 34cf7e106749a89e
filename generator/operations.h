// The driver's operations as rows, by header, and the closed list of the kinds that an argument can be of.
// operations.toml holds the rows; driver/README.md tells of them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "diagnostics.h"

namespace pdgen {

class RowReader;

// How an argument of a kind stands in a declaration.
enum class Form {
    value,   // itself; an out value by pointer
    record,  // by pointer, whatever the direction
    list,    // by pointer to the first element; another argument counts the elements
    pointer, // itself, a pointer that is handed on
    callback // a function, of the type that the row names
};

struct Kind {
    const char *name;
    const char *type; // in C, of one element of a list; empty for a callback
    Form form;
    const char *header; // that declares the type; empty for a type of the language
    const char *meaning;
};

const Kind *find_kind(const std::string &name);

struct Argument {
    Place place;
    std::string name;
    std::string kind;
    std::string direction;             // in, out
    std::string type;                  // of a callback
    std::string count;                 // of a list: the argument that counts its elements, or its room
    std::string written;               // of an out list: the out argument that tells how many were written
    std::optional<std::uint32_t> size; // of a list that always has this many elements
    bool optional = false;             // may be null
};

struct Operation {
    Place place;
    std::string name;
    std::string section; // heading above it
    std::string note;    // comment above it
    std::string brief;
    std::string returns; // status, selection, integer, memory, nothing
    bool local = false;  // means nothing outside the process that calls it
    std::vector<Argument> arguments;

    // Where an argument stands; none for a name that is not there.
    std::optional<std::size_t> position(const std::string &argument) const;
};

struct DriverHeader {
    Place place;
    std::string name;
    std::string brief;
    std::string text;
    std::vector<Operation> operations;
};

// Whether what is handed over is a pointer, and so may be null where the row says it. The kind is known.
bool is_pointer(const Argument &argument);

// The C type of what an operation returns. Null for what cannot be returned.
const char *result_type(const std::string &returns);

DriverHeader read_driver_header(RowReader &row);

} // namespace pdgen
