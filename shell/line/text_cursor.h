// Takes a text of exact form apart, piece by piece. BadLine tells the first character that departs from the
// form and what should have stood there.
#pragma once

#include <string>
#include <string_view>

#include "values.h"

namespace shell {

class TextCursor {
public:
    enum class Digits { lower, upper };

    explicit TextCursor(std::string_view text) : text_(text) {}

    bool at(std::string_view piece) const { return rest().starts_with(piece); }
    // Takes `piece` if it stands here.
    bool skip(std::string_view piece);
    void expect(std::string_view piece);
    void expect_end() const;
    // Letters, digits and underscores, one at least.
    std::string_view take_name(std::string_view what);
    // 0x and `count` digits; without a count, digits without leading zeros, 32 at most.
    Value take_hex(std::string_view what, unsigned count = 0, Digits digits = Digits::lower);
    // Without leading zeros.
    u64 take_decimal(u64 largest, std::string_view what);

    // What is not taken yet.
    std::string_view rest() const { return text_.substr(at_); }
    [[noreturn]] void fail(std::string_view expected) const { fail(at_, expected); }
    [[noreturn]] void fail(std::string_view where, std::string_view expected) const;

private:
    [[noreturn]] void fail(std::size_t at, std::string_view expected) const;

    std::string_view text_;
    std::size_t at_ = 0;
};

} // namespace shell
