// The hash command: dynamic hash calculations.
#include <array>

#include "commands.h"
#include "driver.h"
#include "model.h"
#include "named.h"
#include "result.h"
#include "services.h"
#include "values.h"
#include "verb_arguments.h"

namespace shell {

namespace {

using reflection::HashFunctions;

// A calculation has one input, whose number this is.
constexpr u32 the_input = 0;
constexpr unsigned widest_field = 128;

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

void show(Session &session, const HashFunctions &hash)
{
    const Choices choices = choices_of(hash);
    const std::vector<hash_input_field_attribute> attributes = attributes_of(hash);
    Result result{session.json()};
    result.text("calculation", hash.row->name).number("input", choices.input);
    result.number("algorithm", choices.algorithm).number("seed", choices.seed.first);
    result.number("second_seed", choices.seed.second);
    result.list("attributes", attributes, [](Result &each, const hash_input_field_attribute &attribute) {
        each.number("field", attribute.input_field).number("type", attribute.attr_type);
        each.number("value", attribute.attr_value);
        return " {field},{type},{value}"; // the words of the attributes verb
    });
    const std::string sentence =
        "input {input}, algorithm {algorithm}, seed {seed} {second_seed}, attributes:";
    session.print(result.line(sentence + (attributes.empty() ? " none" : "{attributes}")));
}

void input(Session &, const HashFunctions &hash, u32 number)
{
    expect_success(hash.input_set(driver_session, device.device_id, number));
}

void algorithm(Session &, const HashFunctions &hash, u32 number)
{
    expect_success(hash.algorithm_set(driver_session, device.device_id, number));
}

void seed(Session &, const HashFunctions &hash, u32 first, std::optional<u32> second)
{
    expect_success(hash.seed_set(driver_session, device.device_id, first, second.value_or(0)));
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

struct Attribute {
    using Value = hash_input_field_attribute;
    static void describe(Usage &usage) { usage.add({"FIELD,TYPE,VALUE"}); }
    static Value read(Reading &reading) { return parse_attribute(reading.words.take()); }
};

// Those that are given replace all; none clears them.
void attributes(Session &, const HashFunctions &hash, const std::vector<hash_input_field_attribute> &given)
{
    expect_success(hash.input_field_attribute_set(driver_session, device.device_id, the_input,
                                                  static_cast<u32>(given.size()), given.data()));
}

struct PacketField {
    u32 width;
    Value value;
};

// A field of a packet that is hashed.
struct Field {
    using Value = PacketField;
    static void describe(Usage &usage) { usage.add({"WIDTH:VALUE"}); }
    static Value read(Reading &reading);
};

PacketField Field::read(Reading &reading)
{
    const std::string_view word = reading.words.take("field: WIDTH:VALUE");
    const std::size_t colon = word.find(':');
    if (colon == std::string_view::npos)
        throw BadLine{word, quoted(word) + " is no field: write WIDTH:VALUE"};
    const u32 width = parse_u32(word.substr(0, colon), widest_field, "width in bits");
    if (width == 0)
        throw BadLine{word, "a field has at least 1 bit"};
    return {width, parse_value(word.substr(colon + 1), width, "field")};
}

// The library wants values of more than 32 bits as bytes elsewhere.
pd_status calculate(const HashFunctions &hash, const std::vector<PacketField> &of, std::span<u8> result)
{
    std::vector<std::array<u8, widest_field / 8>> bytes(of.size());
    std::vector<hash_input_field_attribute> fields;
    std::vector<u32> widths;
    for (std::size_t i = 0; i < of.size(); ++i) {
        const auto &[width, value] = of[i];
        write_image(value, width, bytes[i].data());
        widths.push_back(width);
        fields.push_back(
            {static_cast<u32>(i), 0,
             width <= 32 ? static_cast<pd_word>(value.low) : reinterpret_cast<pd_word>(bytes[i].data())});
    }
    return hash.calculate_hash_value(driver_session, device.device_id, static_cast<u32>(fields.size()),
                                     fields.data(), widths.data(), result.data(),
                                     static_cast<u32>(result.size()));
}

void value(Session &session, const HashFunctions &hash, const std::vector<PacketField> &fields)
{
    std::array<u8, sizeof(u32)> bytes{};
    expect_success(calculate(hash, fields, bytes));
    u32 number = 0;
    for (const u8 byte : bytes)
        number = number << 8 | byte;
    Result result{session.json()};
    result.text("calculation", hash.row->name).hex("value", number);
    session.print(result.line("{value}"));
}

constexpr Verb verbs[] = {
    verb<value, arg::Calculation, arg::Several<Field>>(
        "hash value", "the hash of fields of these widths in bits, 128 at most")
        .reads(),
    verb<show, arg::Calculation>("hash show", "prints input, algorithm, seed and attributes").reads(),
    verb<input, arg::Calculation, arg::Number<"N", "number of the input">>(
        "hash input", "chooses the input; each calculation has number 0 alone"),
    verb<algorithm, arg::Calculation, arg::Number<"N", "number of the algorithm">>(
        "hash algorithm", "chooses the algorithm; each calculation has number 0 alone"),
    verb<seed, arg::Calculation, arg::Number<"N", "seed">,
         arg::Optional<arg::Number<"SECOND", "second word of the seed">>>(
        "hash seed", "sets the seed; 0 is the algorithm's own"),
    verb<attributes, arg::Calculation, arg::Any<Attribute>>(
        "hash attributes", "sets the attributes of input fields in place of all before"),
};

} // namespace

const Command hash_command{verbs, {}, json_option, "hash calculations"};

} // namespace shell
