// Fault injection: which of the coming driver calls and allocations fail, and how.
#pragma once

#include <atomic>
#include <map>
#include <mutex>
#include <string>

#include "pd_types.h"

namespace model {

class Faults {
public:
    // The n-th call from now; 0 takes the order back.
    void fail_call(u32 n, pd_status status);
    // Every call of one operation; status 0 takes the order back.
    void fail_operation(const char *operation, pd_status status);
    // The n-th allocation from now; 0 takes the order back.
    void fail_allocation(u32 n);
    void reset();

    // Counts a call and tells the status that it must fail with, 0 for none.
    pd_status next_call(const char *operation) { return armed_ ? armed_call(operation) : 0; }
    // Counts an allocation and tells whether it must fail.
    bool next_allocation();

private:
    pd_status armed_call(const char *operation);

    std::atomic<bool> armed_ = false; // spares the lock while no call is to fail
    std::mutex mutex_;
    u32 calls_left_ = 0;
    pd_status call_status_ = 0;
    std::map<std::string, pd_status, std::less<>> operations_;
    u32 allocations_left_ = 0;
};

Faults &faults();

} // namespace model
