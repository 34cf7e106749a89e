// Value texts: one entry, member, key or action as a literal that goes with its schema.
#pragma once

#include "internal.h"
#include "texts.h"

namespace TS_INTERNAL pd_tessel {

// All return the length of the text without its NUL. Reading failures give 0 and leave the buffer alone.
u32 match_spec_value(const TableText &table, const void *key, char *buf);
u32 action_value(const ActionText &action, const void *parameters, char *buf);
inline u32 action_value(const ActionText &action, char *buf) // of one without parameters
{
    return action_value(action, nullptr, buf);
}
u32 table_value(const TableText &table, pd_sess_hdl sess, u8 device_id, pd_entry_hdl entry, u8 from_hw,
                char *buf);
u32 plcmt_data_value(const TableText &table, void *plcmt_data, char *buf);
u32 member_plcmt_data_value(const ProfileText &profile, void *plcmt_data, char *buf);

} // namespace pd_tessel
