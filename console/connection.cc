#include "connection.h"

namespace console {

Connection::Connection(const ts_console_options &options, std::function<bool()> step)
    : console_(options, std::move(step))
{
    append_frame(out_, Kind::hello, greeting);
}

std::size_t Connection::room() const
{
    const std::size_t most = bound() + 2 * frame_head_bytes; // a command, and a cancel behind it
    return ended_ || in_.size() >= most ? 0 : most - in_.size();
}

void Connection::receive(std::string_view bytes)
{
    in_ += bytes;
}

bool Connection::can_answer() const
{
    return !ended_ && unsent().empty() && (first_frame(in_) || is_too_long(in_, bound()));
}

void Connection::answer()
{
    if (is_too_long(in_, bound()))
        return end("a frame is too long");
    const std::string taken{
        std::string_view{in_}.substr(0, frame_head_bytes + first_frame(in_)->body.size())};
    in_.erase(0, taken.size());
    answer(*first_frame(taken));
}

void Connection::answer(const Frame &frame)
{
    const auto request = frame.kind == Kind::run ? request_of(frame.body) : std::nullopt;
    if (request)
        run(*request);
    else if (frame.kind == Kind::complete)
        complete(frame.body);
    else if (frame.kind != Kind::cancel) // one that came too late does nothing
        end("this is no request");
}

void Connection::run(const Request &request)
{
    const int status =
        console_.run(request.command, request.form, {std::string{request.name}, request.lines_before});
    if (!console_.output().empty())
        append_frame(out_, Kind::output, console_.output());
    if (!console_.messages().empty())
        append_frame(out_, Kind::messages, console_.messages());
    append_frame(out_, Kind::done, std::string(1, static_cast<char>(status)));
    std::string{}.swap(console_.output()); // an answer may be large, and a client idle for long
    ended_ = ended_ || status == TS_CONSOLE_QUIT;
}

void Connection::complete(std::string_view line)
{
    std::string text;
    for (const std::string &candidate : console_.complete(line))
        text.append(candidate).push_back('\n');
    append_frame(out_, Kind::candidates, text);
}

void Connection::end(std::string_view why)
{
    append_frame(out_, Kind::messages, std::string{why} + '\n');
    in_.clear();
    ended_ = true;
}

bool Connection::take_cancel()
{
    for (std::size_t at = 0; const auto frame = first_frame(std::string_view{in_}.substr(at));) {
        const std::size_t size = frame_head_bytes + frame->body.size();
        if (frame->kind == Kind::cancel) {
            in_.erase(at, size);
            return true;
        }
        at += size;
    }
    return false;
}

void Connection::sent(std::size_t bytes)
{
    sent_ += bytes;
    if (sent_ == out_.size()) {
        std::string{}.swap(out_);
        sent_ = 0;
    }
}

} // namespace console
