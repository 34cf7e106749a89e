// Commands of several verbs. A verb is one row: its arguments are types, each of which owns how it is read
// and how help, completion and manual write it; its function gets the session and the values.
#pragma once

#include <string>
#include <string_view>
#include <tuple>

#include "reflection.h"
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

struct Verb {
    const char *name;       // with the command's; that alone for what is done without a further word
    std::string_view brief; // one line
    void (*run)(Session &session, Words &words, const char *name);
    std::string_view (*arguments)(); // as help writes them

    // The word behind the command's name.
    std::string_view word() const
    {
        const std::string_view whole{name};
        const std::size_t blank = whole.find(' ');
        return blank == std::string_view::npos ? std::string_view{} : whole.substr(blank + 1);
    }
};

template <auto function, typename... Arguments>
void read_and_run(Session &session, Words &words, const char *name)
{
    [[maybe_unused]] Reading reading{session, words, name};
    std::tuple<typename Arguments::Value...> values{Arguments::read(reading)...};
    words.expect_end();
    std::apply([&](auto &...value) { function(session, value...); }, values);
}

template <typename... Arguments>
std::string_view forms_of()
{
    static const std::string forms = [] {
        std::string text;
        ((text += ' ', text += Arguments::form()), ...);
        return text.substr(text.empty() ? 0 : 1);
    }();
    return forms;
}

template <auto function, typename... Arguments>
constexpr Verb verb(const char *name, std::string_view brief)
{
    return {name, brief, read_and_run<function, Arguments...>, forms_of<Arguments...>};
}

} // namespace shell
