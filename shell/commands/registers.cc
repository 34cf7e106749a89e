// The register command.
#include "commands.h"
#include "driver.h"
#include "json.h"
#include "model.h"
#include "named.h"
#include "resources.h"
#include "settings.h"
#include "values.h"
#include "verbs.h"

namespace shell {

namespace {

using reflection::RegisterFunctions;
using RegisterVerb = void(Session &session, Words &words, const RegisterFunctions &reg);

u32 take_index(Words &words)
{
    return parse_u32(words.take("index"), TS_MODEL_REGISTER_CELLS - 1, "index");
}

// count=N, which is 1 without.
u32 take_count(Words &words, const RegisterFunctions &reg)
{
    static constexpr Setting settings[] = {{"count", 13, 1}};
    return static_cast<u32>(take_settings(words, reg.row->name, settings)[0]);
}

u8 take_flag(Words &words)
{
    const auto value = static_cast<u8>(parse_u32(words.take("value 0 or 1"), 1, "value"));
    words.expect_end();
    return value;
}

std::string json_line(const RegisterFunctions &reg, u32 index, std::span<const u8> values)
{
    std::string line;
    Json json{line};
    json.open_object().key("register").text(reg.row->name).key("index").number(index);
    json.key("values").open_array();
    for (const u8 value : values)
        json.number(value);
    json.close_array().close_object();
    return line;
}

std::string text_line(u32 index, std::span<const u8> values)
{
    std::string line = std::to_string(index) + ':';
    for (const u8 value : values)
        line += ' ' + std::to_string(value);
    return line;
}

// One line for each index, with a value for each pipe.
void read(Session &session, Words &words, const RegisterFunctions &reg)
{
    const u32 start = take_index(words);
    const u32 count = take_count(words, reg);
    std::vector<u8> values(std::size_t{count} * TS_MODEL_PIPES);
    u32 indices = 0, value_count = 0;
    expect_success(reg.range_read(driver_session, device, start, count, session.from_hardware(), &indices,
                                  values.data(), &value_count));
    for (u32 i = 0; i < indices; ++i) {
        expect_no_stop_signal();
        const std::size_t pipes = value_count / indices;
        const std::span<const u8> of_index{values.data() + i * pipes, pipes};
        session.print(session.json() ? json_line(reg, start + i, of_index) : text_line(start + i, of_index));
    }
}

void write(Session &, Words &words, const RegisterFunctions &reg)
{
    const u32 index = take_index(words);
    const u8 value = take_flag(words);
    expect_success(reg.write(driver_session, device, index, &value));
}

void fill(Session &, Words &words, const RegisterFunctions &reg)
{
    const u8 value = take_flag(words);
    expect_success(reg.write_all(driver_session, device, &value));
}

void reset(Session &, Words &words, const RegisterFunctions &reg)
{
    if (words.empty())
        return expect_success(reg.reset_all(driver_session, device));
    const u32 start = take_index(words);
    const u32 count = take_count(words, reg);
    expect_success(reg.range_reset(driver_session, device, start, count));
}

// The copies are in step when the driver calls back, which it does before it returns.
void sync(Session &, Words &words, const RegisterFunctions &reg)
{
    words.expect_end();
    expect_success(reg.hw_sync(
        driver_session, device, [](u32, pd_word) {}, 0));
}

constexpr Verb<RegisterVerb> verbs[] = {
    {"read", read}, {"write", write}, {"fill", fill}, {"reset", reset}, {"sync", sync}};

} // namespace

void run_register(Session &session, Words &words)
{
    RegisterVerb *const run = take_verb<RegisterVerb>(words, verbs);
    run(session, words, take_named(words, reflection::registers(), "register"));
}

} // namespace shell
