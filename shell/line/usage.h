// The usage texts of commands taken apart, so that they say what can stand where.
#pragma once

#include <string_view>
#include <vector>

#include "commands.h"

namespace shell {

using Texts = std::vector<std::string_view>;

// What can stand at one place.
struct Place {
    Texts alternatives;      // kinds such as TABLE, or words as they are
    std::string_view option; // of name=VALUE: the name with its '='
    Texts choices;           // what can stand behind the '=', where those are words
    bool repeated = false;   // any number of times
    bool optional = false;
};

struct Usage {
    std::vector<Place> places;
    // What can stand behind a lone colon, where that depends on its first word: "ACTION PARAMETERS" and the
    // like, as words.
    std::vector<Texts> bodies;
};

// The forms of a command.
std::vector<Usage> usages_of(const Command &command);

bool has(const Place &place, std::string_view alternative);
// Whether a key of a table can stand here, in any number of words.
bool takes_key(const Place &place);
// Whether an alternative says what kind of word stands for it, as in TABLE.
bool is_kind(std::string_view alternative);

} // namespace shell
