// Images, answers of the driver and placement data for what decodes them: records, values, prints, labels,
// comparison. Buffers are as large as the headers promise and no larger.
#include <fcntl.h>

#include <memory>

#include "answers.h"
#include "pd.h"
#include "pd_inspection.h"
#include "pipe_mgr.h"

namespace {

using reflection::ProfileFunctions;
using reflection::TableFunctions;

constexpr std::size_t text_room = 3290, message_room = 128;

// A text's length is what is in front of its NUL. Nothing is written where nothing is told.
template <typename Write>
u32 check_text(Write write)
{
    const auto text = std::make_unique<char[]>(text_room);
    const u32 length = write(text.get());
    fuzz::expect(length == std::strlen(text.get()), "the length that was returned");
    return length;
}

template <typename Compare>
void check_comparison(Compare compare)
{
    const auto message = std::make_unique<char[]>(message_room);
    fuzz::expect(compare(message.get()) || message[0], "the difference");
}

int null_device()
{
    static const int fd = open("/dev/null", O_WRONLY);
    return fd;
}

void decode_key(const TableFunctions &table, std::size_t image_bytes, fuzz::Bytes &in)
{
    const auto value = std::make_unique<u8[]>(image_bytes), mask = std::make_unique<u8[]>(image_bytes);
    in.take_into(value.get(), image_bytes);
    in.take_into(mask.get(), image_bytes);
    pipe_match_spec match{};
    match.match_value = value.get();
    match.match_mask = mask.get();
    match.partition_index = in.take<u32>();
    const auto key = std::make_unique<u8[]>(table.row->record_size),
               other = std::make_unique<u8[]>(table.row->record_size);
    table.unbuild_key(&match, key.get());
    if (table.unbuild_mask)
        table.unbuild_mask(&match, key.get());
    in.take_into(other.get(), table.row->record_size);
    for (const void *record : {key.get(), other.get()}) {
        check_text([&](char *to) { return table.text.match_spec_value(record, to); });
        table.text.match_spec_print(null_device(), in.take() % 16, record);
        if (table.text.match_spec_stringify_for_counter)
            check_text([&](char *to) { return table.text.match_spec_stringify_for_counter(record, to); });
    }
    check_comparison([&](char *to) { return table.text.match_specs_are_equal(key.get(), other.get(), to); });
}

void decode_entry(const TableFunctions &table, fuzz::Answer &placement)
{
    const u32 handle = table.row->handle;
    const auto key = std::make_unique<u8[]>(table.row->record_size + 1u);
    u32 priority = 0;
    u8 is_default = 0;
    pd_action_out action;
    reflection::EntryResults results{key.get(), &priority, &is_default, nullptr, &action.parameters, nullptr};
    reflection::ReferenceResults to;
    if (table.indirect) {
        table.indirect->get_entry(1, 0, 1, 1, results, to);
        table.indirect->get_entry_from_plcmt_data(&placement, results, to);
        table.indirect->get_default_entry(1, {}, 0, to);
    } else {
        table.get_entry(1, 0, 1, 1, results);
        table.get_entry_from_plcmt_data(&placement, results, &action);
        table.get_default_entry(1, {}, 0, &action);
    }
    check_text([&](char *text) { return table.text.value(1, 0, 1, 0, text); });
    table.text.plcmt_data_print(null_device(), 2, &placement);
    if (table.text.stringify_counter_match_spec)
        check_text([&](char *text) { return table.text.stringify_counter_match_spec(1, 0, 1, text); });
    if (check_text(
            [&](char *text) { return table.text.plcmt_data_value(&placement, text); })) // it can be decoded
        check_comparison(
            [&](char *text) { return table.text.plcmt_data_eq_to_hw(1, 0, handle, 1, &placement, text); });
}

void decode_member(const ProfileFunctions &profile, fuzz::Answer &placement)
{
    pd_action_out action;
    profile.get_member(1, 0, 1, 1, &action);
    profile.get_member_from_plcmt_data(&placement, &action);
    profile.get_full_member_info_from_plcmt_data(0, 1, &placement, &action);
    check_text([&](char *text) { return profile.plcmt_data_value(&placement, text); });
    profile.adt_plcmt_data_print(null_device(), 2, &placement);
}

void decode_action(fuzz::Bytes &in)
{
    const pd::Action &row = *in.pick(reflection::actions());
    const reflection::ActionTextFunctions &text = reflection::action_texts()[row.number];
    u8 image[28];
    in.take_into(image, sizeof image);
    const auto left = std::make_unique<u8[]>(row.record_size),
               right = std::make_unique<u8[]>(row.record_size);
    in.take_into(right.get(), row.record_size);
    if (text.unbuild) {
        const pipe_action_data data{0, 0, image};
        const pd_res_ref list[] = {{in.take<u32>(), in.take<u32>()}};
        text.unbuild(&data, list, in.take() % 2, left.get());
        check_comparison([&](char *to) { return text.action_specs_are_equal(left.get(), right.get(), to); });
        text.print(null_device(), 2, right.get());
    }
    check_text([&](char *to) { return text.value(right.get(), to); });
}

void print_addresses(fuzz::Bytes &in)
{
    u8 address[16], mask[16];
    in.take_into(address, sizeof address);
    in.take_into(mask, sizeof mask);
    const u32 a = in.take<u32>(), b = in.take<u32>(), c = in.take<u32>(), d = in.take<u32>();
    check_text([&](char *to) { return p4_pd_tessel_switch__print_v4addr_ternary(to, "a", a, b); });
    check_text(
        [&](char *to) { return p4_pd_tessel_switch__print_v4addr_lpm(to, "a", a, static_cast<u16>(b)); });
    check_text([&](char *to) { return p4_pd_tessel_switch__print_v6addr_ternary(to, "a", address, mask); });
    check_text([&](char *to) {
        return p4_pd_tessel_switch__print_v6addr_lpm(to, "a", address, static_cast<u16>(b));
    });
    check_text([&](char *to) { return p4_pd_tessel_switch__print_mac_ternary(to, "a", a, b, c, d); });
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    fuzz::Bytes in{data, size};
    const TableFunctions &table = *in.pick(reflection::tables());
    const std::size_t image_bytes = pd::image_size(table.row->key).bytes;
    const ProfileFunctions &profile = *in.pick(reflection::profiles());
    if (!table.row->key.empty())
        decode_key(table, image_bytes, in);
    decode_action(in);
    print_addresses(in);

    const auto actions = table.indirect ? table.indirect->profile->row->actions : table.row->actions;
    fuzz::Answer placement{in, image_bytes, actions};
    fuzz::Bytes behind = in;
    behind.skip(160);
    fuzz::set_answer({behind, image_bytes, actions});
    decode_entry(table, placement);
    placement.actions = profile.row->actions;
    decode_member(profile, placement);
    fuzz::forget_answer();
    return 0;
}
