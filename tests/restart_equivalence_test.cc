// Library and model together: whatever has been done to members and groups, a restart gives the store back as
// it was.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

#include "model.h"
#include "pd.h"
#include "pipe_mgr_records.h"
#include "random_records.h"
#include "reflection.h"

namespace {

using reflection::ProfileFunctions;
using sweep::Bytes;

constexpr u32 devices = 2;
constexpr u32 max_group_size = 6;

struct Member {
    pd_mbr_hdl handle;
    std::size_t action;
    u32 groups; // that it is in
};

// Its members run the action of the first one.
struct Group {
    pd_grp_hdl handle;
    std::vector<pd_mbr_hdl> members;
};

class Restart : public testing::Test {
protected:
    void SetUp() override
    {
        ts_model_reset();
        p4_pd_tessel_switch_init();
    }

    static std::string log_state(u32 device)
    {
        const std::unique_ptr<char, decltype(&std::free)> text(ts_model_log_state(device), std::free);
        return text ? text.get() : "";
    }
};

// A profile of one device, to which random things are done that succeed.
class Walk {
public:
    Walk(const ProfileFunctions &profile, u32 device) : profile(profile), target{device, PIPE_ALL_PIPES} {}

    void step(sweep::Random &random)
    {
        switch (random.word() % 10) {
        case 0:
        case 1:
            return add_member(random);
        case 2:
            return create_group();
        case 3:
            return delete_member(random);
        case 4:
            return delete_group(random);
        case 5:
            return leave(random);
        default:
            return join(random);
        }
    }

    std::size_t size() const { return members.size() + groups.size(); }

private:
    const ProfileFunctions &profile;
    pd_dev_target target;
    std::vector<Member> members;
    std::vector<Group> groups;

    template <typename T>
    static T *pick(std::vector<T> &from, sweep::Random &random)
    {
        return from.empty() ? nullptr : &from[random.word() % from.size()];
    }

    template <typename T>
    static void erase(std::vector<T> &from, const T *element)
    {
        from.erase(from.begin() + (element - from.data()));
    }

    Member &member(pd_mbr_hdl handle) { return *std::ranges::find(members, handle, &Member::handle); }

    void add_member(sweep::Random &random)
    {
        const std::size_t action = random.word() % profile.actions.size();
        const Bytes parameters = random.parameters(*profile.actions[action].row->action);
        pd_mbr_hdl handle = 0;
        EXPECT_EQ(profile.actions[action].add(1, target, parameters.data(), &handle), 0u);
        EXPECT_EQ(profile.actions[action].modify(1, target.device_id, handle, parameters.data()), 0u);
        members.push_back({handle, action, 0});
    }

    void delete_member(sweep::Random &random)
    {
        const Member *const found = pick(members, random);
        if (!found || found->groups)
            return;
        EXPECT_EQ(profile.del_member(1, target.device_id, found->handle), 0u);
        erase(members, found);
    }

    void create_group()
    {
        pd_grp_hdl handle = 0;
        EXPECT_EQ(profile.create_group(1, target, max_group_size, &handle), 0u);
        groups.push_back({handle, {}});
    }

    void delete_group(sweep::Random &random)
    {
        const Group *const found = pick(groups, random);
        if (!found)
            return;
        EXPECT_EQ(profile.del_group(1, target.device_id, found->handle), 0u);
        for (const pd_mbr_hdl each : found->members)
            --member(each).groups;
        erase(groups, found);
    }

    void join(sweep::Random &random)
    {
        Group *const group = pick(groups, random);
        Member *const joining = pick(members, random);
        if (!group || !joining || group->members.size() == max_group_size ||
            std::ranges::count(group->members, joining->handle) ||
            (!group->members.empty() && member(group->members[0]).action != joining->action))
            return;
        EXPECT_EQ(profile.add_member_to_group(1, target.device_id, group->handle, joining->handle), 0u);
        EXPECT_EQ(profile.group_member_state_set(1, target.device_id, group->handle, joining->handle,
                                                 random.word() % 2),
                  0u);
        group->members.push_back(joining->handle);
        ++joining->groups;
    }

    // The last member stays, for the action of the group would not outlast the restart.
    void leave(sweep::Random &random)
    {
        Group *const group = pick(groups, random);
        if (!group || group->members.size() < 2)
            return;
        const pd_mbr_hdl *const leaving = pick(group->members, random);
        EXPECT_EQ(profile.del_member_from_group(1, target.device_id, group->handle, *leaving), 0u);
        --member(*leaving).groups;
        erase(group->members, leaving);
    }
};

TEST_F(Restart, GivesTheSameDocument)
{
    sweep::Random random;
    std::vector<Walk> walks;
    for (u32 device = 0; device < devices; ++device)
        for (const ProfileFunctions *profile : reflection::profiles())
            walks.emplace_back(*profile, device);
    // Each restart is of all that went before, restarts included.
    for (int round = 0; round < 12; ++round) {
        SCOPED_TRACE(testing::Message() << "round " << round << " seed " << sweep::seed);
        for (int i = 0; i < 50 << round / 2; ++i)
            walks[random.word() % walks.size()].step(random);
        for (u32 device = 0; device < devices; ++device) {
            const std::string before = log_state(device), other = log_state(1 - device);
            ASSERT_EQ(ts_model_forget_selection(device), 0u);
            EXPECT_NE(log_state(device), before);
            ASSERT_EQ(p4_pd_tessel_switch_restore_virtual_dev_state(1, device, 0, 0, 0), 0u);
            ASSERT_EQ(log_state(device), before);
            ASSERT_EQ(log_state(1 - device), other);
        }
    }
    for (const Walk &walk : walks)
        EXPECT_GT(walk.size(), 10u);
}

// An entry may point at a group that has had a member, and at no other.
TEST_F(Restart, GroupsKeepTheirActionWhenTheLastMemberLeaves)
{
    const pd_dev_target target{0, PIPE_ALL_PIPES};
    const p4_pd_tessel_switch_ecmpGroup_match_spec_t key{.l3_nextHop = 7};
    pd_mbr_hdl member = 0;
    pd_grp_hdl group = 0;
    pd_entry_hdl entry = 0;
    p4_pd_tessel_switch_ecmpMemberActionProfile_add_member_with_NoAction(1, target, &member);
    p4_pd_tessel_switch_ecmpMemberActionProfile_create_group(1, target, 4, &group);
    const auto add_entry = [&] {
        return p4_pd_tessel_switch_ecmpGroup_add_entry_with_selector(1, target, &key, group, &entry);
    };
    EXPECT_NE(add_entry(), 0u);
    EXPECT_EQ(p4_pd_tessel_switch_ecmpMemberActionProfile_add_member_to_group(1, 0, group, member), 0u);
    EXPECT_EQ(p4_pd_tessel_switch_ecmpMemberActionProfile_del_member_from_group(1, 0, group, member), 0u);
    EXPECT_EQ(add_entry(), 0u);
}

} // namespace
