#include "progress.h"

#include <iomanip>
#include <sstream>
#include <string>

namespace shell {

namespace {

constinit thread_local Progress *innermost = nullptr;

// " 350000/s, 0:03 left"
std::string forecast(u64 done, u64 total, double seconds)
{
    const double rate = static_cast<double>(done) / seconds;
    const auto left = static_cast<u64>(static_cast<double>(total - done) / rate);
    std::ostringstream text;
    text << ' ' << static_cast<u64>(rate) << "/s, " << left / 60 << ':' << std::setfill('0') << std::setw(2)
         << left % 60 << " left\033[K";
    return text.str();
}

} // namespace

Progress::Progress(std::ostream *terminal, u64 total, From from)
    : terminal_(terminal), total_(total), from_(from), outer_(innermost)
{
    innermost = this;
}

Progress::~Progress()
{
    clear();
    innermost = outer_;
}

void Progress::advance()
{
    constexpr u64 columns = 40;
    ++done_;
    if (!terminal_ || done_ > total_)
        return;
    const u64 percent = done_ * 100 / total_;
    if (percent == drawn_percent_)
        return;
    drawn_percent_ = percent;
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin_;
    const bool takes_long = taken.count() >= 1;
    if (from_ == From::second_second && !takes_long)
        return;
    const u64 filled = percent * columns / 100;
    *terminal_ << "\r[" << std::string(filled, '#') << std::string(columns - filled, ' ') << "] " << percent
               << '%' << (takes_long ? forecast(done_, total_, taken.count()) : "") << std::flush;
    visible_ = true;
}

void Progress::clear()
{
    if (!visible_)
        return;
    *terminal_ << "\r\033[K" << std::flush;
    visible_ = false;
}

void Progress::give_way()
{
    for (Progress *bar = innermost; bar; bar = bar->outer_)
        if (bar->from_ == From::second_second) {
            bar->clear();
            bar->terminal_ = nullptr;
        }
}

} // namespace shell
