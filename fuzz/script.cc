// A script for the shell, or with a '(' in front of it a value text. A script can write below its sandbox
// only: one that saves or loads gets no '/' and no '~'. The model is emptied between scripts, not built anew.
#include <sys/resource.h>
#include <unistd.h>

#include <sstream>

#include "model.h"
#include "sandbox.h"
#include "session.h"
#include "value_parser.h"

extern "C" int fsync(int) // waiting for the disk finds nothing
{
    return 0;
}

namespace {

class TextLines : public shell::LineSource {
public:
    explicit TextLines(const std::string &text) : in_(text) {}

    bool next(std::string &line) override { return static_cast<bool>(std::getline(in_, line)); }

private:
    std::istringstream in_;
};

class ScriptSandbox : public fuzz::Sandbox {
public:
    ScriptSandbox()
    {
        setenv("HOME", folder().c_str(), 1);
        const rlimit limit{1 << 22, 1 << 22};
        setrlimit(RLIMIT_FSIZE, &limit);
        ts_model_set_log([](int, int, const char *, void *) {}, nullptr);
    }

    void run(std::string script, shell::SessionOptions options) const
    {
        const auto names = [&](const char *command) { return script.find(command) != std::string::npos; };
        const bool saves = names("save");
        if (saves || names("load"))
            for (char &c : script)
                c = c == '/' || c == '~' ? '_' : c;
        std::filesystem::current_path(folder());
        ts_model_reset();
        std::ostringstream out, err;
        TextLines lines{script};
        shell::Session{out, err, options}.run(lines, "script");
        std::filesystem::current_path(before_); // where the fuzzer finds its files
        if (saves)
            empty();
    }

private:
    const std::filesystem::path before_ = std::filesystem::current_path();
};

// Texts are read by the tables in turn; what reads as a key is written again.
void read_value(fuzz::Bytes in)
{
    static const auto parsers = [] {
        std::vector<std::pair<const reflection::TableFunctions *, shell::ValueParser>> made;
        for (const reflection::TableFunctions *table : reflection::tables())
            made.emplace_back(table, shell::ValueParser{*table});
        return made;
    }();
    const auto &[table, parser] = in.pick(parsers);
    try {
        const shell::ParsedValue value = parser.parse(in.rest());
        if (value.key.empty())
            return;
        char text[4096];
        const u32 length = table->text.match_spec_value(value.key.data(), text);
        fuzz::expect(parser.parse({text, length}).key == value.key, "the same key again");
    } catch (const shell::BadLine &) {
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const ScriptSandbox sandbox;
    fuzz::Bytes in{data, size};
    const char first = in.take<char>();
    if (first == '(') {
        read_value(in);
        return 0;
    }
    shell::SessionOptions options;
    options.keep_going = true;
    options.verbose = first & 1;
    options.json = first & 2;
    options.interactive = first & 4;
    sandbox.run(std::string{in.rest()}, options);
    return 0;
}
