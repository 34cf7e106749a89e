// The pvs command: the entries of parser value sets.
#include <cstddef>

#include "commands.h"
#include "driver.h"
#include "list.h"
#include "named.h"
#include "options.h"
#include "services.h"
#include "settings.h"
#include "verb_arguments.h"

namespace shell {

namespace {

using reflection::ValueSetFunctions;

struct Key {
    u32 value;
    u32 mask;
};

constexpr pd::Field key_fields[] = {{"key",
                                     "key",
                                     "mask",
                                     offsetof(Key, value),
                                     offsetof(Key, mask),
                                     32,
                                     pd::Match::ternary,
                                     pd::Format::none,
                                     {},
                                     false}};

// The key, and the scope if `options` takes one.
Key take_key(Reading &reading, Options &options)
{
    pd::Table row{};
    row.name = reading.owner;
    row.key = key_fields;
    row.record_size = sizeof(Key);
    Record record{row, KeyOf::entry};
    take_assignments(reading.words, record, row.name, options);
    Key key = *static_cast<const Key *>(record.data());
    key.value &= key.mask;
    return key;
}

Options scoped()
{
    Options options;
    options.takes_scope = true;
    return options;
}

using Entry = arg::Number<"HANDLE", "entry handle">;

struct LoneKey {
    using Value = Key;
    static void describe(Usage &usage) { usage.places.push_back({.option = "key=", .value = "VALUE"}); }
    static Value read(Reading &reading)
    {
        Options none;
        return take_key(reading, none);
    }
};

struct Scope {
    using Value = ValueSetScope;
    static void describe(Usage &usage) { describe_options(usage, {"scope"}); }
    static Value read(Reading &reading)
    {
        Options options = scoped();
        Record nothing{pd::Action{reading.owner, 0, {}, 0}};
        take_assignments(reading.words, nothing, reading.owner, options);
        return options.scope.value_or(ValueSetScope{});
    }
};

struct ScopedKey {
    using Value = std::pair<Key, ValueSetScope>;
    static void describe(Usage &usage)
    {
        LoneKey::describe(usage);
        Scope::describe(usage);
    }
    static Value read(Reading &reading)
    {
        Options options = scoped();
        const Key key = take_key(reading, options);
        return {key, options.scope.value_or(ValueSetScope{})};
    }
};

void print_entry(Session &session, const ValueSetFunctions &set, u32 entry)
{
    Result result{session.json()};
    result.text("set", set.row->name).number("entry", entry);
    session.print(result.line("entry {entry}"));
}

void add(Session &session, const ValueSetFunctions &set, const ScopedKey::Value &given)
{
    const auto &[key, scope] = given;
    u32 entry = 0;
    expect_success(set.entry_add(driver_session, device.device_id, scope.a, scope.b, scope.c, key.value,
                                 key.mask, &entry));
    if (session.verbose())
        print_entry(session, set, entry);
}

void modify(Session &, const ValueSetFunctions &set, u32 entry, const Key &key)
{
    expect_success(set.entry_modify(driver_session, device.device_id, entry, key.value, key.mask));
}

void remove(Session &, const ValueSetFunctions &set, u32 entry)
{
    expect_success(set.entry_delete(driver_session, device.device_id, entry));
}

void find(Session &session, const ValueSetFunctions &set, const ScopedKey::Value &given)
{
    const auto &[key, scope] = given;
    u32 entry = 0;
    expect_success(set.entry_handle_get(driver_session, device.device_id, scope.a, scope.b, scope.c,
                                        key.value, key.mask, &entry));
    print_entry(session, set, entry);
}

// The entries of one scope.
void show(Session &session, const ValueSetFunctions &set, const ValueSetScope &scope)
{
    pd::Table row{};
    row.key = key_fields;
    const std::vector<ShownField> fields = shown_fields(row);
    List list{session, {{"entry", Column::digits, to_the_right}, {"key"}}};
    const auto first = [&](u32 *to) {
        return set.entry_get_first_entry_handle(driver_session, device.device_id, scope.a, scope.b, scope.c,
                                                to);
    };
    const auto next = [&](u32 after, u32 count, u32 *to) {
        return set.entry_get_next_entry_handles(driver_session, device.device_id, scope.a, scope.b, scope.c,
                                                after, count, to);
    };
    const auto print = [&](u32 entry) {
        Key key{};
        expect_success(set.entry_get(driver_session, device.device_id, entry, &key.value, &key.mask));
        list.row().text("set", set.row->name).number("entry", entry).field(fields.front(), &key);
        list.end_row();
    };
    list.fill([&] { walk_handles(first, next, print); });
}

constexpr Setting property_settings[] = {{"argument", 32, 0}};

// What a property is to be, if that is told before the settings.
struct NewValue {
    using Value = std::optional<u32>;
    static void describe(Usage &usage)
    {
        usage.add({"VALUE"});
        usage.places.back().optional = true;
    }
    static Value read(Reading &reading)
    {
        const std::string_view word = reading.words.peek();
        if (word.empty() || word.find('=') != std::string_view::npos)
            return {};
        return parse_u32(reading.words.take(), ~u32{0}, "value");
    }
};

// Without a value, reads it.
void property(Session &session, const ValueSetFunctions &set, u32 number, std::optional<u32> wanted,
              const std::vector<u64> &settings)
{
    const auto argument = static_cast<u32>(settings[0]);
    if (wanted) {
        session.expect_changes_allowed();
        return expect_success(set.set_property(driver_session, device.device_id, number, *wanted, argument));
    }
    u32 value = 0;
    expect_success(set.get_property(driver_session, device.device_id, number, &value, argument));
    Result result{session.json()};
    result.text("set", set.row->name).number("property", number);
    result.number("argument", argument).number("value", value);
    session.print(result.line("property {property}: {value}"));
}

using Number = arg::Number<"NUMBER", "property number">;

constexpr std::string_view text =
    R"(  VALUE of a key is written like that of a ternary field. A scope that is left out is 0,0,0.
)";

constexpr Verb verbs[] = {
    verb<add, arg::ValueSet, ScopedKey>("pvs add", "adds an entry; the handle is printed as by add"),
    verb<modify, arg::ValueSet, Entry, LoneKey>("pvs modify", "gives it another key"),
    verb<remove, arg::ValueSet, Entry>("pvs delete", "deletes it"),
    verb<find, arg::ValueSet, ScopedKey>("pvs find", "prints the handle of the entry with this key").reads(),
    verb<show, arg::ValueSet, Scope>("pvs show", "lists the entries of the scope").lists(),
    verb<property, arg::ValueSet, Number, NewValue, arg::Settings<property_settings>>(
        "pvs property", "prints a property, or sets it")
        .may_change(),
};

} // namespace

const Command pvs_command{verbs, text, list_options, "the entries of parser value sets"};

} // namespace shell
