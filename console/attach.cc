#include "attach.h"

#include <cerrno>
#include <cstring>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/un.h>

#include "console.h"
#include "file_name.h"
#include "new_file.h"
#include "output.h"
#include "protocol.h"
#include "reflection.h"
#include "repeated.h"
#include "terminal_lines.h"

namespace console {

namespace {

using shell::BadLine;

constexpr std::size_t deepest_file = 32;

// The client's end of the socket.
class Server {
public:
    explicit Server(const std::string &path);

    void send(Kind kind, std::string_view body);
    // The next frame of the server; its body lives until the next call. `stop` is called when a signal comes.
    Frame next(const std::function<void()> &stop);

private:
    [[noreturn]] void fail(const char *what) const { throw std::runtime_error(path_ + ' ' + what); }

    const std::string path_;
    shell::Descriptor socket_;
    std::string in_;
    std::size_t used_ = 0; // of `in_`, by the frame that was given last
};

Server::Server(const std::string &path) : path_(path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path)
        fail("is too long for a socket");
    path.copy(address.sun_path, path.size());
    socket_.set(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (connect(socket_.number(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
        throw std::runtime_error(path + " does not answer: " + std::strerror(errno));
    const Frame frame = next([] { throw shell::Interrupted{}; });
    if (frame.kind == Kind::messages)
        throw std::runtime_error(path + ": " + std::string{frame.body.substr(0, frame.body.size() - 1)});
    if (frame.kind != Kind::hello || frame.body != greeting)
        fail("is no console that this program knows");
}

void Server::send(Kind kind, std::string_view body)
{
    std::string frame;
    append_frame(frame, kind, body);
    for (std::string_view unsent = frame; !unsent.empty();) {
        const ssize_t size = ::send(socket_.number(), unsent.data(), unsent.size(), MSG_NOSIGNAL);
        if (size < 0 && errno != EINTR)
            return; // what the server said last is still to be read
        unsent.remove_prefix(size < 0 ? 0 : static_cast<std::size_t>(size));
    }
}

Frame Server::next(const std::function<void()> &stop)
{
    in_.erase(0, used_);
    used_ = 0;
    for (;;) {
        if (const auto frame = first_frame(in_)) {
            used_ = frame_head_bytes + frame->body.size();
            return *frame;
        }
        const shell::Awaited awaited = shell::await_input(socket_.number());
        if (awaited == shell::Awaited::stop_signal)
            stop();
        if (awaited != shell::Awaited::input)
            continue;
        char bytes[65536];
        const ssize_t size = recv(socket_.number(), bytes, sizeof bytes, 0);
        if (size == 0 || (size < 0 && errno != EINTR))
            fail("has ended");
        in_.append(bytes, size < 0 ? 0 : static_cast<std::size_t>(size));
    }
}

// Reads commands here and has them carried out there.
class Client {
public:
    explicit Client(const AttachOptions &options) : options_(options.session), server_(options.path) {}

    // An empty name stands for the prompt.
    void run(shell::LineSource &lines, const std::string &name);
    // All lines, or none.
    void run_atomically(shell::LineSource &lines, const std::string &name);
    std::vector<std::string> complete(std::string_view line);
    bool failed() const { return bad_commands_ != 0; }

private:
    void carry_out(const Request &request);
    void carry_out_into(std::ostream &out, const Request &request);
    bool carry_out_here(const Request &request);
    int ask(const Request &request, std::string *output);
    void cancel(bool at_prompt);
    void tell(const std::string &name, const char *command);
    bool run_to_the_first_bad(shell::LineSource &lines, const std::string &name);
    void replace(shell::LineSource &lines, const std::string &name);
    void show_difference(shell::LineSource &lines, const std::string &name);
    void repeat(shell::Words words, const Request &request);
    void load(shell::Words words);
    void go_through(const shell::FileName &file,
                    void (Client::*way)(shell::LineSource &, const std::string &));
    void save(shell::Words words, const Request &request);
    void report(const Request &request, const BadLine &error);
    unsigned form(bool at_prompt) const;

    const shell::SessionOptions options_;
    Server server_;
    std::ostream *out_ = &std::cout;
    std::size_t depth_ = 0; // of files that load files
    u64 bad_commands_ = 0;
    bool done_ = false;
    bool cancelled_ = false;
    bool atomic_ = false; // the first bad command ends the lines
};

unsigned Client::form(bool at_prompt) const
{
    return (options_.json ? unsigned{TS_CONSOLE_JSON} : 0) |
           (options_.verbose || at_prompt ? unsigned{TS_CONSOLE_VERBOSE} : 0);
}

void Client::run(shell::LineSource &lines, const std::string &name)
{
    const bool at_prompt = name.empty();
    u32 lines_read = 0;
    std::string line;
    while (!done_) {
        Request request{form(at_prompt), at_prompt ? 0 : lines_read, name, {}};
        std::string command;
        try {
            bool goes_on = true;
            while (goes_on && lines.next(line)) {
                goes_on = shell::goes_on(line);
                command += (command.empty() ? "" : "\n") + line;
                ++lines_read;
            }
            if (goes_on && command.empty())
                return;
        } catch (const shell::Interrupted &) {
            if (!at_prompt || shell::stop_signal() != SIGINT)
                throw;
            shell::forget_interrupt();
            continue;
        }
        request.command = command;
        const u64 bad_before = bad_commands_;
        carry_out(request);
        std::cout.flush();
        if (bad_commands_ != bad_before && !at_prompt && (!options_.keep_going || atomic_))
            return;
    }
}

void Client::tell(const std::string &name, const char *command)
{
    carry_out({form(false), 0, name, command});
}

// Whether all was well.
bool Client::run_to_the_first_bad(shell::LineSource &lines, const std::string &name)
{
    const u64 bad_before = bad_commands_;
    atomic_ = true;
    run(lines, name);
    atomic_ = false;
    return bad_commands_ == bad_before;
}

void Client::run_atomically(shell::LineSource &lines, const std::string &name)
{
    const u64 bad_before = bad_commands_;
    tell(name, "begin");
    if (bad_commands_ == bad_before)
        tell(name, run_to_the_first_bad(lines, name) ? "commit" : "rollback");
}

// Brings about the state that the lines tell.
void Client::replace(shell::LineSource &lines, const std::string &name)
{
    const u64 bad_before = bad_commands_;
    const std::string text = shell::text_of(lines);
    shell::TextLines planned{text}, carried_out{text};
    tell(name, "plan begin");
    bool well = bad_commands_ == bad_before && run_to_the_first_bad(planned, name);
    if (well) {
        tell(name, "plan carry-out");
        well = bad_commands_ == bad_before && run_to_the_first_bad(carried_out, name);
    }
    tell(name, well ? "plan end" : "plan drop");
}

void Client::show_difference(shell::LineSource &lines, const std::string &name)
{
    const u64 bad_before = bad_commands_;
    tell(name, "plan show");
    const bool well = bad_commands_ == bad_before && run_to_the_first_bad(lines, name);
    tell(name, well ? "plan end" : "plan drop");
}

void Client::carry_out(const Request &request)
{
    cancelled_ = false;
    try {
        std::string_view command = request.command;
        const shell::Redirection to = shell::take_redirection(command);
        Request sent = request;
        sent.command = command;
        if (!to.sign.empty()) {
            shell::RedirectedOutput redirected{to};
            carry_out_into(redirected, sent);
            redirected.finish();
        } else if (request.name.empty() && options_.paged) {
            shell::PagedOutput paged{std::cout};
            carry_out_into(paged, sent);
        } else {
            carry_out_into(*out_, sent);
        }
    } catch (const BadLine &error) {
        ++bad_commands_;
        report(request, error);
    }
}

void Client::carry_out_into(std::ostream &out, const Request &request)
{
    struct Restored {
        std::ostream *&place, *before;
        ~Restored() { place = before; }
    } const restored{out_, out_};
    out_ = &out;
    try {
        if (carry_out_here(request))
            return;
        const int status = ask(request, nullptr);
        bad_commands_ += status == TS_CONSOLE_BAD;
        done_ = done_ || status == TS_CONSOLE_QUIT;
    } catch (const BadLine &error) {
        ++bad_commands_;
        report(request, error);
    }
}

// Files are this side's.
bool Client::carry_out_here(const Request &request)
{
    shell::Words words{request.command};
    const std::string_view name = words.take();
    if (name == "load") {
        load(words);
        return true;
    }
    if (name == "every") {
        repeat(words, request);
        return true;
    }
    if (name == "diff" && !words.empty() && !reflection::find_table(words.peek())) {
        const shell::FileName file = shell::take_file_name(words);
        words.expect_end();
        go_through(file, &Client::show_difference);
        return true;
    }
    if (name != "save" || words.peek() == "-" || words.peek().empty())
        return false;
    save(words, request);
    return true;
}

void Client::repeat(shell::Words words, const Request &request)
{
    const shell::Repeated repeated = shell::take_repeated(words);
    const u64 bad_before = bad_commands_;
    Request each = request;
    each.command = repeated.command.rest();
    for (u64 i = 0; i < repeated.times && bad_commands_ == bad_before && !cancelled_; ++i) {
        if (i != 0)
            shell::wait_for(repeated.pause);
        carry_out_into(*out_, each);
        out_->flush();
    }
}

void Client::load(shell::Words words)
{
    void (Client::*way)(shell::LineSource &, const std::string &) = &Client::run;
    const auto take_options = [&] {
        for (; words.peek() == "--atomic" || words.peek() == "--replace"; words.take())
            way = words.peek() == "--atomic" ? &Client::run_atomically : &Client::replace;
    };
    take_options();
    const shell::FileName file = shell::take_file_name(words);
    take_options();
    words.expect_end();
    go_through(file, way);
}

void Client::go_through(const shell::FileName &file,
                        void (Client::*way)(shell::LineSource &, const std::string &))
{
    if (depth_ == deepest_file)
        throw BadLine{file.where, "files load each other too deeply"};
    ++depth_;
    std::string failure;
    try {
        shell::FileLines lines{file.name, nullptr};
        (this->*way)(lines, file.name);
    } catch (const std::runtime_error &error) {
        failure = error.what();
    }
    --depth_;
    if (!failure.empty())
        throw BadLine{file.where, shell::quoted(file.name) + ' ' + failure};
}

void Client::save(shell::Words words, const Request &request)
{
    const shell::FileName to = shell::take_file_name(words);
    std::string text;
    const std::string command = "save - " + std::string{words.rest()};
    if (ask({TS_CONSOLE_UNTRACED, request.lines_before, request.name, command}, &text) != TS_CONSOLE_DONE) {
        ++bad_commands_;
        return;
    }
    try {
        shell::NewFile file{to.name};
        text.pop_back(); // the last line end
        file.write_line(text);
        file.commit();
    } catch (const std::runtime_error &error) {
        throw BadLine{to.where, shell::quoted(to.name) + " cannot be written: " + error.what()};
    }
}

// Prints the answer, or keeps its output.
int Client::ask(const Request &request, std::string *output)
{
    server_.send(Kind::run, body_of(request));
    for (;;) {
        const Frame frame = server_.next([&] { cancel(request.name.empty()); });
        if (frame.kind == Kind::done)
            return frame.body.empty() ? int{TS_CONSOLE_BAD} : frame.body[0];
        if (frame.kind == Kind::messages) {
            std::cout.flush();
            std::cerr << frame.body << std::flush;
        } else if (frame.kind == Kind::output && output) {
            *output = frame.body;
        } else if (frame.kind == Kind::output) {
            *out_ << frame.body;
        }
    }
}

// At the prompt the first Ctrl-C ends the command, and the answer is waited for. Else going away ends it.
void Client::cancel(bool at_prompt)
{
    if (!at_prompt || cancelled_ || shell::stop_signal() != SIGINT)
        throw shell::Interrupted{};
    cancelled_ = true;
    server_.send(Kind::cancel, {});
    shell::forget_interrupt();
}

void Client::report(const Request &request, const BadLine &error)
{
    const std::size_t at =
        error.where.data() ? static_cast<std::size_t>(error.where.data() - request.command.data()) : 0;
    std::cout.flush();
    if (request.name.empty())
        std::cerr << "column ";
    else
        std::cerr << request.name << ':' << request.lines_before + 1 << ':';
    std::cerr << at + 1 << ": " << error.what << std::endl;
}

std::vector<std::string> Client::complete(std::string_view line)
{
    server_.send(Kind::complete, line);
    const Frame frame = server_.next([] { throw shell::Interrupted{}; });
    std::vector<std::string> candidates;
    for (std::string_view rest = frame.kind == Kind::candidates ? frame.body : std::string_view{};
         !rest.empty();) {
        candidates.emplace_back(rest.substr(0, rest.find('\n')));
        rest.remove_prefix(candidates.back().size() + 1);
    }
    return candidates;
}

void run(Client &client, const AttachOptions &options)
{
    const auto carry_out = options.session.atomic ? &Client::run_atomically : &Client::run;
    if (!options.commands.empty()) {
        shell::TextLines lines{options.commands};
        (client.*carry_out)(lines, "-c");
    } else if (options.interactive) {
        shell::TerminalLines lines;
        lines.complete_by([&](std::string_view line) { return client.complete(line); });
        client.run(lines, "");
    } else if (options.file == "-") {
        shell::DescriptorLines lines{STDIN_FILENO};
        (client.*carry_out)(lines, "<stdin>");
    } else {
        shell::FileLines lines{options.file, options.session.terminal};
        (client.*carry_out)(lines, options.file);
    }
}

} // namespace

int attach(const AttachOptions &options)
{
    Client client{options};
    try {
        run(client, options);
    } catch (const shell::Interrupted &) {
        return EXIT_FAILURE;
    }
    return client.failed() && !options.interactive ? EXIT_FAILURE : EXIT_SUCCESS;
}

} // namespace console
