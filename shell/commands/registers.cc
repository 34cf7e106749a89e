// The register command.
#include "commands.h"
#include "driver.h"
#include "model.h"
#include "named.h"
#include "resources.h"
#include "result.h"
#include "settings.h"
#include "values.h"
#include "verb_arguments.h"

namespace shell {

namespace {

using reflection::RegisterFunctions;
using Index = arg::Number<"INDEX", "index", TS_MODEL_REGISTER_CELLS - 1>;
using Flag = arg::Number<"VALUE", "value", 1>;
constexpr Setting count_setting[] = {{"count", 13, 1}};
using Count = arg::Settings<count_setting>;

void print_cell(Session &session, const RegisterFunctions &reg, u32 index, std::span<const u8> values)
{
    std::string shown;
    for (const u8 value : values)
        shown += ' ' + std::to_string(value);
    Result result{session.json()};
    result.text("register", reg.row->name).number("index", index).json([&](Json &json) {
        json.key("values").open_array();
        for (const u8 value : values)
            json.number(value);
        json.close_array();
    });
    result.shown("values", shown);
    session.print(result.line("{index}:{values}"));
}

// One line for each index, with a value for each pipe.
void read(Session &session, const RegisterFunctions &reg, u32 start, const std::vector<u64> &settings)
{
    const auto count = static_cast<u32>(settings[0]);
    std::vector<u8> values(std::size_t{count} * TS_MODEL_PIPES);
    u32 indices = 0, value_count = 0;
    expect_success(reg.range_read(driver_session, device, start, count, session.from_hardware(), &indices,
                                  values.data(), &value_count));
    for (u32 i = 0; i < indices; ++i) {
        expect_no_stop_signal();
        const std::size_t pipes = value_count / indices;
        print_cell(session, reg, start + i, {values.data() + i * pipes, pipes});
    }
}

void write(Session &, const RegisterFunctions &reg, u32 index, u32 flag)
{
    const auto value = static_cast<u8>(flag);
    expect_success(reg.write(driver_session, device, index, &value));
}

void fill(Session &, const RegisterFunctions &reg, u32 flag)
{
    const auto value = static_cast<u8>(flag);
    expect_success(reg.write_all(driver_session, device, &value));
}

void reset(Session &, const RegisterFunctions &reg, std::optional<u32> start,
           const std::vector<u64> &settings)
{
    if (!start)
        return expect_success(reg.reset_all(driver_session, device));
    expect_success(reg.range_reset(driver_session, device, *start, static_cast<u32>(settings[0])));
}

// The copies are in step when the driver calls back, which it does before it returns.
void sync(Session &, const RegisterFunctions &reg)
{
    expect_success(reg.hw_sync(
        driver_session, device, [](u32, pd_word) {}, 0));
}

constexpr std::string_view text =
    R"(  --hw asks the hardware.
)";

constexpr Verb verbs[] = {
    verb<read, arg::Register, Index, Count>("register read",
                                            "prints cells, each with its value in every pipe")
        .reads(),
    verb<write, arg::Register, Index, Flag>("register write", "sets a cell to 0 or 1"),
    verb<fill, arg::Register, Flag>("register fill", "sets all cells"),
    verb<reset, arg::Register, arg::Optional<Index>, Count>(
        "register reset", "gives cells, or all, the value that they start with"),
    verb<sync, arg::Register>("register sync",
                              "has the driver bring its values up to date with the hardware's"),
};

} // namespace

const Command register_command{verbs, text, read_options, "the cells of registers"};

} // namespace shell
