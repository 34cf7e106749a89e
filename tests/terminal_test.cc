// tessel-shell at a terminal of the test's own: what a person types goes in, what the terminal shows comes
// out.
#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <poll.h>
#include <pty.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "folder.h"

namespace {

namespace fs = std::filesystem;

const std::string prompt = "tessel> ";
const std::string control_c = "\x03", control_d = "\x04", previous = "\x10";

class Terminal {
public:
    // The shell runs in `folder`, which holds its history.
    explicit Terminal(const std::string &folder, const char *pager = "cat")
    {
        shell_ = forkpty(&terminal_, nullptr, nullptr, nullptr);
        if (shell_ == 0) {
            std::signal(SIGINT, SIG_DFL); // which a job in the background ignores
            std::signal(SIGHUP, SIG_DFL); // likewise one that outlasts its terminal
            setenv("XDG_STATE_HOME", folder.c_str(), 1);
            setenv("PAGER", pager, 1);
            setenv("TERM", "dumb", 1);
            setenv("LC_ALL", "C", 1);
            if (chdir(folder.c_str()) == 0)
                execl(TS_BIN_DIR "/tessel-shell", "tessel-shell", nullptr);
            _exit(127);
        }
        expect(prompt);
    }
    ~Terminal()
    {
        close(terminal_);
        if (shell_ > 0)
            kill(shell_, SIGKILL);
        waitpid(shell_, nullptr, 0);
    }
    Terminal(const Terminal &) = delete;
    Terminal &operator=(const Terminal &) = delete;

    void type(const std::string &text) const
    {
        EXPECT_EQ(write(terminal_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }

    // Waits until the terminal has shown `text`; gives what it showed before it.
    std::string expect(const std::string &text)
    {
        std::size_t at;
        while ((at = shown_.find(text)) == std::string::npos)
            if (!read_more()) {
                ADD_FAILURE() << "no \"" << text << "\" in:\n" << shown_;
                return {};
            }
        const std::string before = shown_.substr(0, at);
        shown_.erase(0, at + text.size());
        return before;
    }

    // Types a line; gives what the terminal shows between it and the next prompt.
    std::string answer(const std::string &line)
    {
        type(line + "\r");
        expect(line + "\r\n");
        return expect(prompt);
    }

    void resize(unsigned short columns) const
    {
        const winsize size{24, columns, 0, 0};
        EXPECT_EQ(ioctl(terminal_, TIOCSWINSZ, &size), 0);
    }

    void send(int signal) const { kill(shell_, signal); }

    // How the shell ended, as of waitpid().
    int end()
    {
        while (read_more())
            continue;
        int status = 0;
        waitpid(shell_, &status, 0);
        shell_ = -1;
        return status;
    }

private:
    bool read_more()
    {
        constexpr int patience = 120000;
        pollfd shown{terminal_, POLLIN, 0};
        char text[4096];
        const ssize_t size = poll(&shown, 1, patience) == 1 ? read(terminal_, text, sizeof text) : 0;
        if (size > 0)
            shown_.append(text, static_cast<std::size_t>(size));
        return size > 0;
    }

    int terminal_ = -1;
    pid_t shell_ = -1;
    std::string shown_;
};

class TerminalTest : public testing::Test {
protected:
    const Folder folder_;
};

TEST_F(TerminalTest, CancelsTheLineAtControlC)
{
    Terminal terminal{folder_.path};
    terminal.type("echo given up");
    terminal.expect("echo given up");
    terminal.type(control_c);
    EXPECT_EQ(terminal.expect(prompt), "^C\r\n");
    EXPECT_EQ(terminal.answer("echo \\"), "");
    terminal.type(control_c);
    EXPECT_EQ(terminal.expect(prompt), "^C\r\n");
    EXPECT_EQ(terminal.answer("echo kept"), "kept\r\n");
    terminal.type(control_d);
    EXPECT_EQ(terminal.end(), 0);
}

TEST_F(TerminalTest, EndsACommandAtControlC)
{
    constexpr unsigned entries = 6000;
    std::ofstream file{folder_.file("entries")};
    for (unsigned i = 1; i <= entries; ++i)
        file << "add l2SmacCheck priority=" << i << " : NoAction\n";
    file.close();
    Terminal terminal{folder_.path};
    const std::string bar = terminal.answer("load entries");
    EXPECT_NE(bar.find("] 100%\r\033[K"), std::string::npos);
    EXPECT_EQ(bar.find('\n'), std::string::npos) << "nothing but the bar";

    terminal.type("show l2SmacCheck\r");
    terminal.expect("\r\n      1000 "); // more than the terminal holds is still to come
    terminal.type(control_c);
    EXPECT_EQ(terminal.expect("column 1: interrupted\r\n" + prompt).find("\r\n      6000 "),
              std::string::npos);
    EXPECT_EQ(terminal.answer("count l2SmacCheck"), "    6000  l2SmacCheck\r\n");
}

TEST_F(TerminalTest, LoadsFromAFifoUntilControlC)
{
    const std::string fifo = folder_.file("fifo");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    Terminal terminal{folder_.path};
    terminal.type("load fifo\r");
    terminal.expect("load fifo\r\n");
    const int writer = open(fifo.c_str(), O_WRONLY); // waits for the shell
    EXPECT_EQ(write(writer, "echo from the fifo\n", 19), 19);
    terminal.expect("from the fifo\r\n");
    terminal.type(control_c);
    terminal.expect("fifo:2:1: interrupted\r\n" + prompt);
    close(writer);
    EXPECT_EQ(terminal.answer("echo here"), "here\r\n");
}

TEST_F(TerminalTest, TellsColumnsInCharacters)
{
    Terminal terminal{folder_.path};
    EXPECT_EQ(terminal.answer("shwo l2SmacCheck"),
              "column 1: unknown command 'shwo': did you mean show?; help lists them\r\n");
    EXPECT_EQ(terminal.answer("trace é€x"), "column 7: unknown state 'é€x': there are on, off\r\n");
    EXPECT_EQ(terminal.answer("echo né€ # ü"), "né€\r\n");
    EXPECT_EQ(terminal.answer("load é€ ü"), "column 9: unexpected 'ü': the command ends before it\r\n");
}

#if HAS_EDITLINE

TEST_F(TerminalTest, CompletesAtTab)
{
    Terminal terminal{folder_.path};
    terminal.type("capac\tl2Smac\t");
    terminal.expect("capacity l2SmacCheck ");
    terminal.type("\r");
    EXPECT_EQ(terminal.expect(prompt), "\r\n       0  l2SmacCheck, which takes 1048576\r\n");
}

TEST_F(TerminalTest, KeepsItsHistoryHoweverItEnds)
{
    int lines = 0;
    for (const int signal : {0, SIGTERM, SIGHUP}) {
        Terminal terminal{folder_.path};
        terminal.answer("echo né " + std::to_string(++lines));
        if (signal == 0)
            terminal.type(control_d);
        else
            terminal.send(signal);
        const int status = terminal.end();
        EXPECT_EQ(WIFSIGNALED(status) ? WTERMSIG(status) : 0, signal);
    }
    Terminal terminal{folder_.path};
    for (int line = lines; line > 0; --line) {
        terminal.type(previous);
        terminal.expect("echo né " + std::to_string(line));
    }
}

#endif

TEST_F(TerminalTest, PagesWhatTheScreenHasNoRoomFor)
{
    Terminal terminal{folder_.path, "sed s/^/paged:/"};
    EXPECT_NE(terminal.answer("tables").find("\r\npaged:ingStpCheck "), std::string::npos);
    EXPECT_EQ(terminal.answer("echo short"), "short\r\n");
    EXPECT_EQ(terminal.answer("tables | grep -c ing | sed s/^/n=/").find("n="), 0u);
}

TEST_F(TerminalTest, ShowsListsAsWideAsItIs)
{
    Terminal terminal{folder_.path};
    terminal.resize(40);
    EXPECT_EQ(terminal.answer("tables ingStpCheck --columns table,key_kind,brief"),
              "table                        key_kind  >\r\ningStpCheck                  keyless   >\r\n");
    terminal.resize(400);
    EXPECT_EQ(terminal.answer("tables ingStpCheck").find(">\r\n"), std::string::npos);
}

} // namespace
