#include "lines.h"

#include <iostream>
#include <stdexcept>

#ifdef TESSEL_SHELL_HAS_EDITLINE
#include <cstdlib>
#include <memory>

#include <editline/readline.h>
#endif

namespace shell {

namespace {

constexpr char prompt[] = "tessel> ";

}

bool StreamLines::next(std::string &line)
{
    if (!std::getline(in_, line)) {
        if (in_.bad())
            throw std::runtime_error("cannot be read");
        return false;
    }
    if (progress_)
        progress_->advance();
    return true;
}

void StreamLines::make_room()
{
    if (progress_)
        progress_->clear();
}

#ifdef TESSEL_SHELL_HAS_EDITLINE

bool TerminalLines::next(std::string &line)
{
    const std::unique_ptr<char, decltype(&std::free)> typed{readline(prompt), &std::free};
    if (!typed) {
        std::cout << '\n'; // behind the prompt
        return false;
    }
    line = typed.get();
    if (!line.empty())
        add_history(line.c_str());
    return true;
}

#else

bool TerminalLines::next(std::string &line)
{
    std::cout << prompt << std::flush;
    if (std::getline(std::cin, line))
        return true;
    std::cout << '\n'; // behind the prompt
    return false;
}

#endif

} // namespace shell
