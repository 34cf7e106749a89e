// Emptying tables and action profiles, and how much tables hold.
#include <vector>

#include "commands.h"
#include "driver.h"
#include "model.h"
#include "profiles.h"
#include "tables.h"

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
    if (table.table_delete)
        for (const u32 entry : handles_of([&](auto visit) { walk_entries(table, visit); }))
            expect_success(table.table_delete(driver_session, device.device_id, entry));
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

} // namespace

void run_clear(Session &session, Words &words)
{
    if (words.peek() == "all") {
        words.take();
        words.expect_end();
        for (const TableFunctions *table : reflection::tables())
            clear_table(*table);
        for (const ProfileFunctions *profile : reflection::profiles())
            clear_profile(*profile, session.names(*profile));
        return;
    }
    const ProfileFunctions *profile = take_profile_unless_table(words);
    const TableFunctions &table = profile ? table_of(*profile) : take_table(words);
    words.expect_end();
    clear_table(table);
    if (profile)
        clear_profile(*profile, session.names(*profile));
}

void run_capacity(Session &, Words &words)
{
    const TableFunctions &table = take_keyed_table(words);
    const u32 entries = parse_u32(words.take(), ~u32{0}, "number of entries");
    words.expect_end();
    expect_success(ts_model_set_capacity(table.row->handle, entries));
}

} // namespace shell
