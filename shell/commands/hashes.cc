// The hash command: dynamic hash calculations.
#include <array>
#include <cstdio>

#include "commands.h"
#include "driver.h"
#include "json.h"
#include "model.h"
#include "named.h"
#include "services.h"
#include "values.h"
#include "verbs.h"

namespace shell {

namespace {

using reflection::HashFunctions;
using HashVerb = void(Session &session, Words &words, const HashFunctions &hash);

// A calculation has one input, whose number this is.
constexpr u32 the_input = 0;
constexpr unsigned widest_field = 128;

u32 take_number(Words &words, std::string_view what)
{
    return parse_u32(words.take(what), ~u32{0}, what);
}

std::vector<hash_input_field_attribute> attributes_of(const HashFunctions &hash)
{
    u32 count = 0;
    expect_success(hash.input_field_attribute_count_get(driver_session, device.device_id, the_input, &count));
    std::vector<hash_input_field_attribute> attributes(count);
    expect_success(hash.input_field_attribute_get(driver_session, device.device_id, the_input, count,
                                                  attributes.data(), &count));
    attributes.resize(count);
    return attributes;
}

struct Choices {
    u32 input = 0;
    u32 algorithm = 0;
    ts_model_hash_seed seed{};
};

Choices choices_of(const HashFunctions &hash)
{
    Choices choices;
    expect_success(hash.input_get(driver_session, device.device_id, &choices.input));
    expect_success(hash.algorithm_get(driver_session, device.device_id, &choices.algorithm));
    expect_success(hash.seed_get(driver_session, device.device_id, &choices.seed));
    return choices;
}

std::string json_line(const HashFunctions &hash, const Choices &choices,
                      const std::vector<hash_input_field_attribute> &attributes)
{
    std::string line;
    Json json{line};
    json.open_object().key("calculation").text(hash.row->name).key("input").number(choices.input);
    json.key("algorithm").number(choices.algorithm).key("seed").number(choices.seed.first);
    json.key("second_seed").number(choices.seed.second).key("attributes").open_array();
    for (const hash_input_field_attribute &attribute : attributes) {
        json.open_object().key("field").number(attribute.input_field).key("type").number(attribute.attr_type);
        json.key("value").number(attribute.attr_value).close_object();
    }
    json.close_array().close_object();
    return line;
}

// The words of the attribute verb.
std::string text_of(const hash_input_field_attribute &attribute)
{
    return std::to_string(attribute.input_field) + ',' + std::to_string(attribute.attr_type) + ',' +
           std::to_string(attribute.attr_value);
}

void show(Session &session, Words &words, const HashFunctions &hash)
{
    words.expect_end();
    const Choices choices = choices_of(hash);
    const std::vector<hash_input_field_attribute> attributes = attributes_of(hash);
    if (session.json())
        return session.print(json_line(hash, choices, attributes));
    std::string line = "input " + std::to_string(choices.input) + ", algorithm " +
                       std::to_string(choices.algorithm) + ", seed " + std::to_string(choices.seed.first) +
                       ' ' + std::to_string(choices.seed.second) + ", attributes:";
    for (const hash_input_field_attribute &attribute : attributes)
        line += ' ' + text_of(attribute);
    session.print(attributes.empty() ? line + " none" : line);
}

void input(Session &, Words &words, const HashFunctions &hash)
{
    const u32 number = take_number(words, "number of the input");
    words.expect_end();
    expect_success(hash.input_set(driver_session, device.device_id, number));
}

void algorithm(Session &, Words &words, const HashFunctions &hash)
{
    const u32 number = take_number(words, "number of the algorithm");
    words.expect_end();
    expect_success(hash.algorithm_set(driver_session, device.device_id, number));
}

void seed(Session &, Words &words, const HashFunctions &hash)
{
    const u32 first = take_number(words, "seed");
    const u32 second = words.empty() ? 0 : take_number(words, "second word of the seed");
    words.expect_end();
    expect_success(hash.seed_set(driver_session, device.device_id, first, second));
}

hash_input_field_attribute parse_attribute(std::string_view word)
{
    static constexpr const char *names[] = {"field", "type of the attribute", "value of the attribute"};
    std::array<u32, std::size(names)> parts{};
    std::string_view text = word;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const bool last = i + 1 == parts.size();
        const std::size_t comma = last ? text.size() : text.find(',');
        if (comma == std::string_view::npos)
            throw BadLine{word, quoted(word) + " is no attribute: write FIELD,TYPE,VALUE"};
        parts[i] = parse_u32(text.substr(0, comma), ~u32{0}, names[i]);
        text.remove_prefix(last ? comma : comma + 1);
    }
    return {parts[0], parts[1], parts[2]};
}

// Those that are given replace all; none clears them.
void attributes(Session &, Words &words, const HashFunctions &hash)
{
    std::vector<hash_input_field_attribute> given;
    while (!words.empty())
        given.push_back(parse_attribute(words.take()));
    expect_success(hash.input_field_attribute_set(driver_session, device.device_id, the_input,
                                                  static_cast<u32>(given.size()), given.data()));
}

// The fields of a packet that are hashed. The library wants values of more than 32 bits as bytes elsewhere.
struct Fields {
    std::vector<Value> values;
    std::vector<u32> widths;

    void take(std::string_view word);
    pd_status hash(const HashFunctions &hash, std::span<u8> result) const;
};

void Fields::take(std::string_view word)
{
    const std::size_t colon = word.find(':');
    if (colon == std::string_view::npos)
        throw BadLine{word, quoted(word) + " is no field: write WIDTH:VALUE"};
    const u32 width = parse_u32(word.substr(0, colon), widest_field, "width in bits");
    if (width == 0)
        throw BadLine{word, "a field has at least 1 bit"};
    widths.push_back(width);
    values.push_back(parse_value(word.substr(colon + 1), width, "field"));
}

pd_status Fields::hash(const HashFunctions &hash, std::span<u8> result) const
{
    std::vector<std::array<u8, widest_field / 8>> bytes(values.size());
    std::vector<hash_input_field_attribute> fields;
    for (std::size_t i = 0; i < values.size(); ++i) {
        write_image(values[i], widths[i], bytes[i].data());
        fields.push_back({static_cast<u32>(i), 0,
                          widths[i] <= 32 ? static_cast<pd_word>(values[i].low)
                                          : reinterpret_cast<pd_word>(bytes[i].data())});
    }
    return hash.calculate_hash_value(driver_session, device.device_id, static_cast<u32>(fields.size()),
                                     fields.data(), widths.data(), result.data(),
                                     static_cast<u32>(result.size()));
}

void value(Session &session, Words &words, const HashFunctions &hash)
{
    Fields fields;
    do
        fields.take(words.take("field: WIDTH:VALUE"));
    while (!words.empty());
    std::array<u8, sizeof(u32)> bytes{};
    expect_success(fields.hash(hash, bytes));
    u32 result = 0;
    for (const u8 byte : bytes)
        result = result << 8 | byte;
    std::string line;
    if (session.json()) {
        Json{line}
            .open_object()
            .key("calculation")
            .text(hash.row->name)
            .key("value")
            .number(result)
            .close_object();
    } else {
        std::array<char, 16> text;
        std::snprintf(text.data(), text.size(), "0x%x", result);
        line = text.data();
    }
    session.print(line);
}

constexpr Verb<HashVerb> verbs[] = {{"show", show}, {"input", input},           {"algorithm", algorithm},
                                    {"seed", seed}, {"attributes", attributes}, {"value", value}};

} // namespace

void run_hash(Session &session, Words &words)
{
    HashVerb *const run = take_verb<HashVerb>(words, verbs);
    run(session, words, take_named(words, reflection::hashes(), "hash calculation"));
}

} // namespace shell
