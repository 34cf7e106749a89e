// What the browse page makes the functions from, as JSON: each family once, with its texts as its row has
// them, and for every object the words that stand in them.
#pragma once

#include <map>
#include <string>

#include "functions_view.h"

namespace pdgen {

// {"arguments": {ID: ...}, "sections": [...]}; what is empty or false is left out.
std::string families_json(const FunctionRows &rows);

class ObjectWords {
public:
    // The object of a kind, with all that belongs to it by kind. A word of the owner's or of an action's own
    // is not said again.
    void add(const View &owner, const std::vector<ObjectPart> &parts);

    // {KIND: [{WORD: VALUE, ..., KIND: [...]}, ...]}
    std::string json() const;

private:
    std::map<std::string, std::string> objects; // by kind
};

} // namespace pdgen
