#include "console_session.h"

#include <array>

#include "complete.h"
#include "driver.h"
#include "json.h"
#include "signals.h"

namespace console {

namespace {

using shell::BadLine;

constexpr std::size_t default_line_bytes = 64 << 10, default_answer_bytes = 16 << 20,
                      message_bytes = 64 << 10;

} // namespace

void BoundedText::clear()
{
    text_.clear();
    full_ = false;
}

std::streamsize BoundedText::xsputn(const char *from, std::streamsize size)
{
    const std::size_t fits = std::min(static_cast<std::size_t>(size), bound_ - text_.size());
    text_.append(from, fits);
    full_ = full_ || fits < static_cast<std::size_t>(size);
    return size;
}

BoundedText::int_type BoundedText::overflow(int_type byte)
{
    const char letter = traits_type::to_char_type(byte);
    xsputn(&letter, 1);
    return byte;
}

// While this thread works for the console.
class Console::AtWork {
public:
    explicit AtWork(Console &console)
        : tracing_(console.trace_), step_([&console] { console.expect_going_on(); })
    {
        console.trace_.room = console.answer_bytes_;
        shell::driver_session = console.options_.session;
        shell::device = {console.options_.device, PIPE_ALL_PIPES};
        shell::ask_between_steps(&step_);
    }
    ~AtWork() { shell::ask_between_steps(nullptr); }

private:
    const Tracing tracing_;
    const std::function<void()> step_;
};

Console::Console(const ts_console_options &options, std::function<bool()> step)
    : options_(options), line_bytes_(options.line_bytes ? options.line_bytes : default_line_bytes),
      answer_bytes_(options.answer_bytes ? options.answer_bytes : default_answer_bytes),
      step_(std::move(step)), output_(answer_bytes_), messages_(message_bytes)
{
    shell::SessionOptions session;
    session.guest = true;
    session.read_only = options_.read_only != 0;
    const AtWork at_work{*this};
    session_.emplace(out_, err_, session);
}

Console::~Console()
{
    const AtWork at_work{*this};
    session_.reset();
}

int Console::run(std::string_view command, unsigned form, const Place &place)
{
    const std::lock_guard lock{mutex_};
    const AtWork at_work{*this};
    output_.clear();
    messages_.clear();
    cancelled_ = false;
    if (form & TS_CONSOLE_UNTRACED)
        trace_.room = 0;
    session_->set_form(form & TS_CONSOLE_JSON, form & TS_CONSOLE_VERBOSE);
    bool well = false;
    try {
        well = carry_out(command, place);
    } catch (const BadLine &error) {
        err_ << error.what << '\n';
    } catch (const shell::Interrupted &) {
        err_ << "interrupted\n";
    } catch (const std::exception &error) {
        err_ << error.what() << '\n';
    }
    if (output_.full() && messages_.text().empty())
        err_ << "the answer is cut after " << answer_bytes_ << " bytes\n";
    if (session_->done())
        return TS_CONSOLE_QUIT;
    return well && !output_.full() ? TS_CONSOLE_DONE : TS_CONSOLE_BAD;
}

bool Console::carry_out(std::string_view command, const Place &place)
{
    if (command.size() > line_bytes_)
        throw BadLine{{}, "a command has " + std::to_string(line_bytes_) + " bytes at most"};
    if (carry_out_own(command))
        return true;
    shell::TextLines lines{std::string{command}};
    return session_->run_some(lines, place.name, place.lines_before);
}

// The commands that the shell outside a process lacks.
bool Console::carry_out_own(std::string_view command)
{
    shell::Words words{command};
    const std::string_view name = words.take();
    if (name == "explain") {
        words.expect_end();
        explain_record(out_);
        return true;
    }
    if (name != "record")
        return false;
    const bool on = shell::take_on_off(words);
    words.expect_end();
    if (options_.read_only)
        throw BadLine{{}, "this console only reads"};
    on ? start_record() : stop_record();
    return true;
}

void Console::expect_going_on()
{
    if (output_.full())
        throw BadLine{{}, "the answer is cut after " + std::to_string(answer_bytes_) + " bytes"};
    if (cancelled_ || (step_ && step_()))
        throw shell::Interrupted{};
}

std::vector<std::string> Console::complete(std::string_view line)
{
    const std::lock_guard lock{mutex_};
    const AtWork at_work{*this};
    auto candidates =
        shell::complete(line, [this](const reflection::ProfileFunctions &profile, shell::Kind kind) {
            const auto names = session_->names(profile).of(kind).all();
            return std::vector<std::string>{names.begin(), names.end()};
        });
    if (line.find(' ') == std::string_view::npos)
        for (const std::string_view own : {"explain", "record"})
            if (own.starts_with(line))
                candidates.emplace_back(own);
    return candidates;
}

} // namespace console
