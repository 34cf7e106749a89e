// What the model takes for the members and groups of a large profile, through the library: from an empty
// profile to a restart after which the member-selection store is as before.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "model.h"
#include "pd.h"
#include "processor_time.h"

namespace {

constexpr pd_sess_hdl session = 1;
constexpr pd_dev_target target = {0, 0xffff};
constexpr u32 group_size = 25;
constexpr u32 batch = 16; // of a walk

struct Profile {
    std::vector<pd_mbr_hdl> members;
    std::vector<pd_grp_hdl> groups;

    Profile(u32 member_count) : members(member_count), groups(member_count / group_size) {}
    std::size_t objects() const { return members.size() + groups.size(); }
};

bool create(Profile &profile)
{
    pd_status failures = 0;
    p4_pd_tessel_switch_setEcmpNextHop_action_spec_t action{};
    for (pd_mbr_hdl &member : profile.members) {
        ++action.action_nextHop;
        failures |= p4_pd_tessel_switch_ecmpMemberActionProfile_add_member_with_setEcmpNextHop(
            session, target, &action, &member);
    }
    for (pd_grp_hdl &group : profile.groups)
        failures |=
            p4_pd_tessel_switch_ecmpMemberActionProfile_create_group(session, target, group_size, &group);
    return failures == 0;
}

bool fill(Profile &profile)
{
    pd_status failures = 0;
    for (std::size_t i = 0; i < profile.members.size(); ++i)
        failures |= p4_pd_tessel_switch_ecmpMemberActionProfile_add_member_to_group(
            session, target.device_id, profile.groups[i / group_size], profile.members[i]);
    return failures == 0;
}

// Calls `use` for each handle of a walk: `first(&handle)` begins it, `next(handle, room, handles)` goes on.
template <typename First, typename Next, typename Use>
void walk_over(First first, Next next, Use use)
{
    u32 handles[batch] = {};
    first(handles);
    for (u32 count = 1; handles[0] != 0; count = batch) {
        u32 last = 0;
        for (u32 i = 0; i < count && handles[i] != 0; ++i)
            use(last = handles[i]);
        next(last, batch, handles);
    }
}

std::size_t count_members(pd_grp_hdl group)
{
    std::size_t found = 0;
    walk_over(
        [&](pd_mbr_hdl *first) {
            p4_pd_tessel_switch_ecmpMemberActionProfile_get_first_group_member(session, target.device_id,
                                                                               group, first);
        },
        [&](pd_mbr_hdl after, u32 room, pd_mbr_hdl *next) {
            p4_pd_tessel_switch_ecmpMemberActionProfile_get_next_group_members(session, target.device_id,
                                                                               group, after, room, next);
        },
        [&](pd_mbr_hdl) { ++found; });
    return found;
}

bool walk(Profile &profile)
{
    std::size_t members = 0, groups = 0, memberships = 0;
    walk_over(
        [](pd_mbr_hdl *first) {
            p4_pd_tessel_switch_ecmpMemberActionProfile_get_first_member(session, target, first);
        },
        [](pd_mbr_hdl after, u32 room, pd_mbr_hdl *next) {
            p4_pd_tessel_switch_ecmpMemberActionProfile_get_next_members(session, target, after, room, next);
        },
        [&](pd_mbr_hdl) { ++members; });
    walk_over(
        [](pd_grp_hdl *first) {
            p4_pd_tessel_switch_ecmpMemberActionProfile_get_first_group(session, target, first);
        },
        [](pd_grp_hdl after, u32 room, pd_grp_hdl *next) {
            p4_pd_tessel_switch_ecmpMemberActionProfile_get_next_groups(session, target, after, room, next);
        },
        [&](pd_grp_hdl group) {
            ++groups;
            memberships += count_members(group);
        });
    return members == profile.members.size() && groups == profile.groups.size() && memberships == members;
}

bool restart(Profile &)
{
    return ts_model_forget_selection(target.device_id) == TS_MODEL_OK &&
           p4_pd_tessel_switch_restore_virtual_dev_state(session, target.device_id, 0, 0, 0) == TS_MODEL_OK;
}

using Document = std::unique_ptr<char, decltype(&std::free)>;

Document log_state()
{
    return {ts_model_log_state(target.device_id), std::free};
}

// Writes the store's document once more and compares it with `before`.
bool is_logged_as(const Document &before)
{
    const Document after = log_state();
    return before && after && std::string_view{before.get()} == after.get();
}

// Forgetting has to change the document, or a restart that does nothing would do.
bool starts_empty()
{
    const Document empty = log_state();
    pd_mbr_hdl member = 0;
    p4_pd_tessel_switch_ecmpMemberActionProfile_add_member_with_NoAction(session, target, &member);
    const bool changes = !is_logged_as(empty);
    p4_pd_tessel_switch_ecmpMemberActionProfile_del_member(session, target.device_id, member);
    return changes && is_logged_as(empty);
}

// Adds the processor time of `step` to a figure, or ends the benchmark.
template <typename Step>
void measure(benchmark::State &state, const char *phase, Step step)
{
    const double begin = bench::processor_time();
    const bool done = step();
    const double taken = bench::processor_time() - begin;
    if (!done)
        state.SkipWithError((std::string{phase} + ": not what was expected").c_str());
    state.counters[phase] += taken;
    state.counters["total"] += taken;
}

void phases(benchmark::State &state)
{
    for (auto _ : state) {
        ts_model_reset();
        p4_pd_tessel_switch_init();
        if (!starts_empty())
            state.SkipWithError("the store's document does not follow the store");
        Profile profile(static_cast<u32>(state.range(0)));
        Document before = log_state();
        measure(state, "create", [&] { return create(profile); });
        measure(state, "fill", [&] { return fill(profile); });
        measure(state, "walk", [&] { return walk(profile); });
        measure(state, "compare", [&] { return (before = log_state()) != nullptr; });
        measure(state, "restart", [&] { return restart(profile); });
        measure(state, "compare", [&] { return is_logged_as(before); });
        state.counters["objects"] = static_cast<double>(profile.objects());
    }
}

} // namespace

// One iteration, so that the counters are sums of one round.
BENCHMARK(phases)->Name("profile")->Arg(10'000)->Arg(100'000)->Iterations(1)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
