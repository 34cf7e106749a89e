#include "text_formatter.h"

#include <algorithm>

#include "encoder.h"

namespace formatter {

namespace {

constexpr const char *formats[] = {"None", "'v4addr'", "'v6addr'", "'mac'", "'port'", "'vport'", "'dec'"};

constexpr char reference_schema[] =
    "( ('setMbrHdl',(('mbrHdl',None,32,None),)),( 'setGrpHdl', ( ( 'grpHdl', None, 32, None ), ) ) ))";

pd::Mask whole(u32 width)
{
    pd::Mask mask{};
    for (u32 bit = 0; bit < width; ++bit)
        (bit < 64 ? mask.low : mask.high) |= u64{1} << bit % 64;
    return mask;
}

bool mask_bit(const Slot &slot, u32 bit)
{
    return (bit < 64 ? slot.mask.low : slot.mask.high) >> bit % 64 & 1;
}

// The digits of the number whose bits `bit_at(n)` gives.
template <typename BitAt>
std::string digits(u32 count, const char *alphabet, const BitAt &bit_at)
{
    std::string text;
    for (u32 digit = count; digit-- > 0;) {
        u32 value = 0;
        for (u32 bit = 4; bit-- > 0;)
            value = value * 2 + bit_at(digit * 4 + bit);
        text += alphabet[value];
    }
    return text;
}

std::string without_zeros(const std::string &number)
{
    return number.substr(std::min(number.find_first_not_of('0'), number.size() - 1));
}

// "0x" and the digits: of a wide slot all its bits, of another those that count.
std::string number(const Slot &slot, const void *record)
{
    const bool wide = slot.width == 128;
    const char *alphabet = wide ? "0123456789ABCDEF" : "0123456789abcdef";
    return "0x" + digits((slot.width + 3) / 4, alphabet, [&](u32 bit) {
               return bit < slot.width && (wide || mask_bit(slot, bit)) &&
                      encoder::member_bit(record, slot.offset, slot.width, bit);
           });
}

std::string mask_text(const Slot &slot)
{
    return "0x" + without_zeros(digits(32, "0123456789abcdef", [&](u32 bit) { return mask_bit(slot, bit); }));
}

std::string parenthesized(const std::string &open, const std::vector<std::string> &elements)
{
    std::string text = open;
    for (const std::string &element : elements)
        text += element + ",";
    return text + ")";
}

template <typename Range, typename Make>
std::vector<std::string> each(const Range &range, const Make &make)
{
    std::vector<std::string> made;
    for (const auto &element : range)
        made.push_back(make(element));
    return made;
}

std::string actions_schema(std::span<const pd::Binding> bindings)
{
    std::vector<const pd::Action *> actions;
    for (const pd::Binding &binding : bindings)
        actions.push_back(binding.action);
    std::sort(actions.begin(), actions.end(), [](const pd::Action *left, const pd::Action *right) {
        return std::string(left->name) < right->name;
    });
    return parenthesized("(", each(actions, [](const pd::Action *action) { return action_schema(*action); }));
}

std::vector<std::string> lines(const std::vector<Slot> &slots, int indent, const std::string &prefix,
                               const void *record)
{
    return each(slots, [&](const Slot &slot) {
        const bool masked = is_partial(slot) && slot.width <= 32;
        return std::string(std::max(indent, 1), ' ') + " " + prefix + slot.name +
               (masked ? " mask " + mask_text(slot) : "") + ": " + number(slot, record) + "\n";
    });
}

std::string difference(const std::vector<Slot> &slots, const std::string &prefix, const void *left,
                       const void *right)
{
    for (const Slot &slot : slots) {
        bool same = true;
        for (u32 bit = 0; bit < slot.width; ++bit)
            same &= !mask_bit(slot, bit) || encoder::member_bit(left, slot.offset, slot.width, bit) ==
                                                encoder::member_bit(right, slot.offset, slot.width, bit);
        if (same)
            continue;
        std::string text = prefix + slot.name + " differs";
        for (const void *record : {left, right})
            if (slot.width != 128)
                text.append(record == left ? " 0x" : " vs 0x")
                    .append(without_zeros(number(slot, record).substr(2)));
        return text;
    }
    return "";
}

} // namespace

std::vector<Slot> slots_of(const pd::Table &table)
{
    std::vector<Slot> slots;
    for (const pd::Field &field : table.key) {
        const std::string display = field.display, format = formats[static_cast<u32>(field.format)];
        slots.push_back({field.name, display, format, field.offset, field.width, field.mask});
        if (field.match == pd::Match::ternary)
            slots.push_back({std::string(field.name) + "_mask", display + "Mask", "None", field.twin_offset,
                             field.width, field.mask});
        if (field.match == pd::Match::lpm)
            slots.push_back({std::string(field.name) + "_prefix_length", display + "PrefixLength", "None",
                             field.twin_offset, 16, whole(16)});
    }
    return slots;
}

std::vector<Slot> slots_of(const pd::Action &action)
{
    std::vector<Slot> slots;
    for (const pd::Parameter &parameter : action.parameters)
        slots.push_back({parameter.name, parameter.name, formats[static_cast<u32>(parameter.format)],
                         parameter.offset, parameter.width, whole(parameter.width)});
    return slots;
}

bool is_partial(const Slot &slot)
{
    for (u32 bit = 0; bit < slot.width; ++bit)
        if (!mask_bit(slot, bit))
            return true;
    return false;
}

std::string key_schema(const pd::Table &table)
{
    return parenthesized("(", each(slots_of(table), [](const Slot &slot) {
                             return "( '" + slot.display + "','" + slot.name + "'," +
                                    std::to_string(slot.width) + "," + mask_text(slot) + "," + slot.format +
                                    ",None,None)";
                         }));
}

std::string action_schema(const pd::Action &action)
{
    return std::string("( ('") + action.name + "')," +
           parenthesized("(", each(slots_of(action),
                                   [](const Slot &slot) {
                                       return "('" + slot.name + "'," + slot.format + "," +
                                              std::to_string(slot.width) + ",None)";
                                   })) +
           ")";
}

std::string table_schema(const pd::Table &table)
{
    const bool indirect = table.profile;
    const std::string head =
        std::string("( ('") + table.name + "','mat',(" + (indirect ? "True" : "False") + ",)),";
    const std::string key = (table.key.empty() ? "()" : key_schema(table)) + ",";
    return head + key + (indirect ? reference_schema : actions_schema(table.actions) + ")");
}

std::string profile_schema(const pd::Profile &profile)
{
    return actions_schema(profile.actions);
}

std::string key_value(const pd::Table &table, const void *key)
{
    return parenthesized("( ", each(slots_of(table), [&](const Slot &slot) { return number(slot, key); })) +
           ",";
}

std::string action_value(const pd::Action &action, const void *parameters)
{
    const auto values = each(slots_of(action), [&](const Slot &slot) { return number(slot, parameters); });
    return std::string("('") + action.name + "'," + parenthesized("(", values) + "),";
}

std::vector<std::string> key_lines(const pd::Table &table, int indent, const void *key)
{
    std::vector<std::string> text = lines(slots_of(table), indent, "", key);
    text.insert(text.begin(),
                std::string(indent, ' ') + "p4_pd_tessel_switch_" + table.name + "_match_spec_t:\n");
    return text;
}

std::vector<std::string> action_lines(const pd::Action &action, int indent, const void *parameters)
{
    return lines(slots_of(action), indent, "action_", parameters);
}

std::string joined(const std::vector<std::string> &lines)
{
    std::string text;
    for (const std::string &line : lines)
        text += line;
    return text;
}

std::string key_difference(const pd::Table &table, const void *left, const void *right)
{
    return difference(slots_of(table), "mspec ", left, right);
}

std::string action_difference(const pd::Action &action, const void *left, const void *right)
{
    return difference(slots_of(action), "aspec action_", left, right);
}

} // namespace formatter
