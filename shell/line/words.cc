#include "words.h"

#include <algorithm>
#include <cctype>
#include <numeric>
#include <utility>

#include "utf8.h"

namespace shell {

namespace {

constexpr std::string_view blanks = " \t\n\r\v\f";
constexpr std::size_t longest_quotation = 60;

std::string_view without_leading_blanks(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(blanks);
    return text.substr(std::min(first, text.size()));
}

std::string lower(std::string_view text)
{
    std::string result{text};
    for (char &c : result)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return result;
}

// How many letters must be changed, inserted, left out or exchanged with their neighbour to make one of the
// other.
std::size_t edit_distance(std::string_view a, std::string_view b)
{
    std::vector<std::size_t> before_last(b.size() + 1), last = before_last, row = before_last;
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        before_last.swap(last);
        last.swap(row);
        row[0] = i + 1;
        for (std::size_t j = 0; j < b.size(); ++j) {
            row[j + 1] = std::min({last[j] + (a[i] != b[j]), row[j] + 1, last[j + 1] + 1});
            if (i > 0 && j > 0 && a[i] == b[j - 1] && a[i - 1] == b[j])
                row[j + 1] = std::min(row[j + 1], before_last[j - 1] + 1);
        }
    }
    return row.back();
}

// ": did you mean a, b?" with the names nearest to `wrong`; empty when none is near.
std::string suggestion(std::string_view wrong, const std::vector<std::string_view> &names)
{
    constexpr std::size_t most = 3;
    const std::string word = lower(wrong.substr(0, longest_quotation));
    const std::size_t limit = std::max<std::size_t>(1, word.size() / 4);
    std::vector<std::pair<std::size_t, std::string_view>> near;
    for (const std::string_view name : names) {
        const std::string candidate = lower(name);
        const bool contained = word.size() >= 3 && candidate.find(word) != std::string::npos;
        const std::size_t longer = std::max(word.size(), candidate.size()),
                          shorter = std::min(word.size(), candidate.size());
        if (!contained && longer - shorter > limit)
            continue; // the distance would be as much
        const std::size_t distance = edit_distance(word, candidate);
        const bool alike = distance < candidate.size(); // '?' is not near to every letter
        if (contained || (alike && distance <= limit))
            near.emplace_back(distance, name);
    }
    if (near.empty())
        return {};
    std::sort(near.begin(), near.end());
    near.resize(std::min(near.size(), most));
    std::vector<std::string_view> best;
    for (const auto &[distance, name] : near)
        best.push_back(name);
    return ": did you mean " + listed(best) + "?";
}

} // namespace

bool is_blank(char c)
{
    return blanks.find(c) != std::string_view::npos;
}

Words::Words(std::string_view text) : text_(without_leading_blanks(text)) {}

std::string_view Words::peek() const
{
    return text_.substr(0, text_.find_first_of(blanks));
}

std::string_view Words::take()
{
    return take_letters(peek().size());
}

std::string_view Words::take_letters(std::size_t count)
{
    const std::string_view word = text_.substr(0, count);
    text_ = without_leading_blanks(text_.substr(count));
    return word;
}

std::string_view Words::take(std::string_view what)
{
    if (empty())
        throw BadLine{text_, "missing " + std::string{what}};
    return take();
}

void Words::expect_end() const
{
    if (!empty())
        throw BadLine{peek(), "unexpected " + quoted(peek()) + ": the command ends before it"};
}

Assignment take_assignment(Words &words)
{
    const std::string_view word = words.take();
    const std::size_t equals = word.find('=');
    if (equals == std::string_view::npos)
        throw BadLine{word,
                      quoted(word) + " is not of the form name=value (a lone ':' goes before an action)"};
    return {word.substr(0, equals), word.substr(equals + 1)};
}

bool take_on_off(Words &words)
{
    static constexpr std::string_view states[] = {"on", "off"};
    return choose(words.take(), {"state"}, states) == 0;
}

std::string quoted(std::string_view word)
{
    static constexpr char digits[] = "0123456789abcdef";
    std::string text = "'";
    std::string_view left = word;
    while (!left.empty() && word.size() - left.size() < longest_quotation) {
        const auto byte = static_cast<unsigned char>(left.front());
        const std::size_t length = utf8_length(left);
        if (length == 0 || byte < 0x20 || byte == 0x7f)
            text += {'\\', 'x', digits[byte >> 4], digits[byte & 0xf]};
        else
            text += left.substr(0, length);
        left.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return text + (left.empty() ? "'" : "...'");
}

void refuse(std::string_view word, const Choice &choice, const std::vector<std::string_view> &names)
{
    constexpr std::size_t most = 50;
    std::string text = word.empty() ? "missing " : "unknown ";
    text += choice.kind;
    if (!word.empty())
        text += ' ' + quoted(word);
    if (names.size() > most || !choice.lister.empty()) {
        text += suggestion(word, names);
        if (!choice.lister.empty())
            text += "; " + std::string{choice.lister} + " lists them";
    } else {
        text += ": " + (choice.owner.empty() ? "there are" : std::string{choice.owner} + " has") + ' ' +
                (names.empty() ? "none" : listed(names));
    }
    throw BadLine{word, text};
}

unsigned choose(std::string_view word, const Choice &choice, std::span<const std::string_view> names)
{
    const auto found = std::ranges::find(names, word);
    if (found == names.end())
        refuse(word, choice, {names.begin(), names.end()});
    return static_cast<unsigned>(found - names.begin());
}

} // namespace shell
