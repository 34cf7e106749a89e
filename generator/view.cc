#include "view.h"

#include <algorithm>
#include <bit>
#include <map>
#include <set>

#include "browse_data.h"
#include "functions_view.h"
#include "names.h"
#include "operations_view.h"

namespace pdgen {

namespace {

using kainjow::mustache::data;
using kainjow::mustache::list;

std::string decimal(std::uint64_t value)
{
    return std::to_string(value);
}

std::string count_of(std::size_t count, const std::string &one)
{
    return decimal(count) + " " + one + (count == 1 ? "" : "s");
}

unsigned bytes_of(unsigned width)
{
    return (width + 7) / 8;
}

// Size of the image of `fields`, a key's or an action's.
template <typename Fields>
void set_image_size(data &view, const Fields &fields)
{
    unsigned bytes = 0, bits = 0;
    for (const auto &field : fields) {
        bytes += bytes_of(field.width);
        bits += field.width;
    }
    view.set("image_bytes", decimal(bytes));
    view.set("image_bits", decimal(bits));
}

// Marks the last element, for separators.
void push(list &elements, data element, bool last)
{
    element.set("last", data(last));
    elements.push_back(std::move(element));
}

// How a format stands in a schema.
std::string schema_format(Format format)
{
    return format == Format::none ? "None" : "'" + name_of(format, format_names) + "'";
}

unsigned bits_in(std::uint64_t mask)
{
    return static_cast<unsigned>(std::bit_width(mask));
}

class Viewer {
public:
    explicit Viewer(const Catalogue &rows) : catalogue(rows), functions(rows)
    {
        for (const Action &action : catalogue.actions)
            actions.emplace(action.name, action_view(action));
    }

    data root()
    {
        data view;
        view.set("program", catalogue.program);
        view.set("prefix", catalogue.prefix);
        list groups, action_list, profiles;
        for (const Group &group : catalogue.groups)
            push(groups, group_view(group), &group == &catalogue.groups.back());
        for (const Action &action : catalogue.actions)
            push(action_list, with_functions(actions.at(action.name), "action"),
                 &action == &catalogue.actions.back());
        for (const Profile &profile : catalogue.profiles)
            push(profiles, profile_view(profile), &profile == &catalogue.profiles.back());
        view.set("groups", groups);
        view.set("all_actions", action_list);
        view.set("action_count", decimal(catalogue.actions.size()));
        view.set("action_name_bytes", decimal(action_name_bytes()));
        view.set("profiles", profiles);
        view.set("all_tables", tables_by_handle());
        view.set("table_slots", table_slots());
        view.set("first_table_handle", hex(first_table_handle));
        set_resources(view);
        for (const char *file : {"program", "inspection", "resources", "services"})
            view.set(std::string(file) + "_sections", functions.program_functions(file, view));
        functions.set_families(view);
        view.set("families_json", families_json(catalogue.functions));
        view.set("words_json", words.json());
        return view;
    }

    std::map<std::string, data> take_function_lists() { return functions.take_lists(); }

    // Tells of each family once, by the first of its functions that is another's.
    void check_exports(Diagnostics &diagnostics) const
    {
        std::map<std::string, const Family *> makers;
        std::set<const Family *> told;
        for (const auto &[name, family] : functions.exports()) {
            const auto [first, fresh] = makers.emplace(name, family);
            if (!fresh && told.insert(family).second)
                diagnostics.add(family->place, family->name,
                                name + " stands in " + at(first->second->place) + " already");
        }
    }

private:
    const Catalogue &catalogue;
    FunctionViews functions;
    ObjectWords words;
    std::map<std::string, data> actions;

    // Of the longest full name, with its NUL.
    std::size_t action_name_bytes() const
    {
        std::size_t longest = 0;
        for (const Action &action : catalogue.actions)
            longest = std::max(longest, (catalogue.prefix + "_" + action.name).size());
        return longest + 1;
    }

    std::string resource_handle(const std::string &name) const
    {
        return name.empty() ? "0" : hex(catalogue.find_resource(name)->handle);
    }

    data parameter_view(const Parameter &parameter) const
    {
        data view;
        view.set("parameter", parameter.name);
        view.set("member", parameter_member(parameter.name));
        view.set("type", member_type(parameter.width));
        view.set("width", decimal(parameter.width));
        view.set("width_text", count_of(parameter.width, "bit"));
        view.set("format", name_of(parameter.format, format_names));
        view.set("schema_format", schema_format(parameter.format));
        view.set("index_of", parameter.index_of);
        view.set("is_index", data(!parameter.index_of.empty()));
        view.set("index_handle", resource_handle(parameter.index_of));
        view.set("in_image", std::string(parameter.in_image ? "true" : "false"));
        return view;
    }

    data action_view(const Action &action) const
    {
        data view;
        view.set("action", action.name);
        view.set("number", decimal(action.number));
        view.set("action_type", action_type(catalogue, action.name));
        view.set("has_parameters", data(!action.parameters.empty()));
        list parameters;
        for (const Parameter &parameter : action.parameters)
            push(parameters, parameter_view(parameter), &parameter == &action.parameters.back());
        view.set("parameters", parameters);
        const auto reads_index = [](const Parameter &parameter) { return !parameter.in_image; };
        const bool reads = std::any_of(action.parameters.begin(), action.parameters.end(), reads_index);
        view.set("index_note", std::string(reads ? "; the index is 65535 without any resource" : ""));
        set_image_size(view, action.parameters);
        return view;
    }

    list binding_views(const std::vector<Binding> &bindings, bool entry) const
    {
        list views;
        for (const Binding &binding : bindings) {
            data view = actions.at(binding.name);
            view.set("index", decimal(views.size()));
            view.set("action_handle", hex(binding.handle));
            view.set("is_entry", std::string(entry ? "true" : "false"));
            view.set("default_action", data(binding.default_action));
            view.set("is_default", std::string(binding.default_action ? "true" : "false"));
            push(views, std::move(view), &binding == &bindings.back());
        }
        return views;
    }

    data field_view(const Table &table, const Field &field) const
    {
        data view;
        const bool ternary = field.match == Match::ternary, lpm = field.match == Match::lpm;
        view.set("field", field.name);
        view.set("display", field.display);
        view.set("width_name", width_name(field.name));
        view.set("width", decimal(field.width));
        view.set("width_text", count_of(field.width, "bit"));
        view.set("type", member_type(field.width));
        view.set("array", member_array(field.width));
        view.set("is_array", data(field.width == 128));
        view.set("match", name_of(field.match, match_names));
        view.set("format", name_of(field.format, format_names));
        view.set("has_twin", data(ternary || lpm));
        view.set("twin", ternary ? mask_member(field.name) : lpm ? prefix_length_member(field.name) : "");
        view.set("is_ternary", data(ternary));
        view.set("is_lpm", data(lpm));
        view.set("is_partition", data(field.partition_index));
        view.set("partition_index", std::string(field.partition_index ? "true" : "false"));
        view.set("key_type", key_type(catalogue, table.name));
        const Mask128 mask = field.mask.value_or(full_mask(field.width));
        view.set("schema_format", schema_format(field.format));
        view.set("is_masked", data(field.mask.has_value()));
        view.set("schema_mask", hex(mask));
        view.set("mask_high", hex(mask.high));
        view.set("mask_low", hex(mask.low));
        return view;
    }

    // The members of a table's record stand in an order of their own.
    list member_views(const Table &table) const
    {
        std::vector<Field> fields = table.key;
        const auto place = [&](const Field &field) {
            return std::find(table.record_order.begin(), table.record_order.end(), field.name);
        };
        if (!table.record_order.empty())
            std::sort(fields.begin(), fields.end(),
                      [&](const Field &a, const Field &b) { return place(a) < place(b); });
        return field_views(table, fields);
    }

    list field_views(const Table &table, const std::vector<Field> &fields) const
    {
        list views;
        for (const Field &field : fields)
            push(views, field_view(table, field), &field == &fields.back());
        return views;
    }

    // A flag stands as "true" or "false"; "has_" in front of the name tells whether there is something.
    static void set_column(data &view, const Table &table, const TableColumn &column)
    {
        const auto *text = std::get_if<std::string Table::*>(&column.member);
        const bool flag = !text && table.*std::get<bool Table::*>(column.member);
        view.set(column.name, text ? table.*(*text) : flag ? "true" : "false");
        view.set(std::string("has_") + column.name, data(text ? !(table.*(*text)).empty() : flag));
    }

    data table_view(const Table &table) const
    {
        data view;
        const Profile *profile = catalogue.profile_of(table);
        const auto any = [&](Match match) {
            return std::any_of(table.key.begin(), table.key.end(),
                               [&](const Field &field) { return field.match == match; });
        };
        view.set("table", table.name);
        view.set("group", group_of(table));
        view.set("table_handle", hex(table.handle));
        view.set("key_type", key_type(catalogue, table.name));
        view.set("has_key", data(!table.key.empty()));
        view.set("fields", field_views(table, table.key));
        view.set("members", member_views(table));
        set_image_size(view, table.key);
        view.set("kind", std::string(table.key.empty()     ? "none"
                                     : any(Match::ternary) ? "ternary"
                                     : any(Match::lpm)     ? "lpm"
                                                           : "exact"));
        view.set("has_priority", data(any(Match::ternary)));
        view.set("has_mask", data(any(Match::ternary) || any(Match::lpm)));
        view.set("priority_digit", std::string(any(Match::ternary) ? "1" : "0"));
        view.set("actions", binding_views(table.actions, !table.key.empty()));
        view.set("is_direct", data(!profile));
        view.set("is_indirect", data(profile != nullptr));
        view.set("key_text", std::string(any(Match::ternary) ? "key and priority" : "key"));
        view.set("mask_text", std::string(any(Match::ternary) ? "the masks" : "the prefix length"));
        for (const TableColumn &column : table_columns)
            set_column(view, table, column);
        view.set("counter_handle", resource_handle(table.counter));
        view.set("meter_handle", resource_handle(table.meter));
        view.set("indexed_handle", resource_handle(table.indexed_resource));
        view.set("resource_handle", resource_handle(table.counter + table.meter + table.indexed_resource));
        const Labels *labels = catalogue.labels_of(table);
        view.set("has_labels", data(labels != nullptr));
        view.set("labels", labels ? label_views(table, *labels) : list{});
        view.set("profile", profile ? profile->name : "");
        view.set("action_table", profile ? hex(profile->action_table) : "0");
        view.set("selector", profile ? hex(profile->selector) : "0");
        view.set("entry_actions", profile ? binding_views(profile->actions, true)
                                          : binding_views(table.actions, !table.key.empty()));
        return view;
    }

    std::string group_of(const Table &table) const
    {
        const auto has = [&](const Group &group) {
            return std::ranges::any_of(group.tables, [&](const Table &own) { return &own == &table; });
        };
        return std::ranges::find_if(catalogue.groups, has)->file;
    }

    list label_views(const Table &table, const Labels &labels) const
    {
        return views_of(labels.rows, [&](const Label &label) { return label_view(table, label); });
    }

    data label_view(const Table &table, const Label &label) const
    {
        const Field &field = *table.find_field(label.field);
        const std::uint64_t mask = field.mask.value_or(full_mask(field.width)).low;
        const std::uint32_t all = 0xffffffff;
        const bool always = label.kind == LabelKind::always;
        data view = field_view(table, field);
        view.set("label_kind", name_of(label.kind, label_kind_names));
        view.set("text", label.text);
        view.set("is_mac", data(label.kind == LabelKind::mac));
        view.set("second", label.second);
        view.set("second_twin", label.second.empty() ? "" : mask_member(label.second));
        view.set("digits", decimal((bits_in(mask) + 3) / 4));
        view.set("full", hex(label.full.value_or(static_cast<std::uint32_t>(mask))));
        view.set("bits", hex(label.bits.value_or(always ? static_cast<std::uint32_t>(mask) : all)));
        view.set("names_if", hex(label.names_if.value_or(all)));
        view.set("name_bits", hex(label.name_bits.value_or(all)));
        view.set("has_names", data(!label.names.empty()));
        list names;
        for (const LabelName &name : label.names) {
            data name_view;
            name_view.set("name_value", hex(name.value));
            name_view.set("name_text", name.text);
            push(names, name_view, &name == &label.names.back());
        }
        view.set("names", names);
        return view;
    }

    void set_functions(data &owner, const std::vector<ObjectPart> &parts)
    {
        words.add(owner, parts);
        functions.set_functions(owner, parts);
    }

    data with_functions(data view, const char *over)
    {
        functions.set_slots(view, over);
        set_functions(view, {{over, {&view}}});
        return view;
    }

    static std::vector<const data *> pointers_to(const list &views)
    {
        std::vector<const data *> pointers;
        for (const data &view : views)
            pointers.push_back(&view);
        return pointers;
    }

    data table_with_functions(const Table &table)
    {
        data view = table_view(table);
        list bindings = binding_views(table.actions, !table.key.empty());
        list fields = field_views(table, table.key);
        list references = reference_views();
        for (data &binding : bindings)
            functions.set_slots(binding, "binding", &view);
        for (data &reference : references)
            functions.set_slots(reference, "reference", &view);
        functions.set_slots(view, "table");
        set_functions(view, {{"table", {&view}},
                             {"binding", pointers_to(bindings)},
                             {"field", pointers_to(fields)},
                             {"reference", pointers_to(references)}});
        view.set("actions", bindings);
        view.set("references", references);
        return view;
    }

    data group_view(const Group &group)
    {
        data view;
        view.set("group", group.file);
        view.set("guard", upper(group.file));
        view.set("title", group.title);
        list tables;
        for (const Table &table : group.tables)
            push(tables, table_with_functions(table), &table == &group.tables.back());
        view.set("tables", tables);
        return view;
    }

    data profile_view(const Profile &profile)
    {
        data view;
        view.set("profile", profile.name);
        view.set("table", profile.table);
        view.set("action_table", hex(profile.action_table));
        view.set("selector", hex(profile.selector));
        list members = binding_views(profile.actions, true);
        for (data &member : members)
            functions.set_slots(member, "member", &view);
        functions.set_slots(view, "profile");
        set_functions(view, {{"member", pointers_to(members)}, {"profile", {&view}}});
        view.set("entry_actions", members);
        return view;
    }

    // The elements of `rows` as `make` sees them.
    template <typename Row, typename Make>
    static list views_of(const std::vector<Row> &rows, Make make)
    {
        list views;
        for (const Row &row : rows)
            push(views, make(row), &row == &rows.back());
        return views;
    }

    static data resource_view(const Resource &resource)
    {
        data view;
        view.set("name", resource.name);
        view.set("handle", hex(resource.handle));
        return view;
    }

    // A direct counter or meter is reached through the table that has it.
    data cell_view(const Resource &resource) const
    {
        data view = resource_view(resource);
        const Table *table = catalogue.table_with_direct(resource.name);
        view.set("is_direct", data(table != nullptr));
        view.set("table", table ? table->name : "");
        view.set("table_handle", table ? hex(table->handle) : "0");
        view.set("cells_handle", hex(table ? table->handle : resource.handle));
        view.set("direct", std::string(table ? "true" : "false"));
        view.set("cell", std::string(table ? "entry_hdl" : "index"));
        view.set("cell_text", table ? "the entry of `" + table->name + "`" : "the cell");
        return view;
    }

    static data digest_view(const Digest &digest)
    {
        data view = resource_view(digest);
        unsigned bytes = 0;
        list fields;
        for (const DigestField &field : digest.fields) {
            data field_view;
            field_view.set("field", field.name);
            field_view.set("bytes", decimal(field.bytes));
            field_view.set("offset", decimal(bytes));
            push(fields, field_view, &field == &digest.fields.back());
            bytes += field.bytes;
        }
        view.set("fields", fields);
        view.set("entry_bytes", decimal(bytes));
        return view;
    }

    static data hash_view(const Hash &hash)
    {
        data view = resource_view(hash);
        view.set("input", hex(hash.input));
        view.set("algorithm", hex(hash.algorithm));
        return view;
    }

    static data layout_view(const SnapshotLayout &layout)
    {
        const auto offset_view = [](unsigned offset) {
            data view;
            view.set("offset", decimal(offset));
            return view;
        };
        data view;
        view.set("layout", layout.name);
        view.set("two_bytes", views_of(layout.two_bytes, offset_view));
        view.set("four_bytes", views_of(layout.four_bytes, offset_view));
        return view;
    }

    void set_resources(data &view)
    {
        list kinds;
        const auto add = [&](const char *rows, const char *over, const char *record, const char *row,
                             const list &views) {
            data kind;
            list objects;
            for (const data &object : views)
                objects.push_back(with_functions(object, over));
            kind.set("rows", rows);
            kind.set("record", record);
            kind.set("row", row);
            kind.set("objects", objects);
            kind.set("slot_types", functions.slot_types(over));
            view.set(rows, objects);
            kinds.push_back(kind);
        };
        const auto cell = [this](const Resource &resource) { return cell_view(resource); };
        add("counters", "counter", "CounterFunctions", "Counter", views_of(catalogue.counters, cell));
        add("meters", "meter", "MeterFunctions", "Meter", views_of(catalogue.meters, cell));
        add("registers", "register", "RegisterFunctions", "Resource",
            views_of(catalogue.registers, resource_view));
        add("digests", "digest", "DigestFunctions", "Digest", views_of(catalogue.digests, digest_view));
        add("value_sets", "value_set", "ValueSetFunctions", "Resource",
            views_of(catalogue.value_sets, resource_view));
        add("hashes", "hash", "HashFunctions", "Hash", views_of(catalogue.hashes, hash_view));
        view.set("kinds", kinds);
        view.set("layouts", views_of(catalogue.snapshots, layout_view));
        view.set("snapshot_bytes", decimal(catalogue.snapshot_bytes));
    }

    // The two things that an entry of an indirect table can point at.
    static list reference_views()
    {
        data member, group;
        member.set("suffix", std::string());
        member.set("target", std::string("mbr"));
        member.set("target_type", std::string("pd_mbr_hdl"));
        member.set("target_kind", std::string("member"));
        member.set("target_text", std::string("a member"));
        group.set("suffix", std::string("_with_selector"));
        group.set("target", std::string("grp"));
        group.set("target_type", std::string("pd_grp_hdl"));
        group.set("target_kind", std::string("group"));
        group.set("target_text", std::string("a group"));
        return {member, group};
    }

    // One element for each handle from the first to the last; a handle in between that no table has is empty.
    list table_slots() const
    {
        list slots;
        std::uint32_t next = first_table_handle;
        const auto add = [&](const std::string &table) {
            data slot;
            slot.set("table", table);
            slot.set("is_table", data(!table.empty()));
            slots.push_back(slot);
            ++next;
        };
        for (const Table *table : sorted_tables()) {
            while (next < table->handle)
                add("");
            add(table->name);
        }
        return slots;
    }

    std::vector<const Table *> sorted_tables() const
    {
        std::vector<const Table *> tables;
        for (const Group &group : catalogue.groups)
            for (const Table &table : group.tables)
                tables.push_back(&table);
        std::sort(tables.begin(), tables.end(), [](auto *a, auto *b) { return a->handle < b->handle; });
        return tables;
    }

    list tables_by_handle() const
    {
        const std::vector<const Table *> tables = sorted_tables();
        list views;
        for (const Table *table : tables)
            push(views, table_view(*table), table == tables.back());
        return views;
    }
};

} // namespace

CatalogueView catalogue_view(const Catalogue &catalogue, Diagnostics &diagnostics)
{
    Viewer viewer(catalogue);
    data root = viewer.root();
    viewer.check_exports(diagnostics);
    set_operations(root, catalogue);
    return {std::move(root), viewer.take_function_lists()};
}

} // namespace pdgen
