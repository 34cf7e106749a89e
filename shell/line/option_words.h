// The option words: they begin with -- and stand anywhere behind a command's name.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "pd_types.h"
#include "words.h"

namespace shell {

// What those of one line ask for.
struct OptionWords {
    struct Text {
        std::string text;
        std::string_view place; // in the line
    };

    bool json = false;
    bool from_hardware = false;
    bool all_bits = false;
    bool atomic = false;
    bool replace = false;
    Text sort; // the name of a column, behind - from the highest on
    std::optional<u64> limit;
    Text columns; // with commas between them
    Text of_list; // the last of the words that are for lists only
};

struct OptionWord {
    std::string_view name;
    std::string_view value; // behind it, as help writes that; empty for none
    void (*take)(OptionWords &to, std::string_view value);
    bool is_of_list = false;
};

// Null for none of them.
const OptionWord *option_word(std::string_view name);

// Takes the option words out of `words`, which are part of `line`: blanks stand in their place, so that every
// other word keeps its own. `options` are those that `command` takes. BadLine when all are taken but for one
// that is none.
void take_option_words(OptionWords &to, Words words, std::string &line, std::string_view command,
                       std::span<const std::string_view> options);

} // namespace shell
