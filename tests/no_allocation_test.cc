// No entry function allocates, and none that reads does so without resources: every one is called while all
// allocations of the process are counted.
#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

#include "capture_driver.h"
#include "capture_services.h"
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

} // namespace
