#include "replay_command.h"

#include <cstdlib>
#include <getopt.h>
#include <iostream>
#include <string>

#include "model_driver.h"
#include "replay.h"
#include "words.h"

namespace shell {

namespace {

constexpr char usage[] = "usage: tessel-shell replay [--to-driver] RECORD";
constexpr char help[] = R"(
Makes the driver calls that the tap has recorded again, on an empty model, with entries, members and groups under
the handles that they get there, and tells the first call whose status is another than in the record.

  -d, --to-driver  play into whatever driver this process has been given in place of the model
  -h, --help       print this text

Exit status: 0 when all came back as recorded, 1 when not, or when the record cannot be read as a whole, 2 for a bad
command line.
)";
constexpr int bad_usage = 2;

int complain(const std::string &what, int status = EXIT_FAILURE)
{
    std::cerr << "tessel-shell: " << what << '\n';
    return status;
}

int wrong_usage(const std::string &what)
{
    return complain(what + "; " + usage, bad_usage);
}

std::string text_of(const ReplayDifference &difference, const tap::RecordReader &record)
{
    return "at byte " + std::to_string(record.place(*difference.call)) + ": status " +
           std::to_string(difference.status) + " in place of the record's: " + tap::line_of(*difference.call);
}

int replay(const std::string &path)
{
    std::string error;
    const auto record = tap::RecordReader::open(path, error);
    if (!record)
        return complain(error);
    if (record->lost_at())
        return complain(path + ": calls are lost at byte " + std::to_string(*record->lost_at()));
    if (record->dropped() != 0)
        return complain(path + ": " + std::to_string(record->dropped()) + " calls did not fit and are lost");
    Replay replay;
    if (const auto difference = replay.play(*record))
        return complain(path + ": " + text_of(*difference, *record));
    std::cout << replay.played() << " calls as recorded, " << replay.left_out() << " left out\n";
    return std::cout.flush() ? EXIT_SUCCESS : complain("the output cannot be written");
}

} // namespace

int run_replay(int argc, char **argv)
{
    static constexpr option options[] = {{"to-driver", no_argument, nullptr, 'd'},
                                         {"help", no_argument, nullptr, 'h'},
                                         {nullptr, 0, nullptr, 0}};
    bool to_driver = false;
    opterr = 0;
    for (int choice; (choice = getopt_long(argc, argv, "dh", options, nullptr)) != -1;) {
        switch (choice) {
        case 'd':
            to_driver = true;
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
    if (!to_driver && !calls_reach_the_model())
        return complain("another driver than the model has been loaded; --to-driver plays into it");
    return replay(argv[optind]);
}

} // namespace shell
