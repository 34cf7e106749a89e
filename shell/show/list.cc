#include "list.h"

#include <algorithm>

#include "session.h"
#include "words.h"

namespace shell {

namespace {

constexpr std::string_view bold = "\033[1m", plain = "\033[m", cut_mark = ">";

} // namespace

List::List(Session &session, std::vector<Column> columns)
    : session_(session), columns_(std::move(columns)),
      row_(session.json(), !session.option_words().sort.text.empty()),
      left_(session.option_words().limit.value_or(~u64{0}))
{
    const OptionWords &options = session.option_words();
    if (std::string_view name = options.sort.text; !name.empty()) {
        descending_ = name.starts_with('-');
        name.remove_prefix(descending_);
        sorted_by_ = column(name, options.sort.place);
    }
    if (!options.columns.text.empty())
        choose_columns(options.columns);
}

const Column &List::column(std::string_view name, std::string_view place) const
{
    const auto found = std::ranges::find(columns_, name, &Column::name);
    if (found != columns_.end())
        return *found;
    std::vector<std::string_view> names;
    for (const Column &each : columns_)
        names.push_back(each.name);
    throw BadLine{place, "no column " + quoted(name) + ", there are: " + listed(names)};
}

void List::choose_columns(const OptionWords::Text &names)
{
    if (session_.json())
        throw BadLine{names.place, "--columns is for people: a JSON object has all"};
    std::vector<Column> chosen;
    for (std::string_view left = names.text;;) {
        const std::size_t comma = std::min(left.find(','), left.size());
        chosen.push_back(column(left.substr(0, comma), names.place));
        if (comma == left.size())
            break;
        left.remove_prefix(comma + 1);
    }
    columns_ = std::move(chosen);
}

void List::begin()
{
    if (session_.json())
        return;
    line_.clear();
    for (const Column &column : columns_)
        add_cell(column.name, column);
    const std::string heading{whole_line()};
    session_.print(session_.colours() ? std::string{bold}.append(heading).append(plain) : heading);
}

Result &List::row()
{
    if (left_ == 0 && !sorted_by_)
        throw Enough{};
    return row_.clear();
}

void List::end_row()
{
    std::string_view line;
    std::string object;
    if (session_.json())
        line = object = row_.line({});
    else
        line = text_line();
    if (!sorted_by_) {
        --left_;
        return session_.print(line);
    }
    const Result::Item *item = row_.find(sorted_by_->name, sorted_by_->part_of);
    rows_.push_back({item && item->is_ranked, item ? item->rank : Value{},
                     std::string{item ? row_.text_of(*item) : row_.text_of(sorted_by_->name)},
                     std::string{line}});
}

// Numbers and addresses by value, before what has none; else by text. Rows that are alike stay in their
// order.
bool List::comes_before(const Sorted &first, const Sorted &second)
{
    if (first.is_ranked != second.is_ranked)
        return first.is_ranked;
    if (first.is_ranked && first.rank != second.rank)
        return first.rank < second.rank;
    return first.text < second.text;
}

void List::end()
{
    std::ranges::stable_sort(rows_, [&](const Sorted &first, const Sorted &second) {
        return descending_ ? comes_before(second, first) : comes_before(first, second);
    });
    rows_.resize(std::min<u64>(rows_.size(), left_));
    for (const Sorted &row : rows_)
        session_.print(row.line);
}

std::string_view List::text_line()
{
    line_.clear();
    for (const Column &column : columns_) {
        const Result::Item *item = row_.find(column.name, column.part_of);
        add_cell(item ? row_.text_of(*item) : row_.text_of(column.name), column);
    }
    return whole_line();
}

void List::add_cell(std::string_view text, const Column &column)
{
    const std::size_t padding = column.width - std::min(column.width, text.size());
    if (!line_.empty())
        line_ += "  ";
    if (column.aligned == to_the_right)
        line_.append(padding, ' ');
    line_ += text;
    if (column.aligned != to_the_right)
        line_.append(padding, ' ');
}

std::string_view List::whole_line()
{
    line_.resize(line_.find_last_not_of(' ') + 1);
    if (const auto width = session_.line_width(); width && line_.size() > *width) {
        line_.resize(*width - cut_mark.size());
        line_ += cut_mark;
    }
    return line_;
}

} // namespace shell
