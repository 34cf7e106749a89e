// Strict reading of one TOML table: every value is asked for by key and type, what is missing or of the wrong
// type is reported, and so is every key that nobody asked for.
#pragma once

#include <cstdint>
#include <set>
#include <span>
#include <string>

#include "catalogue.h"
#include "toml_file.h"

namespace pdgen {

class RowReader {
public:
    // `subject` names the row in findings until its own name is known; it is a prefix of every field.
    RowReader(const toml::table &table, std::string file, std::string subject, Diagnostics &diagnostics);

    Place place() const { return place_of(row); }
    void set_subject(const std::string &name) // a row without a name keeps its label
    {
        if (!name.empty())
            subject = name;
    }
    void set_subject(const std::string &owner, const std::string &name)
    {
        if (!owner.empty() && !name.empty())
            subject = owner + "." + name;
    }

    std::string text(const char *key);
    std::string text_or(const char *key, const std::string &otherwise);
    std::uint32_t number(const char *key);
    std::optional<std::uint32_t> number_if_any(const char *key);
    bool flag_or(const char *key, bool otherwise);
    // The one of these names that stands there; `otherwise` when it is left out, or is none and reported.
    template <typename Enum, std::size_t count>
    Enum choice(const char *key, const char *const (&names)[count], Enum otherwise)
    {
        const std::string name = text_or(key, names[static_cast<std::size_t>(otherwise)]);
        for (std::size_t i = 0; i < count; ++i)
            if (name == names[i])
                return static_cast<Enum>(i);
        if (!name.empty())
            wrong(key, no_choice(name, names));
        return otherwise;
    }
    std::optional<Mask128> mask(const char *key);    // an integer, or a string of hexadecimal digits
    std::vector<std::string> texts(const char *key); // an element that is no string is reported and empty
    std::vector<std::string> texts_or_none(const char *key);
    std::vector<unsigned> numbers(const char *key);

    // Calls `read(RowReader &)` for each table of the array `key`. `label` names an element until it has a
    // name.
    // False when there is no such array.
    template <typename Read>
    bool rows(const char *key, bool required, const char *label, Read read)
    {
        const toml::array *array = find_array(key, required);
        if (!array)
            return false;
        for (std::size_t i = 0; i < array->size(); ++i) {
            const std::string element =
                subject + (subject.empty() ? "" : ".") + label + "[" + std::to_string(i) + "]";
            if (const toml::table *table = (*array)[i].as_table()) {
                RowReader reader(*table, file, element, diagnostics);
                read(reader);
                reader.report_unknown_keys();
            } else {
                diagnostics.add(place_of((*array)[i]), element, "must be a table");
            }
        }
        return true;
    }

    void report_unknown_keys();
    void wrong(const char *key, const std::string &what);

private:
    static std::string no_choice(const std::string &name, std::span<const char *const> names);
    const toml::node *find(const char *key, bool required);
    const toml::array *find_array(const char *key, bool required);
    Place place_of(const toml::node &node) const { return {file, node.source().begin.line}; }
    std::string field(const char *key) const { return subject.empty() ? key : subject + "." + key; }

    const toml::table &row;
    std::string file;
    std::string subject;
    Diagnostics &diagnostics;
    std::set<std::string, std::less<>> asked;
};

} // namespace pdgen
