// tessel-shell as a program: its options, where it reads from, and what it says when it cannot; and the parts
// of the shell that are no command.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/wait.h>

#include "commands.h"
#include "progress.h"
#include "shell_fixture.h"

namespace {

// Runs tessel-shell with `arguments` in a shell; both outputs, then the exit status.
std::string program(const std::string &arguments)
{
    FILE *pipe = popen(("exec 2>&1; " TS_BIN_DIR "/tessel-shell " + arguments).c_str(), "r");
    if (!pipe)
        return "cannot be run";
    std::string output;
    for (int c; (c = std::fgetc(pipe)) != EOF;)
        output += static_cast<char>(c);
    return output + std::to_string(WEXITSTATUS(pclose(pipe)));
}

TEST(ShellProgram, ReadsAndRefuses)
{
    const std::string usage = "; usage: tessel-shell [--keep-going] [--verbose] [--json] [FILE | -]\n2";
    const std::pair<std::string, std::string> cases[] = {
        {"</dev/null", "0"},
        {"- <<'.'\necho a\n.\n", "a\n0"},
        {"<<'.'\necho a\nbad\necho b\n.\n",
         "a\n<stdin>:2:1: unknown command 'bad'; help lists the commands\n1"},
        {"-k -v /dev/stdin <<'.'\nbad\nadd l2SmacCheck priority=1 : NoAction\n.\n",
         "/dev/stdin:1:1: unknown command 'bad'; help lists the commands\nentry 1\n/dev/stdin: 1 bad "
         "line\n1"},
        {"--nonsense", "tessel-shell: bad option --nonsense" + usage},
        {"-kx", "tessel-shell: bad option -x" + usage},
        {"a b", "tessel-shell: more than one file" + usage},
        {"/nonexistent/file", "tessel-shell: /nonexistent/file: cannot be opened\n1"},
        {"/", "tessel-shell: /: is a directory\n1"},
        {"- >/dev/full <<'.'\necho a\n.\n", "tessel-shell: the output cannot be written\n1"},
    };
    for (const auto &[arguments, output] : cases)
        EXPECT_EQ(program(arguments), output) << arguments;
    EXPECT_TRUE(program("--help").starts_with("usage: tessel-shell "));
    EXPECT_TRUE(program("--version").ends_with("\n0"));
}

TEST_F(Shell, HelpsWithEveryCommand)
{
    const std::string listed = output_of("help");
    for (const shell::Command &command : shell::commands()) {
        EXPECT_NE(("\n" + listed).find("\n  " + std::string{command.name} + " "), std::string::npos)
            << command.name;
        EXPECT_TRUE(output_of("help " + std::string{command.name}).starts_with(command.name));
    }
}

TEST_F(Shell, LeavesNoHalfWrittenFile)
{
    std::string folder = (std::filesystem::temp_directory_path() / "shell.XXXXXX").string();
    ASSERT_NE(mkdtemp(folder.data()), nullptr);
    const std::string file = folder + "/saved";
    std::ofstream{file} << "older";
    output_of("add l2SmacCheck priority=1 : NoAction");
    for (const char *operation :
         {"pipe_mgr_get_entry", "pipe_mgr_get_next_entry_handles", "pipe_mgr_table_get_default_entry"}) {
        ts_model_fail_operation(operation, 99);
        EXPECT_EQ(run("save " + file).err, "t:1:1: the driver refused: unknown reason (status 99)\n");
        ts_model_fail_operation(operation, 0);
    }
    std::string text;
    std::getline(std::ifstream{file}, text);
    EXPECT_EQ(text, "older");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator{folder}, {}), 1);
    std::filesystem::remove_all(folder);
}

TEST(Progress, DrawsEachPercentOnceAndLeavesNoBar)
{
    std::ostringstream terminal;
    {
        shell::Progress progress{terminal, 10000};
        for (int i = 0; i < 99; ++i)
            progress.advance();
        EXPECT_EQ(terminal.str(), "");
        for (int i = 99; i < 5000; ++i)
            progress.advance();
    }
    const std::string text = terminal.str();
    EXPECT_EQ(std::count(text.begin(), text.end(), '%'), 50);
    EXPECT_NE(text.find("\r[#########################                         ] 50%\r\033[K"),
              std::string::npos);
    EXPECT_TRUE(text.ends_with("50%\r\033[K"));
}

} // namespace
