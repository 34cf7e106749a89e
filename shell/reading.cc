// The commands that read entries: show, entry.
#include <algorithm>

#include "commands.h"
#include "driver.h"
#include "entry_reader.h"
#include "tables.h"

namespace shell {

namespace {

const reflection::TableFunctions &take_readable_table(Words &words)
{
    const std::string_view name = words.peek();
    const reflection::TableFunctions &table = take_keyed_table(words);
    expect_direct(*table.row, name);
    return table;
}

// A line of text in columns. How wide a column is depends on the table alone, so that the first line can be
// printed before the last entry is read.
class Columns {
public:
    explicit Columns(const EntryReader &reader);

    std::string_view heading();
    std::string_view row();

private:
    enum class Aligned { left, right };
    static constexpr std::size_t digits = 10; // of a 32-bit number

    void begin() { line_.clear(); }
    void cell(std::string_view text, std::size_t width, Aligned aligned);
    std::string_view end();

    static std::size_t key_width(const ShownField &field);
    static Aligned key_aligned(const ShownField &field);

    const EntryReader &reader_;
    std::size_t action_width_ = sizeof "action" - 1;
    std::string cell_;
    std::string line_;
};

Columns::Columns(const EntryReader &reader) : reader_(reader)
{
    for (const pd::Binding &binding : reader.table().actions)
        if (binding.entry)
            action_width_ = std::max(action_width_, std::string_view{binding.action->name}.size());
}

std::string_view Columns::heading()
{
    begin();
    cell("entry", digits, Aligned::right);
    for (const ShownField &field : reader_.key_fields())
        cell(field.name, key_width(field), key_aligned(field));
    if (pd::has_priority(reader_.table()))
        cell("priority", digits, Aligned::right);
    cell("action", action_width_, Aligned::left);
    cell("parameters", 0, Aligned::left);
    return end();
}

std::string_view Columns::row()
{
    begin();
    cell(std::to_string(reader_.handle()), digits, Aligned::right);
    for (const ShownField &field : reader_.key_fields()) {
        cell_.clear();
        append_text(cell_, field, reader_.key());
        cell(cell_, key_width(field), key_aligned(field));
    }
    if (pd::has_priority(reader_.table()))
        cell(std::to_string(reader_.priority()), digits, Aligned::right);
    cell(reader_.action().name, action_width_, Aligned::left);
    cell_.clear();
    append_assignments(cell_, reader_.parameter_fields(), reader_.parameters());
    line_ += ' '; // with the blank before each assignment, the gap between columns
    line_ += cell_;
    return end();
}

void Columns::cell(std::string_view text, std::size_t width, Aligned aligned)
{
    const std::size_t padding = width - std::min(width, text.size());
    if (!line_.empty())
        line_ += "  ";
    if (aligned == Aligned::right)
        line_.append(padding, ' ');
    line_ += text;
    if (aligned == Aligned::left)
        line_.append(padding, ' ');
}

std::string_view Columns::end()
{
    line_.resize(line_.find_last_not_of(' ') + 1);
    return line_;
}

std::size_t Columns::key_width(const ShownField &field)
{
    return std::max(field.name.size(), longest_text(field));
}

Columns::Aligned Columns::key_aligned(const ShownField &field)
{
    const bool plain = field.form == Form::number && field.match == pd::Match::exact;
    return plain ? Aligned::right : Aligned::left;
}

void show_json(Session &session, EntryReader &reader)
{
    std::string line;
    reader.walk([&] {
        line.clear();
        reader.append_json(line);
        session.print(line);
    });
}

void show_text(Session &session, EntryReader &reader)
{
    Columns columns{reader};
    session.print(columns.heading());
    reader.walk([&] { session.print(columns.row()); });
}

// A name and what stands behind it.
using Line = std::pair<std::string_view, std::string>;

void append_lines(std::vector<Line> &lines, const std::vector<ShownField> &fields, const void *record)
{
    for (const ShownField &field : fields)
        append_text(lines.emplace_back(field.name, "").second, field, record);
}

void print_entry(Session &session, const EntryReader &reader)
{
    const pd::Table &table = reader.table();
    std::vector<Line> lines;
    if (!reader.is_default()) {
        append_lines(lines, reader.key_fields(), reader.key());
        if (pd::has_priority(table))
            lines.emplace_back("priority", std::to_string(reader.priority()));
    }
    lines.emplace_back("action", reader.action().name);
    append_lines(lines, reader.parameter_fields(), reader.parameters());

    std::size_t width = 0;
    for (const auto &[name, text] : lines)
        width = std::max(width, name.size());
    session.print(reader.is_default() ? std::string{"default entry of "} + table.name
                                      : "entry " + std::to_string(reader.handle()) + " of " + table.name);
    for (const auto &[name, text] : lines)
        session.print("  " + std::string{name} + std::string(width - name.size() + 2, ' ') + text);
}

} // namespace

void run_show(Session &session, Words &words)
{
    const reflection::TableFunctions &table = take_readable_table(words);
    words.expect_end();
    EntryReader reader{table, session.from_hardware()};
    if (session.json())
        show_json(session, reader);
    else
        show_text(session, reader);
}

void run_entry(Session &session, Words &words)
{
    const reflection::TableFunctions &table = take_readable_table(words);
    const pd_entry_hdl entry = parse_u32(words.take("entry handle"), ~u32{0}, "entry handle");
    words.expect_end();
    EntryReader reader{table, session.from_hardware()};
    reader.read(entry);
    if (!session.json())
        return print_entry(session, reader);
    std::string line;
    reader.append_json(line);
    session.print(line);
}

} // namespace shell
