// A progress bar for what takes long: loading a file, or walking over a table.
#pragma once

#include <chrono>
#include <ostream>

#include "pd_types.h"

namespace shell {

class Progress {
public:
    enum class From { start, second_second }; // when the bar is drawn first

    // `total`: how many steps there will be. Draws nothing where there is no terminal.
    Progress(std::ostream *terminal, u64 total, From from);
    ~Progress();
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;

    // One step more; draws at each full percent, and from the second second on with rate and time left.
    void advance();
    // Takes the bar off the terminal until it is drawn again.
    void clear();
    // Takes that of the walk off the terminal for good: what it finds is shown there.
    static void give_way();

private:
    std::ostream *terminal_;
    const u64 total_;
    const From from_;
    const std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
    u64 done_ = 0;
    u64 drawn_percent_ = 0;
    bool visible_ = false;
    Progress *const outer_;
};

// Where the walks of this thread show their progress; null for nowhere.
inline constinit thread_local std::ostream *walk_terminal = nullptr;

} // namespace shell
