// The decode command: fields out of the images that a driver has for keys and actions.

#include "commands.h"
#include "images.h"
#include "pipe_mgr_records.h"
#include "tables.h"
#include "value_lines.h"
#include "verb_arguments.h"

namespace shell {

namespace {

using Bytes = std::vector<u8>;

// Takes an image of `size` bytes in hex.
Bytes take_image(Words &words, const std::string &what, std::size_t size)
{
    constexpr std::string_view digits = "0123456789abcdef0123456789ABCDEF";
    const std::string form =
        what + " of " + std::to_string(size) + " bytes, " + std::to_string(2 * size) + " hex digits";
    const std::string_view word = words.take(form);
    Bytes image(size);
    for (std::size_t i = 0; i < word.size(); ++i) {
        const std::size_t digit = digits.find(word[i]);
        if (digit == std::string_view::npos)
            throw BadLine{word.substr(i), quoted(word.substr(i, 1)) + " is no hex digit: give " + form};
        if (i / 2 < size)
            image[i / 2] = static_cast<u8>(image[i / 2] << 4 | digit % 16);
    }
    if (word.size() != 2 * size)
        throw BadLine{word, quoted(word) + " has " + std::to_string(word.size()) + " digits: give " + form};
    return image;
}

// The image of a key.
struct MatchImage {
    const reflection::TableFunctions &table;
    Bytes value, mask;
    u32 partition = 0;

    using Value = MatchImage;
    static void describe(Usage &usage)
    {
        usage.add({"TABLE"});
        usage.add({"VALUE"});
        usage.places.push_back({.alternatives = {"MASK"}, .optional = true});
        usage.places.push_back({.option = "partition=", .value = "N", .optional = true});
    }
    static Value read(Reading &reading);
};

MatchImage MatchImage::read(Reading &reading)
{
    constexpr std::string_view partition = "partition=";
    Words &words = reading.words;
    const reflection::TableFunctions &table = take_keyed_table(words);
    const pd::ImageSize size = pd::image_size(table.row->key);
    Bytes value = take_image(words, "the value image", size.bytes);
    Bytes mask = words.empty() || words.peek().starts_with(partition)
                     ? full_mask(*table.row)
                     : take_image(words, "the mask image", size.bytes);
    u32 partition_index = 0;
    if (words.peek().starts_with(partition))
        partition_index = parse_u32(words.take().substr(partition.size()), 0xffff, "partition");
    return {table, std::move(value), std::move(mask), partition_index};
}

void decode_match(Session &session, MatchImage &image)
{
    auto &[table, value, mask, partition_index] = image;
    const pd::ImageSize size = pd::image_size(table.row->key);
    const pipe_match_spec spec{value.data(), mask.data(), partition_index, 0, size.bits, size.bytes, 0};
    ParsedValue fields;
    fields.key.resize(table.row->record_size / sizeof(u64) + 1);
    table.unbuild_key(&spec, fields.key.data());
    if (table.unbuild_mask) // masks of exact keys say nothing
        table.unbuild_mask(&spec, fields.key.data());
    print_value(session, "table", table.row->name, table.row, fields);
}

// The image of an action's parameters, as fields.
struct ActionImage {
    using Value = ParsedValue;
    static void describe(Usage &usage)
    {
        usage.add({"ACTION"});
        usage.places.push_back({.alternatives = {"DATA"}, .optional = true});
    }
    static Value read(Reading &reading);
};

ParsedValue ActionImage::read(Reading &reading)
{
    Words &words = reading.words;
    const pd::Action &action = take_any_action(words);
    const pd::ImageSize size = pd::image_size(action.parameters);
    ParsedValue fields;
    fields.action = &action;
    fields.parameters.resize(action.record_size / sizeof(u64) + 1);
    if (size.bytes != 0) {
        Bytes image = take_image(words, "the image", size.bytes);
        const pipe_action_data data{size.bits, size.bytes, image.data()};
        reflection::action_texts()[action.number].unbuild(&data, nullptr, 0, fields.parameters.data());
    }
    return fields;
}

void decode_action(Session &session, const ParsedValue &fields)
{
    print_value(session, nullptr, nullptr, nullptr, fields);
}

constexpr std::string_view text =
    R"(  Images are in hex. An index of a counter or meter stands in no image and shows as 65535.
)";

constexpr Verb verbs[] = {
    verb<decode_match, MatchImage>(
        "decode match", "the key of these images, as trace prints them; without MASK all bits count")
        .reads(),
    verb<decode_action, ActionImage>("decode action", "the parameters of this image").reads(),
};

} // namespace

const Command decode_command{verbs, text, json_option, "prints the fields of a match or action image"};

} // namespace shell
