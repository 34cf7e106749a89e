// Loaded by LD_PRELOAD into a program that knows nothing of it: TESSEL_CONSOLE says where to answer.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <unistd.h>

#include "console.h"

namespace {

constexpr char variable[] = "TESSEL_CONSOLE";

ts_console_server *server = nullptr; // of the process that began it
pid_t owner = 0;

// PATH[,read-only][,group=NAME], with the process's number for %p.
struct Settings {
    std::string path, group;
    ts_console_server_options options{};
};

std::optional<Settings> settings_of(std::string text)
{
    if (const std::size_t at = text.find("%p"); at != std::string::npos)
        text.replace(at, 2, std::to_string(getpid()));
    Settings settings;
    std::size_t end = text.find(',');
    settings.path = text.substr(0, end);
    while (end != std::string::npos) {
        const std::size_t begin = end + 1;
        end = text.find(',', begin);
        const std::string item = text.substr(begin, end == std::string::npos ? end : end - begin);
        if (item == "read-only")
            settings.options.console.read_only = 1;
        else if (item.starts_with("group="))
            settings.group = item.substr(std::strlen("group="));
        else
            return std::nullopt;
    }
    return settings;
}

[[gnu::constructor]] void serve_if_told()
{
    const char *text = secure_getenv(variable);
    if (!text || !*text)
        return;
    auto settings = settings_of(text);
    if (!settings) {
        std::fprintf(stderr,
                     "libtessel_console: %s: \"%s\": behind the path can stand read-only and group=NAME\n",
                     variable, text);
        return;
    }
    if (!settings->group.empty())
        settings->options.group = settings->group.c_str();
    owner = getpid();
    if (const int error = ts_console_serve(settings->path.c_str(), &settings->options, &server))
        std::fprintf(stderr, "libtessel_console: %s: %s: %s\n", variable, settings->path.c_str(),
                     std::strerror(error));
}

[[gnu::destructor]] void stop()
{
    if (owner == getpid()) // a forked process has no such thread
        ts_console_stop(server);
}

} // namespace
