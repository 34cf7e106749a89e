// The action enum in both directions. Only full names count, with their prefix and case.

#include <cstring>

#include "pd.h"

const char *p4_pd_tessel_switch_action_enum_to_string(u32 action_number)
{
    if (action_number >= P4_PD_TESSEL_SWITCH_ACTION_COUNT)
        return nullptr;
    return p4_pd_tessel_switch_action_name_strings[action_number];
}

u32 p4_pd_tessel_switch_action_string_to_enum(const char *name)
{
    for (u32 number = 0; name && number < P4_PD_TESSEL_SWITCH_ACTION_COUNT; ++number)
        if (std::strcmp(name, p4_pd_tessel_switch_action_name_strings[number]) == 0)
            return number;
    return P4_PD_TESSEL_SWITCH_ACTION_COUNT;
}
