// Completion of the word that is being typed. What can stand where is read from the commands' usage texts;
// the names come from the catalogue.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "names.h"
#include "reflection.h"

namespace shell {

// The names that a session has given to members or groups of a profile.
using ObjectNames =
    std::function<std::vector<std::string>(const reflection::ProfileFunctions &profile, Kind kind)>;

// The words that the last word of `line` can become; behind a blank, all that can follow. Names that take a
// value end in '='.
std::vector<std::string> complete(std::string_view line, const ObjectNames &names = {});
// Whether that word is the name of a file.
bool completes_a_file(std::string_view line);

} // namespace shell
