// A command line as words with their places, and the one kind of error that a line can make. Words are views
// into the line's text, so that the place of any part of a word is known without being carried along.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace shell {

// Thrown for a line that cannot be carried out. `where` lies within the line's text: the offending part of
// it, or the place where something is missing. Without a place the whole line is meant.
struct BadLine {
    std::string_view where;
    std::string what;
};

// The words of a line that have not been taken yet.
class Words {
public:
    explicit Words(std::string_view text);

    bool empty() const { return text_.empty(); }
    // The next word; at the end of the line an empty one, which is still a place.
    std::string_view peek() const;
    std::string_view take();
    // As take(), with "missing <what>" at the end of the line.
    std::string_view take(std::string_view what);
    // The next `count` letters as a word, whatever they are.
    std::string_view take_letters(std::size_t count);
    // All that is left, as it was written.
    std::string_view rest() const { return text_; }
    void expect_end() const;

private:
    std::string_view text_;
};

// A word of the form name=value.
struct Assignment {
    std::string_view name, value;
};
Assignment take_assignment(Words &words);

// The next word, which is "on" or "off".
bool take_on_off(Words &words);

bool is_blank(char c);

// `word` between quotation marks for a message: control characters and what is no UTF-8
// escaped, cut when long.
std::string quoted(std::string_view word);

// "a, b, c"
template <typename Names>
std::string listed(const Names &names)
{
    std::string text;
    for (const auto &name : names) {
        if (!text.empty())
            text += ", ";
        text += name;
    }
    return text;
}

// Where a word is looked up that is none of its names.
struct Choice {
    std::string_view kind;        // what the names are names of, as in "counter"
    std::string_view owner = {};  // whose they are, if that is not everybody's
    std::string_view lister = {}; // the command that lists them, where they are too many for a message
};

// Throws what is said of every wrong word, or of one that is missing.
[[noreturn]] void refuse(std::string_view word, const Choice &choice,
                         const std::vector<std::string_view> &names);

// Which of `names` the word is; refused if it is none.
unsigned choose(std::string_view word, const Choice &choice, std::span<const std::string_view> names);

} // namespace shell
