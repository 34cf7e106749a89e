// The commands around entries that age: idle, clock.
#include "idle.h"

#include "commands.h"
#include "driver.h"
#include "entry_key.h"
#include "entry_reader.h"
#include "list.h"
#include "model.h"
#include "replacement.h"
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
    Result result{session.json()};
    result.text("table", table.row->name);
    for (std::size_t i = 0; i < std::size(values); ++i)
        result.number(parameters[i].name, values[i]);
    session.print(result.line(sentence_of(parameters)));
}

struct Age {
    u32 ttl;
    bool active;
};

Age age_of(const TableFunctions &table, pd_entry_hdl entry)
{
    u32 ttl = 0, state = 0;
    expect_success(table.idle->get_ttl(driver_session, device.device_id, entry, &ttl));
    expect_success(table.idle->get_hit_state(driver_session, device.device_id, entry, &state));
    return {ttl, state != idle_state};
}

void tell(Result &to, const Age &age)
{
    to.number("ttl", age.ttl).flag("active", age.active).shown("state", age.active ? "active" : "idle");
}

// With ttl=N, sets it.
void ttl(Session &session, const TableFunctions &table, const EntryAndTtl::Value &given)
{
    const pd_entry_hdl entry = given.first.find();
    if (given.second) {
        session.expect_changes_allowed();
        return expect_success(table.idle->set_ttl(driver_session, device.device_id, entry, *given.second));
    }
    Result result{session.json()};
    result.text("table", table.row->name).number("entry", entry);
    tell(result, age_of(table, entry));
    session.print(result.line("ttl={ttl}, {state}"));
}

// In a file that tells a state.
void tell_ttl(Session &session, const TableFunctions &table, const EntryAndTtl::Value &given)
{
    using enum Replacement::Change;
    Replacement &state = session.replacement();
    if (!given.second)
        throw BadLine{{}, "idle ttl without ttl=N tells no state"};
    if (!state.is_planning())
        return ttl(session, table, given);
    const pd_entry_hdl entry = given.first.find_if_any();
    state.plan(entry != 0 && age_of(table, entry).ttl == *given.second ? none : modify_it);
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

void show(Session &session, const TableFunctions &table)
{
    EntryReader reader{table, false, session.names(table)};
    List list{session,
              {{"entry", Column::digits, to_the_right},
               {"ttl", Column::digits, to_the_right},
               {"state", sizeof "active" - 1},
               {"key"}}};
    const auto print = [&] {
        Result &row = list.row();
        row.text("table", table.row->name).number("entry", reader.handle());
        tell(row, age_of(table, reader.handle()));
        reader.tell_key(row);
        list.end_row();
    };
    list.fill([&] { reader.walk(print); });
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
    verb<show, AgeingTable>("idle show", "lists the entries with time to live and state").lists(),
    verb<ttl, AgeingTable, EntryAndTtl>("idle ttl", "prints the time to live and the state, or sets the time")
        .may_change()
        .tells_state(state<tell_ttl, AgeingTable, EntryAndTtl>),
    verb<restart, AgeingTable, arg::HandleOrKey>("idle restart", "lets the time to live begin again"),
    verb<set_state<active_state>, AgeingTable, arg::HandleOrKey>("idle hit", "makes the entry active"),
    verb<set_state<idle_state>, AgeingTable, arg::HandleOrKey>("idle expire", "makes the entry idle"),
};

void print_expired(Session &session, const TableFunctions &table, pd_entry_hdl entry)
{
    EntryReader reader{table, false, session.names(table)};
    reader.read(entry);
    Result result{session.json()};
    result.text("idle", table.row->name).number("entry", entry);
    reader.tell_key(result);
    session.print(result.line("{idle}: entry {entry} ran idle: {key}"));
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

const Command idle_command{verbs, text, list_options, "the ageing of entries"};

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
