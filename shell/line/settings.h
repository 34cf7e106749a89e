// The name=value words of a command that fill no record of the library.
#pragma once

#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "pd_types.h"
#include "usage.h"
#include "words.h"

namespace shell {

struct Setting {
    std::string_view name;
    unsigned width = 32;           // bits
    std::optional<u64> usual = {}; // what it is when it is left out; without one it must be given
    std::span<const std::string_view> choices =
        {}; // words that stand for 0, 1 and so on, in place of numbers
};

Place place_of(const Setting &setting);
// The sentence of a result that has a value for each: "rate={rate} burst={burst}".
std::string sentence_of(std::span<const Setting> settings);

// Takes the rest of the command. The values come in the order of `settings`. `owner` is what messages name.
std::vector<u64> take_settings(Words &words, std::string_view owner, std::span<const Setting> settings);

} // namespace shell
