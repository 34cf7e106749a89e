#include "file_name.h"

#include <cstdlib>

namespace shell {

namespace {

// "~" and what begins with "~/", without quotation marks or backslashes so far.
bool begins_at_home(std::string_view written)
{
    return written.starts_with('~') && (written.size() == 1 || written[1] == '/' || is_blank(written[1]));
}

} // namespace

FileName take_file_name(Words &words)
{
    const std::string_view text = words.rest();
    if (text.empty())
        throw BadLine{text, "missing file name"};
    FileName file;
    std::size_t at = 0, opened = std::string_view::npos;
    for (; at < text.size(); ++at) {
        const bool open = opened != std::string_view::npos;
        const char c = text[at];
        if (c == '\\' && at + 1 < text.size())
            file.name += text[++at];
        else if (open ? c == text[opened] : c == '"' || c == '\'')
            opened = open ? std::string_view::npos : at;
        else if (!open && is_blank(c))
            break;
        else
            file.name += c;
    }
    if (opened != std::string_view::npos)
        throw BadLine{text.substr(opened), "the quotation mark is not closed"};
    file.where = words.take_letters(at);
    const char *home = std::getenv("HOME");
    if (begins_at_home(text) && home && *home)
        file.name.replace(0, 1, home);
    return file;
}

} // namespace shell
