// Counters, meters, registers, digests, value sets and hash calculations as words name them.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "words.h"

namespace shell {

// Takes the next word, which names the row of one of `all`. `kind` says of what, as in "counter".
template <typename Functions>
const Functions &take_named(Words &words, std::span<const Functions> all, std::string_view kind)
{
    const std::string_view name = words.take();
    std::vector<std::string_view> names;
    for (const Functions &functions : all) {
        if (name == functions.row->name)
            return functions;
        names.push_back(functions.row->name);
    }
    refuse(name, {kind}, names);
}

} // namespace shell
