#include "toml_file.h"

#include <algorithm>
#include <fstream>

namespace pdgen {

namespace {

constexpr std::size_t max_line = 500;

// What is wrong with a line before its syntax is looked at; null for nothing.
const char *fault_of_line(std::string_view line)
{
    if (line.size() > max_line)
        return "a line has at most 500 characters";
    const auto is_ascii = [](unsigned char c) { return c < 0x80; };
    return std::all_of(line.begin(), line.end(), is_ascii) ? nullptr : "a catalogue is plain ASCII text";
}

bool is_plain_text(std::string_view text, const std::string &name, Diagnostics &diagnostics)
{
    bool plain = true;
    unsigned number = 1;
    for (std::size_t begin = 0; begin < text.size(); ++number) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        if (const char *fault = fault_of_line(text.substr(begin, end - begin))) {
            diagnostics.add({name, number}, "", fault);
            plain = false;
        }
        begin = end + 1;
    }
    return plain;
}

} // namespace

std::optional<toml::table> read_toml(const std::filesystem::path &directory, const std::string &name,
                                     Diagnostics &diagnostics)
{
    std::error_code error;
    std::ifstream file;
    if (std::filesystem::is_regular_file(directory / name, error))
        file.open(directory / name, std::ios::binary);
    if (!file.is_open()) {
        diagnostics.add({name}, "", "File could not be opened for reading");
        return std::nullopt;
    }
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    if (!is_plain_text(text, name, diagnostics))
        return std::nullopt;
    try {
        return toml::parse(std::string_view(text), std::string_view(name));
    } catch (const toml::parse_error &fault) {
        diagnostics.add({name, fault.source().begin.line}, "", std::string(fault.description()));
        return std::nullopt;
    }
}

} // namespace pdgen
