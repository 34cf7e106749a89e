// The shell's reading half: what was written is read back, shown, saved, loaded and watched.
#include <gtest/gtest.h>

#include <algorithm>
#include <arpa/inet.h>
#include <cjson/cJSON.h>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <malloc.h>
#include <memory>
#include <new>
#include <random>
#include <unistd.h>
#include <vector>

#include "reflection.h"
#include "shell_fixture.h"

// ---- The memory that C++ code holds ----

namespace {

std::size_t live_bytes = 0;
std::size_t most_live_bytes = 0;

} // namespace

void *operator new(std::size_t size)
{
    void *block = std::malloc(size);
    if (!block)
        throw std::bad_alloc{};
    live_bytes += malloc_usable_size(block);
    most_live_bytes = std::max(most_live_bytes, live_bytes);
    return block;
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

// A folder that goes when the test does.
class Folder {
public:
    Folder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "shell.XXXXXX").string();
        path_ = mkdtemp(name.data());
    }
    ~Folder() { std::filesystem::remove_all(path_); }
    Folder(const Folder &) = delete;
    Folder &operator=(const Folder &) = delete;

    std::string file(const std::string &name) const { return (path_ / name).string(); }
    std::string write(const std::string &name, const std::string &text) const
    {
        std::ofstream{path_ / name} << text;
        return file(name);
    }
    std::string read(const std::string &name) const
    {
        std::ifstream in{path_ / name};
        return {std::istreambuf_iterator<char>{in}, {}};
    }
    long files() const { return std::distance(std::filesystem::directory_iterator{path_}, {}); }

private:
    std::filesystem::path path_;
};

// ---- Random entries ----

// A field or parameter, whole MAC addresses as one, with the digits that it was given.
struct Given {
    std::string name;
    unsigned width;
    pd::Match match;
    pd::Format format;
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
            append(fields, {field.display, field.width, field.match, field.format, {}, {}, 0});
        for (Given &field : fields)
            fill(field);
        return fields;
    }

    std::vector<Given> parameters(const pd::Action &action)
    {
        std::vector<Given> fields;
        for (const pd::Parameter &parameter : action.parameters)
            append(fields, {parameter.name, parameter.width, pd::Match::exact, parameter.format, {}, {}, 0});
        for (std::size_t i = 0; i < fields.size(); ++i) {
            fill(fields[i]);
            if (fields.size() == action.parameters.size() && action.parameters[i].index_of)
                fields[i].value.replace(0, 4, "0000"); // an entry takes 16 bits of an index
        }
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
        field.value = digits(field.width);
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

class ShellReading : public Shell {};

// ---- Entries ----

TEST_F(ShellReading, reads_every_entry_of_the_catalogue_back)
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
            const std::string name = table->row->name;
            const std::vector<Given> key = random.key(*table->row);
            const std::vector<Given> parameters = random.parameters(*action.row->action);
            const u32 priority = random.priority();
            const std::string add = "add " + name + words(key) + " : " + action.row->action->name +
                                    words(parameters) + options(*table->row, priority) + "\n";
            SCOPED_TRACE(add);
            ts_model_reset();
            const std::string output =
                output_of(add + "entry --json " + name + " 1\nshow " + name + " --json");
            const std::vector<std::string> lines = lines_of(output);
            ASSERT_EQ(lines.size(), 2u);
            EXPECT_EQ(lines[0], lines[1]);
            const Document entry = parse(lines[0]);
            ASSERT_TRUE(entry) << lines[0];
            EXPECT_EQ(text_at(entry.get(), "table"), name);
            EXPECT_EQ(text_at(entry.get(), "action"), action.row->action->name);
            const cJSON *shown_priority = cJSON_GetObjectItem(entry.get(), "priority");
            ASSERT_EQ(shown_priority != nullptr, pd::has_priority(*table->row));
            if (shown_priority) {
                EXPECT_EQ(shown_priority->valuedouble, priority);
            }
            expect_fields(cJSON_GetObjectItem(entry.get(), "key"), key);
            expect_fields(cJSON_GetObjectItem(entry.get(), "parameters"), parameters);
        }
    EXPECT_EQ(bindings, 404u);
}

TEST_F(ShellReading, shows_entries_as_people_write_them)
{
    const std::string routes =
        "add ipv4ShortMaskLpm vrfId=5 dip=10.1.2.3/20 : setNextHop nextHop=7\n"
        "add ipv4ShortMaskLpm vrfId=255 dip=0/0 : ipv4ShortMaskLpmMiss\n"
        "add ipv4ShortMaskLpm vrfId=0 dip=192.168.100.200 : setEcmp ecmpGroup=0xffffffff\n";
    EXPECT_EQ(output_of(routes + "show ipv4ShortMaskLpm"),
              "     entry  vrfId  dip                 action                parameters\n"
              "         1      5  10.1.0.0/20         setNextHop            nextHop=7\n"
              "         2    255  0.0.0.0/0           ipv4ShortMaskLpmMiss\n"
              "         3      0  192.168.100.200/32  setEcmp               ecmpGroup=4294967295\n");
    EXPECT_EQ(output_of("show l2SmacCheck"),
              "     entry  smac                                   priority  action          parameters\n");
    const std::string smacs = "add l2SmacCheck smac=01:80:c2:00:00:0f/44 priority=10 : setIllegalSmac\n"
                              "add l2SmacCheck smac=0x0a0b0c0d0e0f priority=4294967295 : NoAction\n"
                              "add l2SmacCheck smacOui=ff:ff:ff smacStation=1&0x10001 priority=0 : NoAction\n"
                              "add l2SmacCheck priority=3 : NoAction\n";
    EXPECT_EQ(output_of(smacs + "show l2SmacCheck"),
              "     entry  smac                                   priority  action          parameters\n"
              "         1  01:80:c2:00:00:00/44                         10  setIllegalSmac\n"
              "         2  0a:0b:0c:0d:0e:0f                    4294967295  NoAction\n"
              "         3  ff:ff:ff:00:00:01&ff:ff:ff:01:00:01           0  NoAction\n"
              "         4  *                                             3  NoAction\n");
    EXPECT_EQ(output_of("add ipv6ShortMaskLpm vrfId=9 dip=2001:db8:0:1::/64 : setNextHop nextHop=1\n"
                        "entry ipv6ShortMaskLpm 1"),
              "entry 1 of ipv6ShortMaskLpm\n"
              "  vrfId    9\n"
              "  dip      2001:db8:0:1::/64\n"
              "  action   setNextHop\n"
              "  nextHop  1\n");
    EXPECT_EQ(
        output_of("add nextHop0 nextHop=7 : setNextHopDetails dmac=00:11:22:33:44:55 domain=20\n"
                  "entry nextHop0 1"),
        "entry 1 of nextHop0\n  nextHop  7\n  action   setNextHopDetails\n  dmac     00:11:22:33:44:55\n"
        "  domain   20\n");
}

TEST_F(ShellReading, keeps_columns_in_line_whatever_the_values)
{
    constexpr u64 seed = 4;
    SCOPED_TRACE("seed " + std::to_string(seed));
    RandomEntries random{seed};
    for (const reflection::TableFunctions *table : reflection::tables()) {
        if (table->actions.empty() || !table->actions[0].add)
            continue;
        const std::string action = table->actions[0].row->action->name;
        std::string script;
        for (int i = 0; i < 8; ++i)
            script += "add " + std::string{table->row->name} + words(random.key(*table->row)) + " : " +
                      action + words(random.parameters(*table->actions[0].row->action)) +
                      options(*table->row, random.priority()) + "\n";
        const auto lines =
            lines_of(run(script + "show " + table->row->name, {.keep_going = true}).out); // keys may recur
        ASSERT_GE(lines.size(), 2u) << script;
        const std::size_t column = lines[0].find("  action") + 2;
        for (std::size_t i = 1; i < lines.size(); ++i)
            EXPECT_EQ(lines[i].compare(column, action.size(), action), 0) << lines[0] << "\n" << lines[i];
    }
}

TEST_F(ShellReading, walks_tables_of_any_size_in_handle_order)
{
    constexpr unsigned sizes[] = {0, 1, 2, 256, 257, 258, 513};
    for (const unsigned size : sizes) {
        ts_model_reset();
        std::string script, expected;
        for (unsigned i = 0; i < size; ++i) {
            script += "add l2SmacCheck priority=" + std::to_string(size - i) + " : NoAction\n";
            expected += std::to_string(i + 1) + " ";
        }
        std::string walked;
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

TEST_F(ShellReading, streams_large_tables)
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
    const Folder folder;
    const std::string save = "save " + folder.file("saved") + " ipv4ShortMaskLpm";
    const std::pair<std::string, u64> commands[] = {
        {"show ipv4ShortMaskLpm", entries + 1}, {"show ipv4ShortMaskLpm --json", entries}, {save, 0}};
    for (const auto &[command, lines] : commands) {
        std::istringstream in{command};
        shell::StreamLines source{in};
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

TEST_F(ShellReading, reads_the_hardware_when_asked_to)
{
    const reflection::TableFunctions &table = *reflection::find_table("nextHop0");
    const u8 data[] = {0, 0, 0, 0, 0, 9, 0, 8};
    const std::string add = "add nextHop0 nextHop=7 : setNextHopDetails dmac=0 domain=20\n";
    output_of(add);
    for (const pd_entry_hdl entry : {pd_entry_hdl{1}, pd_entry_hdl{TS_MODEL_DEFAULT_ENTRY}})
        ASSERT_EQ(ts_model_set_hardware_action(
                      0, table.row->handle, entry,
                      reflection::find_action(table, "setNextHopDetails")->row->handle, data, sizeof data),
                  0u);
    const std::string head =
        R"({"table":"nextHop0","entry":1,"key":{"nextHop":7},"action":"setNextHopDetails",)";
    const std::string software = head + R"("parameters":{"dmac":"00:00:00:00:00:00","domain":20}})" + "\n";
    const std::string hardware = head + R"("parameters":{"dmac":"00:00:00:00:00:09","domain":8}})" + "\n";
    EXPECT_EQ(output_of("show --json nextHop0"), software);
    EXPECT_EQ(output_of("show --json nextHop0 --hw"), hardware);
    EXPECT_EQ(output_of("entry --json nextHop0 1"), software);
    EXPECT_EQ(output_of("entry --hw --json nextHop0 1"), hardware);
}

// ---- Default entries, properties, updates ----

TEST_F(ShellReading, sets_reads_and_resets_defaults)
{
    const std::string first = output_of("default normalizeDscp");
    EXPECT_EQ(output_of("default normalizeDscp : setDscpForIpv6Pkt\ndefault normalizeDscp\n"
                        "default normalizeDscp --json\nreset normalizeDscp\ndefault normalizeDscp"),
              "setDscpForIpv6Pkt\n"
              R"({"table":"normalizeDscp","action":"setDscpForIpv6Pkt","parameters":{}})"
              "\n" +
                  first);
    EXPECT_EQ(output_of("default ingMtu : setMinMtuId mtuId=3\ndefault ingMtu"), "setMinMtuId mtuId=3\n");
    EXPECT_EQ(output_of("entry ingMtu 0x7fffffff\nentry --json ingMtu 0x7fffffff"),
              "default entry of ingMtu\n  action  setMinMtuId\n  mtuId   3\n"
              R"({"table":"ingMtu","action":"setMinMtuId","parameters":{"mtuId":3}})"
              "\n");
    EXPECT_EQ(output_of("default ingressPortMapping"),
              "setPhase0 ingVPort=0 nativeAintf=0 switchPort=0 physicalPort=0\n");
    EXPECT_EQ(output_of("default queueCounters"), "countEgressQueue\n") << "a table without a key";
    const std::string meter = "resources=[handle=0x5000001 index=0 tag=";
    const std::string trace = "trace on\ndefault l2LookupMiss : NoAction";
    EXPECT_NE(output_of(trace).find(meter + "2"), std::string::npos);
    EXPECT_NE(output_of(trace + " meter=1,2,3,4,aware").find(meter + "1"), std::string::npos);
}

TEST_F(ShellReading, sets_and_reads_properties)
{
    EXPECT_EQ(output_of("property l2SmacCheck 1 0xffffffff 6\nproperty l2SmacCheck 1\n"
                        "property l2SmacCheck 1 --json\nproperty l2SmacCheck 1 3\nproperty l2SmacCheck 1"),
              "property 1: 4294967295 6\n"
              R"({"table":"l2SmacCheck","property":1,"value":4294967295,"second_value":6})"
              "\nproperty 1: 3 0\n");
    EXPECT_EQ(run("property l2SmacCheck 77").err, "t:1:1: the driver refused: no such object (status 4)\n");
}

TEST_F(ShellReading, watches_updates)
{
    const std::string changes = "add l2SmacCheck priority=1 : NoAction\n"
                                "modify l2SmacCheck 1 : setIllegalSmac\n"
                                "echo between\n"
                                "delete l2SmacCheck 1\n"
                                "default l2SmacCheck : NoAction\n"
                                "reset l2SmacCheck\nreset ingMtu\n";
    const std::string rest = "watch l2SmacCheck off\ndefault l2SmacCheck : NoAction\nwatch l2SmacCheck off\n";
    EXPECT_EQ(output_of("watch l2SmacCheck\nwatch l2SmacCheck on\n" + changes + rest),
              "  l2SmacCheck: entry 1 added: NoAction\n"
              "  l2SmacCheck: entry 1 modified: setIllegalSmac\n"
              "between\n"
              "  l2SmacCheck: entry 1 deleted: setIllegalSmac\n"
              "  l2SmacCheck: default entry set: NoAction\n"
              "  l2SmacCheck: default entry reset: NoAction\n");
    EXPECT_EQ(output_of("watch l2SmacCheck\nadd l2SmacCheck priority=1 : NoAction\nreset l2SmacCheck\n",
                        {.json = true}),
              R"({"update":"added","table":"l2SmacCheck","entry":2,"action":"NoAction"})"
              "\n"
              R"({"update":"default_reset","table":"l2SmacCheck","action":"NoAction"})"
              "\n");
    EXPECT_EQ(output_of("watch ingMtu\nreset l2SmacCheck"), "") << "the end of a session ends its watches";
}

// ---- Files ----

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

TEST_F(ShellReading, loads_what_it_saved)
{
    const Folder folder;
    for (u64 seed = 1; seed <= 3; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomEntries random{seed};
        std::string script;
        for (const reflection::TableFunctions *table : reflection::tables())
            for (const reflection::ActionFunctions &action : table->actions) {
                const std::string name = table->row->name;
                const std::string part = std::string{" : "} + action.row->action->name;
                if (action.set_default_action)
                    script += "default " + name + part + words(random.parameters(*action.row->action)) + "\n";
                for (int i = 0; action.add && i < 3; ++i)
                    script += "add " + name + words(random.key(*table->row)) + part +
                              words(random.parameters(*action.row->action)) +
                              options(*table->row, random.priority()) + "\n";
                if (action.add)
                    script += "delete " + name + " 2\n"; // of some tables only the first
            }
        ts_model_reset();
        run(script, {.keep_going = true}); // small keys recur
        output_of("save " + folder.file("first"));
        const std::string before = state();
        ts_model_reset();
        output_of("load " + folder.file("first") + "\nsave " + folder.file("second"));
        EXPECT_EQ(state(), before);
        EXPECT_EQ(folder.read("first"), folder.read("second"));
        ts_model_reset();
        EXPECT_NE(state(), before);
    }
}

TEST_F(ShellReading, saves_chosen_tables_as_commands)
{
    const Folder folder;
    const std::string file = folder.write("saved", "older");
    output_of("add ipv4ShortMaskLpm vrfId=5 dip=10.1.2.3/20 : setNextHop nextHop=7\n"
              "add l2SmacCheck smac=01:80:c2:00:00:00/44 priority=2 : setIllegalSmac\n"
              "add l2SmacCheck priority=1 : NoAction\n"
              "add haloXformIpv4Dip dip=10.0.0.1&255.0.0.255 priority=9 : NoAction\n"
              "add l2LookupMiss priority=1 : NoAction meter=1,2,3,4,aware\n"
              "save " +
              file + " l2SmacCheck ipv4ShortMaskLpm haloXformIpv4Dip l2LookupMiss ingressPortMapping");
    EXPECT_EQ(folder.read("saved"), "# Written by save. Load it into empty tables.\n"
                                    "default l2SmacCheck : NoAction\n"
                                    "add l2SmacCheck smac=01:80:c2:00:00:00/44 priority=2 : setIllegalSmac\n"
                                    "add l2SmacCheck priority=1 : NoAction\n"
                                    "default ipv4ShortMaskLpm : ipv4ShortMaskLpmMiss\n"
                                    "add ipv4ShortMaskLpm vrfId=5 dip=10.1.0.0/20 : setNextHop nextHop=7\n"
                                    "default haloXformIpv4Dip : NoAction\n"
                                    "add haloXformIpv4Dip dip=10.0.0.1&255.0.0.255 priority=9 : NoAction\n"
                                    "default l2LookupMiss : NoAction\n"
                                    "add l2LookupMiss priority=1 : NoAction meter=1,2,3,4,aware\n");
    EXPECT_EQ(folder.files(), 1);
}

TEST_F(ShellReading, leaves_no_half_written_file)
{
    const Folder folder;
    const std::string file = folder.write("saved", "older");
    output_of("add l2SmacCheck priority=1 : NoAction");
    for (const char *operation :
         {"pipe_mgr_get_entry", "pipe_mgr_get_next_entry_handles", "pipe_mgr_table_get_default_entry"}) {
        ts_model_fail_operation(operation, 4);
        EXPECT_EQ(run("save " + file).err, "t:1:1: the driver refused: no such object (status 4)\n");
        ts_model_fail_operation(operation, 0);
    }
    EXPECT_EQ(folder.read("saved"), "older");
    EXPECT_EQ(folder.files(), 1);
    const std::string nowhere = folder.file("no/where");
    expect_bad("save @" + nowhere, "'" + nowhere + "' cannot be written: No such file or directory");
    expect_bad("save @/dev", "'/dev' cannot be written: it is a directory");
}

TEST_F(ShellReading, tells_places_in_loaded_files)
{
    const Folder folder;
    const std::string inner = folder.write("inner", "echo in\n  bad\necho still\n");
    const std::string outer = folder.write("outer", "load " + inner + "\necho out\n");
    const std::string message = inner + ":2:3: unknown command 'bad'; help lists the commands\n";
    const std::string script = "load " + outer + "\necho last\n";

    const Outcome stopped = run(script);
    EXPECT_EQ(stopped.status, 1);
    EXPECT_EQ(stopped.out, "in\n");
    EXPECT_EQ(stopped.err, message);
    const Outcome whole = run(script, {.keep_going = true});
    EXPECT_EQ(whole.status, 1);
    EXPECT_EQ(whole.out, "in\nstill\nout\nlast\n");
    EXPECT_EQ(whole.err, message + "t: 1 bad line\n");
    const Outcome person = run(script, {.interactive = true});
    EXPECT_EQ(person.status, 0);
    EXPECT_EQ(person.out, "in\nlast\n") << "the file ends, the session does not";
    EXPECT_EQ(person.err, message);

    const std::string quits = folder.write("quits", "echo a\nquit\necho b\n");
    EXPECT_EQ(output_of("load " + quits + "\necho c\n"), "a\n");
    EXPECT_EQ(output_of("load " + folder.write("twice", "echo x\n") + "\nload " + folder.file("twice")),
              "x\nx\n")
        << "one behind the other is no nesting";
}

TEST_F(ShellReading, refuses_files_that_cannot_be_loaded)
{
    const Folder folder;
    const std::string self = folder.file("self");
    const std::string round_about =
        folder.file("../" + std::filesystem::path{self}.parent_path().filename().string() + "/self");
    folder.write("self", "echo once\nload " + folder.file("other") + "\n");
    folder.write("other", "load " + round_about + "\n");
    const Outcome outcome = run("load " + self);
    EXPECT_EQ(outcome.out, "once\n");
    EXPECT_EQ(outcome.err, folder.file("other") + ":1:6: '" + round_about.substr(0, 60) +
                               (round_about.size() > 60 ? "..." : "") + "' would load itself\n");
    expect_bad("load @/nonexistent/file", "'/nonexistent/file' cannot be opened");
    expect_bad("load @/", "'/' is a directory");
    expect_bad("load@", "missing file name");
}

// ---- JSON and errors ----

TEST_F(ShellReading, prints_only_json_when_told_so)
{
    const std::string output = output_of("trace on\nadd l2SmacCheck priority=1 : setIllegalSmac\n"
                                         "watch l2SmacCheck\nmodify l2SmacCheck 1 : NoAction\n"
                                         "tables\ndescribe l2DmacClassify\ndescribe lagGroup\n"
                                         "find l2SmacCheck priority=1\nlookup l2SmacCheck smac=1\n"
                                         "show l2SmacCheck\nentry l2SmacCheck 1\ndefault l2SmacCheck\n"
                                         "count\ncount l2SmacCheck\nproperty l2SmacCheck 1 2\n"
                                         "property l2SmacCheck 1\nhelp\nhelp add\n"
                                         "echo \"quoted\" \\ \x01 back",
                                         {.verbose = true, .json = true});
    const std::vector<std::string> lines = lines_of(output);
    EXPECT_GT(lines.size(), 158u + 20u);
    for (const std::string &line : lines)
        EXPECT_TRUE(cJSON_IsObject(parse(line).get())) << line;
    EXPECT_EQ(text_at(parse(lines.back()).get(), "echo"), "\"quoted\" \\ \x01 back");
}

TEST_F(ShellReading, writes_the_documented_json)
{
    const std::string add = "add l2SmacCheck priority=1 : NoAction\n";
    EXPECT_EQ(output_of(add +
                        "find l2SmacCheck priority=1 --json\ncount --json\n"
                        "lookup --json l2SmacCheck smac=1\nlookup --json l2Lookup dmac=1 egrL2Domain=1\n"
                        "show --json l2SmacCheck"),
              R"({"table":"l2SmacCheck","entry":1}
{"table":"l2SmacCheck","entries":1}
{"entries":1}
{"table":"l2SmacCheck","hit":true,"entry":1,"action":"NoAction","candidates":1,"why":"the only match, priority 1"}
{"table":"l2Lookup","hit":false}
{"table":"l2SmacCheck","entry":1,"key":{"smac":{"value":"00:00:00:00:00:00","mask":"00:00:00:00:00:00"}},"priority":1,"action":"NoAction","parameters":{}}
)");
    const Document table = parse(output_of("describe --json ipv4FinalResolve0"));
    ASSERT_TRUE(table);
    EXPECT_EQ(text_at(table.get(), "key_kind"), "lpm");
    EXPECT_EQ(cJSON_GetObjectItem(table.get(), "handle")->valuedouble, 0x100003c);
    EXPECT_EQ(cJSON_GetArraySize(cJSON_GetObjectItem(table.get(), "actions")), 5);
    const cJSON *dip = cJSON_GetArrayItem(cJSON_GetObjectItem(table.get(), "key"), 1);
    EXPECT_EQ(text_at(dip, "member"), "ingIpv4_dip");
    EXPECT_EQ(text_at(dip, "match"), "lpm");
    EXPECT_EQ(cJSON_GetObjectItem(dip, "width")->valueint, 32);
}

TEST_F(ShellReading, refuses_bad_lines)
{
    const std::string keyless = "queueCounters has no key, and so no entries: only its default action runs";
    expect_bad("show @queueCounters", keyless);
    expect_bad("entry @queueCounters 1", keyless);
    expect_bad("show l2SmacCheck @all", "unexpected 'all': the command ends before it");
    expect_bad("show @--all l2SmacCheck", "unknown option '--all': show takes --json, --hw");
    expect_bad("count l2SmacCheck @--hw", "unknown option '--hw': count takes --json");
    expect_bad("entry l2SmacCheck @1x", "entry handle: '1x' is no number from 0 to 4294967295");
    expect_bad("entry l2SmacCheck@", "missing entry handle");
    expect_bad("entry --json l2SmacCheck @--", "unknown option '--': entry takes --json, --hw");
    expect_bad("default l2SmacCheck @NoAction", "expected ':' before the action instead of 'NoAction'");
    expect_bad("default l2SmacCheck : @setIllegalSmac",
               "unknown action 'setIllegalSmac': l2SmacCheck has NoAction as default");
    expect_bad("default ingressPortMapping : @setPhase0",
               "the default action of ingressPortMapping cannot be set");
    expect_bad("default ingMtu : setMinMtuId@", "missing parameter of setMinMtuId: mtuId");
    expect_bad("reset l2SmacCheck @now", "unexpected 'now': the command ends before it");
    expect_bad("property l2SmacCheck@", "missing property number");
    expect_bad("property l2SmacCheck 1 2 @x", "second value: 'x' is no number from 0 to 4294967295");
    expect_bad("watch l2SmacCheck @maybe", "'maybe' is neither 'on' nor 'off'");
    expect_bad("save@", "missing file name");
    expect_bad("save /nowhere/at/all l2SmacCheck @l2SmacCheck", "'l2SmacCheck' is named twice");
    EXPECT_EQ(run("entry l2SmacCheck 7").err, "t:1:1: the driver refused: no such object (status 4)\n");
}

} // namespace
