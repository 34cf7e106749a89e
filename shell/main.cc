// tessel-shell: carries out commands from a file, from standard input or interactively.
#include <getopt.h>
#include <iostream>
#include <stdexcept>
#include <string>
#include <unistd.h>

#include "session.h"

namespace {

constexpr char usage[] = "usage: tessel-shell [--keep-going] [--verbose] [--json] [FILE | -]";
constexpr int bad_usage = 2;

constexpr char help[] = R"(
Carries out commands against the model driver of the switch program: those of FILE, those of standard input
(-, or when it is no terminal), or interactively. 'help' lists the commands.

  -k, --keep-going  carry on after a bad line; the number of bad lines is told at the end
  -v, --verbose     add tells the handle of each new entry
  -j, --json        print each line of output as a JSON document
  -h, --help        print this text
  -V, --version     print the version

Exit status: 0 when every line was carried out, 1 when a line was bad or the file cannot be read, 2 for a
bad command line.
)";

int wrong_usage(const std::string &what)
{
    std::cerr << "tessel-shell: " << what << "; " << usage << '\n';
    return bad_usage;
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
    shell::StreamLines lines{std::cin};
    return run(lines, "<stdin>", options);
}

int run_file(const std::string &name, const shell::SessionOptions &options)
{
    shell::FileLines lines{name, options.terminal};
    return run(lines, name, options);
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
    static constexpr option long_options[] = {
        {"keep-going", no_argument, nullptr, 'k'}, {"verbose", no_argument, nullptr, 'v'},
        {"json", no_argument, nullptr, 'j'},       {"help", no_argument, nullptr, 'h'},
        {"version", no_argument, nullptr, 'V'},    {nullptr, 0, nullptr, 0}};
    std::ios::sync_with_stdio(false);
    std::cin.tie(nullptr);
    std::cerr.tie(nullptr); // the session orders its output and its messages itself
    shell::SessionOptions options;
    if (isatty(STDERR_FILENO))
        options.terminal = &std::cerr;
    opterr = 0;
    for (int choice; (choice = getopt_long(argc, argv, "kvjhV", long_options, nullptr)) != -1;) {
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
        case 'h':
            std::cout << usage << '\n' << help;
            return EXIT_SUCCESS;
        case 'V':
            std::cout << "tessel-shell " << TESSEL_SHELL_VERSION << '\n';
            return EXIT_SUCCESS;
        default:
            return wrong_usage("bad option " + bad_option(argv[optind - 1]));
        }
    }
    if (argc - optind > 1)
        return wrong_usage("more than one file");

    const std::string name = optind < argc ? argv[optind] : "-";
    const bool interactive = optind == argc && isatty(STDIN_FILENO);
    int status = EXIT_FAILURE;
    try {
        status = interactive   ? run_interactive(options)
                 : name == "-" ? run_standard_input(options)
                               : run_file(name, options);
    } catch (const std::runtime_error &error) {
        std::cerr << "tessel-shell: " << (name == "-" ? "<stdin>" : name) << ": " << error.what() << '\n';
        return EXIT_FAILURE;
    }
    if (!std::cout.flush()) {
        std::cerr << "tessel-shell: the output cannot be written\n";
        return EXIT_FAILURE;
    }
    return status;
}
