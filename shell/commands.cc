#include "commands.h"

#include <algorithm>

namespace shell {

namespace {

void run_trace(Session &session, Words &words)
{
    const bool on = take_on_off(words);
    words.expect_end();
    session.set_trace(on);
}

void run_echo(Session &session, Words &words)
{
    std::string text{words.rest()};
    std::replace(text.begin(), text.end(), '\n', ' ');
    session.print_text("echo", text);
}

void run_load(Session &session, Words &words)
{
    const std::string_view file = words.take("file name");
    words.expect_end();
    session.load(file);
}

void run_quit(Session &session, Words &words)
{
    words.expect_end();
    session.quit();
}

std::string list_of_commands()
{
    constexpr std::size_t width = 10;
    std::string list;
    for (const Command &command : commands()) {
        list += "  ";
        list += command.name;
        list.append(width - command.name.size(), ' ');
        list += command.brief;
        list += '\n';
    }
    return list + "help COMMAND tells more. A # begins a comment, a \\ at the end continues the line.";
}

std::string help_of(const Command &command)
{
    std::string text{command.name};
    for (const std::string_view option : command.options)
        text += " [" + std::string{option} + ']';
    if (!command.usage.empty())
        text += ' ' + std::string{command.usage};
    text += "\n  " + std::string{command.brief};
    return text + (command.text.empty() ? "" : "\n") +
           std::string{command.text.substr(0, command.text.find_last_not_of('\n') + 1)};
}

void run_help(Session &session, Words &words)
{
    if (words.empty())
        return session.print_text("help", list_of_commands());
    const std::string_view name = words.take();
    const Command *command = find_command(name);
    if (!command)
        throw BadLine{name, "no command " + quoted(name) + suggestion(name, command_names())};
    words.expect_end();
    session.print_text("help", help_of(*command));
}

constexpr std::string_view json_option[] = {"--json"};
constexpr std::string_view read_options[] = {"--json", "--hw"};

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
  In a table of an action profile, 'member M' or 'group G' stands behind the colon, by handle or name.
  'help find' tells how a KEY is written. The handle is printed with --verbose and interactively.
)";

constexpr std::string_view modify_text =
    R"(  HANDLE is the number that add printed; or the key says which entry is meant. Parameters as for add.
  Without meter=, an entry with a direct meter keeps its meter.
)";

constexpr std::string_view lookup_text =
    R"(  Every field takes a plain value, as a packet has it: no masks, no prefixes, no priority.
  Where the entry points at a group, hash=A,B gives the two words by which it picks a member (0,0 without).
)";

constexpr std::string_view member_text =
    R"(  add PROFILE [NAME] : ACTION PARAMETERS     adds a member
  modify PROFILE MEMBER : ACTION PARAMETERS  gives it other parameters; a member keeps its action
  delete PROFILE MEMBER                      deletes it, unless an entry, a group or the fallback needs it
  show PROFILE [MEMBER]                      prints it, or all; --hw reads from the hardware
  MEMBER is a handle, or a NAME that add gave: a letter, then letters, digits and any of _-./
  'describe PROFILE' tells the actions. Names last as long as the session.
)";

constexpr std::string_view group_text =
    R"(  create PROFILE [NAME] [size=N]                 makes an empty group for up to N members (256 without)
  delete PROFILE GROUP                           deletes it, unless an entry points at it; its members stay
  add PROFILE GROUP MEMBER...                    lets all these members join, or none
  remove PROFILE GROUP MEMBER...                 takes all these members out, or none
  state PROFILE GROUP MEMBER active|inactive     only active members are picked; a member joins active
  fallback PROFILE MEMBER|none                   the member for packets that find no active member
  show PROFILE [GROUP]                           prints it, or all and the fallback
  GROUP and MEMBER are handles, or names that create and 'member add' gave.
)";

constexpr std::string_view restart_text =
    R"(  Logs what the library has of members and groups, forgets it, lets the driver rebuild it as after a restart,
  and compares: tells that it is the same, or the first difference with both values.
)";

constexpr std::string_view read_text =
    R"(  --json prints a JSON object for each entry, --hw reads from the hardware instead of the driver's memory.
)";

constexpr std::string_view default_text =
    R"(  With a colon and an action, sets the default entry. Without meter=, a direct meter is detached from it.
)";

constexpr std::string_view save_text =
    R"(  Writes the commands that bring all tables, or those that are named, to their state, to FILE, which appears
  when it is whole. A table of an action profile brings its members and groups along. Meters and times to
  live cannot be read back; the file says what it has in their place.
)";

constexpr Command all_commands[] = {
    {"tables", "[TEXT]", "the tables whose name contains TEXT, with key kind and number of entries", "",
     json_option, run_tables},
    {"describe", "TABLE|PROFILE", "the key, actions and resources of a table, the actions of a profile", "",
     json_option, run_describe},
    {"add",
     "TABLE KEY : ACTION PARAMETERS|member M|group G [priority=N] [ttl=N] [meter=CR,CB,PR,PB,TYPE]",
     "adds an entry",
     add_text,
     {},
     run_add},
    {"modify",
     "TABLE HANDLE|KEY : ACTION PARAMETERS|member M|group G [priority=N] [meter=CR,CB,PR,PB,TYPE]",
     "gives an entry another action, member or group",
     modify_text,
     {},
     run_modify},
    {"delete", "TABLE HANDLE|KEY [priority=N]", "deletes an entry", "", {}, run_delete},
    {"find", "TABLE KEY [priority=N]", "prints the handle of the entry with this key", key_text, json_option,
     run_find},
    {"lookup", "TABLE KEY [hash=A,B]", "tells which entry a packet with this key would hit, and why",
     lookup_text, json_option, run_lookup},
    {"show", "TABLE|PROFILE", "prints all entries of a table, or all that a profile holds", read_text,
     read_options, run_show},
    {"entry", "TABLE HANDLE", "prints one entry, read back", read_text, read_options, run_entry},
    {"default", "TABLE [: ACTION PARAMETERS [meter=CR,CB,PR,PB,TYPE] | : member M | : group G]",
     "prints the default entry of a table, or sets it", default_text, read_options, run_default},
    {"reset", "TABLE", "gives a table the default entry of the switch program again", "", {}, run_reset},
    {"member", "add|modify|delete|show PROFILE ...", "the members of an action profile", member_text,
     read_options, run_member},
    {"group", "create|delete|add|remove|state|fallback|show PROFILE ...", "the groups of an action profile",
     group_text, json_option, run_group},
    {"restart", "", "loses and rebuilds the member-selection state, and compares", restart_text, json_option,
     run_restart},
    {"count", "[TABLE]", "the number of entries of a table, or of all that have any", "", json_option,
     run_count},
    {"property", "TABLE NUMBER [VALUE [SECOND_VALUE]]",
     "prints both values of a table's property, or sets them",
     "  The numbers and what their values mean are the driver's. SECOND_VALUE is 0 when it is left out.\n",
     json_option, run_property},
    {"watch",
     "TABLE [on|off]",
     "prints the updates of a table behind the commands that make them",
     "",
     {},
     run_watch},
    {"save",
     "FILE [TABLE...]",
     "writes the state of tables to a file that load reads",
     save_text,
     {},
     run_save},
    {"load", "FILE", "carries out the commands of a file", "", {}, run_load},
    {"trace", "on|off", "prints the driver calls of each command behind it", "", {}, run_trace},
    {"echo", "[TEXT]", "prints TEXT", "", {}, run_echo},
    {"help", "[COMMAND]", "lists the commands, or tells about one", "", {}, run_help},
    {"quit", "", "ends the session", "", {}, run_quit},
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
