#include "text_cursor.h"

#include "words.h"

namespace shell {

namespace {

constexpr unsigned most_digits = 32;

constexpr std::string_view lower_digits = "0123456789abcdef";
constexpr std::string_view upper_digits = "0123456789ABCDEF";
constexpr std::string_view name_letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_";

std::string number_form(unsigned count, std::string_view digits)
{
    const char *kind = digits == upper_digits ? " upper-case hex digits" : " lower-case hex digits";
    std::string form{count ? "0x and " : "0x and up to "};
    form += std::to_string(count ? count : most_digits);
    form += kind;
    return count ? form : form + " without leading zeros";
}

} // namespace

bool TextCursor::skip(std::string_view piece)
{
    const bool here = at(piece);
    at_ += here ? piece.size() : 0;
    return here;
}

void TextCursor::expect(std::string_view piece)
{
    if (skip(piece))
        return;
    std::size_t same = 0;
    while (at_ + same < text_.size() && text_[at_ + same] == piece[same])
        ++same;
    fail(at_ + same, quoted(piece.substr(same)));
}

void TextCursor::expect_end() const
{
    if (!rest().empty())
        fail("the end of the text");
}

std::string_view TextCursor::take_name(std::string_view what)
{
    const std::string_view left = rest();
    const std::string_view name = left.substr(0, left.find_first_not_of(name_letters));
    if (name.empty())
        fail(what);
    at_ += name.size();
    return name;
}

Value TextCursor::take_hex(std::string_view what, unsigned count, Digits digits)
{
    const std::string_view valid = digits == Digits::upper ? upper_digits : lower_digits;
    const std::string form = number_form(count, valid) + " for " + std::string{what};
    if (!skip("0x"))
        fail(form);
    const std::string_view left = rest().substr(0, count ? count : most_digits);
    const std::string_view number = left.substr(0, left.find_first_not_of(valid));
    at_ += number.size();
    if (count ? number.size() != count : number.empty())
        fail(form);
    if (!count && number.size() > 1 && number[0] == '0')
        fail(number, form);
    Value value;
    for (const char c : number)
        value = {value.high << 4 | value.low >> 60, value.low << 4 | valid.find(c)};
    return value;
}

u64 TextCursor::take_decimal(u64 largest, std::string_view what)
{
    const std::string_view left = rest();
    const std::string_view number = left.substr(0, left.find_first_not_of(lower_digits.substr(0, 10)));
    u64 value = 0;
    bool fits = !number.empty() && (number.size() == 1 || number[0] != '0');
    for (const char c : number) {
        value = value * 10 + static_cast<u64>(c - '0');
        fits = fits && value <= largest;
    }
    if (!fits)
        fail(std::string{what} + " from 0 to " + std::to_string(largest));
    at_ += number.size();
    return value;
}

void TextCursor::fail(std::string_view where, std::string_view expected) const
{
    fail(static_cast<std::size_t>(where.data() - text_.data()), expected);
}

void TextCursor::fail(std::size_t at, std::string_view expected) const
{
    constexpr std::size_t context = 12;
    const std::string_view found = text_.substr(at, context);
    throw BadLine{text_.substr(at), "character " + std::to_string(at + 1) + ": expected " +
                                        std::string{expected} + " instead of " +
                                        (found.empty() ? "the end of the text" : quoted(found))};
}

} // namespace shell
