// What the templates see of the library's functions: each one with its texts and its code, by the object that
// it is about.
#pragma once

#include <map>

#include <kainjow/mustache.hpp>

#include "catalogue.h"

namespace pdgen {

using View = kainjow::mustache::data;
using Views = kainjow::mustache::list;

// The objects of one kind that belong to an owner.
struct ObjectPart {
    const char *over;
    std::vector<const View *> objects;
};

// What the word stands for, in the innermost of these objects that has it, which is the last one.
const View &value_of(const std::string &word, const std::vector<const View *> &scope);

class FunctionViews {
public:
    explicit FunctionViews(const Catalogue &rows) : catalogue(rows) {}

    // Sets the variable "functions" of the owner: all functions over these objects, in the order of the rows.
    // Words are looked up in the object and then in the owner.
    void set_functions(View &owner, const std::vector<ObjectPart> &parts);

    // All functions so far, in the order of their making, with their families.
    const std::vector<std::pair<std::string, const Family *>> &exports() const { return exported; }

    // Likewise the program's own that stand in the header pd_<file>.h.
    Views program_functions(const std::string &file, const View &root);

    // Sets how the object's functions stand in its record of the reflection, "slots"; where they stand in
    // several ones, "<record>_slots".
    void set_slots(View &object, const char *over, const View *owner = nullptr) const;

    // The lists that stand in place of what the variables "functions" hold. A view is copied many times; its
    // functions, which are most of everything, are not.
    std::map<std::string, View> take_lists() { return std::move(lists); }

    // How the functions of a record of the reflection are declared.
    Views slot_types(const std::string &slots) const;

    // What is the same for all objects: the records of the reflection, each family with the number of its
    // functions, and as "functions" of the root all of them.
    void set_families(View &root);

private:
    using Scope = std::vector<const View *>; // where words are looked up, the innermost last

    const Catalogue &catalogue;
    std::vector<std::pair<std::string, const Family *>> exported;
    std::map<std::string, View> lists;
    Views all;

    void set_list(View &owner, const Views &functions);
    View function_view(const Section &section, const Family &family, const Scope &scope);
    View slot_view(const Family &family, const Scope &scope) const;
    std::vector<const FunctionArgument *> arguments_of(const Family &family) const;
    std::string parameters(const Family &family, const Scope &scope, bool definition) const;
    std::string call(const Family &family, const Scope &scope) const;
    std::string record(const std::string &name, const Family &family, const Scope &scope) const;
    std::string generic_parameters(const Family &family, const Scope *scope) const;
    std::string generic_call(const Family &family, const Scope &scope) const;
    bool is_generic(const Family &family, const Scope &scope) const;
    std::string fill(const std::string &text, const Scope &scope) const;
};

} // namespace pdgen
