#include "faults.h"

#include <string_view>

namespace model {

void Faults::fail_call(u32 n, pd_status status)
{
    const std::lock_guard lock{mutex_};
    calls_left_ = n;
    call_status_ = status;
    armed_ = calls_left_ != 0 || !operations_.empty();
}

void Faults::fail_operation(const char *operation, pd_status status)
{
    const std::lock_guard lock{mutex_};
    if (status != 0)
        operations_[operation] = status;
    else
        operations_.erase(operation);
    armed_ = calls_left_ != 0 || !operations_.empty();
}

void Faults::fail_allocation(u32 n)
{
    const std::lock_guard lock{mutex_};
    allocations_left_ = n;
}

void Faults::reset()
{
    const std::lock_guard lock{mutex_};
    calls_left_ = 0;
    operations_.clear();
    allocations_left_ = 0;
    armed_ = false;
}

pd_status Faults::armed_call(const char *operation)
{
    const std::lock_guard lock{mutex_};
    if (calls_left_ != 0 && --calls_left_ == 0) {
        armed_ = !operations_.empty();
        if (call_status_ != 0)
            return call_status_;
    }
    const auto ordered = operations_.find(std::string_view{operation});
    return ordered != operations_.end() ? ordered->second : 0;
}

bool Faults::next_allocation()
{
    const std::lock_guard lock{mutex_};
    return allocations_left_ != 0 && --allocations_left_ == 0;
}

Faults &faults()
{
    static Faults instance;
    return instance;
}

} // namespace model
