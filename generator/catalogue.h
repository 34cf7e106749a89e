// The catalogue in memory: plain rows as the TOML files state them, each with the place it came from, so that
// a finding can name its line. Loading reports what is not a row; checks.h reports rows that do not fit
// together.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "diagnostics.h"
#include "functions.h"
#include "operations.h"

namespace pdgen {

struct Mask128 {
    std::uint64_t high = 0;
    std::uint64_t low = 0;

    bool operator==(const Mask128 &) const = default;
};

// All bits of a field.
Mask128 full_mask(unsigned width);

// The handles that tables can have.
inline constexpr std::uint32_t first_table_handle = 0x1000001;
inline constexpr std::uint32_t last_table_handle = 0x100009f;

// What a column can say, by the names in the rows.
enum class Match { exact, ternary, lpm };
inline constexpr const char *match_names[] = {"exact", "ternary", "lpm"};

enum class Format { none, v4addr, v6addr, mac, port, vport, dec };
inline constexpr const char *format_names[] = {"none", "v4addr", "v6addr", "mac", "port", "vport", "dec"};

enum class LabelKind { always, flag, number, v4addr, v6addr, mac };
inline constexpr const char *label_kind_names[] = {"always", "flag", "number", "v4addr", "v6addr", "mac"};

template <typename Enum, std::size_t count>
std::string name_of(Enum value, const char *const (&names)[count])
{
    return names[static_cast<std::size_t>(value)];
}

struct Field {
    Place place;
    std::string name;
    std::string display;
    unsigned width = 0;
    Match match = Match::exact;
    Format format = Format::none;
    std::optional<Mask128> mask; // all bits of the width when absent
    bool partition_index = false;
};

struct Parameter {
    Place place;
    std::string name;
    unsigned width = 0;
    Format format = Format::none;
    std::string index_of; // a counter or meter
    bool in_image = true;
};

struct Action {
    Place place;
    std::string name;
    std::uint32_t number = 0;
    std::vector<Parameter> parameters;
};

struct Binding {
    Place place;
    std::string name; // of the action
    std::uint32_t handle = 0;
    bool default_action = false;
};

struct Table {
    Place place;
    std::string name;
    std::uint32_t handle = 0;
    std::string brief;
    std::string counter; // direct
    std::string meter;   // direct
    std::string indexed_resource;
    bool idle_time = false;
    bool ttl_on_add = false;
    std::vector<Field> key;                // in image order
    std::vector<std::string> record_order; // empty when it is the image order
    std::vector<Binding> actions;

    const Field *find_field(const std::string &field) const;
};

// The columns of a table that go from the row into the templates as they are.
struct TableColumn {
    const char *name;
    std::variant<std::string Table::*, bool Table::*> member;
    bool required = false; // of a text; a flag is false when it is left out
};

inline constexpr TableColumn table_columns[] = {
    {"brief", &Table::brief, true},   {"counter", &Table::counter},
    {"meter", &Table::meter},         {"indexed_resource", &Table::indexed_resource},
    {"idle_time", &Table::idle_time}, {"ttl_on_add", &Table::ttl_on_add},
};

struct Group {
    Place place;
    std::string file; // without ".toml": the name of its header and of its page
    std::string title;
    std::vector<Table> tables;
};

struct Profile {
    Place place;
    std::string name;
    std::string table;
    std::uint32_t action_table = 0;
    std::uint32_t selector = 0;
    std::vector<Binding> actions;
};

// A counter, meter, register or parser value set: a name with a handle.
struct Resource {
    Place place;
    std::string name;
    std::uint32_t handle = 0;
};

struct DigestField {
    Place place;
    std::string name;
    unsigned bytes = 0;
};

struct Digest : Resource {
    std::vector<DigestField> fields;
};

struct Hash : Resource {
    std::uint32_t input = 0;
    std::uint32_t algorithm = 0;
};

struct SnapshotLayout {
    Place place;
    std::string name;
    std::vector<unsigned> two_bytes;
    std::vector<unsigned> four_bytes;
};

struct LabelName {
    std::uint32_t value = 0;
    std::string text;
};

// One item of the line that tells the key of a counted table. Left out, a number follows from the field.
struct Label {
    Place place;
    LabelKind kind = LabelKind::always;
    std::string field;
    std::string second; // of a MAC address
    std::string text;
    std::optional<std::uint32_t> full;
    std::optional<std::uint32_t> bits;
    std::optional<std::uint32_t> names_if;
    std::optional<std::uint32_t> name_bits;
    std::vector<LabelName> names;
};

struct Labels {
    Place place;
    std::string table;
    std::vector<Label> rows;
};

struct Catalogue {
    bool complete = true; // false when a file could not be read: whatever is missing may stand there
    Place place;
    std::string program;
    std::string prefix;
    std::vector<Group> groups;
    std::vector<Action> actions; // by number
    std::vector<Profile> profiles;
    std::vector<Resource> counters;
    std::vector<Resource> meters;
    std::vector<Resource> registers;
    std::vector<Digest> digests;
    std::vector<Resource> value_sets;
    std::vector<Hash> hashes;
    unsigned snapshot_bytes = 0;
    std::vector<SnapshotLayout> snapshots;
    std::vector<Labels> labels;
    std::vector<DriverHeader> driver;
    FunctionRows functions;

    const Action *find_action(const std::string &name) const;
    const Labels *labels_of(const Table &table) const;
    const Profile *profile_of(const Table &table) const;
    // The table whose entries have a cell of this counter or meter.
    const Table *table_with_direct(const std::string &resource) const;
    // Among counters and meters.
    const Resource *find_resource(const std::string &name) const;
};

// Reads `directory`/catalogue.toml and the files that it names. Rows that could not be read are left out.
Catalogue load_catalogue(const std::filesystem::path &directory, Diagnostics &diagnostics);

} // namespace pdgen
