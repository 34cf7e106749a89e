// No entry function allocates, none that reads does so without resources, and of members and groups only the
// deletion of a group: every one is called while all allocations of the process are counted. Those of
// resources and packet-side services stand among the calls that the tests of each function compare.
#include <atomic>
#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

#include "capture_driver.h"
#include "capture_services.h"
#include "pd.h"
#include "reflection.h"

namespace {

long allocations = 0;

} // namespace

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

// A sanitizer has an allocator of its own, and hooks to count with. GCC comes without their header.
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*)(const volatile void *, std::size_t),
                                                         void (*)(const volatile void *));

namespace {

[[maybe_unused]] const int hooks = __sanitizer_install_malloc_and_free_hooks(
    [](const volatile void *, std::size_t) { ++allocations; }, [](const volatile void *) {});

} // namespace

#else

// In place of the C library's. operator new comes through malloc too.
extern "C" {

void *__libc_malloc(std::size_t);
void *__libc_calloc(std::size_t, std::size_t);
void *__libc_realloc(void *, std::size_t);

[[gnu::visibility("default")]] void *malloc(std::size_t size)
{
    ++allocations;
    return __libc_malloc(size);
}

[[gnu::visibility("default")]] void *calloc(std::size_t count, std::size_t size)
{
    ++allocations;
    return __libc_calloc(count, size);
}

[[gnu::visibility("default")]] void *realloc(void *memory, std::size_t size)
{
    ++allocations;
    return __libc_realloc(memory, size);
}
}

#endif

namespace {

template <typename Function>
long allocations_of(const Function &function)
{
    const long before = allocations;
    function();
    std::atomic_signal_fence(
        std::memory_order_seq_cst); // malloc may count, whatever the compiler knows of it
    return allocations - before;
}

TEST(NoAllocation, CounterCounts)
{
    void *volatile memory = nullptr;
    EXPECT_EQ(allocations_of([&] { memory = std::malloc(1); }), 1);
    std::free(memory);
    int *volatile number = nullptr;
    EXPECT_EQ(allocations_of([&] { number = new int; }), 1);
    delete number;
}

TEST(NoAllocation, EveryEntryFunction)
{
    const std::vector<u8> zeroes(1024);
    const pd_meter_spec meter{};
    reflection::EntryArguments with;
    with.key = with.action = zeroes.data();
    with.meter = &meter;
    pd_entry_hdl entry = 0;
    capture::reset();
    // What only the first call of a function costs, such as finding its address, is not the library's.
    for (const bool warm : {false, true})
        for (const reflection::TableFunctions *table : reflection::tables()) {
            if (table->row->key.empty())
                continue;
            const long of_table = allocations_of([&] {
                table->table_delete(1, 0, 1);
                table->table_delete_by_match_spec(1, {}, with);
                table->match_spec_to_entry_hdl(1, {}, with, &entry);
            });
            EXPECT_TRUE(!warm || of_table == 0) << table->row->name;
            for (const reflection::ActionFunctions &action : table->actions) {
                const long of_action = allocations_of([&] {
                    action.add(1, {}, with, &entry);
                    action.modify(1, 0, 1, with);
                    action.modify_by_match_spec(1, {}, with);
                });
                EXPECT_TRUE(!warm || of_action == 0) << table->row->name << " " << action.row->action->name;
            }
        }
    EXPECT_EQ(capture::calls, 2u * (404 * 3 + 141 * 3));
}

// Default actions and read-back, without a resource to list.
TEST(NoAllocation, EveryDefaultActionAndEveryReading)
{
    std::vector<u64> room(128);
    const pd_meter_spec meter{};
    reflection::EntryArguments with;
    with.action = room.data();
    with.meter = &meter;
    char name[128];
    u32 words[2];
    u8 is_default;
    const reflection::EntryResults to{room.data(), &words[0], &is_default, name, room.data(), &words[1]};
    pd_action_out out;
    pd_entry_hdl entry = 0;
    capture::reset();
    for (const bool warm : {false, true})
        for (const reflection::TableFunctions *table : reflection::tables())
            for (const reflection::ActionFunctions &action : table->actions) {
                capture::answer.action = action.row->handle;
                const long of_action = allocations_of([&] {
                    if (action.set_default_action)
                        action.set_default_action(1, {}, with, &entry);
                    table->get_default_entry(1, {}, 0, &out);
                    table->get_entry(1, 0, 1, 0, to);
                    table->get_entry_from_plcmt_data(nullptr, to, &out);
                });
                EXPECT_TRUE(!warm || of_action == 0) << table->row->name << " " << action.row->action->name;
            }
    EXPECT_EQ(services::log.size(), 0u);
}

void use_members(const reflection::ProfileFunctions &profile, const reflection::MemberFunctions &action)
{
    const u64 parameters[4] = {};
    pd_action_out out;
    u32 handle = 0;
    action.add(1, {}, parameters, &handle);
    action.modify(1, 0, 1, parameters);
    profile.del_member(1, 0, 1);
    profile.get_member(1, 0, 1, 0, &out);
    profile.get_member_from_plcmt_data(nullptr, &out);
    profile.get_full_member_info_from_plcmt_data(0, 1, nullptr, &out);
}

void use_groups(const reflection::ProfileFunctions &profile)
{
    u32 word = 0;
    profile.create_group(1, {}, 1, &word);
    profile.add_member_to_group(1, 0, 1, 1);
    profile.del_member_from_group(1, 0, 1, 1);
    profile.group_member_state_set(1, 0, 1, 1, 0);
    profile.group_member_state_set(1, 0, 1, 1, 1);
    profile.group_member_state_get(1, 0, 1, 1, &word);
    profile.set_fallback_member(1, {}, 1);
    profile.reset_fallback_member(1, {});
    profile.del_group(1, 0, 1); // an empty one
}

void use_references(const reflection::IndirectFunctions &table,
                    const reflection::ReferenceFunctions &functions)
{
    u64 key[4] = {};
    reflection::EntryArguments with;
    with.key = key;
    u32 word = 0;
    u8 is_default = 0;
    reflection::ReferenceResults to;
    functions.add(1, {}, with, 1, &word);
    functions.modify(1, 0, 1, 1);
    functions.modify_by_match_spec(1, {}, with, 1);
    functions.set_default_entry(1, {}, 1, &word);
    table.get_entry(1, 0, 1, 0, {key, &word, &is_default}, to);
    table.get_entry_from_plcmt_data(nullptr, {key, &word, &is_default}, to);
    table.get_default_entry(1, {}, 0, to);
}

TEST(NoAllocation, MembersGroupsAndWhatPointsAtThem)
{
    services::reset();
    p4_pd_tessel_switch_init();
    capture::reset();
    capture::answer.action_kind = PIPE_ACTION_MEMBER;
    for (const bool warm : {false, true}) {
        for (const reflection::ProfileFunctions *profile : reflection::profiles()) {
            for (const reflection::MemberFunctions &action : profile->actions) {
                capture::answer.action = action.row->handle;
                const long of_members = allocations_of([&] { use_members(*profile, action); });
                EXPECT_TRUE(!warm || of_members == 0)
                    << profile->row->name << " " << action.row->action->name;
            }
            const long of_groups = allocations_of([&] { use_groups(*profile); });
            EXPECT_TRUE(!warm || of_groups == 0) << profile->row->name;
        }
        for (const reflection::TableFunctions *table : reflection::tables()) {
            if (!table->indirect)
                continue;
            const long of_table = allocations_of([&] {
                use_references(*table->indirect, table->indirect->member);
                use_references(*table->indirect, table->indirect->group);
            });
            EXPECT_TRUE(!warm || of_table == 0) << table->row->name;
        }
    }
    EXPECT_EQ(services::log.size(), 0u);
}

TEST(NoAllocation, TheDeletionOfAGroupTakesTwoListsOnly)
{
    capture::reset();
    capture::answer.numbers[0] = 64;
    for (const reflection::ProfileFunctions *profile : reflection::profiles()) {
        profile->del_group(1, 0, 1);
        EXPECT_EQ(allocations_of([&] { profile->del_group(1, 0, 1); }), 2) << profile->row->name;
        EXPECT_EQ(capture::live_allocations(), 0u);
    }
}

} // namespace
