#include "faults.h"

#include <cerrno>
#include <iterator>

namespace tap {

namespace {

bool can_fail(const OperationRow &operation)
{
    return operation.returns == Returns::status || operation.returns == Returns::memory;
}

// A number from 0 up to 1 that looks like chance.
double chance(u64 seed, u64 call)
{
    u64 word = (seed + call) * 0x9e3779b97f4a7c15;
    word = (word ^ word >> 30) * 0xbf58476d1ce4e5b9;
    word = (word ^ word >> 27) * 0x94d049bb133111eb;
    return static_cast<double>((word ^ word >> 31) >> 11) * 0x1p-53;
}

} // namespace

int Faults::add(const ts_tap_fault &fault)
{
    const unsigned operation = fault.operation != nullptr ? find_operation(fault.operation) : operation_count;
    if (fault.operation != nullptr && (operation == operation_count || !can_fail(operations()[operation])))
        return EINVAL;
    if (fault.status == 0 || !(fault.probability >= 0 && fault.probability <= 1) ||
        (fault.nth != 0 && fault.probability != 0))
        return EINVAL;
    if (count_ == std::size(faults_))
        return ENOSPC;
    Fault &added = faults_[count_++];
    added.wanted = fault;
    added.operation = operation;
    added.calls = 0;
    return 0;
}

bool Faults::fires(Fault &fault)
{
    const u64 call = 1 + fault.calls.fetch_add(1, std::memory_order_relaxed);
    if (fault.wanted.nth != 0)
        return call == fault.wanted.nth;
    return fault.wanted.probability == 0 || chance(fault.wanted.seed, call) < fault.wanted.probability;
}

const ts_tap_fault *Faults::refuse(unsigned operation)
{
    const bool has_status = operations()[operation].returns == Returns::status;
    const ts_tap_fault *refusal = nullptr;
    for (unsigned at = 0; at < count_; ++at) {
        Fault &fault = faults_[at];
        const bool meant = fault.operation == operation || (fault.operation == operation_count && has_status);
        if (meant && fires(fault) && refusal == nullptr)
            refusal = &fault.wanted;
    }
    return refusal;
}

} // namespace tap
