// The pvs command: the entries of parser value sets.
#include <cstddef>

#include "columns.h"
#include "commands.h"
#include "driver.h"
#include "json.h"
#include "named.h"
#include "options.h"
#include "services.h"
#include "settings.h"
#include "shown.h"
#include "verbs.h"

namespace shell {

namespace {

using reflection::ValueSetFunctions;
using ValueSetVerb = void(Session &session, Words &words, const ValueSetFunctions &set);

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

// Takes the rest of the command: the key, and the scope if `options` takes one.
Key take_key(Words &words, const ValueSetFunctions &set, Options &options)
{
    pd::Table row{};
    row.name = set.row->name;
    row.key = key_fields;
    row.record_size = sizeof(Key);
    Record record{row, KeyOf::entry};
    take_assignments(words, record, row.name, options);
    words.expect_end();
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

u32 take_entry(Words &words)
{
    return parse_u32(words.take("entry handle"), ~u32{0}, "entry handle");
}

void print_entry(Session &session, const ValueSetFunctions &set, u32 entry)
{
    std::string line = "entry " + std::to_string(entry);
    if (session.json()) {
        line.clear();
        Json{line}.open_object().key("set").text(set.row->name).key("entry").number(entry).close_object();
    }
    session.print(line);
}

void add(Session &session, Words &words, const ValueSetFunctions &set)
{
    Options options = scoped();
    const Key key = take_key(words, set, options);
    const ValueSetScope scope = options.scope.value_or(ValueSetScope{});
    u32 entry = 0;
    expect_success(set.entry_add(driver_session, device.device_id, scope.a, scope.b, scope.c, key.value,
                                 key.mask, &entry));
    if (session.verbose())
        print_entry(session, set, entry);
}

void modify(Session &, Words &words, const ValueSetFunctions &set)
{
    const u32 entry = take_entry(words);
    Options none;
    const Key key = take_key(words, set, none);
    expect_success(set.entry_modify(driver_session, device.device_id, entry, key.value, key.mask));
}

void remove(Session &, Words &words, const ValueSetFunctions &set)
{
    const u32 entry = take_entry(words);
    words.expect_end();
    expect_success(set.entry_delete(driver_session, device.device_id, entry));
}

void find(Session &session, Words &words, const ValueSetFunctions &set)
{
    Options options = scoped();
    const Key key = take_key(words, set, options);
    const ValueSetScope scope = options.scope.value_or(ValueSetScope{});
    u32 entry = 0;
    expect_success(set.entry_handle_get(driver_session, device.device_id, scope.a, scope.b, scope.c,
                                        key.value, key.mask, &entry));
    print_entry(session, set, entry);
}

std::string json_line(const ValueSetFunctions &set, u32 entry, const std::vector<ShownField> &fields,
                      const Key &key)
{
    std::string line;
    Json json{line};
    json.open_object().key("set").text(set.row->name).key("entry").number(entry);
    append_json(json.key("key"), fields[0], &key);
    json.close_object();
    return line;
}

// The entries of one scope.
void show(Session &session, Words &words, const ValueSetFunctions &set)
{
    Options options = scoped();
    Record nothing{pd::Action{set.row->name, 0, {}, 0}};
    take_assignments(words, nothing, set.row->name, options);
    words.expect_end();
    const ValueSetScope scope = options.scope.value_or(ValueSetScope{});
    pd::Table row{};
    row.key = key_fields;
    const std::vector<ShownField> fields = shown_fields(row);
    Columns columns;
    const auto print = [&](std::string_view entry, std::string_view key) {
        columns.begin();
        columns.cell(entry, Columns::digits, Columns::Aligned::right);
        columns.cell(key, 0, Columns::Aligned::left);
        session.print(columns.end());
    };
    if (!session.json())
        print("entry", "key");
    walk_handles(
        [&](u32 *to) {
            return set.entry_get_first_entry_handle(driver_session, device.device_id, scope.a, scope.b,
                                                    scope.c, to);
        },
        [&](u32 after, u32 count, u32 *to) {
            return set.entry_get_next_entry_handles(driver_session, device.device_id, scope.a, scope.b,
                                                    scope.c, after, count, to);
        },
        [&](u32 entry) {
            Key key{};
            expect_success(set.entry_get(driver_session, device.device_id, entry, &key.value, &key.mask));
            if (session.json())
                return session.print(json_line(set, entry, fields, key));
            std::string text;
            append_text(text, fields[0], &key);
            print(std::to_string(entry), text);
        });
}

// Without a value, reads it.
void property(Session &session, Words &words, const ValueSetFunctions &set)
{
    static constexpr Setting settings[] = {{"argument", 32, 0}};
    const u32 number = parse_u32(words.take("property number"), ~u32{0}, "property number");
    const bool writes = !words.empty() && words.peek().find('=') == std::string_view::npos;
    u32 value = writes ? parse_u32(words.take(), ~u32{0}, "value") : 0;
    const auto argument = static_cast<u32>(take_settings(words, set.row->name, settings)[0]);
    if (writes)
        return expect_success(set.set_property(driver_session, device.device_id, number, value, argument));
    expect_success(set.get_property(driver_session, device.device_id, number, &value, argument));
    std::string line = "property " + std::to_string(number) + ": " + std::to_string(value);
    if (session.json()) {
        line.clear();
        Json json{line};
        json.open_object().key("set").text(set.row->name).key("property").number(number);
        json.key("argument").number(argument).key("value").number(value).close_object();
    }
    session.print(line);
}

constexpr Verb<ValueSetVerb> verbs[] = {{"add", add},   {"modify", modify}, {"delete", remove},
                                        {"find", find}, {"show", show},     {"property", property}};

} // namespace

void run_pvs(Session &session, Words &words)
{
    ValueSetVerb *const run = take_verb<ValueSetVerb>(words, verbs);
    run(session, words, take_named(words, reflection::value_sets(), "value set"));
}

} // namespace shell
