#include "profile.h"

#include <array>
#include <boost/crc.hpp>

#include "objects.h"

namespace model {

namespace {

u32 hash(Flow flow)
{
    std::array<u8, 8> bytes;
    for (u32 at = 0; at < 4; ++at) {
        bytes[at] = static_cast<u8>(flow.first >> 8 * at);
        bytes[at + 4] = static_cast<u8>(flow.second >> 8 * at);
    }
    boost::crc_32_type crc;
    crc.process_bytes(bytes.data(), bytes.size());
    return crc.checksum();
}

} // namespace

// ---- Updates --------------------------------------------------------------------------------------------

ts_model_profile_update Profile::update(u32 kind, pd_grp_hdl group, pd_mbr_hdl member) const
{
    const Member *const found = members_.find(member);
    const MemberData nothing;
    const MemberData &contents = found != nullptr ? found->software : nothing;
    return {.kind = kind,
            .group = group,
            .member = member,
            .action = contents.action,
            .data = contents.data.data(),
            .data_bytes = static_cast<u32>(contents.data.size())};
}

void Profile::take_members(ProfileNews &news, u32 kind, pd_mbr_hdl member) const
{
    news.take({&member_listeners}, program_.action_table, update(kind, 0, member));
}

void Profile::take_groups(ProfileNews &news, u32 kind, pd_grp_hdl group, pd_mbr_hdl member) const
{
    news.take({&group_listeners, &selector_listeners}, program_.selector, update(kind, group, member));
}

// ---- Members --------------------------------------------------------------------------------------------

pd_mbr_hdl Profile::add_member(u32 action, std::span<const u8> data, ProfileNews &news)
{
    Member added;
    added.software = {action, {data.begin(), data.end()}};
    const pd_mbr_hdl member = members_.add(std::move(added));
    take_members(news, TS_MODEL_MEMBER_ADDED, member);
    return member;
}

pd_status Profile::set_member(pd_mbr_hdl member, u32 action, std::span<const u8> data, ProfileNews &news)
{
    Member *const found = members_.find(member);
    if (found == nullptr)
        return unknown_object;
    if (found->software.action != action)
        return bad_argument;
    found->software.data.assign(data.begin(), data.end());
    found->hardware.reset();
    take_members(news, TS_MODEL_MEMBER_MODIFIED, member);
    return ok;
}

pd_status Profile::remove_member(pd_mbr_hdl member, ProfileNews &news)
{
    const Member *const found = members_.find(member);
    if (found == nullptr)
        return unknown_object;
    if (found->entries != 0 || found->holders != 0)
        return in_use;
    take_members(news, TS_MODEL_MEMBER_DELETED, member);
    members_.remove(member);
    return ok;
}

pd_status Profile::set_hardware(pd_mbr_hdl member, MemberData data)
{
    Member *const found = members_.find(member);
    if (found == nullptr)
        return unknown_object;
    found->hardware = std::make_unique<MemberData>(std::move(data));
    return ok;
}

// ---- Groups ---------------------------------------------------------------------------------------------

pd_grp_hdl Profile::add_group(u32 max_size, ProfileNews &news)
{
    const pd_grp_hdl group = groups_.add(max_size);
    take_groups(news, TS_MODEL_GROUP_ADDED, group, 0);
    return group;
}

pd_status Profile::remove_group(pd_grp_hdl group, ProfileNews &news)
{
    const Group *const found = groups_.find(group);
    if (found == nullptr)
        return unknown_object;
    if (found->entries != 0)
        return in_use;
    for (const Membership &membership : groups_.members(*found))
        --members_.find(membership.member)->holders;
    groups_.remove(group);
    take_groups(news, TS_MODEL_GROUP_DELETED, group, 0);
    return ok;
}

pd_status Profile::join(pd_grp_hdl group, pd_mbr_hdl member, u32 action, ProfileNews &news)
{
    Member *const found = members_.find(member);
    if (found == nullptr)
        return unknown_object;
    if (found->software.action != action)
        return bad_argument;
    if (const pd_status status = groups_.join(group, member, action))
        return status;
    ++found->holders;
    take_groups(news, TS_MODEL_MEMBER_JOINED, group, member);
    return ok;
}

pd_status Profile::leave(pd_grp_hdl group, pd_mbr_hdl member, ProfileNews &news)
{
    if (const pd_status status = groups_.leave(group, member))
        return status;
    --members_.find(member)->holders;
    take_groups(news, TS_MODEL_MEMBER_LEFT, group, member);
    return ok;
}

pd_status Profile::set_active(pd_grp_hdl group, pd_mbr_hdl member, bool active, ProfileNews &news)
{
    Membership *const found = groups_.find(group, member);
    if (found == nullptr)
        return unknown_object;
    found->active = active;
    take_groups(news, active ? TS_MODEL_MEMBER_ENABLED : TS_MODEL_MEMBER_DISABLED, group, member);
    return ok;
}

pd_status Profile::set_fallback(pd_mbr_hdl member, ProfileNews &news)
{
    Member *const found = members_.find(member);
    if (found == nullptr)
        return unknown_object;
    ++found->holders;
    if (fallback_ != 0)
        --members_.find(fallback_)->holders;
    fallback_ = member;
    take_groups(news, TS_MODEL_FALLBACK_SET, 0, member);
    return ok;
}

void Profile::reset_fallback(ProfileNews &news)
{
    if (fallback_ != 0)
        --members_.find(fallback_)->holders;
    fallback_ = 0;
    take_groups(news, TS_MODEL_FALLBACK_RESET, 0, 0);
}

// ---- Selection ------------------------------------------------------------------------------------------

std::optional<std::vector<pd_mbr_hdl>> Profile::active_members(pd_grp_hdl group) const
{
    const Group *const found = groups_.find(group);
    if (found == nullptr)
        return std::nullopt;
    std::vector<pd_mbr_hdl> active;
    for (const Membership &membership : groups_.members(*found))
        if (membership.active)
            active.push_back(membership.member);
    return active;
}

pd_mbr_hdl Profile::pick(pd_grp_hdl group, Flow flow) const
{
    const auto active = active_members(group);
    if (!active)
        return 0;
    return active->empty() ? fallback_ : (*active)[hash(flow) % active->size()];
}

pd_mbr_hdl Profile::pick(Reference reference, Flow flow) const
{
    switch (reference.kind) {
    case PIPE_ACTION_MEMBER:
        return reference.handle;
    case PIPE_ACTION_GROUP:
        return pick(reference.handle, flow);
    default:
        return 0;
    }
}

// ---- References -----------------------------------------------------------------------------------------

pd_status Profile::check(Reference reference, u32 action) const
{
    if (reference.kind == PIPE_ACTION_GROUP)
        return groups_.find(reference.handle) != nullptr ? ok : unknown_object;
    const Member *const member = members_.find(reference.handle);
    if (member == nullptr)
        return unknown_object;
    return member->software.action == action ? ok : bad_argument;
}

u32 *Profile::entries_of(Reference reference)
{
    return reference.kind == PIPE_ACTION_GROUP ? &groups_.find(reference.handle)->entries
                                               : &members_.find(reference.handle)->entries;
}

} // namespace model
