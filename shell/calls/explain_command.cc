#include "explain_command.h"

#include <charconv>
#include <cstdio>
#include <getopt.h>
#include <iostream>
#include <optional>
#include <string>

#include "explain.h"
#include "explain_c.h"
#include "json.h"
#include "words.h"

namespace shell {

namespace {

constexpr char usage[] = "usage: tessel-shell explain [--table TABLE] [--operation NAME] [--failures] "
                         "[--since SECONDS] [--until SECONDS] [--json | --as c] RECORD";
constexpr char help[] = R"(
Prints the driver calls that the tap has recorded as the commands that make them, with status, duration and time
behind each; what no command makes, or failed, stands as a comment. The output is a script.

  -t, --table TABLE       only calls about this table
  -o, --operation NAME    only calls of this operation of the driver
  -f, --failures          only calls whose status is not 0
      --since SECONDS     only calls that began so long behind the first one, or later
      --until SECONDS     only calls that began so long behind the first one at most
  -j, --json              an object a line, with the call as the trace shows it
  -a, --as c              a program in C that makes the calls through the library
  -h, --help              print this text

Exit status: 0, 1 when the record cannot be read as a whole, 2 for a bad command line.
)";
constexpr int bad_usage = 2;

enum class Form { commands, json, c };

struct Filter {
    const reflection::TableFunctions *table = nullptr;
    unsigned operation = tap::operation_count; // which is none
    bool failures = false;
    Form form = Form::commands;
    double since = 0;
    std::optional<double> until;
};

double seconds_of(u64 nanoseconds)
{
    return static_cast<double>(nanoseconds) / 1e9;
}

bool failed(const tap::RecordedCall &call)
{
    return call.operation().returns == tap::Returns::status && call.header.result != 0;
}

bool passes(const tap::RecordedCall &call, double seconds, const Filter &filter)
{
    return (!filter.table || tap::Arguments{call}.number("table") == filter.table->row->handle) &&
           (filter.operation == tap::operation_count || filter.operation == call.header.operation) &&
           (!filter.failures || failed(call)) && seconds >= filter.since &&
           (!filter.until || seconds <= *filter.until);
}

std::string times(const tap::RecordedCall &call, u64 nanoseconds)
{
    char text[80];
    std::snprintf(text, sizeof text, "%.9f s, %llu ns", seconds_of(nanoseconds),
                  static_cast<unsigned long long>(call.header.duration));
    return text;
}

void print_command(const tap::RecordedCall &call, const std::string &command, u64 nanoseconds)
{
    if (command.empty())
        std::cout << "# " << tap::line_of(call) << " # " << times(call, nanoseconds) << '\n';
    else
        std::cout << command << " # status 0, " << times(call, nanoseconds) << '\n';
}

void print_json(const tap::RecordedCall &call, const std::string &command, u64 nanoseconds)
{
    std::string line;
    Json json{line};
    json.open_object().key("nanoseconds").number(nanoseconds);
    json.key("duration").number(call.header.duration).key("thread").number(call.header.thread);
    json.key("operation").text(call.operation().name).key("result").number(call.header.result);
    json.key("refused").flag(call.refused()).key("command");
    command.empty() ? json.null() : json.text(command);
    json.key("call").text(tap::line_of(call)).close_object();
    std::cout << line << '\n';
}

class Printer {
public:
    explicit Printer(Form form) : form_{form}
    {
        if (form_ == Form::c)
            std::cout << CProgram::begin();
    }

    void end()
    {
        if (form_ == Form::c)
            std::cout << CProgram::end();
    }

    void gap()
    {
        if (form_ == Form::commands)
            std::cout << "# calls are lost here\n";
        if (form_ == Form::c)
            std::cout << CProgram::comment("calls are lost here");
    }

    void keep(const tap::RecordedCall &call)
    {
        if (form_ == Form::c)
            program_.keep(call);
    }

    // `command` is empty where no command makes the call.
    void call(const tap::RecordedCall &call, const std::string &command, u64 nanoseconds)
    {
        if (form_ == Form::c)
            print_c(call, command, nanoseconds);
        else
            (form_ == Form::json ? print_json : print_command)(call, command, nanoseconds);
    }

private:
    void print_c(const tap::RecordedCall &call, const std::string &command, u64 nanoseconds)
    {
        const std::string what = command.empty() ? tap::line_of(call) : command;
        std::cout << CProgram::comment(what + "; " + times(call, nanoseconds));
        if (!command.empty())
            std::cout << program_.statement(call);
    }

    const Form form_;
    CProgram program_;
};

void warn(const std::string &path, const std::string &what)
{
    std::cerr << "tessel-shell: " << path << ": " << what << '\n';
}

int explain(const std::string &path, const Filter &filter)
{
    std::string error;
    const auto record = tap::RecordReader::open(path, error);
    if (!record) {
        std::cerr << "tessel-shell: " << error << '\n';
        return EXIT_FAILURE;
    }
    u64 first = ~u64{0};
    for (const tap::RecordedCall &call : record->calls())
        first = std::min(first, call.header.start);
    Explainer explainer;
    Printer printer{filter.form};
    for (const tap::RecordedCall &call : record->calls()) {
        const u64 nanoseconds = call.header.start - first;
        if (call.gap_before)
            printer.gap();
        const std::string command = explainer.command(call); // each, so that names are known
        printer.keep(call);
        if (passes(call, seconds_of(nanoseconds), filter))
            printer.call(call, command, nanoseconds);
    }
    printer.end();
    if (record->dropped() != 0)
        warn(path, std::to_string(record->dropped()) + " calls did not fit and are lost");
    if (!std::cout.flush()) {
        std::cerr << "tessel-shell: the output cannot be written\n";
        return EXIT_FAILURE;
    }
    if (record->lost_at()) {
        warn(path, "calls are lost at byte " + std::to_string(*record->lost_at()));
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}

int wrong_usage(const std::string &what)
{
    std::cerr << "tessel-shell: " << what << "; " << usage << '\n';
    return bad_usage;
}

bool parse_seconds(std::string_view text, double &seconds)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    return error == std::errc{} && end == text.data() + text.size() && seconds >= 0;
}

} // namespace

int run_explain(int argc, char **argv)
{
    enum { since = 256, until };
    static constexpr option options[] = {{"table", required_argument, nullptr, 't'},
                                         {"operation", required_argument, nullptr, 'o'},
                                         {"failures", no_argument, nullptr, 'f'},
                                         {"since", required_argument, nullptr, since},
                                         {"until", required_argument, nullptr, until},
                                         {"json", no_argument, nullptr, 'j'},
                                         {"as", required_argument, nullptr, 'a'},
                                         {"help", no_argument, nullptr, 'h'},
                                         {nullptr, 0, nullptr, 0}};
    Filter filter;
    double seconds = 0;
    opterr = 0;
    for (int choice; (choice = getopt_long(argc, argv, "t:o:fja:h", options, nullptr)) != -1;) {
        switch (choice) {
        case 't':
            filter.table = reflection::find_table(std::string_view{optarg});
            if (!filter.table)
                return wrong_usage("no table " + quoted(optarg));
            break;
        case 'o':
            filter.operation = tap::find_operation(optarg);
            if (filter.operation == tap::operation_count)
                return wrong_usage("no operation " + quoted(optarg));
            break;
        case 'f':
            filter.failures = true;
            break;
        case since:
        case until:
            if (!parse_seconds(optarg, seconds))
                return wrong_usage(quoted(optarg) + " is no number of seconds");
            choice == since ? void(filter.since = seconds) : void(filter.until = seconds);
            break;
        case 'j':
            filter.form = Form::json;
            break;
        case 'a':
            if (optarg != std::string_view{"c"})
                return wrong_usage("no form " + quoted(optarg));
            filter.form = Form::c;
            break;
        case 'h':
            std::cout << usage << '\n' << help;
            return EXIT_SUCCESS;
        default:
            return wrong_usage("bad option " + quoted(argv[optind - 1]));
        }
    }
    if (argc - optind != 1)
        return wrong_usage(argc == optind ? "no record is named" : "more than one record");
    return explain(argv[optind], filter);
}

} // namespace shell
