// The driver behind the tap in tap_test: every operation comes to what the test has set.
#include "tap_test_driver.h"

Answer answer;

u64 tap::any_operation(unsigned operation, std::initializer_list<Value> values)
{
    return answer(operation, values.begin());
}
