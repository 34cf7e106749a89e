// Results below each other: with --json an object a line, for people in columns, whose widths are known
// before the first row so that it can be printed before the last one is read. --sort, --limit and --columns
// apply.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "option_words.h"
#include "result.h"

namespace shell {

class Session;

struct Column {
    static constexpr std::size_t digits = 10; // of a 32-bit number

    enum class Aligned { left, right };

    std::string_view name; // of the value
    std::size_t width = 0;
    Aligned aligned = Aligned::left;
    std::string_view part_of = {};
};

inline constexpr auto to_the_right = Column::Aligned::right;

class List {
public:
    // BadLine where an option names another column.
    List(Session &session, std::vector<Column> columns);

    // Calls `walk`, which adds the rows; it is left when there are enough.
    template <typename Walk>
    void fill(Walk walk)
    {
        begin();
        try {
            walk();
        } catch (const Enough &) {
        }
        end();
    }

    // A new row, empty.
    Result &row();
    // It is whole.
    void end_row();

private:
    struct Enough {};
    struct Sorted {
        bool is_ranked;
        Value rank;
        std::string text;
        std::string line;
    };

    void begin();
    void end();
    const Column &column(std::string_view name, std::string_view place) const;
    void choose_columns(const OptionWords::Text &names);
    static bool comes_before(const Sorted &first, const Sorted &second);
    std::string_view text_line();
    void add_cell(std::string_view text, const Column &column);
    std::string_view whole_line();

    Session &session_;
    std::vector<Column> columns_;
    Result row_;
    std::string line_;
    std::optional<Column> sorted_by_;
    bool descending_ = false;
    std::vector<Sorted> rows_; // until the last one is there
    u64 left_;                 // that are still printed
};

} // namespace shell
