#include "catalogue.h"

#include <algorithm>
#include <set>

#include "row_reader.h"

namespace pdgen {

Mask128 full_mask(unsigned width)
{
    const auto ones = [](unsigned bits) {
        return bits >= 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << bits) - 1;
    };
    return {width > 64 ? ones(width - 64) : 0, ones(width)};
}

namespace {

Field read_field(RowReader &row, const std::string &table)
{
    Field field;
    field.place = row.place();
    field.name = row.text("name");
    row.set_subject(table, field.name);
    field.display = row.text("display");
    field.width = row.number("width");
    field.match = row.choice("match", match_names, Match::exact);
    field.format = row.choice("format", format_names, Format::none);
    field.mask = row.mask("mask");
    field.partition_index = row.flag_or("partition_index", false);
    return field;
}

Parameter read_parameter(RowReader &row, const std::string &action)
{
    Parameter parameter;
    parameter.place = row.place();
    parameter.name = row.text("name");
    row.set_subject(action, parameter.name);
    parameter.width = row.number("width");
    parameter.format = row.choice("format", format_names, Format::none);
    parameter.index_of = row.text_or("index_of", "");
    parameter.in_image = row.flag_or("in_image", true);
    return parameter;
}

Action read_action(RowReader &row)
{
    Action action;
    action.place = row.place();
    action.name = row.text("name");
    row.set_subject(action.name);
    action.number = row.number("number");
    row.rows("parameters", false, "parameters", [&](RowReader &parameter) {
        action.parameters.push_back(read_parameter(parameter, action.name));
    });
    return action;
}

Binding read_binding(RowReader &row, bool may_be_default)
{
    Binding binding;
    binding.place = row.place();
    binding.name = row.text("name");
    binding.handle = row.number("handle");
    if (may_be_default)
        binding.default_action = row.flag_or("default", false);
    return binding;
}

Table read_table(RowReader &row)
{
    Table table;
    table.place = row.place();
    table.name = row.text("name");
    row.set_subject(table.name);
    table.handle = row.number("handle");
    for (const TableColumn &column : table_columns)
        if (const auto *text = std::get_if<std::string Table::*>(&column.member))
            table.*(*text) = column.required ? row.text(column.name) : row.text_or(column.name, "");
        else
            table.*std::get<bool Table::*>(column.member) = row.flag_or(column.name, false);
    row.rows("key", false, "key",
             [&](RowReader &field) { table.key.push_back(read_field(field, table.name)); });
    table.record_order = row.texts_or_none("record_order");
    row.rows("actions", false, "actions",
             [&](RowReader &binding) { table.actions.push_back(read_binding(binding, true)); });
    return table;
}

Profile read_profile(RowReader &row)
{
    Profile profile;
    profile.place = row.place();
    profile.name = row.text("name");
    row.set_subject(profile.name);
    profile.table = row.text("table");
    profile.action_table = row.number("action_table");
    profile.selector = row.number("selector");
    row.rows("actions", true, "actions",
             [&](RowReader &binding) { profile.actions.push_back(read_binding(binding, false)); });
    return profile;
}

Resource read_resource(RowReader &row)
{
    Resource resource;
    resource.place = row.place();
    resource.name = row.text("name");
    row.set_subject(resource.name);
    resource.handle = row.number("handle");
    return resource;
}

Digest read_digest(RowReader &row)
{
    Digest digest{read_resource(row), {}};
    row.rows("fields", true, "fields", [&](RowReader &field) {
        digest.fields.push_back({field.place(), field.text("name"), field.number("bytes")});
    });
    return digest;
}

Hash read_hash(RowReader &row)
{
    Hash hash{read_resource(row), 0, 0};
    hash.input = row.number("input");
    hash.algorithm = row.number("algorithm");
    return hash;
}

SnapshotLayout read_layout(RowReader &row)
{
    SnapshotLayout layout;
    layout.place = row.place();
    layout.name = row.text("name");
    row.set_subject(layout.name);
    layout.two_bytes = row.numbers("two_bytes");
    layout.four_bytes = row.numbers("four_bytes");
    return layout;
}

Label read_label(RowReader &row, const std::string &table)
{
    Label label;
    label.place = row.place();
    label.field = row.text("field");
    row.set_subject(table, label.field);
    if (!row.text("kind").empty())
        label.kind = row.choice("kind", label_kind_names, LabelKind::number);
    label.second = row.text_or("second", "");
    label.text = row.text("text");
    label.full = row.number_if_any("full");
    label.bits = row.number_if_any("bits");
    label.names_if = row.number_if_any("names_if");
    label.name_bits = row.number_if_any("name_bits");
    row.rows("names", false, "names", [&](RowReader &name) {
        label.names.push_back({name.number("value"), name.text("text")});
    });
    return label;
}

Labels read_labels(RowReader &row)
{
    Labels labels{row.place(), row.text("table"), {}};
    row.set_subject(labels.table);
    row.rows("rows", true, "rows",
             [&](RowReader &label) { labels.rows.push_back(read_label(label, labels.table)); });
    return labels;
}

// Small letters, digits and underscores, then ".toml".
bool is_group_file(const std::string &file)
{
    constexpr std::string_view ending = ".toml", letters = "abcdefghijklmnopqrstuvwxyz0123456789_";
    return file.size() > ending.size() && file.ends_with(ending) &&
           file.find_first_not_of(letters) == file.size() - ending.size();
}

// A group gives its name to a public header, pd_<group>.h, beside pd_actions.h and its like. False when the
// list cannot be relied on.
bool check_group_files(RowReader &root, const std::vector<std::string> &files)
{
    std::set<std::string> taken = {"actions.toml",  "inspection.toml", "profiles.toml", "resources.toml",
                                   "services.toml", "tables.toml",     "types.toml"};
    bool sound = true;
    for (const std::string &file : files) {
        const bool has_form = is_group_file(file);
        const bool fresh = taken.insert(file).second;
        sound &= has_form && fresh;
        if (file.empty())
            continue; // reported where it was read
        if (!has_form)
            root.wrong("groups", "\"" + file + "\" is no file name such as \"l2.toml\"");
        else if (!fresh)
            root.wrong("groups", "\"" + file + "\" is taken already");
    }
    return sound;
}

// One file of the catalogue after the other, with findings under the file's own name.
class Loader {
public:
    Loader(std::filesystem::path catalogue_directory, Catalogue &rows, Diagnostics &findings)
        : directory(std::move(catalogue_directory)), catalogue(rows), diagnostics(findings)
    {
    }

    template <typename Read>
    void file(const std::string &name, Read read)
    {
        const std::optional<toml::table> table = read_toml(directory, name, diagnostics);
        if (!table) {
            catalogue.complete = false;
            return;
        }
        RowReader root(*table, name, "", diagnostics);
        read(root);
        root.report_unknown_keys();
    }

    // Reads the rows of the array `key` into `rows`.
    template <typename Row, typename Read>
    void rows(RowReader &root, const char *key, std::vector<Row> &rows, Read read)
    {
        if (!root.rows(key, true, key, [&](RowReader &row) { rows.push_back(read(row)); }))
            catalogue.complete = false;
    }

private:
    std::filesystem::path directory;
    Catalogue &catalogue;
    Diagnostics &diagnostics;
};

} // namespace

Catalogue load_catalogue(const std::filesystem::path &directory, Diagnostics &diagnostics)
{
    Catalogue catalogue;
    Loader loader(directory, catalogue, diagnostics);
    std::vector<std::string> groups;
    std::string actions, profiles, resources, services, snapshots, labels, operations, functions;
    loader.file("catalogue.toml", [&](RowReader &root) {
        catalogue.place = root.place();
        catalogue.program = root.text("program");
        catalogue.prefix = root.text("prefix");
        groups = root.texts("groups");
        catalogue.complete = check_group_files(root, groups);
        actions = root.text("actions");
        profiles = root.text("profiles");
        resources = root.text("resources");
        services = root.text("services");
        snapshots = root.text("snapshots");
        labels = root.text("labels");
        operations = root.text("operations");
        functions = root.text("functions");
    });
    if (groups.empty() || actions.empty() || profiles.empty() || resources.empty() || services.empty() ||
        snapshots.empty() || labels.empty() || operations.empty() || functions.empty()) {
        catalogue.complete = false;
        return catalogue;
    }

    std::erase(groups, "");
    for (const std::string &file : groups)
        loader.file(file, [&](RowReader &root) {
            Group group{root.place(), std::filesystem::path(file).stem().string(), root.text("title"), {}};
            loader.rows(root, "table", group.tables, read_table);
            catalogue.groups.push_back(std::move(group));
        });
    loader.file(actions,
                [&](RowReader &root) { loader.rows(root, "action", catalogue.actions, read_action); });
    loader.file(profiles,
                [&](RowReader &root) { loader.rows(root, "profile", catalogue.profiles, read_profile); });
    loader.file(resources, [&](RowReader &root) {
        loader.rows(root, "counter", catalogue.counters, read_resource);
        loader.rows(root, "meter", catalogue.meters, read_resource);
        loader.rows(root, "register", catalogue.registers, read_resource);
    });
    loader.file(services, [&](RowReader &root) {
        loader.rows(root, "digest", catalogue.digests, read_digest);
        loader.rows(root, "value_set", catalogue.value_sets, read_resource);
        loader.rows(root, "hash", catalogue.hashes, read_hash);
    });
    loader.file(snapshots, [&](RowReader &root) {
        catalogue.snapshot_bytes = root.number("record_bytes");
        loader.rows(root, "layout", catalogue.snapshots, read_layout);
    });
    loader.file(labels, [&](RowReader &root) { loader.rows(root, "labels", catalogue.labels, read_labels); });
    loader.file(operations,
                [&](RowReader &root) { loader.rows(root, "header", catalogue.driver, read_driver_header); });
    loader.file(functions, [&](RowReader &root) {
        loader.rows(root, "arguments", catalogue.functions.arguments, read_function_argument);
        loader.rows(root, "records", catalogue.functions.records, read_argument_record);
        loader.rows(root, "section", catalogue.functions.sections, read_section);
    });
    return catalogue;
}

namespace {

template <typename Row>
const Row *find_by_name(const std::vector<Row> &rows, const std::string &name)
{
    const auto found =
        std::find_if(rows.begin(), rows.end(), [&](const Row &row) { return row.name == name; });
    return found == rows.end() ? nullptr : &*found;
}

} // namespace

const Action *Catalogue::find_action(const std::string &name) const
{
    return find_by_name(actions, name);
}

const Field *Table::find_field(const std::string &field) const
{
    return find_by_name(key, field);
}

const Labels *Catalogue::labels_of(const Table &table) const
{
    const auto found = std::find_if(labels.begin(), labels.end(),
                                    [&](const Labels &rows) { return rows.table == table.name; });
    return found == labels.end() ? nullptr : &*found;
}

const Profile *Catalogue::profile_of(const Table &table) const
{
    const auto found = std::find_if(profiles.begin(), profiles.end(),
                                    [&](const Profile &profile) { return profile.table == table.name; });
    return found == profiles.end() ? nullptr : &*found;
}

const Table *Catalogue::table_with_direct(const std::string &resource) const
{
    for (const Group &group : groups)
        for (const Table &table : group.tables)
            if (table.counter == resource || table.meter == resource)
                return &table;
    return nullptr;
}

const Resource *Catalogue::find_resource(const std::string &name) const
{
    const Resource *counter = find_by_name(counters, name);
    return counter ? counter : find_by_name(meters, name);
}

} // namespace pdgen
