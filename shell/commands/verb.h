// Commands as rows. A verb is a row: its arguments are types, each of which owns how it is read and what
// help, completion and manual say of it; its function gets the session and the values.
#pragma once

#include <span>
#include <string_view>
#include <tuple>

#include "reflection.h"
#include "usage.h"
#include "words.h"

namespace shell {

class Session;

// What is known while the arguments are read, from left to right.
struct Reading {
    Session &session;
    Words &words;
    const char *owner; // whom messages about name=value words name: the resource, before it the verb
    const reflection::ProfileFunctions *profile = nullptr;
    const reflection::TableFunctions *table = nullptr; // also that of a direct counter or meter
};

// Whether a verb changes what driver, model or session have.
enum class Effect {
    changes,
    reads,
    may_change, // its function tells when it does
};

struct Verb {
    using Function = void (*)(Session &session, Words &words, const char *name);

    const char *name;       // with the command's; that alone for what is done without a further word
    std::string_view brief; // one line
    Function run;
    Usage (*usage)(); // behind the name
    Effect effect = Effect::changes;
    bool revocable = false;   // a command takes the change back
    std::string_view clash{}; // why it is not for a process that others run; empty where it is
    bool is_list = false;     // prints one, which can be sorted and cut
    Function state = nullptr; // what it does while there is a plan; null where it tells no state

    // This row with another value in one column.
    template <typename Column>
    constexpr Verb with(Column Verb::*column, const Column &value) const
    {
        Verb verb = *this;
        verb.*column = value;
        return verb;
    }
    constexpr Verb reads() const { return with(&Verb::effect, Effect::reads); }
    constexpr Verb may_change() const { return with(&Verb::effect, Effect::may_change); }
    constexpr Verb can_be_taken_back() const { return with(&Verb::revocable, true); }
    constexpr Verb not_in_console(std::string_view why) const { return with(&Verb::clash, why); }
    constexpr Verb lists() const { return reads().with(&Verb::is_list, true); }
    constexpr Verb tells_state(Function function) const { return with(&Verb::state, function); }

    // The command's name, and the word behind it.
    std::string_view command() const { return std::string_view{name}.substr(0, blank()); }
    std::string_view word() const
    {
        return blank() == std::string_view::npos ? std::string_view{}
                                                 : std::string_view{name}.substr(blank() + 1);
    }

private:
    std::size_t blank() const { return std::string_view{name}.find(' '); }
};

struct Command {
    std::span<const Verb> verbs;
    std::string_view text = {};                     // what `help COMMAND` says behind them
    std::span<const std::string_view> options = {}; // words that begin with --, wherever they stand
    std::string_view topic = {};                    // what several verbs are about

    std::string_view name() const { return verbs.front().command(); }
    std::string_view brief() const { return topic.empty() ? verbs.front().brief : topic; }
};

template <auto function, typename... Arguments>
void read_and_run(Session &session, Words &words, const char *name)
{
    [[maybe_unused]] Reading reading{session, words, name};
    std::tuple<typename Arguments::Value...> values{Arguments::read(reading)...};
    words.expect_end();
    std::apply([&](auto &...value) { function(session, value...); }, values);
}

// The function in a file that tells a state, which may read its arguments otherwise.
template <auto function, typename... Arguments>
constexpr Verb::Function state = read_and_run<function, Arguments...>;

template <typename... Arguments>
Usage usage_of()
{
    Usage usage;
    (Arguments::describe(usage), ...);
    return usage;
}

template <auto function, typename... Arguments>
constexpr Verb verb(const char *name, std::string_view brief)
{
    return {name, brief, read_and_run<function, Arguments...>, usage_of<Arguments...>};
}

} // namespace shell
