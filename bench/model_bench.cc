// What the model takes for each of many objects, through the library: to add them to nothing, to look them
// up, and to put others in their place; and how much memory they take.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <random>
#include <vector>

#include "model.h"
#include "pd.h"
#include "processor_time.h"

namespace {

constexpr pd_sess_hdl session = 1;
constexpr pd_dev_target target = {0, 0xffff};
constexpr u32 scrambler = 2654435761; // odd, so that no two products are the same; far apart, as hosts are

// What a case adds and deletes.
struct Objects {
    const char *name;
    pd_status (*begin)(u32 count);
    pd_status (*add)(u32 number, u32 *handle);
    pd_status (*remove)(u32 handle);
    u32 table;    // where they are looked up as entries, 0 for nowhere
    u32 look_ups; // as many
};

pd_status begin_empty(u32)
{
    return TS_MODEL_OK;
}

// ---- Entries --------------------------------------------------------------------------------------------

constexpr p4_pd_tessel_switch_setNextHop_action_spec_t next_hop(u32 number)
{
    return {.action_nextHop = number};
}

pd_status add_host(u32 number, pd_entry_hdl *entry)
{
    const p4_pd_tessel_switch_ipv4Host_match_spec_t key = {.l3Info_vrfId = 1,
                                                           .ingIpv4_dip = number * scrambler};
    const auto action = next_hop(number);
    return p4_pd_tessel_switch_ipv4Host_table_add_with_setNextHop(session, target, &key, &action, entry);
}

pd_status remove_host(pd_entry_hdl entry)
{
    return p4_pd_tessel_switch_ipv4Host_table_delete(session, target.device_id, entry);
}

// Of 13 lengths.
pd_status add_prefix(u32 number, pd_entry_hdl *entry)
{
    const u32 block = (number / 13 + number % 13 * scrambler) * scrambler << 12;
    const p4_pd_tessel_switch_ipv4ShortMaskLpm_match_spec_t key = {.l3Info_vrfId = 1,
                                                                   .ingIpv4_dip = block,
                                                                   .ingIpv4_dip_prefix_length =
                                                                       static_cast<u16>(20 + number % 13)};
    const auto action = next_hop(number);
    return p4_pd_tessel_switch_ipv4ShortMaskLpm_table_add_with_setNextHop(session, target, &key, &action,
                                                                          entry);
}

pd_status remove_prefix(pd_entry_hdl entry)
{
    return p4_pd_tessel_switch_ipv4ShortMaskLpm_table_delete(session, target.device_id, entry);
}

template <std::size_t Size>
void write_word(u8 (&address)[Size], u32 word)
{
    for (u32 at = 0; at < 4; ++at)
        address[at] = static_cast<u8>(word >> (24 - 8 * at));
}

// Of 81 lengths.
pd_status add_long_prefix(u32 number, pd_entry_hdl *entry)
{
    p4_pd_tessel_switch_ipv6ShortMaskLpm_match_spec_t key = {.l3Info_vrfId = 1,
                                                             .ingIpv6_dip = {},
                                                             .ingIpv6_dip_prefix_length =
                                                                 static_cast<u16>(48 + number % 81)};
    write_word(key.ingIpv6_dip, (number / 81 + number % 81 * scrambler) * scrambler);
    const auto action = next_hop(number);
    return p4_pd_tessel_switch_ipv6ShortMaskLpm_table_add_with_setNextHop(session, target, &key, &action,
                                                                          entry);
}

pd_status remove_long_prefix(pd_entry_hdl entry)
{
    return p4_pd_tessel_switch_ipv6ShortMaskLpm_table_delete(session, target.device_id, entry);
}

// Of so many masks, the first of which has the best priority.
template <u32 Masks>
pd_status add_ternary(u32 number, pd_entry_hdl *entry)
{
    p4_pd_tessel_switch_trapToCpu_match_spec_t key{};
    key.ingIpv4_dip = number * scrambler;
    key.ingIpv4_dip_mask = ~u32{0};
    key.ingMd_srcPort_mask = static_cast<u16>(number % Masks);
    return p4_pd_tessel_switch_trapToCpu_table_add_with_NoAction(session, target, &key, number % Masks,
                                                                 entry);
}

// One value and mask, each with a priority of its own.
pd_status add_ranked(u32 number, pd_entry_hdl *entry)
{
    const p4_pd_tessel_switch_trapToCpu_match_spec_t key{};
    return p4_pd_tessel_switch_trapToCpu_table_add_with_NoAction(session, target, &key, number, entry);
}

pd_status remove_ternary(pd_entry_hdl entry)
{
    return p4_pd_tessel_switch_trapToCpu_table_delete(session, target.device_id, entry);
}

// ---- Members and groups ---------------------------------------------------------------------------------

pd_status add_member(u32 number, pd_mbr_hdl *member)
{
    const p4_pd_tessel_switch_setEcmpNextHop_action_spec_t action{.action_nextHopTable = 0,
                                                                  .action_nextHop = number};
    return p4_pd_tessel_switch_ecmpMemberActionProfile_add_member_with_setEcmpNextHop(session, target,
                                                                                      &action, member);
}

pd_status remove_member(pd_mbr_hdl member)
{
    return p4_pd_tessel_switch_ecmpMemberActionProfile_del_member(session, target.device_id, member);
}

pd_status add_group(u32, pd_grp_hdl *group)
{
    return p4_pd_tessel_switch_ecmpMemberActionProfile_create_group(session, target, 8, group);
}

pd_status remove_group(pd_grp_hdl group)
{
    return p4_pd_tessel_switch_ecmpMemberActionProfile_del_group(session, target.device_id, group);
}

pd_grp_hdl large_group;

// A large group, and as many members out of it as will join.
pd_status begin_large_group(u32 count)
{
    pd_mbr_hdl member;
    for (u32 number = 0; number < 2 * count; ++number)
        if (const pd_status status = add_member(number, &member))
            return status;
    return p4_pd_tessel_switch_ecmpMemberActionProfile_create_group(session, target, count, &large_group);
}

pd_status join(u32 number, pd_mbr_hdl *member)
{
    *member = number + 1;
    return p4_pd_tessel_switch_ecmpMemberActionProfile_add_member_to_group(session, target.device_id,
                                                                           large_group, *member);
}

pd_status leave(pd_mbr_hdl member)
{
    return p4_pd_tessel_switch_ecmpMemberActionProfile_del_member_from_group(session, target.device_id,
                                                                             large_group, member);
}

// ---- The phases -----------------------------------------------------------------------------------------

constexpr u32 ipv4_host = 0x1000023;
constexpr u32 ipv4_short_mask_lpm = 0x100003d;
constexpr u32 ipv6_short_mask_lpm = 0x1000021;
constexpr u32 trap_to_cpu = 0x1000040;

constexpr Objects all_objects[] = {
    {"exact", begin_empty, add_host, remove_host, ipv4_host, 20'000},
    {"LPM 32, 13 lengths", begin_empty, add_prefix, remove_prefix, ipv4_short_mask_lpm, 20'000},
    {"LPM 128, 81 lengths", begin_empty, add_long_prefix, remove_long_prefix, ipv6_short_mask_lpm, 20'000},
    {"ternary, 1 mask", begin_empty, add_ternary<1>, remove_ternary, trap_to_cpu, 20'000},
    {"ternary, 1000 masks", begin_empty, add_ternary<1'000>, remove_ternary, trap_to_cpu, 2'000},
    {"ternary, 16000 masks", begin_empty, add_ternary<16'000>, remove_ternary, trap_to_cpu, 200},
    {"ternary, 1 key", begin_empty, add_ranked, remove_ternary, 0, 0},
    {"members", begin_empty, add_member, remove_member, 0, 0},
    {"groups", begin_empty, add_group, remove_group, 0, 0},
    {"joins to one group", begin_large_group, join, leave, 0, 0},
};

double allocated()
{
    const struct mallinfo2 all = mallinfo2();
    return static_cast<double>(all.uordblks + all.hblkhd);
}

// The value and the data of an entry.
u32 image_bytes(const ts_model_entry &entry)
{
    return entry.key_bytes + entry.data_bytes;
}

ts_model_entry read(u32 table, pd_entry_hdl entry)
{
    ts_model_entry found{};
    ts_model_get_entry(target.device_id, table, entry, &found);
    return found;
}

using Key = std::vector<u8>;

// The values of entries here and there.
std::vector<Key> some_keys(const Objects &objects, const std::vector<u32> &entries, std::mt19937 &random)
{
    std::vector<Key> keys(objects.look_ups);
    for (Key &key : keys) {
        const ts_model_entry entry = read(objects.table, entries[random() % entries.size()]);
        key.assign(entry.value, entry.value + entry.key_bytes);
    }
    return keys;
}

bool is_hit(u32 table, const Key &key)
{
    ts_model_hit hit{};
    ts_model_lookup(target.device_id, table, key.data(), static_cast<u32>(key.size()), 0, &hit);
    return hit.hit == 1;
}

// The processor time of each of `count` steps, in nanoseconds; `step` tells whether one did what it should.
template <typename Step>
double measure(benchmark::State &state, u32 count, Step step)
{
    bool done = true;
    const double begin = bench::processor_time();
    for (u32 number = 0; number < count; ++number)
        done &= step(number);
    const double taken = bench::processor_time() - begin;
    if (!done)
        state.SkipWithError("the model answered other than expected");
    return taken / count;
}

void scale(benchmark::State &state, const Objects &objects)
{
    const u32 count = static_cast<u32>(state.range(0));
    for (auto _ : state) {
        ts_model_reset();
        p4_pd_tessel_switch_init();
        if (objects.begin(count) != TS_MODEL_OK)
            state.SkipWithError("the model did not begin");
        std::vector<u32> handles(count);
        std::mt19937 random{20261123};
        const double before = allocated();
        state.counters["add"] = measure(
            state, count, [&](u32 number) { return objects.add(number, &handles[number]) == TS_MODEL_OK; });
        state.counters["bytes"] = (allocated() - before) / count;
        if (objects.table != 0) {
            state.counters["bytes"] -= image_bytes(read(objects.table, handles[0]));
            const std::vector<Key> keys = some_keys(objects, handles, random);
            state.counters["look_up"] = measure(
                state, objects.look_ups, [&](u32 number) { return is_hit(objects.table, keys[number]); });
        }
        std::ranges::shuffle(handles, random);
        state.counters["replace"] = measure(state, count / 2, [&](u32 number) {
            return objects.remove(handles[number]) == TS_MODEL_OK &&
                   objects.add(count + number, &handles[number]) == TS_MODEL_OK;
        });
    }
}

} // namespace

int main(int argument_count, char **arguments)
{
    benchmark::Initialize(&argument_count, arguments);
    for (const Objects &objects : all_objects)
        benchmark::RegisterBenchmark(objects.name, scale, objects)
            ->Arg(10'000)
            ->Arg(1'000'000)
            ->Iterations(1)
            ->Unit(benchmark::kMillisecond);
    benchmark::RunSpecifiedBenchmarks();
}
