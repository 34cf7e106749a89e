// Tests of resources and packet-side services: the row of each, its calls in order, and what is left of the
// memory that they take.
#pragma once

#include <functional>

#include "call_log.h"
#include "capture_resources.h"

namespace resource_log {

using call_log::Failure;
using call_log::Lines;
using call_log::Step;
using resources::word;
using services::line;

// As wide as they come; only ever compared.
inline constexpr pd_word cookie = ~pd_word{0} - 0x1234;

inline constexpr bool untested = false; // of an allocation: nothing tells of its failure

// A row as the chip has it.
struct Facts {
    const char *name;
    u32 handle;
    bool direct = false;
};

class ResourceLog : public call_log::CallLog {
protected:
    u32 cell = 0;

    void SetUp() override
    {
        CallLog::SetUp();
        resources::reset();
    }

    // Runs `check(functions, facts)` with random arguments for each row, and there are no others.
    template <typename Functions, typename Row, std::size_t size, typename Check>
    void each(std::span<const Functions> all, const Row (&rows)[size], const Check &check)
    {
        ASSERT_EQ(all.size(), size);
        for (const Row &row : rows) {
            SCOPED_TRACE(row.name);
            const auto found = std::find_if(all.begin(), all.end(), [&](const Functions &functions) {
                return std::string_view(functions.row->name) == row.name;
            });
            ASSERT_NE(found, all.end());
            scramble_arguments();
            cell = random.word();
            check(*found, row);
        }
    }

    // One call of the driver each.
    void expect_forwards(const std::vector<std::pair<std::string, std::function<pd_status()>>> &forwards)
    {
        for (const auto &[expected, function] : forwards)
            expect_steps({{expected}}, function);
    }

    static bool takes_memory(const std::string &line) { return line.starts_with("bf_sys_calloc "); }

    static Lines without_memory(Lines lines)
    {
        std::erase_if(lines, takes_memory);
        return lines;
    }

    // As expect_steps, with allocations among the steps. One that fails gives 2 and no further call of the
    // driver. Whatever fails, nothing stays allocated.
    template <typename Function>
    void expect_steps_with_memory(const std::vector<Step> &steps, const Function &function,
                                  bool tested = true)
    {
        Lines lines, made;
        for (const Step &step : steps)
            lines.push_back(step.line);
        EXPECT_EQ(run(0, 0, function), 0u);
        EXPECT_EQ(services::events, lines);
        EXPECT_EQ(capture::live_allocations(), 0u);
        for (std::size_t i = 0; i < steps.size(); ++i) {
            SCOPED_TRACE(testing::Message() << "failing call " << i + 1 << " seed " << sweep::seed);
            made.push_back(lines[i]);
            if (takes_memory(lines[i])) {
                if (!tested)
                    continue;
                EXPECT_EQ(run(i + 1, 9, function), 2u);
                EXPECT_EQ(without_memory(services::events), without_memory(made));
            } else {
                EXPECT_EQ(run(i + 1, 9, function), steps[i].failure == Failure::ignored ? 0u : 9u);
                EXPECT_EQ(services::events, steps[i].failure == Failure::ends ? made : lines);
            }
            EXPECT_EQ(capture::live_allocations(), 0u);
        }
    }
};

// One line of standard error, as the C library writes it; nothing before it.
inline std::string assertion(const char *directory, const std::string &function, const std::string &condition)
{
    return std::string("^[^\n]*bf_tessel_switch_nat_static/src/") + directory + ":[0-9]+: " + function +
           ": Assertion `" + condition + "' failed\\.\n$";
}

} // namespace resource_log
