#include "layout.h"

#include <sstream>
#include <vector>

namespace pdgen {

namespace {

constexpr std::size_t line_width = 110;
constexpr std::size_t deepest_hang = 40; // a list that opens further right goes to a line of its own
constexpr std::size_t tab = 4;

struct Cut {
    std::size_t at = std::string::npos; // the last character that stays on the line
    std::size_t hang =
        std::string::npos; // where the rest begins; npos: no bracket of this line is open there
};

// The comma to break behind: the last one before the edge among those that lie in the fewest brackets.
Cut find_cut(const std::string &line)
{
    std::vector<std::size_t> open;
    Cut cut;
    std::size_t cut_depth = std::string::npos;
    for (std::size_t i = 0; i < line_width && i + 1 < line.size(); ++i) {
        if (line[i] == '(' || line[i] == '{')
            open.push_back(i + 1);
        else if ((line[i] == ')' || line[i] == '}') && !open.empty())
            open.pop_back();
        else if (line[i] == ',' && line[i + 1] == ' ' && open.size() <= cut_depth) {
            cut = {i, open.empty() ? std::string::npos : open.back()};
            cut_depth = open.size();
        }
    }
    return cut;
}

// The first bracket, but that of a pointer to a function.
std::size_t list_opening(const std::string &line)
{
    const std::size_t first = line.find('(');
    const bool is_pointer = first != std::string::npos && line.compare(first, 2, "(*") == 0;
    return is_pointer ? line.find('(', first + 1) : first;
}

std::string break_code(std::string line)
{
    std::string result;
    std::size_t indent = line.find_first_not_of(' ');
    bool continued = false;
    while (line.size() > line_width) {
        Cut cut = find_cut(line);
        const bool inside = cut.hang > deepest_hang; // as is what has no place to hang from, npos
        if (cut.at != std::string::npos && inside && continued)
            cut.hang = indent;
        else if (cut.at == std::string::npos || inside)
            cut = {list_opening(line), indent + tab}; // nothing but the list's opening stays on this line
        if (cut.at == std::string::npos || cut.at + 1 >= line.size() || cut.at <= indent)
            break;
        result += line.substr(0, cut.at + 1) + '\n';
        line = std::string(cut.hang, ' ') + line.substr(line.find_first_not_of(' ', cut.at + 1));
        indent = cut.hang;
        continued = true;
    }
    return result + line;
}

bool is_comment(const std::string &line)
{
    const std::size_t indent = line.find_first_not_of(' ');
    return indent != std::string::npos &&
           (line.compare(indent, 2, "* ") == 0 || line.compare(indent, 3, "// ") == 0);
}

// A piece of text that stands on a line of its own stays whole.
bool is_literal(const std::string &line)
{
    const std::size_t indent = line.find_first_not_of(' ');
    return indent != std::string::npos && line[indent] == '"';
}

// What a comment's further lines begin with; those of a parameter are set in.
std::string comment_prefix(const std::string &line)
{
    const std::size_t indent = line.find_first_not_of(' ');
    const std::string margin = line.substr(0, indent);
    if (line[indent] == '/')
        return margin + "// ";
    return margin + (line.compare(indent, 8, "* @param") == 0 ? "*     " : "* ");
}

// A comment line that goes on where the one before it ended: not empty, no command of its own.
bool continues(const std::string &line, const std::string &prefix)
{
    return line.size() > prefix.size() && line.starts_with(prefix) && line[prefix.size()] != '@' &&
           line[prefix.size()] != ' ';
}

class Layout {
public:
    void add(const std::string &line)
    {
        if (!rest.empty() && continues(line, prefix))
            return add_comment(rest + " " + line.substr(prefix.size()));
        flush();
        if (line.size() <= line_width || is_literal(line))
            text += line + '\n';
        else if (is_comment(line))
            add_comment(line, comment_prefix(line));
        else if (line.starts_with("/** ") && line.ends_with(" */"))
            add_block(line.substr(4, line.size() - 7));
        else
            text += break_code(line) + '\n';
    }

    std::string take()
    {
        flush();
        return std::move(text);
    }

private:
    std::string text;
    std::string rest; // of a comment that was broken: the next line may join it
    std::string prefix;

    void flush()
    {
        if (!rest.empty())
            text += rest + '\n';
        rest.clear();
    }

    void add_comment(const std::string &line, const std::string &further_prefix)
    {
        prefix = further_prefix;
        add_comment(line);
    }

    void add_comment(std::string line)
    {
        while (line.size() > line_width) {
            const std::size_t cut = line.rfind(' ', line_width);
            if (cut == std::string::npos || cut <= prefix.size())
                break;
            text += line.substr(0, cut) + '\n';
            line = prefix + line.substr(cut + 1);
        }
        rest = line;
    }

    // A comment of one line that is too long for one.
    void add_block(const std::string &words)
    {
        text += "/**\n";
        add_comment(" * " + words, " * ");
        flush();
        text += " */\n";
    }
};

} // namespace

std::string lay_out(const std::string &text)
{
    std::istringstream lines(text);
    Layout layout;
    for (std::string line; std::getline(lines, line);)
        layout.add(line);
    return layout.take();
}

} // namespace pdgen
