// pdgen as a user meets it: run on damaged catalogues and templates, judged by exit status, messages and
// files. A damage is one text replaced in a copy of the real catalogue; the line that must be told is
// searched there.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <string>
#include <vector>

#include "folder.h"

namespace {

namespace fs = std::filesystem;

std::string read_file(const fs::path &path)
{
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

void write_file(const fs::path &path, const std::string &text)
{
    std::ofstream(path, std::ios::binary) << text;
}

// Every file below `directory`, by its path from there.
std::map<std::string, std::string> files_below(const fs::path &directory)
{
    std::map<std::string, std::string> files;
    if (fs::exists(directory))
        for (const auto &entry : fs::recursive_directory_iterator(directory))
            if (entry.is_regular_file())
                files[fs::relative(entry.path(), directory)] = read_file(entry.path());
    return files;
}

struct Outcome {
    int status;
    std::string out;
    std::string err;
};

// A block of generator_findings.txt.
struct Damage {
    unsigned line;
    std::string file, find, replacement;
    std::vector<std::string> findings;
};

void append_line(std::string &text, const std::string &line)
{
    text += (text.empty() ? "" : "\n") + line;
}

std::vector<Damage> read_damages()
{
    std::ifstream file(TS_SOURCE_DIR "/tests/generator_findings.txt");
    std::vector<Damage> damages;
    unsigned number = 0;
    for (std::string line; std::getline(file, line);) {
        ++number;
        const std::string rest = line.size() > 2 ? line.substr(2) : "";
        if (line.starts_with("- "))
            append_line(damages.at(damages.size() - 1).find, rest);
        else if (line.starts_with("+ "))
            append_line(damages.at(damages.size() - 1).replacement, rest);
        else if (line.starts_with("! "))
            damages.at(damages.size() - 1).findings.push_back(rest);
        else if (!line.empty() && line[0] != '#')
            damages.push_back({number, line, "", "", {}});
    }
    return damages;
}

class Generator : public testing::Test {
protected:
    void SetUp() override
    {
        fs::copy(TS_CATALOGUE_DIR, catalogue);
        fs::create_directory(directory / "driver");
        fs::copy(TS_CATALOGUE_DIR "/../driver/operations.toml", directory / "driver");
        fs::copy(TS_TEMPLATE_DIR, templates, fs::copy_options::recursive);
    }

    Outcome pdgen(const std::string &arguments, const std::string &before = "")
    {
        const std::string out = directory / "out", err = directory / "err";
        const int status =
            std::system((before + TS_BIN_DIR "/pdgen " + arguments + " >" + out + " 2>" + err).c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, read_file(out), read_file(err)};
    }

    Outcome check() { return pdgen("check " + catalogue.string()); }

    Outcome generate(const std::string &before = "")
    {
        return pdgen("generate " + catalogue.string() + " " + templates.string() + " " + output.string(),
                     before);
    }

    static void replace_in(const fs::path &path, const std::string &find, const std::string &replacement)
    {
        std::string text = read_file(path);
        const std::size_t at = text.find(find);
        ASSERT_NE(at, std::string::npos) << path << ": " << find;
        ASSERT_EQ(text.find(find, at + 1), std::string::npos) << path << ": twice: " << find;
        write_file(path, text.replace(at, find.size(), replacement));
    }

    // Where the row with this name begins: the line of its name stands below that of its brackets.
    static std::size_t find_row(const std::string &text, const std::string &name)
    {
        std::smatch found;
        const std::regex row(R"(\n[^\n]*\nname *= ")" + name + "\"\n");
        return std::regex_search(text, found, row) ? found.position() + 1 : std::string::npos;
    }

    // The file and line that a marker of generator_findings.txt stands for.
    std::string place(const std::string &marker, const std::string &damaged_file = "")
    {
        const std::size_t separator = marker.find_first_of("|@");
        const std::size_t begin = marker.find_first_not_of('^', separator + 1);
        const std::size_t up = begin - separator - 1;
        const std::string file = separator == 0 ? damaged_file : marker.substr(0, separator);
        const std::string sought = marker.substr(begin);
        const std::string text = read_file(catalogue / file);
        const std::size_t at = marker[separator] == '@' ? find_row(text, sought) : text.find(sought);
        if (at == std::string::npos)
            return marker + " is not there";
        return file + ":" + std::to_string(1 + std::count(text.begin(), text.begin() + at, '\n') - up);
    }

    std::string with_places(std::string finding, const std::string &damaged_file = "")
    {
        for (std::size_t open; (open = finding.find('<')) != std::string::npos;) {
            const std::size_t close = finding.find('>', open);
            const std::string marker = finding.substr(open + 1, close - open - 1);
            finding.replace(open, close + 1 - open, place(marker, damaged_file));
        }
        return finding + '\n';
    }

    const Folder folder;
    const fs::path directory = folder.path;
    fs::path catalogue = directory / "catalogue", templates = directory / "templates",
             output = directory / "output";
};

TEST_F(Generator, CommandLine)
{
    const Outcome help = pdgen("--help");
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.err, "");
    EXPECT_TRUE(help.out.starts_with("usage: pdgen check CATALOGUE\n")) << help.out;
    for (const char *wrong :
         {"", "check", "check a b", "generate a b", "generate a b c d", "lint a", "--help a"}) {
        const Outcome outcome = pdgen(wrong);
        EXPECT_EQ(outcome.status, 2) << wrong;
        EXPECT_EQ(outcome.out, "") << wrong;
        EXPECT_EQ(outcome.err, help.out) << wrong;
    }
}

// ---- Wrong catalogues ----

// One damage after the other, each in an otherwise sound catalogue.
TEST_F(Generator, FindingsWithFileAndLine)
{
    const std::vector<Damage> damages = read_damages();
    EXPECT_GE(damages.size(), 100u);
    for (const Damage &damage : damages) {
        SCOPED_TRACE("generator_findings.txt:" + std::to_string(damage.line));
        const std::string sound = read_file(catalogue / damage.file);
        replace_in(catalogue / damage.file, damage.find, damage.replacement);
        std::string expected;
        for (const std::string &finding : damage.findings)
            expected += with_places(finding, damage.file);
        const Outcome outcome = check();
        EXPECT_EQ(outcome.err, expected);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.out, "");
        write_file(catalogue / damage.file, sound);
    }
}

// The words of the TOML reader are its own; the place and that it is one line are ours.
TEST_F(Generator, FilesThatCannotBeRead)
{
    const std::string sound = read_file(catalogue / "l2.toml");
    const std::string wrong[] = {"a = = 1",
                                 "[)",
                                 "[.",
                                 "a = " + std::string(400, '['),
                                 std::string(60000, 'a'),
                                 "a = " + std::string(400, '9'),
                                 "a = 1e999",
                                 "a = \"\a\"",
                                 "\xc3\x98",
                                 "a = \xff"};
    Outcome outcome{};
    for (const std::string &text : wrong) {
        write_file(catalogue / "l2.toml", sound + text);
        outcome = check();
        EXPECT_EQ(outcome.status, 1);
        EXPECT_TRUE(outcome.err.starts_with(place("l2.toml|" + text) + ": ")) << outcome.err;
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    }

    // What else is wrong is told beside it, but not what might be due to the file that is not there.
    fs::remove(catalogue / "l2.toml");
    replace_in(catalogue / "qos.toml", R"(indexed_resource = "pdpClassCount")",
               R"(resource = "pdpClassCount")");
    outcome = check();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(outcome.err.starts_with("l2.toml: ")) << outcome.err;
    EXPECT_TRUE(outcome.err.ends_with(
        with_places(R"(<qos.toml|resource = "pdpClassCount">: pdpPolicy.resource: is no known key)")));
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 2) << outcome.err;

    fs::remove(catalogue / "catalogue.toml");
    outcome = check();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(outcome.err.starts_with("catalogue.toml: ")) << outcome.err;
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
}

// Each row allows for the label, the mask and the value: "a & 0x12345678 0x12345678 ".
TEST_F(Generator, LinesOfLabelsThatAreTooLong)
{
    const std::string row =
        R"({ kind = "number", field = "parserMd_outerHdrFlags", text = "outerHdrFlags" },)";
    std::string rows;
    for (int i = 0; i < 11; ++i)
        rows += "\n" + row.substr(0, row.rfind("outerHdrFlags\"")) + std::string(267, 'x') + "\" },";
    replace_in(catalogue / "labels.toml", row, rows);
    EXPECT_EQ(check().err,
              with_places("<labels.toml|^table = \"ingressPortDropCheck\">: ingressPortDropCheck: "
                          "a line can have 3290 characters, and no text has more than 3289"));
}

TEST_F(Generator, AllFindingsOfARunSortedByFileAndLine)
{
    replace_in(catalogue / "routing.toml", "handle = 0x100003d", "handle = 0x1000031");
    replace_in(catalogue / "routing.toml", "width = 14, mask = 0xf }",
               "width = 14, mask = 0xffff, colour = 1 }");
    replace_in(catalogue / "l2.toml", "ttl_on_add = true", "ttl_on_add = 1");
    replace_in(catalogue / "actions.toml", R"({ name = "switchPort", width = 1 })",
               R"({ name = "switchPort", width = 64 })");
    const Outcome outcome = check();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(
        outcome.err,
        with_places("<actions.toml|width = 64>: setPhase0.switchPort.width: must be 1 to 32 bits") +
            with_places("<l2.toml|ttl_on_add = 1>: l2LearningLookup.ttl_on_add: must be true or false") +
            with_places("<routing.toml@ipv4ShortMaskLpm>: ipv4ShortMaskLpm.handle: tables of a file stand by "
                        "handle, and ipv4FinalResolve0 has a higher one") +
            with_places("<routing.toml@ipv4ShortMaskLpm>: ipv4ShortMaskLpm.handle: 0x1000031 is the handle "
                        "of <routing.toml@ipv4Partition0> already") +
            with_places("<routing.toml|colour = 1>: reservedNextHop.l3_nextHop.colour: is no known key") +
            with_places("<routing.toml|colour = 1>: reservedNextHop.l3_nextHop.mask: is wider than the "
                        "field's 14 bits"));
}

// ---- Output ----

TEST_F(Generator, WrongCatalogueWritesNothing)
{
    replace_in(catalogue / "qos.toml", "handle = 0x1000070", "handle = 0x100006a");
    const Outcome outcome = generate();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, check().err);
    EXPECT_FALSE(fs::exists(output));
}

TEST_F(Generator, TemplatesThatAreWrong)
{
    const std::string sound = read_file(templates / "exports.mustache");
    const auto message = [&](const char *find, const char *replacement) {
        write_file(templates / "exports.mustache", sound);
        replace_in(templates / "exports.mustache", find, replacement);
        const Outcome outcome = generate();
        EXPECT_EQ(outcome.status, 1);
        EXPECT_FALSE(fs::exists(output / "exports.map"));
        return outcome.err;
    };
    EXPECT_EQ(message("{{prefix}}_action", "{{prefx}}_action"),
              "pdgen: exports.mustache: \"prefx\" has no value here\n");
    EXPECT_EQ(message("{{function}};", "{{field}};"),
              "pdgen: exports.mustache: \"field\" has no value here\n");
    EXPECT_EQ(message("{{>_source}}", "{{>_sauce}}"),
              "pdgen: exports.mustache: \"_sauce\" has no value here\n");
    EXPECT_TRUE(message("{{/functions}}\n", "")
                    .starts_with(R"(pdgen: exports.mustache: Unclosed section "functions")"));

    fs::remove(templates / "exports.mustache");
    const Outcome outcome = generate();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "pdgen: " + (templates / "exports.mustache").string() + ": cannot be read\n");
}

TEST_F(Generator, FilesAreTouchedOnlyWhenTheyChange)
{
    ASSERT_EQ(generate().status, 0);
    const auto fresh = files_below(output);
    EXPECT_EQ(fresh.at("exports.map"), read_file(TS_GENERATED_DIR "/exports.map"));
    const auto long_ago = fs::last_write_time(output) - std::chrono::hours(1);
    for (const auto &[name, text] : fresh)
        fs::last_write_time(output / name, long_ago);
    const auto touched = [&] {
        std::vector<std::string> names;
        for (const auto &[name, text] : files_below(output))
            if (fs::last_write_time(output / name) != long_ago)
                names.push_back(name);
        return names;
    };
    write_file(catalogue / "l2.toml",
               read_file(catalogue / "l2.toml") + "#" + std::string(499, '-')); // the longest line
    ASSERT_EQ(generate().status, 0);
    EXPECT_EQ(touched(), std::vector<std::string>{});

    replace_in(
        catalogue / "l2.toml", "Sorts destination MACs per port",
        "Sorts destination MACs, and has more to tell of itself than a line of a header takes, per port");
    ASSERT_EQ(generate().status, 0);
    const std::string header = read_file(output / "include/pd_l2.h");
    EXPECT_NE(header.find("counts each hit. Its image has 8 bytes"), std::string::npos)
        << "a broken line goes on in the next";
    EXPECT_EQ(touched(),
              (std::vector<std::string>{"include/pd_l2.h", "reference/catalogue.json", "reference/index.html",
                                        "reference/l2.md", "rows/rows_l2.h"}));
}

TEST_F(Generator, OutputThatCannotBeWritten)
{
    write_file(output, "a file where the directory should be");
    const Outcome no_directory = generate();
    EXPECT_EQ(no_directory.status, 1);
    EXPECT_TRUE(no_directory.err.starts_with("pdgen: ")) << no_directory.err;
    EXPECT_NE(no_directory.err.find(output.string()), std::string::npos) << no_directory.err;
    EXPECT_EQ(std::count(no_directory.err.begin(), no_directory.err.end(), '\n'), 1) << no_directory.err;
    EXPECT_EQ(read_file(output), "a file where the directory should be");
    fs::remove(output);

    // Files end at 1,024 bytes, as on a full disk.
    fs::create_directories(output / "include");
    write_file(output / "include/pd_ports_vlan.h", "of an earlier run");
    const Outcome full = generate("trap '' XFSZ; ulimit -f 2; ");
    EXPECT_EQ(full.status, 1);
    EXPECT_EQ(full.err, "pdgen: " + (output / "include/pd_ports_vlan.h").string() + ": cannot be written\n");
    EXPECT_EQ(files_below(output),
              (std::map<std::string, std::string>{{"include/pd_ports_vlan.h", "of an earlier run"}}));

    write_file(output / "include/pd_ports_vlan.h", "");
    EXPECT_EQ(generate().status, 0) << "an empty file is only one more that has to change";
}

// ---- Goldens ----

TEST_F(Generator, OutputsAsPinned)
{
    const fs::path goldens = TS_SOURCE_DIR "/tests/goldens";
    catalogue = goldens / "catalogue";
    const Outcome outcome = generate();
    ASSERT_EQ(outcome.err, "");
    const auto pinned = files_below(goldens / "expected");
    EXPECT_GE(pinned.size(), 3u);
    for (const auto &[name, text] : pinned)
        EXPECT_EQ(read_file(output / name), text)
            << name
            << ": if that is meant, run tests/goldens/renew " TS_BIN_DIR "/pdgen and review what changes";
}

} // namespace
