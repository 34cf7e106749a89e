#include "watches.h"

#include <algorithm>

#include "commands.h"
#include "driver.h"
#include "model.h"
#include "shown_reference.h"
#include "verb_arguments.h"

namespace shell {

namespace {

struct Change {
    const char *word;     // in JSON
    const char *sentence; // behind the entry
    bool of_default;
};

Change change_of(u32 kind)
{
    switch (kind) {
    case TS_MODEL_ENTRY_ADDED:
        return {"added", "added", false};
    case TS_MODEL_ENTRY_MODIFIED:
        return {"modified", "modified", false};
    case TS_MODEL_ENTRY_DELETED:
        return {"deleted", "deleted", false};
    case TS_MODEL_DEFAULT_SET:
        return {"default_set", "set", true};
    default:
        return {"default_reset", "reset", true};
    }
}

// Null where the entry carries no action.
const char *action_name(const pd::Table &table, u32 handle)
{
    const auto used = std::ranges::find(table.actions, handle, &pd::Binding::handle);
    return used == table.actions.end() ? nullptr : used->action->name;
}

// What an entry of an action profile's table points at.
Object reference(const ts_model_entry &entry)
{
    switch (entry.action_kind) {
    case PIPE_ACTION_MEMBER:
        return {Kind::member, entry.handle_of_member_or_group};
    case PIPE_ACTION_GROUP:
        return {Kind::group, entry.handle_of_member_or_group};
    default:
        return {Kind::member, 0};
    }
}

// `names` is null for a table whose entries carry their action.
std::string update_line(bool as_json, const pd::Table &table, const ts_model_update &news,
                        const ProfileNames *names)
{
    const Change change = change_of(news.kind);
    Result result{as_json};
    result.text("update", change.word).text("table", table.name).shown("change", change.sentence);
    if (!change.of_default)
        result.number("entry", news.entry);
    const char *const action = names ? nullptr : action_name(table, news.action);
    if (names)
        tell(result, *names, reference(news.contents));
    else if (action)
        result.text("action", action);
    std::string sentence =
        change.of_default ? "{table}: default entry {change}" : "{table}: entry {entry} {change}";
    if (names)
        sentence += ": {points at}";
    else if (action)
        sentence += ": {action}";
    return result.line(sentence);
}

void print_update(u32, u32 table_handle, const void *update, pd_word cookie)
{
    auto &session = *reinterpret_cast<Session *>(cookie);
    const auto &news = *static_cast<const ts_model_update *>(update);
    const reflection::TableFunctions &table = *reflection::find_table(table_handle);
    session.print_behind(update_line(session.json(), *table.row, news, session.names(table)));
}

} // namespace

void Watches::add(const reflection::TableFunctions &table)
{
    if (tables_.contains(&table))
        return; // a second registration would tell each update twice
    expect_success(table.register_mat_update_cb(driver_session, device.device_id, print_update,
                                                reinterpret_cast<pd_word>(&session_)));
    tables_.insert(&table);
}

void Watches::remove(const reflection::TableFunctions &table)
{
    if (!tables_.contains(&table))
        return;
    expect_success(table.register_mat_update_cb(driver_session, device.device_id, nullptr, 0));
    tables_.erase(&table);
}

void Watches::clear()
{
    for (const reflection::TableFunctions *table : tables_)
        table->register_mat_update_cb(driver_session, device.device_id, nullptr, 0);
    tables_.clear();
}

namespace {

void watch(Session &session, const reflection::TableFunctions &table, std::optional<bool> on)
{
    if (on.value_or(true))
        session.watches().add(table);
    else
        session.watches().remove(table);
}

constexpr Verb verbs[] = {verb<watch, arg::Table, arg::Optional<arg::OnOff>>(
                              "watch", "prints the updates of a table behind the commands that make them")
                              .not_in_console("the updates go to the control plane")};

} // namespace

const Command watch_command{verbs};

} // namespace shell
