#include "session.h"

#include <algorithm>
#include <exception>

#include "commands.h"
#include "model.h"
#include "pd.h"

namespace shell {

namespace {

void keep_trace_line(const char *line, void *trace)
{
    *static_cast<std::string *>(trace) += std::string{"  "} + line + '\n';
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

} // namespace

Session::Session(std::ostream &out, std::ostream &err, SessionOptions options)
    : out_(out), err_(err), options_(options)
{
    p4_pd_tessel_switch_init();
}

Session::~Session()
{
    set_trace(false);
    p4_pd_tessel_switch_cleanup();
}

void Session::set_trace(bool on)
{
    ts_model_set_trace(on ? keep_trace_line : nullptr, &trace_);
}

int Session::run(LineSource &source, std::string_view name)
{
    const bool stop_at_bad_line = !options_.keep_going && !options_.interactive;
    while (!done_ && read_command(source)) {
        try {
            execute();
        } catch (const BadLine &error) {
            report(source, name, error);
            done_ = stop_at_bad_line;
        }
        show_trace();
        if (options_.interactive)
            out_.flush();
    }
    source.make_room();
    out_.flush();
    if (options_.interactive || bad_lines_ == 0)
        return 0;
    if (options_.keep_going)
        err_ << name << ": " << bad_lines_ << (bad_lines_ == 1 ? " bad line" : " bad lines") << std::endl;
    return 1;
}

// Joins the lines of one command into command_. False at the end.
bool Session::read_command(LineSource &source)
{
    command_.clear();
    first_line_ = lines_read_ + 1;
    for (bool continued = true; continued && source.next(line_);) {
        std::string_view text = without_comment(line_);
        continued = text.ends_with('\\');
        if (continued)
            text.remove_suffix(1);
        if (++lines_read_ != first_line_)
            command_ += '\n';
        command_ += text;
    }
    command_.resize(without_trailing_blanks(command_).size());
    return lines_read_ >= first_line_;
}

void Session::execute()
{
    Words words{command_};
    if (words.empty())
        return;
    const std::string_view name = words.take();
    if (const Command *command = find_command(name))
        command->run(*this, words);
    else
        throw BadLine{name, "unknown command " + quoted(name) + suggestion(name, command_names()) +
                                "; help lists the commands"};
}

void Session::show_trace()
{
    out_ << trace_;
    trace_.clear();
}

void Session::report(LineSource &source, std::string_view name, const BadLine &error)
{
    ++bad_lines_;
    const std::size_t at =
        error.where.data() ? static_cast<std::size_t>(error.where.data() - command_.data()) : 0;
    const std::string_view before = std::string_view{command_}.substr(0, at);
    const auto line_feeds = std::count(before.begin(), before.end(), '\n');
    const std::size_t line_begin = line_feeds == 0 ? 0 : before.rfind('\n') + 1;
    source.make_room();
    out_.flush();
    err_ << name << ':' << first_line_ + static_cast<u64>(line_feeds) << ':' << at - line_begin + 1 << ": "
         << error.what << std::endl;
}

} // namespace shell
