// Runs scripts in a shell of the test's own process: output, messages, exit status and the trace come out.
#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "model.h"
#include "session.h"
#include "tap.h"

struct Outcome {
    int status;
    std::string out;
    std::string err;
};

class Shell : public testing::Test {
protected:
    Shell() { ts_model_reset(); }
    ~Shell() override { ts_model_reset(); }

    // `use` runs while every call of the operation is refused with the status.
    template <typename Use>
    static void while_refused(const char *operation, pd_status status, Use use)
    {
        const ts_tap_fault fault{operation, 0, 0, 0, status};
        EXPECT_EQ(ts_tap_fail(&fault), 0);
        use();
        ts_tap_fail_nothing();
    }

    static Outcome run(const std::string &script, shell::SessionOptions options = {})
    {
        std::ostringstream out, err;
        shell::TextLines lines{script};
        const int status = shell::Session{out, err, options}.run(lines, "t");
        return {status, out.str(), err.str()};
    }

    static std::string output_of(const std::string &script, shell::SessionOptions options = {})
    {
        const Outcome outcome = run(script, options);
        EXPECT_EQ(outcome.err, "") << script;
        EXPECT_EQ(outcome.status, 0) << script;
        return outcome.out;
    }

    // The last driver call of `line`, after `before`.
    static std::string trace_of(const std::string &line, const std::string &before = {})
    {
        return output_of(before + "\ntrace on\n" + line + "\n");
    }

    // What stands in a trace between `begin` and `end`.
    static std::string part(const std::string &trace, const std::string &begin, const std::string &end)
    {
        const std::size_t from = trace.find(begin);
        if (from == std::string::npos)
            return "no " + begin + " in " + trace;
        const std::size_t start = from + begin.size();
        return trace.substr(start, trace.find(end, start) - start);
    }

    // `line` with a @ before the offending place must be refused with `message` and reach no driver
    // operation.
    static void expect_bad(std::string line, const std::string &message)
    {
        const std::size_t column = line.find('@');
        ASSERT_NE(column, std::string::npos) << line;
        line.erase(column, 1);
        const Outcome outcome = run("trace on\n" + line + "\n");
        EXPECT_EQ(outcome.err, "t:2:" + std::to_string(column + 1) + ": " + message + "\n") << line;
        EXPECT_EQ(outcome.out, "") << line;
        EXPECT_EQ(outcome.status, 1) << line;
    }
};
