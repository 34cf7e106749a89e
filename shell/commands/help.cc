// The help command: all commands, or one with its verbs.
#include <algorithm>

#include "commands.h"
#include "verb_arguments.h"

namespace shell {

namespace {

std::string list_of_commands()
{
    constexpr std::size_t width = 10;
    std::string list;
    for (const Command *command : commands()) {
        list += "  ";
        list += command->name();
        list.append(width - command->name().size(), ' ');
        list += command->brief();
        list += '\n';
    }
    return list + "help COMMAND tells more. A # begins a comment, a \\ at the end continues the line.";
}

std::string form_of(const Verb &verb)
{
    std::string form{verb.word()};
    const std::string usage = text_of(verb.usage());
    form += form.empty() || usage.empty() ? "" : " ";
    return form += usage;
}

// What stands behind the command's name: of several verbs, what they begin with.
std::string usage_text(const Command &command)
{
    if (command.verbs.size() == 1)
        return form_of(command.verbs.front());
    std::string lone, words;
    for (const Verb &verb : command.verbs) {
        if (verb.word().empty()) {
            lone = form_of(verb) + " | ";
            continue;
        }
        words += words.empty() ? "" : "|";
        words += verb.word();
    }
    return lone + words + " ...";
}

// A line for each, the briefs below each other unless what is before them is long.
std::string list_of_verbs(std::span<const Verb> verbs)
{
    constexpr std::size_t widest = 44;
    std::vector<std::string> forms;
    std::size_t width = 0;
    for (const Verb &verb : verbs) {
        forms.push_back(form_of(verb));
        if (forms.back().size() <= widest)
            width = std::max(width, forms.back().size());
    }
    std::string text;
    for (std::size_t i = 0; i < forms.size(); ++i) {
        const bool apart = forms[i].size() > width;
        text += "\n  ";
        text += forms[i];
        text += apart ? "\n" : "";
        text.append(apart ? width + 4 : width - forms[i].size() + 2, ' ');
        text += verbs[i].brief;
    }
    return text;
}

std::string help_of(const Command &command)
{
    std::string text{command.name()};
    for (const std::string_view name : command.options) {
        const OptionWord &option = *option_word(name);
        text.append(" [")
            .append(name)
            .append(option.value.empty() ? "" : " ")
            .append(option.value)
            .append("]");
    }
    const std::string usage = usage_text(command);
    text += usage.empty() ? "" : " " + usage;
    text += "\n  " + std::string{command.brief()};
    if (command.verbs.size() > 1)
        text += list_of_verbs(command.verbs);
    return text + (command.text.empty() ? "" : "\n") +
           std::string{command.text.substr(0, command.text.find_last_not_of('\n') + 1)};
}

struct CommandName {
    using Value = const Command *;
    static void describe(Usage &usage) { usage.add({"COMMAND"}); }
    static Value read(Reading &reading)
    {
        const std::string_view name = reading.words.take();
        const Command *command = command_named(name);
        if (!command)
            refuse(name, {"command", {}, "help"}, command_names());
        return command;
    }
};

void help(Session &session, std::optional<const Command *> command)
{
    session.print_text("help", command ? help_of(**command) : list_of_commands());
}

constexpr Verb help_verb[] = {
    verb<help, arg::Optional<CommandName>>("help", "lists the commands, or tells about one").reads()};
constexpr Verb question_verb[] = {verb<help, arg::Optional<CommandName>>("?", "the same as help").reads()};

} // namespace

const Command help_command{help_verb};
const Command question_command{question_verb};

} // namespace shell
