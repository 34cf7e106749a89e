// The table of commands. A command is a row here and a function in the file of its subject.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "session.h"
#include "verb.h"
#include "words.h"

namespace shell {

struct Command {
    std::string_view name;
    std::string_view usage;                      // behind the name
    std::string_view brief;                      // one line
    std::string_view text;                       // more of it, for `help COMMAND`
    std::span<const std::string_view> options;   // words of it that begin with --, wherever they stand
    void (*run)(Session &session, Words &words); // or else
    std::span<const Verb> (*verbs)() = nullptr;
};

// Carries out the rest of a line.
void run(const Command &command, Session &session, Words &words);

std::span<const Command> commands();
const Command *find_command(std::string_view name);
std::vector<std::string_view> command_names();

// catalogue.cc
void run_tables(Session &session, Words &words);
void run_describe(Session &session, Words &words);

// entries.cc
void run_add(Session &session, Words &words);
void run_modify(Session &session, Words &words);
void run_delete(Session &session, Words &words);
void run_find(Session &session, Words &words);
void run_count(Session &session, Words &words);

// lookup.cc
void run_lookup(Session &session, Words &words);

// reading.cc
void run_show(Session &session, Words &words);
void run_entry(Session &session, Words &words);

// clear.cc
void run_clear(Session &session, Words &words);
void run_capacity(Session &session, Words &words);

// defaults.cc
void run_default(Session &session, Words &words);
void run_reset(Session &session, Words &words);

// members.cc
std::span<const Verb> member_verbs();

// groups.cc
std::span<const Verb> group_verbs();

// restart.cc
void run_restart(Session &session, Words &words);

// inspection.cc
void run_schema(Session &session, Words &words);
void run_value(Session &session, Words &words);
void run_print(Session &session, Words &words);
void run_label(Session &session, Words &words);

// diff.cc
void run_diff(Session &session, Words &words);

// corrupt.cc
void run_corrupt(Session &session, Words &words);

// decode.cc
std::span<const Verb> decode_verbs();

// properties.cc
void run_property(Session &session, Words &words);

// watches.cc
void run_watch(Session &session, Words &words);

// counters.cc
std::span<const Verb> counter_verbs();

// meters.cc
std::span<const Verb> meter_verbs();

// registers.cc
std::span<const Verb> register_verbs();

// idle.cc
std::span<const Verb> idle_verbs();
void run_clock(Session &session, Words &words);

// digests.cc
std::span<const Verb> digest_verbs();

// value_sets.cc
std::span<const Verb> pvs_verbs();

// hashes.cc
std::span<const Verb> hash_verbs();

// snapshots.cc
std::span<const Verb> snapshot_verbs();

// in_c.cc
void run_in_c(Session &session, Words &words);

// save.cc
void run_save(Session &session, Words &words);

} // namespace shell
