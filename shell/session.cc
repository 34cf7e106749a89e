#include "session.h"

#include <algorithm>
#include <stdexcept>

#include "commands.h"
#include "output.h"
#include "pd.h"
#include "progress.h"
#include "replacement.h"
#include "result.h"
#include "session_script.h"
#include "signals.h"
#include "tap.h"
#include "utf8.h"

namespace shell {

namespace {

void keep_trace_line(const char *line, void *session)
{
    auto &to = *static_cast<Session *>(session);
    Result result{to.json()};
    result.text("trace", line);
    to.print_behind(result.line("{trace}"));
}

std::string_view without_trailing_blanks(std::string_view text)
{
    while (!text.empty() && is_blank(text.back()))
        text.remove_suffix(1);
    return text;
}

// A mark that some editors put before the first line.
std::string_view without_byte_order_mark(std::string_view text)
{
    constexpr std::string_view mark = "\xef\xbb\xbf";
    return text.starts_with(mark) ? text.substr(mark.size()) : text;
}

// Drops a comment, which begins like a word, and the blanks before it or at the end.
std::string_view without_comment(std::string_view line)
{
    std::size_t end = 0;
    while ((end = line.find('#', end)) != std::string_view::npos && end != 0 && !is_blank(line[end - 1]))
        ++end;
    return without_trailing_blanks(line.substr(0, end));
}

// Names a file in one way only; as it was given when it does not exist.
std::filesystem::path identity(std::string_view file)
{
    std::error_code unknown;
    const std::filesystem::path path = std::filesystem::canonical(file, unknown);
    return unknown ? std::filesystem::path{file} : path;
}

} // namespace

bool goes_on(std::string_view line)
{
    return without_comment(line).ends_with('\\');
}

Session::Session(std::ostream &out, std::ostream &err, const SessionOptions &options)
    : out_(out), err_(err), options_(options)
{
    walk_terminal = options_.terminal;
    if (!options_.guest)
        p4_pd_tessel_switch_init();
}

Session::~Session()
{
    if (changes_)
        tell_taken_back("end of session", take_back());
    set_trace(false);
    watches_.clear();
    idle_watches_.clear();
    digest_watches_.clear();
    if (!options_.guest)
        p4_pd_tessel_switch_cleanup();
    walk_terminal = nullptr;
}

std::ostream &Session::out()
{
    if (source_)
        source_->make_room();
    if (options_.paged && !redirected_)
        Progress::give_way();
    return elsewhere_ ? *elsewhere_ : out_;
}

void Session::print(std::string_view line)
{
    out().write(line.data(), static_cast<std::streamsize>(line.size())).put('\n');
}

void Session::print_text(std::string_view key, std::string_view text)
{
    Result result{json()};
    result.text(key, text);
    print(result.line('{' + std::string{key} + '}'));
}

const ProfileNames *Session::names(const reflection::TableFunctions &table)
{
    return table.indirect ? &names(*table.indirect->profile) : nullptr;
}

void Session::set_trace(bool on)
{
    ts_tap_trace(on ? keep_trace_line : nullptr, this);
}

void Session::print_behind(std::string_view line)
{
    if (!json())
        behind_ += "  ";
    behind_ += line;
    behind_ += '\n';
}

int Session::run(LineSource &source, const std::string &name)
{
    source.complete_with([this](const reflection::ProfileFunctions &profile, Kind kind) {
        const auto names = this->names(profile).of(kind).all();
        return std::vector<std::string>{names.begin(), names.end()};
    });
    files_.push_back(identity(name));
    if (options_.atomic) {
        run_atomically(source, name);
    } else {
        Script script{source, name, options_.interactive, {}, {}};
        run_script(script);
    }
    files_.pop_back();
    out_.flush();
    if (options_.interactive || bad_lines_ == 0)
        return 0;
    if (options_.keep_going)
        tell_bad_lines(name);
    return 1;
}

bool Session::run_some(LineSource &source, const std::string &name, u64 lines_before)
{
    const u64 bad_before = bad_lines_;
    stopping_ = interrupted_ = false;
    Script script{source, name, name.empty(), {}, {}, lines_before};
    run_script(script);
    return bad_lines_ == bad_before && !interrupted_;
}

void Session::set_form(bool json, bool verbose)
{
    options_.json = json;
    options_.verbose = verbose;
}

void Session::load(const FileName &file, Loading loading)
{
    if (std::ranges::find(files_, identity(file.name)) != files_.end())
        throw BadLine{file.where, shell::quoted(file.name) + " would load itself"};
    if (source_)
        source_->make_room();
    LineSource *const before = source_;
    const bool atomic = option_words_.atomic;
    if (options_.guest)
        throw BadLine{file.where, "not in the console of a process: files are read by the client"};
    if (loading == Loading::state && (atomic || changes_))
        throw BadLine{file.where, "--replace takes nothing back: it is not for begin and --atomic"};
    if (atomic && changes_)
        throw BadLine{file.where, "what is kept since begin ends first: commit or rollback"};
    files_.push_back(identity(file.name));
    std::string failure;
    try {
        run_file(file.name, loading, atomic);
    } catch (const std::runtime_error &error) {
        failure = error.what();
    }
    files_.pop_back();
    source_ = before;
    option_words_ = {};
    if (!failure.empty())
        throw BadLine{file.where, shell::quoted(file.name) + ' ' + failure};
}

void Session::run_file(const std::string &name, Loading loading, bool atomic)
{
    FileLines lines{name, options_.terminal};
    if (loading != Loading::commands)
        return replace(lines, name, loading == Loading::difference);
    if (atomic)
        return run_atomically(lines, name);
    Script script{lines, name, false, {}, {}};
    run_script(script);
}

void Session::run_script(Script &script)
{
    source_ = &script.source;
    while (!done_ && !stopping_) {
        try {
            if (!script.read_command())
                break;
            expect_no_stop_signal();
            execute(script);
        } catch (const BadLine &error) {
            ++bad_lines_;
            report(script, error);
            stopping_ = !options_.keep_going || all_or_none_;
        } catch (const Interrupted &) {
            report_interruption(script);
            stopping_ = interrupted_ = true;
        }
        if (script.at_prompt)
            back_to_prompt();
        show_what_came_behind();
        if (options_.interactive)
            out().flush();
    }
    script.source.make_room();
    source_ = nullptr;
}

// Ctrl-C and a bad line end what was going on, but not the session.
void Session::back_to_prompt()
{
    forget_interrupt();
    stopping_ = false;
    done_ = done_ || stop_signal() != 0;
}

// Joins the lines of one command into `command`. False at the end.
bool Session::Script::read_command()
{
    command.clear();
    whole = false;
    first_line = lines_read + 1;
    for (bool continued = true; continued && source.next(line);) {
        std::string_view text = lines_read == 0 ? without_byte_order_mark(line) : line;
        text = without_comment(text);
        continued = text.ends_with('\\');
        if (continued)
            text.remove_suffix(1);
        if (++lines_read != first_line)
            command += '\n';
        command += text;
        if (command.size() > longest_line)
            throw std::runtime_error("has more than 64 MiB in the command at line " +
                                     std::to_string(first_line));
    }
    command.resize(without_trailing_blanks(command).size());
    whole = true;
    return lines_read >= first_line;
}

void Session::execute(Script &script)
{
    option_words_ = {};
    line_ = &script.command;
    std::string_view command = script.command;
    const Redirection to = options_.guest ? Redirection{} : take_redirection(command);
    const Words words{command};
    if (words.empty()) {
        if (!to.sign.empty())
            throw BadLine{to.sign, "missing command"};
        return;
    }
    if (!to.sign.empty() && may_write_files()) {
        out().flush();
        RedirectedOutput redirected{to};
        carry_out_into(redirected, true, words);
        return redirected.finish();
    }
    if (!script.at_prompt || !options_.paged)
        return carry_out(words);
    PagedOutput paged{out_};
    carry_out_into(paged, false, words);
}

void Session::carry_out_into(std::ostream &out, bool redirected, const Words &words)
{
    struct Restored {
        Session &session;
        ~Restored()
        {
            session.elsewhere_ = nullptr;
            session.redirected_ = false;
        }
    } const restored{*this};
    elsewhere_ = &out;
    redirected_ = redirected;
    carry_out(words);
}

void Session::carry_out(const Words &line)
{
    Words words = line;
    const std::string_view name = words.take();
    const Command *command = command_named(name);
    if (!command)
        refuse(name, {"command", {}, "help"}, command_names());
    if (!command->options.empty())
        take_option_words(option_words_, Words{words.rest()}, *line_, name, command->options);
    Words rest{words.rest()};
    verb_ = &take_verb(*command, rest);
    if (options_.guest && !verb_->clash.empty())
        throw BadLine{{}, "not in the console of a process: " + std::string{verb_->clash}};
    if (const auto &[word, place] = option_words_.of_list; !verb_->is_list && !word.empty())
        throw BadLine{place, word + " is for lists, which " + verb_->name + " prints none of"};
    if (replacement_ && !verb_->state)
        throw BadLine{name, quoted(verb_->name) + " tells no state"};
    if (replacement_ && verb_->state != verb_->run) {
        if (replacement_->takes_next_command())
            verb_->state(*this, rest, verb_->name);
        return;
    }
    if (verb_->effect == Effect::changes)
        expect_changes_allowed();
    verb_->run(*this, rest, verb_->name);
}

void Session::repeat(const Words &words, std::chrono::seconds pause, u64 times)
{
    const std::string line = *line_; // whose option words each time takes out
    for (u64 i = 0; i < times; ++i) {
        if (i != 0)
            wait_for(pause);
        line_->assign(line);
        option_words_ = {};
        carry_out(words);
        out().flush();
    }
}

// People at the prompt see a line of a list as one.
std::optional<std::size_t> Session::line_width() const
{
    return elsewhere_ && !redirected_ ? width_of_terminal() : std::nullopt;
}

bool Session::may_write_files() const
{
    if (options_.guest)
        throw BadLine{{}, "not in the console of a process: files are written by the client"};
    return !options_.check;
}

void Session::show_what_came_behind()
{
    if (behind_.empty())
        return;
    out() << behind_;
    behind_.clear();
}

// Tells where the error is: at the prompt by its column, in a file or behind a pipe by name and line, too.
void Session::report(const Script &script, const BadLine &error)
{
    const std::string_view command = script.command;
    const std::size_t at =
        error.where.data() ? static_cast<std::size_t>(error.where.data() - command.data()) : 0;
    const std::string_view before = command.substr(0, at);
    const auto line_feeds = static_cast<u64>(std::ranges::count(before, '\n'));
    const std::size_t line_begin = line_feeds == 0 ? 0 : before.rfind('\n') + 1;
    const u64 column = utf8_characters(before.substr(line_begin)) + 1;
    const bool one_typed_line = script.at_prompt && line_feeds == 0;
    const u64 line = line_feeds + (script.at_prompt ? 1 : script.first_line);

    Result result{json()};
    result.text("error", error.what);
    if (!script.at_prompt)
        result.text("file", script.name);
    if (!one_typed_line)
        result.number("line", line);
    result.number("column", column);
    complain(result.line(!script.at_prompt ? "{file}:{line}:{column}: {error}"
                         : one_typed_line  ? "column {column}: {error}"
                                           : "line {line}, column {column}: {error}"));
}

// A line at the prompt that is given up was no command yet.
void Session::report_interruption(const Script &script)
{
    if (script.at_prompt && !script.whole)
        return;
    if (options_.interactive && !json())
        err_ << '\n'; // behind the ^C that the terminal shows
    report(script, {{}, "interrupted"});
}

void Session::tell_bad_lines(const std::string &name)
{
    Result result{options_.json};
    result.text("file", name).number("bad_lines", bad_lines_);
    complain(result.line(bad_lines_ == 1 ? "{file}: {bad_lines} bad line" : "{file}: {bad_lines} bad lines"));
}

void Session::complain(const std::string &line)
{
    constexpr std::string_view red = "\033[31m", plain = "\033[m";
    out().flush();
    if (options_.error_colour)
        err_ << red << line << plain << std::endl;
    else
        err_ << line << std::endl;
}

} // namespace shell
