// The rules over the rows, with what they remember of each other. The members of a subject are defined in the
// file of that subject: checks_names.cc and so on.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <sstream>

#include "checks.h"

namespace pdgen {

// What kind of object a handle names stands in its high bits.
struct HandleRange {
    const char *kind;
    std::uint32_t first;
    std::uint32_t last;
};

inline constexpr char not_plain[] = "can hold no quotes, backslashes, line ends or comment ends";

// Whether `text` can stand in a string literal, a comment and a page as it is.
bool is_plain(const std::string &text);

class Checker {
public:
    Checker(const Catalogue &rows, Diagnostics &findings) : catalogue(rows), diagnostics(findings) {}

    void run();

private:
    const Catalogue &catalogue;
    Diagnostics &diagnostics;
    std::map<std::string, Place> names; // of "kind name"
    std::map<std::uint32_t, Place> handles;
    std::map<std::string, std::pair<unsigned, Place>> field_widths;
    std::set<std::string> used_actions;
    std::map<std::string, std::string> users;       // of a counter or meter: the table
    std::map<std::string, std::string> index_users; // of a counter or meter: the action

    template <typename... Words>
    void wrong(const Place &place, const std::string &subject, const Words &...words)
    {
        std::ostringstream text;
        (text << ... << words);
        diagnostics.add(place, subject, text.str());
    }

    void check_root();
    void check_uses();

    // Names and handles. A name stands in the code that is written as it is, where `reserved` words are none,
    // or as part of a longer one.
    bool check_identifier(const Place &place, const std::string &subject, const std::string &name,
                          bool reserved = true);
    void check_name(const char *kind, const std::string &name, const Place &place);
    void check_handle(const HandleRange &range, const std::string &subject, std::uint32_t handle,
                      const Place &place, bool unique = true);
    void check_format(const std::string &subject, Format format, unsigned width, const Place &place);

    // Actions, and how tables and profiles use them.
    void check_actions();
    void check_parameters(const Action &action);
    void check_index(const Action &action, const Parameter &parameter, const std::string &subject);
    void check_bindings(const std::string &owner, const std::vector<Binding> &bindings);
    void check_profiles();

    // Keys.
    void check_key(const Table &table);
    void check_field(const Field &field, const std::string &subject);
    void check_twins(const Table &table);
    void check_kind(const Table &table);
    void check_field_width(const Field &field, const std::string &subject);
    void check_record_order(const Table &table);

    // Tables.
    void check_table_order(const Group &group);
    void check_table(const Table &table);
    void check_action_source(const Table &table);
    void check_table_resources(const Table &table);
    void check_use(const Table &table, const char *column, const std::string &resource, const char *kind);

    // Resources and services.
    template <typename Rows>
    void check_resource_rows(const HandleRange &range, const Rows &rows); // for checks_resources.cc only
    void check_resources();
    void check_services();
    void check_digest(const Digest &digest);
    void check_snapshots();
    void check_places(const SnapshotLayout &layout, const std::vector<unsigned> &offsets, unsigned bytes,
                      std::set<unsigned> &taken);

    // Operations of the driver.
    void check_operations();
    void check_operation(const Operation &operation);
    void check_argument(const Operation &operation, const Argument &argument, const std::string &subject);
    void check_list(const Operation &operation, const Argument &argument, const std::string &subject);

    // Functions of the library.
    void check_functions();
    void check_function_argument(const FunctionArgument &argument);
    void check_section(const Section &section);
    void check_family(const Object &object, const Family &family);
    void check_family_argument(const Object &object, const Family &family, const std::string &id);
    void check_words(const Object &object, const Place &place, const std::string &subject,
                     const std::string &text);
    void check_predicate(const Object &object, const Place &place, const std::string &subject,
                         const std::string &predicate);

    // Texts.
    void check_schemas();
    void check_labels();
    const Table *find_table(const std::string &name) const;
    void check_label(const Table &table, const Label &label);
    void check_label_field(const Table &table, const Label &label, const std::string &name,
                           const std::string &subject);
};

} // namespace pdgen
