// The shell over the whole catalogue: random entries of every table and action are written through the
// library; the documents, value texts and saved files that tell of them must lead back to the same state.
#include <gtest/gtest.h>

#include <algorithm>
#include <cjson/cJSON.h>
#include <cstring>
#include <malloc.h>
#include <memory>

#include "commands.h"
#include "folder.h"
#include "random_entries.h"
#include "shell_fixture.h"

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

std::string text_at(const cJSON *object, const char *key)
{
    const char *text = cJSON_GetStringValue(cJSON_GetObjectItem(object, key));
    return text ? text : "none";
}

std::string text_of(const cJSON *value)
{
    return cJSON_IsString(value) ? value->valuestring
                                 : std::to_string(static_cast<u64>(cJSON_GetNumberValue(value)));
}

// The words that the fields of a document stand for.
std::string words(const cJSON *fields)
{
    std::string line;
    for (const cJSON *field = fields ? fields->child : nullptr; field; field = field->next) {
        const bool plain = !cJSON_IsObject(field);
        line += std::string{" "} + field->string + "=" +
                text_of(plain ? field : cJSON_GetObjectItem(field, "value"));
        for (const auto &[part, mark] : {std::pair{"mask", "&"}, {"prefix_length", "/"}})
            if (const cJSON *twin = plain ? nullptr : cJSON_GetObjectItem(field, part))
                line += mark + text_of(twin);
    }
    return line;
}

// The line that writes the entry of a document.
std::string add_line(const cJSON *entry, const pd::Table &table)
{
    std::string line = "add " + text_at(entry, "table") + words(cJSON_GetObjectItem(entry, "key")) + " : " +
                       text_at(entry, "action") + words(cJSON_GetObjectItem(entry, "parameters"));
    if (const cJSON *priority = cJSON_GetObjectItem(entry, "priority"))
        line += " priority=" + text_of(priority);
    return line + (table.direct_meter ? " meter=0,0,0,0,aware" : "");
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

class ShellSweep : public Shell {
protected:
    sweep::Random random;

    // Entry 1, of bits that texts show.
    void add_entry(const pd::Table &table, const reflection::ActionFunctions &action)
    {
        sweep::Bytes key = sweep::typed_key(random, table);
        for (const pd::Field &field : table.key) {
            sweep::clip(key, field.offset, field.width, {field.mask.high, field.mask.low});
            if (field.match == pd::Match::ternary)
                sweep::clip(key, field.twin_offset, field.width, {field.mask.high, field.mask.low});
        }
        const sweep::Bytes parameters = sweep::typed_parameters(random, *action.row->action);
        const pd_meter_spec meter{0, 0, 0, 0, 1};
        reflection::EntryArguments with{};
        with.key = key.data();
        with.priority = random.word();
        with.action = parameters.data();
        with.meter = &meter;
        pd_entry_hdl entry = 0;
        EXPECT_EQ(action.add(1, shell::device, with, &entry), 0u);
    }
};

TEST_F(ShellSweep, EveryEntryOfTheCatalogue)
{
    SCOPED_TRACE("seed " + std::to_string(sweep::seed));
    unsigned bindings = 0;
    for (const reflection::TableFunctions *table : reflection::tables())
        for (const reflection::ActionFunctions &action : table->actions) {
            if (!action.add)
                continue;
            ++bindings;
            const std::string name = table->row->name;
            SCOPED_TRACE(name + " : " + action.row->action->name);
            ts_model_reset();
            add_entry(*table->row, action);
            const std::string written = state();

            const std::vector<std::string> lines = lines_of(
                output_of("entry --json " + name + " 1\nshow " + name + " --json\nvalue " + name + " 1"));
            ASSERT_EQ(lines.size(), 3u);
            EXPECT_EQ(lines[0], lines[1]);
            std::string parsed = output_of("value --json parse " + name + " " + lines[2]);
            parsed.insert(parsed.find(",\"key\"") + 1, "\"entry\":1,");
            EXPECT_EQ(parsed, lines[0] + "\n");
            const std::string same = "2 compared, the default entry among them, 0 different\n";
            EXPECT_EQ(output_of("diff " + name).substr(0, same.size()), same);
            EXPECT_EQ(output_of("diff --all-bits " + name), same);

            ts_model_reset();
            output_of(add_line(parse(lines[0]).get(), *table->row));
            EXPECT_EQ(state(), written) << lines[0];
        }
    EXPECT_EQ(bindings, 404u);
}

TEST_F(ShellSweep, ShowsSavesAndLoadsEveryTable)
{
    SCOPED_TRACE("seed " + std::to_string(sweep::seed));
    sweep::write_everything(random);
    for (const reflection::TableFunctions *table : reflection::tables()) { // columns stand in line
        if (table->row->key.empty())
            continue;
        const auto lines = lines_of(output_of(std::string{"show "} + table->row->name));
        const std::size_t column = lines[0].find("  action") + 2;
        for (std::size_t i = 1; i < lines.size(); ++i)
            EXPECT_TRUE(lines[i][column] != ' ' && lines[i][column - 1] == ' ') << lines[0] << lines[i];
    }
    const std::string saved = output_of("save -"), before = state();
    ts_model_reset();
    EXPECT_EQ(output_of(saved + "save -"), saved);
    EXPECT_EQ(state(), before);
}

// Takes what is written and keeps none of it, but watches how much memory is in use.
class CountingBuffer : public std::streambuf {
public:
    u64 lines = 0;
    std::size_t most_bytes = 0;

protected:
    std::streamsize xsputn(const char *text, std::streamsize count) override
    {
        std::for_each_n(text, count, [this](char c) { overflow(c); });
        return count;
    }
    int_type overflow(int_type c) override
    {
        if (c == '\n' && lines++ % 4096 == 0)
            most_bytes = std::max(most_bytes, mallinfo2().uordblks);
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
    const std::pair<std::string, u64> commands[] = {{"show ipv4ShortMaskLpm", entries + 1},
                                                    {"show ipv4ShortMaskLpm --json", entries},
                                                    {"save - ipv4ShortMaskLpm", entries + 2}};
    for (const auto &[command, lines] : commands) {
        shell::TextLines source{command};
        CountingBuffer counting;
        std::ostream out{&counting}, err{&counting};
        const std::size_t before = mallinfo2().uordblks;
        EXPECT_EQ((shell::Session{out, err, {}}.run(source, "t")), 0);
        EXPECT_LT(counting.most_bytes, before + 200000) << command;
        EXPECT_EQ(counting.lines, lines) << command;
    }
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

// ---- Where a test has to reach past the shell: hardware that differs, and a refusal ----

TEST_F(Shell, ReadsFromTheHardwareWhenToldSo)
{
    output_of("member add lagPortActionProfile : setLagPort egrL2AintfPort=11");
    const u8 port[] = {0, 99};
    const reflection::ProfileFunctions &profile = *reflection::find_profile("lagPortActionProfile");
    const u32 action = reflection::find_action(profile, "setLagPort")->row->handle;
    ASSERT_EQ(ts_model_set_hardware_member(0, profile.row->action_table, 1, action, port, sizeof port), 0u);
    const std::string show = "member show lagPortActionProfile 1";
    EXPECT_NE(output_of(show + " --hw").find(" egrL2AintfPort=99 "), std::string::npos);
    EXPECT_NE(output_of(show).find(" egrL2AintfPort=11 "), std::string::npos);
    const u8 set = 1;
    ts_model_set_hardware_register(0, 0x6000001, 8, 2, &set, 1);
    EXPECT_EQ(output_of("register read ingStpCheckData 8\nregister read ingStpCheckData 8 --hw\n"
                        "register sync ingStpCheckData\nregister read ingStpCheckData 8"),
              "8: 0 0 0 0\n8: 0 0 1 0\n8: 0 0 1 0\n");
}

TEST_F(Shell, RefusedRestartLeavesTheState)
{
    while_refused("pipe_mgr_hitless_ha_restore_virtual_dev_state", TS_MODEL_UNKNOWN_OBJECT, [] {
        const Outcome refused =
            run("member add lagPortActionProfile p1 : setLagPort egrL2AintfPort=11\nrestart\n"
                "add lagGroup priority=1 : member p1",
                {.keep_going = true});
        EXPECT_EQ(refused.err, "t:2:1: the driver refused: no such object (status 4)\nt: 1 bad line\n")
            << "an entry finds its member, so the state is there again";
    });
}

} // namespace
