// A file that tells the state of tables, beside the state that they have: what is to be added, modified and
// deleted. Its commands are gone over twice: first to plan, which changes nothing, then to carry out those
// that change something.
#pragma once

#include <map>
#include <string>
#include <unordered_set>
#include <vector>

#include "entry_reader.h"
#include "profile_plan.h"
#include "reflection.h"

namespace shell {

class Session;

class Replacement {
public:
    enum class Change : u8 { none, add_it, modify_it };

    // `only_shown`: the plan is printed, and that is all.
    Replacement(Session &session, bool only_shown);
    Replacement(const Replacement &) = delete;
    Replacement &operator=(const Replacement &) = delete;

    bool is_planning() const { return is_planning_; }
    bool is_only_shown() const { return only_shown_; }
    // Goes on to the next command of the file; false where nothing is left to do for it.
    bool takes_next_command();
    // Of the command at hand, when it is carried out.
    Change change() const { return changes_[command_]; }
    // Of the command at hand, while planning.
    void plan(Change change)
    {
        plan(change, [] { return std::string{}; });
    }
    // `now` gives what there is instead.
    template <typename Now>
    void plan(Change change, Now now)
    {
        changes_[command_] = change;
        if (only_shown_ && change != Change::none)
            show(change == Change::add_it ? '+' : '~', session_command(), now());
    }

    // The file tells the entries of the table, which the reader reads.
    EntryReader &cover(const reflection::TableFunctions &table) { return plan_of(table).reader; }
    // An entry that there is stays. BadLine where the file has told of it before.
    void keep(const reflection::TableFunctions &table, pd_entry_hdl entry);
    // The file tells the members and groups of the profile.
    ProfilePlan &covered(const reflection::ProfileFunctions &profile);

    // What is in the way of the commands goes; they can be carried out after that.
    void begin_changes();
    // What is left over goes. Prints how much was changed.
    void finish_changes();

private:
    struct TablePlan {
        TablePlan(const reflection::TableFunctions &table, Session &session);

        EntryReader reader;
        std::unordered_set<pd_entry_hdl> kept;
    };

    TablePlan &plan_of(const reflection::TableFunctions &table);
    void drop_entries(const reflection::TableFunctions &table, TablePlan &plan);
    const std::string &session_command() const;
    void show(char sign, const std::string &text, const std::string &now = {});
    ProfilePlan::Make changer();

    Session &session_;
    const bool only_shown_;
    const bool as_json_; // the commands of the file have option words of their own
    bool is_planning_ = true;
    std::vector<Change> changes_; // of each command
    std::size_t command_ = 0;
    std::size_t next_ = 0;
    u64 modified_ = 0, deleted_ = 0; // by no command of the file
    std::map<const reflection::TableFunctions *, TablePlan> tables_;
    std::map<const reflection::ProfileFunctions *, ProfilePlan> profiles_;
};

} // namespace shell
