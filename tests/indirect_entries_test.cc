// Entries that point at members and groups: written with the action that the store tells, and read back.
#include "call_log.h"
#include "decoder.h"

namespace {

using namespace call_log;
using reflection::IndirectFunctions;
using reflection::ReferenceFunctions;
using reflection::TableFunctions;
using sweep::Bytes;

// What an entry points at, as driver and store have it.
struct Kind {
    u8 number;
    const char *get_act;
    const char *get_res;
    ReferenceFunctions IndirectFunctions::*functions;
};
constexpr Kind kinds[] = {
    {2, "p4_pd_ms_get_mbr_act", "p4_pd_ms_mbr_get_res", &IndirectFunctions::member},
    {4, "p4_pd_ms_get_grp_act", "p4_pd_ms_grp_get_res", &IndirectFunctions::group},
};

// Every place that an entry is read into.
struct Outputs {
    Outputs() { key.fill(0xa5); }

    std::array<u8, 64> key;
    u32 priority = 0xa5a5a5a5;
    u8 is_default = 0xa5;
    reflection::ReferenceResults to{0xa5, 0xa5, 0xa5a5a5a5, 0xa5a5a5a5};

    reflection::EntryResults results() { return {key.data(), &priority, &is_default}; }
};

void expect_same(const Outputs &found, const Outputs &expected)
{
    EXPECT_EQ(recorder::hex(found.key.data(), 64), recorder::hex(expected.key.data(), 64));
    EXPECT_EQ(found.priority, expected.priority);
    EXPECT_EQ(found.is_default, expected.is_default);
    EXPECT_EQ(found.to.has_member, expected.to.has_member);
    EXPECT_EQ(found.to.has_group, expected.to.has_group);
    EXPECT_EQ(found.to.member, expected.to.member);
    EXPECT_EQ(found.to.group, expected.to.group);
}

class IndirectEntries : public CallLog {
protected:
    Bytes key;
    reflection::EntryArguments with;
    u32 entry = 0;

    // Runs `check(table, state)` for each table, several times.
    template <typename Check>
    void each_table(const Check &check)
    {
        u32 indirect = 0;
        for (const TableFunctions *table : reflection::tables())
            indirect += table->indirect != nullptr;
        EXPECT_EQ(indirect, profiles.size());
        for (std::size_t i = 0; i < profiles.size(); ++i) {
            const TableFunctions *table = reflection::find_table(profiles[i].user);
            ASSERT_TRUE(table && table->indirect) << profiles[i].user;
            SCOPED_TRACE(table->row->name);
            EXPECT_EQ(table->indirect->profile->row->name, profiles[i].name);
            for (int round = 0; round < 8; ++round) {
                scramble_arguments();
                entry = random.word();
                key = random.key(*table->row);
                with.key = key.data();
                with.priority = random.word();
                check(*table, first_state + i);
            }
        }
    }

    std::string key_text(const pd::Table &table) const
    {
        return encoder::match_text(table, key.data(), with.priority);
    }

    // The kind and the one handle, and nothing else.
    std::string referring(const Kind &kind) const
    {
        pipe_action_spec spec{};
        spec.action_kind = kind.number;
        (kind.number == 2 ? spec.member_hdl : spec.group_hdl) = member;
        return recorder::text_of(spec);
    }

    // ---- Reading ---------------------------------------------------------------------------------------

    // The driver answers with the entry that was written, pointing at this.
    void answer_with(const pd::Table &table, u8 kind)
    {
        encoder::answer_key(recorder::answer, table, key.data());
        recorder::answer.priority = with.priority;
        recorder::answer.action_kind = kind;
        recorder::answer.member = member;
        recorder::answer.group = group;
    }

    Outputs expect_key(const pd::Table &table) const
    {
        Outputs expected;
        std::fill_n(expected.key.begin(), table.record_size, u8{0});
        expected.is_default = recorder::answer.num_bytes == 0 || recorder::answer.null_value;
        if (!expected.is_default)
            decoder::read_back_key(expected.key.data(), table, key.data());
        if (table.name == std::string_view("lagGroup"))
            expected.priority = with.priority;
        return expected;
    }

    // Both flags and one handle for a known kind, and nothing for another one.
    void expect_reference(Outputs &expected, u8 kind) const
    {
        if (kind != 2 && kind != 4)
            return;
        expected.to.has_member = kind == 2;
        expected.to.has_group = kind == 4;
        (kind == 2 ? expected.to.member : expected.to.group) = kind == 2 ? member : group;
    }

    // The records as the driver must have got them: zero but for the size of the key that the reader may have
    // told, and a buffer for data or none.
    static std::string match_text(u32 packed)
    {
        const std::string image(2 * recorder::answer.value.size(), '0');
        return "{value=" + image + " mask=" + image +
               " partition=0 priority=0 bits=" + std::to_string(packed & 0xffff) +
               " bytes=" + std::to_string(packed >> 16) + " reserved=0}";
    }
    static std::string spec_text(const std::string &data)
    {
        return "{kind=0 bits=0 bytes=0 data=" + data + " member=0 group=0 resources=0[]}";
    }
};

// ---- Writing -------------------------------------------------------------------------------------------

TEST_F(IndirectEntries, TheStoreTellsTheActionThenTheDriverIsCalled)
{
    each_table([&](const TableFunctions &table, pd_word state) {
        for (const Kind &kind : kinds) {
            const ReferenceFunctions &functions = table.indirect->*kind.functions;
            const u32 mat = table.row->handle;
            const std::string text = referring(kind);
            u32 result = 0;
            const auto expect_write = [&](const std::string &call, const auto &function) {
                expect_steps({{line(kind.get_act, state, device, member)},
                              {line(kind.get_res, state, device, member), Failure::ignored},
                              {call}},
                             function);
            };
            expect_write(
                line("pipe_mgr_mat_ent_add", sess, target, mat, key_text(*table.row), action, text, 0, 0),
                [&] { return functions.add(sess, target, with, member, &result); });
            EXPECT_EQ(std::exchange(result, 0), recorder::answer.numbers[0]);
            expect_write(line("pipe_mgr_mat_ent_set_action_by_match_spec", sess, target, mat,
                              key_text(*table.row), action, text, 0),
                         [&] { return functions.modify_by_match_spec(sess, target, with, member); });
            expect_write(line("pipe_mgr_mat_ent_set_action", sess, device, mat, entry, action, text, 0),
                         [&] { return functions.modify(sess, device, entry, member); });
            expect_write(line("pipe_mgr_mat_default_entry_set", sess, target, mat, action, text, 0),
                         [&] { return functions.set_default_entry(sess, target, member, &result); });
            EXPECT_EQ(result, recorder::answer.numbers[0]);
        }
    });
}

// ---- Reading -------------------------------------------------------------------------------------------

TEST_F(IndirectEntries, AreReadBack)
{
    each_table([&](const TableFunctions &table, pd_word) {
        const u8 from_hw = static_cast<u8>(random.word());
        for (const u8 kind : {0, 1, 2, 3, 4, 6, 255})
            for (const u32 as_default : {0u, 1u, 2u})
                for (const pd_status status : {0u, 1u, 0xffffffffu}) {
                    SCOPED_TRACE(testing::Message() << "kind " << u32{kind} << " default " << as_default
                                                    << " status " << status << " seed " << sweep::seed);
                    recorder::answer = {};
                    answer_with(*table.row, kind);
                    if (as_default == 1)
                        recorder::answer.num_bytes = 0;
                    recorder::answer.null_value = as_default == 2;

                    Outputs found;
                    EXPECT_EQ(run(1, status,
                                  [&] {
                                      return table.indirect->get_entry(sess, device, entry, from_hw,
                                                                       found.results(), found.to);
                                  }),
                              status);
                    const std::string match = match_text(encoder::packed(*table.row));
                    EXPECT_EQ(recorder::lines(), Lines{line("pipe_mgr_get_entry", sess, table.row->handle,
                                                            pd_dev_target{device, 0xffff}, entry, match,
                                                            spec_text("null"), from_hw, 1, 0)});
                    Outputs expected;
                    if (status == 0) {
                        expected = expect_key(*table.row);
                        expected.to.has_member = expected.to.has_group = 0;
                        expect_reference(expected, kind);
                    }
                    expect_same(found, expected);

                    found = {};
                    EXPECT_EQ(run(1, status,
                                  [&] {
                                      return table.indirect->get_entry_from_plcmt_data(this, found.results(),
                                                                                       found.to);
                                  }),
                              status);
                    EXPECT_EQ(recorder::lines(), Lines{line("pipe_mgr_plcmt_mat_data_get_entry", word(this),
                                                            match_text(0), spec_text(std::string(56, '0')))});
                    expected = {};
                    if (status == 0) {
                        expected = expect_key(*table.row);
                        expect_reference(expected, kind);
                    }
                    expect_same(found, expected);
                }
    });
}

// Another kind is 15, without a word.
TEST_F(IndirectEntries, DefaultEntriesAreReadBack)
{
    each_table([&](const TableFunctions &table, pd_word) {
        const u8 from_hw = static_cast<u8>(random.word());
        for (const u8 kind : {0, 1, 2, 3, 4, 6, 255})
            for (const pd_status status : {0u, 1u, 0xffffffffu}) {
                answer_with(*table.row, kind);
                Outputs found, expected;
                const pd_status result = run(1, status, [&] {
                    return table.indirect->get_default_entry(sess, target, from_hw, found.to);
                });
                EXPECT_EQ(result, status || kind == 2 || kind == 4 ? status : 15) << u32{kind};
                EXPECT_EQ(recorder::lines(),
                          Lines{line("pipe_mgr_table_get_default_entry", sess, target, table.row->handle,
                                     spec_text("null"), from_hw, 1, 0)});
                if (status == 0)
                    expect_reference(expected, kind);
                expect_same(found, expected);
            }
    });
}

// The two reads of entries have their results in different orders.
TEST_F(IndirectEntries, ResultsComeInTheOrderOfEachRead)
{
    p4_pd_tessel_switch_ecmpGroup_match_spec_t next_hop;
    p4_pd_tessel_switch_lagGroup_match_spec_t port;
    u32 priority = 0;
    struct {
        u8 has_mbr = 9, has_grp = 9;
        u32 grp = 9, mbr = 9;
        u8 is_default = 9;
    } to;
    const auto expect_results = [&](u8 kind, pd_status status, bool reads_key = true) {
        EXPECT_EQ(status, 0u);
        EXPECT_EQ(to.has_mbr, kind == 2);
        EXPECT_EQ(to.has_grp, kind == 4);
        EXPECT_EQ(to.mbr, kind == 2 ? 0x2222 : 9);
        EXPECT_EQ(to.grp, kind == 4 ? 0x4444 : 9);
        EXPECT_EQ(to.is_default, reads_key ? 1 : 9);
        to = {};
    };
    for (const u8 kind : {2, 4}) {
        recorder::answer.action_kind = kind;
        recorder::answer.member = 0x2222;
        recorder::answer.group = 0x4444;
        recorder::answer.priority = 0x77;
        expect_results(kind, p4_pd_tessel_switch_ecmpGroup_get_entry(1, 2, 3, 0, &next_hop, &to.has_mbr,
                                                                     &to.has_grp, &to.grp, &to.mbr,
                                                                     &to.is_default));
        expect_results(kind,
                       p4_pd_tessel_switch_lagGroup_get_entry(1, 2, 3, 0, &port, &priority, &to.has_mbr,
                                                              &to.has_grp, &to.grp, &to.mbr, &to.is_default));
        expect_results(kind,
                       p4_pd_tessel_switch_ecmpGroup_get_entry_from_plcmt_data(
                           nullptr, &next_hop, &to.mbr, &to.grp, &to.has_mbr, &to.has_grp, &to.is_default));
        expect_results(
            kind, p4_pd_tessel_switch_lagGroup_get_entry_from_plcmt_data(
                      nullptr, &port, &priority, &to.mbr, &to.grp, &to.has_mbr, &to.has_grp, &to.is_default));
        expect_results(kind,
                       p4_pd_tessel_switch_lagGroup_table_get_default_entry(1, {2, 3}, 0, &to.has_mbr,
                                                                            &to.has_grp, &to.grp, &to.mbr),
                       false);
        EXPECT_EQ(priority, 0x77u);
    }
}

} // namespace
