#include "watches.h"

#include <algorithm>

#include "commands.h"
#include "driver.h"
#include "json.h"
#include "model.h"
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
std::string update_json(const pd::Table &table, const Change &change, const ts_model_update &news,
                        const ProfileNames *names)
{
    std::string line;
    Json json{line};
    json.open_object().key("update").text(change.word).key("table").text(table.name);
    if (!change.of_default)
        json.key("entry").number(news.entry);
    if (names)
        append_json(json, *names, reference(news.contents));
    else if (const char *action = action_name(table, news.action))
        json.key("action").text(action);
    json.close_object();
    return line;
}

std::string update_text(const pd::Table &table, const Change &change, const ts_model_update &news,
                        const ProfileNames *names)
{
    std::string line = std::string{table.name} + ": ";
    line += change.of_default ? "default entry" : "entry " + std::to_string(news.entry);
    line += std::string{" "} + change.sentence;
    if (names)
        line += ": " + names->text_of(reference(news.contents));
    else if (const char *action = action_name(table, news.action))
        line += std::string{": "} + action;
    return line;
}

void print_update(u32, u32 table_handle, const void *update, pd_word cookie)
{
    auto &session = *reinterpret_cast<Session *>(cookie);
    const auto &news = *static_cast<const ts_model_update *>(update);
    const reflection::TableFunctions &table = *reflection::find_table(table_handle);
    const auto describe = session.json() ? update_json : update_text;
    session.print_behind(describe(*table.row, change_of(news.kind), news, session.names(table)));
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
