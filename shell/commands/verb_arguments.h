// The arguments that verbs share. A type has `Value`, what is read; `read`, which takes it from the line or
// throws BadLine; and `describe`, which says what can stand there.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "entry_body.h"
#include "entry_key.h"
#include "file_name.h"
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
    static void describe(Usage &usage)
    {
        const std::size_t before = usage.places.size();
        Argument::describe(usage);
        for (std::size_t at = before; at < usage.places.size(); ++at)
            usage.places[at].optional = true;
    }
    static Value read(Reading &reading)
    {
        return reading.words.empty() ? Value{} : Value{Argument::read(reading)};
    }
};

// To the end of the line.
template <typename Argument>
struct Several {
    using Value = std::vector<typename Argument::Value>;
    static void describe(Usage &usage)
    {
        Argument::describe(usage);
        usage.places.back().repeated = true;
    }
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
    static void describe(Usage &usage) { Optional<Several<Argument>>::describe(usage); }
    static Value read(Reading &reading)
    {
        return reading.words.empty() ? Value{} : Several<Argument>::read(reading);
    }
};

// ---- Plain words ----------------------------------------------------------------------------------------

template <Text written, Text what, u32 most = ~u32{0}>
struct Number {
    using Value = u32;
    static void describe(Usage &usage) { usage.add({written}); }
    static Value read(Reading &reading) { return parse_u32(reading.words.take(what), most, what); }
};

// One of `names`, as its place among them.
template <Text kind, const auto &names>
struct Choice {
    using Value = unsigned;
    static void describe(Usage &usage) { usage.add({std::begin(names), std::end(names)}); }
    static Value read(Reading &reading) { return choose(reading.words.take(), {kind}, names); }
};

// Any word.
template <Text written>
struct Word {
    using Value = std::string_view;
    static void describe(Usage &usage) { usage.add({written}); }
    static Value read(Reading &reading) { return reading.words.take(); }
};

struct OnOff {
    using Value = bool;
    static void describe(Usage &usage) { usage.add({"on", "off"}); }
    static Value read(Reading &reading) { return take_on_off(reading.words); }
};

struct File {
    using Value = FileName;
    static void describe(Usage &usage) { usage.add({"FILE"}); }
    static Value read(Reading &reading) { return take_file_name(reading.words); }
};

// The rest of the line as it stands.
template <Text written>
struct Rest {
    using Value = std::string_view;
    static void describe(Usage &usage) { usage.add({written}); }
    static Value read(Reading &reading)
    {
        const std::string_view text = reading.words.rest();
        reading.words.take_letters(text.size());
        return text;
    }
};

// The name=value words at the end of a verb, in the order of `settings`.
template <const auto &settings>
struct Settings {
    using Value = std::vector<u64>;
    static void describe(Usage &usage)
    {
        for (const Setting &setting : settings)
            usage.places.push_back(place_of(setting));
    }
    static Value read(Reading &reading) { return take_settings(reading.words, reading.owner, settings); }
};

// Likewise behind a colon, before which `what` may be missing.
template <const auto &settings, Text what>
struct SettingsBehindColon {
    using Value = std::vector<u64>;
    static void describe(Usage &usage)
    {
        usage.add({":"});
        Settings<settings>::describe(usage);
    }
    static Value read(Reading &reading)
    {
        take_colon(reading.words, what);
        return Settings<settings>::read(reading);
    }
};

// ---- What the switch program has ------------------------------------------------------------------------

template <auto take>
struct TableTakenBy {
    using Value = const reflection::TableFunctions &;
    static void describe(Usage &usage) { usage.add({"TABLE"}); }
    static Value read(Reading &reading)
    {
        reading.table = &take(reading.words);
        reading.owner = reading.table->row->name;
        return *reading.table;
    }
};
using Table = TableTakenBy<take_table>;
using KeyedTable = TableTakenBy<take_keyed_table>;

struct Profile {
    using Value = const reflection::ProfileFunctions &;
    static void describe(Usage &usage) { usage.add({"PROFILE"}); }
    static Value read(Reading &reading)
    {
        reading.profile = &take_profile(reading.words);
        return *reading.profile;
    }
};

struct TableOrProfile {
    struct Value {
        const reflection::TableFunctions *table;
        const reflection::ProfileFunctions *profile; // or else
    };
    static void describe(Usage &usage) { usage.add({"TABLE", "PROFILE"}); }
    static Value read(Reading &reading)
    {
        reading.profile = take_profile_unless_table(reading.words);
        if (!reading.profile)
            Table::read(reading);
        return {reading.table, reading.profile};
    }
};

template <auto rows, Text written, Text kind>
struct Named {
    using Value = decltype(*rows().begin());
    static void describe(Usage &usage) { usage.add({written}); }
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

// ---- What tables and profiles hold ----------------------------------------------------------------------

// A cell of the counter or meter before it, an entry of the table before it.
template <Text... written>
struct CellWrittenAs {
    using Value = shell::Cell;
    static void describe(Usage &usage) { usage.add({written...}); }
    static Value read(Reading &reading)
    {
        Options none;
        return {reading.words, reading.owner, reading.table, none};
    }
};
using Cell = CellWrittenAs<"CELL">;
using Entry = CellWrittenAs<"ENTRY">;
using HandleOrKey = CellWrittenAs<"HANDLE", "KEY">;

// A member or group of the profile before it.
template <Kind kind>
struct Held {
    using Value = u32;
    static void describe(Usage &usage) { usage.add({kind == Kind::member ? "MEMBER" : "GROUP"}); }
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
    static void describe(Usage &usage)
    {
        usage.add({"NAME"});
        usage.places.back().optional = true;
    }
    static Value read(Reading &reading)
    {
        return take_new_name(reading.words, reading.session.names(*reading.profile).of(kind));
    }
};

// Of one that there may be.
template <Kind kind>
struct Name {
    using Value = std::string_view;
    static void describe(Usage &usage) { usage.add({"NAME"}); }
    static Value read(Reading &reading)
    {
        const std::string_view place = reading.words.peek(), name = take_name(reading.words);
        if (name.empty())
            throw BadLine{place,
                          std::string{"missing name: a state tells of each "} + kind_name(kind) + " by name"};
        return name;
    }
};

} // namespace shell::arg
