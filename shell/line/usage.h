// What can stand where behind the name of a command: for help, completion and the manual.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "rows.h"

namespace shell {

using Texts = std::vector<std::string_view>;

// What can stand at one place.
struct Place {
    Texts alternatives{};     // kinds such as TABLE, or words as they are
    std::string option{};     // of name=VALUE: the name with its '='
    std::string_view value{}; // what is written behind the '='; or else
    Texts choices{};          // which words can stand there
    bool optional = false;
    bool repeated = false;                          // any number of times
    bool (*goes_with)(const pd::Table &) = nullptr; // of an option for some tables only
};

struct Usage {
    std::vector<Place> places;
    // What can stand behind a lone colon, where that depends on its first word: "ACTION PARAMETERS" and the
    // like, as words.
    std::vector<Texts> bodies;

    void add(Texts alternatives) { places.push_back({std::move(alternatives)}); }
};

// "TABLE HANDLE|KEY [priority=N]"
std::string text_of(const Usage &usage);

bool has(const Place &place, std::string_view alternative);
// Whether a key of a table can stand here, in any number of words.
bool takes_key(const Place &place);
// Whether an alternative says what kind of word stands for it, as in TABLE.
bool is_kind(std::string_view alternative);

} // namespace shell
