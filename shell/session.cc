#include "session.h"

#include <algorithm>
#include <stdexcept>

#include "commands.h"
#include "json.h"
#include "output.h"
#include "pd.h"
#include "session_script.h"
#include "signals.h"
#include "tap.h"
#include "utf8.h"

namespace shell {

namespace {

void keep_trace_line(const char *line, void *session)
{
    auto &to = *static_cast<Session *>(session);
    std::string text{line};
    if (to.json()) {
        text.clear();
        Json{text}.open_object().key("trace").text(line).close_object();
    }
    to.print_behind(text);
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
}

std::ostream &Session::out()
{
    if (source_)
        source_->make_room();
    return elsewhere_ ? *elsewhere_ : out_;
}

void Session::print(std::string_view line)
{
    out().write(line.data(), static_cast<std::streamsize>(line.size())).put('\n');
}

void Session::print_text(std::string_view key, std::string_view text)
{
    std::string line{text};
    if (json()) {
        line.clear();
        Json{line}.open_object().key(key).text(text).close_object();
    }
    print(line);
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

void Session::load(const FileName &file)
{
    if (std::ranges::find(files_, identity(file.name)) != files_.end())
        throw BadLine{file.where, shell::quoted(file.name) + " would load itself"};
    if (source_)
        source_->make_room();
    LineSource *const before = source_;
    const bool atomic = atomic_;
    if (atomic && changes_)
        throw BadLine{file.where, "what is kept since begin ends first: commit or rollback"};
    files_.push_back(identity(file.name));
    std::string failure;
    try {
        run_file(file.name, atomic);
    } catch (const std::runtime_error &error) {
        failure = error.what();
    }
    files_.pop_back();
    source_ = before;
    forget_option_words();
    if (!failure.empty())
        throw BadLine{file.where, shell::quoted(file.name) + ' ' + failure};
}

void Session::run_file(const std::string &name, bool atomic)
{
    FileLines lines{name, options_.terminal};
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
    forget_option_words();
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
        carry_out_into(redirected, words);
        return redirected.finish();
    }
    if (!script.at_prompt || !options_.paged)
        return carry_out(words);
    PagedOutput paged{out_};
    carry_out_into(paged, words);
}

void Session::carry_out_into(std::ostream &out, const Words &words)
{
    struct Restored {
        std::ostream *&place, *before;
        ~Restored() { place = before; }
    } const restored{elsewhere_, elsewhere_};
    elsewhere_ = &out;
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
        take_option_words(*command, words.rest());
    Words rest{words.rest()};
    verb_ = &take_verb(*command, rest);
    if (options_.guest && !verb_->clash.empty())
        throw BadLine{{}, "not in the console of a process: " + std::string{verb_->clash}};
    if (verb_->effect == Effect::changes)
        expect_changes_allowed();
    verb_->run(*this, rest, verb_->name);
}

bool Session::may_write_files() const
{
    if (options_.guest)
        throw BadLine{{}, "not in the console of a process: files are written by the client"};
    return !options_.check;
}

// What the option word of a command turns on.
bool &Session::option(std::string_view word)
{
    if (word == "--json")
        return json_;
    if (word == "--atomic")
        return atomic_;
    return word == "--hw" ? from_hardware_ : all_bits_;
}

// Blanks the option words out, so that every other word keeps its place. An unknown one is told in the form
// that the others ask for.
void Session::take_option_words(const Command &command, std::string_view behind)
{
    std::string_view unknown;
    std::string &line = *line_;
    for (Words words{behind}; !words.empty();) {
        const std::string_view word = words.take();
        if (!word.starts_with("--"))
            continue;
        if (std::ranges::find(command.options, word) == command.options.end()) {
            unknown = unknown.empty() ? word : unknown;
            continue;
        }
        option(word) = true;
        const auto begin = static_cast<std::size_t>(word.data() - line.data());
        std::fill_n(line.begin() + static_cast<std::ptrdiff_t>(begin), word.size(), ' ');
    }
    if (!unknown.empty())
        refuse(unknown, {"option", command.name()}, {command.options.begin(), command.options.end()});
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

    std::string text;
    if (json()) {
        Json object{text};
        object.open_object().key("error").text(error.what);
        if (!script.at_prompt)
            object.key("file").text(script.name);
        if (!one_typed_line)
            object.key("line").number(line);
        object.key("column").number(column).close_object();
    } else {
        const std::string line_text = std::to_string(line);
        text = !script.at_prompt ? script.name + ':' + line_text + ':'
               : one_typed_line  ? "column "
                                 : "line " + line_text + ", column ";
        text += std::to_string(column) + ": " + error.what;
    }
    out().flush();
    err_ << text << std::endl;
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
    std::string text =
        name + ": " + std::to_string(bad_lines_) + (bad_lines_ == 1 ? " bad line" : " bad lines");
    if (options_.json) {
        text.clear();
        Json{text}.open_object().key("file").text(name).key("bad_lines").number(bad_lines_).close_object();
    }
    err_ << text << std::endl;
}

} // namespace shell
