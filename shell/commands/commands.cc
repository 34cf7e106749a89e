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

constexpr std::string_view counter_text =
    R"(  TABLE|COUNTER                            lists the entries of a table with their counts
  read COUNTER CELL                        prints both counts of a cell
  write COUNTER CELL : packets=N bytes=N   sets them; bytes is 0 when it is left out
  sync COUNTER                             has the driver bring its counts up to date with the hardware's
  CELL is an index; of a counter that is direct to a table, an entry's handle, its key, or 'default'.
  Counts are those that the driver remembers; --hw brings them up to date first.
)";

constexpr std::string_view meter_text =
    R"(  set METER CELL : committed_rate=N committed_burst=N peak_rate=N peak_burst=N type=aware|unaware
  read METER CELL        prints them
  adjust METER [BYTES]   prints, or sets, how many bytes it adds to each packet
  CELL is an index; of a meter that is direct to a table, an entry's handle, its key, or 'default'.
)";

constexpr std::string_view register_text =
    R"(  read REGISTER INDEX [count=N]      prints cells, each with its value in every pipe; --hw asks the hardware
  write REGISTER INDEX VALUE         sets a cell to 0 or 1
  fill REGISTER VALUE                sets all cells
  reset REGISTER [INDEX [count=N]]   gives cells, or all, the value that they start with
  sync REGISTER                      has the driver bring its values up to date with the hardware's
)";

constexpr std::string_view idle_text =
    R"(  enable TABLE [mode=N] [param_1=N] [param_2=N] [param_3=N] [param_4=N] [param_5=N]
                                                      lets entries age; clock tells which ran idle
  disable TABLE                                       ends that
  params TABLE                                        prints what enable was given
  show TABLE                                          lists the entries with time to live and state
  ttl TABLE HANDLE|KEY [ttl=N]                        prints the time to live and the state, or sets the time
  restart TABLE HANDLE|KEY                            lets the time to live begin again
  hit TABLE HANDLE|KEY, expire TABLE HANDLE|KEY       makes the entry active, or idle
  An entry without a time to live does not age.
)";

constexpr std::string_view digest_text =
    R"(  watch DIGEST [on|off|hold]   prints what comes in and acknowledges it; with hold, only prints
  send DIGEST FIELDS           the chip sends a message; a lone ':' stands between the entries of one message
  ack DIGEST                   acknowledges the messages that are held
  pending DIGEST               how many messages are not acknowledged
  timeout [N]                  prints, or sets, how long the chip waits for a message to fill
  Digests are macLearningDigest with smac, ingL2Domain, ingL2Aintf, and ptpDigest with ingress_mac_tstamp and
  ingL2Aintf.
)";

constexpr std::string_view pvs_text =
    R"(  add SET key=VALUE [scope=A,B,C]       adds an entry; the handle is printed as by add
  modify SET HANDLE key=VALUE           gives it another key
  delete SET HANDLE                     deletes it
  find SET key=VALUE [scope=A,B,C]      prints the handle of the entry with this key
  show SET [scope=A,B,C]                lists the entries of the scope
  property SET NUMBER [VALUE] [argument=N]   prints a property, or sets it
  VALUE of a key is written like that of a ternary field. A scope that is left out is 0,0,0.
)";

constexpr std::string_view hash_text =
    R"(  value CALCULATION WIDTH:VALUE...              the hash of fields of these widths in bits, 128 at most
  show CALCULATION                              prints input, algorithm, seed and attributes
  input CALCULATION N, algorithm CALCULATION N  chooses one; each calculation has number 0 alone
  seed CALCULATION N [SECOND]                   sets the seed; 0 is the algorithm's own
  attributes CALCULATION [FIELD,TYPE,VALUE]...  sets the attributes of input fields in place of all before
)";

constexpr std::string_view snapshot_text =
    R"(  create ingress|egress [first_stage=N] [last_stage=N] [pipe=N]
  trigger SNAPSHOT [OFFSET=VALUE]...   arms it: fields by the offset of their first byte, values as of ternary
                                       fields
  show SNAPSHOT                        what each stage has captured, in hex without the zeros at the end
  delete SNAPSHOT
  SNAPSHOT is the handle that create prints like add. 'lookup' with packets=N is what an armed one captures.
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
    R"(  match TABLE VALUE [MASK] [partition=N]  the key of these images, as trace prints them; without MASK all
                                          bits count
  action ACTION [DATA]                    the parameters of this image
  Images are in hex. An index of a counter or meter stands in no image and shows as 65535.
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
    {"member", "add|modify|delete|show PROFILE ...", "the members of an action profile", member_text,
     read_options, run_member},
    {"group", "create|delete|add|remove|state|fallback|show PROFILE ...", "the groups of an action profile",
     group_text, json_option, run_group},
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
    {"decode", "match TABLE VALUE [MASK] [partition=N] | action ACTION [DATA]",
     "prints the fields of a match or action image", decode_text, json_option, run_decode},
    {"count", "[TABLE]", "the number of entries of a table, or of all that have any", "", json_option,
     run_count},
    {"property", "TABLE NUMBER [VALUE [SECOND_VALUE]]",
     "prints both values of a table's property, or sets them",
     "  The numbers and what their values mean are the driver's. SECOND_VALUE is 0 when it is left out.\n",
     json_option, run_property},
    {"counter", "TABLE|COUNTER | read|write|sync COUNTER ...", "the counts of entries and of counter cells",
     counter_text, read_options, run_counter},
    {"meter", "set|read|adjust METER ...", "the meters of entries and meter cells", meter_text, json_option,
     run_meter},
    {"register", "read|write|fill|reset|sync REGISTER ...", "the cells of registers", register_text,
     read_options, run_register},
    {"idle", "enable|disable|params|show|ttl|restart|hit|expire TABLE ...", "the ageing of entries",
     idle_text, json_option, run_idle},
    {"clock", "TICKS", "lets time pass, and tells which entries ran idle", "", json_option, run_clock},
    {"digest", "watch|send|ack|pending DIGEST ... | timeout [N]",
     "messages about packets, such as new stations", digest_text, json_option, run_digest},
    {"pvs", "add|modify|delete|find|show|property SET ...", "the entries of parser value sets", pvs_text,
     json_option, run_pvs},
    {"hash", "value|show|input|algorithm|seed|attributes CALCULATION ...", "hash calculations", hash_text,
     json_option, run_hash},
    {"snapshot", "create|trigger|show|delete ...", "what packets look like in the stages of a pipe",
     snapshot_text, json_option, run_snapshot},
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
