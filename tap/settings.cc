#include "settings.h"

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace tap {

namespace {

constexpr u64 default_size = u64{64} << 20;

struct FaultPlan {
    std::string operation; // empty for all that return a status
    ts_tap_fault fault{};
};

struct Plan {
    std::string trace;  // empty for none
    std::string record; // empty for none
    u64 size = default_size;
    std::vector<FaultPlan> faults;
};

// False unless all of the text is a number.
template <typename Number>
bool parse(std::string_view text, Number &number)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc{} && end == text.data() + text.size();
}

bool parse_probability(const std::string &text, double &number)
{
    char *end = nullptr;
    number = std::strtod(text.c_str(), &end);
    return !text.empty() && *end == 0 && number > 0 && number <= 1;
}

bool parse_size(std::string_view text, u64 &size)
{
    unsigned shift = 0;
    if (text.ends_with('K') || text.ends_with('M') || text.ends_with('G')) {
        shift = text.ends_with('K') ? 10 : text.ends_with('M') ? 20 : 30;
        text.remove_suffix(1);
    }
    if (!parse(text, size) || size > ~u64{0} >> 20 >> shift)
        return false;
    size <<= shift;
    return size >= 65536;
}

std::string about(std::string_view item, std::string_view wrong)
{
    std::string text{'"'};
    return text.append(item).append("\": ").append(wrong);
}

class Parser {
public:
    // What is wrong; empty when all is well.
    std::string parse(std::string_view text)
    {
        while (!text.empty()) {
            const std::size_t end = std::min(text.find(','), text.size());
            const std::string_view item = text.substr(0, end);
            const std::string wrong = read(item);
            if (!wrong.empty())
                return about(item, wrong);
            text.remove_prefix(std::min(end + 1, text.size()));
        }
        return finish();
    }

    Plan plan;

private:
    enum class Subject { none, trace, record, fail } subject_ = Subject::none;

    std::string read(std::string_view item)
    {
        const std::size_t separator = std::min(item.find_first_of(":="), item.size());
        const std::string_view word = item.substr(0, separator);
        const std::string rest{item.substr(std::min(separator + 1, item.size()))};
        if (separator < item.size() && item[separator] == '=')
            return option(word, rest);
        if (word == "trace")
            return trace(separator < item.size(), rest);
        if (word == "record")
            return record(rest);
        if (word == "fail")
            return fail(separator < item.size(), rest);
        return "is neither trace, record nor fail, nor an option such as size=64M";
    }

    std::string trace(bool has_path, const std::string &path)
    {
        if (has_path && path.empty())
            return "names no file; plain trace goes to standard error";
        plan.trace = has_path ? path : "-";
        subject_ = Subject::trace;
        return "";
    }

    std::string record(const std::string &path)
    {
        if (path.empty())
            return "names no file";
        plan.record = path;
        subject_ = Subject::record;
        return "";
    }

    std::string fail(bool has_operation, const std::string &operation)
    {
        if (has_operation && find_operation(operation.c_str()) == operation_count)
            return "there is no operation of this name";
        plan.faults.push_back({operation, {}});
        subject_ = Subject::fail;
        return "";
    }

    std::string option(std::string_view word, const std::string &value)
    {
        if (word == "size")
            return subject_ != Subject::record ? "belongs behind record"
                   : parse_size(value, plan.size)
                       ? ""
                       : "must be a number of at least 64K, with K, M or G behind it if wanted";
        if (word != "nth" && word != "status" && word != "probability" && word != "seed")
            return "is no option: those are size, nth, status, probability and seed";
        if (subject_ != Subject::fail)
            return "belongs behind fail";
        return fault_option(word, value, plan.faults.back().fault);
    }

    static std::string fault_option(std::string_view word, const std::string &value, ts_tap_fault &fault)
    {
        if (word == "probability")
            return parse_probability(value, fault.probability) ? "" : "must lie between 0 and 1";
        if (word == "seed")
            return tap::parse(value, fault.seed) ? "" : "must be a number";
        if (word == "nth")
            return tap::parse(value, fault.nth) && fault.nth != 0 ? "" : "must be a number from 1 on";
        return tap::parse(value, fault.status) && fault.status != 0 ? "" : "must be a status other than 0";
    }

    std::string finish()
    {
        Faults faults;
        for (FaultPlan &planned : plan.faults) {
            planned.fault.operation = planned.operation.empty() ? nullptr : planned.operation.c_str();
            std::string item = "fail";
            if (!planned.operation.empty())
                item.append(":").append(planned.operation);
            if (planned.fault.status == 0)
                return about(item, "lacks its status, such as status=5");
            const int error = faults.add(planned.fault);
            if (error == ENOSPC)
                return about(item, "there is room for 16 faults");
            if (error != 0)
                return about(item, planned.fault.nth != 0 && planned.fault.probability != 0
                                       ? "cannot have both nth and probability"
                                       : "this operation has no way to fail");
        }
        return "";
    }
};

int tell(int error, const std::string &what, char *text, std::size_t room)
{
    std::snprintf(text, room, "%s", what.c_str());
    return error;
}

int set_plan(State &state, const Plan &plan, std::string &wrong)
{
    state.end_trace();
    state.recorder.reset();
    state.faults.clear();
    for (const FaultPlan &planned : plan.faults)
        state.faults.add(planned.fault);
    const auto failed = [&](const std::string &path, int error) {
        wrong = path + ": " + std::strerror(error);
        return error;
    };
    if (!plan.trace.empty())
        if (const int error = state.trace_to(plan.trace.c_str()))
            return failed(plan.trace, error);
    if (!plan.record.empty())
        if (const int error = state.record_to(plan.record.c_str(), plan.size))
            return failed(plan.record, error);
    return 0;
}

} // namespace

int set_all(State &state, const char *text, char *error, std::size_t room)
{
    Parser parser;
    std::string wrong = parser.parse(text);
    if (!wrong.empty())
        return tell(EINVAL, wrong, error, room);
    const int failure = set_plan(state, parser.plan, wrong);
    if (failure != 0) {
        std::string unused;
        set_plan(state, {}, unused);
    }
    return tell(failure, wrong, error, room);
}

} // namespace tap
