#include "usage.h"

#include <algorithm>
#include <cctype>

namespace shell {

namespace {

std::string joined(const Texts &texts, char separator)
{
    std::string all;
    for (const std::string_view text : texts) {
        if (!all.empty())
            all += separator;
        all += text;
    }
    return all;
}

std::string text_of(const Place &place, const std::vector<Texts> &bodies)
{
    std::string text = joined(place.alternatives, '|');
    if (!place.option.empty())
        text = place.option + (place.choices.empty() ? std::string{place.value} : joined(place.choices, '|'));
    if (text == ":")
        for (const Texts &body : bodies)
            text += (text == ":" ? ' ' : '|') + joined(body, ' ');
    if (place.optional)
        text = '[' + text + ']';
    return place.repeated ? text + "..." : text;
}

} // namespace

std::string text_of(const Usage &usage)
{
    std::string text;
    for (const Place &place : usage.places) {
        text += text.empty() ? "" : " ";
        text += text_of(place, usage.bodies);
    }
    return text;
}

bool has(const Place &place, std::string_view alternative)
{
    return std::ranges::find(place.alternatives, alternative) != place.alternatives.end();
}

bool takes_key(const Place &place)
{
    return has(place, "KEY") || has(place, "ENTRY") || has(place, "CELL");
}

bool is_kind(std::string_view alternative)
{
    return std::isupper(static_cast<unsigned char>(alternative.front())) != 0;
}

} // namespace shell
