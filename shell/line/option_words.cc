#include "option_words.h"

#include <algorithm>

#include "values.h"

namespace shell {

namespace {

constexpr OptionWord all_words[] = {
    {"--json", {}, [](OptionWords &to, std::string_view) { to.json = true; }},
    {"--hw", {}, [](OptionWords &to, std::string_view) { to.from_hardware = true; }},
    {"--all-bits", {}, [](OptionWords &to, std::string_view) { to.all_bits = true; }},
    {"--atomic", {}, [](OptionWords &to, std::string_view) { to.atomic = true; }},
    {"--replace", {}, [](OptionWords &to, std::string_view) { to.replace = true; }},
    {"--sort", "COLUMN",
     [](OptionWords &to, std::string_view value) {
         to.sort = {std::string{value}, value};
     },
     true},
    {"--limit", "N",
     [](OptionWords &to, std::string_view value) { to.limit = parse_u32(value, ~u32{0}, "number of lines"); },
     true},
    {"--columns", "NAME,...",
     [](OptionWords &to, std::string_view value) {
         to.columns = {std::string{value}, value};
     },
     true},
};

void blank_out(std::string &line, std::string_view word)
{
    const auto begin = static_cast<std::size_t>(word.data() - line.data());
    std::fill_n(line.begin() + static_cast<std::ptrdiff_t>(begin), word.size(), ' ');
}

} // namespace

const OptionWord *option_word(std::string_view name)
{
    const auto found = std::ranges::find(all_words, name, &OptionWord::name);
    return found == std::end(all_words) ? nullptr : found;
}

void take_option_words(OptionWords &to, Words words, std::string &line, std::string_view command,
                       std::span<const std::string_view> options)
{
    std::string_view unknown;
    while (!words.empty()) {
        const std::string_view word = words.take();
        if (!word.starts_with("--"))
            continue;
        const std::string_view name = word.substr(0, word.find('='));
        const OptionWord *const option =
            std::ranges::find(options, name) == options.end() ? nullptr : option_word(name);
        if (!option || (name != word && option->value.empty())) {
            unknown = unknown.empty() ? word : unknown;
            continue;
        }
        std::string_view value;
        if (!option->value.empty())
            value = name == word ? words.take(option->value) : word.substr(name.size() + 1);
        option->take(to, value);
        if (option->is_of_list)
            to.of_list = {std::string{name}, name};
        blank_out(line, word);
        if (name == word && !value.empty())
            blank_out(line, value);
    }
    if (!unknown.empty())
        refuse(unknown, {"option", command}, {options.begin(), options.end()});
}

} // namespace shell
