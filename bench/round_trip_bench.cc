// Writing an entry, reading it back, comparing and deleting it, once for every action of every table, in the
// model: through the library, and with the same driver calls made bare on records prepared beforehand.
#include <benchmark/benchmark.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <random>

#include "model.h"
#include "pd.h"
#include "pipe_mgr_match.h"
#include "processor_time.h"
#include "reflection.h"

namespace {

using reflection::ActionFunctions;
using reflection::TableFunctions;

constexpr pd_sess_hdl session = 1;
constexpr pd_dev_target target = {0, PIPE_ALL_PIPES};

// ---- Through the library ----------------------------------------------------------------------------------

// An entry in the caller's form.
struct Records {
    std::array<u8, 256> key; // room for every table
    std::array<u8, sizeof(pd_action_out::parameters)> parameters;
    u32 priority = 0;
    u32 action_number = 0;
    u8 is_default = 0;
};

// The functions of one action of one table.
struct Functions {
    decltype(ActionFunctions::add) add;
    decltype(TableFunctions::get_entry) get_entry;
    decltype(TableFunctions::table_delete) table_delete;
};

pd_status write(const Functions &functions, const Records &from, pd_entry_hdl &entry)
{
    constexpr pd_meter_spec meter = {1000, 2000, 3000, 4000, PD_METER_TYPE_COLOR_UNAWARE};
    return functions.add(session, target,
                         {.key = from.key.data(),
                          .priority = from.priority,
                          .action = from.parameters.data(),
                          .ttl = 0,
                          .meter = &meter},
                         &entry);
}

pd_status read(const Functions &functions, pd_entry_hdl entry, Records &to)
{
    return functions.get_entry(session, target.device_id, entry, 0,
                               {.key = to.key.data(),
                                .priority = &to.priority,
                                .is_default = &to.is_default,
                                .action_name = nullptr, // the number says the same
                                .action = to.parameters.data(),
                                .action_number = &to.action_number});
}

pd_status remove(const Functions &functions, pd_entry_hdl entry)
{
    return functions.table_delete(session, target.device_id, entry);
}

// ---- Bare -------------------------------------------------------------------------------------------------

// An entry in the driver's form.
struct DriverRecords {
    std::array<u8, 64> value;
    std::array<u8, 64> mask;
    std::array<u8, 28> data;
    pipe_match_spec match{};
    pipe_action_spec spec{};
    u32 action = 0;

    // With all the room that there is.
    DriverRecords()
    {
        match.match_value = value.data();
        match.match_mask = mask.data();
        match.num_bytes = value.size();
        spec.action_data.data = data.data();
        spec.action_data.num_bytes = data.size();
    }

    DriverRecords(const DriverRecords &) = delete;
};

pd_status write(u32 table, DriverRecords &from, pd_entry_hdl &entry)
{
    return pipe_mgr_mat_ent_add(session, target, table, &from.match, from.action, &from.spec, 0, 0, &entry);
}

pd_status read(u32 table, pd_entry_hdl entry, DriverRecords &to)
{
    to.match.num_bytes = to.value.size();
    to.spec.action_data.num_bytes = to.data.size();
    return pipe_mgr_get_entry(session, table, target, entry, &to.match, &to.spec, &to.action, 0, 1, 0);
}

// ---- Cases ------------------------------------------------------------------------------------------------

// One action of one table, with an entry in both forms.
struct Case {
    const TableFunctions &table;
    const ActionFunctions &action;
    Functions functions{action.add, table.get_entry, table.table_delete};
    u32 table_handle = table.row->handle;
    u16 key_bytes = table.row->record_size;
    u16 parameter_bytes = action.row->action->record_size;
    Records records{};
    DriverRecords prepared{};
};

[[noreturn]] void give_up(const Case &with, const char *what)
{
    std::fprintf(stderr, "%s, %s: %s\n", with.table.row->name, with.action.row->action->name, what);
    std::exit(1);
}

void scramble(u8 *bytes, std::size_t count, std::minstd_rand &random)
{
    for (std::size_t i = 0; i < count; i++)
        bytes[i] = static_cast<u8>(random() >> 8);
}

void scramble(Case &with, std::minstd_rand &random)
{
    scramble(with.records.key.data(), with.key_bytes, random);
    scramble(with.records.parameters.data(), with.parameter_bytes, random);
    for (const pd::Field &field : with.table.row->key)
        if (field.match == pd::Match::lpm) {
            const u16 length = static_cast<u16>(random() % (field.width + 1u));
            std::memcpy(&with.records.key[field.twin_offset], &length, sizeof length);
        }
}

// Writes the entry and makes it what it reads as, in both forms.
void settle(Case &with)
{
    pd_entry_hdl entry = 0;
    if (write(with.functions, with.records, entry) != TS_MODEL_OK)
        give_up(with, "cannot be written");
    if (read(with.functions, entry, with.records) != TS_MODEL_OK ||
        read(with.table_handle, entry, with.prepared) != TS_MODEL_OK)
        give_up(with, "cannot be read");
    remove(with.functions, entry);
}

std::deque<Case> &cases()
{
    static std::deque<Case> all = [] {
        std::deque<Case> made;
        std::minstd_rand random; // its default seed is fixed
        for (const TableFunctions *table : reflection::tables())
            for (const ActionFunctions &action : table->actions)
                if (action.add) {
                    made.emplace_back(*table, action);
                    scramble(made.back(), random);
                    // The first time clips masks, the second time the values under them; then no bit is
                    // left that does not come back.
                    settle(made.back());
                    settle(made.back());
                }
        return made;
    }();
    return all;
}

// ---- Round trips ------------------------------------------------------------------------------------------

bool through_library(Case &with)
{
    static Records back;
    const Records &records = with.records;
    pd_entry_hdl entry = 0;
    return write(with.functions, records, entry) == TS_MODEL_OK &&
           read(with.functions, entry, back) == TS_MODEL_OK &&
           std::memcmp(back.key.data(), records.key.data(), with.key_bytes) == 0 &&
           std::memcmp(back.parameters.data(), records.parameters.data(), with.parameter_bytes) == 0 &&
           back.priority == records.priority && back.action_number == records.action_number &&
           remove(with.functions, entry) == TS_MODEL_OK;
}

bool bare(Case &with)
{
    static DriverRecords back;
    DriverRecords &prepared = with.prepared;
    const u32 table = with.table_handle;
    pd_entry_hdl entry = 0;
    return write(table, prepared, entry) == TS_MODEL_OK && read(table, entry, back) == TS_MODEL_OK &&
           std::memcmp(back.value.data(), prepared.value.data(), prepared.match.num_bytes) == 0 &&
           std::memcmp(back.mask.data(), prepared.mask.data(), prepared.match.num_bytes) == 0 &&
           std::memcmp(back.data.data(), prepared.data.data(), prepared.spec.action_data.num_bytes) == 0 &&
           back.match.priority == prepared.match.priority && back.action == prepared.action &&
           pipe_mgr_mat_ent_del(session, target.device_id, table, entry, 0) == TS_MODEL_OK;
}

// The processor time of a round trip in each table, in nanoseconds.
double time_all(bool (*round_trip)(Case &))
{
    const double begin = bench::processor_time();
    for (Case &with : cases())
        if (!round_trip(with))
            give_up(with, "what comes back is not what was written");
    return bench::processor_time() - begin;
}

// Both sides in one benchmark, so that whatever slows the machine slows both.
void round_trips(benchmark::State &state)
{
    double library = 0, prepared = 0;
    for (auto _ : state) {
        library += time_all(through_library);
        prepared += time_all(bare);
    }
    const double trips = static_cast<double>(state.iterations()) * static_cast<double>(cases().size());
    state.counters["entries"] = static_cast<double>(cases().size());
    state.counters["library_ns"] = library / trips;
    state.counters["bare_ns"] = prepared / trips;
    state.counters["ratio"] = library / prepared;
}

} // namespace

BENCHMARK(round_trips)->Name("round trips")->Unit(benchmark::kMicrosecond);

int main(int argc, char **argv)
{
    p4_pd_tessel_switch_init();
    cases(); // prepared before anything is measured
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
}
