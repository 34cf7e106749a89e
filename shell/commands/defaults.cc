// The commands around a table's default entry: default, reset.
#include <utility>

#include "commands.h"
#include "driver.h"
#include "entry_body.h"
#include "entry_reader.h"
#include "inverse.h"
#include "meters.h"
#include "replacement.h"
#include "verb_arguments.h"

namespace shell {

namespace {

using reflection::TableFunctions;

struct DefaultEntry {
    struct Value {
        Options options;
        std::optional<EntryBody> body; // none to read it
    };
    static void describe(Usage &usage)
    {
        usage.places.push_back({.alternatives = {":"}, .optional = true});
        usage.bodies = entry_bodies();
        describe_options(usage, {"meter"});
    }
    static Value read(Reading &reading)
    {
        Value given;
        if (reading.words.empty())
            return given;
        given.options.takes_meter = reading.table->row->direct_meter != 0;
        given.body.emplace(reading.session, reading.words, *reading.table, ActionOf::default_entry,
                           given.options);
        return given;
    }
};

void default_entry(Session &session, const TableFunctions &table, const DefaultEntry::Value &given)
{
    if (given.body) {
        session.expect_changes_allowed();
        std::string back = session.keeps_changes() ? default_back(session, table) : "";
        given.body->set_default(given.options);
        session.keep_change([&] { return back; });
        return;
    }
    EntryReader reader{table, session.from_hardware(), session.names(table)};
    reader.read_default();
    Result result{session.json()};
    reader.tell(result);
    session.print(result.line(reader.body()));
}

// In a file that tells a state.
void tell(Session &session, const TableFunctions &table, const DefaultEntry::Value &given)
{
    using enum Replacement::Change;
    Replacement &state = session.replacement();
    if (!given.body)
        throw BadLine{{}, "default without a colon tells no state"};
    if (!state.is_planning())
        return default_entry(session, table, given);
    EntryReader &reader = state.cover(table);
    reader.read_default();
    const std::string meter = given.options.meter ? meter_option(*given.options.meter) : "";
    const bool same = given.body->is_of(reader) &&
                      (!table.row->direct_meter || meter == meter_option(table, default_entry_of(table)));
    state.plan(same ? none : modify_it, [&] { return reader.body_text(); });
}

void reset(Session &session, const TableFunctions &table)
{
    std::string back = session.keeps_changes() ? default_back(session, table) : "";
    expect_success(table.reset_default_entry(driver_session, device));
    session.keep_change([&] { return back; });
}

// Likewise. Only of what no command sets, or of an entry that points at nothing, is known that it is so
// already.
void tell_reset(Session &session, const TableFunctions &table)
{
    using enum Replacement::Change;
    Replacement &state = session.replacement();
    if (!state.is_planning())
        return reset(session, table);
    EntryReader &reader = state.cover(table);
    if (!reader.names() && !pd::has_default_action(table.row->actions))
        return state.plan(none);
    reader.read_default();
    const bool same = reader.names() && reader.reference().handle == 0;
    state.plan(same ? none : modify_it, [&] { return reader.body_text(); });
}

constexpr std::string_view text =
    R"(  With a colon and an action, sets the default entry. Without meter=, a direct meter is detached from it.
)";

constexpr Verb default_verb[] = {verb<default_entry, arg::Table, DefaultEntry>(
                                     "default", "prints the default entry of a table, or sets it")
                                     .may_change()
                                     .can_be_taken_back()
                                     .tells_state(state<tell, arg::Table, DefaultEntry>)};
constexpr Verb reset_verb[] = {
    verb<reset, arg::Table>("reset", "gives a table the default entry of the switch program again")
        .can_be_taken_back()
        .tells_state(state<tell_reset, arg::Table>)};

} // namespace

const Command default_command{default_verb, text, read_options};
const Command reset_command{reset_verb};

} // namespace shell
