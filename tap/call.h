// A call on its way through the tap.
#pragma once

#include <initializer_list>

#include "buffer.h"
#include "operation.h"
#include "state.h"

namespace tap {

// The definition of an operation that would have been found without the tap. Ends the process when there is
// none, as the dynamic linker would have done.
void *find_next(unsigned operation);

extern std::atomic<void *> next_definitions[operation_count];

template <typename Function>
Function *next_definition(unsigned operation)
{
    void *next = next_definitions[operation].load(std::memory_order_acquire);
    if (next == nullptr) [[unlikely]]
        next = find_next(operation);
    return reinterpret_cast<Function *>(next);
}

class Call {
public:
    Call(unsigned operation, std::initializer_list<Value> values);
    Call(const Call &) = delete;
    Call &operator=(const Call &) = delete;

    // When the driver must not see the call: what comes back in its place is refusal().
    bool refused() const { return refused_; }
    Value refusal() const { return Value{refusal_}; }

    // Around the driver's part.
    void enter();
    void leave();

    // Tells and records what became of the call.
    void end(Value result);

private:
    void trace(const State &state, u64 result, bool has_results);

    const unsigned operation_;
    const Value *const values_;
    bool refused_ = false;
    bool kept_ = false; // in bytes_, because somebody wants to know
    u8 depth_ = 0;
    u64 refusal_ = 0;
    u64 start_ = 0;
    Buffer bytes_; // as it is recorded
};

template <typename Result, typename Forward>
Result observe(unsigned operation, std::initializer_list<Value> values, Forward forward)
{
    Call call{operation, values};
    if constexpr (std::is_void_v<Result>) {
        call.enter();
        forward();
        call.leave();
        call.end(Value{});
    } else {
        Value result = call.refusal();
        if (!call.refused()) {
            call.enter();
            result = Value::of(forward());
            call.leave();
        }
        call.end(result);
        return result.as<Result>();
    }
}

} // namespace tap
