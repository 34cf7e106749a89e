// The commands. Each is a row in the file of its subject, below the functions that it calls.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "session.h"
#include "verb.h"

namespace shell {

inline constexpr std::string_view json_option[] = {"--json"};
inline constexpr std::string_view read_options[] = {"--json", "--hw"};
inline constexpr std::string_view list_options[] = {"--json", "--sort", "--limit", "--columns"};
inline constexpr std::string_view read_list_options[] = {"--json", "--hw", "--sort", "--limit", "--columns"};

// In the order in which help lists them.
std::span<const Command *const> commands();
const Command *command_named(std::string_view name);
std::vector<std::string_view> command_names();

// Takes the word behind the command's name, where there is one for what is meant. BadLine for none of them.
const Verb &take_verb(const Command &command, Words &words);

extern const Command tables_command, describe_command;                                         // catalogue.cc
extern const Command add_command, modify_command, delete_command, find_command, count_command; // entries.cc
extern const Command lookup_command;                                                           // lookup.cc
extern const Command show_command, entry_command;                                              // reading.cc
extern const Command default_command, reset_command;                                           // defaults.cc
extern const Command clear_command, capacity_command;                                          // clear.cc
extern const Command member_command;                                                           // members.cc
extern const Command group_command;                                                            // groups.cc
extern const Command restart_command;                                                          // restart.cc
extern const Command schema_command, value_command, print_command, label_command;   // inspection.cc
extern const Command diff_command;                                                  // diff.cc
extern const Command corrupt_command;                                               // corrupt.cc
extern const Command decode_command;                                                // decode.cc
extern const Command property_command;                                              // properties.cc
extern const Command counter_command;                                               // counters.cc
extern const Command meter_command;                                                 // meters.cc
extern const Command register_command;                                              // registers.cc
extern const Command idle_command, clock_command;                                   // idle.cc
extern const Command digest_command;                                                // digests.cc
extern const Command pvs_command;                                                   // value_sets.cc
extern const Command hash_command;                                                  // hashes.cc
extern const Command snapshot_command;                                              // snapshots.cc
extern const Command begin_command, commit_command, rollback_command, plan_command; // transaction.cc
extern const Command watch_command;                                                 // watches.cc
extern const Command save_command;                                                  // save.cc
extern const Command in_c_command;                                                  // in_c.cc
extern const Command load_command, trace_command, echo_command, every_command, quit_command,
    exit_command;                                    // session_commands.cc
extern const Command help_command, question_command; // help.cc

} // namespace shell
