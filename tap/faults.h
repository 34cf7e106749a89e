// Which calls are refused.
#pragma once

#include <atomic>

#include "operation.h"
#include "tap.h"

namespace tap {

class Faults {
public:
    // An errno for a fault that makes no sense or finds no room.
    int add(const ts_tap_fault &fault);
    void clear() { count_ = 0; }
    bool any() const { return count_ != 0; }

    // Counts a call. Null when it may go on, or the fault that refuses it.
    const ts_tap_fault *refuse(unsigned operation);

private:
    struct Fault {
        ts_tap_fault wanted;
        unsigned operation; // operation_count for all that return a status
        std::atomic<u64> calls;
    };

    static bool fires(Fault &fault);

    Fault faults_[16];
    unsigned count_ = 0;
};

} // namespace tap
