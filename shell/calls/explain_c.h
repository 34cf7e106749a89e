// Recorded driver calls as a C program that makes them through the library.
#pragma once

#include <map>
#include <set>
#include <string>

#include "arguments.h"
#include "reflection.h"

namespace shell {

// Goes over the calls of one record in their order. What makes an entry, member or group puts its handle into
// a variable, named by the table and the handle of the record; what the record has not seen come keeps its
// handle.
class CProgram {
public:
    // What stands before all calls and behind them.
    static const char *begin();
    static const char *end();
    static std::string comment(const std::string &text);

    // Takes note of what another call needs.
    void keep(const tap::RecordedCall &call);

    // Of a call that a command makes.
    std::string statement(const tap::RecordedCall &call);

private:
    std::string filled(std::string_view form);
    std::string value_of(std::string_view place);
    std::string handle(const char *kind, u32 handle) const;
    std::string made(const char *kind);
    bool points_at_group() const;
    std::string pointed() const;
    std::string variable(const char *kind, u32 handle) const;
    std::string key();
    std::string parameters();
    std::string entry_meter();
    std::string meter(const pipe_meter_spec &spec);
    std::string ttl() const;
    std::string attributes();
    std::string register_value();
    std::string idle_params() const;
    const reflection::TableFunctions &table() const;
    const reflection::ProfileFunctions &profile() const;
    const pd::Action &action() const;

    const tap::Arguments *call_ = nullptr; // that is being told
    std::string records_;                  // that it needs, declared
    std::string handles_;                  // likewise the variables that are new
    std::set<std::string> variables_;
    std::map<u32, pipe_idle_params> idle_params_; // of tables; one function makes both calls
};

} // namespace shell
