#include "columns.h"

#include <algorithm>

namespace shell {

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

} // namespace shell
