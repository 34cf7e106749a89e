#include "lines.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <system_error>

#ifdef TESSEL_SHELL_HAS_EDITLINE
#include <cstdlib>
#include <cstring>
#include <memory>

#include <editline/readline.h>

#include "complete.h"
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

namespace {

constexpr int kept_lines = 1000;

// Empty when there is no place for it.
std::filesystem::path history_file()
{
    const char *state = std::getenv("XDG_STATE_HOME"), *home = std::getenv("HOME");
    std::filesystem::path folder;
    if (state && *state == '/')
        folder = state;
    else if (home && *home)
        folder = std::filesystem::path{home} / ".local" / "state";
    else
        return {};
    return folder / "tessel-shell" / "history";
}

// The line editor asks for one candidate after the other.
char *next_candidate(const char *, int index)
{
    static std::vector<std::string> candidates;
    if (index == 0)
        candidates = complete({rl_line_buffer, static_cast<std::size_t>(rl_point)});
    const auto at = static_cast<std::size_t>(index);
    if (at >= candidates.size())
        return nullptr;
    rl_completion_append_character = candidates[at].ends_with('=') ? '\0' : ' ';
    return strdup(candidates[at].c_str());
}

char **complete_word(const char *begun, int, int)
{
    rl_attempted_completion_over = !completes_a_file({rl_line_buffer, static_cast<std::size_t>(rl_point)});
    return rl_completion_matches(begun, next_candidate);
}

} // namespace

TerminalLines::TerminalLines()
{
    static char blanks[] = " \t";
    rl_completer_word_break_characters = blanks;
    rl_attempted_completion_function = complete_word;
    using_history();
    stifle_history(kept_lines);
    if (const auto file = history_file(); !file.empty())
        read_history(file.c_str());
}

// A history that cannot be kept is no reason to fail.
TerminalLines::~TerminalLines()
{
    const std::filesystem::path file = history_file();
    std::error_code failed;
    if (file.empty())
        return;
    std::filesystem::create_directories(file.parent_path(), failed);
    write_history(file.c_str());
}

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

TerminalLines::TerminalLines() = default;
TerminalLines::~TerminalLines() = default;

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
