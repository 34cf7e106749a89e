#include "commands.h"

#include <algorithm>

#include "file_name.h"

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
    const FileName file = take_file_name(words);
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

std::span<const Verb> verbs_of(const Command &command)
{
    return command.verbs ? command.verbs() : std::span<const Verb>{};
}

// What stands behind the command's name: of its verbs, what they begin with.
std::string usage_text(const Command &command)
{
    std::string lone, words;
    for (const Verb &verb : verbs_of(command)) {
        if (verb.word().empty()) {
            lone = std::string{verb.arguments()} + " | ";
            continue;
        }
        words += words.empty() ? "" : "|";
        words += verb.word();
    }
    return words.empty() ? std::string{command.usage} : lone + words + " ...";
}

// A line for each, the briefs below each other unless what is before them is long.
std::string list_of_verbs(const Command &command)
{
    constexpr std::size_t widest = 44;
    std::vector<std::string> forms;
    std::size_t width = 0;
    for (const Verb &verb : verbs_of(command)) {
        std::string form{verb.word()};
        form += form.empty() ? "" : " ";
        forms.push_back(form += verb.arguments());
        if (form.size() <= widest)
            width = std::max(width, form.size());
    }
    std::string text;
    for (std::size_t i = 0; i < forms.size(); ++i) {
        const bool apart = forms[i].size() > width;
        text += "\n  ";
        text += forms[i];
        text += apart ? "\n" : "";
        text.append(apart ? width + 4 : width - forms[i].size() + 2, ' ');
        text += verbs_of(command)[i].brief;
    }
    return text;
}

std::string help_of(const Command &command)
{
    std::string text{command.name};
    for (const std::string_view option : command.options)
        text += " [" + std::string{option} + ']';
    const std::string usage = usage_text(command);
    text += usage.empty() ? "" : " " + usage;
    text += "\n  " + std::string{command.brief};
    text += list_of_verbs(command);
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
        refuse(name, {"command", {}, "help"}, command_names());
    words.expect_end();
    session.print_text("help", help_of(*command));
}

constexpr std::string_view json_option[] = {"--json"};
constexpr std::string_view read_options[] = {"--json", "--hw"};
constexpr std::string_view diff_options[] = {"--json", "--all-bits"};

constexpr std::string_view key_text =
    R"(  KEY is one name=value for each field, by display name (dmacOui) or member name (outerEthHdr_dmacOui).
  Values: decimal, 0x hex, dotted IPv4 (32 bits), IPv6 (128 bits). A MAC address may be given whole where
  its two halves stand side by side: dmac=00:11:22:33:44:55 for dmacOui and dmacStation.
  LPM field: value/length; the whole width without a length. Ternary field: value&mask or value/length;
  all bits without a mask, any value when left out. 'any' is the mask 0 or the prefix 0/0; 'default' is the
  value 0, in an LPM field 0/0.
  priority=N is required where the key has a ternary field; the lowest number wins.
)";

constexpr std::string_view add_text =
    R"(  Every parameter of ACTION is given as name=value. priority=N stands with the key or at the end.
  ttl=N gives a time to live, for tables that take one (0 without it).
  meter=CR,CB,PR,PB,TYPE is required for a table with a direct meter: committed rate and burst, peak
  rate and burst, and the type: aware or unaware of the colour that a packet brings along.
  In a table of an action profile, 'member M' or 'group G' stands behind the colon, by handle or name.
  'help find' tells how a KEY is written. The handle is printed with --verbose and at the prompt.
)";

constexpr std::string_view modify_text =
    R"(  HANDLE is the number that add printed; or the key says which entry is meant. Parameters as for add.
  Without meter=, an entry with a direct meter keeps its meter.
)";

constexpr std::string_view lookup_text =
    R"(  Every field takes a plain value, as a packet has it: no masks, no prefixes, no priority. A field that is left
  out, or 'any', is 0, and the answer names it. Asked is the driver's memory; with --hw what the hardware holds,
  where an entry may be missing or have another key.
  Where the entry points at a group, hash=A,B gives the two words by which it picks a member (0,0 without).
  With packets=N, and bytes=N, the look-up counts as so many packets: in counters, for ageing and for armed
  snapshots.
)";

constexpr std::string_view member_text =
    R"(  MEMBER is a handle, or a NAME that add gave: a letter, then letters, digits and any of _-./
  'describe PROFILE' tells the actions. Names last as long as the session. --hw reads from the hardware.
)";

constexpr std::string_view group_text =
    R"(  GROUP and MEMBER are handles, or names that create and 'member add' gave.
)";

constexpr std::string_view counter_text =
    R"(  CELL is an index; of a counter that is direct to a table, an entry's handle, its key, or 'default'.
  Counts are those that the driver remembers; --hw brings them up to date first.
)";

constexpr std::string_view meter_text =
    R"(  CELL is an index; of a meter that is direct to a table, an entry's handle, its key, or 'default'.
)";

constexpr std::string_view register_text =
    R"(  --hw asks the hardware.
)";

constexpr std::string_view idle_text =
    R"(  An entry without a time to live does not age.
)";

constexpr std::string_view digest_text =
    R"(  Digests are macLearningDigest with smac, ingL2Domain, ingL2Aintf, and ptpDigest with ingress_mac_tstamp and
  ingL2Aintf. A lone ':' stands between the entries of one message.
)";

constexpr std::string_view pvs_text =
    R"(  VALUE of a key is written like that of a ternary field. A scope that is left out is 0,0,0.
)";

constexpr std::string_view snapshot_text =
    R"(  SNAPSHOT is the handle that create prints like add. 'lookup' with packets=N is what an armed one captures.
)";

constexpr std::string_view restart_text =
    R"(  Logs what the library has of members and groups, forgets it, lets the driver rebuild it as after a restart,
  and compares: tells that it is the same, or the first difference with both values.
)";

constexpr std::string_view read_text =
    R"(  --json prints a JSON object for each entry, --hw reads from the hardware instead of the driver's memory and
  names the entries that it lacks.
)";

constexpr std::string_view entry_text =
    R"(  ENTRY is a handle, a key or 'default'. --json prints a JSON object, --hw reads from the hardware instead of the
  driver's memory.
)";

constexpr std::string_view schema_text =
    R"(  The library's own description of key fields, actions and parameters; --json prints it taken apart.
)";

constexpr std::string_view value_text =
    R"(  ENTRY is a handle, a key or 'default', MEMBER a handle or name. --hw reads from the hardware.
  parse reads such a text back: an entry, a placement, a key, an action, a member or a reference. TEXT goes
  to the end of the line as it is, quotation marks and blanks included.
)";

constexpr std::string_view print_text =
    R"(  The library's lines for people, from placement data. ENTRY is a handle, a key or 'default'.
)";

constexpr std::string_view label_text =
    R"(  What the entry of a counted table matches on, as the hardware has it. ENTRY is a handle, a key or 'default'.
)";

constexpr std::string_view diff_text =
    R"(  Compares each entry and the default entry, as placed, with the hardware: every key field and every parameter,
  by the bits that the schema lists; the last lines name the fields some of whose bits are left out. --all-bits
  compares all bits, and groups by handle, not only by presence. Priorities are not compared.
)";

constexpr std::string_view corrupt_text =
    R"(  Alters the hardware's action or key of an entry, or what it points at, or takes the entry out of the hardware,
  and leaves software as it is: a fault for diff to find. Writing the entry's action puts both in step again.
)";

constexpr std::string_view decode_text =
    R"(  Images are in hex. An index of a counter or meter stands in no image and shows as 65535.
)";

constexpr std::string_view default_text =
    R"(  With a colon and an action, sets the default entry. Without meter=, a direct meter is detached from it.
)";

constexpr std::string_view clear_text =
    R"(  Of a PROFILE, the entries that point at it as well as its groups, members and fallback. all stands for every table
  and profile.
)";

constexpr std::string_view save_text =
    R"(  Writes the commands that bring all tables, or those that are named, to their state, to FILE, which appears
  when it is whole, or with - to the output. What is no regular file is written straight into. A table of an
  action profile brings its members and groups along, an entry its meter and time to live. Counts, properties
  and what is no part of a table are not saved. 'help load' tells how FILE is written.
)";

constexpr std::string_view load_text =
    R"(  In FILE, ~/ is the home folder; blanks stand between quotation marks or behind backslashes. Handles of new
  entries are printed with --verbose only. Ctrl-C ends it between two lines.
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
    {"lookup", "TABLE KEY [hash=A,B] [packets=N [bytes=N]]",
     "tells which entry a packet with this key would hit, and why", lookup_text, read_options, run_lookup},
    {"show", "TABLE|PROFILE", "prints all entries of a table, or all that a profile holds", read_text,
     read_options, run_show},
    {"entry", "TABLE ENTRY", "prints one entry, read back", entry_text, read_options, run_entry},
    {"default", "TABLE [: ACTION PARAMETERS|member M|group G [meter=CR,CB,PR,PB,TYPE]]",
     "prints the default entry of a table, or sets it", default_text, read_options, run_default},
    {"clear",
     "TABLE|PROFILE|all",
     "deletes all entries, and gives the default entry of the program again",
     clear_text,
     {},
     run_clear},
    {"capacity",
     "TABLE NUMBER",
     "how many entries the model's table takes, so that a full one can be tried",
     "",
     {},
     run_capacity},
    {"reset", "TABLE", "gives a table the default entry of the switch program again", "", {}, run_reset},
    {"member", "", "the members of an action profile", member_text, read_options, nullptr, member_verbs},
    {"group", "", "the groups of an action profile", group_text, json_option, nullptr, group_verbs},
    {"restart", "", "loses and rebuilds the member-selection state, and compares", restart_text, json_option,
     run_restart},
    {"schema", "TABLE|PROFILE|ACTION", "prints the schema text of a table, profile or action", schema_text,
     json_option, run_schema},
    {"value", "TABLE ENTRY | PROFILE MEMBER | parse TABLE|PROFILE TEXT",
     "prints an entry or member as value text, or reads such a text", value_text, read_options, run_value},
    {"print", "TABLE ENTRY | PROFILE MEMBER", "prints an entry or member, one field a line", print_text,
     json_option, run_print},
    {"label", "TABLE ENTRY", "tells in words what an entry of a counted table matches on", label_text,
     json_option, run_label},
    {"diff", "TABLE", "prints every difference between software and hardware", diff_text, diff_options,
     run_diff},
    {"corrupt",
     "TABLE ENTRY : ACTION PARAMETERS|member M|group G|key KEY|missing",
     "makes the hardware differ from software",
     corrupt_text,
     {},
     run_corrupt},
    {"decode", "", "prints the fields of a match or action image", decode_text, json_option, nullptr,
     decode_verbs},
    {"count", "[TABLE]", "the number of entries of a table, or of all that have any", "", json_option,
     run_count},
    {"property", "TABLE NUMBER [VALUE [SECOND_VALUE]]",
     "prints both values of a table's property, or sets them",
     "  The numbers and what their values mean are the driver's. SECOND_VALUE is 0 when it is left out.\n",
     json_option, run_property},
    {"counter", "", "the counts of entries and of counter cells", counter_text, read_options, nullptr,
     counter_verbs},
    {"meter", "", "the meters of entries and meter cells", meter_text, json_option, nullptr, meter_verbs},
    {"register", "", "the cells of registers", register_text, read_options, nullptr, register_verbs},
    {"idle", "", "the ageing of entries", idle_text, json_option, nullptr, idle_verbs},
    {"clock", "TICKS", "lets time pass, and tells which entries ran idle", "", json_option, run_clock},
    {"digest", "", "messages about packets, such as new stations", digest_text, json_option, nullptr,
     digest_verbs},
    {"pvs", "", "the entries of parser value sets", pvs_text, json_option, nullptr, pvs_verbs},
    {"hash", "", "hash calculations", "", json_option, nullptr, hash_verbs},
    {"snapshot", "", "what packets look like in the stages of a pipe", snapshot_text, json_option, nullptr,
     snapshot_verbs},
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
    {"load", "FILE", "carries out the commands of a file", load_text, {}, run_load},
    {"trace", "on|off", "prints the driver calls of each command behind it", "", {}, run_trace},
    {"--c", "COMMAND", "carries a command out, and prints the C that does the same", "", {}, run_in_c},
    {"echo", "[TEXT]", "prints TEXT", "", {}, run_echo},
    {"help", "[COMMAND]", "lists the commands, or tells about one", "", {}, run_help},
    {"?", "[COMMAND]", "the same as help", "", {}, run_help},
    {"quit", "", "ends the session", "", {}, run_quit},
    {"exit", "", "the same as quit", "", {}, run_quit},
};

} // namespace

void run(const Command &command, Session &session, Words &words)
{
    if (!command.verbs)
        return command.run(session, words);
    const Verb *lone = nullptr;
    std::vector<std::string_view> names;
    const std::string_view word = words.peek();
    for (const Verb &verb : command.verbs()) {
        if (verb.word().empty()) {
            lone = &verb;
            continue;
        }
        if (verb.word() == word) {
            words.take();
            return verb.run(session, words, verb.name);
        }
        names.push_back(verb.word());
    }
    if (!lone || word.empty())
        refuse(word, {"word"}, names);
    lone->run(session, words, lone->name);
}

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
