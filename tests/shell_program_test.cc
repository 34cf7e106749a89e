// tessel-shell as a program: its options, where it reads from, and what it says when it cannot; and the parts
// of the shell that are no command.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "commands.h"
#include "folder.h"
#include "progress.h"
#include "shell_fixture.h"

namespace {

bool disk_is_full = false;

} // namespace

// In place of the C library's.
extern "C" int fsync(int)
{
    errno = ENOSPC;
    return disk_is_full ? -1 : 0;
}

namespace {

namespace fs = std::filesystem;

const std::string saved =
    "# Written by save, for load --replace, or for load into empty tables.\ndefault l2SmacCheck : NoAction\n";

long files_in(const Folder &folder)
{
    return std::distance(fs::directory_iterator{folder.path}, {});
}

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
    const std::string usage = "; usage: tessel-shell [--attach PATH] [--keep-going] [--verbose] [--json] "
                              "[--atomic | --check] [--color=WHEN] [-c COMMAND]... [FILE | -]\n2";
    const std::pair<std::string, std::string> cases[] = {
        {"</dev/null", "0"},
        {"- <<'.'\necho a\n.\n", "a\n0"},
        {"- <<'.'\necho a\\\n | tr a b\necho c > /dev/stderr\necho d >> '/dev/stdout'\n.\n", "b\nc\nd\n0"},
        {"- <<'.'\necho a > /nowhere/b\n.\n",
         "<stdin>:1:10: '/nowhere/b' cannot be written: No such file or directory\n1"},
        {"-k - <<'.'\necho a >\n| cat\n.\n",
         "<stdin>:1:9: missing file name\n<stdin>:2:1: missing command\n<stdin>: 2 bad lines\n1"},
        {"<<'.'\necho a\nbad\necho b\n.\n", "a\n<stdin>:2:1: unknown command 'bad'; help lists them\n1"},
        {"-k -v /dev/stdin <<'.'\nbad\nadd l2SmacCheck priority=1 : NoAction\n.\n",
         "/dev/stdin:1:1: unknown command 'bad'; help lists them\nentry 1\n/dev/stdin: 1 bad line\n1"},
        {"--nonsense", "tessel-shell: bad option --nonsense" + usage},
        {"-c 'echo a' -c bad -c 'echo b'", "a\n-c:2:1: unknown command 'bad'; help lists them\n1"},
        {"-c 'load --atomic /dev/stdin' -c 'echo b' <<'.'\nadd l2SmacCheck priority=1 : NoAction\nbad\n.\n",
         "/dev/stdin:2:1: unknown command 'bad'; help lists them\n/dev/stdin: taken back: 1\n1"},
        {"-c 'echo a' /dev/null", "tessel-shell: a file beside -c" + usage},
        {"-kx", "tessel-shell: bad option -x" + usage},
        {"a b", "tessel-shell: more than one file" + usage},
        {"explain --json /dev/null", "tessel-shell: /dev/null: is no record of the tap\n1"},
        {"replay /dev/null", "tessel-shell: /dev/null: is no record of the tap\n1"},
        {"replay a b",
         "tessel-shell: more than one record; usage: tessel-shell replay [--to-driver] RECORD\n2"},
        {"api --help | head -1", "usage: tessel-shell api [TABLE|ACTION|FAMILY|TEXT | TABLE WORD...]\n0"},
        {"api macLearningDigest deregister | tail -2",
         "    return p4_pd_tessel_switch_macLearningDigest_deregister(0, 0);\n}\n0"},
        {"api ipv4Host add onHit", "tessel-shell: no function of 'ipv4Host' has all of these words in its "
                                   "name; usage: tessel-shell api "
                                   "[TABLE|ACTION|FAMILY|TEXT | TABLE WORD...]\n1"},
        {"/nonexistent/file", "tessel-shell: /nonexistent/file: cannot be opened\n1"},
        {"/", "tessel-shell: /: is a directory\n1"},
        {"/dev/zero", "tessel-shell: /dev/zero: has more than 64 MiB in line 1\n1"},
        {"--json a b", "{\"error\":\"more than one file" + usage.substr(0, usage.size() - 2) + "\"}\n2"},
        {"--json /", "{\"error\":\"is a directory\",\"file\":\"/\"}\n1"},
        {"-jk <<'.'\nbad\n.\n",
         "{\"error\":\"unknown command 'bad'; help lists "
         "them\",\"file\":\"<stdin>\",\"line\":1,\"column\":1}\n{\"file\":\"<stdin>\",\"bad_lines\":1}\n1"},
        {"<<'.'\n\xef\xbb\xbf# mark\r\necho a \\\r\n b\r\n.\n", "a   b\n0"},
        {"- >/dev/full <<'.'\necho a\n.\n", "tessel-shell: the output cannot be written\n1"},
    };
    for (const auto &[arguments, output] : cases)
        EXPECT_EQ(program(arguments), output) << arguments;
    EXPECT_TRUE(program("--help").starts_with("usage: tessel-shell "));
    EXPECT_TRUE(program("--version").ends_with("\n0"));
}

TEST(ShellProgram, ExplainsAndReplaysRecords)
{
    const Folder folder;
    const std::string file = folder.write("record", "");
    const auto run = [&](const std::string &arguments, const char *tap) {
        setenv("TESSEL_TAP", tap, 1);
        const std::string output = program(arguments + ' ' + file);
        return std::regex_replace(output, std::regex{"at byte [0-9]+|[.0-9]+ n?s\\b"}, "N");
    };
    const auto replayed = [&](const char *tap) { return run("replay", tap); };
    const std::string refused =
        "# pipe_mgr_mat_ent_add(sess=0, dev=0, pipe=0xffff, table=0x100000c l2SmacCheck, "
        "match={value=000000000000 mask=000000000000 partition=0 priority=1 bits=48 bytes=6}, "
        "action=0x2000000f NoAction, spec={kind=1 bits=0 bytes=0 data=-}, ttl=0, flags=0) = 5";
    setenv("TESSEL_TAP", ("record:" + file + ",size=64K").c_str(), 1);
    EXPECT_EQ(
        program("- <<'.'\nadd l2SmacCheck priority=1 : NoAction\nadd l2SmacCheck priority=1 : NoAction\n.\n"),
        "<stdin>:2:1: the driver refused: already exists (status 5)\n1");
    EXPECT_EQ(run("explain --operation pipe_mgr_mat_ent_add", ""),
              "add l2SmacCheck priority=1 : NoAction # status 0, N, N\n" + refused + " # N, N\n0");
    EXPECT_EQ(run("explain --table l2SmacCheck --failures", ""), refused + " # N, N\n0");
    EXPECT_EQ(replayed(""), "2 calls as recorded, 8 left out\n0");
    const std::string differs = replayed("fail:pipe_mgr_mat_ent_add,nth=2,status=4");
    EXPECT_TRUE(differs.starts_with("tessel-shell: " + file +
                                    ": N: status 4 in place of the record's: pipe_mgr_mat_ent_add("));
    EXPECT_TRUE(differs.ends_with(" = 5\n1"));
    std::filesystem::resize_file(file, 4200);
    EXPECT_EQ(replayed(""), "tessel-shell: " + file + ": calls are lost N\n1");
    unsetenv("TESSEL_TAP");
}

TEST_F(Shell, HelpsWithEveryCommand)
{
    const std::string listed = output_of("help");
    for (const shell::Command *command : shell::commands()) {
        EXPECT_NE(("\n" + listed).find("\n  " + std::string{command->name()} + " "), std::string::npos)
            << command->name();
        EXPECT_TRUE(output_of("help " + std::string{command->name()}).starts_with(command->name()));
    }
}

// Each verb has its row in the manual, which may say more.
TEST_F(Shell, HasTheManualThatItsRowsTell)
{
    std::ifstream file{TS_SOURCE_DIR "/docs/shell.md"};
    const std::string manual{std::istreambuf_iterator<char>{file}, {}};
    for (const shell::Command *command : shell::commands())
        for (const shell::Verb &verb : command->verbs) {
            std::string row = "| `" + std::string{verb.name};
            const std::string usage = text_of(verb.usage());
            for (const char c : (usage.empty() ? "" : " ") + usage)
                row += c == '|' ? "\\|" : std::string(1, c);
            row += "` | " + std::string{verb.brief};
            EXPECT_NE(manual.find(row), std::string::npos) << row;
        }
}

TEST_F(Shell, LeavesNoHalfWrittenFile)
{
    const Folder folder;
    const std::string file = folder.write("saved", "older");
    output_of("add l2SmacCheck priority=1 : NoAction");
    for (const char *operation :
         {"pipe_mgr_get_entry", "pipe_mgr_get_next_entry_handles", "pipe_mgr_table_get_default_entry"})
        while_refused(operation, 99, [&] {
            EXPECT_EQ(run("save " + file).err, "t:1:1: the driver refused: unknown reason (status 99)\n");
        });
    disk_is_full = true;
    EXPECT_EQ(run("save " + file + " l2SmacCheck").err,
              "t:1:6: '" + file + "' cannot be written: No space left on device\n");
    disk_is_full = false;
    EXPECT_EQ(folder.read("saved"), "older");
    EXPECT_EQ(files_in(folder), 1);
}

TEST_F(Shell, SavesIntoWhatStandsThere)
{
    const Folder folder;
    const std::string save = "save ", of = " l2SmacCheck\n";
    const auto is_link = [&](const char *name) { return fs::is_symlink(folder.file(name)); };

    const std::string file = folder.write("file", "older");
    const uid_t owner = geteuid() == 0 ? 1234 : geteuid();
    ASSERT_EQ(chown(file.c_str(), owner, getegid()), 0);
    ASSERT_EQ(chmod(file.c_str(), 0604), 0);
    ASSERT_EQ(symlink("file", folder.file("link").c_str()), 0);
    ASSERT_EQ(symlink(folder.file("link").c_str(), folder.file("link to link").c_str()), 0);
    output_of(save + "'" + folder.file("link to link") + "'" + of);
    struct stat status;
    ASSERT_EQ(stat(file.c_str(), &status), 0);
    EXPECT_EQ(folder.read("file"), saved);
    EXPECT_EQ(status.st_mode, 0100604u);
    EXPECT_EQ(status.st_uid, owner);
    EXPECT_TRUE(is_link("link") && is_link("link to link"));

    ASSERT_EQ(symlink("new", folder.file("dangling").c_str()), 0);
    const mode_t mask = umask(027);
    output_of(save + folder.file("dangling") + of);
    umask(mask);
    EXPECT_EQ(folder.read("new"), saved);
    ASSERT_EQ(stat(folder.file("new").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode, 0100640u);
    EXPECT_TRUE(is_link("dangling"));

    ASSERT_EQ(symlink("circle", folder.file("circle").c_str()), 0);
    EXPECT_EQ(run(save + folder.file("circle")).err,
              "t:1:6: '" + folder.file("circle") +
                  "' cannot be written: Too many levels of symbolic links\n");

    const std::string fifo = folder.file("fifo");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    const int reader = open(fifo.c_str(), O_RDONLY | O_NONBLOCK);
    output_of(save + fifo + of);
    char text[200];
    EXPECT_EQ((std::string{text, static_cast<std::size_t>(read(reader, text, sizeof text))}), saved);
    close(reader);
    EXPECT_TRUE(fs::is_fifo(fifo));
    EXPECT_EQ(files_in(folder), 7);
}

TEST(ShellProgram, SavesIntoItsOwnOutput)
{
    const Folder folder;
    const std::string file = folder.file("output");
    for (const std::string &save : {file, std::string{"/proc/self/fd/1"}})
        EXPECT_EQ(program("- <<'.' >" + file + " && cat " + file + "\necho a\nsave " + save +
                          " l2SmacCheck\necho b\n.\n"),
                  "a\n" + saved + "b\n0");
}

TEST(Progress, DrawsEachPercentOnceAndLeavesNoBar)
{
    std::ostringstream terminal;
    {
        shell::Progress progress{&terminal, 10000, shell::Progress::From::start};
        for (int i = 0; i < 99; ++i)
            progress.advance();
        EXPECT_EQ(terminal.str(), "");
        for (int i = 99; i < 5000; ++i)
            progress.advance();
    }
    const std::string text = terminal.str();
    EXPECT_EQ(std::count(text.begin(), text.end(), '%'), 50);
    EXPECT_NE(text.find("\r[####################                    ] 50%"), std::string::npos);
    EXPECT_TRUE(text.ends_with("\r\033[K"));
}

} // namespace
