// tessel-shell: carries out commands from a file, from standard input or interactively.
#include <algorithm>
#include <exception>
#include <filesystem>
#include <fstream>
#include <getopt.h>
#include <iostream>
#include <iterator>
#include <optional>
#include <string>
#include <system_error>
#include <unistd.h>

#include "session.h"

namespace {

constexpr char usage[] = "usage: tessel-shell [--keep-going] [--verbose] [FILE | -]";
constexpr int bad_usage = 2;

constexpr char help[] = R"(
Carries out commands against the model driver of the switch program: those of FILE, those of standard input
(-, or when it is no terminal), or interactively. 'help' lists the commands.

  -k, --keep-going  carry on after a bad line; the number of bad lines is told at the end
  -v, --verbose     add tells the handle of each new entry
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

int unreadable(const std::string &file, const char *why)
{
    std::cerr << "tessel-shell: " << file << ": " << why << '\n';
    return EXIT_FAILURE;
}

int run(std::istream &in, const std::string &name, shell::Progress *progress, shell::SessionOptions options)
{
    shell::StreamLines lines{in, progress};
    try {
        return shell::Session{std::cout, std::cerr, options}.run(lines, name);
    } catch (const std::runtime_error &error) {
        return unreadable(name, error.what());
    }
}

int run_interactive(shell::SessionOptions options)
{
    options.interactive = true;
    shell::TerminalLines lines;
    return shell::Session{std::cout, std::cerr, options}.run(lines, "<stdin>");
}

// How many lines there are; the stream is at its beginning again afterwards.
u64 count_lines(std::istream &in)
{
    const auto lines = std::count(std::istreambuf_iterator<char>{in}, {}, '\n');
    in.clear();
    in.seekg(0);
    return static_cast<u64>(lines);
}

int run_file(const std::string &name, shell::SessionOptions options)
{
    constexpr u64 long_file = 5000; // lines
    std::error_code unknown;        // then opening the file tells more
    if (std::filesystem::is_directory(name, unknown))
        return unreadable(name, "is a directory");
    std::ifstream in{name, std::ios::binary};
    if (!in)
        return unreadable(name, "cannot be opened");
    std::optional<shell::Progress> progress;
    if (isatty(STDERR_FILENO) && std::filesystem::is_regular_file(name, unknown))
        if (const u64 lines = count_lines(in); lines > long_file)
            progress.emplace(std::cerr, lines);
    return run(in, name, progress ? &*progress : nullptr, options);
}

} // namespace

int main(int argc, char **argv)
{
    static constexpr option long_options[] = {{"keep-going", no_argument, nullptr, 'k'},
                                              {"verbose", no_argument, nullptr, 'v'},
                                              {"help", no_argument, nullptr, 'h'},
                                              {"version", no_argument, nullptr, 'V'},
                                              {nullptr, 0, nullptr, 0}};
    std::ios::sync_with_stdio(false);
    std::cin.tie(nullptr);
    std::cerr.tie(nullptr); // the session orders its output and its messages itself
    shell::SessionOptions options;
    opterr = 0;
    for (int choice; (choice = getopt_long(argc, argv, "kvhV", long_options, nullptr)) != -1;) {
        switch (choice) {
        case 'k':
            options.keep_going = true;
            break;
        case 'v':
            options.verbose = true;
            break;
        case 'h':
            std::cout << usage << '\n' << help;
            return EXIT_SUCCESS;
        case 'V':
            std::cout << "tessel-shell " << TESSEL_SHELL_VERSION << '\n';
            return EXIT_SUCCESS;
        default:
            return wrong_usage("bad option " +
                               (optopt ? std::string{'-', static_cast<char>(optopt)} : argv[optind - 1]));
        }
    }
    if (argc - optind > 1)
        return wrong_usage("more than one file");

    const std::string name = optind < argc ? argv[optind] : "-";
    const bool interactive = optind == argc && isatty(STDIN_FILENO);
    const int status = interactive   ? run_interactive(options)
                       : name == "-" ? run(std::cin, "<stdin>", nullptr, options)
                                     : run_file(name, options);
    if (!std::cout.flush()) {
        std::cerr << "tessel-shell: the output cannot be written\n";
        return EXIT_FAILURE;
    }
    return status;
}
