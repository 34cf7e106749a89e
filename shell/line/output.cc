#include "output.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <sys/ioctl.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "file_name.h"
#include "words.h"

namespace shell {

namespace {

// A program that ends before its input does no harm.
class NoSigpipe {
public:
    NoSigpipe() : before_(std::signal(SIGPIPE, SIG_IGN)) {}
    ~NoSigpipe() { std::signal(SIGPIPE, before_); }
    NoSigpipe(const NoSigpipe &) = delete;
    NoSigpipe &operator=(const NoSigpipe &) = delete;

private:
    void (*before_)(int);
};

FILE *start(const std::string &program)
{
    std::fflush(nullptr);
    return popen(program.c_str(), "w");
}

winsize size_of_terminal()
{
    winsize size{};
    ioctl(STDOUT_FILENO, TIOCGWINSZ, &size);
    return size;
}

std::size_t height_of_terminal()
{
    const std::size_t rows = size_of_terminal().ws_row;
    return rows != 0 ? rows : 24;
}

std::string pager()
{
    setenv("LESS", "FRX", 0); // leaves the screen as it is, and ends where one is enough
    const char *const wanted = std::getenv("PAGER");
    return wanted ? wanted : "command -v less >/dev/null && exec less; exec cat";
}

} // namespace

std::optional<std::size_t> width_of_terminal()
{
    const std::size_t columns = size_of_terminal().ws_col;
    return columns != 0 ? std::optional{columns} : std::nullopt;
}

Redirection take_redirection(std::string_view &command)
{
    for (Words words{command}; !words.empty();) {
        const std::string_view word = words.take();
        if (word != "|" && word != ">" && word != ">>")
            continue;
        const Redirection found{word, words.rest()};
        command = command.substr(0, static_cast<std::size_t>(word.data() - command.data()));
        while (!command.empty() && is_blank(command.back()))
            command.remove_suffix(1);
        return found;
    }
    return {};
}

// ---- Programs and files ---------------------------------------------------------------------------------

class RedirectedOutput::Buffer : public std::streambuf {
public:
    Buffer(FILE *to, bool is_program) : to_(to), is_program_(is_program) {}
    Buffer(const Buffer &) = delete;
    Buffer &operator=(const Buffer &) = delete;
    ~Buffer() override { close(); }

    // False when not everything was written. A program may end before.
    bool close()
    {
        if (!to_)
            return true;
        const NoSigpipe none;
        FILE *const to = std::exchange(to_, nullptr);
        return is_program_ ? pclose(to) != -1 : std::fclose(to) == 0;
    }

protected:
    std::streamsize xsputn(const char *text, std::streamsize size) override
    {
        const NoSigpipe none;
        const std::size_t written = std::fwrite(text, 1, static_cast<std::size_t>(size), to_);
        return is_program_ ? size : static_cast<std::streamsize>(written);
    }
    int overflow(int letter) override
    {
        const char text = static_cast<char>(letter);
        return xsputn(&text, 1) == 1 ? letter : traits_type::eof();
    }

private:
    FILE *to_;
    const bool is_program_;
};

RedirectedOutput::RedirectedOutput(const Redirection &to) : std::ostream(nullptr), to_(to)
{
    const bool is_program = to.sign == "|";
    if (to.target.empty())
        throw BadLine{to.target, is_program ? "missing program" : "missing file name"};
    FILE *file = nullptr;
    if (is_program) {
        file = start(std::string{to.target});
    } else {
        Words words{to.target};
        const FileName name = take_file_name(words);
        words.expect_end();
        file = std::fopen(name.name.c_str(), to.sign == ">" ? "we" : "ae");
    }
    if (!file)
        throw BadLine{to.target,
                      quoted(to.target) + " cannot be written: " + std::generic_category().message(errno)};
    buffer_ = std::make_unique<Buffer>(file, is_program);
    rdbuf(buffer_.get());
}

RedirectedOutput::~RedirectedOutput() = default;

void RedirectedOutput::finish()
{
    if (!buffer_->close() || !good())
        throw BadLine{to_.target, "not everything could be written to " + quoted(to_.target)};
}

// ---- Pagers ---------------------------------------------------------------------------------------------

class PagedOutput::Buffer : public std::streambuf {
public:
    explicit Buffer(std::ostream &out) : out_(out), room_(height_of_terminal() - 1) {}
    Buffer(const Buffer &) = delete;
    Buffer &operator=(const Buffer &) = delete;
    ~Buffer() override
    {
        const NoSigpipe none;
        if (program_)
            pclose(program_);
        else
            out_ << kept_ << std::flush;
    }

protected:
    std::streamsize xsputn(const char *text, std::streamsize size) override
    {
        const NoSigpipe none;
        const std::string_view more{text, static_cast<std::size_t>(size)};
        if (!program_) {
            kept_ += more;
            lines_ += static_cast<std::size_t>(std::ranges::count(more, '\n'));
            if (lines_ <= room_)
                return size;
            out_.flush();
            program_ = start(pager());
            if (!program_)
                return 0;
            std::fwrite(kept_.data(), 1, kept_.size(), program_);
            return size;
        }
        std::fwrite(text, 1, more.size(), program_);
        return size;
    }
    // What takes its time is shown as it comes.
    int sync() override
    {
        if (program_)
            return std::fflush(program_);
        out_ << kept_ << std::flush;
        kept_.clear();
        lines_ = 0;
        return 0;
    }
    int overflow(int letter) override
    {
        const char text = static_cast<char>(letter);
        return xsputn(&text, 1) == 1 ? letter : traits_type::eof();
    }

private:
    std::ostream &out_;
    const std::size_t room_; // lines that need no pager
    std::string kept_;
    std::size_t lines_ = 0;
    FILE *program_ = nullptr;
};

PagedOutput::PagedOutput(std::ostream &out) : std::ostream(nullptr), buffer_(std::make_unique<Buffer>(out))
{
    rdbuf(buffer_.get());
}

PagedOutput::~PagedOutput() = default;

} // namespace shell
