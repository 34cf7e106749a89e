// Tests of texts: what a function wrote into a buffer of canaries or to a descriptor, and a driver that
// answers with the entries of random records.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "decoder.h"
#include "encoder.h"
#include "pd.h"
#include "random_records.h"
#include "recorder.h"
#include "reflection.h"
#include "text_formatter.h"

#define PD(name) p4_pd_tessel_switch_##name

namespace texts {

using sweep::Bytes;

inline constexpr std::size_t buffer_bytes = 4096;
inline constexpr char canary = '\xa5';

// `write(buf)` gives a length. Behind the text there is its NUL and nothing; without a text there is no NUL
// either.
template <typename Write>
std::string text_of(const Write &write)
{
    std::string buffer(buffer_bytes, canary);
    const u32 length = write(buffer.data());
    const std::string text = buffer.substr(0, length);
    EXPECT_EQ(text.find('\0'), std::string::npos) << text;
    const std::size_t end = length ? length + 1 : 0;
    EXPECT_TRUE(length == 0 || buffer[length] == '\0') << text;
    EXPECT_EQ(buffer.find_first_not_of(canary, end), std::string::npos) << text;
    return text;
}

// What `compare(msg)` tells; "equal <result>", with nothing written, when that is not 0.
template <typename Compare>
std::string difference_of(const Compare &compare)
{
    u32 result = 0;
    const std::string message = text_of([&](char *msg) {
        result = compare(msg);
        return result ? 0 : static_cast<u32>(std::strlen(msg));
    });
    return result ? "equal " + std::to_string(result) : message;
}

using Printed = std::pair<std::string, u32>; // and what was returned

// What `print(fd)` wrote. No text is longer than what a pipe holds.
template <typename Print>
Printed printed_by(const Print &print)
{
    int ends[2];
    if (pipe(ends) != 0)
        return {"no pipe", 0};
    Printed printed{"", static_cast<u32>(print(ends[1]))};
    close(ends[1]);
    char buffer[256];
    for (ssize_t size; (size = read(ends[0], buffer, sizeof buffer)) > 0;)
        printed.first.append(buffer, static_cast<std::size_t>(size));
    close(ends[0]);
    return printed;
}

// A member of a record; the first two bytes of a wide one.
inline void set(Bytes &record, const formatter::Slot &slot, u32 value)
{
    u8 *member = &record[slot.offset];
    if (slot.width == 128)
        member[0] = static_cast<u8>(value >> 8), member[1] = static_cast<u8>(value);
    else
        std::memcpy(member, &value, sweep::member_size(slot.width)); // the low bytes come first
}

// `row`: a table or an action.
template <typename Row>
void set(Bytes &record, const Row &row, const std::string &name, u32 value)
{
    for (const formatter::Slot &slot : formatter::slots_of(row))
        if (slot.name == name)
            return set(record, slot, value);
    ADD_FAILURE() << row.name << " has no " << name;
}

// The line of a call that reads this entry.
inline void expect_read(const std::string &line, pd_sess_hdl sess, u32 device, u32 table, pd_entry_hdl entry,
                        u8 from_hw)
{
    std::string begin =
        recorder::line("pipe_mgr_get_entry", sess, table, pd_dev_target{device, 0xffff}, entry, "");
    begin.pop_back();
    EXPECT_TRUE(line.starts_with(begin) && line.ends_with(recorder::line("}, ", from_hw, 1, 0).erase(3, 1)))
        << line;
}

inline void answer_action(recorder::Answer &answer, const pd::Binding &binding, const Bytes &parameters)
{
    answer.action = binding.handle;
    answer.action_kind = 1;
    std::ranges::copy(encoder::encode_data(*binding.action, parameters.data()), answer.data.begin());
}

// What comes back of a record that was written.
inline Bytes key_back(const pd::Table &table, const Bytes &key)
{
    Bytes back(key.size());
    decoder::read_back_key(back.data(), table, key.data());
    return back;
}

inline Bytes parameters_back(const pd::Action &action, const Bytes &parameters)
{
    Bytes back(parameters.size());
    decoder::read_back_parameters(back.data(), action, parameters.data(), {});
    return back;
}

class Texts : public testing::Test {
protected:
    sweep::Random random;

    void SetUp() override { recorder::reset(); }

    // Runs `check(table)` for all 158.
    template <typename Check>
    void each_table(const Check &check)
    {
        ASSERT_EQ(reflection::tables().size(), 158u);
        for (const reflection::TableFunctions *table : reflection::tables()) {
            SCOPED_TRACE(testing::Message() << table->row->name << " seed " << sweep::seed);
            check(*table);
            if (HasFailure())
                return;
        }
    }

    // Runs `check(action, functions)` for all 298.
    template <typename Check>
    void each_action(const Check &check)
    {
        ASSERT_EQ(reflection::actions().size(), 298u);
        ASSERT_EQ(reflection::action_texts().size(), 298u);
        for (std::size_t i = 0; i < 298; ++i) {
            SCOPED_TRACE(testing::Message() << reflection::actions()[i]->name << " seed " << sweep::seed);
            check(*reflection::actions()[i], reflection::action_texts()[i]);
            if (HasFailure())
                return;
        }
    }
};

} // namespace texts
