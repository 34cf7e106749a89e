// What a command tells: named values, each of them said once. With --json they are the members of an object,
// in the order in which they come; people read them in a sentence, one a line, or in the columns of a list.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "json.h"
#include "shown.h"

namespace shell {

// Names are not copied.
class Result {
public:
    struct Item {
        std::string_view part_of; // the fields that it is one of; else empty
        std::string_view name;
        std::size_t begin, end; // of its text
        Value rank;             // of a number or field
        bool is_ranked;
        bool matches_anything;
    };

    // `ranked`: that a list is sorted by the values, for which a document keeps them as well.
    explicit Result(bool as_json, bool ranked = false) : as_json_(as_json), keeps_(!as_json || ranked)
    {
        clear();
    }
    Result(const Result &) = delete;
    Result &operator=(const Result &) = delete;

    // Forgets all values, but not the memory that they took.
    Result &clear();

    // For people `part_of` what fields() gave.
    Result &number(std::string_view name, u64 value, std::string_view part_of = {});
    // A number that people read as 0x...
    Result &hex(std::string_view name, u64 value);
    Result &text(std::string_view name, std::string_view value);
    Result &flag(std::string_view name, bool value);
    // The fields of one record as an object; for people each by itself, and all of them by this name.
    Result &fields(std::string_view name, const std::vector<ShownField> &fields, const void *record);
    Result &field(const ShownField &field, const void *record);
    // Results within the result, one for each row. `tell` fills one and gives its sentence; people get the
    // text that the sentences make.
    template <typename Rows, typename Tell>
    Result &list(std::string_view name, const Rows &rows, Tell tell)
    {
        std::string all;
        if (as_json_)
            json_.key(name).open_array();
        for (const auto &row : rows) {
            Result each{as_json_};
            const auto &sentence = tell(each, row);
            if (as_json_)
                json_.whole(each.line({}));
            else
                all += each.line(sentence);
        }
        if (as_json_)
            json_.close_array();
        return shown(name, all);
    }
    // What people read instead of, or beside, other values.
    Result &shown(std::string_view name, std::string_view text);
    // Objects and lists within the object; people see none of them.
    Result &json(const auto &append)
    {
        if (as_json_)
            append(json_);
        return *this;
    }

    // The object, or the sentence with the values of the names in braces; behind a name and a colon how wide
    // it is at least, with the value to the right, or behind - to the left. An empty value takes the blank
    // before it along, and none stands at the end.
    std::string line(std::string_view sentence);
    // The object, or the heading, also a sentence, with the values that it does not name behind it, one a
    // line.
    std::string lines(std::string_view heading);

    // ---- For people ----
    // Null for none. Without `part_of` the first of the name.
    const Item *find(std::string_view name, std::string_view part_of = {}) const;
    std::string_view text_of(const Item &item) const;
    // Of one value; of fields all that do not match anything, as assignments. Empty for none.
    std::string_view text_of(std::string_view name);

private:
    Result &number(std::string_view name, u64 value, std::string_view part_of,
                   void (*append)(std::string &to, Value value, Form form));
    Result &keep(std::string_view part_of, std::string_view name, std::size_t begin, Value rank, bool ranked);

    Result &keep(std::string_view part_of, const ShownField &field, const void *record);

    const bool as_json_;
    const bool keeps_; // the items
    std::string document_;
    Json json_{document_};
    std::string text_; // of the items, behind each other
    std::vector<Item> items_;
    std::string joined_;
};

} // namespace shell
