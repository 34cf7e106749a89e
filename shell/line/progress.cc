#include "progress.h"

#include <string>

namespace shell {

void Progress::advance()
{
    constexpr u64 columns = 50;
    ++done_;
    const u64 percent = done_ * 100 / total_;
    if (percent == drawn_percent_)
        return;
    drawn_percent_ = percent;
    const u64 filled = percent * columns / 100;
    terminal_ << "\r[" << std::string(filled, '#') << std::string(columns - filled, ' ') << "] " << percent
              << '%' << std::flush;
    visible_ = true;
}

void Progress::clear()
{
    if (!visible_)
        return;
    terminal_ << "\r\033[K" << std::flush;
    visible_ = false;
}

} // namespace shell
