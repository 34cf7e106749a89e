#include "complete.h"

#include <algorithm>
#include <cctype>
#include <set>

#include "commands.h"
#include "profiles.h"
#include "resources.h"
#include "services.h"
#include "shown.h"
#include "tables.h"

namespace shell {

namespace {

using Texts = std::vector<std::string_view>;
using Candidates = std::vector<std::string>;
using reflection::ProfileFunctions;

// ---- Usage texts ----------------------------------------------------------------------------------------

// What can stand at one place of a usage text.
struct Place {
    Texts alternatives;    // TABLE and the like for names, name=VALUE, else the word itself
    bool repeated = false; // any number of times
    bool optional = false;
};
using Usage = std::vector<Place>;

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
    place.repeated = token.ends_with("...");
    if (place.repeated)
        token.remove_suffix(3);
    place.alternatives = split(token, "|");
    return place;
}

bool has(const Place &place, std::string_view alternative)
{
    return std::ranges::find(place.alternatives, alternative) != place.alternatives.end();
}

Usage usage_of(std::string_view form)
{
    Usage usage;
    for (const std::string_view token : split(form, " "))
        usage.push_back(place_of(token));
    return usage;
}

// The forms of a command, which " | " keeps apart. Where one ends in "...", the lines of the help text that
// begin with a word of its first place tell more: forms with ", " between them, and two blanks behind.
std::vector<Usage> usages_of(const Command &command)
{
    std::vector<Usage> usages;
    for (const std::string_view form : split(command.usage, " | ")) {
        Usage usage = usage_of(form);
        if (!form.ends_with(" ...")) {
            usages.push_back(std::move(usage));
            continue;
        }
        usages.push_back({usage.front()});
        for (std::string_view line : split(command.text, "\n")) {
            line.remove_prefix(std::min(line.size(), line.find_first_not_of(' ')));
            for (const std::string_view more : split(line.substr(0, line.find("  ")), ", "))
                if (Usage told = usage_of(more);
                    !told.empty() && has(usage.front(), told.front().alternatives.front()))
                    usages.push_back(std::move(told));
        }
    }
    return usages;
}

bool takes_key(const Place &place)
{
    return has(place, "KEY") || has(place, "ENTRY");
}

bool is_kind(std::string_view alternative)
{
    return std::ranges::all_of(
        alternative, [](char c) { return std::isupper(static_cast<unsigned char>(c)) || c == '_'; });
}

// ---- Names ----------------------------------------------------------------------------------------------

template <typename Rows>
Texts names_of(const Rows &all)
{
    Texts names;
    for (const auto &functions : all)
        names.push_back(functions.row->name);
    return names;
}

constexpr struct {
    std::string_view kind;
    Texts (*names)();
} named_kinds[] = {
    {"TABLE", table_names},
    {"PROFILE", profile_names},
    {"ACTION", all_action_names},
    {"COMMAND", command_names},
    {"ENTRY", [] { return Texts{"default"}; }},
    {"CELL", [] { return Texts{"default"}; }},
    {"COUNTER", [] { return names_of(reflection::counters()); }},
    {"METER", [] { return names_of(reflection::meters()); }},
    {"REGISTER", [] { return names_of(reflection::registers()); }},
    {"DIGEST", [] { return names_of(reflection::digests()); }},
    {"SET", [] { return names_of(reflection::value_sets()); }},
    {"CALCULATION", [] { return names_of(reflection::hashes()); }},
};

Texts names_of_kind(std::string_view kind)
{
    const auto found = std::ranges::find(named_kinds, kind, [](const auto &named) { return named.kind; });
    return found == std::end(named_kinds) ? Texts{} : found->names();
}

// Whether `word` can stand for one of the alternatives.
bool fits(const Place &place, std::string_view word)
{
    return std::ranges::any_of(place.alternatives, [&](std::string_view alternative) {
        if (const std::size_t equals = alternative.find('='); equals != std::string_view::npos)
            return word.starts_with(alternative.substr(0, equals + 1));
        if (!is_kind(alternative) || alternative == "TABLE" || alternative == "PROFILE") {
            const Texts names = is_kind(alternative) ? names_of_kind(alternative) : Texts{alternative};
            return std::ranges::find(names, word) != names.end();
        }
        return true;
    });
}

// ---- The line -------------------------------------------------------------------------------------------

struct Line {
    Line(std::string_view text, const ObjectNames &names);

    bool given(std::string_view assigned) const; // "name="

    Texts words; // finished ones, behind the command
    std::string_view begun;
    const Command *command = nullptr;
    bool at_command = false;
    const reflection::TableFunctions *table = nullptr;
    const reflection::ProfileFunctions *profile = nullptr;
    std::size_t colon; // its place in `words`, or their number
    const ObjectNames &objects;
};

Line::Line(std::string_view text, const ObjectNames &names) : objects(names)
{
    for (Words left{text}; !left.empty();)
        words.push_back(left.take());
    if (!words.empty() && !is_blank(text.back())) {
        begun = words.back();
        words.pop_back();
    }
    at_command = words.empty();
    if (!at_command) {
        command = find_command(words.front());
        words.erase(words.begin());
    }
    for (const std::string_view word : words) {
        table = table ? table : reflection::find_table(word);
        profile = profile ? profile : reflection::find_profile(word);
    }
    colon = static_cast<std::size_t>(std::ranges::find(words, ":") - words.begin());
}

bool Line::given(std::string_view assigned) const
{
    return std::ranges::any_of(words, [&](std::string_view word) { return word.starts_with(assigned); });
}

// ---- Candidates -----------------------------------------------------------------------------------------

void add(Candidates &to, const Texts &names)
{
    to.insert(to.end(), names.begin(), names.end());
}

// "name=", unless it is there already.
void add_assigned(Candidates &to, const Line &line, std::string_view name)
{
    const std::string assigned = std::string{name} + '=';
    if (!line.given(assigned))
        to.push_back(assigned);
}

template <typename Row>
void add_fields(Candidates &to, const Line &line, const Row &row)
{
    for (const ShownField &field : shown_fields(row))
        add_assigned(to, line, field.name);
}

// Whether an option that commands take with some tables only goes with this one.
bool goes_with(const pd::Table &table, std::string_view option)
{
    return option == "priority" ? pd::has_priority(table)
           : option == "ttl"    ? table.ttl_on_add
           : option == "meter"  ? table.direct_meter != 0
           : option == "hash"   ? table.profile != nullptr
                                : true;
}

// The options of the form "name=value" in a usage.
void add_options(Candidates &to, const Line &line, const Usage &usage)
{
    for (const Place &place : usage)
        for (const std::string_view alternative : place.alternatives)
            if (const std::size_t equals = alternative.find('='); equals != std::string_view::npos)
                if (const std::string_view name = alternative.substr(0, equals);
                    goes_with(*line.table->row, name))
                    add_assigned(to, line, name);
}

// The members or groups that have a name.
void add_objects(Candidates &to, const Line &line, Kind kind)
{
    const ProfileFunctions *profile = line.profile                         ? line.profile
                                      : line.table && line.table->indirect ? line.table->indirect->profile
                                                                           : nullptr;
    if (profile && line.objects)
        for (const std::string &name : line.objects(*profile, kind))
            to.push_back(name);
}

void add_place(Candidates &to, const Line &line, const Place &place)
{
    for (const std::string_view alternative : place.alternatives) {
        if (const std::size_t equals = alternative.find('='); equals != std::string_view::npos)
            add_assigned(to, line, alternative.substr(0, equals));
        else if (alternative == "MEMBER" || alternative == "GROUP")
            add_objects(to, line, alternative == "MEMBER" ? Kind::member : Kind::group);
        else
            add(to, is_kind(alternative) ? names_of_kind(alternative) : Texts{alternative});
    }
    if (takes_key(place) && line.table)
        add_fields(to, line, *line.table->row);
}

bool is_assigned(std::string_view word)
{
    return word.find('=') != std::string_view::npos;
}

// The places where the next word can stand, if the words so far fit the usage. What may be left out is passed
// over; fields of a key and options come in any number.
std::set<std::size_t> next_places(const Line &line, const Usage &usage)
{
    std::set<std::size_t> places;
    const auto reach = [&](std::set<std::size_t> &to, std::size_t at) {
        to.insert(at);
        while (at < usage.size() && usage[at].optional)
            to.insert(++at);
    };
    reach(places, 0);
    for (const std::string_view word : line.words) {
        std::set<std::size_t> reached;
        for (const std::size_t at : places) {
            if (at >= usage.size() || !fits(usage[at], word))
                continue;
            if (usage[at].repeated || (takes_key(usage[at]) && is_assigned(word)))
                reach(reached, at);
            reach(reached, at + 1);
        }
        places = std::move(reached);
    }
    return places;
}

void add_next(Candidates &to, const Line &line, const Usage &usage)
{
    const bool behind_assigned = !line.words.empty() && is_assigned(line.words.back());
    for (const std::size_t at : next_places(line, usage)) {
        if (at >= usage.size())
            continue;
        add_place(to, line, usage[at]);
        if (takes_key(usage[at]) && line.table && behind_assigned)
            add_options(to, line, usage);
    }
}

void add_behind_colon(Candidates &to, const Line &line)
{
    if (line.table && line.table->indirect) {
        if (line.colon + 1 == line.words.size())
            add(to, {"member", "group"});
        else if (line.colon + 2 == line.words.size())
            add_objects(to, line, line.words.back() == "group" ? Kind::group : Kind::member);
        return;
    }
    const auto actions = line.table     ? line.table->row->actions
                         : line.profile ? line.profile->row->actions
                                        : std::span<const pd::Binding>{};
    for (const pd::Binding &binding : actions) {
        if (line.colon + 1 == line.words.size())
            to.push_back(binding.action->name);
        else if (line.words[line.colon + 1] == binding.action->name)
            add_fields(to, line, *binding.action);
    }
}

// What a usage has there beside actions, members and groups: words, one of which a key may follow.
void add_words_behind_colon(Candidates &to, const Line &line, const Usage &usage)
{
    const auto colon = std::ranges::find_if(usage, [](const Place &place) { return has(place, ":"); });
    for (auto at = colon; at != usage.end(); ++at)
        for (const std::string_view word : at->alternatives) {
            if (is_kind(word) || is_assigned(word) || word == ":" || word == "member" || word == "group")
                continue;
            if (line.colon + 1 == line.words.size())
                to.emplace_back(word);
            else if (line.table && line.words[line.colon + 1] == word && at + 1 != usage.end() &&
                     takes_key(at[1]))
                add_fields(to, line, *line.table->row);
        }
}

} // namespace

std::vector<std::string> complete(std::string_view text, const ObjectNames &names)
{
    const Line line{text, names};
    Candidates candidates;
    if (line.at_command) {
        add(candidates, command_names());
    } else if (line.command && line.begun.starts_with('-')) {
        add(candidates, {line.command->options.begin(), line.command->options.end()});
    } else if (line.command && line.colon < line.words.size() && (line.table || line.profile)) {
        add_behind_colon(candidates, line);
        for (const Usage &usage : usages_of(*line.command))
            add_words_behind_colon(candidates, line, usage);
    } else if (line.command) {
        for (const Usage &usage : usages_of(*line.command))
            add_next(candidates, line, usage);
    }
    std::erase_if(candidates, [&](const std::string &candidate) {
        const bool whole = candidate.ends_with('=') && candidate == line.begun;
        return whole || !candidate.starts_with(line.begun);
    });
    std::ranges::sort(candidates);
    candidates.erase(std::unique(candidates.begin(), candidates.end()), candidates.end());
    return candidates;
}

bool completes_a_file(std::string_view text)
{
    const Line line{text, {}};
    return line.command && line.words.empty() && line.command->usage.starts_with("FILE");
}

} // namespace shell
