#include "settings.h"

#include <algorithm>
#include <string>

#include "values.h"

namespace shell {

namespace {

std::vector<std::string_view> names_of(std::span<const Setting> settings)
{
    std::vector<std::string_view> names;
    for (const Setting &setting : settings)
        names.push_back(setting.name);
    return names;
}

u64 parse(std::string_view text, const Setting &setting)
{
    if (!setting.choices.empty())
        return choose(text, {setting.name}, setting.choices);
    if (setting.width > 32)
        return parse_value(text, setting.width, setting.name).low;
    return parse_u32(text, static_cast<u32>(ones(setting.width).low), setting.name);
}

} // namespace

Place place_of(const Setting &setting)
{
    Place place{.option = std::string{setting.name} + '=', .value = "N"};
    place.choices.assign(setting.choices.begin(), setting.choices.end());
    place.optional = setting.usual.has_value();
    return place;
}

std::string sentence_of(std::span<const Setting> settings)
{
    std::string sentence;
    for (const Setting &setting : settings) {
        sentence += sentence.empty() ? "" : " ";
        sentence.append(setting.name).append("={").append(setting.name).append("}");
    }
    return sentence;
}

std::vector<u64> take_settings(Words &words, std::string_view owner, std::span<const Setting> settings)
{
    std::vector<std::optional<u64>> given(settings.size());
    while (!words.empty()) {
        const auto [name, text] = take_assignment(words);
        const auto setting = std::ranges::find(settings, name, &Setting::name);
        if (setting == settings.end())
            refuse(name, {"name", owner}, names_of(settings));
        std::optional<u64> &value = given[static_cast<std::size_t>(setting - settings.begin())];
        if (value)
            throw BadLine{name, std::string{name} + " is given twice"};
        value = parse(text, *setting);
    }
    std::vector<u64> values;
    for (std::size_t i = 0; i < settings.size(); ++i) {
        if (!given[i] && !settings[i].usual)
            throw BadLine{words.rest(), "missing " + std::string{settings[i].name} + "=N: " +
                                            std::string{owner} + " has " + listed(names_of(settings))};
        values.push_back(given[i] ? *given[i] : *settings[i].usual);
    }
    return values;
}

} // namespace shell
