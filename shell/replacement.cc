#include "replacement.h"

#include <algorithm>

#include "driver.h"
#include "progress.h"
#include "result.h"
#include "session.h"
#include "tables.h"

namespace shell {

using reflection::ProfileFunctions;
using reflection::TableFunctions;

Replacement::Replacement(Session &session, bool only_shown)
    : session_(session), only_shown_(only_shown), as_json_(session.json())
{
}

bool Replacement::takes_next_command()
{
    command_ = next_++;
    if (is_planning_)
        changes_.push_back(Change::none);
    else if (command_ >= changes_.size())
        throw BadLine{{}, "the plan has no such command: say the same ones again"};
    return is_planning_ || changes_[command_] != Change::none;
}

const std::string &Replacement::session_command() const
{
    return session_.command();
}

void Replacement::keep(const TableFunctions &table, pd_entry_hdl entry)
{
    if (!plan_of(table).kept.insert(entry).second)
        throw BadLine{{}, "the file tells of this entry twice"};
}

Replacement::TablePlan::TablePlan(const TableFunctions &table, Session &session)
    : reader(table, false, session.names(table))
{
}

Replacement::TablePlan &Replacement::plan_of(const TableFunctions &table)
{
    return tables_.try_emplace(&table, table, session_).first->second;
}

ProfilePlan &Replacement::covered(const ProfileFunctions &profile)
{
    return profiles_.try_emplace(&profile, profile, session_.names(profile)).first->second;
}

void Replacement::begin_changes()
{
    is_planning_ = false;
    next_ = 0;
    for (auto &[profile, plan] : profiles_)
        plan.end_planning(!only_shown_);
    for (auto &[table, plan] : tables_)
        if (!table->row->key.empty())
            drop_entries(*table, plan);
    for (auto &[profile, plan] : profiles_)
        plan.make_room(changer());
}

void Replacement::finish_changes()
{
    for (auto &[profile, plan] : profiles_)
        plan.clear_up(changer());
    const auto commands = [&](Change change) {
        return static_cast<u64>(std::ranges::count(changes_, change));
    };
    Result result{as_json_};
    result.number("added", commands(Change::add_it))
        .number("modified", commands(Change::modify_it) + modified_);
    result.number("deleted", deleted_).number("the_same", commands(Change::none));
    session_.print(
        result.line("added: {added}, modified: {modified}, deleted: {deleted}, the same: {the_same}"));
}

// They are walked over before the first one goes.
void Replacement::drop_entries(const TableFunctions &table, TablePlan &plan)
{
    std::vector<pd_entry_hdl> dropped;
    walk_entries(table, [&](pd_entry_hdl entry) {
        if (!plan.kept.contains(entry))
            dropped.push_back(entry);
    });
    Progress progress{walk_terminal, dropped.size(), Progress::From::second_second};
    for (const pd_entry_hdl entry : dropped) {
        expect_no_stop_signal();
        progress.advance();
        ++deleted_;
        if (only_shown_) {
            plan.reader.read(entry);
            show('-', plan.reader.command());
        } else {
            expect_success(table.table_delete(driver_session, device.device_id, entry));
        }
    }
}

ProfilePlan::Make Replacement::changer()
{
    return [this](char sign, const std::string &text, const std::function<void()> &carry_out) {
        ++(sign == '-' ? deleted_ : modified_);
        only_shown_ ? show(sign, text) : carry_out();
    };
}

void Replacement::show(char sign, const std::string &text, const std::string &now)
{
    Result result{as_json_};
    result.text("change", sign == '+' ? "add" : sign == '-' ? "delete" : "modify").text("command", text);
    if (!now.empty())
        result.text("now", now);
    const std::string sentence = std::string{sign} + " {command}";
    session_.print(result.line(now.empty() ? sentence : sentence + " # now {now}"));
}

} // namespace shell
