// Commands as the C that does the same.
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>
#include <unistd.h>

#include "commands.h"
#include "explain.h"
#include "explain_c.h"
#include "tap.h"
#include "verb_arguments.h"

namespace shell {

namespace {

// The calls that are made while it lives, in a file that goes with it.
class Recording {
public:
    Recording()
    {
        const char *settings = std::getenv("TESSEL_TAP");
        if (settings && std::string_view{settings}.find("record") != std::string_view::npos)
            throw BadLine{"", "the tap records already"};
        const int file = mkstemp(path_.data());
        if (file < 0)
            throw BadLine{"", path_ + ": " + std::generic_category().message(errno)};
        close(file);
        ts_tap_record(path_.c_str(), 0);
    }
    ~Recording()
    {
        ts_tap_record(nullptr, 0);
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }
    Recording(const Recording &) = delete;
    Recording &operator=(const Recording &) = delete;

    // Ends it.
    tap::RecordReader read()
    {
        ts_tap_record(nullptr, 0);
        std::string error;
        auto record = tap::RecordReader::open(path_, error);
        if (!record)
            throw BadLine{"", error};
        return std::move(*record);
    }

private:
    std::string path_ = (std::filesystem::temp_directory_path() / "tessel-XXXXXX").string();
};

void in_c(Session &session, std::string_view command)
{
    if (command.empty())
        throw BadLine{"", "missing command"};
    Recording recording;
    session.carry_out(Words{command});
    const tap::RecordReader record = recording.read();
    Explainer explainer;
    CProgram program;
    for (const tap::RecordedCall &call : record.calls()) {
        program.keep(call);
        if (!explainer.command(call).empty())
            session.out() << program.statement(call);
    }
}

constexpr Verb verbs[] = {
    verb<in_c, arg::Rest<"COMMAND">>("--c", "carries a command out, and prints the C that does the same")
        .not_in_console("other threads make calls, too")};

} // namespace

const Command in_c_command{verbs};

} // namespace shell
