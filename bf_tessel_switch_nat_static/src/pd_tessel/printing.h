// Entries, keys and actions for people, a line per member, straight to a file descriptor.
#pragma once

#include "internal.h"
#include "texts.h"

namespace TS_INTERNAL pd_tessel {

// What the last line's output returned.
int match_spec_print(const TableText &table, int fd, int indent, const void *key);
int action_print(const ActionText &action, int fd, int indent, const void *parameters);

// The status of the decoding; a failure is told on the descriptor as well.
pd_status plcmt_data_print(const TableText &table, int fd, int indent, void *plcmt_data);
pd_status member_plcmt_data_print(const ProfileText &profile, int fd, int indent, void *plcmt_data);

} // namespace pd_tessel
