#include "records.h"

#include <algorithm>

#include "words.h"

namespace shell {

namespace {

std::size_t words_for(std::size_t bytes)
{
    return (bytes + sizeof(u64) - 1) / sizeof(u64);
}

constexpr std::string_view any_word = "any", default_word = "default";

// A number of bits, or a netmask.
unsigned parse_prefix(std::string_view text, unsigned width, std::string_view name)
{
    if (text.find_first_of(".:") != std::string_view::npos) {
        const Value mask = parse_value(text, width, std::string{name} + " netmask");
        for (unsigned length = 0; length <= width; ++length)
            if (leading_ones(length, width) == mask)
                return length;
        throw BadLine{text, quoted(text) + " is no netmask: its ones come first"};
    }
    return parse_u32(text, width, std::string{name} + " prefix length");
}

} // namespace

std::string_view mac_name(std::string_view first, std::string_view second)
{
    constexpr std::string_view oui = "Oui", station = "Station";
    if (first == "oui" && second == "station")
        return "mac";
    if (!first.ends_with(oui) || !second.ends_with(station))
        return {};
    const std::string_view stem = first.substr(0, first.size() - oui.size());
    return stem == second.substr(0, second.size() - station.size()) ? stem : std::string_view{};
}

Record::Record(const pd::Table &table, KeyOf use)
    : use_(use), kind_("field"), owner_(table.name), storage_(words_for(table.record_size))
{
    slots_.reserve(table.key.size());
    for (const pd::Field &field : table.key)
        slots_.push_back({field.name, field.display, field.offset, field.twin_offset, field.width,
                          use == KeyOf::entry ? field.match : pd::Match::exact});
}

Record::Record(const pd::Action &action)
    : kind_("parameter"), owner_(action.name), member_prefix_("action_"),
      storage_(words_for(action.record_size))
{
    slots_.reserve(action.parameters.size());
    for (const pd::Parameter &parameter : action.parameters)
        slots_.push_back(
            {parameter.name, parameter.name, parameter.offset, 0, parameter.width, pd::Match::exact});
}

bool Record::assign(std::string_view name, std::string_view value)
{
    const std::string_view shown = name;
    if (name.starts_with(member_prefix_))
        name.remove_prefix(member_prefix_.size());
    for (Slot &slot : slots_)
        if (named(slot, name)) {
            put(slot, parse(value, slot.width, slot.match, shown), shown);
            return true;
        }
    for (std::size_t i = 0; i + 1 < slots_.size(); ++i)
        if (mac_halves_named(slots_[i], slots_[i + 1], name)) {
            const Operand mac = parse(value, mac_width, slots_[i].match, shown);
            const auto half = [&](unsigned shift) {
                const auto bits = [&](const Value &whole) { return Value{0, whole.low >> shift & 0xffffff}; };
                return Operand{bits(mac.value), bits(mac.mask), 0, mac.left_out};
            };
            put(slots_[i], half(24), shown);
            put(slots_[i + 1], half(0), shown);
            return true;
        }
    return false;
}

void Record::expect_complete(std::string_view where) const
{
    if (use_ == KeyOf::packet)
        return;
    if (const auto names = missing(); !names.empty())
        throw BadLine{where, std::string{"missing "} + kind_ + (names.size() == 1 ? "" : "s") + " of " +
                                 owner_ + ": " + listed(names)};
}

bool Record::has_values_of(const void *record) const
{
    const auto *own = static_cast<const std::byte *>(data()), *other = static_cast<const std::byte *>(record);
    return std::ranges::all_of(slots_, [&](const Slot &slot) {
        return load(slot.width, own + slot.offset) == load(slot.width, other + slot.offset);
    });
}

std::vector<std::string_view> Record::missing() const
{
    return names_of(
        [](const Slot &slot) { return (!slot.given || slot.left_out) && slot.match != pd::Match::ternary; });
}

std::vector<std::string_view> Record::names() const
{
    return names_of([](const Slot &) { return true; });
}

// Of the fields that are picked; two halves of a MAC address go by the name of the whole.
std::vector<std::string_view> Record::names_of(bool (*picked)(const Slot &)) const
{
    std::vector<std::string_view> names;
    for (std::size_t i = 0; i < slots_.size(); ++i) {
        if (!picked(slots_[i]))
            continue;
        const bool pair =
            i + 1 < slots_.size() && picked(slots_[i + 1]) && may_be_halves(slots_[i], slots_[i + 1]);
        const std::string_view mac =
            pair ? mac_name(slots_[i].display, slots_[i + 1].display) : std::string_view{};
        names.push_back(mac.empty() ? slots_[i].display : mac);
        i += !mac.empty();
    }
    return names;
}

Record::Operand Record::parse(std::string_view text, unsigned width, pd::Match match,
                              std::string_view name) const
{
    if (use_ && (text == any_word || text == default_word))
        return all_zero(text, width, match, name);
    return parse_value_with_mask(text, width, match, name);
}

// What the word stands for in a key. The default of a prefix is the one that all others are longer than; any
// value of a packet is no value, as when the field is left out.
Record::Operand Record::all_zero(std::string_view word, unsigned width, pd::Match match,
                                 std::string_view name) const
{
    const bool any = word == any_word;
    if (any && match == pd::Match::exact && use_ != KeyOf::packet)
        throw BadLine{word, std::string{name} + " takes no 'any': give one value"};
    const bool masked = !any && match != pd::Match::lpm;
    return {{}, masked ? ones(width) : Value{}, 0, any && use_ == KeyOf::packet};
}

Record::Operand Record::parse_value_with_mask(std::string_view text, unsigned width, pd::Match match,
                                              std::string_view name)
{
    const std::size_t split = text.find_first_of("/&");
    if (split == std::string_view::npos)
        return {parse_value(text, width, name), ones(width), width};

    const bool slash = text[split] == '/';
    const std::string_view qualifier = text.substr(split + 1);
    if (match == pd::Match::exact || (match == pd::Match::lpm && !slash))
        throw BadLine{text.substr(split),
                      std::string{name} + (slash ? " takes no prefix" : " takes no mask") +
                          (match == pd::Match::lpm ? ": write value/length" : " here: give the value alone")};
    Operand operand{parse_value(text.substr(0, split), width, name), {}, width};
    if (slash) {
        operand.prefix_length = parse_prefix(qualifier, width, name);
        operand.mask = leading_ones(operand.prefix_length, width);
    } else {
        operand.mask = parse_value(qualifier, width, std::string{name} + " mask");
    }
    return operand;
}

bool Record::named(const Slot &slot, std::string_view name)
{
    return name == slot.display || name == slot.member;
}

bool Record::may_be_halves(const Slot &first, const Slot &second)
{
    return first.width * 2 == mac_width && second.width * 2 == mac_width && first.match == second.match;
}

bool Record::mac_halves_named(const Slot &first, const Slot &second, std::string_view name)
{
    return !name.empty() && may_be_halves(first, second) &&
           (name == mac_name(first.display, second.display) || name == mac_name(first.member, second.member));
}

void Record::put(Slot &slot, const Operand &operand, std::string_view name)
{
    if (slot.given)
        throw BadLine{name, std::string{kind_} + " " + std::string{slot.display} + " is given twice"};
    slot.given = true;
    slot.left_out = operand.left_out;
    store(operand.value, slot.width, at(slot.offset));
    if (slot.match == pd::Match::ternary)
        store(operand.mask, slot.width, at(slot.twin_offset));
    else if (slot.match == pd::Match::lpm)
        store({0, operand.prefix_length}, 16, at(slot.twin_offset));
}

std::byte *Record::at(u16 offset)
{
    return reinterpret_cast<std::byte *>(storage_.data()) + offset;
}

} // namespace shell
