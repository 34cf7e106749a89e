// The arguments that verbs share. A type has `Value`, what is read; `read`, which takes it from the line or
// throws BadLine; and `form`, as it is written in help.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "entry_key.h"
#include "named.h"
#include "profiles.h"
#include "resources.h"
#include "services.h"
#include "session.h"
#include "settings.h"
#include "tables.h"
#include "values.h"
#include "verb.h"

namespace shell::arg {

// A text as a parameter of a template.
template <std::size_t size>
struct Text {
    char letters[size]{};

    constexpr Text(const char (&text)[size])
    {
        for (std::size_t i = 0; i < size; ++i)
            letters[i] = text[i];
    }
    constexpr operator std::string_view() const { return {letters, size - 1}; }
};

// ---- How often ------------------------------------------------------------------------------------------

template <typename Argument>
struct Optional {
    using Value = std::optional<typename Argument::Value>;
    static std::string form() { return '[' + Argument::form() + ']'; }
    static Value read(Reading &reading)
    {
        return reading.words.empty() ? Value{} : Value{Argument::read(reading)};
    }
};

// To the end of the line.
template <typename Argument>
struct Several {
    using Value = std::vector<typename Argument::Value>;
    static std::string form() { return Argument::form() + "..."; }
    static Value read(Reading &reading)
    {
        Value values;
        do
            values.push_back(Argument::read(reading));
        while (!reading.words.empty());
        return values;
    }
};

// As several, or none.
template <typename Argument>
struct Any {
    using Value = std::vector<typename Argument::Value>;
    static std::string form() { return '[' + Argument::form() + "]..."; }
    static Value read(Reading &reading)
    {
        return reading.words.empty() ? Value{} : Several<Argument>::read(reading);
    }
};

// ---- Plain words ----------------------------------------------------------------------------------------

template <Text written, Text what, u32 most = ~u32{0}>
struct Number {
    using Value = u32;
    static std::string form() { return std::string{written}; }
    static Value read(Reading &reading) { return parse_u32(reading.words.take(what), most, what); }
};

// One of `names`, as its place among them.
template <Text kind, const auto &names>
struct Choice {
    using Value = unsigned;
    static std::string form()
    {
        std::string text;
        for (const std::string_view name : names) {
            text += text.empty() ? "" : "|";
            text += name;
        }
        return text;
    }
    static Value read(Reading &reading) { return choose(reading.words.take(), {kind}, names); }
};

// The name=value words at the end of a verb, in the order of `settings`.
template <const auto &settings>
struct Settings {
    using Value = std::vector<u64>;
    static std::string form()
    {
        std::string text;
        for (const Setting &setting : settings) {
            text += text.empty() ? "" : " ";
            text += form_of(setting);
        }
        return text;
    }
    static Value read(Reading &reading) { return take_settings(reading.words, reading.owner, settings); }
};

// ---- What the switch program has ------------------------------------------------------------------------

template <auto rows, Text written, Text kind>
struct Named {
    using Value = decltype(*rows().begin());
    static std::string form() { return std::string{written}; }
    static Value read(Reading &reading)
    {
        Value functions = take_named(reading.words, rows(), kind);
        reading.owner = functions.row->name;
        if constexpr (requires { table_of(*functions.row); })
            reading.table = table_of(*functions.row);
        return functions;
    }
};

using Counter = Named<reflection::counters, "COUNTER", "counter">;
using Meter = Named<reflection::meters, "METER", "meter">;
using Register = Named<reflection::registers, "REGISTER", "register">;
using Digest = Named<reflection::digests, "DIGEST", "digest">;
using ValueSet = Named<reflection::value_sets, "SET", "value set">;
using Calculation = Named<reflection::hashes, "CALCULATION", "hash calculation">;

struct Profile {
    using Value = const reflection::ProfileFunctions &;
    static std::string form() { return "PROFILE"; }
    static Value read(Reading &reading)
    {
        reading.profile = &take_profile(reading.words);
        return *reading.profile;
    }
};

// ---- What tables and profiles hold ----------------------------------------------------------------------

// A cell of the counter or meter before it.
struct Cell {
    using Value = shell::Cell;
    static std::string form() { return "CELL"; }
    static Value read(Reading &reading)
    {
        Options none;
        return {reading.words, reading.owner, reading.table, none};
    }
};

// A member or group of the profile before it.
template <Kind kind>
struct Held {
    using Value = u32;
    static std::string form() { return kind == Kind::member ? "MEMBER" : "GROUP"; }
    static Value read(Reading &reading)
    {
        return take_object(reading.words, *reading.profile, reading.session.names(*reading.profile).of(kind));
    }
};
using Member = Held<Kind::member>;
using Group = Held<Kind::group>;

// The name for a new one; empty when none is given.
template <Kind kind>
struct NewName {
    using Value = std::string_view;
    static std::string form() { return "[NAME]"; }
    static Value read(Reading &reading)
    {
        return take_new_name(reading.words, reading.session.names(*reading.profile).of(kind));
    }
};

} // namespace shell::arg
