// tessel-shell: carries out commands from a file, from standard input or interactively.
#include <csignal>
#include <cstdlib>
#include <getopt.h>
#include <iostream>
#include <stdexcept>
#include <string>
#include <unistd.h>

#include "api.h"
#include "attach.h"
#include "explain_command.h"
#include "json.h"
#include "replay_command.h"
#include "session.h"
#include "signals.h"
#include "terminal_lines.h"

namespace {

constexpr char usage[] =
    "usage: tessel-shell [--attach PATH] [--keep-going] [--verbose] [--json] [--atomic | --check] "
    "[--color=WHEN] [-c COMMAND]... [FILE | -]";
constexpr int bad_usage = 2;

constexpr char help[] = R"(
Carries out commands against the model driver of the switch program: those of FILE, those of standard input
(-, or when it is no terminal), or interactively. 'help' lists the commands. 
'tessel-shell explain RECORD' prints what the tap has recorded as commands, 'tessel-shell replay RECORD' plays
it again, 'tessel-shell api' finds functions of the library; each has a --help of its own.

  -a, --attach PATH carry commands out in the process whose console answers at PATH
  -k, --keep-going  carry on after a bad line; the number of bad lines is told at the end
  -v, --verbose     add tells the handle of each new entry
  -j, --json        print each line of output, and each message, as a JSON document
      --atomic      all lines, or none: before a bad line everything is taken back
      --check       tell what is bad in the lines, and nothing else
      --color=WHEN  headings and errors in colour: always, never, or auto, which is at a terminal and where NO_COLOR
                    is not set
  -c, --command COMMAND
                    carry COMMAND out in place of a file; each -c is a line
  -h, --help        print this text
  -V, --version     print the version

Ctrl-C ends a command at the prompt, and anything else altogether.

Exit status: 0 when every line was carried out, 1 when a line was bad or the file cannot be read, 2 for a
bad command line.
)";

// Tells what keeps the program from doing its work, about `file` unless that is empty.
void complain(const shell::SessionOptions &options, const std::string &what, const std::string &file = {})
{
    std::string text = "tessel-shell: " + (file.empty() ? what : file + ": " + what);
    if (options.json) {
        text.clear();
        shell::Json object{text};
        object.open_object().key("error").text(what);
        if (!file.empty())
            object.key("file").text(file);
        object.close_object();
    }
    std::cerr << text << '\n';
}

int wrong_usage(const shell::SessionOptions &options, const std::string &what)
{
    complain(options, what + "; " + usage);
    return bad_usage;
}

// Ends the process as the signal would have, for whoever waits for it.
void die_of(int signal)
{
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

int run(shell::LineSource &lines, const std::string &name, const shell::SessionOptions &options)
{
    return shell::Session{std::cout, std::cerr, options}.run(lines, name);
}

int run_interactive(shell::SessionOptions options)
{
    options.interactive = true;
    shell::TerminalLines lines;
    return run(lines, "<stdin>", options);
}

int run_standard_input(const shell::SessionOptions &options)
{
    shell::DescriptorLines lines{STDIN_FILENO};
    return run(lines, "<stdin>", options);
}

int run_commands(const std::string &commands, const shell::SessionOptions &options)
{
    shell::TextLines lines{commands};
    return run(lines, "-c", options);
}

int run_file(const std::string &name, const shell::SessionOptions &options)
{
    shell::FileLines lines{name, options.terminal};
    return run(lines, name, options);
}

// False where `when` is no word for it.
bool choose_colour(shell::SessionOptions &options, std::string_view when)
{
    const char *const unwanted = std::getenv("NO_COLOR"), *const terminal = std::getenv("TERM");
    const bool is_wanted = !(unwanted && *unwanted) && terminal && terminal != std::string_view{"dumb"};
    const bool at_terminal = when == "auto" && is_wanted;
    options.colour = !options.json && (when == "always" || (at_terminal && isatty(STDOUT_FILENO)));
    options.error_colour = !options.json && (when == "always" || (at_terminal && isatty(STDERR_FILENO)));
    return when == "auto" || when == "always" || when == "never";
}

// What getopt refused: a long option as it was written, or the letter in a row of them.
std::string bad_option(std::string_view word)
{
    if (word.starts_with("--") || !optopt)
        return std::string{word};
    return {'-', static_cast<char>(optopt)};
}

} // namespace

int main(int argc, char **argv)
{
    static constexpr option long_options[] = {{"keep-going", no_argument, nullptr, 'k'},
                                              {"verbose", no_argument, nullptr, 'v'},
                                              {"json", no_argument, nullptr, 'j'},
                                              {"help", no_argument, nullptr, 'h'},
                                              {"version", no_argument, nullptr, 'V'},
                                              {"attach", required_argument, nullptr, 'a'},
                                              {"command", required_argument, nullptr, 'c'},
                                              {"atomic", no_argument, nullptr, 'A'},
                                              {"check", no_argument, nullptr, 'C'},
                                              {"color", required_argument, nullptr, 'x'},
                                              {nullptr, 0, nullptr, 0}};
    std::ios::sync_with_stdio(false);
    if (argc > 1 && std::string_view{argv[1]} == "explain")
        return shell::run_explain(argc - 1, argv + 1);
    if (argc > 1 && std::string_view{argv[1]} == "api")
        return shell::run_api(argc - 1, argv + 1);
    if (argc > 1 && std::string_view{argv[1]} == "replay")
        return shell::run_replay(argc - 1, argv + 1);
    shell::SessionOptions options;
    std::string commands; // of the command line
    std::string attached; // the socket of a process's console; else empty
    std::string_view colour = "auto";
    if (isatty(STDERR_FILENO))
        options.terminal = &std::cerr;
    opterr = 0;
    for (int choice; (choice = getopt_long(argc, argv, "kvjhVa:c:", long_options, nullptr)) != -1;) {
        switch (choice) {
        case 'k':
            options.keep_going = true;
            break;
        case 'v':
            options.verbose = true;
            break;
        case 'j':
            options.json = true;
            break;
        case 'A':
            options.atomic = true;
            break;
        case 'C':
            options.check = options.keep_going = true;
            break;
        case 'x':
            colour = optarg;
            break;
        case 'a':
            attached = optarg;
            break;
        case 'c':
            commands.append(optarg).append("\n");
            break;
        case 'h':
            std::cout << usage << '\n' << help;
            return EXIT_SUCCESS;
        case 'V':
            std::cout << "tessel-shell " << TESSEL_SHELL_VERSION << '\n';
            return EXIT_SUCCESS;
        default:
            return wrong_usage(options, "bad option " + bad_option(argv[optind - 1]));
        }
    }
    if (argc - optind > 1)
        return wrong_usage(options, "more than one file");
    if (optind < argc && !commands.empty())
        return wrong_usage(options, "a file beside -c");

    if (options.check && (!attached.empty() || options.atomic))
        return wrong_usage(options, "--check beside --attach or --atomic");
    if (options.check)
        std::cout.setstate(std::ios::badbit);

    if (!choose_colour(options, colour))
        return wrong_usage(options, "--color takes always, never or auto");
    options.paged = isatty(STDOUT_FILENO);
    const std::string name = optind < argc ? argv[optind] : "-";
    const bool interactive =
        optind == argc && commands.empty() && !options.atomic && !options.check && isatty(STDIN_FILENO);
    int status = EXIT_FAILURE;
    shell::catch_stop_signals();
    try {
        status = !attached.empty()   ? console::attach({attached, commands, name, interactive, options})
                 : !commands.empty() ? run_commands(commands, options)
                 : interactive       ? run_interactive(options)
                 : name == "-"       ? run_standard_input(options)
                                     : run_file(name, options);
    } catch (const std::runtime_error &error) {
        complain(options, error.what(), !attached.empty() ? "" : name == "-" ? "<stdin>" : name);
        return EXIT_FAILURE;
    }
    if (!options.check && !std::cout.flush()) {
        complain(options, "the output cannot be written");
        status = EXIT_FAILURE;
    }
    if (const int signal = shell::stop_signal())
        die_of(signal);
    return status;
}
