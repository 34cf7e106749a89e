// Transcripts of the shell: tests/transcripts/*.txt hold commands and, below each, what it must print.
//
//     > COMMAND        a line as it is typed
//     output           what it prints
//     ! 9: message     what it complains of, with the column
//     --- REMARK       a new session with an empty model; the remark may name --json, --verbose,
//     --interactive
//
// Lines before the first session are for the reader.
// Each file runs in an empty folder of its own, which is the home folder, too. TS_RENEW=1 writes what came
// out into the files instead.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "folder.h"
#include "model.h"
#include "session.h"

namespace {

namespace fs = std::filesystem;

std::vector<std::string> lines_of(std::istream &in)
{
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

// Hands the commands of one session out and writes down what each of them gave.
class Recorder : public shell::LineSource {
public:
    explicit Recorder(std::vector<std::string> commands) : commands_(std::move(commands)) {}

    bool next(std::string &line) override
    {
        collect();
        if (given_ == commands_.size())
            return false;
        line = commands_[given_++];
        text_ += "> " + line + '\n';
        return true;
    }

    std::string text()
    {
        collect(); // what came behind a quit
        return text_;
    }

    std::ostringstream out, err;

private:
    void collect()
    {
        text_ += out.str();
        std::istringstream messages{err.str()};
        for (const std::string &message : lines_of(messages))
            if (!message.starts_with("t: ")) // the number of bad lines
                text_ += "! " + without_place(message) + '\n';
        out.str({});
        err.str({});
    }

    // Lines are counted by the reader of a transcript; the column is worth a look.
    static std::string without_place(const std::string &message)
    {
        const std::size_t line = message.find(':');
        return message.starts_with("t:") ? message.substr(message.find(':', line + 1) + 1) : message;
    }

    std::vector<std::string> commands_;
    std::size_t given_ = 0;
    std::string text_;
};

std::string run_session(const std::string &head, const std::vector<std::string> &commands)
{
    const auto has = [&](const char *option) { return head.find(option) != std::string::npos; };
    ts_model_reset();
    Recorder recorder{commands};
    const shell::SessionOptions options{.keep_going = true,
                                        .verbose = has("--verbose"),
                                        .json = has("--json"),
                                        .interactive = has("--interactive")};
    shell::Session{recorder.out, recorder.err, options}.run(recorder, "t");
    ts_model_reset();
    return recorder.text();
}

// What the file would be if every expectation were met.
std::string replayed(const std::vector<std::string> &lines)
{
    std::string text, head;
    std::vector<std::string> commands;
    const auto finish = [&] {
        if (!commands.empty())
            text += run_session(head, commands);
        commands.clear();
    };
    std::ofstream file;
    for (const std::string &line : lines) {
        const bool begins_session = line.starts_with("---"), begins_file = line.starts_with("+++ ");
        if (begins_session || begins_file) {
            finish();
            head = line;
            file = begins_file ? std::ofstream{line.substr(4)} : std::ofstream{};
        } else if (head.starts_with("---")) {
            if (line.starts_with("> "))
                commands.push_back(line.substr(2));
            continue;
        } else if (file.is_open()) {
            file << line << '\n';
        }
        text += line + '\n';
    }
    finish();
    return text;
}

class Transcripts : public testing::TestWithParam<std::string> {};

TEST_P(Transcripts, come_out_as_written)
{
    const fs::path file = fs::path{TS_SOURCE_DIR} / "tests/transcripts" / (GetParam() + ".txt");
    const Folder folder;
    const fs::path before = fs::current_path();
    fs::current_path(folder.path);
    setenv("HOME", folder.path.c_str(), 1);
    std::ifstream in{file};
    const std::vector<std::string> expected = lines_of(in);
    std::istringstream came{replayed(expected)};
    const std::vector<std::string> lines = lines_of(came);
    fs::current_path(before);

    if (std::getenv("TS_RENEW")) {
        std::ofstream out{file};
        for (const std::string &line : lines)
            out << line << '\n';
        return;
    }
    const auto [want, got] = std::ranges::mismatch(expected, lines);
    const auto at = want - expected.begin();
    EXPECT_TRUE(want == expected.end() && got == lines.end())
        << file.string() << ':' << at + 1 << ":\n  expected: " << (want == expected.end() ? "the end" : *want)
        << "\n  came:     " << (got == lines.end() ? "the end" : *got);
}

std::vector<std::string> names()
{
    std::vector<std::string> found;
    for (const auto &entry : fs::directory_iterator{fs::path{TS_SOURCE_DIR} / "tests/transcripts"})
        found.push_back(entry.path().stem().string());
    std::ranges::sort(found);
    return found;
}

INSTANTIATE_TEST_SUITE_P(Files, Transcripts, testing::ValuesIn(names()),
                         [](const auto &file) { return file.param; });

} // namespace
