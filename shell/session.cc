#include "session.h"

#include <algorithm>
#include <stdexcept>

#include "commands.h"
#include "json.h"
#include "model.h"
#include "pd.h"

namespace shell {

// Lines on their way from a source: the command that they make up, and where they stand.
struct Session::Script {
    LineSource &source;
    const std::string name;
    std::string line;    // as read
    std::string command; // without comments; its lines apart when it has several
    u64 lines_read = 0;
    u64 first_line = 0; // of the command

    bool read_command();
};

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

Session::Session(std::ostream &out, std::ostream &err, SessionOptions options)
    : out_(out), err_(err), options_(options)
{
    p4_pd_tessel_switch_init();
}

Session::~Session()
{
    set_trace(false);
    watches_.clear();
    idle_watches_.clear();
    digest_watches_.clear();
    p4_pd_tessel_switch_cleanup();
}

void Session::print(std::string_view line)
{
    out_.write(line.data(), static_cast<std::streamsize>(line.size())).put('\n');
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
    ts_model_set_trace(on ? keep_trace_line : nullptr, this);
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
    files_.push_back(identity(name));
    Script script{source, name, {}, {}};
    run_script(script);
    files_.pop_back();
    source.make_room();
    out_.flush();
    if (options_.interactive || bad_lines_ == 0)
        return 0;
    if (options_.keep_going)
        err_ << name << ": " << bad_lines_ << (bad_lines_ == 1 ? " bad line" : " bad lines") << std::endl;
    return 1;
}

void Session::load(std::string_view file)
{
    const std::filesystem::path path = identity(file);
    if (std::ranges::find(files_, path) != files_.end())
        throw BadLine{file, quoted(file) + " would load itself"};
    files_.push_back(path);
    try {
        FileLines lines{std::string{file}, options_.terminal};
        Script script{lines, std::string{file}, {}, {}};
        run_script(script);
    } catch (const std::runtime_error &error) {
        files_.pop_back();
        throw BadLine{file, quoted(file) + ' ' + error.what()};
    }
    files_.pop_back();
}

void Session::run_script(Script &script)
{
    const bool at_prompt = options_.interactive && files_.size() == 1;
    while (!done_ && !stopping_ && script.read_command()) {
        try {
            execute(script);
        } catch (const BadLine &error) {
            report(script, error);
            stopping_ = !options_.keep_going;
        }
        if (at_prompt)
            stopping_ = false;
        show_what_came_behind();
        if (options_.interactive)
            out_.flush();
    }
}

// Joins the lines of one command into `command`. False at the end.
bool Session::Script::read_command()
{
    command.clear();
    first_line = lines_read + 1;
    for (bool continued = true; continued && source.next(line);) {
        std::string_view text = without_comment(line);
        continued = text.ends_with('\\');
        if (continued)
            text.remove_suffix(1);
        if (++lines_read != first_line)
            command += '\n';
        command += text;
    }
    command.resize(without_trailing_blanks(command).size());
    return lines_read >= first_line;
}

void Session::execute(Script &script)
{
    json_ = from_hardware_ = false;
    Words words{script.command};
    if (words.empty())
        return;
    const std::string_view name = words.take();
    const Command *command = find_command(name);
    if (!command)
        throw BadLine{name, "unknown command " + quoted(name) + suggestion(name, command_names()) +
                                "; help lists the commands"};
    if (!command->options.empty())
        take_option_words(*command, script.command, script.command.size() - words.rest().size());
    Words rest{words.rest()};
    command->run(*this, rest);
}

// Blanks the option words out, so that every other word keeps its place.
void Session::take_option_words(const Command &command, std::string &line, std::size_t from)
{
    for (Words words{std::string_view{line}.substr(from)}; !words.empty();) {
        const std::string_view word = words.take();
        if (!word.starts_with("--"))
            continue;
        if (std::ranges::find(command.options, word) == command.options.end())
            throw BadLine{word, "unknown option " + quoted(word) + ": " + std::string{command.name} +
                                    " takes " + listed(command.options)};
        (word == "--json" ? json_ : from_hardware_) = true;
        const auto begin = static_cast<std::size_t>(word.data() - line.data());
        std::fill_n(line.begin() + static_cast<std::ptrdiff_t>(begin), word.size(), ' ');
    }
}

void Session::show_what_came_behind()
{
    out_ << behind_;
    behind_.clear();
}

void Session::report(const Script &script, const BadLine &error)
{
    ++bad_lines_;
    const std::size_t at =
        error.where.data() ? static_cast<std::size_t>(error.where.data() - script.command.data()) : 0;
    const std::string_view before = std::string_view{script.command}.substr(0, at);
    const auto line_feeds = std::count(before.begin(), before.end(), '\n');
    const std::size_t line_begin = line_feeds == 0 ? 0 : before.rfind('\n') + 1;
    script.source.make_room();
    out_.flush();
    err_ << script.name << ':' << script.first_line + static_cast<u64>(line_feeds) << ':'
         << at - line_begin + 1 << ": " << error.what << std::endl;
}

} // namespace shell
