// The shell over the whole catalogue: random entries of every table and action are written by name; the
// images that reach the driver, the documents that come back, value texts and saved files must tell the same
// digits.
#include <gtest/gtest.h>

#include <algorithm>
#include <arpa/inet.h>
#include <cjson/cJSON.h>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <malloc.h>
#include <memory>
#include <new>
#include <random>
#include <unistd.h>
#include <vector>

#include "commands.h"
#include "folder.h"
#include "reflection.h"
#include "shell_fixture.h"

// ---- The memory that C++ code holds ----

namespace {

std::size_t live_bytes = 0;
std::size_t most_live_bytes = 0;

} // namespace

void *operator new(std::size_t size, const std::nothrow_t &) noexcept
{
    void *block = std::malloc(size);
    live_bytes += block ? malloc_usable_size(block) : 0;
    most_live_bytes = std::max(most_live_bytes, live_bytes);
    return block;
}

void *operator new(std::size_t size)
{
    if (void *block = operator new(size, std::nothrow))
        return block;
    throw std::bad_alloc{};
}

void operator delete(void *block) noexcept
{
    live_bytes -= malloc_usable_size(block);
    std::free(block);
}

void operator delete(void *block, std::size_t) noexcept
{
    operator delete(block);
}

namespace {

using Document = std::unique_ptr<cJSON, decltype(&cJSON_Delete)>;

Document parse(const std::string &text)
{
    return {cJSON_ParseWithOpts(text.c_str(), nullptr, true), &cJSON_Delete};
}

std::vector<std::string> lines_of(const std::string &text)
{
    std::vector<std::string> lines;
    std::istringstream in{text};
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

std::string hex(const u8 *bytes, std::size_t count)
{
    std::string digits;
    for (std::size_t i = 0; i < count; ++i)
        digits += {"0123456789abcdef"[bytes[i] >> 4], "0123456789abcdef"[bytes[i] & 0xf]};
    return digits;
}

// ---- Random entries ----

// A field or parameter, whole MAC addresses as one, with the digits of whole bytes that it was given.
struct Given {
    std::string name;
    unsigned width;
    pd::Match match;
    pd::Format format;
    std::string counts; // the bits that texts show
    std::string value;
    std::string mask;
    unsigned prefix_length;
};

class RandomEntries {
public:
    explicit RandomEntries(u64 seed) : random_(seed) {}

    std::vector<Given> key(const pd::Table &table)
    {
        std::vector<Given> fields;
        for (const pd::Field &field : table.key)
            append(fields, {field.display,
                            field.width,
                            field.match,
                            field.format,
                            digits(field.mask, field.width),
                            {},
                            {},
                            0});
        for (Given &field : fields)
            fill(field);
        return fields;
    }

    std::vector<Given> parameters(const pd::Action &action)
    {
        std::vector<Given> fields;
        for (const pd::Parameter &parameter : action.parameters)
            append(fields, {parameter.name,
                            parameter.width,
                            pd::Match::exact,
                            parameter.format,
                            digits({0, parameter.index_of ? 0xffff : ~0u}, parameter.width),
                            {},
                            {},
                            0});
        for (Given &field : fields)
            fill(field); // an entry takes 16 bits of an index
        return fields;
    }

    u32 priority() { return static_cast<u32>(random_()); }

private:
    // Joins a pair of MAC halves, as their names tell them.
    static void append(std::vector<Given> &fields, const Given &field)
    {
        static const std::string station = "tation";
        if (!fields.empty() && field.width == 24 && fields.back().width == 24 &&
            fields.back().match == field.match && field.name.ends_with(station)) {
            Given &oui = fields.back();
            const std::string stem = oui.name.substr(0, oui.name.size() - 3);
            if (stem == field.name.substr(0, field.name.size() - station.size() - 1)) {
                oui.name = stem.empty() ? "mac" : stem;
                oui.width = 48;
                oui.counts += field.counts;
                return;
            }
        }
        fields.push_back(field);
    }

    std::string digits(unsigned width)
    {
        std::string result;
        for (unsigned bits = (width + 7) / 8 * 8; bits > 0; bits -= 4) {
            const unsigned used = std::min(4u, width - std::min(width, bits - 4));
            result += "0123456789abcdef"[random_() & ((1u << used) - 1)];
        }
        return result;
    }

    static std::string digits(pd::Mask bits, unsigned width)
    {
        std::string result;
        for (unsigned left = (width + 7) / 8 * 8; left > 0; left -= 4) {
            const u64 word = left > 64 ? bits.high : bits.low;
            result += "0123456789abcdef"[word >> ((left - 4) % 64) & 0xf];
        }
        return result;
    }

    // The digits of `count` leading ones.
    static std::string leading(unsigned count, unsigned width)
    {
        std::string result;
        for (unsigned bit = 0; bit < width; bit += 4)
            result += "08cef"[std::min(4u, count - std::min(count, bit))];
        return result;
    }

    static std::string both(const std::string &a, const std::string &b)
    {
        const auto number = [](char c) { return c <= '9' ? c - '0' : c - 'a' + 10; };
        std::string result;
        for (std::size_t i = 0; i < a.size(); ++i)
            result += "0123456789abcdef"[number(a[i]) & number(b[i])];
        return result;
    }

    void fill(Given &field)
    {
        field.value = both(digits(field.width), field.counts);
        if (field.match == pd::Match::lpm) {
            field.prefix_length = static_cast<unsigned>(random_() % (field.width + 1));
            field.value = both(field.value, leading(field.prefix_length, field.width));
        } else if (field.match == pd::Match::ternary) {
            const auto some = static_cast<unsigned>(random_() % (field.width + 1));
            const bool whole_digits = field.width % 8 == 0;
            const auto shape = random_() % 3;
            field.mask = shape == 0                   ? std::string(field.value.size(), '0')
                         : shape == 1 && whole_digits ? leading(some, field.width)
                                                      : digits(field.width);
            field.mask = both(field.mask, field.counts);
            field.value = both(field.value, field.mask);
        }
    }

    std::mt19937_64 random_;
};

std::string words(const std::vector<Given> &fields)
{
    std::string text;
    for (const Given &field : fields) {
        text += " " + field.name + "=0x" + field.value;
        if (field.match == pd::Match::lpm)
            text.append("/").append(std::to_string(field.prefix_length));
        else if (field.match == pd::Match::ternary)
            text += "&0x" + field.mask;
    }
    return text;
}

std::string options(const pd::Table &table, u32 priority)
{
    return (pd::has_priority(table) ? " priority=" + std::to_string(priority) : "") +
           (table.direct_meter ? " meter=0,0,0,0,aware" : "");
}

// The images as the digits say; what the driver gets in a word of its own is zero there.
std::string key_image(const pd::Table &table, const std::vector<Given> &fields)
{
    std::string image;
    for (const Given &field : fields)
        image += field.value;
    if (table.key[0].partition_index)
        image.replace(0, fields[0].value.size(), fields[0].value.size(), '0');
    return image;
}

std::string parameters_image(const pd::Action &action, const std::vector<Given> &fields)
{
    std::string image;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const bool zero = fields.size() == action.parameters.size() && !action.parameters[i].in_image;
        image += zero ? std::string(fields[i].value.size(), '0') : fields[i].value;
    }
    return image.empty() ? "-" : image;
}

// ---- JSON of values, back into digits ----

bool is_address(const Given &field)
{
    return field.format != pd::Format::none && field.format != pd::Format::dec &&
           field.format != pd::Format::port && field.format != pd::Format::vport;
}

std::string digits_of(const cJSON *value, const Given &field)
{
    EXPECT_EQ(cJSON_IsString(value), is_address(field)) << field.name;
    if (cJSON_IsNumber(value)) {
        const auto number = static_cast<u64>(value->valuedouble);
        std::string digits(field.value.size(), '0');
        for (std::size_t i = 0; i < digits.size(); ++i)
            digits[digits.size() - 1 - i] = "0123456789abcdef"[number >> (4 * i) & 0xf];
        return digits;
    }
    if (!cJSON_IsString(value))
        return "neither number nor string";
    std::string text = value->valuestring;
    u8 bytes[16];
    if (field.width == 32 || field.width == 128) {
        const int family = field.width == 32 ? AF_INET : AF_INET6;
        return inet_pton(family, text.c_str(), bytes) == 1 ? hex(bytes, field.width / 8)
                                                           : "no address: " + text;
    }
    std::erase(text, ':');
    return text;
}

void expect_fields(const cJSON *object, const std::vector<Given> &fields)
{
    const cJSON *item = object ? object->child : nullptr;
    for (const Given &field : fields) {
        ASSERT_TRUE(item) << field.name << " is missing";
        EXPECT_EQ(item->string, field.name);
        const bool plain = field.match == pd::Match::exact;
        const cJSON *value = plain ? item : cJSON_GetObjectItem(item, "value");
        EXPECT_EQ(digits_of(value, field), field.value) << field.name;
        if (field.match == pd::Match::ternary) {
            EXPECT_EQ(digits_of(cJSON_GetObjectItem(item, "mask"), field), field.mask) << field.name;
        } else if (field.match == pd::Match::lpm) {
            EXPECT_EQ(cJSON_GetNumberValue(cJSON_GetObjectItem(item, "prefix_length")), field.prefix_length);
        }
        item = item->next;
    }
    EXPECT_FALSE(item) << item->string;
}

std::string text_at(const cJSON *object, const char *key)
{
    const char *text = cJSON_GetStringValue(cJSON_GetObjectItem(object, key));
    return text ? text : "none";
}

class ShellSweep : public Shell {
protected:
    const Folder folder;
};

TEST_F(ShellSweep, EveryEntryOfTheCatalogue)
{
    constexpr u64 seed = 3;
    SCOPED_TRACE("seed " + std::to_string(seed));
    RandomEntries random{seed};
    unsigned bindings = 0;
    for (const reflection::TableFunctions *table : reflection::tables())
        for (const reflection::ActionFunctions &action : table->actions) {
            if (!action.add)
                continue;
            ++bindings;
            const std::string name = table->row->name, action_name = action.row->action->name;
            const std::vector<Given> key = random.key(*table->row);
            const std::vector<Given> parameters = random.parameters(*action.row->action);
            const u32 priority = random.priority();
            const std::string add = "add " + name + words(key) + " : " + action_name + words(parameters) +
                                    options(*table->row, priority) + "\n";
            SCOPED_TRACE(add);

            ts_model_reset();
            const std::string trace = trace_of(add);
            EXPECT_EQ(part(trace, "match={value=", " "), key_image(*table->row, key));
            EXPECT_EQ(part(part(trace, "spec={", "}"), " data=", " "),
                      parameters_image(*action.row->action, parameters));

            const std::vector<std::string> lines = lines_of(
                output_of("entry --json " + name + " 1\nshow " + name + " --json\nvalue " + name + " 1"));
            ASSERT_EQ(lines.size(), 3u);
            EXPECT_EQ(lines[0], lines[1]);
            std::string parsed = output_of("value --json parse " + name + " " + lines[2]);
            parsed.insert(parsed.find(",\"key\"") + 1, "\"entry\":1,");
            EXPECT_EQ(parsed, lines[0] + "\n");
            const Document entry = parse(lines[0]);
            ASSERT_TRUE(entry) << lines[0];
            EXPECT_EQ(text_at(entry.get(), "table"), name);
            EXPECT_EQ(text_at(entry.get(), "action"), action_name);
            const cJSON *shown_priority = cJSON_GetObjectItem(entry.get(), "priority");
            ASSERT_EQ(shown_priority != nullptr, pd::has_priority(*table->row));
            if (shown_priority) {
                EXPECT_EQ(shown_priority->valuedouble, priority);
            }
            expect_fields(cJSON_GetObjectItem(entry.get(), "key"), key);
            expect_fields(cJSON_GetObjectItem(entry.get(), "parameters"), parameters);
            const std::string same = "2 compared, the default entry among them, 0 different\n";
            EXPECT_EQ(output_of("diff " + name).substr(0, same.size()), same);
            EXPECT_EQ(output_of("diff --all-bits " + name), same);
        }
    EXPECT_EQ(bindings, 404u);
}

// All that the model holds, without handles.
std::string state()
{
    std::string text;
    for (const reflection::TableFunctions *table : reflection::tables()) {
        const u32 handle = table->row->handle;
        const auto append = [&](pd_entry_hdl entry) {
            ts_model_entry e{};
            EXPECT_EQ(ts_model_get_entry(0, handle, entry, &e), 0u);
            text += std::string{table->row->name} + " " + hex(e.value, e.key_bytes) + "&" +
                    hex(e.mask, e.key_bytes) + " " + std::to_string(e.partition_index) + " " +
                    std::to_string(e.priority) + " " + std::to_string(e.action) + " " +
                    hex(e.data, e.data_bytes) + " " + std::to_string(e.res_count) + " " +
                    std::to_string(e.res_index) + " " + std::to_string(e.res_tag) + "\n";
        };
        append(TS_MODEL_DEFAULT_ENTRY);
        for (pd_entry_hdl entry = 0; (entry = ts_model_next_entry(0, handle, entry)) != 0;)
            append(entry);
    }
    return text;
}

// Every table with entries of every action, and with each default; a little of it deleted again.
std::string random_script(RandomEntries &random)
{
    std::string script;
    for (const reflection::TableFunctions *table : reflection::tables())
        for (const reflection::ActionFunctions &action : table->actions) {
            const std::string name = table->row->name;
            const auto body = [&] {
                return std::string{" : "} + action.row->action->name +
                       words(random.parameters(*action.row->action));
            };
            if (action.set_default_action)
                script += "default " + name + body() + "\n";
            for (int i = 0; action.add && i < 3; ++i)
                script += "add " + name + words(random.key(*table->row)) + body() +
                          options(*table->row, random.priority()) + "\n";
            if (action.add)
                script += "delete " + name + " 2\n"; // of some tables only the first
        }
    return script;
}

TEST_F(ShellSweep, ShowsSavesAndLoadsEveryTable)
{
    const std::string first = folder.file("first"), second = folder.file("second");
    for (u64 seed = 1; seed <= 3; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomEntries random{seed};
        ts_model_reset();
        run(random_script(random), {.keep_going = true}); // small keys recur

        for (const reflection::TableFunctions *table : reflection::tables()) { // columns stand in line
            if (table->row->key.empty())
                continue;
            const auto lines = lines_of(output_of(std::string{"show "} + table->row->name));
            const std::size_t column = lines[0].find("  action") + 2;
            for (std::size_t i = 1; i < lines.size(); ++i)
                EXPECT_TRUE(lines[i][column] != ' ' && lines[i][column - 1] == ' ') << lines[0] << lines[i];
        }

        output_of("save " + first);
        const std::string before = state();
        ts_model_reset();
        output_of("load " + first + "\nsave " + second);
        EXPECT_EQ(state(), before);
        EXPECT_EQ(folder.read("first"), folder.read("second"));
    }
}

TEST_F(ShellSweep, WalksTablesOfAnySizeInHandleOrder)
{
    for (const unsigned size : {0u, 1u, 256u, 257u, 513u}) {
        ts_model_reset();
        std::string script, expected, walked;
        for (unsigned i = 1; i <= size; ++i) {
            script += "add l2SmacCheck priority=" + std::to_string(size - i) + " : NoAction\n";
            expected += std::to_string(i) + " ";
        }
        for (const std::string &line : lines_of(output_of(script + "show l2SmacCheck --json")))
            walked += std::to_string(cJSON_GetObjectItem(parse(line).get(), "entry")->valueint) + " ";
        EXPECT_EQ(walked, expected);
    }
}

// Takes what is written and keeps none of it.
class CountingBuffer : public std::streambuf {
public:
    u64 lines = 0;

protected:
    std::streamsize xsputn(const char *text, std::streamsize count) override
    {
        lines += static_cast<u64>(std::count(text, text + count, '\n'));
        return count;
    }
    int_type overflow(int_type c) override
    {
        lines += c == '\n';
        return c;
    }
};

TEST_F(ShellSweep, StreamsLargeTables)
{
    constexpr u32 entries = 200000;
    const reflection::TableFunctions &table = *reflection::find_table("ipv4ShortMaskLpm");
    const reflection::ActionFunctions &action = *reflection::find_action(table, "ipv4ShortMaskLpmMiss");
    const pd::Field &dip = table.row->key[1];
    const u16 whole = 32;
    std::vector<u64> key(table.row->record_size / 8 + 1);
    auto *members = reinterpret_cast<char *>(key.data());
    std::memcpy(members + dip.twin_offset, &whole, sizeof whole);
    for (u32 i = 0; i < entries; ++i) {
        std::memcpy(members + dip.offset, &i, sizeof i);
        reflection::EntryArguments with;
        with.key = key.data();
        pd_entry_hdl entry = 0;
        ASSERT_EQ(action.add(0, {0, 0xffff}, with, &entry), 0u);
    }
    const std::string file = folder.file("saved"), save = "save " + file + " ipv4ShortMaskLpm";
    const std::pair<std::string, u64> commands[] = {
        {"show ipv4ShortMaskLpm", entries + 1}, {"show ipv4ShortMaskLpm --json", entries}, {save, 0}};
    for (const auto &[command, lines] : commands) {
        shell::TextLines source{command};
        CountingBuffer counting;
        std::ostream out{&counting}, err{&counting};
        const std::size_t before = most_live_bytes = live_bytes;
        EXPECT_EQ((shell::Session{out, err, {}}.run(source, "t")), 0);
        EXPECT_LT(most_live_bytes - before, 100000u) << command;
        EXPECT_EQ(counting.lines, lines) << command;
    }
    const std::string text = folder.read("saved");
    EXPECT_GT(std::count(text.begin(), text.end(), '\n'), entries);
}

// Whatever a session prints under --json is a document.
TEST_F(ShellSweep, PrintsOnlyJsonWhenToldSo)
{
    std::string script = "trace on\nadd l2SmacCheck priority=1 : setIllegalSmac\nwatch l2SmacCheck\n"
                         "modify l2SmacCheck 1 : NoAction\ntables\nfind l2SmacCheck priority=1\n"
                         "lookup l2SmacCheck smac=1\ncount\nproperty l2SmacCheck 1 2\n"
                         "property l2SmacCheck 1\nhelp\n";
    for (const reflection::TableFunctions *table : reflection::tables())
        script += "describe " + std::string{table->row->name} + "\n";
    for (const shell::Command *command : shell::commands())
        script += "help " + std::string{command->name()} + "\n";
    script += "echo \"quoted\" \\ \x01 back";
    const std::vector<std::string> lines = lines_of(output_of(script, {.verbose = true, .json = true}));
    EXPECT_GT(lines.size(), 2 * 158u + 30u);
    for (const std::string &line : lines)
        EXPECT_TRUE(cJSON_IsObject(parse(line).get())) << line;
    EXPECT_EQ(text_at(parse(lines.back()).get(), "echo"), "\"quoted\" \\ \x01 back");
}

} // namespace
