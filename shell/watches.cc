#include "watches.h"

#include <algorithm>

#include "commands.h"
#include "driver.h"
#include "json.h"
#include "model.h"
#include "tables.h"

namespace shell {

namespace {

struct Kind {
    const char *word;     // in JSON
    const char *sentence; // behind the entry
    bool of_default;
};

Kind kind_of(u32 kind)
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

// Null where entries name no action.
const char *action_name(const pd::Table &table, u32 handle)
{
    const auto used = std::ranges::find(table.actions, handle, &pd::Binding::handle);
    return used == table.actions.end() ? nullptr : used->action->name;
}

std::string update_json(const pd::Table &table, const Kind &kind, pd_entry_hdl entry, const char *action)
{
    std::string line;
    Json json{line};
    json.open_object().key("update").text(kind.word).key("table").text(table.name);
    if (!kind.of_default)
        json.key("entry").number(entry);
    if (action)
        json.key("action").text(action);
    json.close_object();
    return line;
}

std::string update_text(const pd::Table &table, const Kind &kind, pd_entry_hdl entry, const char *action)
{
    std::string line = std::string{table.name} + ": ";
    line += kind.of_default ? "default entry" : "entry " + std::to_string(entry);
    line += std::string{" "} + kind.sentence;
    if (action)
        line += std::string{": "} + action;
    return line;
}

void print_update(u32, u32 table_handle, const void *update, pd_word cookie)
{
    auto &session = *reinterpret_cast<Session *>(cookie);
    const auto &news = *static_cast<const ts_model_update *>(update);
    const pd::Table &table = *reflection::find_table(table_handle)->row;
    const auto describe = session.json() ? update_json : update_text;
    session.print_behind(describe(table, kind_of(news.kind), news.entry, action_name(table, news.action)));
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

void run_watch(Session &session, Words &words)
{
    const reflection::TableFunctions &table = take_table(words);
    const bool on = words.empty() || take_on_off(words);
    words.expect_end();
    if (on)
        session.watches().add(table);
    else
        session.watches().remove(table);
}

} // namespace shell
