#include "lines.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <system_error>

#ifdef TESSEL_SHELL_HAS_EDITLINE
#include <cstdlib>
#include <memory>

#include <editline/readline.h>
#endif

namespace shell {

namespace {

constexpr char prompt[] = "tessel> ";
constexpr u64 long_file = 5000; // lines

// How many lines there are; the stream is at its beginning again afterwards.
u64 count_lines(std::istream &in)
{
    const auto lines = std::count(std::istreambuf_iterator<char>{in}, {}, '\n');
    in.clear();
    in.seekg(0);
    return static_cast<u64>(lines);
}

} // namespace

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

FileLines::FileLines(const std::string &name, std::ostream *terminal)
{
    std::error_code unknown; // then opening the file tells more
    if (std::filesystem::is_directory(name, unknown))
        throw std::runtime_error("is a directory");
    in_.open(name, std::ios::binary);
    if (!in_)
        throw std::runtime_error("cannot be opened");
    if (terminal && std::filesystem::is_regular_file(name, unknown))
        if (const u64 lines = count_lines(in_); lines > long_file)
            progress_.emplace(*terminal, lines);
    lines_.emplace(in_, progress_ ? &*progress_ : nullptr);
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
