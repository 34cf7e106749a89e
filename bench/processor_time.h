// The processor time of this process: what else the machine does is not in it.
#pragma once

#include <ctime>

namespace bench {

// In nanoseconds.
inline double processor_time()
{
    timespec now;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

} // namespace bench
