// Completion of the word that is being typed. What can stand where is read from the commands' usage texts;
// the names come from the catalogue.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace shell {

// The words that the last word of `line` can become; behind a blank, all that can follow. Names that take a
// value end in '='.
std::vector<std::string> complete(std::string_view line);
// Whether that word is the name of a file.
bool completes_a_file(std::string_view line);

} // namespace shell
