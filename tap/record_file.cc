#include "record_file.h"

namespace tap {

namespace {

void mix(u64 &sum, u64 value)
{
    constexpr u64 odd = 0x9e3779b97f4a7c15;
    sum = (sum ^ value) * odd;
    sum ^= sum >> 29;
}

void mix(u64 &sum, const char *text)
{
    for (; *text != 0; ++text)
        mix(sum, static_cast<u8>(*text));
}

} // namespace

u64 operations_fingerprint()
{
    u64 sum = 0;
    for (const OperationRow &operation : operations()) {
        mix(sum, operation.name);
        mix(sum, static_cast<u64>(operation.returns));
        for (const ArgumentRow &row : operation.arguments) {
            mix(sum, row.name);
            mix(sum, static_cast<u64>(row.kind) << 8 | static_cast<u64>(row.direction));
        }
    }
    return sum;
}

} // namespace tap
