#include "console.h"

#include <cerrno>
#include <memory>

#include "console_session.h"
#include "server.h"

struct ts_console {
    console::Console console;
};

struct ts_console_server {
    console::Server server;
};

namespace {

// What `work` throws as an errno: nothing of it may leave the library.
template <typename Work>
int errno_of(Work work) noexcept
{
    try {
        work();
        return 0;
    } catch (const std::system_error &error) {
        return error.code().value();
    } catch (const std::bad_alloc &) {
        return ENOMEM;
    } catch (...) {
        return EINVAL;
    }
}

std::function<bool()> step_of(const ts_console_options &options)
{
    if (!options.between_steps)
        return {};
    return [step = options.between_steps, cookie = options.cookie] { return step(cookie) != 0; };
}

} // namespace

int ts_console_open(const ts_console_options *options, ts_console **console)
{
    return errno_of([&] {
        const ts_console_options chosen = options ? *options : ts_console_options{};
        *console = new ts_console{{chosen, step_of(chosen)}};
    });
}

int ts_console_run(ts_console *console, const char *command, unsigned form, ts_console_answer *answer)
{
    return errno_of([&] {
        const int status = console->console.run(command, form, {});
        const std::string &output = console->console.output(), &messages = console->console.messages();
        *answer = {status, output.c_str(), output.size(), messages.c_str(), messages.size()};
    });
}

void ts_console_cancel(ts_console *console)
{
    console->console.cancel();
}

void ts_console_close(ts_console *console)
{
    delete console;
}

int ts_console_serve(const char *path, const ts_console_server_options *options, ts_console_server **server)
{
    return errno_of([&] {
        auto made = new ts_console_server{{path, options ? *options : ts_console_server_options{}}};
        if (server)
            *server = made;
    });
}

void ts_console_stop(ts_console_server *server)
{
    delete server;
}
