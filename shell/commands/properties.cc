// The property command.
#include "commands.h"
#include "driver.h"
#include "result.h"
#include "verb_arguments.h"

namespace shell {

namespace {

using Property = arg::Number<"NUMBER", "property number">;
using FirstValue = arg::Optional<arg::Number<"VALUE", "value">>;
using SecondValue = arg::Optional<arg::Number<"SECOND_VALUE", "second value">>;

void property(Session &session, const reflection::TableFunctions &table, u32 number,
              std::optional<u32> new_value, std::optional<u32> new_second)
{
    if (new_value) {
        session.expect_changes_allowed();
        return expect_success(
            table.set_property(driver_session, device.device_id, number, *new_value, new_second.value_or(0)));
    }
    u32 value = 0, second = 0;
    expect_success(table.get_property(driver_session, device.device_id, number, &value, &second));
    Result result{session.json()};
    result.text("table", table.row->name).number("property", number);
    result.number("value", value).number("second_value", second);
    session.print(result.line("property {property}: {value} {second_value}"));
}

constexpr std::string_view text =
    "  The numbers and what their values mean are the driver's. SECOND_VALUE is 0 when it is left out.\n";

constexpr Verb verbs[] = {verb<property, arg::Table, Property, FirstValue, SecondValue>(
                              "property", "prints both values of a table's property, or sets them")
                              .may_change()};

} // namespace

const Command property_command{verbs, text, json_option};

} // namespace shell
