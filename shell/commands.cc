#include "commands.h"

#include <algorithm>
#include <iomanip>

namespace shell {

namespace {

void run_trace(Session &session, Words &words)
{
    const std::string_view state = words.take("'on' or 'off'");
    if (state != "on" && state != "off")
        throw BadLine{state, quoted(state) + " is neither 'on' nor 'off'"};
    words.expect_end();
    session.set_trace(state == "on");
}

void run_echo(Session &session, Words &words)
{
    std::string text{words.rest()};
    std::replace(text.begin(), text.end(), '\n', ' ');
    session.out() << text << '\n';
}

void run_quit(Session &session, Words &words)
{
    words.expect_end();
    session.quit();
}

void list_commands(std::ostream &out)
{
    for (const Command &command : commands())
        out << "  " << std::left << std::setw(10) << command.name << command.brief << '\n';
    out << "help COMMAND tells more. A # begins a comment, a \\ at the end continues the line.\n";
}

void run_help(Session &session, Words &words)
{
    if (words.empty())
        return list_commands(session.out());
    const std::string_view name = words.take();
    const Command *command = find_command(name);
    if (!command)
        throw BadLine{name, "no command " + quoted(name) + suggestion(name, command_names())};
    words.expect_end();
    session.out() << command->name << (command->usage.empty() ? "" : " ") << command->usage << "\n  "
                  << command->brief << '\n'
                  << command->text;
}

constexpr std::string_view key_text =
    R"(  KEY is one name=value for each field, by display name (dmacOui) or member name (outerEthHdr_dmacOui).
  Values: decimal, 0x hex, dotted IPv4 (32 bits), IPv6 (128 bits). A MAC address may be given whole where
  its two halves stand side by side: dmac=00:11:22:33:44:55 for dmacOui and dmacStation.
  LPM field: value/length; the whole width without a length. Ternary field: value&mask or value/length;
  all bits without a mask, any value when left out.
  priority=N is required where the key has a ternary field; the lowest number wins.
)";

constexpr std::string_view add_text =
    R"(  Every parameter of ACTION is given as name=value. priority=N stands with the key or at the end.
  ttl=N gives a time to live, for tables that take one (0 without it).
  meter=CR,CB,PR,PB,TYPE is required for a table with a direct meter: committed rate and burst, peak
  rate and burst, and the type: aware or unaware of the colour that a packet brings along.
  'help find' tells how a KEY is written. The handle is printed with --verbose and interactively.
)";

constexpr std::string_view modify_text =
    R"(  HANDLE is the number that add printed; or the key says which entry is meant. Parameters as for add.
  Without meter=, an entry with a direct meter keeps its meter.
)";

constexpr std::string_view lookup_text =
    "  Every field takes a plain value, as a packet has it: no masks, no prefixes, no priority.\n";

constexpr Command all_commands[] = {
    {"tables", "[TEXT]", "the tables whose name contains TEXT, with key kind and number of entries", "",
     run_tables},
    {"describe", "TABLE", "the key fields, actions with parameters and resources of a table", "",
     run_describe},
    {"add", "TABLE KEY : ACTION PARAMETERS [priority=N] [ttl=N] [meter=CR,CB,PR,PB,TYPE]", "adds an entry",
     add_text, run_add},
    {"modify", "TABLE HANDLE|KEY : ACTION PARAMETERS [priority=N] [meter=CR,CB,PR,PB,TYPE]",
     "gives an entry another action", modify_text, run_modify},
    {"delete", "TABLE HANDLE|KEY [priority=N]", "deletes an entry", "", run_delete},
    {"find", "TABLE KEY [priority=N]", "prints the handle of the entry with this key", key_text, run_find},
    {"lookup", "TABLE KEY", "tells which entry a packet with this key would hit, and why", lookup_text,
     run_lookup},
    {"count", "[TABLE]", "the number of entries of a table, or of all that have any", "", run_count},
    {"trace", "on|off", "prints the driver calls of each command behind it", "", run_trace},
    {"echo", "[TEXT]", "prints TEXT", "", run_echo},
    {"help", "[COMMAND]", "lists the commands, or tells about one", "", run_help},
    {"quit", "", "ends the session", "", run_quit},
};

} // namespace

std::span<const Command> commands()
{
    return all_commands;
}

const Command *find_command(std::string_view name)
{
    const auto found = std::ranges::find(all_commands, name, &Command::name);
    return found == std::end(all_commands) ? nullptr : found;
}

std::vector<std::string_view> command_names()
{
    std::vector<std::string_view> names;
    for (const Command &command : all_commands)
        names.push_back(command.name);
    return names;
}

} // namespace shell
