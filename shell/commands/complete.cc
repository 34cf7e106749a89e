#include "complete.h"

#include <algorithm>
#include <set>

#include "commands.h"
#include "digest_form.h"
#include "profiles.h"
#include "resources.h"
#include "services.h"
#include "shown.h"
#include "tables.h"

namespace shell {

namespace {

using Candidates = std::vector<std::string>;
using reflection::ProfileFunctions;
using reflection::TableFunctions;

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
        if (!is_kind(alternative) || alternative == "TABLE" || alternative == "PROFILE") {
            const Texts names = is_kind(alternative) ? names_of_kind(alternative) : Texts{alternative};
            return std::ranges::find(names, word) != names.end();
        }
        return true;
    });
}

bool is_assigned(std::string_view word)
{
    return word.find('=') != std::string_view::npos;
}

// ---- The line -------------------------------------------------------------------------------------------

struct Line {
    Line(std::string_view text, const ObjectNames &names);

    Texts words; // finished ones, behind the command, without its --options
    std::string_view begun;
    const Command *command = nullptr;
    bool at_command = false;
    const TableFunctions *table = nullptr; // also that of a direct counter or meter
    const ProfileFunctions *profile = nullptr;
    const pd::Digest *digest = nullptr;
    const ObjectNames &objects;

private:
    void drop_option_words();
    void find_subject(std::string_view word);
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
    if (at_command)
        return;
    command = command_named(words.front());
    words.erase(words.begin());
    drop_option_words();
    for (const std::string_view word : words)
        find_subject(word);
}

// With the values behind them.
void Line::drop_option_words()
{
    Texts left;
    for (auto word = words.begin(); word != words.end(); ++word) {
        if (!word->starts_with("--"))
            left.push_back(*word);
        else if (const OptionWord *option = option_word(*word); option && !option->value.empty())
            if (++word == words.end())
                break;
    }
    words = std::move(left);
}

template <typename Rows>
auto row_named(const Rows &all, std::string_view name) -> decltype(all.front().row)
{
    const auto found = std::ranges::find(all, name, [](const auto &each) { return each.row->name; });
    return found == all.end() ? nullptr : found->row;
}

void Line::find_subject(std::string_view word)
{
    profile = profile ? profile : reflection::find_profile(word);
    digest = digest ? digest : row_named(reflection::digests(), word);
    if (table)
        return;
    if (const auto *counter = row_named(reflection::counters(), word))
        table = table_of(*counter);
    else if (const auto *meter = row_named(reflection::meters(), word))
        table = table_of(*meter);
    else
        table = reflection::find_table(word);
}

// ---- Candidates -----------------------------------------------------------------------------------------

void add(Candidates &to, const Texts &names)
{
    to.insert(to.end(), names.begin(), names.end());
}

// "name=", or that with each of the words that can stand behind it, unless it is there already.
void add_assigned(Candidates &to, const Texts &given, std::string_view assigned, const Texts &choices = {})
{
    if (std::ranges::any_of(given, [&](std::string_view word) { return word.starts_with(assigned); }))
        return;
    if (choices.empty())
        to.emplace_back(assigned);
    for (const std::string_view choice : choices)
        to.push_back(std::string{assigned} + std::string{choice});
}

// Fields or parameters that have not been given since the last colon.
void add_fields(Candidates &to, const Line &line, const std::vector<ShownField> &fields)
{
    const auto colon = std::find(line.words.rbegin(), line.words.rend(), ":");
    const Texts given(colon.base(), line.words.end());
    for (const ShownField &field : fields)
        add_assigned(to, given, std::string{field.name} + '=');
}

// Options come in any order.
void add_options(Candidates &to, const Line &line, const Usage &usage)
{
    for (const Place &place : usage.places)
        if (!place.option.empty() && (!line.table || !place.goes_with || place.goes_with(*line.table->row)))
            add_assigned(to, line.words, place.option, place.choices);
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

// The fields of the table's key, or another word for an entry of it.
void add_key(Candidates &to, const Line &line, const Place &place)
{
    const bool in_key = !line.words.empty() && is_assigned(line.words.back());
    const bool entry = has(place, "ENTRY") || has(place, "CELL");
    add_fields(to, line, shown_fields(*line.table->row));
    if (entry && !in_key)
        to.emplace_back("default");
    if (entry && in_key && pd::has_priority(*line.table->row))
        add_assigned(to, line.words, "priority=");
}

void add_place(Candidates &to, const Line &line, const Place &place)
{
    for (const std::string_view alternative : place.alternatives) {
        if (alternative == "MEMBER" || alternative == "GROUP")
            add_objects(to, line, alternative == "MEMBER" ? Kind::member : Kind::group);
        else if (alternative == "FIELDS" && line.digest)
            add_fields(to, line, DigestForm{*line.digest}.fields());
        else
            add(to, is_kind(alternative) ? names_of_kind(alternative) : Texts{alternative});
    }
    if (takes_key(place) && line.table)
        add_key(to, line, place);
}

// ---- Places ---------------------------------------------------------------------------------------------

using Places = std::set<std::size_t>;

// What may be left out is passed over.
void reach(Places &to, const Usage &usage, std::size_t at)
{
    to.insert(at);
    while (at < usage.places.size() && usage.places[at].optional)
        to.insert(++at);
}

bool is_option(const Usage &usage, std::string_view word)
{
    return std::ranges::any_of(usage.places, [&](const Place &place) {
        return !place.option.empty() && word.starts_with(place.option);
    });
}

// Where the next word can stand behind these, if they fit the usage. Fields of a key and options come in any
// number.
Places next_places(std::span<const std::string_view> words, const Usage &usage)
{
    Places places;
    reach(places, usage, 0);
    for (const std::string_view word : words) {
        Places reached;
        for (const std::size_t at : places) {
            if (is_option(usage, word))
                reached.insert(at);
            if (at >= usage.places.size() || !fits(usage.places[at], word))
                continue;
            if (usage.places[at].repeated || (takes_key(usage.places[at]) && is_assigned(word)))
                reach(reached, usage, at);
            reach(reached, usage, at + 1);
        }
        places = std::move(reached);
    }
    return places;
}

void add_next(Candidates &to, const Line &line, const Usage &usage)
{
    const bool behind_assigned = !line.words.empty() && is_assigned(line.words.back());
    for (const std::size_t at : next_places(line.words, usage)) {
        if (at >= usage.places.size())
            continue;
        const Place &place = usage.places[at];
        add_place(to, line, place);
        if (!place.option.empty() || (takes_key(place) && behind_assigned))
            add_options(to, line, usage);
        if (has(place, "FIELDS") && behind_assigned)
            to.emplace_back(":"); // another entry
    }
}

// ---- Behind the colon -----------------------------------------------------------------------------------

std::vector<const pd::Action *> actions_of(const Line &line)
{
    std::vector<const pd::Action *> actions;
    const bool of_default = line.command->name() == "default";
    const auto bindings = line.table     ? line.table->row->actions
                          : line.profile ? line.profile->row->actions
                                         : std::span<const pd::Binding>{};
    for (const pd::Binding &binding : bindings)
        if (!line.table || line.table->row->key.empty() ||
            (of_default ? binding.default_action : binding.entry))
            actions.push_back(binding.action);
    return actions;
}

// A word that begins a body.
void add_first(Candidates &to, const Line &line, const Texts &body)
{
    const bool reference = body.back() == "M" || body.back() == "G";
    if (body.front() == "ACTION")
        for (const pd::Action *action : actions_of(line))
            to.push_back(action->name);
    else if (!reference || line.table->indirect)
        to.emplace_back(body.front());
}

// A word behind the first one, if that is this body's. The options stand at the end of any.
void add_more(Candidates &to, const Line &line, const Usage &usage, const Texts &body,
              std::span<const std::string_view> behind)
{
    const pd::Action *action = nullptr;
    if (body.front() == "ACTION")
        for (const pd::Action *each : actions_of(line))
            action = each->name == behind.front() ? each : action;
    if (!action && body.front() != behind.front())
        return;
    if (action)
        add_fields(to, line, shown_fields(*action));
    else if (body.back() == "KEY")
        return add_fields(to, line, shown_fields(*line.table->row));
    else if (behind.size() < body.size())
        return add_objects(to, line, body.back() == "M" ? Kind::member : Kind::group);
    add_options(to, line, usage);
}

// False when there is no colon that such a body follows.
bool add_body(Candidates &to, const Line &line, const Usage &usage)
{
    const auto colon = std::ranges::find(line.words, ":");
    if (usage.bodies.empty() || colon == line.words.end() || !(line.table || line.profile))
        return false;
    const std::span<const std::string_view> head(line.words.begin(), colon),
        behind(colon + 1, line.words.end());
    const Places at = next_places(head, usage);
    if (std::ranges::none_of(at, [&](std::size_t place) {
            return place < usage.places.size() && has(usage.places[place], ":");
        }))
        return false;
    for (const Texts &body : usage.bodies)
        if (behind.empty())
            add_first(to, line, body);
        else
            add_more(to, line, usage, body, behind);
    return true;
}

Usage usage_behind_command(const Verb &verb)
{
    Usage usage = verb.usage();
    if (!verb.word().empty())
        usage.places.insert(usage.places.begin(), Place{.alternatives = {verb.word()}});
    return usage;
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
    } else if (line.command) {
        for (const Verb &verb : line.command->verbs) {
            const Usage usage = usage_behind_command(verb);
            if (!add_body(candidates, line, usage))
                add_next(candidates, line, usage);
        }
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
    if (!line.command || !line.words.empty())
        return false;
    const Usage usage = line.command->verbs.front().usage();
    return !usage.places.empty() && has(usage.places.front(), "FILE");
}

} // namespace shell
