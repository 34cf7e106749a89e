#include "usage.h"

#include <algorithm>
#include <cctype>
#include <iterator>

namespace shell {

namespace {

Texts split(std::string_view text, std::string_view separator)
{
    Texts parts;
    for (std::size_t end = 0; end != std::string_view::npos;) {
        end = text.find(separator);
        if (end != 0 && !text.empty())
            parts.push_back(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + separator.size());
    }
    return parts;
}

Place place_of(std::string_view token)
{
    Place place;
    place.optional = token.starts_with('[');
    while (token.starts_with('['))
        token.remove_prefix(1);
    while (token.ends_with(']'))
        token.remove_suffix(1);
    place.repeated = token.ends_with("...") || token == "FIELDS";
    if (token.ends_with("..."))
        token.remove_suffix(3);
    const std::size_t equals = token.find('=');
    if (equals == std::string_view::npos) {
        place.alternatives = split(token, "|");
    } else if (!is_kind(token)) {
        place.option = token.substr(0, equals + 1);
        const Texts choices = split(token.substr(equals + 1), "|");
        std::ranges::remove_copy_if(choices, std::back_inserter(place.choices), is_kind);
    } else {
        place.alternatives = {token};
    }
    return place;
}

// What stands between the colon and the first option, if it begins with an action.
std::string_view bodies_of(std::string_view form)
{
    const std::size_t begin = form.find(": ACTION");
    if (begin == std::string_view::npos)
        return form.substr(form.size());
    form.remove_prefix(begin + 2);
    return form.substr(0, form.find(" ["));
}

Usage usage_of(std::string_view form)
{
    Usage usage;
    const std::string_view bodies = bodies_of(form);
    for (const std::string_view body : split(bodies, "|"))
        usage.bodies.push_back(split(body, " "));
    for (const std::string_view token : split(form, " "))
        if (token.data() < bodies.data() || token.data() >= bodies.data() + bodies.size())
            usage.places.push_back(place_of(token));
    return usage;
}

} // namespace

// Forms have " | " between them.
std::vector<Usage> usages_of(const Command &command)
{
    std::vector<Usage> usages;
    if (!command.verbs)
        for (const std::string_view form : split(command.usage, " | "))
            usages.push_back(usage_of(form));
    else
        for (const Verb &verb : command.verbs()) {
            Usage usage = usage_of(verb.arguments());
            if (const std::string_view word = verb.word(); !word.empty())
                usage.places.insert(usage.places.begin(), place_of(word));
            usages.push_back(std::move(usage));
        }
    return usages;
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
