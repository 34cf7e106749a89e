#include "terminal_lines.h"

#include <iostream>
#include <unistd.h>

#include "signals.h"

#ifdef TESSEL_SHELL_HAS_EDITLINE
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <filesystem>
#include <langinfo.h>
#include <memory>

#include <editline/readline.h>

#include "complete.h"
#endif

namespace shell {

namespace {

constexpr char prompt[] = "tessel> ";

} // namespace

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

LineCompletion complete_line; // the line editor's callbacks have no context

// None when Ctrl-C comes in between: no exception may pass through the line editor.
std::vector<std::string> candidates_for(std::string_view text)
{
    try {
        return complete_line ? complete_line(text) : std::vector<std::string>{};
    } catch (const Interrupted &) {
        return {};
    }
}

// The line editor asks for one candidate after the other.
char *next_candidate(const char *, int index)
{
    static std::vector<std::string> candidates;
    if (index == 0)
        candidates = candidates_for({rl_line_buffer, static_cast<std::size_t>(rl_point)});
    const auto at = static_cast<std::size_t>(index);
    if (at >= candidates.size())
        return nullptr;
    rl_completion_append_character = candidates[at].ends_with('=') ? 0 : int{' '};
    return strdup(candidates[at].c_str());
}

char **complete_word(const char *begun, int, int)
{
    rl_attempted_completion_over = !completes_a_file({rl_line_buffer, static_cast<std::size_t>(rl_point)});
    return rl_completion_matches(begun, next_candidate);
}

// The line editor reads by the locale. One that knows no letters but ASCII knows those of UTF-8 then.
void choose_locale()
{
    std::setlocale(LC_CTYPE, "");
    if (std::strcmp(nl_langinfo(CODESET), "ANSI_X3.4-1968") == 0)
        std::setlocale(LC_CTYPE, "C.UTF-8");
}

// After the window changed its size or the shell was stopped and continued.
void draw_anew()
{
    rl_resize_terminal();
    rl_deprep_terminal();
    rl_prep_terminal(1);
    rl_forced_update_display();
}

// Before the prompt: what is typed as soon as it shows is not to be echoed twice.
int begin_editing()
{
    rl_prep_terminal(1);
    return 0;
}

// The next character for the line editor; EOF at the end and when a signal stops the input.
int typed_character(std::FILE *)
{
    std::mbstate_t state{};
    for (;;) {
        const Awaited awaited = await_input(STDIN_FILENO);
        if (awaited == Awaited::stop_signal)
            return EOF;
        if (awaited == Awaited::other_signal) {
            draw_anew();
            continue;
        }
        char byte = 0;
        if (read(STDIN_FILENO, &byte, 1) != 1)
            return EOF;
        wchar_t character = 0;
        const std::size_t length = std::mbrtowc(&character, &byte, 1, &state);
        if (length == static_cast<std::size_t>(-1))
            state = {}; // no character: it is left out
        else if (length != static_cast<std::size_t>(-2))
            return static_cast<int>(character);
    }
}

// Has `signal` end a wait for input, and no more.
void notice(int signal)
{
    struct sigaction action {};
    action.sa_handler = [](int) {};
    action.sa_flags = SA_RESTART;
    sigaction(signal, &action, nullptr);
}

} // namespace

TerminalLines::TerminalLines()
{
    static char blanks[] = " \t";
    choose_locale();
    rl_catch_signals = 0;
    rl_getc_function = typed_character;
    rl_pre_input_hook = begin_editing;
    notice(SIGWINCH);
    notice(SIGCONT);
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

void TerminalLines::complete_with(const ObjectNames &names)
{
    complete_by([names](std::string_view line) { return complete(line, names); });
}

void TerminalLines::complete_by(LineCompletion complete)
{
    complete_line = std::move(complete);
}

bool TerminalLines::next(std::string &line)
{
    const std::unique_ptr<char, decltype(&std::free)> typed{readline(prompt), &std::free};
    if (!typed) {
        std::cout << (stop_signal() == SIGINT ? "^C\n" : "\n"); // behind the prompt
        expect_no_stop_signal();
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

void TerminalLines::complete_with(const ObjectNames &) {}
void TerminalLines::complete_by(LineCompletion) {}

bool TerminalLines::next(std::string &line)
{
    static DescriptorLines typed{STDIN_FILENO};
    std::cout << prompt << std::flush;
    try {
        if (typed.next(line))
            return true;
    } catch (const Interrupted &) {
        std::cout << '\n'; // behind the prompt
        throw;
    }
    std::cout << '\n';
    return false;
}

#endif

} // namespace shell
