#include "selection_store.h"

#include <cjson/cJSON.h>

#include <algorithm>
#include <limits>
#include <utility>

namespace model {

namespace {

pd_status read_action(u32 recorded, u32 &action)
{
    if (recorded == 0)
        return unknown_object;
    action = recorded;
    return ok;
}

} // namespace

// ---- Members --------------------------------------------------------------------------------------------

pd_status SelectionState::add_member(pd_mbr_hdl member)
{
    return members_.try_emplace(member).second ? ok : already_exists;
}

pd_status SelectionState::remove_member(pd_mbr_hdl member)
{
    const auto found = members_.find(member);
    if (found == members_.end())
        return unknown_object;
    if (found->second.groups != 0)
        for (const pd_grp_hdl group : groups_of(member))
            memberships_.remove(groups_.find(group).value().chain, group, member);
    members_.erase(member);
    return ok;
}

pd_status SelectionState::set_member_action(pd_mbr_hdl member, u32 action)
{
    const auto found = members_.find(member);
    if (found == members_.end())
        return unknown_object;
    found.value().action = action;
    return ok;
}

pd_status SelectionState::member_action(pd_mbr_hdl member, u32 &action) const
{
    const auto found = members_.find(member);
    return found != members_.end() ? read_action(found->second.action, action) : unknown_object;
}

// ---- Groups ---------------------------------------------------------------------------------------------

pd_status SelectionState::add_group(pd_grp_hdl group)
{
    return groups_.try_emplace(group).second ? ok : already_exists;
}

pd_status SelectionState::remove_group(pd_grp_hdl group)
{
    const auto found = groups_.find(group);
    if (found == groups_.end())
        return unknown_object;
    Chain &chain = found.value().chain;
    for (const Membership &membership : memberships_.chain(chain.first, chain.size))
        --members_.at(membership.member).groups;
    memberships_.clear(chain);
    groups_.erase(group);
    return ok;
}

pd_status SelectionState::set_group_action(pd_grp_hdl group, u32 action)
{
    const auto found = groups_.find(group);
    if (found == groups_.end())
        return unknown_object;
    found.value().action = action;
    return ok;
}

pd_status SelectionState::group_action(pd_grp_hdl group, u32 &action) const
{
    const auto found = groups_.find(group);
    return found != groups_.end() ? read_action(found->second.action, action) : unknown_object;
}

pd_status SelectionState::join(pd_mbr_hdl member, pd_grp_hdl group)
{
    const auto found = groups_.find(group);
    const auto joining = members_.find(member);
    if (found == groups_.end() || joining == members_.end())
        return unknown_object;
    if (memberships_.find(group, member) != nullptr)
        return already_exists;
    memberships_.add(found.value().chain, group, member);
    ++joining.value().groups;
    return ok;
}

pd_status SelectionState::leave(pd_mbr_hdl member, pd_grp_hdl group)
{
    const auto found = groups_.find(group);
    if (found == groups_.end() || !memberships_.remove(found.value().chain, group, member))
        return unknown_object;
    --members_.at(member).groups;
    return ok;
}

std::vector<pd_grp_hdl> SelectionState::groups_of(pd_mbr_hdl member) const
{
    std::vector<pd_grp_hdl> found;
    for (const auto &[handle, group] : groups_)
        if (memberships_.find(handle, member) != nullptr)
            found.push_back(handle);
    std::ranges::sort(found);
    return found;
}

// ---- The document ---------------------------------------------------------------------------------------

namespace {

cJSON *add_object(cJSON *array)
{
    cJSON *object = cJSON_CreateObject();
    cJSON_AddItemToArray(array, object);
    return object;
}

// False for what is no number or none of 32 bits.
bool read_word(const cJSON *item, u32 &word)
{
    if (!cJSON_IsNumber(item) || !(item->valuedouble >= 0) ||
        item->valuedouble > std::numeric_limits<u32>::max())
        return false;
    word = static_cast<u32>(item->valuedouble);
    return word == item->valuedouble;
}

bool read_word(const cJSON *object, const char *name, u32 &word)
{
    return read_word(cJSON_GetObjectItem(object, name), word);
}

// Runs `read` on each element; stops at the first that fails, and fails without an array.
template <typename Read>
pd_status each(const cJSON *array, Read read)
{
    if (!cJSON_IsArray(array))
        return bad_argument;
    for (const cJSON *element = array->child; element != nullptr; element = element->next)
        if (const pd_status status = read(element))
            return status;
    return ok;
}

} // namespace

template <typename Object>
std::vector<u32> SelectionState::handles_of(const ByHandle<Object> &objects)
{
    std::vector<u32> handles;
    for (const auto &[handle, object] : objects)
        handles.push_back(handle);
    std::ranges::sort(handles);
    return handles;
}

void SelectionState::log(cJSON *document) const
{
    cJSON *members = cJSON_AddArrayToObject(document, "members");
    for (const pd_mbr_hdl handle : handles_of(members_)) {
        const Member &recorded = members_.at(handle);
        cJSON *member = add_object(members);
        cJSON_AddNumberToObject(member, "handle", handle);
        cJSON_AddNumberToObject(member, "action", recorded.action);
    }
    cJSON *groups = cJSON_AddArrayToObject(document, "groups");
    for (const pd_grp_hdl handle : handles_of(groups_)) {
        const Group &recorded = groups_.at(handle);
        cJSON *group = add_object(groups);
        cJSON_AddNumberToObject(group, "handle", handle);
        cJSON_AddNumberToObject(group, "action", recorded.action);
        cJSON *in_group = cJSON_AddArrayToObject(group, "members");
        for (const Membership &membership : memberships_.chain(recorded.chain.first, recorded.chain.size))
            cJSON_AddItemToArray(in_group, cJSON_CreateNumber(membership.member));
    }
}

pd_status SelectionState::restore_member(const cJSON *element)
{
    u32 handle = 0;
    u32 action = 0;
    if (!read_word(element, "handle", handle) || !read_word(element, "action", action))
        return bad_argument;
    return members_.try_emplace(handle, Member{action, 0}).second ? ok : bad_argument;
}

pd_status SelectionState::restore_group(const cJSON *element)
{
    u32 handle = 0;
    u32 action = 0;
    if (!read_word(element, "handle", handle) || !read_word(element, "action", action))
        return bad_argument;
    if (!groups_.try_emplace(handle, Group{action, {}}).second)
        return bad_argument;
    return each(cJSON_GetObjectItem(element, "members"), [&](const cJSON *item) {
        u32 member = 0;
        return read_word(item, member) && join(member, handle) == ok ? ok : bad_argument;
    });
}

pd_status SelectionState::restore(const cJSON *document)
{
    SelectionState read;
    const auto members = cJSON_GetObjectItem(document, "members");
    if (const pd_status status = each(members, [&](auto element) { return read.restore_member(element); }))
        return status;
    const auto groups = cJSON_GetObjectItem(document, "groups");
    if (const pd_status status = each(groups, [&](auto element) { return read.restore_group(element); }))
        return status;
    *this = std::move(read);
    return ok;
}

} // namespace model
