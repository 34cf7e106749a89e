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
};
