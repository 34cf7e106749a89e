// The commands about the session itself: load, trace, echo, every, quit, exit.
#include <algorithm>

#include "commands.h"
#include "repeated.h"
#include "verb_arguments.h"

namespace shell {

namespace {

void load(Session &session, const FileName &file)
{
    session.load(file, session.option_words().replace ? Session::Loading::state : Session::Loading::commands);
}

void trace(Session &session, bool on)
{
    session.set_trace(on);
}

void echo(Session &session, std::optional<std::string_view> words)
{
    std::string text{words.value_or("")};
    std::replace(text.begin(), text.end(), '\n', ' ');
    session.print_text("echo", text);
}

struct Again {
    using Value = Repeated;
    static void describe(Usage &usage)
    {
        usage.add({"SECONDS"});
        usage.places.push_back(place_of(times_setting));
        usage.add({"COMMAND"});
    }
    static Value read(Reading &reading) { return take_repeated(reading.words); }
};

void every(Session &session, const Repeated &again)
{
    session.repeat(again.command, again.pause, again.times);
}

void quit(Session &session)
{
    session.quit();
}

constexpr std::string_view text =
    R"(  In FILE, ~/ is the home folder; blanks stand between quotation marks or behind backslashes. Handles of new
  entries are printed with --verbose only. Ctrl-C ends it between two lines.
)";

constexpr std::string_view load_options[] = {"--atomic", "--replace"};

constexpr Verb load_verb[] = {verb<load, arg::File>("load", "carries out the commands of a file")
                                  .reads()
                                  .not_in_console("files are read by the client")};
constexpr Verb trace_verb[] = {
    verb<trace, arg::OnOff>("trace", "prints the driver calls of each command behind it")};
constexpr Verb echo_verb[] = {verb<echo, arg::Optional<arg::Rest<"TEXT">>>("echo", "prints TEXT").reads()};
constexpr Verb every_verb[] = {
    verb<every, Again>("every",
                       "carries a command out again and again, with so many seconds between, until Ctrl-C")
        .may_change()
        .not_in_console("the client does it")};
constexpr Verb quit_verb[] = {verb<quit>("quit", "ends the session").reads()};
constexpr Verb exit_verb[] = {verb<quit>("exit", "the same as quit").reads()};

} // namespace

const Command load_command{load_verb, text, load_options};
const Command trace_command{trace_verb};
const Command echo_command{echo_verb};
const Command every_command{every_verb};
const Command quit_command{quit_verb};
const Command exit_command{exit_verb};

} // namespace shell
