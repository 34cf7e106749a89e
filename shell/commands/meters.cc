// The meter command.
#include "meters.h"

#include "commands.h"
#include "driver.h"
#include "entry_body.h"
#include "entry_key.h"
#include "model.h"
#include "named.h"
#include "resources.h"
#include "result.h"
#include "settings.h"
#include "tables.h"
#include "verb_arguments.h"

namespace shell {

namespace {

using reflection::MeterFunctions;

constexpr Setting settings[] = {{"committed_rate"},
                                {"committed_burst"},
                                {"peak_rate"},
                                {"peak_burst"},
                                {.name = "type", .choices = meter_types}};

using Parts = arg::SettingsBehindColon<settings, "the parts of a meter">;

void set(Session &, const MeterFunctions &meter, const Cell &cell, const std::vector<u64> &parts)
{
    const auto part = [&](std::size_t i) { return static_cast<u32>(parts[i]); };
    const pd_meter_spec spec{part(0), part(1), part(2), part(3), part(4)};
    expect_success(meter.set(driver_session, device, cell.find(), &spec));
}

void read(Session &session, const MeterFunctions &meter, const Cell &place)
{
    const u32 cell = place.find();
    pd_meter_spec spec{};
    expect_success(meter.read(driver_session, device, cell, &spec));
    const u32 numbers[] = {spec.committed_rate, spec.committed_burst, spec.peak_rate, spec.peak_burst};
    Result result{session.json()};
    result.text("meter", meter.row->name).number(meter.row->table ? "entry" : "index", cell);
    for (std::size_t i = 0; i < std::size(numbers); ++i)
        result.number(settings[i].name, numbers[i]);
    result.text("type", meter_types[spec.requested_meter_type]);
    session.print(result.line(sentence_of(settings)));
}

void adjust(Session &session, const MeterFunctions &meter, std::optional<u32> wanted)
{
    if (wanted) {
        session.expect_changes_allowed();
        return expect_success(meter.bytecount_adjust_set(driver_session, device, *wanted));
    }
    u32 bytes = 0;
    expect_success(meter.bytecount_adjust_get(driver_session, device, &bytes));
    Result result{session.json()};
    result.text("meter", meter.row->name).number("adjust", bytes);
    session.print(result.line("bytes added to each packet: {adjust}"));
}

constexpr std::string_view text =
    R"(  CELL is an index; of a meter that is direct to a table, an entry's handle, its key, or 'default'.
)";

constexpr Verb verbs[] = {
    verb<set, arg::Meter, arg::Cell, Parts>("meter set", "sets a meter"),
    verb<read, arg::Meter, arg::Cell>("meter read", "prints it in the same words").reads(),
    verb<adjust, arg::Meter, arg::Optional<arg::Number<"BYTES", "number of bytes">>>(
        "meter adjust", "prints, or sets, how many bytes it adds to each packet")
        .may_change(),
};

} // namespace

std::string meter_option(const reflection::TableFunctions &table, pd_entry_hdl entry)
{
    for (const MeterFunctions &meter : reflection::meters()) {
        if (meter.row->table != table.row->handle)
            continue;
        pd_meter_spec spec{};
        const pd_status status = meter.read(driver_session, device, entry, &spec);
        if (status == TS_MODEL_UNKNOWN_OBJECT)
            return {};
        expect_success(status);
        return meter_option(spec);
    }
    return {};
}

std::string meter_option(const pd_meter_spec &spec)
{
    return meter_option(spec.committed_rate, spec.committed_burst, spec.peak_rate, spec.peak_burst,
                        spec.requested_meter_type);
}

std::string meter_option(u64 committed_rate, u64 committed_burst, u64 peak_rate, u64 peak_burst, u32 type)
{
    std::string text = "meter=";
    for (const u64 number : {committed_rate, committed_burst, peak_rate, peak_burst})
        text += std::to_string(number) + ',';
    return text += meter_types[type];
}

const Command meter_command{verbs, text, json_option, "the meters of entries and meter cells"};

} // namespace shell
