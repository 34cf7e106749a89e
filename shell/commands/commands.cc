#include "commands.h"

#include <algorithm>

namespace shell {

namespace {

constexpr const Command *all_commands[] = {
    &tables_command,  &describe_command, &add_command,      &modify_command,   &delete_command,
    &find_command,    &lookup_command,   &show_command,     &entry_command,    &default_command,
    &clear_command,   &capacity_command, &reset_command,    &member_command,   &group_command,
    &restart_command, &schema_command,   &value_command,    &print_command,    &label_command,
    &diff_command,    &corrupt_command,  &decode_command,   &count_command,    &property_command,
    &counter_command, &meter_command,    &register_command, &idle_command,     &clock_command,
    &digest_command,  &pvs_command,      &hash_command,     &snapshot_command, &watch_command,
    &save_command,    &load_command,     &begin_command,    &commit_command,   &rollback_command,
    &plan_command,    &trace_command,    &in_c_command,     &echo_command,     &every_command,
    &help_command,    &question_command, &quit_command,     &exit_command,
};

} // namespace

const Verb &take_verb(const Command &command, Words &words)
{
    const Verb *lone = nullptr;
    std::vector<std::string_view> names;
    const std::string_view word = words.peek();
    for (const Verb &verb : command.verbs) {
        if (verb.word().empty()) {
            lone = &verb;
            continue;
        }
        if (verb.word() == word) {
            words.take();
            return verb;
        }
        names.push_back(verb.word());
    }
    if (!lone || (word.empty() && !names.empty()))
        refuse(word, {"word"}, names);
    return *lone;
}

std::span<const Command *const> commands()
{
    return all_commands;
}

const Command *command_named(std::string_view name)
{
    const auto found = std::ranges::find(all_commands, name, &Command::name);
    return found == std::end(all_commands) ? nullptr : *found;
}

std::vector<std::string_view> command_names()
{
    std::vector<std::string_view> names;
    for (const Command *command : all_commands)
        names.push_back(command->name());
    return names;
}

} // namespace shell
