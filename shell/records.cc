#include "records.h"

#include "words.h"

namespace shell {

namespace {

std::size_t words_for(std::size_t bytes)
{
    return (bytes + sizeof(u64) - 1) / sizeof(u64);
}

constexpr std::string_view any_word = "any", default_word = "default";

unsigned parse_prefix(std::string_view text, unsigned width, std::string_view name)
{
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
            put(slots_[i], {{0, mac.value.low >> 24}, {0, mac.mask.low >> 24}}, shown);
            put(slots_[i + 1], {{0, mac.value.low & 0xffffff}, {0, mac.mask.low & 0xffffff}}, shown);
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

std::vector<std::string_view> Record::missing() const
{
    std::vector<std::string_view> names;
    const auto is_missing = [](const Slot &slot) { return !slot.given && slot.match != pd::Match::ternary; };
    for (std::size_t i = 0; i < slots_.size(); ++i) {
        if (!is_missing(slots_[i]))
            continue;
        const bool pair =
            i + 1 < slots_.size() && is_missing(slots_[i + 1]) && may_be_halves(slots_[i], slots_[i + 1]);
        const std::string_view mac =
            pair ? mac_name(slots_[i].display, slots_[i + 1].display) : std::string_view{};
        names.push_back(mac.empty() ? slots_[i].display : mac);
        i += !mac.empty();
    }
    return names;
}

std::vector<std::string_view> Record::names() const
{
    std::vector<std::string_view> result;
    for (const Slot &slot : slots_)
        result.push_back(slot.display);
    return result;
}

Record::Operand Record::parse(std::string_view text, unsigned width, pd::Match match,
                              std::string_view name) const
{
    if (use_ && (text == any_word || text == default_word))
        return all_zero(text, width, match, name);
    return parse_value_with_mask(text, width, match, name);
}

// What the word stands for in a key. The default of a prefix is the one that all others are longer than.
Record::Operand Record::all_zero(std::string_view word, unsigned width, pd::Match match,
                                 std::string_view name)
{
    if (word == any_word && match == pd::Match::exact)
        throw BadLine{word, std::string{name} + " takes no 'any': give one value"};
    const bool masked = word == default_word && match != pd::Match::lpm;
    return {{}, masked ? ones(width) : Value{}, 0};
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
