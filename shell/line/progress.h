// A progress bar for long files.
#pragma once

#include <ostream>

#include "pd_types.h"

namespace shell {

class Progress {
public:
    // `total`: how many steps there will be.
    Progress(std::ostream &terminal, u64 total) : terminal_(terminal), total_(total) {}
    ~Progress() { clear(); }
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;

    // One step more; draws at each full percent.
    void advance();
    // Takes the bar off the terminal until it is drawn again.
    void clear();

private:
    std::ostream &terminal_;
    u64 total_;
    u64 done_ = 0;
    u64 drawn_percent_ = 0;
    bool visible_ = false;
};

} // namespace shell
