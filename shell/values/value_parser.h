// Reads the library's value texts back into records. The schema text tells which fields and parameters there
// are, how wide they are and which of their bits show; where a member lies in its record is looked up by its
// name.
#pragma once

#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "names.h"
#include "rows.h"
#include "schema.h"
#include "text_cursor.h"

namespace shell {

// As much of an entry as its text tells.
struct ParsedValue {
    std::vector<u64> key;    // record; empty for a text without a key
    bool is_default = false; // "()," in place of a key, as every entry of a keyless table has it
    const pd::Action *action = nullptr;
    std::vector<u64> parameters; // record of the action
    Object reference{Kind::member, 0};
    std::optional<u32> priority;

    bool operator==(const ParsedValue &) const = default;
};

class ValueParser {
public:
    explicit ValueParser(const reflection::TableFunctions &table);
    explicit ValueParser(const reflection::ProfileFunctions &profile); // for texts of members

    // Reads the text of an entry, a placement, a key, an action, a member or a reference: how it begins tells
    // which. Throws BadLine.
    ParsedValue parse(std::string_view text) const;

private:
    struct Member {
        std::string name;
        unsigned width;
        Value mask; // of the bits that show
        u16 offset; // in the record
    };
    struct Action {
        const pd::Action *row;
        std::vector<Member> parameters;
    };

    void add_actions(const Schema &schema);
    static Value take_value(TextCursor &text, const Member &member);
    static std::vector<u64> take_members(TextCursor &text, const std::vector<Member> &members,
                                         u16 record_size);
    void take_key(TextCursor &text, ParsedValue &value) const;
    void take_body(TextCursor &text, ParsedValue &value) const;
    void take_action(TextCursor &text, ParsedValue &value) const;
    void take_reference(TextCursor &text, ParsedValue &value) const;
    u32 take_priority(TextCursor &text) const;

    const pd::Table *table_ = nullptr; // null for a profile
    bool indirect_ = false;
    std::vector<Member> key_;
    std::vector<Action> actions_;
};

} // namespace shell
