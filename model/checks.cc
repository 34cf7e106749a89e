#include "checks.h"

#include <algorithm>

#include "objects.h"

namespace model {

namespace {

// A direct table's entry carries its data; an indirect one's points at a member or, with a selector, a group.
bool kind_fits(const ProgramTable &table, const ProgramAction &action, const pipe_action_spec &spec)
{
    switch (spec.action_kind) {
    case PIPE_ACTION_DATA:
        return table.action_table == 0 && spec.action_data.data != nullptr &&
               spec.action_data.num_bytes == action.bytes;
    case PIPE_ACTION_MEMBER:
        return table.action_table != 0;
    case PIPE_ACTION_GROUP:
        return table.selector != 0;
    default:
        return false;
    }
}

// A table has at most one resource, so an entry names none or that one.
bool resources_fit(const ProgramTable &table, const pipe_action_spec &spec)
{
    if (spec.resource_count == 0)
        return true;
    return spec.resource_count == 1 && resource_fits(table, spec.resources[0]);
}

// Whatever a member or group runs may be the default of an indirect table.
bool action_fits(const ProgramTable &table, const ProgramAction &action, pd_entry_hdl entry)
{
    if (entry != TS_MODEL_DEFAULT_ENTRY)
        return action.entry;
    return table.action_table != 0 || action.default_action;
}

} // namespace

bool resource_fits(const ProgramTable &table, const pipe_res_spec &resource)
{
    return table.resource != 0 && resource.res_handle == table.resource &&
           resource.res_tag <= PIPE_RES_DETACH;
}

pd_status check_match(const ProgramTable &table, const pipe_match_spec &match)
{
    if (table.key == Key::none || match.match_value == nullptr || match.match_mask == nullptr)
        return bad_argument;
    if (match.num_bytes != table.key_bytes || match.num_valid_bits != table.key_bits)
        return bad_argument;
    const bool whole_key = std::all_of(match.match_mask, match.match_mask + table.key_bytes,
                                       [](u8 byte) { return byte == 0xff; });
    return table.key == Key::exact && !whole_key ? bad_argument : ok;
}

pd_status check_action(const ProgramTable &table, pd_entry_hdl entry, u32 action,
                       const pipe_action_spec &spec)
{
    const ProgramAction *found = find_action(table.actions, action);
    const bool fits = found != nullptr && action_fits(table, *found, entry) &&
                      kind_fits(table, *found, spec) && resources_fit(table, spec);
    return fits ? ok : bad_argument;
}

pd_status check_member(const ProgramProfile &profile, u32 action, const pipe_action_spec &spec)
{
    const ProgramAction *found = find_action(profile.actions, action);
    if (found == nullptr)
        return bad_argument;
    const pipe_action_data &data = spec.action_data;
    const bool fits = spec.action_kind == PIPE_ACTION_NONE && spec.resource_count == 0 &&
                      data.data != nullptr && data.num_bytes == found->bytes &&
                      data.num_valid_bits == found->bits;
    return fits ? ok : bad_argument;
}

} // namespace model
