// What the commands of recorded calls are put together of. A text is empty where no command says it: the
// program has no such table, action or resource, an image has another length than they say, or a value does
// not fit.
#pragma once

#include <span>
#include <string>

#include "arguments.h"
#include "reflection.h"
#include "rows.h"

namespace shell {

// "dip=10.0.0.1/24 priority=7"
std::string key_text(const reflection::TableFunctions &table, const pipe_match_spec &match);
// "setNextHop nextHop=7"
std::string action_text(std::span<const pd::Binding> actions, u32 handle, const pipe_action_spec &spec);
// " meter=CR,CB,PR,PB,TYPE" where the entry gets one.
std::string meter_text(const reflection::TableFunctions &table, const pipe_action_spec &spec);
// " : packets=1 bytes=64"
std::string counts_text(const pipe_stat_data &counts);

// "delete ipv4Host dip=10.0.0.1"
std::string joined(const char *command, const char *name, const std::string &rest);
// A command about the table of the call, and about its action profile.
std::string table_command(const char *command, const tap::Arguments &call, const std::string &rest = {});
std::string profile_command(const char *command, const tap::Arguments &call, const std::string &rest);
std::string meter_command(u32 handle, const std::string &cell, const pipe_meter_spec &meter);
// About the counter, meter or register of this handle.
template <typename Functions>
std::string named_command(const char *command, std::span<const Functions> all, u32 handle,
                          const std::string &rest = {})
{
    for (const Functions &functions : all)
        if (functions.row->handle == handle)
            return joined(command, functions.row->name, rest);
    return {};
}

} // namespace shell
