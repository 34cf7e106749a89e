// Emptying tables and action profiles, and how much tables hold.
#include <vector>

#include "commands.h"
#include "driver.h"
#include "model.h"
#include "progress.h"
#include "result.h"
#include "verb_arguments.h"

namespace shell {

namespace {

using reflection::ProfileFunctions;
using reflection::TableFunctions;

// What goes away while one walks over it is walked over first.
template <typename Walk>
std::vector<u32> handles_of(Walk walk)
{
    std::vector<u32> handles;
    walk([&](u32 handle) { handles.push_back(handle); });
    return handles;
}

void clear_table(const TableFunctions &table)
{
    if (table.table_delete) {
        const std::vector<u32> entries = handles_of([&](auto visit) { walk_entries(table, visit); });
        Progress progress{walk_terminal, entries.size(), Progress::From::second_second};
        for (const u32 entry : entries) {
            expect_no_stop_signal();
            expect_success(table.table_delete(driver_session, device.device_id, entry));
            progress.advance();
        }
    }
    expect_success(table.reset_default_entry(driver_session, device));
}

void clear_profile(const ProfileFunctions &profile, ProfileNames &names)
{
    expect_success(profile.reset_fallback_member(driver_session, device));
    for (const u32 group : handles_of([&](auto visit) { walk_groups(profile, visit); })) {
        for (const u32 member : handles_of([&](auto visit) { walk_group(profile, group, visit); }))
            expect_success(profile.del_member_from_group(driver_session, device.device_id, group, member));
        expect_success(profile.del_group(driver_session, device.device_id, group));
        names.groups.drop(group);
        names.group_sizes.erase(group);
    }
    for (const u32 member : handles_of([&](auto visit) { walk_members(profile, visit); })) {
        expect_success(profile.del_member(driver_session, device.device_id, member));
        names.members.drop(member);
    }
}

struct WhatToClear {
    using Value = std::optional<arg::TableOrProfile::Value>; // none for all
    static void describe(Usage &usage) { usage.add({"TABLE", "PROFILE", "all"}); }
    static Value read(Reading &reading)
    {
        if (reading.words.peek() != "all")
            return arg::TableOrProfile::read(reading);
        reading.words.take();
        return {};
    }
};

void clear(Session &session, const WhatToClear::Value &what)
{
    if (!what) {
        for (const TableFunctions *table : reflection::tables())
            clear_table(*table);
        for (const ProfileFunctions *profile : reflection::profiles())
            clear_profile(*profile, session.names(*profile));
        return;
    }
    clear_table(what->profile ? table_of(*what->profile) : *what->table);
    if (what->profile)
        clear_profile(*what->profile, session.names(*what->profile));
}

void capacity(Session &session, const TableFunctions &table, std::optional<u32> wanted)
{
    if (wanted) {
        session.expect_changes_allowed();
        return expect_success(ts_model_set_capacity(table.row->handle, *wanted));
    }
    Result result{session.json()};
    result.text("table", table.row->name).number("entries", entry_count(*table.row));
    result.number("capacity", ts_model_capacity(table.row->handle));
    session.print(result.line("{entries:8}  {table}, which takes {capacity}"));
}

constexpr std::string_view text =
    R"(  Of a PROFILE, the entries that point at it as well as its groups, members and fallback. all stands for every table
  and profile.
)";

constexpr Verb clear_verb[] = {verb<clear, WhatToClear>(
    "clear", "deletes all entries, and gives the default entry of the program again")};
constexpr Verb capacity_verb[] = {
    verb<capacity, arg::KeyedTable, arg::Optional<arg::Number<"NUMBER", "number of entries">>>(
        "capacity", "how many entries the model's table takes; a low number lets a full one be tried")
        .may_change()};

} // namespace

const Command clear_command{clear_verb, text};
const Command capacity_command{capacity_verb, {}, json_option};

} // namespace shell
