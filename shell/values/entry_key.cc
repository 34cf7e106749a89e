#include "entry_key.h"

#include "driver.h"
#include "entry_body.h"

namespace shell {

bool is_handle(std::string_view word)
{
    return !word.empty() && word != ":" && word.find('=') == std::string_view::npos;
}

Record take_key(Words &words, const pd::Table &table, Options &options)
{
    options.takes_priority = pd::has_priority(table);
    Record key{table, KeyOf::entry};
    take_assignments(words, key, table.name, options);
    return key;
}

void expect_priority(const Options &options, const Words &words, const pd::Table &table)
{
    if (options.takes_priority && !options.priority)
        throw BadLine{words.rest(), std::string{table.name} + " has a ternary field: give priority=N"};
}

Cell::Cell(Words &words, const char *owner, const reflection::TableFunctions *table, Options &options)
    : table_(table)
{
    if (table && !words.empty() && !is_handle(words.peek())) {
        key_ = take_key(words, *table->row, options);
        expect_priority(options, words, *table->row);
        key_options_ = options;
        return;
    }
    const std::string_view word = words.take(table ? "entry: a handle, 'default' or a key" : "index");
    is_default_ = table && word == "default";
    if (!is_default_)
        number_ = parse_u32(word, ~u32{0}, table ? "entry handle" : "index");
    Record nothing{pd::Action{owner, 0, {}, 0}};
    take_assignments(words, nothing, owner, options);
}

u32 Cell::find() const
{
    if (key_)
        return find_entry(*table_, key_arguments(*key_, key_options_));
    return find_if_any();
}

u32 Cell::find_if_any() const
{
    if (key_)
        return find_entry_if_any(*table_, key_arguments(*key_, key_options_));
    return is_default_ ? default_entry_of(*table_) : number_;
}

} // namespace shell
