// The commands around entries that age: idle, clock.
#include "idle.h"

#include "columns.h"
#include "commands.h"
#include "driver.h"
#include "entry_key.h"
#include "entry_reader.h"
#include "json.h"
#include "model.h"
#include "settings.h"
#include "tables.h"
#include "verb_arguments.h"

namespace shell {

namespace {

using reflection::TableFunctions;

constexpr u32 idle_state = 0, active_state = 1;

// In the order of pd_idle_params. The mode is the one whose parameters are told.
constexpr Setting parameters[] = {{"mode", 32, 1},    {"param_1", 32, 0}, {"param_2", 32, 0},
                                  {"param_3", 32, 0}, {"param_4", 32, 0}, {"param_5", 32, 0}};

struct AgeingTable {
    using Value = const TableFunctions &;
    static void describe(Usage &usage) { usage.add({"TABLE"}); }
    static Value read(Reading &reading)
    {
        const std::string_view name = reading.words.peek();
        const TableFunctions &table = take_keyed_table(reading.words);
        if (!table.idle)
            throw BadLine{name, std::string{table.row->name} + " has entries that do not age"};
        reading.table = &table;
        reading.owner = table.row->name;
        return table;
    }
};

struct EntryAndTtl {
    using Value = std::pair<Cell, std::optional<u32>>;
    static void describe(Usage &usage)
    {
        arg::HandleOrKey::describe(usage);
        usage.places.push_back({.option = "ttl=", .value = "N", .optional = true});
    }
    static Value read(Reading &reading)
    {
        Options options;
        options.takes_ttl = true;
        Cell cell{reading.words, reading.table->row->name, reading.table, options};
        return {std::move(cell), options.ttl};
    }
};

void enable(Session &session, const TableFunctions &table, const std::vector<u64> &given)
{
    const auto word = [&](std::size_t i) { return static_cast<u32>(given[i]); };
    expect_success(table.idle->tmo_enable(driver_session, device.device_id,
                                          {word(0), word(1), word(2), word(3), word(4), word(5), 0}));
    session.idle_watches().add(table);
}

void disable(Session &session, const TableFunctions &table)
{
    expect_success(table.idle->tmo_disable(driver_session, device.device_id));
    session.idle_watches().remove(table);
}

void params(Session &session, const TableFunctions &table)
{
    pd_idle_params read{};
    expect_success(table.idle->params_get(driver_session, device.device_id, &read));
    const u32 values[] = {read.idle_mode,    read.idle_param_1, read.idle_param_2,
                          read.idle_param_3, read.idle_param_4, read.idle_param_5};
    std::string text, object;
    Json json{object};
    json.open_object().key("table").text(table.row->name);
    for (std::size_t i = 0; i < std::size(values); ++i) {
        if (i != 0)
            text += ' ';
        text += std::string{parameters[i].name} + '=' + std::to_string(values[i]);
        json.key(parameters[i].name).number(values[i]);
    }
    json.close_object();
    session.print(session.json() ? object : text);
}

struct Age {
    u32 ttl;
    bool active;
    const char *state() const { return active ? "active" : "idle"; }
};

Age age_of(const TableFunctions &table, pd_entry_hdl entry)
{
    u32 ttl = 0, state = 0;
    expect_success(table.idle->get_ttl(driver_session, device.device_id, entry, &ttl));
    expect_success(table.idle->get_hit_state(driver_session, device.device_id, entry, &state));
    return {ttl, state != idle_state};
}

void open_json(Json &to, const TableFunctions &table, pd_entry_hdl entry)
{
    to.open_object().key("table").text(table.row->name).key("entry").number(entry);
}

void append_json(Json &to, const Age &age)
{
    to.key("ttl").number(age.ttl).key("active").flag(age.active);
}

// With ttl=N, sets it.
void ttl(Session &session, const TableFunctions &table, const EntryAndTtl::Value &given)
{
    const pd_entry_hdl entry = given.first.find();
    if (given.second) {
        session.expect_changes_allowed();
        return expect_success(table.idle->set_ttl(driver_session, device.device_id, entry, *given.second));
    }
    const Age age = age_of(table, entry);
    std::string line = "ttl=" + std::to_string(age.ttl) + ", " + age.state();
    if (session.json()) {
        line.clear();
        Json json{line};
        open_json(json, table, entry);
        append_json(json, age);
        json.close_object();
    }
    session.print(line);
}

void restart(Session &, const TableFunctions &table, const Cell &entry)
{
    expect_success(table.idle->reset_ttl(driver_session, device.device_id, entry.find()));
}

template <u32 state>
void set_state(Session &, const TableFunctions &table, const Cell &entry)
{
    expect_success(table.idle->update_hit_state(driver_session, device.device_id, entry.find(), state));
}

std::string_view list_line(Columns &columns, std::string_view entry, std::string_view ttl,
                           std::string_view state, std::string_view key)
{
    columns.begin();
    columns.cell(entry, Columns::digits, Columns::Aligned::right);
    columns.cell(ttl, Columns::digits, Columns::Aligned::right);
    columns.cell(state, sizeof "active" - 1, Columns::Aligned::left);
    columns.cell(key, 0, Columns::Aligned::left);
    return columns.end();
}

void show(Session &session, const TableFunctions &table)
{
    EntryReader reader{table, false, session.names(table)};
    Columns columns;
    if (!session.json())
        session.print(list_line(columns, "entry", "ttl", "state", "key"));
    std::string line;
    reader.walk([&] {
        const Age age = age_of(table, reader.handle());
        line.clear();
        if (!session.json()) {
            reader.append_key(line);
            return session.print(list_line(columns, std::to_string(reader.handle()), std::to_string(age.ttl),
                                           age.state(), line));
        }
        Json json{line};
        open_json(json, table, reader.handle());
        append_json(json, age);
        reader.append_key(json);
        json.close_object();
        session.print(line);
    });
}

constexpr std::string_view text =
    R"(  An entry without a time to live does not age.
)";

constexpr Verb verbs[] = {
    verb<enable, AgeingTable, arg::Settings<parameters>>("idle enable",
                                                         "lets entries age; clock tells which ran idle")
        .not_in_console("the idle entries are told to the control plane"),
    verb<disable, AgeingTable>("idle disable", "ends that")
        .not_in_console("the idle entries are told to the control plane"),
    verb<params, AgeingTable>("idle params", "prints what enable was given").reads(),
    verb<show, AgeingTable>("idle show", "lists the entries with time to live and state").reads(),
    verb<ttl, AgeingTable, EntryAndTtl>("idle ttl", "prints the time to live and the state, or sets the time")
        .may_change(),
    verb<restart, AgeingTable, arg::HandleOrKey>("idle restart", "lets the time to live begin again"),
    verb<set_state<active_state>, AgeingTable, arg::HandleOrKey>("idle hit", "makes the entry active"),
    verb<set_state<idle_state>, AgeingTable, arg::HandleOrKey>("idle expire", "makes the entry idle"),
};

void print_expired(Session &session, const TableFunctions &table, pd_entry_hdl entry)
{
    EntryReader reader{table, false, session.names(table)};
    reader.read(entry);
    std::string line;
    if (session.json()) {
        Json json{line};
        json.open_object().key("idle").text(table.row->name).key("entry").number(entry);
        reader.append_key(json);
        json.close_object();
    } else {
        line = std::string{table.row->name} + ": entry " + std::to_string(entry) + " ran idle: ";
        reader.append_key(line);
    }
    session.print(line);
}

} // namespace

void IdleWatches::add(const TableFunctions &table)
{
    const auto keep = [](u32, u32 table_handle, pd_entry_hdl entry, pd_word cookie) {
        reinterpret_cast<IdleWatches *>(cookie)->expired_.emplace_back(reflection::find_table(table_handle),
                                                                       entry);
    };
    expect_success(
        table.idle->register_tmo_cb(driver_session, device.device_id, keep, reinterpret_cast<pd_word>(this)));
    tables_.insert(&table);
}

void IdleWatches::remove(const TableFunctions &table)
{
    if (tables_.erase(&table) != 0)
        expect_success(table.idle->register_tmo_cb(driver_session, device.device_id, nullptr, 0));
}

void IdleWatches::clear()
{
    for (const TableFunctions *table : tables_)
        table->idle->register_tmo_cb(driver_session, device.device_id, nullptr, 0);
    tables_.clear();
}

const Command idle_command{verbs, text, json_option, "the ageing of entries"};

namespace {

void clock(Session &session, u32 ticks)
{
    expect_success(ts_model_advance_clock(device.device_id, ticks));
    for (const auto &[table, entry] : session.idle_watches().take_expired()) {
        expect_no_stop_signal();
        print_expired(session, *table, entry);
    }
}

constexpr Verb clock_verb[] = {verb<clock, arg::Number<"TICKS", "number of ticks">>(
    "clock", "lets time pass, and tells which entries ran idle")};

} // namespace

const Command clock_command{clock_verb, {}, json_option};

} // namespace shell
