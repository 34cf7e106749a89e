// The commands that show the library's own texts: schema, value, print, label.
#include <algorithm>
#include <functional>
#include <sys/mman.h>
#include <unistd.h>
#include <variant>

#include "commands.h"
#include "driver.h"
#include "entry_key.h"
#include "entry_reader.h"
#include "forms.h"
#include "member_reader.h"
#include "model.h"
#include "placement.h"
#include "schema.h"
#include "text_buffer.h"
#include "value_lines.h"
#include "verb_arguments.h"

namespace shell {

namespace {

using reflection::ProfileFunctions;
using reflection::TableFunctions;

// ---- Entries and members --------------------------------------------------------------------------------

// What a line is about: an entry of a table, or a member of a profile.
struct Subject {
    const TableFunctions *table = nullptr;
    const ProfileFunctions *profile = nullptr;
    u32 handle = 0;

    const char *kind() const { return table ? "table" : "profile"; }
    const char *name() const { return table ? table->row->name : profile->row->name; }
};

// An entry of a table or a member of a profile, with the table or profile before it.
struct EntryOrMember {
    using Value = Subject;
    static void describe(Usage &usage)
    {
        usage.add({"TABLE", "PROFILE"});
        usage.add({"ENTRY", "MEMBER"});
    }
    static Value read(Reading &reading)
    {
        const auto [table, profile] = arg::TableOrProfile::read(reading);
        const u32 handle = profile ? arg::Member::read(reading) : arg::Entry::read(reading).find();
        reading.words.expect_end();
        return {table, profile, handle};
    }
};

// Prints a text as it is or, as JSON, under `key` behind what it is about.
void print_text_of(Session &session, const Subject &subject, std::string_view key, std::string_view text)
{
    Result result{session.json()};
    result.text(subject.kind(), subject.name());
    if (subject.handle != TS_MODEL_DEFAULT_ENTRY)
        result.number(subject.table ? "entry" : "member", subject.handle);
    result.json([&](Json &json) { json.key(key).text(text); }).shown("text", text);
    session.print(result.line("{text}"));
}

// The text functions do not tell why the driver refused, reading the entry does.
void expect_readable(const Subject &subject, bool from_hardware)
{
    EntryReader{*subject.table, from_hardware, nullptr}.read(subject.handle);
}

std::string value_of(const Subject &subject, bool from_hardware)
{
    if (subject.profile) {
        MemberReader reader{*subject.profile, from_hardware};
        reader.read(subject.handle);
        return text_of([&](char *buffer) {
            return reflection::action_texts()[reader.action().row().number].value(
                reader.action().parameters(), buffer);
        });
    }
    std::string text = text_of([&](char *buffer) {
        return subject.table->text.value(driver_session, static_cast<u8>(device.device_id), subject.handle,
                                         from_hardware, buffer);
    });
    if (text.empty())
        expect_readable(subject, from_hardware);
    return text;
}

// What `print(fd)` prints, without the last line end.
template <typename Print>
std::string printed_by(const Print &print)
{
    const int fd = memfd_create("print", 0);
    if (fd < 0)
        throw BadLine{{}, "there is no memory for the text"};
    const pd_status status = print(fd);
    std::string text(static_cast<std::size_t>(lseek(fd, 0, SEEK_CUR)), '\0');
    const ssize_t size = pread(fd, text.data(), text.size(), 0);
    close(fd);
    expect_success(status);
    text.resize(size > 0 ? static_cast<std::size_t>(size) - 1 : 0);
    return text;
}

// ---- Schemas --------------------------------------------------------------------------------------------

std::string hex_text(Value mask)
{
    std::string text;
    append_mask_text(text, mask, Form::number);
    return text;
}

void append_format(Json &to, const std::string &format)
{
    if (!format.empty())
        to.key("format").text(format);
}

void append_schema(Json &to, const std::vector<SchemaField> &key)
{
    to.open_array();
    for (const SchemaField &field : key) {
        to.open_object().key("field").text(field.display).key("member").text(field.name);
        to.key("width").number(field.width).key("mask").text(hex_text(field.mask));
        append_format(to, field.format);
        to.close_object();
    }
    to.close_array();
}

void append_schema(Json &to, const SchemaAction &action)
{
    to.key("action").text(action.name).key("parameters").open_array();
    for (const SchemaParameter &parameter : action.parameters) {
        to.open_object().key("parameter").text(parameter.name).key("width").number(parameter.width);
        append_format(to, parameter.format);
        to.close_object();
    }
    to.close_array();
}

void append_schema(Json &to, const std::vector<SchemaAction> &actions)
{
    to.open_array();
    for (const SchemaAction &action : actions) {
        to.open_object();
        append_schema(to, action);
        to.close_object();
    }
    to.close_array();
}

void print_schema(Session &session, const std::string &text, const std::function<void(Json &)> &append)
{
    Result result{session.json()};
    result.json(append).shown("schema", text);
    session.print(result.line("{schema}"));
}

void print_schema(Session &session, const TableFunctions &table)
{
    const std::string text = schema_text(table);
    print_schema(session, text, [&](Json &json) {
        const Schema schema = parse_table_schema(text);
        json.key("table").text(table.row->name).key("indirect").flag(schema.indirect);
        append_schema(json.key("key"), schema.key);
        append_schema(json.key("actions"), schema.actions);
    });
}

void print_schema(Session &session, const ProfileFunctions &profile)
{
    const std::string text = schema_text(profile);
    print_schema(session, text, [&](Json &json) {
        json.key("profile").text(profile.row->name);
        append_schema(json.key("actions"), parse_profile_schema(text).actions);
    });
}

void print_schema(Session &session, const pd::Action &action)
{
    const std::string text = reflection::action_texts()[action.number].schema();
    print_schema(session, text, [&](Json &json) { append_schema(json, parse_action_schema(text)); });
}

bool is_one_of(const std::vector<std::string_view> &names, std::string_view word)
{
    return std::ranges::find(names, word) != names.end();
}

// ---- Reading a value back -------------------------------------------------------------------------------

void parse(Session &session, const arg::TableOrProfile::Value &of, std::string_view text)
{
    if (text.empty())
        throw BadLine{text, "missing value text, such as 'value' prints"};
    while (is_blank(text.back()))
        text.remove_suffix(1);
    const ValueParser parser = of.profile ? ValueParser{*of.profile} : ValueParser{*of.table};
    const Subject subject{of.table, of.profile, 0};
    print_value(session, subject.kind(), subject.name(), of.table ? of.table->row : nullptr,
                parser.parse(text));
}

// ---- Commands -------------------------------------------------------------------------------------------

struct WithSchema {
    using Value = std::variant<const TableFunctions *, const ProfileFunctions *, const pd::Action *>;
    static void describe(Usage &usage) { usage.add({"TABLE", "PROFILE", "ACTION"}); }
    static Value read(Reading &reading);
};

WithSchema::Value WithSchema::read(Reading &reading)
{
    Words &words = reading.words;
    const std::string_view word = words.peek();
    if (const ProfileFunctions *profile = take_profile_if_named(words))
        return profile;
    const std::vector<std::string_view> tables = table_names();
    std::vector<std::string_view> names = all_action_names();
    if (is_one_of(names, word))
        return &take_any_action(words);
    if (!is_one_of(tables, word)) {
        names.insert(names.end(), tables.begin(), tables.end());
        refuse(word, {"table, action profile or action"}, names);
    }
    return &take_table(words);
}

void schema(Session &session, const WithSchema::Value &of)
{
    std::visit([&](const auto *row) { print_schema(session, *row); }, of);
}

void value(Session &session, const Subject &subject)
{
    print_text_of(session, subject, "value", value_of(subject, session.from_hardware()));
}

void print(Session &session, const Subject &subject)
{
    const Placement placement{subject.table ? subject.table->get_plcmt_data : subject.profile->get_plcmt_data,
                              subject.handle};
    const std::string text = printed_by([&](int fd) {
        return subject.table ? subject.table->text.plcmt_data_print(fd, 0, placement.data())
                             : subject.profile->adt_plcmt_data_print(fd, 0, placement.data());
    });
    print_text_of(session, subject, "text", text);
}

struct LabelledTable : arg::Table {
    static Value read(Reading &reading)
    {
        const std::string_view name = reading.words.peek();
        const TableFunctions &table = arg::Table::read(reading);
        if (table.text.stringify_counter_match_spec)
            return table;
        std::vector<std::string_view> labelled;
        for (const TableFunctions *other : reflection::tables())
            if (other->text.stringify_counter_match_spec)
                labelled.push_back(other->row->name);
        throw BadLine{name, std::string{table.row->name} + " has no labels, these have: " + listed(labelled)};
    }
};

void label(Session &session, const TableFunctions &table, const Cell &entry)
{
    const Subject subject{&table, nullptr, entry.find()};
    const std::string text = text_of([&](char *buffer) {
        return table.text.stringify_counter_match_spec(driver_session, static_cast<u8>(device.device_id),
                                                       subject.handle, buffer);
    });
    if (text.empty())
        expect_readable(subject, true);
    print_text_of(session, subject, "label", text.empty() && !session.json() ? "nothing to tell" : text);
}

constexpr std::string_view schema_help =
    R"(  The library's own description of key fields, actions and parameters; --json prints it taken apart.
)";

constexpr std::string_view value_help =
    R"(  ENTRY is a handle, a key or 'default', MEMBER a handle or name. --hw reads from the hardware.
  parse reads such a text back: an entry, a placement, a key, an action, a member or a reference. TEXT goes
  to the end of the line as it is, quotation marks and blanks included.
)";

constexpr std::string_view print_help =
    R"(  The library's lines for people, from placement data. ENTRY is a handle, a key or 'default'.
)";

constexpr std::string_view label_help =
    R"(  What the entry of a counted table matches on, as the hardware has it. ENTRY is a handle, a key or 'default'.
)";

constexpr Verb schema_verb[] = {
    verb<schema, WithSchema>("schema", "prints the schema text of a table, profile or action").reads()};
constexpr Verb value_verbs[] = {
    verb<value, EntryOrMember>("value", "prints an entry or member as value text").reads(),
    verb<parse, arg::TableOrProfile, arg::Rest<"TEXT">>("value parse", "reads such a text back").reads(),
};
constexpr Verb print_verb[] = {
    verb<print, EntryOrMember>("print", "prints an entry or member, one field a line").reads()};
constexpr Verb label_verb[] = {verb<label, LabelledTable, arg::Entry>(
                                   "label", "tells in words what an entry of a counted table matches on")
                                   .reads()};

} // namespace

const Command schema_command{schema_verb, schema_help, json_option};
const Command value_command{value_verbs, value_help, read_options,
                            "prints an entry or member as value text, or reads such a text"};
const Command print_command{print_verb, print_help, json_option};
const Command label_command{label_verb, label_help, json_option};

} // namespace shell
