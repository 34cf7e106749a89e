// The property command.
#include "commands.h"
#include "driver.h"
#include "json.h"
#include "tables.h"
#include "values.h"

namespace shell {

namespace {

u32 take_u32(Words &words, const char *name)
{
    return parse_u32(words.take(name), ~u32{0}, name);
}

std::string property_json(const char *table, u32 property, u32 value, u32 second)
{
    std::string line;
    Json json{line};
    json.open_object().key("table").text(table).key("property").number(property);
    json.key("value").number(value).key("second_value").number(second).close_object();
    return line;
}

} // namespace

void run_property(Session &session, Words &words)
{
    const reflection::TableFunctions &table = take_table(words);
    const u32 property = take_u32(words, "property number");
    if (!words.empty()) {
        const u32 value = take_u32(words, "value");
        const u32 second = words.empty() ? 0 : take_u32(words, "second value");
        words.expect_end();
        return expect_success(table.set_property(driver_session, device.device_id, property, value, second));
    }
    u32 value = 0, second = 0;
    expect_success(table.get_property(driver_session, device.device_id, property, &value, &second));
    session.print(session.json() ? property_json(table.row->name, property, value, second)
                                 : "property " + std::to_string(property) + ": " + std::to_string(value) +
                                       ' ' + std::to_string(second));
}

} // namespace shell
