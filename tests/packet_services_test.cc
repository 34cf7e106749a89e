// Digests, parser value sets, hash calculations and snapshots: each function's calls, the streams and records
// that it makes, and what is left when one of the calls fails.
#include "call_log.h"
#include "services.h"

namespace {

using namespace call_log;
using sweep::Bytes;
using testing::KilledBySignal;

pd_status digested(pd_sess_hdl, void *, pd_word)
{
    return 0;
}

using PacketServices = CallLog;

// ---- Digests ----------------------------------------------------------------------------------------------

TEST_F(PacketServices, DigestsGoToTheCallersOwnCallback)
{
    constexpr Facts digests[] = {{"macLearningDigest", 0x9000000}, {"ptpDigest", 0x9000001}};
    each(reflection::digests(), digests, [&](const auto &digest, const Facts &facts) {
        const u32 handle = facts.handle;
        expect_forwards({
            {line("pipe_mgr_lrn_digest_notification_register", sess, 0xfe, handle, word(&digested), cookie),
             [&] { return digest.register_callback(sess, 0xfe, digested, cookie); }},
            {line("pipe_mgr_lrn_digest_notification_deregister", sess, 0xfe, handle),
             [&] { return digest.deregister(sess, 0xfe); }},
            {line("pipe_mgr_flow_lrn_notify_ack", sess, handle, cookie),
             [&] { return digest.notify_ack(sess, cookie); }},
        });
    });
    expect_forwards({{line("pipe_mgr_flow_lrn_set_timeout", sess, 0xfe, member),
                      [&] { return p4_pd_tessel_switch_set_learning_timeout(sess, 0xfe, member); }}});
}

TEST_F(PacketServices, FieldsOfDigestEntriesAreFoundByName)
{
    const auto find_field = p4_pd_tessel_switch_get_digest_entry_field;
    struct Field {
        const char *digest, *name;
        u32 offset, size;
    };
    constexpr Field fields[] = {{"macLearningDigest", "ingMd_smacOui", 0, 4},
                                {"macLearningDigest", "ingMd_smacStation", 4, 4},
                                {"macLearningDigest", "ingMd_ingL2Domain", 8, 2},
                                {"macLearningDigest", "ingMd_ingL2Aintf", 10, 4},
                                {"ptpDigest", "ig_intr_md_ingress_mac_tstamp", 0, 6},
                                {"ptpDigest", "ingMd_ingL2Aintf", 6, 4}};
    u8 entry[14];
    u32 size = 0;
    for (const Field &field : fields) {
        SCOPED_TRACE(testing::Message() << field.digest << " " << field.name);
        EXPECT_EQ(find_field(entry, field.digest, field.name, &size), entry + field.offset);
        EXPECT_EQ(size, field.size);
    }
    constexpr std::pair<const char *, const char *> unknown[] = {
        {"ptpDigest", "ingMd_smacOui"},
        {"macLearningDigest", "ig_intr_md_ingress_mac_tstamp"},
        {"macLearningDigest", "ingmd_smacoui"},
        {"macLearningDigest", ""},
        {"", "ingMd_ingL2Aintf"},
        {"ptpDigest2", "ingMd_ingL2Aintf"}};
    for (const auto &[digest, name] : unknown)
        for (const bool debug_mode : {false, true}) {
            recorder::debug_mode = debug_mode;
            EXPECT_EXIT(find_field(entry, digest, name, &size), KilledBySignal(SIGABRT),
                        assertion("pd_tessel", "p4_pd_tessel_switch_get_digest_entry_field", "0"));
        }
    constexpr std::pair<const char *, u32> sizes[] = {
        {"macLearningDigest", 14}, {"ptpDigest", 10}, {"", 0},
        {"PtpDigest", 0},          {"ptpDigest ", 0}, {"ptp", 0}};
    for (const auto &[digest, bytes] : sizes)
        EXPECT_EQ(p4_pd_tessel_switch_get_digest_entry_size(digest), bytes) << digest;
    EXPECT_EQ(recorder::calls(), 0u);
}

// ---- Parser value sets ------------------------------------------------------------------------------------

TEST_F(PacketServices, ValueSetsAddTheirHandle)
{
    constexpr Facts sets[] = {{"fabric_port", 511}, {"recirc_ports", 510},       {"allow_vlan0", 509},
                              {"allow_ntags", 508}, {"vxlan_ports_32bVni", 507}, {"vxlan_ports", 506},
                              {"egr_cpu_port", 505}};
    each(reflection::value_sets(), sets, [&](const auto &set, const Facts &facts) {
        const u32 a = random.word(), b = random.word(), key = random.word(), mask = random.word(),
                  entry = group;
        constexpr u8 c = 0xfe;
        u32 found[4] = {};
        recorder::answer.numbers = {random.word(), random.word(), 3, 4};
        const auto operation = [&](const char *end, const auto &...arguments) {
            return line(std::string("pipe_mgr_pvs_") + end, sess, device, facts.handle, arguments...);
        };
        expect_forwards({
            {operation("set_property", 5, "{0xffffffff 0}", "{0x6 0 0}"),
             [&] { return set.set_property(sess, device, 5, 0xffffffff, 6); }},
            {operation("get_property", 5, "{0xffffffff 0 0}"),
             [&] {
                 const pd_status status = set.get_property(sess, device, 5, found, 0xffffffff);
                 EXPECT_EQ(found[0], status ? 0xffffffff : recorder::answer.numbers[0]);
                 return status;
             }},
            {operation("entry_add", a, b, c, key, mask),
             [&] { return set.entry_add(sess, device, a, b, c, key, mask, &found[0]); }},
            {operation("entry_handle_get", a, b, c, key, mask),
             [&] { return set.entry_handle_get(sess, device, a, b, c, key, mask, &found[1]); }},
            {operation("entry_get_first", a, b, c),
             [&] { return set.entry_get_first_entry_handle(sess, device, a, b, c, &found[2]); }},
        });
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(found[i], recorder::answer.numbers[0]);
        expect_forwards({
            {operation("entry_modify", entry, key, mask),
             [&] { return set.entry_modify(sess, device, entry, key, mask); }},
            {operation("entry_delete", entry), [&] { return set.entry_delete(sess, device, entry); }},
            {operation("entry_get", entry, 0, 0, 0),
             [&] { return set.entry_get(sess, device, entry, &found[0], &found[1]); }},
            {operation("entry_get_count", a, b, c, 0x80),
             [&] { return set.entry_get_count(sess, device, a, b, c, 0x80, &found[2]); }},
        });
        EXPECT_EQ(found[0], recorder::answer.numbers[0]);
        EXPECT_EQ(found[1], recorder::answer.numbers[1]);
        EXPECT_EQ(found[2], recorder::answer.numbers[0]);
        expect_forwards({{operation("entry_get_next", a, b, c, entry, 4), [&] {
                              return set.entry_get_next_entry_handles(sess, device, a, b, c, entry, 4, found);
                          }}});
        EXPECT_TRUE(std::equal(found, found + 4, recorder::answer.numbers.begin()));
    });
}

// ---- Hash calculations ------------------------------------------------------------------------------------

struct HashFacts {
    const char *name;
    u32 handle, input, algorithm;
};

constexpr HashFacts hashes[] = {
    {"egrVlanStpHash", 0x8000000, 0x21000000, 0x23000000},
    {"egressL2AintfUnresolvedFlood", 0x8000001, 0x21000001, 0x23000000},
    {"hashInnerEthHdr", 0x8000002, 0x21000002, 0x23000001},
    {"hashInnerIpAndL4Hdr", 0x8000003, 0x21000003, 0x23000001},
    {"hashInnerIpv4Hdr", 0x8000004, 0x21000004, 0x23000001},
    {"hashInnerIpv6Hdr", 0x8000005, 0x21000005, 0x23000001},
    {"hashOuterEthHdr", 0x8000006, 0x21000006, 0x23000001},
    {"hashOuterIpAndL4Hdr", 0x8000007, 0x21000007, 0x23000001},
    {"hashOuterIpv4Hdr", 0x8000008, 0x21000008, 0x23000001},
    {"hashOuterIpv6Hdr", 0x8000009, 0x21000009, 0x23000001},
    {"ingVlanStpHash", 0x800000a, 0x2100000a, 0x23000000},
    {"queueCounterHash", 0x800000b, 0x2100000b, 0x23000000},
};

class Hashes : public PacketServices {
protected:
    // Runs `check(functions, handle, input, algorithm)` for each calculation.
    template <typename Check>
    void each_hash(const Check &check)
    {
        each(reflection::hashes(), hashes, [&](const auto &hash, const HashFacts &facts) {
            check(hash, facts.handle, facts.input, facts.algorithm);
        });
    }
};

TEST_F(Hashes, ChoicesAreNumberZeroOrHandleZero)
{
    each_hash([&](const reflection::HashFunctions &hash, u32 calc, u32 input, u32 algorithm) {
        for (const u32 number : {0u, 1u, 0xffffffffu})
            expect_forwards({
                {line("pipe_mgr_hash_calc_input_set", sess, device, calc, number ? 0 : input),
                 [&] { return hash.input_set(sess, device, number); }},
                {line("pipe_mgr_hash_calc_algorithm_set", sess, device, calc, number ? 0 : algorithm, 0, 0,
                      0),
                 [&] { return hash.algorithm_set(sess, device, number); }},
            });
        u64 seed = 0;
        expect_forwards({{line("pipe_mgr_hash_calc_seed_set", sess, device, calc, cookie, 7),
                          [&] { return hash.seed_set(sess, device, cookie, 7); }},
                         {line("pipe_mgr_hash_calc_seed_get", sess, device, calc, word(&seed)),
                          [&] { return hash.seed_get(sess, device, &seed); }}});

        const std::string of_input = line("pipe_mgr_hash_calc_input_get", sess, device, calc);
        const std::string of_algorithm = line("pipe_mgr_hash_calc_algorithm_get", sess, device, calc, 0, 0);
        u32 number = 77;
        const auto get_input = [&] { return hash.input_get(sess, device, &number); };
        const auto get_algorithm = [&] { return hash.algorithm_get(sess, device, &number); };
        recorder::answer.numbers[0] = input;
        expect_forwards({{of_input, get_input}});
        EXPECT_EQ(std::exchange(number, 77), 0u);
        recorder::answer.numbers[0] = algorithm;
        expect_forwards({{of_algorithm, get_algorithm}});
        EXPECT_EQ(std::exchange(number, 77), 0u);
        // The handle of another calculation, or none: the driver's status is lost.
        for (const u32 handle : {0u, input ^ 1, algorithm ^ 1, calc})
            for (const std::size_t failing : {0, 1}) {
                recorder::answer.numbers[0] = handle;
                EXPECT_EQ(run(failing, 9, get_input), 3u);
                EXPECT_EQ(run(failing, 9, get_algorithm), 3u);
                EXPECT_EQ(recorder::lines(), Lines{of_algorithm});
                EXPECT_EQ(number, 77u);
            }
    });
}

TEST_F(Hashes, AttributesAreSet)
{
    const hash_input_field_attribute attributes[] = {{0xffffffff, 2, cookie}, {4, 0x80000000, 6}};
    const std::string list =
        "[{0xffffffff 0 0 0 0x2 " + recorder::text_of(cookie) + "} {0x4 0 0 0x5 0x80000000 0x6}]";
    each_hash([&](const reflection::HashFunctions &hash, u32 calc, u32 input, u32) {
        const char *operation = "pipe_mgr_hash_calc_input_field_attribute_set";
        for (const u32 number : {0u, 1u}) {
            const u32 handle = number ? 0 : input;
            const auto set = [&](u32 count) {
                return hash.input_field_attribute_set(sess, device, number, count, attributes);
            };
            expect_steps(
                {{line("bf_sys_calloc", 2, sizeof(pipe_hash_calc_input_field_attribute)), Failure::untested},
                 {line(operation, sess, device, calc, handle, 2, list)}},
                [&] { return set(2); });
            expect_steps({{line(operation, sess, device, calc, handle, 0, "null")}}, [&] { return set(0); });
        }
    });
}

TEST_F(Hashes, AttributesAreCountedAndRead)
{
    counts_allocations = false;
    recorder::answer.attributes = {{1, 2, 3, 4, 5, cookie}, {0xffffffff, 9, 9, 9, 0x80000000, 6}};
    const hash_input_field_attribute expected[] = {{1, 5, cookie}, {0xffffffff, 0x80000000, 6}, {7, 7, 7}};
    const auto expect_read = [&](const hash_input_field_attribute *found, u32 count) {
        for (u32 i = 0; i < 3; ++i) {
            const hash_input_field_attribute &of = expected[i < count ? i : 2];
            EXPECT_EQ(line("", found[i].input_field, found[i].attr_type, found[i].attr_value),
                      line("", of.input_field, of.attr_type, of.attr_value));
        }
    };
    each_hash([&](const reflection::HashFunctions &hash, u32 calc, u32 input, u32) {
        const Step current{line("pipe_mgr_hash_calc_input_get", sess, device, calc), Failure::ignored};
        u32 count = 77;
        const auto count_them = [&](u32 number) {
            return hash.input_field_attribute_count_get(sess, device, number, &count);
        };
        const auto read = [&](u32 number, u32 capacity) {
            hash_input_field_attribute found[] = {expected[2], expected[2], expected[2]};
            count = 77;
            const pd_status status =
                hash.input_field_attribute_get(sess, device, number, capacity, found, &count);
            expect_read(found, status ? 0 : std::min(capacity, 2u));
            return status;
        };
        // The calculation's own input by its number; no other input by any number.
        for (const auto &[handle, number] : {std::pair{input, 0u}, {0u, 0u}, {0u, 1u}, {input ^ 1, 5u}}) {
            recorder::answer.numbers = {handle};
            expect_steps(
                {current,
                 {line("pipe_mgr_hash_calc_input_field_attribute_count_get", sess, device, calc, handle)}},
                [&, number = number] { return count_them(number); });
            EXPECT_EQ(count, handle) << "the same answer";
            for (const u32 capacity : {3u, 1u}) {
                expect_steps({current,
                              {line("bf_sys_calloc", capacity, sizeof(pipe_hash_calc_input_field_attribute)),
                               Failure::untested},
                              {line("pipe_mgr_hash_calc_input_field_attribute_get", sess, device, calc,
                                    handle, capacity)}},
                             [&, number = number] { return read(number, capacity); });
                EXPECT_EQ(count, std::min(capacity, 2u));
            }
            expect_steps({current}, [&, number = number] { return read(number, 0); });
            EXPECT_EQ(count, 0u);
        }
        recorder::answer.numbers = {input};
        for (const u32 number : {1u, 0xffffffffu}) {
            count = 77;
            EXPECT_EQ(run(0, 0, [&] { return count_them(number); }), 3u);
            EXPECT_EQ(count, 77u);
            for (const u32 capacity : {0u, 3u}) {
                EXPECT_EQ(run(0, 0, [&] { return read(number, capacity); }), 3u);
                EXPECT_EQ(recorder::lines(), Lines{current.line});
                EXPECT_EQ(count, 0u);
            }
        }
    });
}

// ---- Hash values ------------------------------------------------------------------------------------------

// The width of a field and its value: a word, or the big-endian bytes of a wider one.
struct Field {
    u32 width;
    u32 value = 0;
    Bytes bytes = {};

    // In whole bytes.
    Bytes source() const
    {
        if (width > 32)
            return bytes;
        const Bytes word{static_cast<u8>(value >> 24), static_cast<u8>(value >> 16),
                         static_cast<u8>(value >> 8), static_cast<u8>(value)};
        return Bytes(word.end() - (width + 7) / 8, word.end());
    }
};

// The stream bit by bit, from its least significant end. The bits that a field's first byte has above the
// width reach to the end of the byte of the stream that the field's last bit is in.
Bytes stream_of(const std::vector<Field> &fields)
{
    u32 width = 0, at = 0;
    for (const Field &field : fields)
        width += field.width;
    Bytes stream((width + 7) / 8);
    for (auto field = fields.rbegin(); field != fields.rend(); ++field) {
        const Bytes source = field->source();
        const u32 end = (at + field->width + 7) / 8 * 8;
        for (u32 bit = 0; bit < source.size() * 8 && at + bit < end; ++bit)
            if (source[source.size() - 1 - bit / 8] >> bit % 8 & 1)
                stream[stream.size() - 1 - (at + bit) / 8] |= static_cast<u8>(1u << (at + bit) % 8);
        at += field->width;
    }
    return stream;
}

class HashValues : public Hashes {
protected:
    u8 value[4] = {};
    std::vector<hash_input_field_attribute> attributes;
    std::vector<u32> widths;

    void expect_stream(const reflection::HashFunctions &hash, u32 calc, const std::vector<Field> &fields,
                       const std::string &stream)
    {
        attributes.clear();
        widths.clear();
        for (const Field &field : fields) {
            attributes.push_back({0, 0, field.width > 32 ? word(field.bytes.data()) : field.value});
            widths.push_back(field.width);
        }
        const std::size_t size = stream.size() / 2;
        expect_steps({{line("bf_sys_calloc", size, 1), Failure::untested},
                      {line("pipe_mgr_hash_calc_calculate_hash_value", sess, device, calc,
                            stream.empty() ? "-" : stream, size, word(value), 99)}},
                     [&] {
                         return hash.calculate_hash_value(sess, device, static_cast<u32>(fields.size()),
                                                          attributes.data(), widths.data(), value, 99);
                     });
    }

    Field random_field(bool clean)
    {
        Field field{random.word() % 4 ? random.word() % 33 : random.word() % 150, random.word()};
        if (field.width > 32) {
            field.bytes.resize((field.width + 7) / 8);
            random.scramble(field.bytes.data(), field.bytes.size());
            if (clean && field.width % 8)
                field.bytes[0] &= static_cast<u8>((1u << field.width % 8) - 1);
        } else if (clean && field.width < 32) {
            field.value &= (1u << field.width) - 1;
        }
        return field;
    }
};

TEST_F(HashValues, ExamplesOfStreams)
{
    const Bytes address{0x01, 0x23, 0x45, 0x67, 0x89, 0xab};
    const std::pair<std::vector<Field>, const char *> examples[] = {
        {{}, ""},
        {{{3, 5}, {9, 0x101}, {4, 0xa}}, "b01a"},
        {{{4, 0xa}, {12, 0xbcd}}, "abcd"},
        {{{9, 0x1ff}, {9, 0x1ff}}, "03ffff"},
        {{{1, 1}}, "01"},
        {{{32, 0x12345678}, {8, 0x9a}, {0, 0xff}, {16, 0xbcde}}, "123456789abcde"},
        {{{48, 0, address}}, "0123456789ab"},
        {{{48, 0, address}, {4, 0xc}}, "00123456789abc"},
        {{{4, 0xf}, {48, 0, address}, {4, 0xc}}, "f0123456789abc"},
        // Bits above a width are not cut off,
        {{{4, 0x1f}}, "1f"},
        {{{4, 0}, {12, 0xfbcd}}, "fbcd"},
        {{{1, 1}, {9, 0x2ff}}, "02ff"},
        // but they are when the field ends with a byte of the stream, and beyond its last byte.
        {{{8, 0}, {4, 0xff}, {4, 0}}, "00f0"},
        {{{8, 0}, {4, 0xfffff}}, "00ff"},
    };
    each_hash([&](const reflection::HashFunctions &hash, u32 calc, u32, u32) {
        for (const auto &[fields, stream] : examples)
            expect_stream(hash, calc, fields, stream);
    });
}

TEST_F(HashValues, RandomStreams)
{
    const reflection::HashFunctions &hash = reflection::hashes().front();
    for (int round = 0; round < 600; ++round) {
        SCOPED_TRACE(testing::Message() << "round " << round << " seed " << sweep::seed);
        std::vector<Field> fields(random.word() % 9);
        for (Field &field : fields)
            field = random_field(round % 2);
        const Bytes stream = stream_of(fields);
        expect_stream(hash, hash.row->handle, fields, recorder::hex(stream.data(), stream.size()));
    }
}

// ---- Snapshots --------------------------------------------------------------------------------------------

struct Layout {
    std::vector<u16> two_bytes, four_bytes;
};

const Layout layouts[] = {
    {{1,   5,   26,  29,  32,  39,  42,  44,  46,  48,  56,  58,  64,  66,  69,  71,  73,  91,  102, 104, 106,
      114, 142, 161, 163, 165, 167, 217, 228, 230, 232, 240, 268, 287, 289, 302, 304, 306, 308, 320, 322, 333,
      336, 339, 342, 345, 363, 365, 367, 369, 371, 374, 376, 388, 395, 398, 407, 409, 412, 417, 419, 423, 425,
      428, 433, 435, 437, 444, 446, 448, 450, 452, 454, 456, 470, 472, 522, 526, 529, 533, 536, 549, 552, 559,
      566, 570, 572, 582, 584, 593, 601, 604, 624, 627, 629, 638, 641, 645, 654, 664, 666},
     {11,  18,  22,  75,  79,  83,  87,  93,  110, 136, 197, 201, 205, 209, 213, 219, 236, 262, 291,
      298, 349, 353, 380, 384, 391, 440, 464, 474, 478, 483, 541, 545, 562, 578, 609, 616, 620}},
    {{5,   20,  23,  26,  33,  36,  38,  40,  42,  50,  53,  56,  60,  62,  69,  73,  76,  94,  96,
      98,  109, 111, 113, 121, 125, 127, 190, 201, 203, 205, 213, 241, 260, 273, 275, 279, 281, 292,
      295, 298, 301, 304, 307, 319, 321, 324, 326, 331, 347, 349, 352, 358, 361, 363, 365, 371},
     {0, 12, 16, 78, 82, 86, 90, 100, 117, 174, 178, 182, 186, 192, 209, 235, 262, 269, 311, 315, 342, 367}},
};

class Snapshots : public PacketServices {
protected:
    pd_snapshot_phv random_record()
    {
        pd_snapshot_phv record;
        for (u8 &byte : record.bytes)
            byte = static_cast<u8>(random.word());
        return record;
    }

    static std::string text(const pd_snapshot_phv &record)
    {
        return recorder::hex(record.bytes, sizeof record.bytes);
    }
};

TEST_F(Snapshots, TriggersGoDownInTheDriversByteOrder)
{
    EXPECT_EQ(layouts[0].two_bytes.size() + layouts[0].four_bytes.size(), 138u);
    EXPECT_EQ(layouts[1].two_bytes.size() + layouts[1].four_bytes.size(), 78u);
    const auto swapped = [](pd_snapshot_phv record, const Layout &layout) {
        for (const u16 offset : layout.two_bytes)
            std::reverse(record.bytes + offset, record.bytes + offset + 2);
        for (const u16 offset : layout.four_bytes)
            std::reverse(record.bytes + offset, record.bytes + offset + 4);
        return record;
    };
    for (const u32 snapshot : {0u, 1u, 2u, 3u, 4u, 0xfffffffdu, 0xfffffffeu}) {
        SCOPED_TRACE(snapshot);
        const Layout &layout = layouts[snapshot >> 1 & 1];
        const pd_snapshot_phv spec = random_record(), mask = random_record();
        pd_snapshot_phv given_spec = spec, given_mask = mask;
        expect_steps({{line("bf_snapshot_capture_trigger_set", snapshot, text(swapped(spec, layout)),
                            text(swapped(mask, layout)))}},
                     [&] {
                         return p4_pd_tessel_switch_snapshot_capture_trigger_set(snapshot, &given_spec,
                                                                                 &given_mask);
                     });
        EXPECT_EQ(text(given_spec), text(spec));
        EXPECT_EQ(text(given_mask), text(mask));
    }
    const pd_snapshot_phv spec{{1, 2, 3, 4}}, mask{};
    p4_pd_tessel_switch_snapshot_capture_trigger_set(2, &spec, &mask);
    EXPECT_NE(recorder::last().find("(0x2, 04030201000000"), std::string::npos);
    p4_pd_tessel_switch_snapshot_capture_trigger_set(~2u, &spec, &mask);
    EXPECT_NE(recorder::last().find("(0xfffffffd, 01030204000000"), std::string::npos);
}

TEST_F(Snapshots, CapturesComeBackAsTheyAre)
{
    struct Case {
        u32 total, stage, records;
    };
    constexpr Case cases[] = {{0, 709, 0},           {708, 709, 0},       {3 * 709, 709, 3},
                              {3 * 720 + 5, 720, 3}, {20 * 709, 709, 20}, {25 * 1024, 1024, 20}};
    pd_snapshot_phv untouched;
    std::fill_n(untouched.bytes, sizeof untouched.bytes, u8{0xa5});
    for (const auto &[total, stage, records] : cases)
        for (const bool captured : {true, false}) {
            SCOPED_TRACE(testing::Message() << total << "/" << stage);
            std::vector<pd_snapshot_phv> found;
            u32 count = 0;
            recorder::answer.stages.clear(); // without a capture the driver leaves the buffer as it is
            for (u32 i = 0; captured && i < total; ++i)
                recorder::answer.stages.push_back(static_cast<u8>(random.word()));
            recorder::answer.numbers = {total, stage};
            const auto get = [&] {
                count = 77;
                found.assign(21, untouched);
                return p4_pd_tessel_switch_snapshot_capture_data_get(0x12, cookie, found.data(), 34, &count);
            };
            const auto expect_records = [&, stage = stage](u32 copied) {
                for (u32 i = 0; i < found.size(); ++i) {
                    pd_snapshot_phv expected = i < copied ? pd_snapshot_phv{} : untouched;
                    if (captured && i < copied)
                        std::copy_n(recorder::answer.stages.begin() + i * stage, sizeof expected.bytes,
                                    expected.bytes);
                    EXPECT_EQ(text(found[i]), text(expected)) << "stage " << i;
                }
            };
            expect_steps({{line("bf_snapshot_capture_phv_fields_dict_size", 0x12), Failure::ignored},
                          {line("bf_sys_calloc", 1, total)},
                          {line("bf_snapshot_capture_get", 0x12, cookie, "own", 34), Failure::tells}},
                         get);
            expect_records(records); // of the last run, in which the driver failed
            EXPECT_EQ(run(0, 0, get), 0u);
            expect_records(records);
            EXPECT_EQ(count, total) << "the same answer";
            EXPECT_EQ(run(2, 9, get), 2u);
            expect_records(0);
            EXPECT_EQ(count, 0u);
        }
}

TEST_F(Snapshots, TheRestIsHandedOn)
{
    expect_forwards(
        {{line("bf_snapshot_create", cookie, 2, 0xfe, 0x80, 5, cookie - 1),
          [] { return p4_pd_tessel_switch_snapshot_create(cookie, 2, 0xfe, 0x80, 5, cookie - 1); }},
         {line("bf_snapshot_delete", 0xffffffff),
          [] { return p4_pd_tessel_switch_snapshot_delete(0xffffffff); }}});
}

} // namespace
