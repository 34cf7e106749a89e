#include "lines.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <stdexcept>
#include <unistd.h>

#include "signals.h"

namespace shell {

namespace {

constexpr u64 long_file = 5000; // lines
constexpr std::size_t buffer_size = 65536;

// Stores what comes next, as soon as something does; gives its size, 0 at the end.
std::size_t read_some(int descriptor, std::vector<char> &to)
{
    for (;;) {
        const Awaited awaited = await_input(descriptor);
        if (awaited == Awaited::stop_signal)
            throw Interrupted{};
        if (awaited == Awaited::other_signal)
            continue;
        const ssize_t size = read(descriptor, to.data(), to.size());
        if (size >= 0)
            return static_cast<std::size_t>(size);
        if (errno != EINTR && errno != EAGAIN)
            throw std::runtime_error("cannot be read");
    }
}

// How many lines there are; the file is at its beginning again afterwards.
u64 count_lines(int descriptor)
{
    std::vector<char> buffer(buffer_size);
    u64 lines = 0;
    while (const std::size_t size = read_some(descriptor, buffer))
        lines += static_cast<u64>(std::count(buffer.data(), buffer.data() + size, '\n'));
    lseek(descriptor, 0, SEEK_SET);
    return lines;
}

} // namespace

bool DescriptorLines::next(std::string &line)
{
    line.clear();
    ++number_;
    while (at_ != end_ || refill()) {
        const char *begin = buffer_.data() + at_, *end = buffer_.data() + end_;
        const char *feed = std::find(begin, end, '\n');
        if (line.size() + static_cast<std::size_t>(feed - begin) > longest_line)
            throw std::runtime_error("has more than 64 MiB in line " + std::to_string(number_));
        line.append(begin, feed);
        at_ = static_cast<std::size_t>(feed - buffer_.data());
        if (feed != end) {
            ++at_;
            return true;
        }
    }
    return !line.empty();
}

bool DescriptorLines::refill()
{
    buffer_.resize(buffer_size);
    at_ = end_ = 0; // also when Ctrl-C comes
    end_ = read_some(descriptor_, buffer_);
    return end_ != 0;
}

TextLines::TextLines(std::string text, std::ostream *terminal) : text_{std::move(text)}
{
    if (terminal)
        progress_.emplace(terminal, std::ranges::count(text_, '\n'), Progress::From::second_second);
}

void TextLines::make_room()
{
    if (progress_)
        progress_->clear();
}

bool TextLines::next(std::string &line)
{
    if (at_ == text_.size())
        return false;
    if (progress_)
        progress_->advance();
    const std::size_t end = std::min(text_.find('\n', at_), text_.size());
    line = text_.substr(at_, end - at_);
    at_ = std::min(end + 1, text_.size());
    return true;
}

std::string text_of(LineSource &source)
{
    std::string text;
    for (std::string line; source.next(line);)
        text.append(line).append("\n");
    return text;
}

FileLines::FileLines(const std::string &name, std::ostream *terminal)
{
    std::error_code unknown; // then opening the file tells more
    if (std::filesystem::is_directory(name, unknown))
        throw std::runtime_error("is a directory");
    // A FIFO opens at once; the wait for somebody to write comes with the reading, where Ctrl-C ends it.
    file_.set(open(name.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    if (file_.number() < 0)
        throw std::runtime_error("cannot be opened");
    lines_.emplace(file_.number());
    if (terminal && std::filesystem::is_regular_file(name, unknown))
        if (const u64 lines = count_lines(file_.number()); lines > long_file)
            progress_.emplace(terminal, lines, Progress::From::start);
}

bool FileLines::next(std::string &line)
{
    if (!lines_->next(line))
        return false;
    if (progress_)
        progress_->advance();
    return true;
}

void FileLines::make_room()
{
    if (progress_)
        progress_->clear();
}

} // namespace shell
