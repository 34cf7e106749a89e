// The commands that tell what the switch program has: tables, describe.
#include <algorithm>
#include <variant>

#include "commands.h"
#include "list.h"
#include "model.h"
#include "resources.h"
#include "rows_services.h"
#include "services.h"
#include "verb_arguments.h"

namespace shell {

namespace {

// ---- Lists within a description: a line each ------------------------------------------------------------

// "{name:-12} ", as wide as the longest of its texts and a gap.
template <typename Rows, typename Text>
std::string column(const char *name, const Rows &rows, Text text)
{
    std::size_t longest = 0;
    for (const auto &row : rows)
        longest = std::max(longest, std::string_view{text(row)}.size());
    return std::string{"{"} + name + ":-" + std::to_string(longest + 1) + "} ";
}

void tell_key(Result &to, std::span<const pd::Field> key)
{
    const std::string names = column("field", key, [](const pd::Field &field) { return field.display; }) +
                              column("member", key, [](const pd::Field &field) { return field.name; });
    to.list("key", key, [&](Result &each, const pd::Field &field) {
        std::string sentence =
            "\n  " + names + (field.width == 1 ? "{width:3} bit   " : "{width:3} bits  ") + "{match}";
        each.text("field", field.display).text("member", field.name);
        each.number("width", field.width).text("match", match_name(field.match));
        if (uncompared_bits(field)) {
            std::string mask;
            append_mask_text(mask, {field.mask.high, field.mask.low}, Form::number);
            each.text("mask", mask);
            sentence += ", mask {mask}";
        }
        return sentence + (field.partition_index ? ", the partition index" : "");
    });
}

void tell_parameters(Result &to, const pd::Action &action)
{
    to.list("parameters", action.parameters, [](Result &each, const pd::Parameter &parameter) {
        each.text("parameter", parameter.name).number("width", parameter.width);
        return " {parameter}:{width}";
    });
}

void tell_actions(Result &to, std::span<const pd::Binding> actions)
{
    const std::string name =
        column("action", actions, [](const pd::Binding &binding) { return binding.action->name; });
    to.list("actions", actions, [&](Result &each, const pd::Binding &binding) {
        each.text("action", binding.action->name).hex("handle", binding.handle);
        each.flag("entry", binding.entry).flag("default", binding.default_action);
        tell_parameters(each, *binding.action);
        return "\n  " + name.substr(0, name.size() - 1) + "{parameters}" +
               (!binding.entry           ? " (default only)"
                : binding.default_action ? " (default too)"
                                         : "");
    });
}

// ---- Tables and profiles --------------------------------------------------------------------------------

// Only those that the table has. Gives their sentences.
std::string tell_resources(Result &to, const pd::Table &table)
{
    constexpr struct {
        const char *name;
        u32 pd::Table::*handle;
        const char *sentence;
    } resources[] = {
        {"direct_counter", &pd::Table::direct_counter, "\ndirect counter: {direct_counter}"},
        {"direct_meter", &pd::Table::direct_meter,
         "\ndirect meter: {direct_meter}, add takes meter=CR,CB,PR,PB,TYPE"},
        {"indexed_resource", &pd::Table::indexed_resource, "\nindexed resource: {indexed_resource}"},
    };
    std::string sentences;
    for (const auto &[name, handle, sentence] : resources)
        if (table.*handle) {
            to.hex(name, table.*handle);
            sentences += sentence;
        }
    to.flag("idle_time", table.idle_time).flag("ttl", table.ttl_on_add);
    if (table.idle_time)
        sentences += table.ttl_on_add ? "\nidle time: add takes ttl=N" : "\nidle time";
    return sentences;
}

// The members that the table's object has in the list of tables as well.
void tell_summary(Result &to, const pd::Table &table)
{
    to.text("table", table.name).text("brief", table.brief).hex("handle", table.handle);
    to.text("key_kind", key_kind_name(table)).number("entries", entry_count(table));
    if (table.profile)
        to.text("profile", table.profile);
}

std::string tell(Result &to, const reflection::TableFunctions *functions)
{
    const pd::Table &table = *functions->row;
    tell_summary(to, table);
    to.flag("priority", pd::has_priority(table));
    tell_key(to, table.key);
    tell_actions(to, table.actions);
    std::string sentence = "{table}: {brief}\nhandle {handle}, {key_kind}";
    sentence += pd::has_priority(table) ? " with priority=N, entries: {entries}" : ", entries: {entries}";
    sentence += table.key.empty() ? "" : "\nkey:{key}";
    sentence += table.profile ? "\nentries point at members or groups of the action profile {profile}"
                              : "\nactions:{actions}";
    return sentence + tell_resources(to, table);
}

std::string tell(Result &to, const reflection::ProfileFunctions *functions)
{
    const pd::Profile &profile = *functions->row;
    to.text("profile", profile.name).text("table", table_of(*functions).row->name);
    to.hex("action_data", profile.action_table).hex("selector", profile.selector);
    to.number("members", count_members(*functions)).number("groups", count_groups(*functions));
    tell_actions(to, profile.actions);
    return "{profile}: action profile of {table}\naction data {action_data}, selector {selector}, members: "
           "{members}, "
           "groups: {groups}\nactions:{actions}";
}

// ---- Actions --------------------------------------------------------------------------------------------

// Where the action stands in: tables and profiles.
std::vector<std::string_view> users_of(const pd::Action &action)
{
    const auto has = [&](std::span<const pd::Binding> bindings) {
        return std::ranges::find(bindings, &action, &pd::Binding::action) != bindings.end();
    };
    std::vector<std::string_view> users;
    for (const reflection::TableFunctions *table : reflection::tables())
        if (has(table->row->actions))
            users.push_back(table->row->name);
    for (const reflection::ProfileFunctions *profile : reflection::profiles())
        if (has(profile->row->actions))
            users.push_back(profile->row->name);
    return users;
}

std::string tell(Result &to, const pd::Action *action)
{
    to.text("action", action->name).number("number", action->number);
    tell_parameters(to, *action);
    to.number("image_bytes", pd::image_size(action->parameters).bytes);
    to.list("used_by", users_of(*action), [](Result &each, std::string_view name) {
        each.text("name", name);
        return "\n  {name}";
    });
    return std::string{"{action}: action number {number}, image of {image_bytes} bytes\nparameters:"} +
           (action->parameters.empty() ? " none" : "{parameters}") + "\nused by:{used_by}";
}

// ---- Resources and services -----------------------------------------------------------------------------

// "direct to TABLE", or how many cells there are; the catalogue does not say, the model has so many.
std::string tell_cells(Result &to, const reflection::TableFunctions *table, u32 cells)
{
    if (table) {
        to.text("table", table->row->name);
        return ", a cell for each entry of {table}";
    }
    to.number("cells", cells);
    return ", indexed, cells in the model: {cells}";
}

std::string tell(Result &to, const reflection::CounterFunctions *functions)
{
    const reflection::TableFunctions *const table = table_of(*functions->row);
    to.text("counter", functions->row->name);
    to.hex("handle", table ? table->row->direct_counter : functions->row->handle);
    return "{counter}: counter of packets and bytes\nhandle {handle}" +
           tell_cells(to, table, TS_MODEL_INDEXED_CELLS);
}

std::string tell(Result &to, const reflection::MeterFunctions *functions)
{
    to.text("meter", functions->row->name).hex("handle", functions->row->handle);
    return "{meter}: meter with committed and peak rate and burst\nhandle {handle}" +
           tell_cells(to, table_of(*functions->row), TS_MODEL_INDEXED_CELLS);
}

std::string tell(Result &to, const reflection::RegisterFunctions *functions)
{
    to.text("register", functions->row->name).hex("handle", functions->row->handle);
    return "{register}: register of 1 bit a cell in each pipe\nhandle {handle}" +
           tell_cells(to, nullptr, TS_MODEL_REGISTER_CELLS);
}

std::string tell(Result &to, const reflection::DigestFunctions *functions)
{
    const pd::Digest &digest = *functions->row;
    to.text("digest", digest.name).hex("handle", digest.handle).number("entry_bytes", digest.entry_bytes);
    const std::string name =
        column("member", digest.fields, [](const pd::DigestField &field) { return field.name; });
    to.list("fields", digest.fields, [&](Result &each, const pd::DigestField &field) {
        each.text("member", field.name).number("offset", field.offset).number("bytes", field.bytes);
        return "\n  " + name + "{bytes} bytes at {offset}";
    });
    return "{digest}: digest\nhandle {handle}, entries of {entry_bytes} bytes\nfields:{fields}";
}

std::string tell(Result &to, const reflection::ValueSetFunctions *functions)
{
    to.text("set", functions->row->name).hex("handle", functions->row->handle).number("width", 32);
    return "{set}: parser value set\nhandle {handle}, values and masks of {width} bits";
}

std::string tell(Result &to, const reflection::HashFunctions *functions)
{
    const pd::Hash &hash = *functions->row;
    to.text("calculation", hash.name).hex("handle", hash.handle);
    to.hex("input", hash.input).hex("algorithm", hash.algorithm);
    return "{calculation}: hash calculation\nhandle {handle}, input {input}, algorithm {algorithm}";
}

constexpr std::string_view snapshots = "snapshots";

// One description of all.
std::string tell(Result &to, std::string_view)
{
    const std::pair<std::string_view, const pd::SnapshotLayout &> layouts[] = {{"ingress", pd::snapshots::A},
                                                                               {"egress", pd::snapshots::B}};
    to.number("stages", TS_MODEL_STAGES).number("record_bytes", sizeof(pd_snapshot_phv));
    to.list("layouts", layouts, [](Result &each, const auto &layout) {
        each.text("direction", layout.first).number("two_bytes", layout.second.two_bytes.size());
        each.number("four_bytes", layout.second.four_bytes.size());
        return "\n  {direction:-7}  {two_bytes} fields of two bytes, {four_bytes} of four, the others of one";
    });
    return "snapshots: stages 0 to " + std::to_string(TS_MODEL_STAGES - 1) +
           ", a record of {record_bytes} bytes each\nlayouts:{layouts}";
}

// ---- Commands -------------------------------------------------------------------------------------------

using Described =
    std::variant<std::monostate, const reflection::TableFunctions *, const reflection::ProfileFunctions *,
                 const pd::Action *, const reflection::CounterFunctions *, const reflection::MeterFunctions *,
                 const reflection::RegisterFunctions *, const reflection::DigestFunctions *,
                 const reflection::ValueSetFunctions *, const reflection::HashFunctions *, std::string_view>;

// Anything that has a name.
struct Named {
    using Value = Described;
    static void describe(Usage &usage)
    {
        usage.add({"TABLE", "PROFILE", "ACTION", "COUNTER", "METER", "REGISTER", "DIGEST", "SET",
                   "CALCULATION", snapshots});
    }
    static Value read(Reading &reading);
};

// Finds the first row of the name, and keeps all names.
class Finder {
public:
    explicit Finder(std::string_view name) : name_(name) {}

    template <typename Rows>
    void look_in(const Rows &rows)
    {
        for (const auto &row : rows)
            keep(row.row->name, &row);
    }
    void keep(std::string_view name, const Described &found)
    {
        names_.push_back(name);
        if (found_.index() == 0 && name == name_)
            found_ = found;
    }
    const Described &found() const
    {
        if (found_.index() == 0)
            refuse(name_, {"name", {}, "help describe"}, names_);
        return found_;
    }

private:
    std::string_view name_;
    std::vector<std::string_view> names_;
    Described found_;
};

Described Named::read(Reading &reading)
{
    Finder finder{reading.words.take()};
    for (const reflection::TableFunctions *table : reflection::tables())
        finder.keep(table->row->name, table);
    for (const reflection::ProfileFunctions *profile : reflection::profiles())
        finder.keep(profile->row->name, profile);
    for (const pd::Action *action : reflection::actions())
        finder.keep(action->name, action);
    finder.look_in(reflection::counters());
    finder.look_in(reflection::meters());
    finder.look_in(reflection::registers());
    finder.look_in(reflection::digests());
    finder.look_in(reflection::value_sets());
    finder.look_in(reflection::hashes());
    finder.keep(snapshots, snapshots);
    return finder.found();
}

std::string tell(Result &, std::monostate)
{
    return {};
}

void describe(Session &session, const Described &what)
{
    Result result{session.json()};
    const std::string sentence = std::visit([&](const auto &one) { return tell(result, one); }, what);
    session.print(result.line(sentence));
}

void tables(Session &session, std::optional<std::string_view> part)
{
    std::size_t longest = 0;
    for (const reflection::TableFunctions *table : reflection::tables())
        longest = std::max(longest, std::string_view{table->row->name}.size());
    List list{
        session,
        {{"table", longest}, {"key_kind", sizeof "key_kind" - 1}, {"entries", 8, to_the_right}, {"brief"}}};
    list.fill([&] {
        for (const reflection::TableFunctions *table : reflection::tables())
            if (std::string_view{table->row->name}.find(part.value_or("")) != std::string_view::npos) {
                tell_summary(list.row(), *table->row);
                list.end_row();
            }
    });
}

constexpr std::string_view describe_text =
    R"(  Of a table or profile key, actions and resources; of an action parameters and who uses it; of a counter, meter,
  register, digest, value set or hash calculation handle and sizes; of 'snapshots' their stages and records.
)";

constexpr Verb tables_verb[] = {
    verb<tables, arg::Optional<arg::Word<"TEXT">>>(
        "tables", "the tables whose name contains TEXT, with key kind and number of entries")
        .lists()};

constexpr Verb describe_verb[] = {
    verb<describe, Named>("describe", "tells what a table, action, counter or anything else with a name is")
        .reads()};

} // namespace

const Command tables_command{tables_verb, {}, list_options};
const Command describe_command{describe_verb, describe_text, json_option};

} // namespace shell
