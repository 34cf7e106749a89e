// pdgen: checks the catalogue and writes everything that follows from its rows.

#include <filesystem>
#include <iostream>
#include <string_view>

#include "checks.h"
#include "emit.h"

namespace {

constexpr std::string_view usage =
    "usage: pdgen check CATALOGUE\n"
    "       pdgen generate CATALOGUE TEMPLATES OUTPUT\n"
    "       pdgen --help\n"
    "\n"
    "check     reads the rows below the directory CATALOGUE and reports whatever is wrong with them, one\n"
    "          line each: file:line: object.field: what\n"
    "generate  checks, then writes headers, rows, thunks and pages below the directory OUTPUT; a file is\n"
    "          touched only when its contents change\n"
    "\n"
    "Exit status: 0 when all is well, 1 for a wrong catalogue or an output that cannot be written, 2 for a\n"
    "wrong command line.\n";

// Reads and checks; tells the findings. No value when there are any.
std::optional<pdgen::CatalogueView> load(const std::filesystem::path &directory)
{
    pdgen::Diagnostics diagnostics;
    const pdgen::Catalogue catalogue = pdgen::load_catalogue(directory, diagnostics);
    if (catalogue.complete)
        pdgen::check_catalogue(catalogue, diagnostics);
    pdgen::CatalogueView view;
    if (diagnostics.empty())
        view = pdgen::catalogue_view(catalogue, diagnostics);
    for (const std::string &line : diagnostics.lines())
        std::cerr << line << '\n';
    if (!diagnostics.empty())
        return std::nullopt;
    return view;
}

} // namespace

int main(int argc, char **argv)
{
    const std::string_view command = argc > 1 ? argv[1] : "";
    if (command == "--help" && argc == 2) {
        std::cout << usage;
        return 0;
    }
    if (!(command == "check" && argc == 3) && !(command == "generate" && argc == 5)) {
        std::cerr << usage;
        return 2;
    }
    const auto view = load(argv[2]);
    if (!view)
        return 1;
    if (command == "check")
        return 0;
    try {
        pdgen::emit_all(*view, argv[3], argv[4]);
    } catch (const std::exception &error) {
        std::cerr << "pdgen: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
