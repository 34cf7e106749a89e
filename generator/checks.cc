#include "checks.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <set>
#include <sstream>

#include "names.h"

namespace pdgen {

namespace {

std::string at(const Place &place)
{
    return place.file + ":" + std::to_string(place.line);
}

// An empty name has been reported where it was read.
bool is_identifier(const std::string &name)
{
    const auto word = [](unsigned char c) { return std::isalnum(c) || c == '_'; };
    return name.empty() || (!std::isdigit(static_cast<unsigned char>(name[0])) &&
                            std::all_of(name.begin(), name.end(), word));
}

// Whether `text` can stand in a string literal, a comment and a page as it is.
constexpr char not_plain[] = "can hold no quotes, backslashes, line ends or comment ends";
bool is_plain(const std::string &text)
{
    const auto special = [](unsigned char c) { return c == '"' || c == '\\' || std::iscntrl(c); };
    return std::none_of(text.begin(), text.end(), special) && text.find("*/") == std::string::npos;
}

// What kind of object a handle names stands in its high bits.
struct HandleRange {
    const char *kind;
    std::uint32_t first;
    std::uint32_t last;
};
constexpr HandleRange table_handles{"table", first_table_handle, last_table_handle};
constexpr HandleRange action_handles{"action", 0x20000000, 0x20ffffff};
constexpr HandleRange action_table_handles{"action table", 0x2000001, 0x2ffffff};
constexpr HandleRange selector_handles{"selector", 0x3000001, 0x3ffffff};
constexpr HandleRange counter_handles{"counter", 0x4000001, 0x4ffffff};
constexpr HandleRange meter_handles{"meter", 0x5000001, 0x5ffffff};
constexpr HandleRange register_handles{"register", 0x6000001, 0x6ffffff};
constexpr HandleRange hash_handles{"hash", 0x8000000, 0x8ffffff};
constexpr HandleRange digest_handles{"digest", 0x9000000, 0x9ffffff};
constexpr HandleRange value_set_handles{"value set", 1, 511};
constexpr HandleRange hash_input_handles{"hash input", 0x21000000, 0x21ffffff};
constexpr HandleRange hash_algorithm_handles{"hash algorithm", 0x23000000, 0x23ffffff};

// Width in bits that a format asks for; 0 for any.
const std::map<std::string, unsigned> format_widths = {
    {"none", 0}, {"v4addr", 32}, {"v6addr", 128}, {"mac", 24}, {"port", 0}, {"vport", 0}, {"dec", 0}};

// Likewise the kind of a label.
const std::map<std::string, unsigned> label_widths = {{"always", 0},  {"flag", 1},     {"number", 0},
                                                      {"v4addr", 32}, {"v6addr", 128}, {"mac", 24}};

class Checker {
public:
    Checker(const Catalogue &rows, Diagnostics &findings) : catalogue(rows), diagnostics(findings) {}

    void run()
    {
        check_root();
        check_actions();
        check_resources();
        for (const Group &group : catalogue.groups) {
            if (!is_plain(group.title))
                wrong(group.place, "title", not_plain);
            check_table_order(group);
            for (const Table &table : group.tables)
                check_table(table);
        }
        check_profiles();
        check_uses();
        check_services();
        check_snapshots();
        check_labels();
    }

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

    void check_name(const char *kind, const std::string &name, const Place &place)
    {
        if (name.empty())
            return;
        if (!is_identifier(name)) {
            wrong(place, name + ".name", "must be an identifier");
            return;
        }
        const auto [first, fresh] = names.emplace(std::string(kind) + " " + name, place);
        if (!fresh)
            wrong(place, name + ".name", "this ", kind, " stands in ", at(first->second), " already");
    }

    void check_handle(const HandleRange &range, const std::string &subject, std::uint32_t handle,
                      const Place &place, bool unique = true)
    {
        if (handle < range.first || handle > range.last)
            wrong(place, subject, hex(handle), " is no ", range.kind, " handle: those lie from ",
                  hex(range.first), " to ", hex(range.last));
        if (!unique)
            return;
        const auto [first, fresh] = handles.emplace(handle, place);
        if (!fresh)
            wrong(place, subject, hex(handle), " is the handle of ", at(first->second), " already");
    }

    void check_format(const std::string &subject, const std::string &format, unsigned width,
                      const Place &place)
    {
        const auto known = format_widths.find(format);
        if (known == format_widths.end())
            wrong(place, subject + ".format", "\"", format, "\" is no format");
        else if (known->second && known->second != width)
            wrong(place, subject + ".format", "\"", format, "\" needs ", known->second, " bits, not ", width);
    }

    // Names of functions and types begin with the prefix.
    void check_root()
    {
        if (!is_identifier(catalogue.program))
            wrong(catalogue.place, "program", "must be an identifier");
        if (!is_identifier(catalogue.prefix))
            wrong(catalogue.place, "prefix", "must be an identifier");
    }

    // ---- Actions ----

    void check_actions()
    {
        std::uint32_t next = 0;
        for (const Action &action : catalogue.actions) {
            check_name("action", action.name, action.place);
            if (action.number != next)
                wrong(action.place, action.name + ".number", "must be ", next,
                      ": the action enum has no holes, and "
                      "rows stand in its order");
            next = action.number + 1; // one hole is one finding
            std::set<std::string> parameters;
            for (const Parameter &parameter : action.parameters) {
                const std::string subject = action.name + "." + parameter.name;
                if (!is_identifier(parameter.name))
                    wrong(parameter.place, subject, "must be an identifier");
                if (!parameters.insert(parameter.name).second)
                    wrong(parameter.place, subject, "this parameter stands twice");
                if (parameter.width < 1 || parameter.width > 32)
                    wrong(parameter.place, subject + ".width", "must be 1 to 32 bits");
                check_format(subject, parameter.format, parameter.width, parameter.place);
                check_index(action, parameter, subject);
            }
        }
    }

    void check_index(const Action &action, const Parameter &parameter, const std::string &subject)
    {
        if (parameter.index_of.empty()) {
            if (!parameter.in_image)
                wrong(parameter.place, subject + ".in_image",
                      "only a parameter with index_of may stay out of the image");
            return;
        }
        if (!catalogue.find_resource(parameter.index_of))
            wrong(parameter.place, subject + ".index_of", "there is no counter or meter \"",
                  parameter.index_of, "\"");
        if (parameter.width != 32)
            wrong(parameter.place, subject + ".width", "an index has 32 bits");
        const auto [first, fresh] = index_users.emplace(parameter.index_of, action.name);
        if (!fresh)
            wrong(parameter.place, subject + ".index_of", parameter.index_of, " is indexed by ",
                  first->second, " already");
    }

    // ---- Resources and services ----

    template <typename Rows>
    void check_resource_rows(const HandleRange &range, const Rows &rows)
    {
        for (const Resource &resource : rows) {
            check_name(range.kind, resource.name, resource.place);
            check_handle(range, resource.name + ".handle", resource.handle, resource.place);
        }
    }

    void check_resources()
    {
        check_resource_rows(counter_handles, catalogue.counters);
        check_resource_rows(meter_handles, catalogue.meters);
        check_resource_rows(register_handles, catalogue.registers);
        for (const Resource &meter : catalogue.meters)
            if (names.contains("counter " + meter.name))
                wrong(meter.place, meter.name + ".name", "a counter has this name already");
    }

    void check_services()
    {
        check_resource_rows(digest_handles, catalogue.digests);
        check_resource_rows(value_set_handles, catalogue.value_sets);
        check_resource_rows(hash_handles, catalogue.hashes);
        for (const Digest &digest : catalogue.digests) {
            std::set<std::string> fields;
            for (const DigestField &field : digest.fields) {
                const std::string subject = digest.name + "." + field.name;
                if (!is_identifier(field.name))
                    wrong(field.place, subject, "must be an identifier");
                if (!fields.insert(field.name).second)
                    wrong(field.place, subject, "this field stands twice");
                if (field.bytes < 1)
                    wrong(field.place, subject + ".bytes", "must not be 0");
            }
        }
        for (const Hash &hash : catalogue.hashes) {
            check_handle(hash_input_handles, hash.name + ".input", hash.input, hash.place);
            check_handle(hash_algorithm_handles, hash.name + ".algorithm", hash.algorithm, hash.place, false);
        }
    }

    void check_snapshots()
    {
        for (const SnapshotLayout &layout : catalogue.snapshots) {
            check_name("snapshot layout", layout.name, layout.place);
            std::set<unsigned> taken;
            check_places(layout, layout.two_bytes, 2, taken);
            check_places(layout, layout.four_bytes, 4, taken);
        }
    }

    void check_places(const SnapshotLayout &layout, const std::vector<unsigned> &offsets, unsigned bytes,
                      std::set<unsigned> &taken)
    {
        const std::string subject = layout.name + (bytes == 2 ? ".two_bytes" : ".four_bytes");
        if (!std::is_sorted(offsets.begin(), offsets.end()))
            wrong(layout.place, subject, "must ascend");
        for (unsigned offset : offsets) {
            if (offset + bytes > catalogue.snapshot_bytes) {
                wrong(layout.place, subject, "the field at ", offset, " reaches beyond the record's ",
                      catalogue.snapshot_bytes, " bytes");
                break; // so do those behind it
            }
            bool fresh = true;
            for (unsigned byte = offset; byte < offset + bytes; ++byte)
                fresh &= taken.insert(byte).second;
            if (!fresh)
                wrong(layout.place, subject, "the field at ", offset, " lies over another one");
        }
    }

    // ---- Tables ----

    void check_table_order(const Group &group)
    {
        for (std::size_t i = 1; i < group.tables.size(); ++i)
            if (group.tables[i].handle < group.tables[i - 1].handle)
                wrong(group.tables[i].place, group.tables[i].name + ".handle",
                      "tables of a file stand by handle, and ", group.tables[i - 1].name,
                      " has a higher one");
    }

    void check_table(const Table &table)
    {
        check_name("table", table.name, table.place);
        check_handle(table_handles, table.name + ".handle", table.handle, table.place);
        if (!is_plain(table.brief))
            wrong(table.place, table.name + ".brief", not_plain);
        check_key(table);
        check_record_order(table);
        check_bindings(table.name, table.actions);
        check_action_source(table);
        check_table_resources(table);
        if (table.ttl_on_add && !table.idle_time)
            wrong(table.place, table.name + ".ttl_on_add", "the table has no idle time");
    }

    void check_key(const Table &table)
    {
        std::set<std::string> members, displays, kinds;
        for (const Field &field : table.key) {
            const std::string subject = table.name + "." + field.name;
            if (!is_identifier(field.name))
                wrong(field.place, subject, "must be an identifier");
            if (!members.insert(field.name).second)
                wrong(field.place, subject, "this field stands twice");
            if (!is_identifier(field.display))
                wrong(field.place, subject + ".display", "must be an identifier");
            if (!displays.insert(field.display).second)
                wrong(field.place, subject + ".display", "\"", field.display, "\" stands twice");
            check_field_width(field, subject);
            check_format(subject, field.format, field.width, field.place);
            if (field.mask && *field.mask == Mask128{})
                wrong(field.place, subject + ".mask", "selects no bit");
            if (field.match != "exact" && field.match != "ternary" && field.match != "lpm")
                wrong(field.place, subject + ".match", "must be exact, ternary or lpm");
            else if (field.match != "exact" && !kinds.insert(field.match).second && field.match == "lpm")
                wrong(field.place, subject + ".match", "a key has one lpm field");
            if (field.match == "lpm" && field.width != 32 && field.width != 128)
                wrong(field.place, subject + ".width", "an lpm field has 32 or 128 bits");
        }
        if (kinds.size() == 2)
            wrong(table.place, table.name + ".key", "has ternary and lpm fields");
        for (std::size_t i = 0; i < table.key.size(); ++i)
            if (table.key[i].partition_index &&
                (!kinds.contains("lpm") || i != 0 || table.key[i].match != "exact"))
                wrong(table.key[i].place, table.name + "." + table.key[i].name + ".partition_index",
                      "only the first field of an lpm key may be the partition, and it matches exactly");
    }

    void check_field_width(const Field &field, const std::string &subject)
    {
        if (field.width != 128 && (field.width < 1 || field.width > 32)) {
            wrong(field.place, subject + ".width", "must be 1 to 32 bits, or 128");
            return;
        }
        const auto [first, fresh] = field_widths.emplace(field.name, std::pair{field.width, field.place});
        if (!fresh && first->second.first != field.width)
            wrong(field.place, subject + ".width", "is ", field.width, " here and ", first->second.first,
                  " in ", at(first->second.second));
        const Mask128 full = full_mask(field.width);
        if (field.mask && ((field.mask->high & ~full.high) || (field.mask->low & ~full.low)))
            wrong(field.place, subject + ".mask", "is wider than the field's ", field.width, " bits");
        if (field.mask && *field.mask == full)
            wrong(field.place, subject + ".mask", "selects every bit: leave it out");
    }

    void check_record_order(const Table &table)
    {
        if (table.record_order.empty())
            return;
        std::vector<std::string> rows;
        for (const Field &field : table.key)
            rows.push_back(field.name);
        if (rows == table.record_order)
            wrong(table.place, table.name + ".record_order", "is the order of the key: leave it out");
        if (!std::is_permutation(rows.begin(), rows.end(), table.record_order.begin(),
                                 table.record_order.end()))
            wrong(table.place, table.name + ".record_order", "must name every field of the key once");
    }

    void check_bindings(const std::string &owner, const std::vector<Binding> &bindings)
    {
        for (std::size_t i = 0; i < bindings.size(); ++i) {
            const Binding &binding = bindings[i];
            const std::string subject = owner + "." + binding.name;
            if (binding.name.empty())
                continue; // reported where it was read
            used_actions.insert(binding.name);
            if (!catalogue.find_action(binding.name))
                wrong(binding.place, subject, "there is no such action");
            check_handle(action_handles, subject + ".handle", binding.handle, binding.place);
            if (i && binding.name == bindings[i - 1].name)
                wrong(binding.place, subject, "this action stands twice");
            else if (i && binding.name < bindings[i - 1].name)
                wrong(binding.place, subject, "actions stand by name, and ", bindings[i - 1].name,
                      " comes later");
        }
    }

    // A table has actions of its own, or those of its profile. A keyless table has nothing but its default.
    void check_action_source(const Table &table)
    {
        const bool indirect = catalogue.profile_of(table);
        if (indirect && !table.actions.empty())
            wrong(table.place, table.name + ".actions",
                  "the table has a profile and can have no actions of its own");
        if (!indirect && table.actions.empty())
            wrong(table.place, table.name + ".actions", "the table has neither actions nor a profile");
        if (!table.key.empty())
            return;
        const auto is_default = [](const Binding &binding) { return binding.default_action; };
        if (indirect || !std::all_of(table.actions.begin(), table.actions.end(), is_default))
            wrong(table.place, table.name + ".actions", "a keyless table runs its default action only");
    }

    void check_table_resources(const Table &table)
    {
        const int count = !table.counter.empty() + !table.meter.empty() + !table.indexed_resource.empty();
        if (count > 1)
            wrong(table.place, table.name, "has more than one resource");
        check_use(table, "counter", table.counter, "counter ");
        check_use(table, "meter", table.meter, "meter ");
        check_use(table, "indexed_resource", table.indexed_resource, nullptr);
        if (table.indexed_resource.empty())
            return;
        for (const Binding &binding : table.actions)
            if (const auto user = index_users.find(table.indexed_resource);
                user != index_users.end() && user->second == binding.name)
                return;
        wrong(table.place, table.name + ".indexed_resource", "no action of the table indexes ",
              table.indexed_resource);
    }

    void check_use(const Table &table, const char *column, const std::string &resource, const char *kind)
    {
        if (resource.empty())
            return;
        if (kind ? !names.contains(kind + resource) : !catalogue.find_resource(resource)) {
            wrong(table.place, table.name + "." + column, "there is no ", kind ? kind : "counter or meter ",
                  "\"", resource, "\"");
            return;
        }
        const auto [first, fresh] = users.emplace(resource, table.name);
        if (!fresh)
            wrong(table.place, table.name + "." + column, resource, " belongs to ", first->second,
                  " already");
    }

    // ---- Profiles, and what nobody uses ----

    void check_profiles()
    {
        std::set<std::string> tables;
        for (const Profile &profile : catalogue.profiles) {
            check_name("profile", profile.name, profile.place);
            check_handle(action_table_handles, profile.name + ".action_table", profile.action_table,
                         profile.place);
            check_handle(selector_handles, profile.name + ".selector", profile.selector, profile.place);
            check_bindings(profile.name, profile.actions);
            if (!names.contains("table " + profile.table))
                wrong(profile.place, profile.name + ".table", "there is no table \"", profile.table, "\"");
            if (!tables.insert(profile.table).second)
                wrong(profile.place, profile.name + ".table", profile.table, " has a profile already");
        }
    }

    // ---- Labels ----

    void check_labels()
    {
        std::set<std::string> tables;
        for (const Labels &labels : catalogue.labels) {
            if (labels.table.empty())
                continue; // reported where it was read
            const Table *table = find_table(labels.table);
            if (!table)
                wrong(labels.place, labels.table, "there is no such table");
            if (!tables.insert(labels.table).second)
                wrong(labels.place, labels.table, "has labels already");
            if (table)
                for (const Label &label : labels.rows)
                    check_label(*table, label);
        }
    }

    const Table *find_table(const std::string &name) const
    {
        for (const Group &group : catalogue.groups)
            for (const Table &table : group.tables)
                if (table.name == name)
                    return &table;
        return nullptr;
    }

    void check_label(const Table &table, const Label &label)
    {
        const std::string subject = table.name + "." + label.field;
        const auto kind = label_widths.find(label.kind);
        if (kind == label_widths.end())
            wrong(label.place, subject + ".kind", "\"", label.kind, "\" is no kind of label");
        if (label.second.empty() == (label.kind == "mac"))
            wrong(label.place, subject + ".second", "a MAC address has two halves, and nothing else has");
        check_label_field(table, label, label.field, subject);
        if (!label.second.empty())
            check_label_field(table, label, label.second, subject + ".second");
        if (!is_plain(label.text))
            wrong(label.place, subject + ".text", not_plain);
        for (const LabelName &name : label.names)
            if (!is_plain(name.text))
                wrong(label.place, subject + ".names", not_plain);
        if (!label.names.empty() && label.kind != "number")
            wrong(label.place, subject + ".names", "only a number has names");
    }

    void check_label_field(const Table &table, const Label &label, const std::string &name,
                           const std::string &subject)
    {
        const Field *field = table.find_field(name);
        if (!field) {
            wrong(label.place, subject, "the key has no field \"", name, "\"");
            return;
        }
        const auto kind = label_widths.find(label.kind);
        if (kind != label_widths.end() && kind->second && kind->second != field->width)
            wrong(label.place, subject, "\"", label.kind, "\" needs ", kind->second, " bits, not ",
                  field->width);
        if ((field->match == "ternary") == (label.kind == "always"))
            wrong(label.place, subject,
                  label.kind == "always" ? "\"always\" is for a field without a mask"
                                         : "the field has no mask");
    }

    void check_uses()
    {
        for (const Action &action : catalogue.actions)
            if (!action.name.empty() && !used_actions.contains(action.name))
                wrong(action.place, action.name, "no table or profile uses this action");
        for (const auto &[resource, action] : index_users)
            if (!users.contains(resource))
                wrong(catalogue.find_action(action)->place, action, "no table has the indexed resource ",
                      resource);
    }
};

} // namespace

void check_catalogue(const Catalogue &catalogue, Diagnostics &diagnostics)
{
    Checker(catalogue, diagnostics).run();
}

} // namespace pdgen
