// A catalogue for the generator: the contents of its files one behind the other, "---" lines between them.
// The generator either finds something, one line each, or can make all its variables.
#include <fstream>
#include <string>

#include "checks.h"
#include "sandbox.h"
#include "view.h"

namespace {

constexpr const char *names[] = {"catalogue.toml",  "actions.toml",  "ports.toml",     "profiles.toml",
                                 "resources.toml",  "services.toml", "snapshots.toml", "labels.toml",
                                 "operations.toml", "functions.toml"};

void write_files(const std::filesystem::path &folder, std::string_view text)
{
    constexpr std::string_view separator = "---\n";
    for (const char *name : names) {
        const std::size_t end = std::min(text.find(separator), text.size());
        std::ofstream(folder / name, std::ios::binary) << text.substr(0, end);
        text.remove_prefix(std::min(end + separator.size(), text.size()));
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const fuzz::Sandbox sandbox;
    write_files(sandbox.folder(), fuzz::Bytes(data, size).rest());
    pdgen::Diagnostics diagnostics;
    const pdgen::Catalogue catalogue = pdgen::load_catalogue(sandbox.folder(), diagnostics);
    if (catalogue.complete)
        pdgen::check_catalogue(catalogue, diagnostics);
    fuzz::expect(catalogue.complete || !diagnostics.empty(), "a finding where a file could not be read");
    for (const std::string &line : diagnostics.lines())
        fuzz::expect(line.find('\n') == std::string::npos && line.find(": ") != std::string::npos,
                     "one line a finding");
    if (diagnostics.empty())
        pdgen::catalogue_view(catalogue, diagnostics);
    return 0;
}
