// Commands that are several, told apart by their first word.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "words.h"

namespace shell {

template <typename Function>
struct Verb {
    std::string_view name;
    Function *run;
};

// Takes the next word, which names one of `verbs`.
template <typename Function>
Function *take_verb(Words &words, std::span<const Verb<Function>> verbs)
{
    const std::string_view word = words.peek();
    std::vector<std::string_view> names;
    for (const Verb<Function> &verb : verbs) {
        if (verb.name == word) {
            words.take();
            return verb.run;
        }
        names.push_back(verb.name);
    }
    refuse(word, {"word"}, names);
}

} // namespace shell
